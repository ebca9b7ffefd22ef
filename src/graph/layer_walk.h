// Breadth-first layers around a set of vertices, on buffers that are allocated once and used for many walks.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graph/class_net.h"

namespace orb {

class layer_walk {
public:
  explicit layer_walk(const class_net &net)
      : net_(&net), rank_(static_cast<std::size_t>(net.number_of_vertices_get()) + 1, -1) {}

  // Walks at most `n_steps` steps from `starts` (repeats count once), through records that `use_cutoff` and `cutoff`
  // let pass. Costs what the last walk and this one reach.
  void run(std::span<const vertex_number> starts, std::int32_t n_steps, bool use_cutoff = false, double cutoff = 0);
  void run(vertex_number start, std::int32_t n_steps) { run({&start, 1}, n_steps); }
  // Without limit.
  void run_all(std::span<const vertex_number> starts) { run(starts, net_->number_of_vertices_get()); }
  void run_all(vertex_number start) { run_all({&start, 1}); }

  std::int32_t rank(vertex_number v) const { return rank_[static_cast<std::size_t>(v)]; } // -1: not reached
  // All reached vertices, layer after layer, in no set order within a layer.
  std::span<const vertex_number> reached() const { return reached_; }
  bool reached_all() const { return reached_.size() + 1 == rank_.size(); }
  // Empty beyond the last layer.
  std::span<const vertex_number> layer(std::int32_t r) const;
  // The largest rank found; 0 when nothing was reached.
  std::int32_t eccentricity() const { return static_cast<std::int32_t>(layer_start_.size()) - 2; }

private:
  const class_net *net_;
  std::vector<std::int32_t> rank_;
  std::vector<vertex_number> reached_;
  std::vector<std::size_t> layer_start_{0, 0}; // of each layer in `reached_`, then its size
};

} // namespace orb
