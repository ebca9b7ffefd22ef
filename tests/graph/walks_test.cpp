// Walks over nets against formulations that follow their definition step by step.
#include <gtest/gtest.h>

#include <algorithm>

#include "graph/component_lists.h"
#include "graph/label_forest.h"
#include "support/net_helpers.h"

namespace {

using namespace orb_test;

class random_nets : public testing::TestWithParam<int> {
protected:
  random_source chance_{7, static_cast<std::uint64_t>(GetParam())};
  std::int32_t n_ = 1 + chance_.number_up_to(40);
  class_net net_ = net_of(n_, random_edges(n_, chance_.number_up_to(4 * n_), 1 + chance_.number_up_to(4),
                                           chance_.number_up_to(3) - 1, chance_));
};

TEST_P(random_nets, ranks) {
  const edge_map edges = edges_of(net_);
  const double cutoff = edges.empty() ? 14 : edges.begin()->second.value; // a record of that very value passes
  for (int mode = 0; mode <= 2; ++mode) {
    const number_list starts{chance_.number_up_to(n_), chance_.number_up_to(n_), 1};
    const std::int32_t limit = chance_.number_up_to(6) - 1;
    const bool use_cutoff = chance_.number_up_to(2) == 1;
    std::int32_t n_rank = limit;
    number_list ranks, reached;
    std::vector<std::int32_t> n_in_rank;
    bool connected = false;
    net_.calculate_ranks_of_vertices(starts, ranks, mode, use_cutoff, cutoff, n_rank, reached, n_in_rank, connected);
    const auto plain = plain_ranks(net_, {starts.members().begin(), starts.members().end()}, mode == 2 ? n_ : limit,
                                   use_cutoff, cutoff);
    number_list plain_reached;
    std::vector<std::int32_t> plain_count(n_in_rank.size(), 0);
    for (vertex_number v = 1; v <= n_; ++v) {
      const std::int32_t rank = plain[static_cast<std::size_t>(v)];
      ASSERT_EQ(ranks(v), mode == 0 ? std::max(rank, 0) : rank);
      if (rank < 0)
        continue;
      plain_reached.add(v);
      ++plain_count[static_cast<std::size_t>(rank)];
    }
    EXPECT_EQ(reached, plain_reached);
    EXPECT_EQ(n_in_rank, plain_count);
    ASSERT_GE(n_in_rank.size(), static_cast<std::size_t>(mode == 2 ? n_ : limit) + 1);
    if (mode != 2) {
      EXPECT_EQ(n_rank, limit);
      continue;
    }
    EXPECT_EQ(n_rank, *std::max_element(plain.begin(), plain.end()));
    EXPECT_EQ(connected, plain_reached.count() == n_);
  }
}

TEST_P(random_nets, components) {
  number_list classes;
  std::int32_t n_classes = 0, plain_n = 0;
  net_.clustering_based_on_net(classes, n_classes);
  EXPECT_EQ(classes, plain_components(net_, plain_n));
  EXPECT_EQ(n_classes, plain_n);
  // the same forest fed in random order, with joins that were made before
  label_forest forest;
  forest.start(n_);
  std::vector<std::pair<vertex_number, vertex_number>> pairs;
  for (const auto &[ends, edge] : edges_of(net_))
    pairs.push_back(ends);
  for (std::size_t k = 0; k < pairs.size(); ++k) {
    std::swap(pairs[k], pairs[static_cast<std::size_t>(chance_.number_up_to(static_cast<int>(k) + 1)) - 1]);
  }
  for (const auto &[a, b] : pairs) {
    const bool apart = !forest.joined(a, b);
    ASSERT_EQ(forest.join(a, b), apart);
    ASSERT_LE(forest.label_get(b), b);
  }
  number_list numbers, sizes;
  forest.number_clusters(numbers, sizes, n_classes);
  EXPECT_EQ(numbers, classes);
}

TEST_P(random_nets, characteristics_of_vertices_and_edges) {
  net_workspace workspace;
  const component_lists components(net_);
  std::int32_t n_clusters = 0, plain_n = 0;
  for (vertex_number v = 1; v <= n_; ++v)
    for (std::int32_t steps = 1; steps <= 3; ++steps) {
      const bool use_cutoff = chance_.number_up_to(2) == 1;
      std::vector<std::int32_t> n_in_rank;
      net_.vertex_net_characteristics(v, use_cutoff, 15, n_in_rank, n_clusters, steps, workspace);
      const auto ranks = plain_ranks(net_, {v}, steps, use_cutoff, 15);
      number_list list;
      std::vector<std::int32_t> plain_count(static_cast<std::size_t>(steps) + 1, 0);
      for (vertex_number w = 1; w <= n_; ++w) {
        if (ranks[static_cast<std::size_t>(w)] < 0)
          continue;
        ++plain_count[static_cast<std::size_t>(ranks[static_cast<std::size_t>(w)])];
        if (w != v)
          list.add(w);
      }
      class_net ball;
      net_workspace own;
      net_.create_sub_net(list, list.count(), true, nullptr, ball, own);
      plain_components(ball, plain_n);
      ASSERT_EQ(n_clusters, plain_n);
      ASSERT_EQ(n_in_rank, plain_count);
      net_.vertex_net_characteristics(v, use_cutoff, 15, n_in_rank, n_clusters, steps, workspace, &components);
      ASSERT_EQ(n_clusters, plain_n) << "with the rest asked where that is cheaper";
      ASSERT_EQ(n_in_rank, plain_count);

      for (std::int32_t k = 1; k <= net_.number_of_edges_for_vertex_total_get(v); ++k) {
        net_.edge_net_characteristic(v, k, n_clusters, steps, workspace);
        const vertex_number w = net_.edges_of_vertex(v)[static_cast<std::size_t>(k) - 1].neighbour;
        const auto from_both = plain_ranks(net_, {v, w}, steps);
        list.clear();
        for (vertex_number u = 1; u <= n_; ++u)
          if (from_both[static_cast<std::size_t>(u)] >= 0)
            list.add(u);
        net_.create_sub_net(list, list.count(), true, nullptr, ball, own);
        for (edge_adress e = 1; e <= ball.number_of_edges_get(); ++e)
          ball.change_edge_index(e, 0);
        const auto place = [&list](vertex_number u) {
          return static_cast<std::int32_t>(std::find(list.members().begin(), list.members().end(), u) -
                                           list.members().begin()) +
                 1;
        };
        std::int32_t at = 0;
        edge_adress e = 0;
        bool exists = false;
        ball.edge_is_exist_slow(place(v), place(w), at, e, exists);
        ball.change_edge_index(e, -1);
        ball.edge_is_exist_slow(place(w), place(v), at, e, exists);
        ball.change_edge_index(e, -1);
        class_net without;
        ball.create_sub_net_without_edges_index(-1, without);
        plain_components(without, plain_n);
        ASSERT_EQ(n_clusters, plain_n);
      }
    }
}

// The width of the net at start s, by the definition.
std::int32_t plain_end_width(const class_net &net, const std::vector<std::int32_t> &ranks, std::int32_t e) {
  std::set<vertex_number> second, third;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v) {
    if (ranks[static_cast<std::size_t>(v)] == 2)
      second.insert(v);
    if (ranks[static_cast<std::size_t>(v)] == 3)
      third.insert(v);
  }
  const auto outside = [&](const std::set<vertex_number> &around) {
    const auto ball = plain_ranks(net, around, 2);
    return static_cast<std::int32_t>(std::count_if(
        second.begin(), second.end(), [&ball](vertex_number v) { return ball[static_cast<std::size_t>(v)] < 0; }));
  };
  if (e >= 3)
    return outside(third);
  auto smallest = static_cast<std::int32_t>(second.size()) - 1;
  for (const vertex_number u : second)
    smallest = std::min(smallest, outside({u}));
  return smallest;
}

struct plain_diameter {
  bool connected = true;
  std::int32_t radius = 0, diameter = 0;
  vertex_number start = 1;
  number_list end_width;
};

plain_diameter plain_search(const class_net &net, bool all_vertices, bool use_end_width) {
  const std::int32_t n = net.number_of_vertices_get();
  plain_diameter found;
  found.end_width.resize(n);
  found.radius = n;
  const auto from_1 = plain_ranks(net, {1}, n);
  found.connected = std::count(from_1.begin() + 1, from_1.end(), -1) == 0;
  const std::int32_t largest = *std::max_element(from_1.begin() + 1, from_1.end());
  bool first = true;
  for (vertex_number c = 1; c <= n && found.connected; ++c) {
    if (!all_vertices && from_1[static_cast<std::size_t>(c)] != largest)
      continue;
    if (first && !all_vertices)
      found.start = c;
    first = false;
    const auto ranks = plain_ranks(net, {c}, n);
    const std::int32_t e = *std::max_element(ranks.begin() + 1, ranks.end());
    if (all_vertices)
      found.radius = std::min(found.radius, e);
    if (e + 1 > found.diameter) {
      found.diameter = e + 1;
      found.start = c;
    }
    if (found.diameter == e + 1 && use_end_width && e >= 2) {
      found.end_width(c) = plain_end_width(net, ranks, e);
      if (c != found.start && found.end_width(c) < found.end_width(found.start))
        found.start = c;
    }
  }
  if (!all_vertices && found.connected)
    found.radius = found.diameter / 2;
  return found;
}

void expect_search_as_plain(const class_net &net, bool use_end_width) {
  scripted_frame scripted;
  for (const bool all : {true, false}) {
    plain_diameter got;
    if (all)
      net.calculate_net_diam_and_width_FindBestStartOfDiamPath(scripted.frame, got.connected, got.radius, got.diameter,
                                                               got.start, use_end_width, got.end_width);
    else
      net.calculate_net_diam_and_width_FindBestStartOfDiamPath_new(
          scripted.frame, got.connected, got.radius, got.diameter, got.start, use_end_width, got.end_width);
    const plain_diameter plain = plain_search(net, all, use_end_width);
    EXPECT_EQ(got.connected, plain.connected);
    EXPECT_EQ(got.radius, plain.radius);
    EXPECT_EQ(got.diameter, plain.diameter);
    EXPECT_EQ(got.start, plain.start);
    EXPECT_EQ(got.end_width, plain.end_width);
  }
}

TEST_P(random_nets, diametric_search_and_path) {
  // joined into one component, so that most nets have a path at all; and as it is
  edge_map joined = edges_of(net_);
  for (vertex_number v = 1; v < n_; ++v)
    if (chance_.number_up_to(3) > 1 || net_.number_of_edges_for_vertex_total_get(v) == 0)
      join(joined, v, v + 1);
  for (const class_net &net : {net_of(n_, joined), net_})
    for (const bool use_end_width : {true, false}) {
      expect_search_as_plain(net, use_end_width);
      scripted_frame scripted;
      const plain_diameter plain = plain_search(net, false, use_end_width);
      std::int32_t radius = 0, diameter = 0, width = 0;
      number_list path, far_vertices, from_path, from_start;
      net.calculate_net_diam_and_width(scripted.frame, use_end_width, radius, diameter, path, width, far_vertices,
                                       from_path, from_start);
      EXPECT_EQ(path(1), plain.start);
      if (!plain.connected) {
        EXPECT_EQ(width, -1);
        EXPECT_EQ(diameter, 0);
        EXPECT_EQ(path, number_list{1});
        EXPECT_TRUE(far_vertices.empty());
        continue;
      }
      const auto ranks = plain_ranks(net, {plain.start}, n_);
      std::vector<vertex_number> ends;
      for (vertex_number v = 1; v <= n_; ++v) {
        EXPECT_EQ(from_start(v), ranks[static_cast<std::size_t>(v)]);
        if (ranks[static_cast<std::size_t>(v)] == diameter - 1)
          ends.push_back(v);
      }
      std::stable_sort(ends.begin(), ends.end(),
                       [&plain](vertex_number a, vertex_number b) { return plain.end_width(a) < plain.end_width(b); });
      ASSERT_EQ(path.count(), diameter);
      EXPECT_EQ(path(diameter), ends.front());
      for (std::int32_t i = diameter - 1; i >= 2; --i) { // each the first possible in the run behind it
        for (const net_edge &edge : net.edges_of_vertex(path(i + 1)))
          if (ranks[static_cast<std::size_t>(edge.neighbour)] == i - 1) {
            EXPECT_EQ(path(i), edge.neighbour);
            break;
          }
      }
      const auto off = plain_ranks(net, {path.members().begin(), path.members().end()}, n_);
      EXPECT_EQ(width, *std::max_element(off.begin() + 1, off.end()));
      number_list plain_far;
      for (vertex_number v = 1; v <= n_; ++v)
        if (off[static_cast<std::size_t>(v)] >= 2)
          plain_far.add(v);
      EXPECT_EQ(far_vertices, plain_far);
    }
}

// A net of heaps: each vertex of a small net stands for many clones, joined with each other or not, whose neighbours
// are the same but for a few. More starts than are walked from at once.
TEST(walks, diametric_search_in_heaps) {
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    random_source chance(3, seed);
    const std::int32_t n_heaps = 2 + chance.number_up_to(6), n = 70 + chance.number_up_to(20);
    std::vector<std::int32_t> heap(static_cast<std::size_t>(n) + 1);
    for (std::int32_t &one : heap)
      one = std::min(chance.number_up_to(n_heaps), chance.number_up_to(n_heaps)); // some are large
    const edge_map of_heaps = random_edges(n_heaps, 2 * n_heaps, 1, chance.number_up_to(2) - 1, chance);
    const bool joined = seed % 3 != 0;
    edge_map edges;
    for (vertex_number a = 1; a <= n; ++a)
      for (vertex_number b = a + 1; b <= n; ++b) {
        const std::int32_t x = heap[static_cast<std::size_t>(a)], y = heap[static_cast<std::size_t>(b)];
        const bool wanted = x == y ? joined : of_heaps.contains({x, y});
        if (wanted && (seed % 2 == 0 || chance.number_up_to(20) > 1))
          join(edges, a, b);
      }
    expect_search_as_plain(net_of(n, edges), true);
  }
}

// Spiders: from the body nothing is farther than the feet, some of which are joined, while feet are farther from each
// other. The body comes first, so that its end width counts though it is no end.
TEST(walks, diametric_search_from_the_body_of_a_spider) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    random_source chance(5, seed);
    const std::int32_t n_legs = 3 + chance.number_up_to(6);
    edge_map edges;
    for (std::int32_t leg = 1; leg <= n_legs; ++leg) {
      join(edges, 1, 1 + leg);
      join(edges, 1 + leg, 1 + n_legs + leg);
      if (leg > 1 && chance.number_up_to(2) == 1)
        join(edges, 1 + n_legs + leg, 1 + n_legs + chance.number_up_to(leg - 1));
    }
    expect_search_as_plain(net_of(1 + 2 * n_legs, edges), true);
  }
}

// A row of cliques: the search has something to do between two looks, and ends at the first that says so.
TEST(walks, diametric_search_stops) {
  constexpr std::int32_t in_clique = 200, n = 5 * in_clique;
  class_net net;
  net.inicializate_net(n, 1);
  for (vertex_number v = 1; v <= n; ++v) {
    net.add_vertex_fast(0);
    for (vertex_number w = 1; w <= n; ++w)
      if (v != w && std::abs((v - 1) / in_clique - (w - 1) / in_clique) <= 1)
        net.add_edge_fast(v, w, 20, 0, 0);
  }
  net.finish_of_adding();
  for (const bool stops : {false, true}) {
    int n_yields = 0;
    front_end counting = null_front_end();
    counting.yield = [&] { return ++n_yields > 0 && stops; };
    process_frame frame(counting);
    plain_diameter got;
    net.calculate_net_diam_and_width_FindBestStartOfDiamPath(frame, got.connected, got.radius, got.diameter, got.start,
                                                             true, got.end_width);
    EXPECT_EQ(frame.stop_requested_get(), stops);
    EXPECT_EQ(n_yields == 1, stops) << n_yields;
  }
}

// Rows of whole paths, sweep after sweep.
number_list plain_preferring_path(const class_net &net, double cutoff, vertex_number start, vertex_number end,
                                  const std::set<vertex_number> &marked) {
  const auto n = static_cast<std::size_t>(net.number_of_vertices_get()) + 1;
  std::vector<std::vector<vertex_number>> rows(n);
  rows[static_cast<std::size_t>(end)] = {end};
  std::vector<vertex_number> a{end}, b;
  while (rows[static_cast<std::size_t>(start)].empty() && !a.empty()) {
    for (std::size_t i = 0; i < a.size(); ++i)
      for (const net_edge &edge : net.edges_of_vertex(a[i])) {
        auto &row = rows[static_cast<std::size_t>(edge.neighbour)];
        if (edge.value < cutoff || !row.empty())
          continue;
        row = {edge.neighbour};
        const auto &rest = rows[static_cast<std::size_t>(a[i])];
        row.insert(row.end(), rest.begin(), rest.end());
        (marked.contains(edge.neighbour) ? a : b).push_back(edge.neighbour);
      }
    a = b;
    b.clear();
  }
  return number_list(rows[static_cast<std::size_t>(start)]);
}

TEST_P(random_nets, path_that_prefers_a_list) {
  for (int round = 0; round < 10; ++round) {
    scripted_frame scripted;
    number_list list;
    for (vertex_number v = 1; v <= n_; ++v)
      if (chance_.number_up_to(3) == 1)
        list.add(v);
    const std::set<vertex_number> marked(list.members().begin(), list.members().end());
    const auto moved = [&](vertex_number v) {
      if (marked.contains(v))
        return v;
      for (const net_edge &edge : net_.edges_of_vertex(v))
        if (marked.contains(edge.neighbour) && edge.index2 % 2 == 1)
          return edge.neighbour;
      return v;
    };
    vertex_number start = chance_.number_up_to(n_), end = chance_.number_up_to(n_);
    const vertex_number start_wanted = moved(start), end_wanted = moved(end);
    number_list path;
    net_.find_path_maximally_using_vertices_from_list(scripted.frame, 12, start, end, list, path, round % 2 == 0);
    EXPECT_EQ(start, start_wanted);
    EXPECT_EQ(end, end_wanted);
    EXPECT_EQ(path, plain_preferring_path(net_, 12, start, end, marked));
    const bool told = path.empty() && round % 2 == 0;
    EXPECT_EQ(scripted.record.messages,
              told ? std::vector<std::string>{"net is unlinked!"} : std::vector<std::string>{});
  }
}

INSTANTIATE_TEST_SUITE_P(seeds, random_nets, testing::Range(1, 41));

TEST(walks, a_path_ends_where_the_weight_is_smallest) {
  scripted_frame scripted;
  edge_map edges;
  for (vertex_number leaf = 2; leaf <= 5; ++leaf)
    join(edges, 1, leaf);
  number_list path, ranks;
  net_of(5, edges).create_one_of_diam_path(scripted.frame, 2, {0, 0, 7, 3, 3}, path, ranks);
  EXPECT_EQ(path, (number_list{2, 1, 4}));
  net_of(6, edges).create_one_of_diam_path(scripted.frame, 2, {0, 0, 7, 3, 3, 0}, path, ranks);
  EXPECT_TRUE(path.empty());
  edges.erase({4, 1}); // without its mirror there is no way back
  EXPECT_THROW(net_of(5, edges).create_one_of_diam_path(scripted.frame, 2, {0, 0, 7, 3, 3}, path, ranks), program_end);
  EXPECT_EQ(scripted.record.messages.back(), "problem with algorithm for diam_path");
}

TEST(walks, ranks_beyond_the_last_are_zero_and_held) {
  edge_map edges;
  join(edges, 1, 2);
  const class_net net = net_of(2, edges);
  std::int32_t n_rank = 7;
  number_list ranks, reached;
  std::vector<std::int32_t> n_in_rank;
  bool connected = false;
  net.calculate_ranks_of_vertices({1}, ranks, 1, false, 0, n_rank, reached, n_in_rank, connected);
  EXPECT_EQ(n_in_rank, (std::vector<std::int32_t>{1, 1, 0, 0, 0, 0, 0, 0}));
}

} // namespace
