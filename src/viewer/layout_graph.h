// What a layout is given: nodes 1..n and edges, each once. Arrays of nodes have n + 1 entries; entry 0 is unused.
#pragma once

#include <cstdint>
#include <span>

namespace orb {

struct layout_edge {
  std::int32_t from = 0, to = 0; // 1..n
  std::int32_t stiffness = 1;
  bool is_arc = false;
};

struct layout_graph {
  std::int32_t n = 0;
  std::span<const layout_edge> edges; // may hold repeats and edges from a node to itself
};

} // namespace orb
