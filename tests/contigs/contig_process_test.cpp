// The chosen analyses of lists: options and their presets, what a folder of lists leaves behind, doubtful clones.
#include <gtest/gtest.h>

#include "contigs/class_contig_process.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

TEST(contig_process, presets_only_add) {
  contig_process_options options;
  options.option_topology = true;
  options.standart_options_one_cluster();
  EXPECT_TRUE(options.option_topology) << "switching off has no effect";
  options.option_clustering_only();
  options.standart_options_folder_of_clusters();
  EXPECT_TRUE(options.option_clustering && options.option_topology);
  EXPECT_TRUE(options.option_test_of_ordering && options.option_nets_for_cutoffs && options.option_mark_MTP &&
              options.option_JK_ordering);
  EXPECT_FALSE(options.option_test_of_all_dist || options.option_unused || options.option_mark_two_lists);
}

class contig_process_of_lists : public testing::Test {
protected:
  net_fixture f_{{.n_clones = 30, .bands_in_clone = 20, .coverage = 8, .seed = 3}};
  void SetUp() override {
    f_.frame.working_folder_set(f_.folder);
    f_.rule.cutoff = 4;
    std::filesystem::create_directories(f_.folder / "lists");
  }
  void chain(std::int32_t n) { // 1 - 2 - ... - n, and each with the one after the next
    std::vector<plain_edge> edges;
    for (vertex_number v = 1; v < n; ++v) {
      edges.push_back({v, v + 1});
      if (v + 2 <= n)
        edges.push_back({v, v + 2});
    }
    f_.signif.net() = net_of_edges(30, edges);
    settings_of_loaded_net(f_.settings);
  }
  std::string names(std::int32_t first, std::int32_t last) const {
    std::string text;
    for (clone_number clone = first; clone <= last; ++clone)
      text += f_.database.name_of_clone_get(clone) + "\n";
    return text;
  }
};

TEST_F(contig_process_of_lists, folder) {
  chain(12);
  f_.write("lists/b.txt", names(1, 12));
  f_.write("lists/a.txt", names(20, 22));
  contig_process_options options;
  options.option_test_of_ordering = true;
  class_contig_process work(f_.signif, f_.rule, options, {f_.folder / "lists", {}, {}, {}, {}}, {}, {});
  ASSERT_TRUE(work.process_folder_of_contigs());
  EXPECT_EQ(f_.record.messages.back(), "Analysis of all 2 clusters from the selected folder is completed.");
  const std::filesystem::path folder = work.files_written().front();
  EXPECT_EQ(f_.frame.working_folder_get(), f_.folder);
  const std::string report = file_bytes(folder / "report.txt");
  EXPECT_TRUE(report.starts_with("i\tcontig\tclones\tgaps\tradius\tdiam\twidth\tgaps_our\r\n1\ta\t3\t")) << report;
  // the longest shortest path has 7 clones, and each of the others is next to it
  EXPECT_NE(report.find("\r\n2\tb\t12\t"), std::string::npos) << report;
  const std::string path = file_bytes(folder / "MTP_b.txt");
  EXPECT_EQ(std::count(path.begin(), path.end(), '\n'), 7);
  EXPECT_EQ(file_bytes(folder / "MTPs.txt"), path) << "a list that is in pieces has no path";
  for (const char *name : {"Consec_dist_a.txt", "Consec_dist_b.txt", "Consec_dist_MTP_b.txt"})
    EXPECT_TRUE(std::filesystem::exists(folder / name)) << name;
  EXPECT_FALSE(std::filesystem::exists(folder / "All_dist_b.txt"));
}

TEST_F(contig_process_of_lists, empty_folder) {
  class_contig_process work(f_.signif, f_.rule, {}, {f_.folder / "lists", {}, {}, {}, {}}, {}, {});
  ASSERT_TRUE(work.process_folder_of_contigs());
  EXPECT_EQ(f_.record.messages.back(), "Analysis of all 0 clusters from the selected folder is completed.");
  EXPECT_EQ(file_bytes(work.files_written().front() / "MTPs.txt"), "");
}

TEST_F(contig_process_of_lists, maps_of_bands) {
  f_.write("list.txt", names(1, 30));
  contig_process_options options;
  const auto files_with = [&](bool contig_process_options::*on) {
    options = {};
    options.*on = true;
    class_contig_process work(f_.signif, f_.rule, options, {f_.folder / "list.txt", {}, {}, {}, {}}, {}, {});
    EXPECT_TRUE(work.controling_of_ordering_contig(false));
    for (const auto &file : work.files_written())
      EXPECT_GT(std::filesystem::file_size(file), 0u) << file;
    return work.files_written().size();
  };
  EXPECT_EQ(files_with(&contig_process_options::option_band_map), 4u);
  const std::string clones = f_.bytes("band_map_all_clones.txt");
  for (clone_number clone = 1; clone <= 30; ++clone)
    EXPECT_NE(clones.find(f_.database.name_of_clone_get(clone)), std::string::npos);
  EXPECT_EQ(files_with(&contig_process_options::option_band_map_simul), 5u);
  EXPECT_NE(f_.bytes("band_map_simulation.txt"), "");
}

TEST_F(contig_process_of_lists, clones_that_hold_two_parts_together) {
  // two cliques of four, joined by clone 9 alone; clone 10 alone
  std::vector<plain_edge> edges;
  for (const vertex_number start : {1, 5})
    for (vertex_number a = start; a < start + 4; ++a)
      for (vertex_number b = a + 1; b < start + 4; ++b)
        edges.push_back({a, b});
  edges.push_back({4, 9});
  edges.push_back({5, 9});
  f_.signif.net() = net_of_edges(30, edges);
  settings_of_loaded_net(f_.settings);
  f_.write("list.txt", names(1, 10));
  contig_process_options options;
  options.option_topology = true;
  class_contig_process work(f_.signif, f_.rule, options, {f_.folder / "list.txt", {}, {}, {}, {}}, {}, {});
  ASSERT_TRUE(work.controling_of_ordering_contig(false));
  EXPECT_EQ(work.n_doubtful_get(), 3); // 9, and 4 and 5 next to it
  const std::string table = f_.bytes("Topology_list.txt");
  EXPECT_NE(table.find(f_.database.name_of_clone_get(1) + "\t3\t1.00\t1\t1\t\r\n"), std::string::npos) << table;
  EXPECT_NE(table.find(f_.database.name_of_clone_get(9) + "\t2\t0.00\t2\t2\tbridge\r\n"), std::string::npos) << table;
  EXPECT_NE(table.find(f_.database.name_of_clone_get(10) + "\t0\t0.00\t0\t0\talone\r\n"), std::string::npos) << table;
}

} // namespace
} // namespace orb
