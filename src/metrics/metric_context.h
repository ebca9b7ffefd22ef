// What every stage that scores pairs reads: lent by the session, which owns all of it and outlives its users.
#pragma once

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"
#include "frame/settings.h"
#include "metrics/class_clone_dist_table.h"

namespace orb {

struct metric_context {
  process_frame &frame;
  const project_settings &settings;
  class_DB_of_clones &database;
  class_usable_values &usable_values;
  class_clone_dist_table &table;
};

} // namespace orb
