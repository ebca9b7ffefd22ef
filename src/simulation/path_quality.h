// How good a tiling path is where the true stretches of its clones are known.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "simulation/true_map.h"

namespace orb {

// Of one contig, or of several.
struct path_quality {
  std::int32_t n_clones = 0;
  std::int32_t n_steps = 0;       // pairs of clones that follow each other, both with a true place
  std::int32_t n_false_steps = 0; // whose stretches share no base
  // Of the contigs whose path has a clone in the main place: all clones of the path, and the fewest clones of the
  // contig that cover what the path covers of the main place.
  std::int32_t n_clones_compared = 0, n_fewest = 0;
  std::int64_t length_covered = 0, length_main = 0; // of the main place by the path; base pairs
  double redundancy() const { return n_fewest > 0 ? static_cast<double>(n_clones_compared) / n_fewest : 0; }
  void add(const path_quality &other);
};

// The fewest of `stretches` whose union holds the places; both ascend by begin, and the stretches can cover the
// places. Exact by greedy choice: of the stretches that hold the first base not covered yet, the one that reaches
// farthest. A chimeric clone with two stretches here counts once for each that is chosen. Linear.
std::int32_t fewest_stretches_covering(std::span<const true_stretch> stretches, std::span<const true_place> places);

} // namespace orb
