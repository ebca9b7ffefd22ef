// Nets changed where they stand, for those that memory holds only once.
#include <algorithm>
#include <cassert>
#include <limits>

#include "graph/class_net.h"

namespace orb {

void class_net::inicializate_net_of_degrees(std::span<const std::int32_t> degree) {
  vertices_.assign(degree.size() + 1, {});
  std::int64_t next = 1;
  for (std::size_t v = 1; v < degree.size(); ++v) {
    vertices_[v].adress_of_first_edge = static_cast<edge_adress>(next);
    next += degree[v];
  }
  assert(next <= std::numeric_limits<edge_adress>::max());
  vertices_.back().adress_of_first_edge = static_cast<edge_adress>(next);
  private_n_vertices_ = static_cast<std::int32_t>(degree.size()) - 1;
  private_n_edges_ = static_cast<std::int32_t>(next - 1);
  std::vector<net_edge>().swap(edges_);
  edges_.resize(static_cast<std::size_t>(next));
  minimal_edge_value_known_ = false;
}

void class_net::keep_edges(const std::function<bool(vertex_number, net_edge &)> &is_kept) {
  edge_adress from = 1, to = 1;
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    const edge_adress end = vertices_[static_cast<std::size_t>(v) + 1].adress_of_first_edge;
    vertices_[static_cast<std::size_t>(v)].adress_of_first_edge = to;
    for (; from < end; ++from) {
      net_edge &edge = edges_[static_cast<std::size_t>(from)];
      if (!is_kept(v, edge))
        continue;
      edges_[static_cast<std::size_t>(to)] = edge;
      ++to;
    }
  }
  vertices_[static_cast<std::size_t>(private_n_vertices_) + 1].adress_of_first_edge = to;
  private_n_edges_ = to - 1;
  edges_.resize(static_cast<std::size_t>(to));
  minimal_edge_value_known_ = false;
}

class_net::edges_taken class_net::take_out_edges(std::vector<edge_adress> places) {
  edges_taken taken{std::move(places), {}, vertices_};
  taken.edges.reserve(taken.places.size());
  edge_adress e = 0;
  keep_edges([&](vertex_number, const net_edge &edge) {
    ++e;
    if (taken.edges.size() == taken.places.size() || taken.places[taken.edges.size()] != e)
      return true;
    taken.edges.push_back(edge);
    return false;
  });
  return taken;
}

void class_net::put_back_edges(edges_taken taken) {
  std::size_t n_left = taken.edges.size();
  auto from = static_cast<std::size_t>(private_n_edges_);
  std::size_t to = from + n_left;
  edges_.resize(to + 1);
  private_n_edges_ = static_cast<std::int32_t>(to);
  for (; n_left > 0; --to) {
    if (taken.places[n_left - 1] == static_cast<edge_adress>(to))
      edges_[to] = taken.edges[--n_left];
    else
      edges_[to] = edges_[from--];
  }
  vertices_ = std::move(taken.vertices);
  minimal_edge_value_known_ = false;
}

} // namespace orb
