// The settings that last while the program runs, with their values at start.
#pragma once

#include <cstdint>
#include <string>

namespace orb {

struct project_settings {
  // clone names and files
  std::int16_t clone_name_format_input = 7;
  std::int16_t clone_name_format_output = 7;
  std::int32_t automatic_name_prefix_length = -1; // P of the automatic format
  bool automatic_name_number_column = false;      // its flag
  std::int32_t automatic_name_number_end = 0;     // Q
  std::int16_t file_format_index = 0;

  // comparison of clones; metric, cutoff and burying fraction are an overlap_rule
  bool several_metrics_and_cutoffs = false;
  bool markers_in_clones = false;
  bool for_FPC_fast_indicator = true;
  std::int16_t table_format_column_subset = 3;
  std::string table_format_text = "Sulston score only";

  // use of the loaded net
  bool use_file_with_connections = false;
  bool same_metric_as_net = false;
  bool same_metric_net_ord_as_net = false;

  // runs
  bool fast_clustering = true;
  bool net_in_ordering = false;
  bool singletones = false; // ask whether free clones go into the set of singletones

  // chance and threads
  std::uint64_t seed = 1;
  int threads = 0; // 0: all
};

} // namespace orb
