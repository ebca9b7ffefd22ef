#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "support/layout_nets.h"
#include "support/scripted_frame.h"
#include "viewer/spring_layout.h"

namespace orb {
namespace {

std::size_t at(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

struct spring_net {
  std::vector<layout_edge> edges;
  std::vector<std::uint8_t> frozen;
  spring_nodes nodes;
  spring_values values;

  layout_graph graph() const { return {static_cast<std::int32_t>(frozen.size()) - 1, edges}; }
};

// Some nodes frozen, some edges arcs, some repeated; places in a square, two nodes at one point.
spring_net random_net(std::int32_t n, double side, std::uint64_t seed) {
  random_source chance(seed);
  spring_net net;
  net.frozen.assign(at(n) + 1, 0);
  net.nodes.resize(n);
  for (std::int32_t i = 1; i <= n; ++i) {
    net.frozen[at(i)] = chance.uniform() < 0.2 ? 1 : 0;
    net.nodes.x[at(i)] = static_cast<float>(side * chance.uniform());
    net.nodes.y[at(i)] = static_cast<float>(side * chance.uniform());
    for (int k = 0; k < 3; ++k)
      net.edges.push_back({i, chance.number_up_to(n), chance.number_up_to(2), chance.uniform() < 0.1});
  }
  net.nodes.x[2] = net.nodes.x[1];
  net.nodes.y[2] = net.nodes.y[1];
  return net;
}

float plain_divisor(bool use_exp, float r2) {
  const float r = std::sqrt(r2), w = std::exp(r) - std::exp(1.0f) + 1.0f;
  if (r2 < 0.01f)
    return 0.001f;
  return use_exp && r2 <= w ? w * r : r * r2;
}

void plain_forces(bool use_exp, spring_net &net) {
  spring_nodes &nodes = net.nodes;
  const std::int32_t n = net.graph().n;
  for (std::int32_t i = 1; i <= n; ++i) {
    nodes.fx[at(i)] = nodes.fy[at(i)] = 0;
    for (std::int32_t j = 1; j <= n; ++j) {
      const float dx = nodes.x[at(i)] - nodes.x[at(j)], dy = nodes.y[at(i)] - nodes.y[at(j)], r2 = dx * dx + dy * dy;
      if (i == j || (use_exp && r2 >= 36.0f))
        continue;
      nodes.fx[at(i)] += dx / plain_divisor(use_exp, r2);
      nodes.fy[at(i)] += dy / plain_divisor(use_exp, r2);
    }
  }
  const auto pull = [&](std::int32_t i, std::int32_t j, const layout_edge &edge) {
    const float dx = nodes.x[at(j)] - nodes.x[at(i)], dy = nodes.y[at(j)] - nodes.y[at(i)];
    nodes.fx[at(j)] += -net.values.k_coef * dx * static_cast<float>(edge.stiffness);
    nodes.fy[at(j)] += -net.values.k_coef * dy * static_cast<float>(edge.stiffness);
  };
  for (std::int32_t i = 1; i <= n; ++i)
    for (const layout_edge &edge : net.edges) {
      if (!edge.is_arc && edge.to == i)
        pull(i, edge.from, edge);
      if (!edge.is_arc && edge.from == i)
        pull(i, edge.to, edge);
    }
}

double plain_step(bool use_exp, spring_net &net) {
  plain_forces(use_exp, net);
  spring_nodes &nodes = net.nodes;
  float f_max2 = 0;
  for (std::int32_t i = 1; i <= net.graph().n; ++i)
    if (net.frozen[at(i)] == 0)
      f_max2 = std::max(f_max2, nodes.fx[at(i)] * nodes.fx[at(i)] + nodes.fy[at(i)] * nodes.fy[at(i)]);
  const double a = 0.5 * std::pow(static_cast<double>(net.values.k_coef), -1.0 / 3);
  const float dt = std::min(static_cast<float>(a / std::sqrt(f_max2)), 0.1f), v_limit = static_cast<float>(a / 0.1);
  double energy = 0;
  for (std::int32_t i = 1; i <= net.graph().n; ++i) {
    if (net.frozen[at(i)] != 0)
      continue;
    float &vx = nodes.vx[at(i)], &vy = nodes.vy[at(i)];
    nodes.x[at(i)] += dt * vx;
    nodes.y[at(i)] += dt * vy;
    vx += (nodes.fx[at(i)] - vx) * dt;
    vy += (nodes.fy[at(i)] - vy) * dt;
    float s2 = vx * vx + vy * vy;
    if (const float s = std::sqrt(s2); s > v_limit) {
      vx *= v_limit / s;
      vy *= v_limit / s;
      s2 = v_limit * v_limit;
    }
    energy += s2;
  }
  return energy;
}

TEST(spring_layout, steps_are_those_of_the_plain_formulas_to_the_bit) {
  scripted_frame shown;
  for (const std::int32_t n : {17, 900}) // the larger one is given to threads
    for (const bool use_exp : {false, true})
      for (const int threads : {1, 2}) {
        spring_net net = random_net(n, std::sqrt(n), static_cast<std::uint64_t>(n)), plain = net;
        spring_layout layout(threads);
        layout.make_KamadaKawaii_Arrays(net.graph(), net.frozen);
        bool warned = false;
        for (int step = 0; step < 4; ++step) {
          const spring_step done =
              layout.CalcPositionsNodes_KamadaKawaii_step(use_exp, net.values, net.nodes, warned, shown.frame);
          EXPECT_TRUE(done.go_on);
          EXPECT_EQ(done.energy, plain_step(use_exp, plain));
        }
        EXPECT_EQ(net.nodes.x, plain.nodes.x) << n << use_exp << threads;
        EXPECT_EQ(net.nodes.vy, plain.nodes.vy) << n << use_exp << threads;
      }
}

TEST(spring_layout, adjacency_lists_the_unfrozen_neighbours_of_every_node) {
  const std::vector<layout_edge> edges{{1, 2}, {2, 3, 5}, {3, 1, 1, true}, {3, 3}};
  const std::vector<std::uint8_t> frozen{0, 0, 1, 0};
  spring_layout layout;
  layout.make_KamadaKawaii_Arrays({3, edges}, frozen);
  using numbers = std::vector<std::int32_t>;
  const auto as_list = [](std::span<const std::int32_t> values) { return numbers(values.begin(), values.end()); };
  EXPECT_EQ(as_list(layout.adjacency_start()), (numbers{0, 1, 1, 3, 5}));
  EXPECT_EQ(as_list(layout.adjacency_edge()), (numbers{0, 1, 2, 4, 4}));
  EXPECT_EQ(as_list(layout.adjacency_node()), (numbers{0, 1, 3, 3, 3}));
  EXPECT_EQ(as_list(layout.unfrozen()), (numbers{1, 3}));
}

spring_net two_nodes(bool joined) {
  spring_net net;
  net.frozen.assign(3, 0);
  net.nodes.resize(2);
  net.nodes.x[2] = 1;
  if (joined)
    net.edges.push_back({1, 2});
  return net;
}

TEST(spring_layout, two_nodes_settle_where_spring_and_repulsion_balance) {
  scripted_frame shown;
  spring_net net = two_nodes(true);
  net.values.k_coef = -1; // becomes the standard 0.05
  spring_layout layout(1);
  layout.make_KamadaKawaii_Arrays(net.graph(), net.frozen);
  bool warned = false;
  for (int step = 0; step < 2000; ++step)
    layout.CalcPositionsNodes_KamadaKawaii_step(false, net.values, net.nodes, warned, shown.frame);
  EXPECT_NEAR(std::hypot(net.nodes.x[2] - net.nodes.x[1], net.nodes.y[2] - net.nodes.y[1]), std::cbrt(20.0), 0.01);
  net.values.k_coef = 0; // no pull, and no limit but that of the time step
  const spring_step free =
      layout.CalcPositionsNodes_KamadaKawaii_step(false, net.values, net.nodes, warned, shown.frame);
  EXPECT_EQ(net.values.dt, 0.1f);
  EXPECT_TRUE(std::isfinite(free.energy));
}

TEST(spring_layout, a_net_without_springs_asks_once_before_a_node_moves) {
  scripted_frame shown;
  const std::string problem = "NB! Problem in KK algorithm: at least one of unfrozen nodes have no edges!";
  spring_net net = two_nodes(false);
  spring_layout layout(1);
  layout.make_KamadaKawaii_Arrays(net.graph(), net.frozen);
  bool warned = false;
  const auto step = [&] {
    return layout.CalcPositionsNodes_KamadaKawaii_step(false, net.values, net.nodes, warned, shown.frame);
  };
  shown.answer(problem, "cancel");
  EXPECT_FALSE(step().go_on);
  EXPECT_FALSE(warned);
  shown.answer(problem, "ok");
  EXPECT_TRUE(step().go_on);
  EXPECT_TRUE(warned);
  EXPECT_EQ(net.nodes.vx[2], 0.0f);
  EXPECT_GT(step().energy, 0);
  EXPECT_EQ(shown.record.questions, (std::vector<std::string>{problem, problem}));
  net.frozen.assign(3, 1);
  layout.make_KamadaKawaii_Arrays(net.graph(), net.frozen);
  EXPECT_FALSE(step().go_on) << "nothing to move";
}

TEST(spring_layout, a_stopped_run_ends_with_its_step_and_a_long_step_at_once) {
  scripted_frame shown;
  shown.on_yield = [] { return true; };
  for (const std::int32_t n : {50, 4000}) {
    spring_net net = random_net(n, 50, 3);
    const spring_nodes before = net.nodes;
    spring_layout layout(1);
    layout.make_KamadaKawaii_Arrays(net.graph(), net.frozen);
    bool warned = false;
    EXPECT_FALSE(layout.CalcPositionsNodes_KamadaKawaii_step(false, net.values, net.nodes, warned, shown.frame).go_on);
    EXPECT_EQ(net.nodes.vx == before.vx, n == 4000) << n;
  }
}

TEST(spring_layout, stiffness_is_any_number_from_0_on) {
  scripted_frame shown;
  spring_values values;
  for (const auto &[reply, wanted] : {std::pair{"0.5", 0.5f}, {"-1", 0.5f}, {"much", 0.5f}, {"0", 0.0f}}) {
    shown.answer("k_coef", reply);
    ask_for_stiffness(shown.frame, values);
    EXPECT_EQ(values.k_coef, wanted) << reply;
  }
}

} // namespace
} // namespace orb
