// The circles and the growth.
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "support/layout_nets.h"
#include "support/scripted_frame.h"
#include "viewer/growth_layout.h"
#include "viewer/initial_position.h"

namespace orb {
namespace {

placed_nodes nodes_for(std::int32_t n) {
  placed_nodes nodes;
  nodes.x.assign(static_cast<std::size_t>(n) + 1, 0.0f);
  nodes.y = nodes.x;
  nodes.is_coor_known.assign(nodes.x.size(), 0);
  return nodes;
}

TEST(initial_position, choice) {
  const std::string defrost = "All node coordinates are known and frozen. Defrost?",
                    order = "Use ordering of clusters?";
  struct {
    std::int32_t n_nodes, n_unfrozen;
    bool are_known;
    std::string prompt, reply;
    int code;
  } const cases[]{{0, 0, true, "", "", 0},         {1, 1, true, "", "", 2},          {5, 0, true, defrost, "yes", 1},
                  {5, 0, false, defrost, "no", 0}, {5, 2, true, "", "", 2},          {5, 5, false, order, "yes", 5},
                  {5, 5, false, order, "no", 4},   {5, 5, false, order, "cancel", 3}};
  for (const auto &one : cases) {
    scripted_frame shown;
    shown.answer(one.prompt, one.reply);
    EXPECT_EQ(static_cast<int>(initial_position_choose(shown.frame, one.n_nodes, one.n_unfrozen, one.are_known)),
              one.code);
    EXPECT_EQ(shown.record.questions.size(), one.prompt.empty() ? 0u : 1u);
  }
}

TEST(initial_position, circle_has_half_a_unit_between_nodes_within_its_limits) {
  for (const auto &[n, radius] : {std::pair{4, 1.0}, {80, 80 * 0.5 / 6.283}, {1000, 10.0}}) {
    placed_nodes nodes = nodes_for(n);
    place_on_circle(n, nodes);
    EXPECT_FLOAT_EQ(nodes.x[3], static_cast<float>(radius * std::cos(3 * 6.283 / n)));
    EXPECT_FLOAT_EQ(nodes.y[3], static_cast<float>(radius * std::sin(3 * 6.283 / n)));
    EXPECT_EQ(nodes.is_coor_known[static_cast<std::size_t>(n)], 1);
  }
}

TEST(initial_position, clusters_are_ellipses_across_the_circle) {
  random_source chance(1);
  placed_nodes nodes = nodes_for(10);
  nodes.x[10] = 77; // of no cluster
  const std::vector<std::int32_t> cluster{0, 2, 3, 2, 2, 1, 2, 3, 3, 2, -1};
  place_on_circle_by_clusters(cluster, 3, chance, nodes);
  EXPECT_EQ(nodes.x[10], 77.0f);
  EXPECT_EQ(nodes.is_coor_known[10], 0);
  EXPECT_FLOAT_EQ(nodes.x[5], static_cast<float>(std::cos(0.5 * 6.283 / 10))) << "alone, on the middle of its part";
  const double middle = (5 * 0.5 + 1) * 6.283 / 10;
  double j = 0;
  for (const std::size_t node : {1, 3, 4, 6, 9}) {
    const double dx = nodes.x[node] - std::cos(middle), dy = nodes.y[node] - std::sin(middle);
    const double u = 3 * (dx * std::cos(middle) + dy * std::sin(middle)),
                 v = 9 * (dy * std::cos(middle) - dx * std::sin(middle));
    const double turn = ((5 * 0.5 / 4 + ++j) / (5 * 5 / 4.0) + 0.5) * 6.283, scale = std::hypot(u, v);
    EXPECT_NEAR(u, scale * std::cos(turn), 1e-5);
    EXPECT_NEAR(v, scale * std::sin(turn), 1e-5);
    const double least = static_cast<int>(j) % 2 == 1 ? 1.2 : 1.0;
    EXPECT_TRUE(scale > least - 1e-5 && scale < least + 0.1 + 1e-5) << scale;
  }
}

struct growing : testing::Test {
  scripted_frame shown;
  class_net_elngKK growth;

  // Nodes not in `placed` have no place.
  bool grow(std::int32_t n, const std::vector<layout_edge> &edges, const std::vector<growth_node> &placed = {}) {
    growth.KK_inicializate(n, 1);
    for (std::int32_t i = 0; i < n; ++i)
      EXPECT_TRUE(growth.add_node(
          static_cast<std::size_t>(i) < placed.size() ? placed[static_cast<std::size_t>(i)] : growth_node{}, false));
    EXPECT_FALSE(growth.add_node({}, false)) << "full";
    for (const layout_edge &edge : edges)
      EXPECT_TRUE(growth.add_edge(edge, true));
    return growth.startKK(shown.frame);
  }
  void expect_at(std::int32_t node, double x, double y) const {
    EXPECT_NEAR(growth.node_Xcoor_get(node), x, 1e-4) << node;
    EXPECT_NEAR(growth.node_Ycoor_get(node), y, 1e-4) << node;
  }
};

TEST_F(growing, isolated_nodes_go_to_a_grid) {
  EXPECT_TRUE(grow(6, {}));
  const std::pair<int, int> places[]{{0, 0}, {15, 0}, {0, 15}, {15, 15}, {30, 0}, {30, 15}};
  for (std::int32_t i = 0; i < 6; ++i)
    expect_at(i + 1, places[i].first, places[i].second);
  EXPECT_EQ(shown.record.panels.front(), "4: Initial position...");
  EXPECT_EQ(shown.record.panels[2], "4: Initial position... 2 of 6");
  EXPECT_EQ(shown.record.panels.back(), "4: Initial position... Finished");
  EXPECT_TRUE(shown.record.messages.empty());
}

// Node 2 has the most edges; node 1 alone and nodes 3 and 4 together are its neighbours, node 5 hangs on node 1.
TEST_F(growing, groups_of_a_rank_keep_away_from_each_other) {
  EXPECT_TRUE(grow(5, {{1, 2}, {2, 3}, {4, 2}, {3, 4}, {1, 5, 1, true}}));
  const double degree = std::numbers::pi / 180, x = 5 * std::cos(degree), y = 5 * std::sin(degree);
  expect_at(2, 0, 0);
  expect_at(1, x + 5.0 / 3, y); // all directions are equally good: the first
  expect_at(3, -x + 5.0 / 3, -y);
  expect_at(4, -x - 5.0 / 3, -y);
  EXPECT_NEAR(std::hypot(growth.node_Xcoor_get(5) - 5.0 / 3 - x, growth.node_Ycoor_get(5) - y), 5, 1e-4);
  EXPECT_GT(growth.node_Xcoor_get(5), x + 5) << "away from the others";
}

TEST_F(growing, what_has_a_place_stays_and_unlinked_nodes_are_told_once) {
  EXPECT_TRUE(grow(5, {{1, 3}, {4, 5}}, {{7, 8, true, false}, {-20, 1, false, true}}));
  expect_at(1, 7, 8);
  expect_at(2, -20, 1);
  EXPECT_EQ(shown.record.messages, (std::vector<std::string>{"In total, 2 added clones are not linked?!"}));
}

TEST_F(growing, orbits_grow_with_the_group) {
  std::vector<layout_edge> edges; // a node and a ring of 40 around it
  for (std::int32_t i = 2; i <= 41; ++i) {
    edges.push_back({1, i});
    edges.push_back({i, i == 41 ? 2 : i + 1});
  }
  EXPECT_TRUE(grow(41, edges));
  const double radius = 40 * 0.5 * 3 / 6.28318530718, degree = std::numbers::pi / 180;
  for (std::int32_t i = 2; i <= 41; ++i)
    EXPECT_NEAR(std::hypot(growth.node_Xcoor_get(i) - radius * std::cos(degree),
                           growth.node_Ycoor_get(i) - radius * std::sin(degree)),
                2.5, 1e-4);
}

TEST_F(growing, stopped_midway_keeps_what_is_placed) {
  int n_yields = 0;
  shown.on_yield = [&] { return ++n_yields > 6; };
  EXPECT_FALSE(grow(300, interval_net(300, 8, 0, 1)));
  int n_placed = 0;
  for (std::int32_t i = 1; i <= 300; ++i)
    n_placed += growth.is_placed_get(i) ? 1 : 0;
  EXPECT_TRUE(n_placed > 1 && n_placed < 300) << n_placed;
}

} // namespace
} // namespace orb
