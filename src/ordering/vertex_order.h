// In which order the vertices of an open graph are taken, and what is left to pay behind each.
#pragma once

#include <cstdint>
#include <vector>

#include "ordering/open_graph.h"

namespace orb {

// The order in which the vertices are taken, with the size of the frontier after each.
struct vertex_order {
  path_order vertices;
  std::size_t widest = 0;
  double weight = 0; // grows with the number of states to be expected
};

// Numbers of neighbours that aren't taken yet, and which vertices stand in the frontier.
class frontier_walk {
public:
  explicit frontier_walk(const open_graph &graph) : graph_(graph), taken(graph.touching.size(), 0) {
    for (const auto &edges : graph.touching)
      n_open.push_back(static_cast<std::int32_t>(edges.size()));
  }
  // Takes v; what leaves the frontier by that goes to `left`, v itself last.
  void take(std::int32_t v, std::vector<std::int32_t> &left) {
    left.clear();
    taken[static_cast<std::size_t>(v)] = 1;
    for (const std::int32_t e : graph_.touching[static_cast<std::size_t>(v)]) {
      const std::int32_t w = other_end(graph_.edges[static_cast<std::size_t>(e)], v);
      if (--n_open[static_cast<std::size_t>(w)] == 0 && taken[static_cast<std::size_t>(w)] != 0)
        left.push_back(w);
    }
    if (n_open[static_cast<std::size_t>(v)] == 0)
      left.push_back(v);
  }

private:
  const open_graph &graph_;

public:
  std::vector<std::uint8_t> taken;
  std::vector<std::int32_t> n_open; // edges to vertices that aren't taken
};

// The better one of a walk along a path and of walks that keep the frontier small; when the time is over, the former.
vertex_order best_vertex_order(const open_graph &graph, const path_order &path, const search_clock &clock);

// By number of vertices taken: what the rest costs at least.
struct rest_costs {
  std::vector<reduced_cost> tree; // a spanning tree of the rest and of all that was taken, as one vertex
  std::vector<reduced_cost> edge; // the cheapest edge of the rest
};

rest_costs costs_of_rests(const open_graph &graph, const path_order &order);

} // namespace orb
