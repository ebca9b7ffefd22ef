#include "viewer/growth_layout.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <numeric>

#include <string>

#include "frame/class_math1.h"

namespace orb {

namespace {

constexpr double full_turn = 6.28318530718;
constexpr double orbit = 5, node_distance = 0.5;
constexpr std::int32_t n_directions = 360;

std::size_t at(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

// How far from its parent a group of `size` nodes is placed.
double radius_of_orbit(double size) {
  return size * node_distance <= 31.4159265359 / 3 ? orbit : size * node_distance * 3 / full_turn;
}

// How far from the middle of their group its nodes are placed.
double radius_of_group(double size) {
  if (size * node_distance <= orbit / 3 * full_turn / 3)
    return orbit / 3;
  return std::min(size * node_distance * 3 / full_turn, orbit / 2);
}

// Costs of the places around a parent, one for each whole degree. All circles repel by weight and distance.
struct directions {
  std::array<double, n_directions> x, y, cost{};

  directions(const kk_circle &parent, double radius) {
    for (std::int32_t degree = 1; degree <= n_directions; ++degree) {
      x[at(degree) - 1] = parent.x + radius * std::cos(degree * full_turn / n_directions);
      y[at(degree) - 1] = parent.y + radius * std::sin(degree * full_turn / n_directions);
    }
  }
  // A place on the very circle becomes infinitely dear.
  void add(const kk_circle &circle, double size) {
    const double weight = circle.weight * size, circle_x = circle.x, circle_y = circle.y;
    for (std::size_t k = 0; k < x.size(); ++k) {
      const double dx = x[k] - circle_x, dy = y[k] - circle_y;
      cost[k] += weight / std::sqrt(dx * dx + dy * dy);
    }
  }
  // The first of equally cheap ones, as far as rounding lets them be equal.
  std::size_t cheapest() const {
    std::size_t best = 0;
    for (std::size_t k = 1; k < cost.size(); ++k)
      if (cost[k] < cost[best] * (1 - 1e-9))
        best = k;
    return best;
  }
};

} // namespace

void class_net_elngKK::KK_inicializate(std::int32_t n_nodes, std::int32_t n_edges) {
  *this = class_net_elngKK();
  nodes_.resize(at(n_nodes) + 1);
  edges_.resize(at(n_edges) + 1);
}

bool class_net_elngKK::add_node(const growth_node &rec, bool grow) {
  if (at(n_nodes_) + 1 >= nodes_.size()) {
    if (!grow)
      return false;
    nodes_.resize(at(n_nodes_) + 2);
  }
  nodes_[at(++n_nodes_)] = rec;
  return true;
}

bool class_net_elngKK::add_edge(const layout_edge &rec, bool grow) {
  if (at(n_edges_) + 1 >= edges_.size()) {
    if (!grow)
      return false;
    edges_.resize(at(n_edges_) + 2);
  }
  edges_[at(++n_edges_)] = rec;
  return true;
}

void class_net_elngKK::make_adjacency() {
  degree_.assign(at(n_nodes_) + 1, 0);
  for (std::int32_t e = 1; e <= n_edges_; ++e) {
    ++degree_[at(edges_[at(e)].from)];
    ++degree_[at(edges_[at(e)].to)];
  }
  adj_first_.assign(degree_.size(), 1);
  adj_last_.assign(degree_.size(), 0);
  for (std::int32_t i = 1; i <= n_nodes_; ++i) {
    adj_first_[at(i)] = i == 1 ? 1 : adj_first_[at(i) - 1] + degree_[at(i) - 1];
    adj_last_[at(i)] = adj_first_[at(i)] - 1;
  }
  adj_.assign(2 * at(n_edges_) + 1, 0);
  for (std::int32_t e = 1; e <= n_edges_; ++e) {
    const layout_edge &edge = edges_[at(e)];
    adj_[at(++adj_last_[at(edge.from)])] = edge.to;
    adj_[at(++adj_last_[at(edge.to)])] = edge.from;
  }
  by_degree_.resize(at(n_nodes_));
  std::iota(by_degree_.begin(), by_degree_.end(), 1);
  std::stable_sort(by_degree_.begin(), by_degree_.end(),
                   [this](std::int32_t a, std::int32_t b) { return degree_[at(a)] > degree_[at(b)]; });
  next_by_degree_ = 0;
}

std::span<const std::int32_t> class_net_elngKK::neighbours(std::int32_t node) const {
  return {adj_.data() + adj_first_[at(node)], adj_.data() + adj_last_[at(node)] + 1};
}

void class_net_elngKK::place(std::int32_t node, float x, float y) {
  nodes_[at(node)] = {x, y, true, true};
  rank_of_node_[at(node)] = 0;
  frontier_.push_back(node);
  components_.add(x, y);
  ++n_placed_;
}

bool class_net_elngKK::startKK(process_frame &frame) {
  frame.control_text_set("Initial position...");
  make_adjacency();
  rank_of_node_.assign(at(n_nodes_) + 1, -1);
  frontier_.clear();
  components_.clear();
  n_placed_ = 0;
  unlinked_are_told_ = false;
  for (std::int32_t i = 1; i <= n_nodes_; ++i)
    if (nodes_[at(i)].is_frozen || nodes_[at(i)].is_coor_known)
      place(i, nodes_[at(i)].x, nodes_[at(i)].y);
  if (n_placed_ == 0 && n_nodes_ > 0)
    place(by_degree_.front(), 0, 0);
  while (n_placed_ < n_nodes_) {
    const std::int32_t n_before = n_placed_;
    frame.control_text_set("Initial position... " + std::to_string(n_placed_) + " of " + std::to_string(n_nodes_));
    if (frame.stop_requested_get())
      return false;
    find_ranks();
    if (n_ranks_ < 1)
      place_next_component(frame);
    else if (!set_position(frame))
      return false;
    if (n_placed_ <= n_before)
      frame.program_end_now("Error in startKK: nFrozen_prev=" + std::to_string(n_before) +
                            ">=nFrozen=" + std::to_string(n_placed_));
  }
  frame.control_text_set("Initial position... Finished");
  return true;
}

void class_net_elngKK::place_next_component(process_frame &frame) {
  while (next_by_degree_ < by_degree_.size() && rank_of_node_[at(by_degree_[next_by_degree_])] == 0)
    ++next_by_degree_;
  if (next_by_degree_ == by_degree_.size())
    frame.program_end_now("Error in startKK: arg_max<=0");
  const auto [x, y] = components_.next();
  place(by_degree_[next_by_degree_], x, y);
}

// Nothing that isn't placed can be reached from what was placed before the last walk, so that a walk begins where that
// one ended.
void class_net_elngKK::find_ranks() {
  nodes_of_rank_.assign(1, std::move(frontier_));
  frontier_.clear();
  for (std::int32_t rank = 1; !nodes_of_rank_.back().empty(); ++rank) {
    std::vector<std::int32_t> met;
    for (const std::int32_t node : nodes_of_rank_.back())
      for (const std::int32_t next : neighbours(node))
        if (rank_of_node_[at(next)] < 0) {
          rank_of_node_[at(next)] = rank;
          met.push_back(next);
        }
    nodes_of_rank_.push_back(std::move(met));
  }
  n_ranks_ = static_cast<std::int32_t>(nodes_of_rank_.size()) - 2; // the last one is empty
}

// Every placed node is a group and a circle of its own.
void class_net_elngKK::begin_round() {
  group_of_node_.assign(at(n_nodes_) + 1, -1);
  group_members_.clear();
  group_first_.assign(1, 0);
  group_last_ = group_size_ = group_first_;
  circles_.clear();
  circle_of_group_.assign(1, -1);
  for (std::int32_t i = 1; i <= n_nodes_; ++i)
    if (rank_of_node_[at(i)] == 0) {
      const auto group = static_cast<std::int32_t>(group_size_.size());
      circle_of_group_.push_back(static_cast<std::int32_t>(circles_.size()));
      circles_.push_back({nodes_[at(i)].x, nodes_[at(i)].y, 1, 0, group});
      fill_group(i);
    }
}

// A new group: the first node and all of its rank that are joined to it by edges within the rank. Of the placed nodes
// each is alone.
void class_net_elngKK::fill_group(std::int32_t first_node) {
  const auto group = static_cast<std::int32_t>(group_size_.size());
  const std::int32_t rank = rank_of_node_[at(first_node)];
  const std::size_t begin = group_members_.size();
  group_of_node_[at(first_node)] = group;
  group_members_.push_back(first_node);
  for (std::size_t next = begin; rank > 0 && next < group_members_.size(); ++next)
    for (const std::int32_t other : neighbours(group_members_[next]))
      if (rank_of_node_[at(other)] == rank && group_of_node_[at(other)] < 0) {
        group_of_node_[at(other)] = group;
        group_members_.push_back(other);
      }
  group_first_.push_back(static_cast<std::int32_t>(begin));
  group_last_.push_back(static_cast<std::int32_t>(group_members_.size()) - 1);
  group_size_.push_back(static_cast<std::int32_t>(group_members_.size() - begin));
  group_of_node_[0] = group;
}

void class_net_elngKK::split_rank(std::span<const std::int32_t> of_rank) {
  first_group_of_rank_.push_back(static_cast<std::int32_t>(group_size_.size()));
  for (const std::int32_t node : of_rank)
    if (group_of_node_[at(node)] < 0)
      fill_group(node);
}

std::span<const std::int32_t> class_net_elngKK::members(std::int32_t group) const {
  return {group_members_.data() + group_first_[at(group)], group_members_.data() + group_last_[at(group)] + 1};
}

std::vector<std::int32_t> class_net_elngKK::groups_by_size(std::int32_t rank) const {
  std::vector<std::int32_t> sizes(1, 0), groups(1, 0);
  for (std::int32_t group = first_group_of_rank_[at(rank)]; group < first_group_of_rank_[at(rank) + 1]; ++group) {
    sizes.push_back(group_size_[at(group)]);
    groups.push_back(group);
  }
  class_math1::quicksort_long(sizes, groups, 1, static_cast<std::int32_t>(groups.size()) - 1, false);
  groups.erase(groups.begin());
  return groups;
}

// The circle with the most edges to the group, the first of equal ones; -1 when there is none.
std::int32_t class_net_elngKK::parent_of(std::int32_t group, std::int32_t rank) {
  edges_to_circle_.resize(std::max(edges_to_circle_.size(), circles_.size()), 0);
  const auto for_all_edges = [&](const auto &take) {
    for (const std::int32_t node : members(group))
      for (const std::int32_t other : neighbours(node)) {
        const std::int32_t circle = circle_of_group_[at(group_of_node_[at(other)])];
        if (circle >= 0 && circles_[at(circle)].rank >= rank - 1)
          take(circle);
      }
  };
  std::int32_t best = -1;
  for_all_edges([this](std::int32_t circle) { ++edges_to_circle_[at(circle)]; });
  for_all_edges([&](std::int32_t circle) {
    const std::int32_t more = best < 0 ? 1 : edges_to_circle_[at(circle)] - edges_to_circle_[at(best)];
    if (more > 0 || (more == 0 && circle < best))
      best = circle;
  });
  for_all_edges([this](std::int32_t circle) { edges_to_circle_[at(circle)] = 0; });
  return best;
}

void class_net_elngKK::place_circle(std::int32_t group, std::int32_t rank, const kk_circle &parent) {
  const std::int32_t size = group_size_[at(group)];
  directions around(parent, radius_of_orbit(size));
  for (const kk_circle &circle : circles_)
    around.add(circle, size);
  const std::size_t best = around.cheapest();
  circle_of_group_[at(group)] = static_cast<std::int32_t>(circles_.size());
  circles_.push_back({static_cast<float>(around.x[best]), static_cast<float>(around.y[best]), size, rank, group});
}

void class_net_elngKK::spread_nodes(const kk_circle &circle) {
  const double radius = radius_of_group(circle.weight);
  double k = 0;
  for (const std::int32_t node : members(circle.group)) {
    const double angle = k * full_turn / circle.weight;
    place(node, static_cast<float>(circle.x + radius * std::cos(angle)),
          static_cast<float>(circle.y + radius * std::sin(angle)));
    ++k;
  }
}

void class_net_elngKK::tell_unlinked(process_frame &frame) {
  const auto n = std::count(group_of_node_.begin() + 1, group_of_node_.end(), -1);
  if (n > 0 && !unlinked_are_told_)
    frame.message("In total, " + std::to_string(n) + " added clones are not linked?!");
  unlinked_are_told_ = true;
}

bool class_net_elngKK::set_position(process_frame &frame) {
  begin_round();
  const std::size_t n_circles_before = circles_.size();
  first_group_of_rank_.assign(1, 1);
  for (std::int32_t rank = 1; rank <= n_ranks_; ++rank)
    split_rank(nodes_of_rank_[at(rank)]);
  first_group_of_rank_.push_back(static_cast<std::int32_t>(group_size_.size()));
  circle_of_group_.resize(group_size_.size(), -1);
  tell_unlinked(frame);
  bool goes_on = true;
  for (std::int32_t rank = 1; goes_on && rank <= n_ranks_; ++rank)
    for (const std::int32_t group : groups_by_size(rank)) {
      const std::int32_t parent = parent_of(group, rank);
      if (parent < 0)
        frame.program_end_now("Eroor in iNodeGeneralBest");
      place_circle(group, rank, kk_circle(circles_[at(parent)]));
      if (goes_on = frame.goes_on(); !goes_on)
        break;
    }
  for (std::size_t c = n_circles_before; c < circles_.size(); ++c)
    spread_nodes(circles_[c]);
  return goes_on;
}

} // namespace orb
