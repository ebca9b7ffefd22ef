// Stacks: clones that pile up over one place far more than others do, as those of an organelle or of a repeat.
#pragma once

#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "graph/class_net.h"

namespace orb {

struct clone_stacks {
  std::int32_t middle_depth = 0;                  // median number of overlaps, of clones that have any
  std::vector<std::vector<clone_number>> members; // ascending; the largest stack first
};

// A clone's depth is the number of its overlaps in the net: about twice the clones over one point. It belongs to a
// stack when it is above 10 times the median and at least 50; clones of that kind that the net joins are one stack.
clone_stacks find_clone_stacks(const class_net &net);
// A sentence a stack, with some names and what to do; empty without stacks.
std::string text_of_stacks(const clone_stacks &stacks, const class_DB_of_clones &database);

} // namespace orb
