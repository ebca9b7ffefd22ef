#include "viewer/spring_layout.h"

#include <algorithm>
#include <cmath>

#include "frame/numbers.h"
#include "frame/worker_blocks.h"
#include "viewer/spring_repulsion.h"

namespace orb {

namespace {

constexpr std::int64_t pairs_of_block = 10'000'000; // between two polls
constexpr std::int64_t pairs_for_threads = 500'000; // fewer are done before a thread has begun
constexpr std::int64_t nodes_of_piece = 64;
constexpr float standard_k_coef = 0.05f, largest_dt = 0.1f;

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

// Asked when no unfrozen node has an edge.
bool goes_on_without_springs(process_frame &frame) {
  return frame.yes({.text = "NB! Problem in KK algorithm: at least one of unfrozen nodes have no edges!",
                    .title = {},
                    .by_default = answer::yes,
                    .choice = answer_choice::ok_cancel});
}

} // namespace

std::string ask_for_stiffness(process_frame &frame, spring_values &values, const std::string &value) {
  double entered = 0;
  const std::string reply =
      value.empty() ? frame.input({"k_coef", "Kamada-Kawaii", number_text(values.k_coef, 3)}) : value;
  if (number_parse(reply, entered) && entered >= 0 && std::isfinite(static_cast<float>(entered)))
    values.k_coef = static_cast<float>(entered);
  return reply;
}

void spring_layout::make_KamadaKawaii_Arrays(const layout_graph &graph, std::span<const std::uint8_t> frozen) {
  // calls `take(under, edge, neighbour)` for each entry, edge by edge
  const auto for_all_entries = [&](const auto &take) {
    for (std::size_t e = 0; e < graph.edges.size(); ++e) {
      const layout_edge &edge = graph.edges[e];
      if (!edge.is_arc && frozen[place(edge.from)] == 0)
        take(edge.to, e, edge.from);
      if (!edge.is_arc && frozen[place(edge.to)] == 0)
        take(edge.from, e, edge.to);
    }
  };
  adjacency_start_.assign(place(graph.n) + 2, 0);
  for_all_entries([this](std::int32_t under, std::size_t, std::int32_t) { ++adjacency_start_[place(under) + 1]; });
  for (std::size_t i = 1; i < adjacency_start_.size(); ++i)
    adjacency_start_[i] += i == 1 ? 1 : adjacency_start_[i - 1];
  adjacency_edge_.assign(place(adjacency_start_.back()), 0);
  adjacency_node_ = stiffness_ = adjacency_edge_;
  std::vector<std::int32_t> next = adjacency_start_;
  for_all_entries([&](std::int32_t under, std::size_t e, std::int32_t neighbour) {
    const std::size_t at = place(next[place(under)]++);
    adjacency_edge_[at] = static_cast<std::int32_t>(e) + 1;
    adjacency_node_[at] = neighbour;
    stiffness_[at] = graph.edges[e].stiffness;
  });
  unfrozen_.clear();
  for (std::int32_t i = 1; i <= graph.n; ++i)
    if (frozen[place(i)] == 0)
      unfrozen_.push_back(i);
  for (std::vector<float> *values : {&at_x_, &at_y_, &force_x_, &force_y_})
    values->resize(unfrozen_.size());
}

bool spring_layout::add_repulsion(bool use_exp, spring_nodes &nodes, process_frame &frame) {
  for (std::size_t u = 0; u < unfrozen_.size(); ++u) {
    at_x_[u] = nodes.x[place(unfrozen_[u])];
    at_y_[u] = nodes.y[place(unfrozen_[u])];
  }
  const std::span<const float> x = std::span(nodes.x).subspan(1), y = std::span(nodes.y).subspan(1);
  const auto n = static_cast<std::int64_t>(x.size()), n_unfrozen = static_cast<std::int64_t>(unfrozen_.size());
  const std::int64_t block = std::max(nodes_of_piece, pairs_of_block / n / nodes_of_piece * nodes_of_piece);
  const bool done = run_in_blocks(
      0, n_unfrozen - 1, block, nodes_of_piece, n * n_unfrozen < pairs_for_threads ? 1 : threads_,
      [&](std::int64_t first, std::int64_t last, int) {
        const auto from = static_cast<std::size_t>(first), count = static_cast<std::size_t>(last - first + 1);
        sum_of_repulsion({use_exp}, x, y, std::span(at_x_).subspan(from, count), std::span(at_y_).subspan(from, count),
                         std::span(force_x_).subspan(from, count), std::span(force_y_).subspan(from, count));
      },
      [&](std::int64_t) { return frame.goes_on(); });
  for (std::size_t u = 0; u < unfrozen_.size(); ++u) {
    nodes.fx[place(unfrozen_[u])] = force_x_[u];
    nodes.fy[place(unfrozen_[u])] = force_y_[u];
  }
  return done;
}

// The square of the longest edge that pulls an unfrozen node; -1 when none does.
float spring_layout::add_springs(float k_coef, spring_nodes &nodes) const {
  float x_max2 = -1;
  const auto n = static_cast<std::int32_t>(adjacency_start_.size()) - 2;
  for (std::int32_t i = 1; i <= n; ++i) {
    const float x = nodes.x[place(i)], y = nodes.y[place(i)];
    for (std::int32_t at = adjacency_start_[place(i)]; at < adjacency_start_[place(i) + 1]; ++at) {
      const std::size_t j = place(adjacency_node_[place(at)]);
      const float dx = nodes.x[j] - x, dy = nodes.y[j] - y, stiffness = static_cast<float>(stiffness_[place(at)]);
      x_max2 = std::max(x_max2, dx * dx + dy * dy);
      nodes.fx[j] += -k_coef * dx * stiffness;
      nodes.fy[j] += -k_coef * dy * stiffness;
    }
  }
  return x_max2;
}

float spring_layout::largest_force(const spring_nodes &nodes) const {
  float largest2 = 0;
  for (const std::int32_t i : unfrozen_)
    largest2 = std::max(largest2, nodes.fx[place(i)] * nodes.fx[place(i)] + nodes.fy[place(i)] * nodes.fy[place(i)]);
  return std::sqrt(largest2);
}

// The old velocity moves a node and is slowed down; then force and friction give the new one.
void spring_layout::move_nodes(const spring_values &values, float v_limit, spring_nodes &nodes,
                               spring_step &step) const {
  for (const std::int32_t node : unfrozen_) {
    const std::size_t i = place(node);
    nodes.x[i] += values.dt * nodes.vx[i];
    nodes.y[i] += values.dt * nodes.vy[i];
    nodes.vx[i] += (nodes.fx[i] - values.friction_coef * nodes.vx[i]) * values.dt;
    nodes.vy[i] += (nodes.fy[i] - values.friction_coef * nodes.vy[i]) * values.dt;
    float s2 = nodes.vx[i] * nodes.vx[i] + nodes.vy[i] * nodes.vy[i];
    if (std::sqrt(s2) > v_limit) {
      const float share = v_limit / std::sqrt(s2);
      nodes.vx[i] *= share;
      nodes.vy[i] *= share;
      s2 = v_limit * v_limit;
    }
    step.energy += s2;
    step.v_max = std::max(step.v_max, std::sqrt(s2));
  }
}

spring_step spring_layout::CalcPositionsNodes_KamadaKawaii_step(bool use_exp, spring_values &values,
                                                                spring_nodes &nodes, bool &warned,
                                                                process_frame &frame) {
  spring_step step;
  if (unfrozen_.empty())
    return step;
  if (values.k_coef < 0)
    values.k_coef = standard_k_coef;
  values.rest_distance = 100.0f;
  if (!add_repulsion(use_exp, nodes, frame))
    return step;
  const float x_max2 = add_springs(values.k_coef, nodes);
  step.go_on = !frame.stop_requested_get();
  if (x_max2 < 0 && !warned) {
    warned = goes_on_without_springs(frame);
    step.go_on = step.go_on && warned;
    return step;
  }
  step.x_max = x_max2 < 0 ? 0.0f : std::sqrt(x_max2);
  step.f_max = largest_force(nodes);
  values.friction_coef = 1.0f;
  const double half_rest = 0.5 * std::pow(static_cast<double>(values.k_coef), -1.0 / 3); // of a pair of nodes
  values.dt = static_cast<float>(half_rest * values.friction_coef / step.f_max);
  if (values.dt > largest_dt)
    values.dt = largest_dt;
  move_nodes(values, static_cast<float>(half_rest / 0.1), nodes, step);
  return step;
}

} // namespace orb
