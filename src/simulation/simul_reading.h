// The work of reading the bands of one clone; each worker has its own.
#pragma once

#include <vector>

#include "simulation/class_simul_clones.h"

namespace orb {

struct class_simul_clones::reading {
  cut_list cuts;    // of one part
  band_table table; // of all parts
  band_counts counts;
  std::vector<double> bands;
  band_reading_sums sums;
};

} // namespace orb
