// A generated library with its net, in a folder of its own.
#pragma once

#include <cstdint>
#include <vector>

#include "net/class_clone_net_signif.h"
#include "support/library_generator.h"
#include "support/temporary_folder.h"

namespace orb {

struct bench_library {
  temporary_folder own_folder;
  const std::filesystem::path folder = own_folder.path();
  process_frame frame;
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};
  overlap_rule rule;
  class_clone_net_signif signif{context, [this] {
                                  settings.use_file_with_connections = settings.same_metric_as_net =
                                      settings.same_metric_net_ord_as_net = true;
                                }};

  std::vector<std::int32_t> starts; // of the clones on the genome

  bench_library(const generated_library &wanted, double cutoff) {
    frame.working_folder_set(folder);
    rule.cutoff = cutoff;
    generate_library(frame, wanted, database, usable_values, &starts);
    net_creation_summary summary;
    signif.create_net_in_memory(rule, summary);
  }
};

} // namespace orb
