// Connected components by a forest of labels, in which a label never exceeds its element: near linear in the edges.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/lists.h"

namespace orb {

class label_forest {
public:
  // Elements 1..n, each its own root.
  void start(std::int32_t n);
  std::int32_t find_root(std::int32_t i) const;
  void redirect_path(std::int32_t root, std::int32_t x);
  // Joins the trees of i and j; true when they were apart.
  bool join(std::int32_t i, std::int32_t j);
  bool joined(std::int32_t i, std::int32_t j) const { return find_root(i) == find_root(j); }
  std::int32_t label_get(std::int32_t i) const { return label_[static_cast<std::size_t>(i)]; }
  // Final pass: all labels become roots; clusters are numbered in the order of their smallest element.
  void number_clusters(number_list &cluster_number, number_list &n_elements_in_cluster, std::int32_t &n_clusters);

private:
  std::vector<std::int32_t> label_; // 1..n
};

} // namespace orb
