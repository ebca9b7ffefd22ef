// Nets for tests, and walks written as plainly as possible.
#pragma once

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "frame/random_source.h"
#include "graph/class_net.h"
#include "support/scripted_frame.h"

namespace orb_test {

using namespace orb;

using edge_map = std::map<std::pair<vertex_number, vertex_number>, net_edge>; // directed

inline class_net net_of(std::int32_t n, const edge_map &edges) {
  class_net net;
  net.inicializate_net(n, 1);
  for (vertex_number v = 1; v <= n; ++v) {
    net.add_vertex_fast(static_cast<std::int16_t>(v % 5 <= 2 ? v % 5 - 2 : -(v % 5))); // -4 to 0
    for (auto e = edges.lower_bound({v, 0}); e != edges.end() && e->first.first == v; ++e)
      net.add_edge_fast(v, e->first.second, e->second.value, e->second.index1, e->second.index2);
  }
  net.finish_of_adding();
  return net;
}

inline edge_map edges_of(const class_net &net) {
  edge_map edges;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    for (const net_edge &edge : net.edges_of_vertex(v))
      edges[{v, edge.neighbour}] = edge;
  return edges;
}

inline void join(edge_map &edges, vertex_number a, vertex_number b, double value = 20, std::int16_t code = 0) {
  edges[{a, b}] = {b, 0, code, value};
  edges[{b, a}] = {a, 0, burial_code_mirrored(code), value};
}

// A band of neighbours (so that paths are long) with `n_far` edges anywhere.
inline edge_map random_edges(std::int32_t n, std::int32_t n_edges, std::int32_t reach, std::int32_t n_far,
                             random_source &chance) {
  edge_map edges;
  for (std::int32_t k = 0; k < n_edges + n_far && n > 1; ++k) {
    const vertex_number a = chance.number_up_to(n);
    const vertex_number b = k < n_far ? chance.number_up_to(n) : std::min(n, a + chance.number_up_to(reach));
    if (a != b)
      join(edges, a, b, 10 + 10 * chance.uniform(), static_cast<std::int16_t>(chance.number_up_to(4) - 1));
  }
  return edges;
}

inline bool same_records(const class_net &a, const class_net &b) {
  if (a.number_of_vertices_get() != b.number_of_vertices_get() || a.number_of_edges_get() != b.number_of_edges_get())
    return false;
  for (vertex_number v = 1; v <= a.number_of_vertices_get(); ++v) {
    const auto run_a = a.edges_of_vertex(v), run_b = b.edges_of_vertex(v);
    if (a.index_of_vertex_get(v) != b.index_of_vertex_get(v) || run_a.size() != run_b.size())
      return false;
    for (std::size_t i = 0; i < run_a.size(); ++i)
      if (std::tie(run_a[i].neighbour, run_a[i].value, run_a[i].index1, run_a[i].index2) !=
          std::tie(run_b[i].neighbour, run_b[i].value, run_b[i].index1, run_b[i].index2))
        return false;
  }
  return true;
}

// Ranks step by step with ordered sets; -1: not reached.
inline std::vector<std::int32_t> plain_ranks(const class_net &net, const std::set<vertex_number> &starts,
                                             std::int32_t n_steps, bool use_cutoff = false, double cutoff = 0) {
  std::vector<std::int32_t> ranks(static_cast<std::size_t>(net.number_of_vertices_get()) + 1, -1);
  std::set<vertex_number> reached = starts, wave = starts;
  for (const vertex_number v : starts)
    ranks[static_cast<std::size_t>(v)] = 0;
  for (std::int32_t step = 0; step < n_steps; ++step) {
    std::set<vertex_number> next;
    for (const vertex_number v : wave)
      for (const net_edge &edge : net.edges_of_vertex(v)) {
        if (use_cutoff && edge.value < cutoff)
          continue;
        if (!reached.insert(edge.neighbour).second)
          continue;
        next.insert(edge.neighbour);
        ranks[static_cast<std::size_t>(edge.neighbour)] = step + 1;
      }
    wave = next;
  }
  return ranks;
}

// Components by repeated whole walks, numbered by their smallest vertex.
inline number_list plain_components(const class_net &net, std::int32_t &n_classes) {
  number_list classes;
  classes.resize(net.number_of_vertices_get());
  n_classes = 0;
  for (vertex_number v = 1; v <= classes.count(); ++v) {
    if (classes(v) != 0)
      continue;
    ++n_classes;
    const auto ranks = plain_ranks(net, {v}, classes.count());
    for (vertex_number w = 1; w <= classes.count(); ++w)
      if (ranks[static_cast<std::size_t>(w)] >= 0)
        classes(w) = n_classes;
  }
  return classes;
}

} // namespace orb_test
