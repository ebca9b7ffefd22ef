#include "graph/label_forest.h"

#include <numeric>

namespace orb {

void label_forest::start(std::int32_t n) {
  label_.resize(static_cast<std::size_t>(n) + 1);
  std::iota(label_.begin(), label_.end(), 0);
}

std::int32_t label_forest::find_root(std::int32_t i) const {
  while (label_[static_cast<std::size_t>(i)] < i)
    i = label_[static_cast<std::size_t>(i)];
  return i;
}

// Each label from x downward becomes `root`: paths stay short.
void label_forest::redirect_path(std::int32_t root, std::int32_t x) {
  while (x > root) {
    const std::int32_t below = label_[static_cast<std::size_t>(x)];
    label_[static_cast<std::size_t>(x)] = root;
    if (below >= x)
      break;
    x = below;
  }
}

bool label_forest::join(std::int32_t i, std::int32_t j) {
  const std::int32_t root_i = find_root(i), root_j = find_root(j);
  const std::int32_t root = root_i < root_j ? root_i : root_j;
  redirect_path(root, i);
  redirect_path(root, j);
  return root_i != root_j;
}

void label_forest::number_clusters(number_list &cluster_number, number_list &n_elements_in_cluster,
                                   std::int32_t &n_clusters) {
  const auto n = static_cast<std::int32_t>(label_.size()) - 1;
  n_clusters = 0;
  cluster_number.resize(n);
  n_elements_in_cluster.clear();
  // A label is below its element, so one ascending pass finds every root already numbered.
  for (std::int32_t i = 1; i <= n; ++i) {
    std::int32_t &label = label_[static_cast<std::size_t>(i)];
    label = label_[static_cast<std::size_t>(label)];
    if (label == i) {
      cluster_number(i) = ++n_clusters;
      n_elements_in_cluster.add(1);
    } else {
      cluster_number(i) = cluster_number(label);
      ++n_elements_in_cluster(cluster_number(i));
    }
  }
}

} // namespace orb
