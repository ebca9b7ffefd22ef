// How nodes push each other away: the one part of a spring step that looks at all pairs.
#pragma once

#include <cstdint>
#include <span>

namespace orb {

// A law of repulsion. Without `cut` its size is 1 / r^2, with it that or 1 / (e^r - e + 1), whichever is less, and
// nothing from r = 6 on; nearer than 0.1 it is capped, and two nodes at one point don't push each other.
struct repulsion_law {
  bool cut = false;
};

// The sums of what all of (x, y) do to nodes at (at_x, at_y), in the order of x: in float32, the same bits in registers
// of any width. A node that is itself among (x, y) isn't pushed by itself.
void sum_of_repulsion(repulsion_law law, std::span<const float> x, std::span<const float> y,
                      std::span<const float> at_x, std::span<const float> at_y, std::span<float> force_x,
                      std::span<float> force_y);

} // namespace orb
