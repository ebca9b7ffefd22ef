// What every stage that scores pairs reads: lent by the session, which owns all of it and outlives its users.
#pragma once

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"
#include "frame/settings.h"
#include "metrics/class_clone_dist_general.h"
#include "metrics/class_clone_dist_table.h"

namespace orb {

struct metric_context {
  process_frame &frame;
  project_settings &settings;
  class_DB_of_clones &database;
  class_usable_values &usable_values;
  class_clone_dist_table &table;
};

// A metric was chosen: one that lives on band abundances switches the full mode on, and nothing switches it off again.
inline void metric_is_selected(project_settings &settings, std::int16_t distance_index) {
  if (class_clone_dist_general::need_take_band_abundances_into_account_get(distance_index))
    settings.distance_table_full_mode = true;
}

} // namespace orb
