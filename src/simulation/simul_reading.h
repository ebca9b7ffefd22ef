// The work of reading the bands of one clone; each worker has its own.
#pragma once

#include <cstdint>
#include <vector>

#include "simulation/class_simul_clones.h"

namespace orb {

// Clones read between two looks at the stop flag, and by a worker at a time.
inline constexpr std::int64_t clones_a_block = 2000, clones_a_piece = 20;

struct class_simul_clones::reading {
  cut_list cuts;    // of one part
  band_table table; // of all parts
  band_counts counts;
  std::vector<double> bands;
  band_reading_sums sums;
};

} // namespace orb
