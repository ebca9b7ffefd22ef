// The connected components of a net, each as a graph of its own.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "viewer/layout_graph.h"

namespace orb {

// Nodes 0..n-1, in the order in which a walk in breadth meets them from an end of the component, so that neighbours lie
// near each other in memory. Arcs count as edges; repeats and edges from a node to itself are left out.
struct component_graph {
  std::vector<std::int32_t> node;      // the node of the net
  std::vector<std::int32_t> first;     // n + 1 places in `neighbour`
  std::vector<std::int32_t> neighbour; // of each node ascending

  std::int32_t count() const { return static_cast<std::int32_t>(node.size()); }
  std::span<const std::int32_t> neighbours(std::int32_t v) const {
    const auto at = static_cast<std::size_t>(v);
    return {neighbour.data() + first[at], neighbour.data() + first[at + 1]};
  }
};

// The largest component first, equally large ones by their lowest node. `without_doubtful`: edges that are probably
// false are left out; components stay whole. n + e log of the largest degree.
std::vector<component_graph> components_of(const layout_graph &graph, bool without_doubtful = false);

} // namespace orb
