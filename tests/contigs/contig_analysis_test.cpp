#include <gtest/gtest.h>

#include "contigs/contig_reports.h"
#include "support/contig_test_library.h"

using namespace orb_test;

namespace {

// Bands first..last, one every 100 units.
std::vector<std::int32_t> window(int first, int last) {
  std::vector<std::int32_t> bands;
  for (int i = first; i <= last; ++i)
    bands.push_back(100 * i);
  return bands;
}

library_data windows(const std::vector<std::pair<int, int>> &of_clones) {
  library_data data;
  for (const auto &[first, last] : of_clones)
    data.add("W" + std::to_string(data.count() + 1), window(first, last));
  return data;
}

struct topology_case {
  const char *what;
  std::vector<std::pair<int, int>> clones;
  int diam, width;
  std::vector<std::pair<int, int>> coordinates;
  number_list MTP;
};

} // namespace

TEST(contig_analysis, worked_cases) {
  const topology_case cases[] = {
      {"one clone", {{1, 20}}, 1, 0, {{1, 20}}, {1}},
      // The path starts at the clone that is farthest from the first one.
      {"a path of three", {{1, 20}, {11, 30}, {21, 40}}, 3, 0, {{21, 40}, {11, 30}, {1, 20}}, {3, 2, 1}},
      {"nearly all of the first inside the second: both start at 1",
       {{1, 30}, {1, 20}},
       2,
       0,
       {{1, 30}, {1, 20}},
       {2, 1}},
      {"nearly all of the second inside the first: the plain rule",
       {{31, 40}, {1, 40}},
       2,
       0,
       {{31, 40}, {1, 40}},
       {2, 1}},
      // Clone 4 has 20 bands, 15 of them common with clone 2, and with both neighbours of clone 2 on the path the pair
      // explains 15 bands, so it goes right; it gets the 30 bands of clone 1, which was counted last.
      {"a clone off the path bears the length of the clone counted last",
       {{21, 50}, {11, 30}, {1, 20}, {6, 25}},
       3,
       1,
       {{21, 50}, {11, 30}, {1, 20}, {16, 45}},
       {3, 2, 1}},
      {"not connected", {{1, 20}, {101, 120}}, 0, -1, {{0, 0}, {0, 0}}, {1}},
  };
  for (const topology_case &given : cases) {
    SCOPED_TRACE(given.what);
    const library_data data = windows(given.clones);
    contig_session session(data, 10);
    class_contig_analysis contig(session.signif, session.rule);
    contig.list_of_clones_set(number_list::range(1, data.count()), data.count());
    contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
    EXPECT_EQ(contig.net_diam_get(), given.diam);
    EXPECT_EQ(contig.net_radius_get(), given.diam / 2);
    EXPECT_EQ(contig.net_width_get(), given.width);
    EXPECT_EQ(contig.net_is_connected_get(), given.width >= 0);
    EXPECT_EQ(contig.clone_coor_known_get(), given.width >= 0);
    EXPECT_TRUE(contig.list_of_clones_MTP() == given.MTP);
    for (int c = 1; c <= data.count(); ++c) {
      EXPECT_EQ(contig.clone_coor_left_get(c), given.coordinates[static_cast<std::size_t>(c) - 1].first) << c;
      EXPECT_EQ(contig.clone_coor_right_get(c), given.coordinates[static_cast<std::size_t>(c) - 1].second) << c;
    }
    EXPECT_EQ(contig.clone_coor_left_get(data.count() + 1), 0);
    EXPECT_TRUE(session.record.messages.empty());
  }
}

TEST(contig_analysis, check_at_another_cutoff_counts_unreached_clones_and_keeps_its_own) {
  // At 15 only 1-2 and 2-3 hold; clone 4 hangs on clone 3 by 10.
  const library_data data = windows({{1, 20}, {6, 25}, {11, 30}, {21, 40}});
  contig_session session(data, 10);
  class_contig_analysis contig(session.signif, session.rule);
  contig.list_of_clones_set({1, 2, 3, 4}, 4);
  contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  const number_list MTP = contig.list_of_clones_MTP();
  contig.check_contig_with_MTP_new_cutoff(15);
  EXPECT_EQ(contig.rule().cutoff, 10);
  EXPECT_EQ(contig.cutoff_new_get(), 15);
  EXPECT_EQ(contig.net_is_connected_NewCutoff_get(), MTP.members().back() == 4 || MTP(1) == 4);
  contig.list_of_clones_set({1, 2, 4}, 3);
  contig.cutoff_set(15);
  contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  contig.check_contig_with_MTP_new_cutoff(15);
  EXPECT_FALSE(contig.net_is_connected_NewCutoff_get());
  EXPECT_EQ(contig.list_of_clones_far_NewCutoff(), (number_list{4}));
  number_list important;
  contig.list_of_clones_important_get(important, true);
  EXPECT_EQ(important, (number_list{1, 4}));
}

TEST(contig_analysis, single_linkage_and_one_cluster) {
  const library_data data = windows({{1, 20}, {101, 120}, {6, 25}, {106, 125}, {301, 320}});
  contig_session session(data, 10);
  class_contig_analysis contig(session.signif, session.rule);
  contig.list_of_clones_set(number_list::range(1, 5), 5);
  for (const bool fast : {true, false}) {
    session.settings.fast_clustering = fast;
    contig.clustering_single_linkage_run(10);
    ASSERT_EQ(contig.clustering().number_of_clusters_get(), 3);
    EXPECT_EQ(contig.clustering().cluster_number_get(3), 1);
    EXPECT_EQ(contig.clustering().cluster_number_get(4), 2);
    EXPECT_EQ(contig.clustering().get_actual_clone_number(contig.clustering().element_of_cluster_get(2, 2)), 4);
  }
  contig.clustering_no_need_all_in_one_cluster();
  EXPECT_EQ(contig.clustering().number_of_clusters_get(), 1);
}

TEST(contig_analysis, report_line_has_the_gap_fields_of_its_family) {
  // The list jumps from one end to the other and back: its first steps are weak, those of the order aren't.
  const library_data data = windows({{1, 20}, {29, 48}, {8, 27}, {15, 34}, {22, 41}});
  contig_session session(data, 10);
  class_contig_analysis contig(session.signif, session.rule);
  contig.cluster_name_set("cl_1");
  contig.cluster_name_long_set("all");
  contig.list_of_clones_set(number_list::range(1, 5), 5);
  contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  EXPECT_EQ(contig.n_gaps_Sulston_get(), 0);
  contig.dir_name_to_output_set(session.folder, true);
  contig.gaps_initial_set(print_consecuent_dist_initial_list_of_clones(contig, false));
  EXPECT_EQ(contig.gaps_initial()[4], 2);
  ASSERT_TRUE(contig.detail_control_of_clone_ordering({}, 1));
  contig.gaps_NoBuriedORB_set(print_consecuent_dist_NoBuriedORB(contig, false));
  EXPECT_EQ(contig.n_gaps_Sulston_get(), 0);
  EXPECT_EQ(contig.list_NoBuriedInit(), number_list::range(1, 5));
  EXPECT_EQ(contig.list_NoBuriedORB(), (number_list{1, 3, 4, 5, 2}));
  EXPECT_FALSE(std::filesystem::exists(session.folder / "cl_1" / "Consec_dist_cl_1.txt"));
  const std::string shape = std::to_string(contig.net_radius_get()) + "\t" + std::to_string(contig.net_diam_get()) +
                            "\t" + std::to_string(contig.net_width_get()) + "\t";
  const auto two = [](const std::vector<std::int32_t> &gaps) {
    return std::to_string(gaps[2]) + "\t" + std::to_string(gaps[6]) + "\t";
  };
  const std::string of_tables =
      "cl_1\t5\t" + two(contig.gaps_initial()) + shape + two(contig.gaps_NoBuriedORB()) + "all";
  for (const auto &[family, line] : std::vector<std::pair<int, std::string>>{
           {0, of_tables}, {2, of_tables}, {3, "cl_1\t5\t2\t" + shape + "0\tall"}, {4, "cl_1\t5\t" + shape + "all"}}) {
    session.settings.table_format_column_subset = static_cast<std::int16_t>(family);
    EXPECT_EQ(report_line_get(contig), line);
  }
}

TEST(contig_analysis, a_list_in_any_order_and_files_by_name) {
  const library_data data = windows({{21, 40}, {1, 20}, {11, 30}});
  contig_session session(data, 10);
  class_contig_analysis contig(session.signif, session.rule);
  contig.cluster_name_set("x");
  contig.list_of_clones_set({3, 1, 2}, 3);
  contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  contig.dir_name_to_output_set(session.folder, true);
  print_list_of_clones_with_coordinates(contig);
  const bool from_right = contig.list_of_clones_MTP()(1) == 1;
  EXPECT_EQ(lines_of_file(session.folder / "x" / "coor_x.txt"),
            from_right ? (lines{"clone\tcoor_left\tcoor_right", "W3\t11\t30", "W1\t1\t20", "W2\t21\t40"})
                       : (lines{"clone\tcoor_left\tcoor_right", "W3\t11\t30", "W1\t21\t40", "W2\t1\t20"}));
  print_clones_of_cluster(contig, session.folder / "named.txt");
  EXPECT_EQ(lines_of_file(session.folder / "named.txt"), (lines{"W3", "W1", "W2"}));
  print_list_of_clones_unoverlapped_with_diam_path(contig);
  EXPECT_FALSE(std::filesystem::exists(session.folder / "x" / "far_from_MTP_x.txt"));
  EXPECT_FALSE(contig.clustering_delete_brunching_run(2, 3));
}
