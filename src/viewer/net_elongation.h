// What elongation in two steps keeps between them.
#pragma once

#include <vector>

#include "frame/lists.h"

namespace orb {

// Clones that could be added and their ranks, ascending; the second step takes those up to a rank.
struct elongation_candidates {
  number_list list_of_elongate_clones, rank_of_elongate_clones;
  void clear() {
    list_of_elongate_clones.clear();
    rank_of_elongate_clones.clear();
  }
};

} // namespace orb
