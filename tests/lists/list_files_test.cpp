// Lists as sets, files made from lists, and tables of pairs.
#include <gtest/gtest.h>

#include "database/class_clone_serv.h"
#include "database/class_markers.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "metrics/class_clone_text_distance.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

TEST(list_sets, of_files_and_of_lists) {
  net_fixture f({.n_clones = 12, .bands_in_clone = 6});
  class_list_of_clones lists(f.frame, f.settings);
  const auto names = [&](const std::vector<clone_number> &clones) {
    std::string text;
    for (const clone_number clone : clones)
      text += f.database.name_of_clone_get(clone) + "\r\n";
    return text;
  };
  f.write("a.txt", names({7, 2, 7, 5}));
  f.write("b.txt", names({5, 9, 2}));
  ASSERT_TRUE(lists.find_intersection_of_contigs(f.database, f.folder / "a.txt", f.folder / "b.txt"));
  EXPECT_EQ(file_bytes(f.folder / "intersection_a_b.txt"), names({2, 5}));
  ASSERT_TRUE(lists.find_ctg1_minus_ctg2(f.database, f.folder / "a.txt", f.folder / "b.txt"));
  EXPECT_EQ(file_bytes(f.folder / "minus_a_b.txt"), names({7}));
  ASSERT_TRUE(lists.find_ctg1_plus_ctg2(f.database, f.folder / "a.txt", f.folder / "b.txt", f.folder / "p"));
  EXPECT_EQ(file_bytes(f.folder / "p"), names({2, 5, 7, 9}));
  f.record = {};
  EXPECT_FALSE(lists.find_ctg1_plus_ctg2(f.database));
  f.answer_always("Open first file with clones", (f.folder / "a.txt").string());
  EXPECT_FALSE(lists.find_ctg1_plus_ctg2(f.database));
  EXPECT_EQ(f.record.questions, (std::vector<std::string>{"Open first file with clones", "Open first file with clones",
                                                          "Open second file with clones"}));
  f.write("empty.txt", "\r\n , \r\n");
  ASSERT_TRUE(lists.find_intersection_of_contigs(f.database, f.folder / "a.txt", f.folder / "empty.txt"));
  EXPECT_EQ(file_bytes(f.folder / "intersection_a_empty.txt"), "");
  EXPECT_EQ(f.record.messages.back(), "list of clones for orderind is empty!!!");
  number_list list{4, 1, 4};
  class_list_of_clones::find_intersection_of_contigs(list, list, list);
  EXPECT_EQ(list, number_list({1, 4}));
  // a file that is no list leaves what was there
  std::string pure_name;
  f.write("binary", std::string("a\0b", 3));
  EXPECT_FALSE(lists.run_reading_file_with_list_of_clones(f.folder / "binary", list, pure_name, f.database));
  EXPECT_EQ(list, number_list({1, 4}));
  EXPECT_TRUE(f.frame.data_failed());
  EXPECT_THROW(lists.run_reading_file_with_list_of_clones(f.folder / "none", list, pure_name, f.database), file_error);
}

TEST(list_files, names_go_into_the_output_format) {
  net_fixture f({.n_clones = 3, .bands_in_clone = 6});
  class_list_of_clones lists(f.frame, f.settings);
  f.write("x.txt", "A01, B02\n");
  ASSERT_TRUE(lists.transform_list_of_clones(f.folder / "x.txt"));
  EXPECT_EQ(file_bytes(f.folder / "new_x.txt"), "A01\r\nB02\r\n");
}

TEST(list_files, records_of_chosen_clones) {
  net_fixture f({.n_clones = 3, .bands_in_clone = 6});
  const std::string a = f.database.name_of_clone_get(1), b = f.database.name_of_clone_get(2);
  class_list_of_clones lists(f.frame, f.settings);
  // every second band of the file is in all clones, the others in none
  for (const std::int32_t band : {100, 300})
    f.database.frecuency_of_band_in_clones_set(band, 1);
  const std::string records = a + "\t3\tGel\r\n100\r\n200.5\r\n300\r\n-1\r\n\r\nother\n7\n-1\n" + b +
                              " Gel\n100\n250\n\n" + a + "\n9999999\n300";
  f.write("bands.sizes", records);
  f.write("list.txt", b + " " + a);
  const auto selected = [&] { return file_bytes(f.folder / "selected_clones_bands.txt"); };
  ASSERT_TRUE(lists.select_clones_from_database(f.database, f.folder / "list.txt", f.folder / "bands.sizes"));
  EXPECT_EQ(f.record.questions.back(), "Input cutoff for band frequency (among clones)");
  EXPECT_EQ(selected(), a + "\t3\tGel\r\n100\r\n200.5\r\n300\r\n-1\r\n\r\n" + b + " Gel\r\n100\r\n250\r\n-1\r\n\r\n" +
                            a + "\r\n9999999\r\n300\r\n-1\r\n\r\n");
  EXPECT_EQ(f.record.log, (std::vector<std::string>{"Selecting clones and bands", "Selecting clones and bands done"}));
  f.book.add({"Input cutoff", "0.99", false});
  ASSERT_TRUE(lists.create_file_with_clons_with_list_of_bands({2}, 1, f.database, f.folder / "bands.sizes"));
  EXPECT_EQ(selected(), b + " Gel\r\n250\r\n-1\r\n\r\n");
  f.write("bands.sizes", records + std::string("\0", 1));
  EXPECT_FALSE(lists.create_file_with_clons_with_list_of_bands({1}, 1, f.database, f.folder / "bands.sizes"));
  EXPECT_EQ(selected(), b + " Gel\r\n250\r\n-1\r\n\r\n"); // the former file stays
}

struct pair_tables : ::testing::Test {
  net_fixture f{{.n_clones = 120, .bands_in_clone = 30, .coverage = 20}};
  class_list_of_clones lists{f.frame, f.settings};
  number_list list;
  std::vector<std::int32_t> gaps;
  pair_tables() {
    f.rule.cutoff = 6;
    for (const clone_number clone : {17, 3, 90, 4, 55, 56, 101, 2})
      list.add(clone);
  }
  std::string clone_columns(clone_number clone) {
    const std::int32_t n = f.database.number_of_bands_in_clone_get(clone);
    const double weight = class_clone_serv::weighted_number_of_bands_in_clone(clone, f.database);
    return f.database.name_of_clone_get(clone) + "\t" + std::to_string(n) + "\t" + number_text(weight, 2) + "\t" +
           number_text(weight / n, 2) + "\t";
  }
};

TEST_F(pair_tables, consecutive) {
  f.settings.markers_in_clones = true;
  class_clone_text_distance distance(f.context, f.rule);
  class_clone_dist_my gate(f.context, nullptr);
  gate.net_private_parameters_set(4, 6, 0.9, false, false);
  std::string expected =
      "i\tIndex\tCloneName\tnBands\tN\tN/n\tk\tk_double_tolerance\tSulston_1988\tAbsorption\tweak?\r\n";
  std::int32_t n_weak = 0;
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    expected += std::to_string(i) + "\t" + std::to_string(list(i)) + "\t" + clone_columns(list(i));
    if (i > 1) {
      expected += distance.text_of_distance(list(i - 1), list(i));
      n_weak += !gate.overlap_is_significant(list(i - 1), list(i));
    }
    expected += "\r\n";
  }
  ASSERT_TRUE(lists.print_consecuent_dist(list.count(), list, "ctg1", {}, gaps, true, f.rule, f.context));
  EXPECT_EQ(file_bytes(f.folder / "Consec_dist_ctg1.txt"), expected + "Zones of markers:\r\n");
  ASSERT_EQ(gaps.size(), 15u);
  EXPECT_EQ(gaps[4], n_weak);
  EXPECT_EQ(gaps[5], 0);
  const std::vector<std::int32_t> printed = gaps;
  ASSERT_TRUE(lists.print_consecuent_dist(list.count(), list, "ctg2", {}, gaps, false, f.rule, f.context));
  EXPECT_EQ(gaps, printed);
  EXPECT_FALSE(std::filesystem::exists(f.folder / "Consec_dist_ctg2.txt"));
  ASSERT_TRUE(lists.print_consecuent_dist(0, {}, "none", {}, gaps, false, f.rule, f.context));
  EXPECT_EQ(gaps, std::vector<std::int32_t>(15, 0));
  EXPECT_TRUE(f.record.questions.empty());
}

TEST_F(pair_tables, all_pairs_or_those_of_the_net) {
  net_creation_summary summary;
  ASSERT_TRUE(f.signif.create_net_in_memory(f.rule, summary));
  f.record = {};
  class_clone_text_distance distance(f.context, f.rule);
  std::string all = "CloneName\tnBands\tN\tN/n\tCloneName\tnBands\tN\tN/n\tk\tk_double_tolerance\tSulston_1988\t"
                    "Absorption\tweak?\r\n",
              of_net = all;
  for (std::int32_t i = 1; i <= list.count(); ++i)
    for (std::int32_t j = i + 1; j <= list.count(); ++j) {
      const std::string row =
          clone_columns(list(i)) + clone_columns(list(j)) + distance.text_of_distance(list(i), list(j)) + "\r\n";
      all += row;
      double value;
      std::int16_t index1, index2;
      bool overlap = false;
      f.signif.clones_can_be_overlapped(list(i), list(j), value, index1, index2, f.signif.net(), overlap);
      of_net += overlap ? row : "";
    }
  const class_net *net = &f.signif.net();
  ASSERT_TRUE(lists.print_all_dist(list, "w", {}, f.rule, f.context, net));
  EXPECT_EQ(f.record.questions, std::vector<std::string>{"From the net only?"});
  EXPECT_EQ(file_bytes(f.folder / "All_dist_w.txt"), all);
  f.answer_always("From the net only?", "yes");
  ASSERT_TRUE(lists.print_all_dist(list, "w", {}, f.rule, f.context, net));
  EXPECT_EQ(file_bytes(f.folder / "All_dist_w.txt"), of_net);
  EXPECT_LT(of_net.size(), all.size());
  ASSERT_TRUE(lists.print_all_dist(list, "", f.folder / "t", f.rule, f.context, net, pairs_of_table::from_net_only));
  ASSERT_TRUE(lists.print_all_dist(list, "", f.folder / "u", f.rule, f.context, nullptr, pairs_of_table::all));
  EXPECT_EQ(file_bytes(f.folder / "t"), of_net);
  EXPECT_EQ(file_bytes(f.folder / "u"), all);
  f.settings.markers_in_clones = true;
  ASSERT_TRUE(lists.print_all_dist(list, "", f.folder / "u", f.rule, f.context, nullptr, pairs_of_table::all));
  EXPECT_EQ(file_bytes(f.folder / "u"), all + "Zones of markers:\r\n");
  EXPECT_EQ(f.record.questions.size(), 2u);
}

TEST_F(pair_tables, a_stop_leaves_the_former_table) {
  front_end shown = null_front_end();
  int n_yields = 0;
  std::vector<std::string> shown_pairs;
  shown.panel_set = [&](panel, const std::string &text, panel_colour) { shown_pairs.push_back(text); };
  shown.yield = [&] { return ++n_yields == 3; }; // in the middle of the large table
  process_frame frame(shown);
  frame.working_folder_set(f.folder);
  const metric_context context{frame, f.settings, f.database, f.usable_values, f.table};
  class_list_of_clones slow(frame, f.settings);
  f.write("All_dist_x.txt", "former");
  f.write("Consec_dist_x.txt", "former");
  const number_list whole = number_list::range(1, 120);
  EXPECT_FALSE(slow.print_all_dist(whole, "x", {}, f.rule, context, nullptr, pairs_of_table::all));
  EXPECT_EQ(n_yields, 3);
  f.usable_values.for_FPC_fast_indicator_set(false); // a slow score asks more often
  class_clone_text_distance::table_format_select(f.settings, 4);
  frame.stop_requested_set(false);
  n_yields = 0;
  shown_pairs.clear();
  EXPECT_FALSE(slow.print_all_dist(number_list::range(1, 20), "x", {}, f.rule, context, nullptr, pairs_of_table::all));
  EXPECT_EQ(shown_pairs.back(), "101 of 190");
  gaps = {7};
  EXPECT_FALSE(slow.print_consecuent_dist(120, whole, "x", {}, gaps, true, f.rule, context)); // stopped before it began
  EXPECT_EQ(gaps, std::vector<std::int32_t>{7});
  EXPECT_EQ(file_bytes(f.folder / "All_dist_x.txt"), "former");
  EXPECT_EQ(file_bytes(f.folder / "Consec_dist_x.txt"), "former");
  std::size_t n_files = 0;
  for ([[maybe_unused]] const auto &file : std::filesystem::directory_iterator(f.folder))
    ++n_files;
  EXPECT_EQ(n_files, 2u);
}

} // namespace
} // namespace orb
