// A component in the plane so that distances in the picture are those along its edges.
#pragma once

#include <cstdint>
#include <vector>

#include "viewer/multilevel_pivots.h"

namespace orb {

// By node of the component.
struct plane_points {
  std::vector<float> x, y;
};

// The walk in breadth as a picture: a column for each step from node 0. What is there before anything better is.
void place_in_layers(const component_graph &graph, plane_points &points);

// Places the nodes of a connected component; an edge is about 1 long. Four levels: a hundred pivots by all distances
// among them, every node by its distances from the pivots, all nodes by their edges and the pivots together, and again
// with lengths that only keep the order of the distances (wanted_lengths.h). `points` has a place for each node
// already; when the work is stopped it holds what was reached, and false is returned. Depends on the seed, never on the
// number of threads. Nodes * pivots for each of 70 sweeps.
bool place_component(const component_graph &graph, std::uint64_t seed, const layout_work &work, plane_points &points);

} // namespace orb
