// What the simulate commands are asked to do.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace orb {

struct simulate_options {
  std::filesystem::path genome;

  // how clones are drawn
  std::optional<double> coverage; // unset: 15
  std::optional<std::int32_t> n_clones;
  double mean_length = 126500, length_deviation = 44000; // base pairs
  double chimeras = 0.1;
  std::int32_t max_parts = 4;
  std::int32_t longest_gap = 10000;
  std::string clone_site = "AAGCTT";

  // how bands are read
  double error = 0.2; // base pairs
  double lost = 0;
  double min_band_length = 50, max_band_length = 500; // base pairs
  double scale = 30;                                  // gel units a base pair
  std::int32_t shift = 15000;                         // gel units
  double merge = 12;                                  // gel units

  // which clones are kept
  std::int32_t min_bands = 50, max_bands = 250;
  std::string keep; // "observed", "putative", "all"; empty: asked

  std::int32_t part_length = 1000000; // of the statistics of a digest
};

} // namespace orb
