#include "viewer/multilevel_graph.h"

#include <algorithm>
#include <utility>

#include "viewer/doubtful_edges.h"

namespace orb {

namespace {

// Neighbours of the nodes 0..n-1 of a graph, without repeats.
component_graph simple_graph(const layout_graph &graph) {
  const auto n = static_cast<std::size_t>(graph.n);
  component_graph simple;
  std::vector<std::int32_t> &first = simple.first, &neighbour = simple.neighbour;
  first.assign(n + 2, 0); // one ahead while it is filled
  for (const layout_edge &edge : graph.edges)
    if (edge.from != edge.to) {
      ++first[static_cast<std::size_t>(edge.from) + 1];
      ++first[static_cast<std::size_t>(edge.to) + 1];
    }
  for (std::size_t v = 1; v <= n + 1; ++v)
    first[v] += first[v - 1];
  neighbour.resize(static_cast<std::size_t>(first[n + 1]));
  for (const layout_edge &edge : graph.edges)
    if (edge.from != edge.to) {
      neighbour[static_cast<std::size_t>(first[static_cast<std::size_t>(edge.from)]++)] = edge.to - 1;
      neighbour[static_cast<std::size_t>(first[static_cast<std::size_t>(edge.to)]++)] = edge.from - 1;
    }
  std::int32_t kept = 0, begin = 0;
  for (std::size_t v = 0; v < n; ++v) {
    const std::int32_t end = first[v + 1];
    std::sort(neighbour.begin() + begin, neighbour.begin() + end);
    first[v] = kept;
    for (std::int32_t at = begin; at < end; ++at)
      if (at == begin || neighbour[static_cast<std::size_t>(at)] != neighbour[static_cast<std::size_t>(at) - 1])
        neighbour[static_cast<std::size_t>(kept++)] = neighbour[static_cast<std::size_t>(at)];
    begin = end;
  }
  first[n] = kept;
  first.resize(n + 1);
  neighbour.resize(static_cast<std::size_t>(kept));
  return simple;
}

// Appends to `order` what a walk in breadth meets from `start`; `mark` of a node met becomes `met`.
void walk_in_breadth(const component_graph &graph, std::int32_t start, std::int32_t met,
                     std::vector<std::int32_t> &mark, std::vector<std::int32_t> &order) {
  order.assign(1, start);
  mark[static_cast<std::size_t>(start)] = met;
  for (std::size_t at = 0; at < order.size(); ++at)
    for (const std::int32_t next : graph.neighbours(order[at]))
      if (mark[static_cast<std::size_t>(next)] != met) {
        mark[static_cast<std::size_t>(next)] = met;
        order.push_back(next);
      }
}

// The part of the graph that `order` lists. `place`: scratch by node.
component_graph part_of(const component_graph &graph, const std::vector<std::int32_t> &order,
                        std::vector<std::int32_t> &place) {
  component_graph part;
  part.node.reserve(order.size());
  part.first.reserve(order.size() + 1);
  part.first.push_back(0);
  for (std::size_t v = 0; v < order.size(); ++v)
    place[static_cast<std::size_t>(order[v])] = static_cast<std::int32_t>(v);
  for (const std::int32_t v : order) {
    part.node.push_back(v + 1);
    const std::size_t begin = part.neighbour.size();
    for (const std::int32_t next : graph.neighbours(v))
      part.neighbour.push_back(place[static_cast<std::size_t>(next)]);
    std::sort(part.neighbour.begin() + static_cast<std::ptrdiff_t>(begin), part.neighbour.end());
    part.first.push_back(static_cast<std::int32_t>(part.neighbour.size()));
  }
  return part;
}

} // namespace

std::vector<component_graph> components_of(const layout_graph &graph, bool without_doubtful) {
  component_graph simple = simple_graph(graph);
  if (without_doubtful)
    drop_doubtful_edges(simple);
  std::vector<component_graph> components;
  std::vector<std::int32_t> mark(static_cast<std::size_t>(graph.n), 0), place(mark.size()), order;
  for (std::int32_t v = 0; v < graph.n; ++v) {
    if (mark[static_cast<std::size_t>(v)] != 0)
      continue;
    walk_in_breadth(simple, v, 1, mark, order);
    walk_in_breadth(simple, order.back(), 2, mark, order); // who is met last lies at an end
    components.push_back(part_of(simple, order, place));
  }
  std::stable_sort(components.begin(), components.end(),
                   [](const component_graph &a, const component_graph &b) { return a.count() > b.count(); });
  return components;
}

} // namespace orb
