#include "simulation/path_quality.h"

#include <algorithm>
#include <cassert>

namespace orb {

void path_quality::add(const path_quality &other) {
  n_clones += other.n_clones;
  n_steps += other.n_steps;
  n_false_steps += other.n_false_steps;
  n_clones_compared += other.n_clones_compared;
  n_fewest += other.n_fewest;
  length_covered += other.length_covered;
  length_main += other.length_main;
}

std::int32_t fewest_stretches_covering(std::span<const true_stretch> stretches, std::span<const true_place> places) {
  std::int32_t n = 0;
  std::size_t next = 0;       // the first stretch not looked at yet
  true_position farthest = 0; // of all that were looked at
  true_position covered_to = 0;
  for (const true_place &place : places) {
    covered_to = std::max(covered_to, place.begin);
    while (covered_to < place.end) {
      for (; next < stretches.size() && stretches[next].begin <= covered_to; ++next)
        farthest = std::max(farthest, stretches[next].end);
      assert(farthest > covered_to);
      if (farthest <= covered_to)
        return n;
      covered_to = farthest;
      ++n;
    }
  }
  return n;
}

} // namespace orb
