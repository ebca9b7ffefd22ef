// The lengths at which a set of contigs reaches parts of its sum: N50 and its kin.
#pragma once

#include <cstdint>
#include <span>

namespace orb {

// Base pairs that a band stands for, where nobody says otherwise, and the most that is taken.
inline constexpr double standard_band_size = 1200, largest_band_size = 1e9;

struct length_statistic {
  double length = 0;          // Np: of the contig at which the parts meet
  std::int32_t n_contigs = 0; // Lp: that one and all longer ones
};

// `ascending`: lengths in any unit. The contig at which the sum from the shortest first exceeds (1 - p / 100) of the
// whole; nothing when there is none or all lengths are 0.
length_statistic length_statistic_get(std::span<const double> ascending, int p);

} // namespace orb
