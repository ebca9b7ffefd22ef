#include "ordering/open_graph.h"

#include <array>

namespace orb {

static std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

// For each vertex the dearest edge on the way through the tree to every other one tells what an edge between them would
// replace.
open_graph open_part(const reduced_instance &instance, reduced_cost room) {
  const std::int32_t n = instance.n;
  const path_bound &bound = instance.bound;
  open_graph graph;
  graph.longest = instance.longest;
  graph.may_end.assign(place(n) + 1, 0);
  graph.touching.resize(place(n) + 1);
  square_array<double> dearest(n, -std::numeric_limits<double>::max());
  for (std::size_t k = 1; k < bound.sequence.size(); ++k) {
    const std::int32_t v = bound.sequence[k], parent = bound.parent[place(v)];
    const reduced_cost own = instance.edge(v, parent);
    for (std::size_t earlier = 0; earlier < k; ++earlier) {
      const std::int32_t u = bound.sequence[earlier];
      dearest(u, v) = dearest(v, u) = u == parent ? own : std::max(own, dearest(u, parent));
    }
  }
  graph.smallest_joint = instance.longest * path_bound::scale + instance.smallest + instance.second;
  for (std::int32_t a = 1; a <= n; ++a) {
    if (bound.multiplier[place(a)] - instance.second <= room)
      graph.may_end[place(a)] = 1;
    for (std::int32_t b = a + 1; b <= n; ++b) {
      if (instance.joint(a, b) - dearest(a, b) <= room)
        graph.may_end[place(a)] = graph.may_end[place(b)] = 1;
      const reduced_cost cost = instance.edge(a, b), excess = std::max(cost - dearest(a, b), 0.0);
      if (instance.dist(a, b) < instance.longest && excess <= room)
        graph.edges.push_back({a, b, cost, excess});
    }
  }
  for (std::size_t e = 0; e < graph.edges.size(); ++e) {
    graph.touching[place(graph.edges[e].a)].push_back(static_cast<std::int32_t>(e));
    graph.touching[place(graph.edges[e].b)].push_back(static_cast<std::int32_t>(e));
  }
  return graph;
}

path_order path_of_edges(const open_graph &graph, const std::vector<std::int32_t> &edges, std::int32_t n) {
  std::vector<std::array<std::int32_t, 2>> joined(place(n) + 1, {0, 0});
  for (const std::int32_t e : edges)
    for (const std::int32_t v : {graph.edges[place(e)].a, graph.edges[place(e)].b}) {
      auto &at = joined[place(v)];
      (at[0] == 0 ? at[0] : at[1]) = other_end(graph.edges[place(e)], v);
    }
  path_order order;
  std::vector<std::uint8_t> taken(place(n) + 1, 0);
  for (std::int32_t v = 1; v <= n; ++v)
    for (std::int32_t before = 0, here = joined[place(v)][1] == 0 && taken[place(v)] == 0 ? v : 0; here != 0;) {
      order.push_back(here);
      taken[place(here)] = 1;
      const std::int32_t onward = joined[place(here)][0] != before ? joined[place(here)][0] : joined[place(here)][1];
      before = here;
      here = onward;
    }
  return order;
}

} // namespace orb
