// Building, single records, and nets made from a net.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/net_helpers.h"

namespace {

using namespace orb_test;

TEST(class_net, room_is_estimated_by_vertices_and_expected_neighbours) {
  const class_net empty;
  class_net ten = net_of(10, {});
  struct {
    const class_net &net;
    std::int32_t n, per_vertex, wanted;
  } const cases[] = {{empty, 100, -1, 9900},   {empty, 100, 5, 9900},
                     {ten, 100, 5, 500},       {ten, 100, 0, 1000},
                     {empty, 2000, -1, 20000}, {empty, 2000, 30, 60000},
                     {ten, 1, -1, 0},          {empty, 2000000000, 30, std::numeric_limits<std::int32_t>::max()}};
  for (const auto &c : cases)
    EXPECT_EQ(c.net.max_n_edges_for_n_of_vertices(c.n, c.per_vertex), c.wanted) << c.n;
}

TEST(class_net, a_pair_is_found_the_same_way_in_sorted_and_unsorted_runs) {
  random_source chance(3);
  for (int round = 0; round < 20; ++round) {
    const std::int32_t n = 2 + chance.number_up_to(30);
    const edge_map edges = random_edges(n, 3 * n, 5, n, chance);
    const class_net plain = net_of(n, edges);
    class_net sorted = net_of(n, edges);
    EXPECT_FALSE(plain.neighbours_are_sorted_get());
    EXPECT_TRUE(sorted.test_neighbours_sorted());
    for (vertex_number a = 1; a <= n; ++a)
      for (vertex_number b = 1; b <= n; ++b) {
        if (a == b)
          continue;
        const auto wanted = edges.find({a, b});
        for (const class_net *net : {&plain, static_cast<const class_net *>(&sorted)}) {
          vertex_number from = 0, to = 0;
          std::int32_t k = 0;
          bool swapped = false, exists = false;
          net->edge_is_exist(a, b, from, to, k, swapped, exists);
          ASSERT_EQ(exists, wanted != edges.end());
          ASSERT_EQ(swapped,
                    net->number_of_edges_for_vertex_total_get(a) >= net->number_of_edges_for_vertex_total_get(b));
          ASSERT_EQ(from, swapped ? b : a);
          double value = 0;
          std::int16_t index1 = 0, index2 = 0;
          ASSERT_EQ(net->overlap_of_pair(a, b, value, index1, index2), exists);
          if (!exists)
            continue;
          ASSERT_EQ(net->edges_of_vertex(from)[static_cast<std::size_t>(k) - 1].neighbour, to);
          ASSERT_EQ(value, wanted->second.value);
          ASSERT_EQ(index2, wanted->second.index2);
        }
        std::int32_t common = 0, wanted_common = 0;
        plain.n_vertices_connecting_vertices(a, b, common);
        for (vertex_number c = 1; c <= n; ++c)
          wanted_common += edges.contains({a, c}) && edges.contains({b, c});
        ASSERT_EQ(common, wanted_common);
      }
  }
}

TEST(class_net, a_rebuilt_net_does_not_claim_sorted_runs_that_it_lacks) {
  class_net net = net_of(3, {});
  EXPECT_TRUE(net.test_neighbours_sorted());
  net.inicializate_net(3, 2);
  net.add_vertex_fast(0);
  net.add_edge_fast(1, 3, 5, 0, 0);
  net.add_edge_fast(1, 2, 4, 0, 0);
  net.add_vertex_fast(0);
  net.add_vertex_fast(0);
  net.finish_of_adding();
  EXPECT_FALSE(net.neighbours_are_sorted_get());
  EXPECT_EQ(net.minimal_edge_value_get(), 4);
  EXPECT_EQ(net_of(3, {}).minimal_edge_value_get(), 0);
}

TEST(class_net, reading_beyond_a_run_tells_and_goes_on) {
  scripted_frame scripted;
  edge_map edges;
  join(edges, 1, 2, 17, 1);
  const class_net net = net_of(2, edges);
  vertex_number neighbour = 0;
  double value = 0;
  std::int16_t index1 = 0, index2 = 0;
  net.edge_of_vertex(scripted.frame, 2, 1, neighbour, value, index1, index2);
  EXPECT_EQ(index2, 2);
  EXPECT_TRUE(scripted.record.messages.empty());
  net.edge_of_vertex(scripted.frame, 2, 2, neighbour, value, index1, index2);
  EXPECT_EQ(scripted.record.messages,
            std::vector<std::string>{"Error: neighbour_number > number_of_neighbours(vertex)"});
}

class random_copies : public testing::TestWithParam<int> {
protected:
  random_source chance_{11, static_cast<std::uint64_t>(GetParam())};
  std::int32_t n_ = 2 + chance_.number_up_to(25);
  edge_map edges_ = random_edges(n_, 3 * n_, 4, 3, chance_);
  class_net net_ = net_of(n_, edges_);
  class_net out_;

  // What is left of the net when only some records stay.
  template <class keep> class_net plainly_without(const keep &kept) const {
    edge_map left;
    for (const auto &[ends, edge] : edges_)
      if (kept(ends.first, edge))
        left[ends] = edge;
    return net_of(n_, left);
  }
};

TEST_P(random_copies, copies_keep_marks_and_the_records_that_pass) {
  for (edge_adress e = 1; e <= net_.number_of_edges_get(); e += 3)
    net_.change_edge_index(e, -1);
  edges_ = edges_of(net_);
  net_.create_net_copy(out_);
  EXPECT_TRUE(same_records(out_, net_));
  net_.create_sub_net_without_edges_index(-1, out_);
  EXPECT_TRUE(same_records(out_, plainly_without([](vertex_number, const net_edge &e) { return e.index1 != -1; })));
  const double threshold = edges_.empty() ? 0 : edges_.begin()->second.value; // equals a value: kept both ways
  net_.create_sub_net_without_edges_small_or_large_value(threshold, out_, true);
  EXPECT_TRUE(
      same_records(out_, plainly_without([&](vertex_number, const net_edge &e) { return e.value >= threshold; })));
  net_.create_sub_net_without_edges_small_or_large_value(threshold, out_, false);
  EXPECT_TRUE(
      same_records(out_, plainly_without([&](vertex_number, const net_edge &e) { return e.value <= threshold; })));
  net_.create_sub_net_with_disconnected_vertices_index(-3, out_);
  EXPECT_TRUE(same_records(out_, plainly_without([&](vertex_number v, const net_edge &e) {
                             return net_.index_of_vertex_get(v) != -3 && net_.index_of_vertex_get(e.neighbour) != -3;
                           })));
  std::int32_t n_with = 0, wanted = 0;
  net_.number_of_vertices_with_index_get(-3, n_with);
  for (vertex_number v = 1; v <= n_; ++v)
    wanted += v % 5 == 3;
  EXPECT_EQ(n_with, wanted);
}

TEST_P(random_copies, sub_net_of_an_unsorted_list_with_a_paired_array) {
  number_list list, paired;
  for (vertex_number v = n_; v >= 1; --v)
    if (chance_.number_up_to(2) == 1)
      list.add(v);
  for (std::int32_t i = 1; i <= list.count(); ++i)
    std::swap(list(i), list(chance_.number_up_to(list.count())));
  for (const vertex_number v : list.members())
    paired.add(1000 + v);
  net_workspace workspace;
  net_.create_sub_net(list, list.count(), false, &paired, out_, workspace);
  ASSERT_TRUE(std::is_sorted(list.members().begin(), list.members().end()));
  ASSERT_EQ(out_.number_of_vertices_get(), list.count());
  edge_map wanted;
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    EXPECT_EQ(paired(i), 1000 + list(i));
    EXPECT_EQ(out_.index_of_vertex_get(i), net_.index_of_vertex_get(list(i)));
    for (std::int32_t j = 1; j <= list.count(); ++j)
      if (const auto e = edges_.find({list(i), list(j)}); e != edges_.end()) {
        wanted[{i, j}] = e->second;
        wanted[{i, j}].neighbour = j;
      }
  }
  const edge_map got = edges_of(out_);
  ASSERT_EQ(got.size(), wanted.size());
  for (const auto &[ends, edge] : wanted) {
    ASSERT_TRUE(got.contains(ends));
    EXPECT_EQ(got.at(ends).value, edge.value);
    EXPECT_EQ(got.at(ends).index2, edge.index2);
  }
}

TEST_P(random_copies, factor_net_holds_the_largest_value_between_classes) {
  const std::int32_t n_classes = 1 + chance_.number_up_to(6);
  number_list classes;
  for (vertex_number v = 1; v <= n_; ++v)
    classes.add(chance_.number_up_to(n_classes));
  net_.create_factor_net(classes, n_classes, out_);
  edge_map wanted;
  for (const auto &[ends, edge] : edges_) {
    const std::int32_t i = classes(ends.first), j = classes(ends.second);
    if (i == j)
      continue;
    net_edge &at = wanted.try_emplace({i, j}, net_edge{j, 0, 0, edge.value}).first->second;
    at.value = std::max(at.value, edge.value);
  }
  const edge_map got = edges_of(out_);
  ASSERT_EQ(out_.number_of_vertices_get(), n_classes);
  ASSERT_EQ(got.size(), wanted.size());
  for (const auto &[ends, edge] : wanted)
    EXPECT_EQ(got.at(ends).value, edge.value);
  EXPECT_TRUE(out_.test_neighbours_sorted());
}

TEST_P(random_copies, changed_part) {
  scripted_frame scripted;
  number_list list, first{}, second{};
  std::vector<double> values{0};
  for (vertex_number v = 1; v <= n_; ++v)
    if (chance_.number_up_to(2) == 1)
      list.add(v);
  edge_map wanted;
  for (const auto &[ends, edge] : edges_) {
    const auto in_list = [&](vertex_number v) {
      return std::find(list.members().begin(), list.members().end(), v) != list.members().end();
    };
    if (!in_list(ends.first) && !in_list(ends.second))
      wanted[ends] = edge;
  }
  for (std::int32_t i = list.count(); i > 1; --i) {
    first.add(list(i));
    second.add(list(i - 1));
    values.push_back(30 + i);
    join(wanted, list(i), list(i - 1), 30 + i);
  }
  net_.create_net_with_disconnected_and_changed_part(scripted.frame, list, first, second, values, out_);
  EXPECT_TRUE(same_records(out_, net_of(n_, wanted)));
  EXPECT_TRUE(scripted.record.messages.empty());
  if (list.count() == n_ || list.empty())
    return;
  vertex_number outside = 1;
  while (std::find(list.members().begin(), list.members().end(), outside) != list.members().end())
    ++outside;
  net_.create_net_with_disconnected_and_changed_part(scripted.frame, list, {outside}, {list(1)}, {0, 9.0}, out_);
  EXPECT_EQ(scripted.record.messages, std::vector<std::string>{"error of adding!"});
}

TEST_P(random_copies, linear_parts) {
  scripted_frame scripted;
  number_list classes, degree;
  std::int32_t n_classes = 0, plain_n = 0;
  net_ = net_of(n_, edges_ = random_edges(n_, n_, 2, 0, chance_)); // thin, so that there are chains
  net_.find_and_unite_liniar_parts_of_net(scripted.frame, classes, n_classes, degree);
  edge_map links;
  for (const auto &[ends, edge] : edges_)
    if (degree(ends.first) <= 2 && degree(ends.second) <= 2)
      links[ends] = edge;
  const number_list plain = plain_components(net_of(n_, links), plain_n);
  EXPECT_EQ(n_classes, plain_n);
  for (vertex_number v = 1; v <= n_; ++v)
    for (vertex_number w = 1; w <= n_; ++w)
      ASSERT_EQ(classes(v) == classes(w), plain(v) == plain(w));

  number_list elements, starts, back;
  class_net::class_number_and_lists(scripted.frame, classes, n_classes, n_, elements, starts, true);
  for (std::int32_t c = 1; c <= n_classes; ++c)
    EXPECT_TRUE(
        std::is_sorted(elements.members().begin() + starts(c) - 1, elements.members().begin() + starts(c + 1) - 1));
  class_net::class_number_and_lists(scripted.frame, back, n_classes, n_, elements, starts, false);
  EXPECT_EQ(back, classes);
}

INSTANTIATE_TEST_SUITE_P(seeds, random_copies, testing::Range(1, 25));

TEST(class_net, chains_cycles_and_stars) {
  scripted_frame scripted;
  edge_map edges;
  for (vertex_number v = 1; v <= 4; ++v)
    join(edges, v, v % 4 + 1); // a cycle
  for (vertex_number leaf = 6; leaf <= 8; ++leaf)
    join(edges, 5, leaf); // a star
  number_list classes, degree;
  std::int32_t n_classes = 0;
  net_of(9, edges).find_and_unite_liniar_parts_of_net(scripted.frame, classes, n_classes, degree);
  EXPECT_EQ(classes, (number_list{4, 4, 4, 4, 5, 1, 2, 3, 6}));
  vertex_number next = 0;
  bool is_link = false;
  EXPECT_THROW(net_of(9, edges).next_in_liniar_part(scripted.frame, 2, 9, next, is_link), program_end);
  EXPECT_EQ(scripted.record.messages.back(),
            "vertex_testing 2 is connected with 1 and 3, but not connected with vertex_input=9");
}

TEST(class_net, forms_of_a_partition_are_checked) {
  struct {
    number_list classes, elements, starts;
    bool from_numbers;
    const char *text;
  } const cases[] = {
      {{1, 3}, {}, {}, true, "Class number must be from 1 to 2, but it is 3"},
      {{1, 0}, {}, {}, true, "Class number must be from 1 to 2, but it is 0"},
      {{}, {1, 2}, {2, 2, 3}, false, "adress_of_start(1)=2<>1"},
      {{}, {1, 2}, {1, 3, 2}, false, "adress_of_start(c) > adress_of_start(c + 1): c=2, a(c)=3, a(c+1)=2"},
      {{},
       {1, 2},
       {1, 2, 2},
       false,
       "adress_of_start(n_of_classes + 1) <> n_of_elements + 1: n_of_classes=2, a(n_of_classes + 1)=2, "
       "n_of_elements + 1=3"}};
  for (auto c : cases) {
    scripted_frame scripted;
    std::int32_t n_classes = 2;
    EXPECT_THROW(class_net::class_number_and_lists(scripted.frame, c.classes, n_classes, 2, c.elements, c.starts,
                                                   c.from_numbers),
                 program_end);
    EXPECT_EQ(scripted.record.messages, std::vector<std::string>{c.text});
  }
  scripted_frame scripted;
  std::int32_t n_classes = 1;
  number_list classes, elements{1, 1}, starts{1, 3};
  class_net::class_number_and_lists(scripted.frame, classes, n_classes, 2, elements, starts, false);
  EXPECT_EQ(scripted.record.messages, std::vector<std::string>{"class_number(2) = 0"});
}

// Deliberate: a vertex joined to the group but not to its representative gets no record of its own, and one joined to
// the representative alone loses its record.
TEST(class_net, contraction_is_not_symmetric) {
  edge_map edges;
  join(edges, 1, 2, 30); // 2 and 4 are the group, 2 its representative
  join(edges, 4, 5, 40);
  join(edges, 2, 3, 50);
  join(edges, 3, 4, 60, 1);
  join(edges, 1, 5, 70, 1);
  class_net out;
  number_list new_number;
  net_of(5, edges).create_sub_net_list_into_one_vertex({2, 4}, new_number, false, out);
  EXPECT_EQ(new_number, (number_list{1, 2, 3, -1, 4}));
  const edge_map got = edges_of(out);
  std::map<std::pair<vertex_number, vertex_number>, double> values;
  for (const auto &[ends, edge] : got)
    values[ends] = edge.value;
  EXPECT_EQ(values, (std::map<std::pair<vertex_number, vertex_number>, double>{
                        {{1, 4}, 70}, {{2, 3}, 60}, {{2, 4}, 40}, {{3, 2}, 60}, {{4, 1}, 70}}));
  EXPECT_EQ(got.at({4, 1}).index2, 2);
  EXPECT_EQ(got.at({3, 2}).index2, 0);
}

TEST(class_net, records_go_and_come_back_in_place) {
  random_source chance(11);
  for (int round = 0; round < 30; ++round) {
    const std::int32_t n = 1 + chance.number_up_to(20);
    class_net net = net_of(n, random_edges(n, 2 * n, 4, 3, chance)), marked, wanted;
    const class_net before = net;
    net.create_net_copy(marked);
    std::vector<edge_adress> places;
    for (edge_adress e = 1; e <= net.number_of_edges_get(); ++e)
      if (chance.number_up_to(5) <= round % 6) { // none to all
        places.push_back(e);
        marked.change_edge_index(e, -7);
      }
    marked.create_sub_net_without_edges_index(-7, wanted);
    class_net::edges_taken taken = net.take_out_edges(places);
    EXPECT_TRUE(same_records(net, wanted));
    EXPECT_EQ(net.minimal_edge_value_get(), wanted.minimal_edge_value_get());
    net.change_vertex_index(n, -7);
    net.put_back_edges(std::move(taken));
    EXPECT_TRUE(same_records(net, before));
    EXPECT_EQ(net.minimal_edge_value_get(), before.minimal_edge_value_get());
  }
}

} // namespace
