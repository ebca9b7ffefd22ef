#include "viewer/initial_position.h"

#include <algorithm>
#include <cmath>

namespace orb {

namespace {

constexpr double full_turn = 6.283; // on purpose: it is what the places of nodes are

double radius_of_circle(std::int32_t n) {
  return std::clamp(n * 0.5 / full_turn, 1.0, 10.0);
}

void place_node(std::int32_t node, double x, double y, placed_nodes &nodes) {
  const auto at = static_cast<std::size_t>(node);
  nodes.x[at] = static_cast<float>(x);
  nodes.y[at] = static_cast<float>(y);
  nodes.is_coor_known[at] = 1;
}

// One cluster of `members`, in the middle of its part of the circle.
void place_cluster(std::span<const std::int32_t> members, double middle, double radius, random_source &chance,
                   placed_nodes &nodes) {
  const double across_x = std::cos(middle), across_y = std::sin(middle), size = static_cast<double>(members.size());
  for (std::size_t k = 0; k < members.size(); ++k) {
    const double j = static_cast<double>(k) + 1;
    double dx = 0, dy = 0;
    if (members.size() > 1) {
      const double turn = ((size * 0.5 / 4 + j) / (5 * size / 4) + 0.5) * full_turn;
      const double scale = chance.uniform() * 0.1 + 1.0 + 0.2 * static_cast<double>((k + 1) % 2);
      dx = (std::cos(turn) * across_x - across_y * std::sin(turn) / 3) * radius * scale / 3;
      dy = (across_x * std::sin(turn) / 3 + across_y * std::cos(turn)) * radius * scale / 3;
    }
    place_node(members[k], radius * across_x + dx, radius * across_y + dy, nodes);
  }
}

} // namespace

layout_start initial_position_choose(process_frame &frame, std::int32_t n_nodes, std::int32_t n_unfrozen,
                                     bool coor_are_known) {
  if (n_nodes <= 1)
    return n_nodes == 1 ? layout_start::steps : layout_start::nothing;
  if (n_unfrozen == 0)
    return frame.yes({.text = "All node coordinates are known and frozen. Defrost?", .title = {}})
               ? layout_start::steps_of_defrosted
               : layout_start::nothing;
  if (coor_are_known)
    return layout_start::steps;
  switch (frame.ask({.text = "Use ordering of clusters?", .title = {}, .choice = answer_choice::yes_no_cancel})) {
  case answer::yes:
    return layout_start::circle_by_clusters;
  case answer::no:
    return layout_start::growth;
  case answer::cancel:
    break;
  }
  return layout_start::circle;
}

void place_on_circle(std::int32_t n, placed_nodes &nodes) {
  const double radius = radius_of_circle(n);
  for (std::int32_t i = 1; i <= n; ++i)
    place_node(i, radius * std::cos(i * full_turn / n), radius * std::sin(i * full_turn / n), nodes);
}

void place_on_circle_by_clusters(std::span<const std::int32_t> cluster_of_node, std::int32_t n_clusters,
                                 random_source &chance, placed_nodes &nodes) {
  const auto n = static_cast<std::int32_t>(cluster_of_node.size()) - 1;
  std::vector<std::vector<std::int32_t>> members(static_cast<std::size_t>(n_clusters) + 1);
  for (std::int32_t i = 1; i <= n; ++i) {
    const std::int32_t cluster = cluster_of_node[static_cast<std::size_t>(i)];
    if (cluster >= 1 && cluster <= n_clusters)
      members[static_cast<std::size_t>(cluster)].push_back(i);
  }
  double n_before = 0;
  for (const std::vector<std::int32_t> &cluster : members) {
    const double size = static_cast<double>(cluster.size());
    place_cluster(cluster, (size * 0.5 + n_before) * full_turn / n, radius_of_circle(n), chance, nodes);
    n_before += size;
  }
}

} // namespace orb
