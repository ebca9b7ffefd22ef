// How long each number of steps is to be drawn.
#pragma once

#include <vector>

#include "viewer/multilevel_stress.h"

namespace orb {

// A line of nodes can be drawn as long as it is. A net with many short cuts can't: there the longest ways are all about
// as long, and no picture has so many places at that distance. What can be kept is the order: who is nearer in the net
// is to be nearer in the picture. So the lengths follow what the picture could do of itself, and grow with the steps.
class wanted_lengths {
public:
  // As long as there are steps.
  explicit wanted_lengths(const pivot_distances &pivots);

  // By number of steps, from 0.
  const float *data() const { return length_.data(); }
  // Makes them what lies next to the lengths drawn, as a mean over all pairs of node and pivot with as many steps;
  // none is shorter than what has fewer steps. Nodes * pivots, of at most 4,000 nodes.
  void follow(const plane_points &points, const plane_points &pivot_at);
  // By what the picture is to be enlarged so that lengths are the numbers of steps as far as can be.
  double enlargement(const plane_points &points, const plane_points &pivot_at) const;

private:
  // `use(steps, length, weight)` for each pair.
  template <class user> void for_pairs(const plane_points &points, const plane_points &pivot_at, const user &use) const;

  const pivot_distances &pivots_;
  std::vector<float> length_;
};

} // namespace orb
