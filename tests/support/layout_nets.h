// Nets to lay out, and how well a picture shows the distances along the edges.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "frame/class_math1.h"
#include "frame/random_source.h"
#include "viewer/layout_graph.h"

namespace orb {

// Clones as intervals of about equal length at random places of a line, joined where they overlap by a third; so many
// that a clone has `degree` overlaps on average. `false_share` of the edges are added between any two clones, or
// between two that are at most `reach` clones' lengths apart.
inline std::vector<layout_edge> interval_net(std::int32_t n, double degree, double false_share, std::uint64_t seed,
                                             double reach = 0) {
  random_source chance(seed);
  struct interval {
    double start, length;
    std::int32_t clone;
  };
  std::vector<interval> clones;
  for (std::int32_t clone = 1; clone <= n; ++clone)
    clones.push_back({chance.uniform() * n * 1.4 / degree, 0.7 + 0.6 * chance.uniform(), clone});
  std::sort(clones.begin(), clones.end(), [](const interval &a, const interval &b) { return a.start < b.start; });
  std::vector<layout_edge> edges;
  for (std::size_t a = 0; a < clones.size(); ++a)
    for (std::size_t b = a + 1; b < clones.size() && clones[b].start < clones[a].start + 1.3; ++b) {
      const double end = std::min(clones[a].start + clones[a].length, clones[b].start + clones[b].length);
      if (end - clones[b].start > 0.3 * std::min(clones[a].length, clones[b].length))
        edges.push_back({clones[a].clone, clones[b].clone});
    }
  for (auto n_false = static_cast<std::int64_t>(static_cast<double>(edges.size()) * false_share); n_false > 0;
       --n_false) {
    const std::int32_t a = chance.number_up_to(n);
    if (reach <= 0) {
      edges.push_back({a, chance.number_up_to(n)});
      continue;
    }
    const std::int32_t b = a + chance.number_up_to(static_cast<std::int32_t>(reach * degree / 1.4));
    if (b <= n)
      edges.push_back({clones[static_cast<std::size_t>(a) - 1].clone, clones[static_cast<std::size_t>(b) - 1].clone});
  }
  return edges;
}

// As many lines of `n_line` clones as `n` makes; false edges stay within a line.
inline std::vector<layout_edge> interval_lines(std::int32_t n, std::int32_t n_line, double degree, double false_share,
                                               std::uint64_t seed) {
  std::vector<layout_edge> edges;
  for (std::int32_t before = 0; before < n; before += n_line)
    for (const layout_edge &edge : interval_net(std::min(n_line, n - before), degree, false_share,
                                                1000 * seed + static_cast<std::uint64_t>(before)))
      edges.push_back({edge.from + before, edge.to + before});
  return edges;
}

// Steps along the edges from a node to all nodes; -1 where it can't get.
inline std::vector<std::int32_t> steps_from(std::int32_t start, const std::vector<std::vector<std::int32_t>> &next) {
  std::vector<std::int32_t> steps(next.size(), -1), order{start};
  steps[static_cast<std::size_t>(start)] = 0;
  for (std::size_t i = 0; i < order.size(); ++i)
    for (const std::int32_t node : next[static_cast<std::size_t>(order[i])])
      if (steps[static_cast<std::size_t>(node)] < 0) {
        steps[static_cast<std::size_t>(node)] = steps[static_cast<std::size_t>(order[i])] + 1;
        order.push_back(node);
      }
  return steps;
}

// Spearman's correlation of steps and distance in the picture, over random pairs of the same component.
inline double distance_correlation(const layout_graph &graph, const std::vector<float> &x,
                                   const std::vector<float> &y) {
  std::vector<std::vector<std::int32_t>> next(static_cast<std::size_t>(graph.n) + 1);
  for (const layout_edge &edge : graph.edges) {
    next[static_cast<std::size_t>(edge.from)].push_back(edge.to);
    next[static_cast<std::size_t>(edge.to)].push_back(edge.from);
  }
  random_source chance(7);
  std::vector<double> along_edges, drawn;
  for (int i = 0; i < 60; ++i) {
    const auto from = static_cast<std::size_t>(chance.number_up_to(graph.n));
    const std::vector<std::int32_t> steps = steps_from(static_cast<std::int32_t>(from), next);
    for (int k = 0; k < 400; ++k)
      if (const auto to = static_cast<std::size_t>(chance.number_up_to(graph.n)); steps[to] > 0) {
        along_edges.push_back(steps[to]);
        drawn.push_back(std::hypot(x[to] - x[from], y[to] - y[from]));
      }
  }
  return class_math1::rankCorrelation(along_edges, drawn);
}

} // namespace orb
