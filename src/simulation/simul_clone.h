// A clone whose true place on a sequence is known: drawn by a simulation or read from a table of positions.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orb {

// One stretch of sequence in a clone; a chimeric clone has several.
struct clone_part {
  std::int32_t chromosome = 0;                       // from 1: place in the list of chromosome names
  std::int32_t part_start = 0, part_end = 0;         // base pairs from the chromosome's start; [start, end)
  std::int32_t part_bin_start = 0, part_bin_end = 0; // bins of the clone ends' digest, within the chromosome
};

struct simul_clone {
  std::string name;
  std::vector<clone_part> parts; // more than one: a chimera
  std::int32_t n_bands_more_0 = 0;
  std::int32_t n_bands_too_long = 0;
  std::int32_t n_bands_ok_colored = 0;
  std::int32_t n_bands_obs_no_errors = 0; // of the list without errors
  std::int32_t n_bands_obs = 0;           // of the list with errors
  std::int32_t n_bins = 0;                // of all parts
  std::int32_t length = 0;                // base pairs, of all parts

  std::int32_t n_parts() const { return static_cast<std::int32_t>(parts.size()); }
};

// Clones with the names of their chromosomes.
struct placed_clones {
  std::vector<std::string> chromosomes; // numbered from 1 by `clone_part::chromosome`: element 0 is chromosome 1
  std::vector<simul_clone> clones;
};

} // namespace orb
