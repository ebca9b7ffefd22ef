// One object a run: owns the frame, the settings, the database, the tables and the net of significant overlaps, and
// lends them to the operations. A session is made in one line; two sessions don't know of each other.
#pragma once

#include <filesystem>
#include <memory>

#include "clustering/class_FPCto_import.h"
#include "database/class_DB_of_clones.h"
#include "database/class_DB_of_clones_read.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"
#include "frame/settings.h"
#include "metrics/metric_context.h"
#include "net/class_clone_net_signif.h"

namespace orb {

class project_state {
public:
  // `program_folder`: where ORB.log lies; empty: no log.
  explicit project_state(front_end shown = null_front_end(), const std::filesystem::path &program_folder = {});
  project_state(const project_state &) = delete;
  project_state &operator=(const project_state &) = delete;

  process_frame &frame() { return frame_; }
  project_settings &settings() { return settings_; }
  const project_settings &settings() const { return settings_; }
  class_DB_of_clones &database() { return database_; }
  class_usable_values &usable_values() { return usable_values_; }
  metric_context &context() { return context_; }
  class_clone_net_signif &signif() { return *signif_; }
  class_DB_of_clones_read &reader() { return reader_; }

  // "Start of ORB program" in the log, panels at rest.
  void start();
  // "Exit the ORB program" in the log.
  void finish();
  // After a load of fingerprints: an empty net, an empty registry.
  void renew_net_and_registry();

private:
  process_frame frame_;
  project_settings settings_;
  class_DB_of_clones database_;
  class_usable_values usable_values_;
  class_clone_dist_table table_;
  metric_context context_;
  std::unique_ptr<class_clone_net_signif> signif_;
  class_DB_of_clones_read reader_;
};

} // namespace orb
