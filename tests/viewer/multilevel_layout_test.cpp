#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>

#include "support/layout_nets.h"
#include "support/scripted_frame.h"
#include "viewer/multilevel_graph.h"
#include "viewer/multilevel_layout.h"

namespace orb {
namespace {

struct picture {
  layout_graph graph;
  std::vector<float> x, y;
  bool done = false;
  scripted_frame shown{};

  picture(std::int32_t n, const std::vector<layout_edge> &edges, const multilevel_options &options = {},
          const std::function<bool()> &on_yield = {})
      : graph{n, edges} {
    shown.on_yield = on_yield;
    done = multilevel_layout(graph, options, shown.frame, x, y);
    EXPECT_EQ(x.size(), static_cast<std::size_t>(n) + 1);
    for (std::size_t i = 0; i < x.size(); ++i)
      EXPECT_TRUE(std::isfinite(x[i]) && std::isfinite(y[i])) << i;
  }
  double distance(std::int32_t a, std::int32_t b) const {
    const auto i = static_cast<std::size_t>(a), j = static_cast<std::size_t>(b);
    return std::hypot(x[i] - x[j], y[i] - y[j]);
  }
  double correlation() const { return distance_correlation(graph, x, y); }
  // Whether c lies to the left of the way from a to b.
  bool is_left(std::int32_t a, std::int32_t b, std::int32_t c) const {
    const auto i = static_cast<std::size_t>(a), j = static_cast<std::size_t>(b), k = static_cast<std::size_t>(c);
    return (x[j] - x[i]) * (y[k] - y[i]) > (y[j] - y[i]) * (x[k] - x[i]);
  }
  int n_crossings() const {
    int n = 0;
    for (const layout_edge &e : graph.edges)
      for (const layout_edge &f : graph.edges)
        if (&e < &f && e.from != f.from && e.from != f.to && e.to != f.from && e.to != f.to &&
            is_left(e.from, e.to, f.from) != is_left(e.from, e.to, f.to) &&
            is_left(f.from, f.to, e.from) != is_left(f.from, f.to, e.to))
          ++n;
    return n;
  }
  double aspect() const { return *std::max_element(x.begin(), x.end()) / *std::max_element(y.begin(), y.end()); }
};

std::vector<layout_edge> path(std::int32_t n, bool closed = false) {
  std::vector<layout_edge> edges;
  for (std::int32_t i = 1; i < n; ++i)
    edges.push_back({i, i + 1});
  if (closed)
    edges.push_back({n, 1});
  return edges;
}

TEST(multilevel_layout, a_line_is_drawn_unfolded_and_without_crossings) {
  for (const std::int32_t n : {12, 30, 300, 2000}) { // the longer ones are bent to and fro
    const std::vector<layout_edge> edges = path(n);
    const picture drawn(n, edges);
    EXPECT_TRUE(drawn.done);
    EXPECT_GT(drawn.correlation(), 0.99) << n;
    EXPECT_EQ(drawn.n_crossings(), 0) << n;
    EXPECT_TRUE(n < 100 || drawn.aspect() < 12) << n;
    for (const layout_edge &edge : edges)
      EXPECT_NEAR(drawn.distance(edge.from, edge.to), 1, 0.5) << edge.from << " of " << n;
  }
}

TEST(multilevel_layout, nets_of_intervals_are_drawn_unfolded) {
  for (const std::uint64_t seed : {1, 2, 3}) {
    const std::vector<layout_edge> edges = interval_net(1500, 13, 0, seed),
                                   doubtful = interval_net(1500, 13, 0.0003, seed);
    EXPECT_GT(picture(1500, edges).correlation(), 0.94) << seed;
    EXPECT_GT(picture(1500, doubtful).correlation(), 0.85) << seed;
  }
}

// No picture in the plane shows all steps of such a net (docs/performance.md); the line in it can be shown.
TEST(multilevel_layout, many_false_edges) {
  const std::vector<layout_edge> any = interval_net(2000, 13, 0.002, 1), line = interval_net(2000, 13, 0, 1);
  EXPECT_GT(picture(2000, any).correlation(), 0.865);
  const std::vector<layout_edge> lines = interval_lines(3000, 1000, 13, 0.002, 2);
  EXPECT_GT(picture(3000, lines).correlation(), 0.925);
  const picture unfolded(2000, any, {.without_doubtful = true});
  EXPECT_GT(distance_correlation({2000, line}, unfolded.x, unfolded.y), 0.98);
}

// False edges and no others, as far as it can be known; a component stays one.
TEST(multilevel_layout, doubtful_edges) {
  for (const std::uint64_t seed : {1, 2, 3}) {
    const std::vector<layout_edge> right = interval_net(1500, 8, 0, seed), all = interval_net(1500, 8, 0.004, seed);
    std::set<std::pair<std::int32_t, std::int32_t>> is_right, is_left;
    for (const layout_edge &edge : right)
      is_right.insert(std::minmax(edge.from, edge.to));
    const std::vector<component_graph> whole = components_of({1500, all}), thinned = components_of({1500, all}, true);
    ASSERT_EQ(whole.size(), thinned.size());
    for (std::size_t c = 0; c < whole.size(); ++c) {
      EXPECT_EQ(std::set(whole[c].node.begin(), whole[c].node.end()),
                std::set(thinned[c].node.begin(), thinned[c].node.end()));
      for (std::int32_t v = 0; v < thinned[c].count(); ++v)
        for (const std::int32_t next : thinned[c].neighbours(v))
          is_left.insert(std::minmax(thinned[c].node[static_cast<std::size_t>(v)],
                                     thinned[c].node[static_cast<std::size_t>(next)]));
    }
    std::size_t n_lost = 0, n_joining = components_of({1500, right}).size() - whole.size();
    for (const auto &edge : is_right)
      n_lost += is_left.count(edge) == 0 ? 1 : 0;
    EXPECT_LE(n_lost, 1u) << seed;
    EXPECT_LE(is_left.size() - (is_right.size() - n_lost), n_joining + n_lost) << seed;
  }
  std::vector<layout_edge> grid = path(100, true);
  for (std::int32_t i = 1; i <= 90; ++i)
    grid.push_back({i, i + 10});
  const std::vector<component_graph> same = components_of({100, grid}, true);
  EXPECT_EQ(same[0].neighbour.size(), 2 * grid.size()) << "without triangles nothing is doubtful";
}

TEST(multilevel_layout, small_shapes) {
  const std::vector<layout_edge> ring = path(100, true), pair{{2, 1}};
  const picture round(100, ring);
  EXPECT_GT(round.correlation(), 0.99);
  EXPECT_EQ(round.n_crossings(), 0);
  std::vector<layout_edge> star;
  for (std::int32_t i = 2; i <= 20; ++i)
    star.push_back({1, i});
  const picture spread(20, star);
  for (std::int32_t i = 2; i <= 20; ++i)
    EXPECT_NEAR(spread.distance(1, i), 1, 0.5);
  EXPECT_NEAR(picture(2, pair).distance(1, 2), 1, 1e-6);
  EXPECT_TRUE(picture(0, {}).done);
  EXPECT_TRUE(picture(1, {}).done);
}

TEST(multilevel_layout, repeats_and_edges_from_a_node_to_itself_change_nothing) {
  const std::vector<layout_edge> edges = interval_net(200, 6, 0, 1);
  std::vector<layout_edge> more = edges;
  for (const layout_edge &edge : edges) {
    more.push_back({edge.to, edge.from, 1, true});
    more.push_back({edge.from, edge.from});
  }
  const picture plain(200, edges), repeated(200, more);
  EXPECT_EQ(plain.x, repeated.x);
  EXPECT_EQ(plain.y, repeated.y);
}

TEST(multilevel_layout, the_same_seed_gives_the_same_picture_for_any_number_of_threads) {
  const std::vector<layout_edge> edges = interval_net(3000, 9, 0.001, 5); // one large component and small ones
  const picture one(3000, edges, {.threads = 1}), two(3000, edges, {.threads = 2}), other(3000, edges, {.seed = 2});
  EXPECT_EQ(one.x, two.x);
  EXPECT_EQ(one.y, two.y);
  EXPECT_NE(one.x, other.x);
  EXPECT_EQ(one.shown.progress.back(), (std::pair<std::int64_t, std::int64_t>{3000, 3000}));
}

TEST(multilevel_layout, components_lie_apart_on_a_page_of_the_proportions_asked_for) {
  const std::vector<layout_edge> edges = interval_net(1500, 4, 0, 2);
  for (const double aspect : {0.7, 1.5, 4.0}) {
    const picture drawn(1500, edges, {.aspect = aspect});
    EXPECT_NEAR(drawn.aspect() / aspect, 1, 0.25) << aspect;
    std::vector<std::int32_t> component_of(drawn.x.size());
    for (const component_graph &component : components_of(drawn.graph))
      for (const std::int32_t i : component.node)
        component_of[static_cast<std::size_t>(i)] = component.node[0];
    double least = 1e9;
    for (std::int32_t i = 1; i <= drawn.graph.n; ++i)
      for (std::int32_t j = 1; j < i; ++j)
        if (component_of[static_cast<std::size_t>(i)] != component_of[static_cast<std::size_t>(j)])
          least = std::min(least, drawn.distance(i, j));
    EXPECT_GT(least, 1.999) << aspect;
  }
}

TEST(multilevel_layout, a_stop_keeps_what_was_reached) {
  const std::vector<layout_edge> edges = interval_net(5000, 10, 0.001, 1);
  int n_all = 0;
  picture(5000, edges, {}, [&] { return ++n_all < 0; });
  for (const int n_before : {0, 30, n_all / 2, n_all - 60}) {
    int n_yields = 0;
    const picture stopped(5000, edges, {}, [&] { return n_yields++ >= n_before; });
    EXPECT_FALSE(stopped.done) << n_before;
    EXPECT_GT(stopped.correlation(), 0.3) << n_before << ": even the first guess shows what is far";
  }
}

} // namespace
} // namespace orb
