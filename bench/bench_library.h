// A generated library with its net, in a folder of its own.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

#include "net/class_clone_net_signif.h"
#include "support/library_generator.h"

namespace orb {

struct bench_library {
  std::filesystem::path folder;
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

  bench_library(const generated_library &wanted, double cutoff) {
    static int number = 0;
    folder = std::filesystem::temp_directory_path() /
             ("orb_bench_" + std::to_string(::getpid()) + "_" + std::to_string(++number));
    std::filesystem::create_directories(folder);
    frame.working_folder_set(folder);
    rule.cutoff = cutoff;
    generate_library(frame, wanted, database, usable_values);
    net_creation_summary summary;
    signif.create_net_in_memory(rule, summary);
  }
  ~bench_library() { std::filesystem::remove_all(folder); }
  bench_library(const bench_library &) = delete;
  bench_library &operator=(const bench_library &) = delete;
};

} // namespace orb
