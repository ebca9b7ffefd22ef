// Nets of lists of clones, the shape of a contig, and files of clone names.
#include <gtest/gtest.h>

#include "lists/class_list_of_clones.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

TEST(net_of_list, cut_out_of_the_net_and_computed_agree) {
  net_fixture f({.n_clones = 700, .bands_in_clone = 30, .coverage = 20});
  f.rule.cutoff = 6;
  net_creation_summary summary;
  ASSERT_TRUE(f.signif.create_net_in_memory(f.rule, summary));
  random_source chance(3);
  for (const std::int32_t n : {1, 40, 600}) { // below and above the size from which the kernel computes
    number_list list;
    for (clone_number clone = 1; list.count() < n; clone = clone % 700 + 1)
      if (chance.uniform() < 0.3 && std::ranges::find(list.members(), clone) == list.members().end())
        list.add(clone);
    std::swap(list(1), list(n));
    class_net computed;
    f.signif.create_net_without_using_previous_net(list, n, 4, 6, 0.9, computed);
    for (const bool same_metric : {true, false}) {
      f.settings.same_metric_as_net = same_metric;
      class_net cut;
      number_list net_list;
      f.signif.create_net_general_run(list, f.rule, cut, net_list);
      ASSERT_EQ(cut.number_of_edges_get(), computed.number_of_edges_get());
      for (vertex_number v = 1; v <= n; ++v)
        for (const net_edge &edge : cut.edges_of_vertex(v)) {
          double value;
          std::int16_t index1, index2;
          ASSERT_TRUE(computed.overlap_of_pair(net_list(v), net_list(edge.neighbour), value, index1, index2));
          EXPECT_EQ(edge.index2, index2);
          EXPECT_NEAR(edge.value, value, same_metric ? 0.0051 : 0); // the loaded net has two decimals
        }
    }
  }
  class_net higher;
  number_list net_list;
  f.settings.same_metric_as_net = true;
  f.signif.create_net_general(number_list::range(1, 700), 700, 4, 12, 0.9, higher, net_list);
  EXPECT_GE(higher.minimal_edge_value_get(), 12);
  EXPECT_LT(higher.number_of_edges_get(), f.signif.net().number_of_edges_get());
}

TEST(net_of_list, shape_speaks_in_places_of_the_callers_list) {
  net_fixture f({.n_clones = 8, .bands_in_clone = 6});
  f.signif.net() = net_of_edges(8, {{2, 4}, {4, 6}, {6, 8}, {1, 6}, {1, 3}, {3, 5}});
  f.signif.net_is_loaded_set();
  const number_list list{8, 6, 4, 2, 1};
  contig_shape shape;
  f.signif.contigomer(list, f.rule, shape);
  EXPECT_EQ(shape.diameter, 4);
  EXPECT_EQ(shape.width, 1);
  ASSERT_EQ(shape.path.count(), 4);
  for (std::int32_t i = 1; i <= 4; ++i) // a path 2-4-6-{8 or 1}, read from either end
    EXPECT_EQ(shape.ranks_from_start(shape.path(i)), i - 1);
  EXPECT_EQ(list(shape.path(2)) + list(shape.path(3)), 10);
  number_list ranks;
  f.signif.contigomer_clone_ordering_run({2, 4, 7}, f.rule, {4, 7, 5}, true, true, shape, ranks);
  EXPECT_EQ(shape.width, -1);
  EXPECT_EQ(ranks, number_list({-1, -1, -1}));
  EXPECT_EQ(f.record.messages,
            (std::vector<std::string>{"cluster of clones is not connected!",
                                      "Clone C100005 of list_of_clones_interesting() 3 is not presented in "
                                      "list_of_clones()?!"}));
  f.signif.contigomer_clone_ordering_run(list, f.rule, {2, 8}, false, false, shape, ranks);
  EXPECT_EQ(ranks(1) + ranks(2), 3);
  EXPECT_TRUE(shape.path(1) == 2 || shape.path(4) == 2);
  f.signif.contigomer({}, f.rule, shape);
  EXPECT_EQ(shape.path.count(), 0);
}

TEST(list_of_clones, files_of_names) {
  net_fixture f({.n_clones = 12, .bands_in_clone = 6, .seed = 3, .n_names = 6});
  class_list_of_clones lists(f.frame, f.settings);
  const auto name = [&](clone_number clone) { return f.database.name_of_clone_get(clone); };
  number_list one_line, lines, all;
  std::string pure_name;
  f.write("a.txt", name(3) + ", " + name(1) + "  " + name(2) + "\r\n\r\n");
  f.write("b.txt", name(3) + "\n" + name(1) + "\n" + name(2));
  ASSERT_TRUE(lists.run_reading_file_with_list_of_clones(f.folder / "a.txt", one_line, pure_name, f.database));
  ASSERT_TRUE(lists.run_reading_file_with_list_of_clones(f.folder / "b.txt", lines, pure_name, f.database));
  EXPECT_EQ(one_line, lines);
  EXPECT_EQ(pure_name, "b");
  EXPECT_EQ(f.record.messages.back(), "All 3 clones are loaded");
  std::int32_t count = 0;
  ASSERT_TRUE(lists.run_reading_file_with_list_of_clones_rep(f.folder / "b.txt", all, count, f.database));
  std::int32_t versions = 0;
  for (clone_number clone = 1; clone <= 12; ++clone)
    for (const clone_number asked : {3, 1, 2})
      versions += name(clone) == name(asked);
  EXPECT_EQ(count, versions);
  EXPECT_GT(count, 3);
  f.write("c.txt", "nobody " + name(1));
  ASSERT_TRUE(lists.run_reading_file_with_list_of_clones(f.folder / "c.txt", lines, pure_name, f.database));
  EXPECT_EQ(lines.count(), 1);
  EXPECT_EQ(f.record.questions.back(), "Clone (1) nobody not found!\rDo You want to stop the program?");
  EXPECT_EQ(f.record.messages.back(), "In total, 1 clones not found!");
  EXPECT_TRUE(f.frame.data_failed());
  ASSERT_TRUE(lists.run_reading_file_with_list_of_clones_rep(f.folder / "c.txt", lines, count, f.database));
  EXPECT_EQ(f.record.messages.back(), "In total 1 clones not found! ");
  f.answer_always("Clone (1) nobody", "yes");
  EXPECT_THROW(lists.run_reading_file_with_list_of_clones(f.folder / "c.txt", lines, pure_name, f.database),
               program_end);
  EXPECT_FALSE(lists.run_reading_file_with_list_of_clones({}, lines, pure_name, f.database)); // dialog cancelled
  f.write("empty.txt", "");
  ASSERT_TRUE(lists.run_reading_file_with_list_of_clones(f.folder / "empty.txt", lines, pure_name, f.database));
  EXPECT_EQ(lines.count(), 0);
  lists.sort_list_of_clones_and_delete_repeats(lines);
  EXPECT_EQ(f.record.messages.back(), "list of clones for orderind is empty!!!");
  number_list repeated{5, 2, 5, 9, 2};
  lists.sort_list_of_clones_and_delete_repeats(repeated);
  EXPECT_EQ(repeated, number_list({2, 5, 9}));
  number_list common;
  class_list_of_clones::intersection_list1_list2_long({2, 2, 5, 9}, {2, 2, 9, 10}, common);
  EXPECT_EQ(common, number_list({2, 9}));
  lists.print_list_of_clones({1, 3}, f.folder / "out.txt", f.database);
  EXPECT_EQ(file_bytes(f.folder / "out.txt"), name(1) + "\r\n" + name(3) + "\r\n");
}

} // namespace
} // namespace orb
