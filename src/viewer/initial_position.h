// What a run of the layout begins with, and the two circles.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/process_frame.h"
#include "frame/random_source.h"

namespace orb {

// How a run goes on. The values are the codes of `KamadaKawaii_initial_position`.
enum class layout_start {
  nothing = 0,
  steps_of_defrosted = 1,
  steps = 2,
  circle = 3,
  growth = 4,
  circle_by_clusters = 5
};

// Asks where there is a choice: "All node coordinates are known and frozen. Defrost?", "Use ordering of clusters?". On
// `steps_of_defrosted` the caller unfreezes all nodes; with one node it freezes it. A cancelled choice is the circle.
layout_start initial_position_choose(process_frame &frame, std::int32_t n_nodes, std::int32_t n_unfrozen,
                                     bool coor_are_known);

// Places by node; entry 0 is unused.
struct placed_nodes {
  std::vector<float> x, y;
  std::vector<std::uint8_t> is_coor_known;
};

// Nodes 1..n on a circle with half a unit between them, of radius 1 to 10. Frozen ones are moved too.
void place_on_circle(std::int32_t n, placed_nodes &nodes);

// The clusters in turn around the circle, each a narrow ellipse across it. `cluster_of_node`: by node, 1..n_clusters in
// the order of the clusters; other nodes have none and stay where they are. One random number a node.
void place_on_circle_by_clusters(std::span<const std::int32_t> cluster_of_node, std::int32_t n_clusters,
                                 random_source &chance, placed_nodes &nodes);

} // namespace orb
