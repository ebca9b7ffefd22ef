#include "graph/component_lists.h"

namespace orb {

component_lists::component_lists(const class_net &net) {
  std::int32_t n = 0;
  net.clustering_based_on_net(component_, n);
  const vertex_number n_vertices = net.number_of_vertices_get();
  first_.assign(static_cast<std::size_t>(n) + 2, 0);
  n_records_.assign(static_cast<std::size_t>(n) + 1, 0);
  for (vertex_number v = 1; v <= n_vertices; ++v) {
    ++first_[component_of(v) + 1];
    n_records_[component_of(v)] += net.number_of_edges_for_vertex_total_get(v);
  }
  for (std::size_t c = 1; c < first_.size(); ++c)
    first_[c] += first_[c - 1];
  members_.resize(static_cast<std::size_t>(n_vertices));
  std::vector<std::size_t> next = first_;
  for (vertex_number v = 1; v <= n_vertices; ++v)
    members_[next[component_of(v)]++] = v;
}

std::span<const vertex_number> component_lists::members_of_component(vertex_number v) const {
  const std::size_t c = component_of(v);
  return std::span(members_).subspan(first_[c], first_[c + 1] - first_[c]);
}

} // namespace orb
