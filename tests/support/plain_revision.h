// Q-overlaps and Q-clones as they are defined, with sets: what the tests and the benchmark compare the revision with.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "graph/class_net.h"

namespace orb::plain_revision {

// Components of the vertices kept, by plain spreading of the smallest label, without the edge `cut`.
inline int components(const class_net &net, const std::set<vertex_number> &kept,
                      std::pair<vertex_number, vertex_number> cut) {
  std::vector<vertex_number> label(static_cast<std::size_t>(net.number_of_vertices_get()) + 1);
  for (const vertex_number v : kept)
    label[static_cast<std::size_t>(v)] = v;
  for (bool changed = true; changed;) {
    changed = false;
    for (const vertex_number v : kept)
      for (const net_edge &edge : net.edges_of_vertex(v)) {
        const vertex_number w = edge.neighbour;
        if (!kept.count(w) || std::pair(std::min(v, w), std::max(v, w)) == cut)
          continue;
        auto &own = label[static_cast<std::size_t>(v)], other = label[static_cast<std::size_t>(w)];
        if (other < own)
          own = other, changed = true;
      }
  }
  std::set<vertex_number> labels;
  for (const vertex_number v : kept)
    labels.insert(label[static_cast<std::size_t>(v)]);
  return static_cast<int>(labels.size());
}

inline std::set<vertex_number> ball(const class_net &net, std::set<vertex_number> start, int r, double cutoff) {
  for (int step = 0; step < r; ++step) {
    std::set<vertex_number> next = start;
    for (const vertex_number v : start)
      for (const net_edge &edge : net.edges_of_vertex(v))
        if (edge.value >= cutoff)
          next.insert(edge.neighbour);
    start = next;
  }
  return start;
}

// An edge that is unsupported within r steps.
inline bool is_Q_overlap(const class_net &net, vertex_number v, vertex_number w, int r) {
  if (r > 1)
    return components(net, ball(net, {v, w}, r, 0), {std::min(v, w), std::max(v, w)}) != 1;
  const auto of_v = ball(net, {v}, 1, 0), of_w = ball(net, {w}, 1, 0);
  for (const vertex_number u : of_v)
    if (u != v && u != w && of_w.count(u))
      return false; // a common neighbour
  return true;
}

// A clone without which its surroundings fall apart; `cutoff` of the edges that lead there.
inline bool is_Q_clone(const class_net &net, vertex_number v, int r, double cutoff) {
  auto around = ball(net, {v}, r, cutoff);
  around.erase(v);
  return components(net, around, {0, 0}) >= 2;
}

} // namespace orb::plain_revision
