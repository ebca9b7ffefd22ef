// Where the clones of a contig lie on an axis counted in bands, from the numbers of their common bands alone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frame/lists.h"
#include "frame/process_frame.h"
#include "ordering/class_map_of_bands3.h"

namespace orb {

struct band_map_clones {
  std::vector<std::string> names;
  std::vector<std::vector<band_value>> bands; // of each clone, ascending
  band_map_metric metric;
  std::size_t count() const { return bands.size(); }
};

struct clone_stretch {
  double left = 0, right = 0;
  bool covers(double x) const { return left <= x && x <= right; }
};

// A stretch for each clone, as wide as its number of bands. The backbone is the longest path of the spanning tree of
// linked clones; the others are laid beside it where the overlaps fit best, then each clone is laid anew among all
// others. Parts without links to each other stand one behind the other. Compares all pairs. False after a stop request.
bool lay_out_clones(process_frame &frame, const band_map_clones &clones, std::vector<clone_stretch> &stretches);

} // namespace orb
