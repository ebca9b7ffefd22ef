#include "ordering/vertex_order.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orb {

static std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

static void measure(const open_graph &graph, vertex_order &order) {
  frontier_walk walk(graph);
  std::vector<std::int32_t> left;
  std::size_t width = 0;
  for (const std::int32_t v : order.vertices) {
    walk.take(v, left);
    order.widest = std::max(order.widest, ++width);
    width -= left.size();
    order.weight += std::exp2(static_cast<double>(width));
  }
}

// Takes next what leaves the smallest frontier; where nothing hangs on it, the next vertex of `path`.
static vertex_order narrow_order(const open_graph &graph, const path_order &path, const search_clock &clock) {
  vertex_order order;
  frontier_walk walk(graph);
  std::vector<std::int32_t> frontier, left; // the oldest first
  std::size_t next_of_path = 0;
  while (order.vertices.size() < path.size()) {
    if (clock.over()) {
      order.weight = std::numeric_limits<double>::infinity();
      return order;
    }
    std::int32_t best = 0, best_growth = 0;
    for (const std::int32_t u : frontier)
      for (const std::int32_t e : graph.touching[place(u)]) {
        const std::int32_t v = other_end(graph.edges[place(e)], u);
        if (walk.taken[place(v)] != 0)
          continue;
        std::int32_t growth = walk.n_open[place(v)] > 0 ? 1 : 0;
        for (const std::int32_t f : graph.touching[place(v)]) {
          const std::int32_t w = other_end(graph.edges[place(f)], v);
          growth -= walk.taken[place(w)] != 0 && walk.n_open[place(w)] == 1 ? 1 : 0;
        }
        if (best == 0 || growth < best_growth) {
          best = v;
          best_growth = growth;
        }
      }
    while (best == 0) {
      const std::int32_t v = path[next_of_path++];
      best = walk.taken[place(v)] == 0 ? v : 0;
    }
    walk.take(best, left);
    order.vertices.push_back(best);
    frontier.push_back(best);
    for (const std::int32_t v : left)
      frontier.erase(std::find(frontier.begin(), frontier.end(), v));
  }
  measure(graph, order);
  return order;
}

vertex_order best_vertex_order(const open_graph &graph, const path_order &path, const search_clock &clock) {
  vertex_order along{path, 0, 0};
  measure(graph, along);
  vertex_order best = along;
  for (const path_order &start : {path, path_order(path.rbegin(), path.rend())}) {
    vertex_order order = narrow_order(graph, start, clock);
    if (order.weight < best.weight)
      best = std::move(order);
  }
  return best;
}

rest_costs costs_of_rests(const open_graph &graph, const path_order &order) {
  std::vector<const kept_edge *> edges;
  for (const kept_edge &e : graph.edges)
    edges.push_back(&e);
  std::sort(edges.begin(), edges.end(),
            [](const kept_edge *x, const kept_edge *y) { return x->cost != y->cost ? x->cost < y->cost : x < y; });
  const auto n = static_cast<std::int32_t>(order.size());
  std::vector<std::int32_t> when(place(n) + 1);
  for (std::int32_t k = 0; k < n; ++k)
    when[place(order[place(k)])] = k + 1;
  rest_costs out;
  std::vector<std::int32_t> root(place(n) + 1);
  const auto root_of = [&](std::int32_t v) {
    while (root[place(v)] != v)
      v = root[place(v)] = root[place(root[place(v)])];
    return v;
  };
  for (std::int32_t taken = 0; taken <= n; ++taken) {
    for (std::int32_t v = 1; v <= n; ++v)
      root[place(v)] = when[place(v)] <= taken ? order[0] : v;
    reduced_cost tree = 0, cheapest = graph.smallest_joint;
    std::int32_t to_join = n - taken - (taken == 0 ? 1 : 0);
    for (const kept_edge *e : edges) {
      if (std::max(when[place(e->a)], when[place(e->b)]) <= taken)
        continue;
      cheapest = std::min(cheapest, e->cost);
      const std::int32_t a = root_of(e->a), b = root_of(e->b);
      if (a == b || e->cost >= graph.smallest_joint)
        continue;
      root[place(a)] = b;
      tree += e->cost;
      --to_join;
    }
    out.tree.push_back(tree + to_join * graph.smallest_joint);
    out.edge.push_back(cheapest);
  }
  return out;
}

} // namespace orb
