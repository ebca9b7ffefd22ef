#include "graph/many_walks.h"

#include <algorithm>

namespace orb {

namespace {

constexpr std::int64_t records_between_looks = 1 << 20;

} // namespace

many_walks::many_walks(const class_net &net, const std::function<bool()> &go_on)
    : net_(&net), go_on_(go_on), here_(static_cast<std::size_t>(net.number_of_vertices_get()) + 1, 0),
      next_(here_.size(), 0), seen_(here_.size(), 0) {}

void many_walks::start(std::int32_t n_walks) {
  for (const vertex_number v : layer_)
    here_[static_cast<std::size_t>(v)] = 0;
  layer_.clear();
  std::fill(seen_.begin(), seen_.end(), 0);
  n_open_ = std::int64_t{n_walks} * net_->number_of_vertices_get();
  n_records_ += net_->number_of_vertices_get(); // forgetting has its price too
}

void many_walks::add_start(vertex_number v, walk_bits walks) {
  const auto at = static_cast<std::size_t>(v);
  const walk_bits fresh = walks & ~seen_[at];
  if (fresh == 0)
    return;
  if (here_[at] == 0)
    layer_.push_back(v);
  here_[at] |= fresh;
  seen_[at] |= fresh;
  n_open_ -= std::popcount(fresh);
}

walk_bits many_walks::reach_neighbours(vertex_number v, walk_bits walks) {
  walk_bits found = 0;
  for (const net_edge &edge : net_->edges_of_vertex(v)) {
    const auto to = static_cast<std::size_t>(edge.neighbour);
    const walk_bits fresh = walks & ~seen_[to];
    if (fresh == 0)
      continue;
    if (next_[to] == 0)
      next_layer_.push_back(edge.neighbour);
    next_[to] |= fresh;
    seen_[to] |= fresh;
    found |= fresh;
    n_open_ -= std::popcount(fresh);
    if (n_open_ == 0)
      break;
  }
  return found;
}

walk_bits many_walks::step() {
  walk_bits found = 0;
  for (const vertex_number v : layer_) {
    if (n_open_ == 0 || stopped_)
      break;
    n_records_ += net_->number_of_edges_for_vertex_total_get(v);
    if (n_records_ > records_between_looks) {
      n_records_ = 0;
      stopped_ = !go_on_();
    }
    found |= reach_neighbours(v, here_[static_cast<std::size_t>(v)]);
  }
  for (const vertex_number v : layer_)
    here_[static_cast<std::size_t>(v)] = 0;
  layer_.swap(next_layer_);
  next_layer_.clear();
  here_.swap(next_);
  return stopped_ ? 0 : found;
}

} // namespace orb
