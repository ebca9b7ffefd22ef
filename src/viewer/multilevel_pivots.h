// Pivots: nodes spread evenly over a component, and how far every node is from each of them.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "viewer/multilevel_graph.h"

namespace orb {

// How the work on a component runs: on how many threads (0: all cores), and whether it goes on. The question is asked
// on the calling thread, and often enough.
struct layout_work {
  int threads = 1;
  std::function<bool()> goes_on;
};

struct pivot_distances {
  // Rows are as long as wide registers like it, filled up with pivots that speak for nobody.
  static constexpr std::int32_t lanes = 8;

  std::vector<std::int32_t> pivot;
  std::vector<float> share;        // by pivot: how many nodes are nearest to it; 0 in the filling
  std::vector<std::int32_t> steps; // a row for each node; 0 in the filling
  std::int32_t stride = 0;         // entries of a row

  std::int32_t count() const { return static_cast<std::int32_t>(pivot.size()); }
  // Steps from node v to each pivot.
  const std::int32_t *row(std::int32_t v) const {
    return steps.data() + static_cast<std::size_t>(v) * static_cast<std::size_t>(stride);
  }
};

// `n_pivots` nodes (all when there are fewer), each as far as possible from those before; the first is node 0. False
// when the work was stopped; the distances are of no use then. pivots * edges.
bool find_pivots(const component_graph &graph, std::int32_t n_pivots, const layout_work &work, pivot_distances &found);

} // namespace orb
