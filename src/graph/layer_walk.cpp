#include "graph/layer_walk.h"

namespace orb {

void layer_walk::run(std::span<const vertex_number> starts, std::int32_t n_steps, bool use_cutoff, double cutoff) {
  for (const vertex_number v : reached_)
    rank_[static_cast<std::size_t>(v)] = -1;
  reached_.clear();
  for (const vertex_number v : starts) {
    if (rank(v) >= 0)
      continue;
    rank_[static_cast<std::size_t>(v)] = 0;
    reached_.push_back(v);
  }
  layer_start_.assign({0, reached_.size()});
  for (std::int32_t step = 0; step < n_steps && !reached_all(); ++step) {
    const std::size_t first = layer_start_[layer_start_.size() - 2], end = reached_.size();
    for (std::size_t i = first; i < end && !reached_all(); ++i)
      for (const net_edge &edge : net_->edges_of_vertex(reached_[i])) {
        std::int32_t &rank_of_neighbour = rank_[static_cast<std::size_t>(edge.neighbour)];
        if (rank_of_neighbour >= 0 || (use_cutoff && edge.value < cutoff))
          continue;
        rank_of_neighbour = step + 1;
        reached_.push_back(edge.neighbour);
      }
    if (reached_.size() == end)
      break;
    layer_start_.push_back(reached_.size());
  }
}

std::span<const vertex_number> layer_walk::layer(std::int32_t r) const {
  if (r < 0 || r > eccentricity())
    return {};
  const auto at = static_cast<std::size_t>(r);
  return std::span(reached_).subspan(layer_start_[at], layer_start_[at + 1] - layer_start_[at]);
}

} // namespace orb
