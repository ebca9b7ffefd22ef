// The lesser tables over the registry.
#include <gtest/gtest.h>

#include "database/class_markers.h"
#include "support/clustering_helpers.h"

using namespace orb_test;

namespace {

// Two contigs, "a/b" of C1..C3 and "a_b" of C4 and C5, with C6 alone outside; markers M1 on C1, C2 and C4, M2 on C5.
struct mapped_library : library {
  class_FPCto_import registry{frame, settings, database};

  mapped_library() : library(6) {
    registry.clear_all_run(5, false);
    registry.add_new_cluster({3, 1, 2}, "a/b", "first", false);
    registry.add_new_cluster({4, 5}, "a_b", "second", false);
    registry.add_new_cluster_finish();
    for (clone_number clone = 1; clone <= 5; ++clone)
      registry.clone_coordinates_set(clone, clone <= 3 ? 40 - 10 * clone : clone, 60 + clone);
    registry.make_min_and_max_coor_for_cluster(1);
    registry.make_min_and_max_coor_for_cluster(2);
    write("markers.txt", "M1\tC1,C2,C4\tzone 7\nM2\tC5\n");
    database.markers().file_with_list_of_clones_for_each_marker_read(frame, database, folder / "markers.txt");
    record.questions.clear();
    record.messages.clear();
  }
};

} // namespace

TEST(registry_tables, contigs_as_lists_from_left_to_right) {
  mapped_library mapped;
  const std::filesystem::path made = mapped.registry.print_FPC_clusters();
  EXPECT_EQ(made.filename(), "clusters_FPC_ordered_2011-02-03_04-05-00");
  const std::string where = made.filename().string() + "/";
  EXPECT_EQ(mapped.file(where + "report.txt"), "contig\tname\tn\tmin\tmax\tbands\r\n"
                                               "a_b\tfirst\t3\t10.000\t63.000\t54.000\r\n"
                                               "a_b_rrr\tsecond\t2\t4.000\t65.000\t62.000\r\n");
  EXPECT_EQ(mapped.file(where + "contigs_ordered/contig_a_b.txt"), "C3\r\nC2\r\nC1\r\n");
  EXPECT_EQ(mapped.file(where + "contigs_ordered_coor/coor_contig_a_b_rrr.txt"),
            "clone\tLeft\tRight\r\nC4\t4.000\t64.000\r\nC5\t5.000\t65.000\r\n");
  EXPECT_EQ(mapped.file(where + "contigs_ordered_coor_markers/coor_mark_contig_a_b.txt"),
            "clone\tLeft\tRight\r\nC3\t10.000\t63.000\r\nC2\t20.000\t62.000\tM1\r\nC1\t30.000\t61.000\tM1\r\n");
}

TEST(registry_tables, clones_and_markers) {
  mapped_library mapped;
  mapped.registry.print_cluster_name_for_clones({6, 2});
  EXPECT_EQ(mapped.file("clones_in_contogs.txt"), "clone\tcontig\r\nC6\t\r\nC2\ta/b\r\n");
  mapped.registry.print_cluster_name_for_clones({});
  EXPECT_EQ(mapped.record.messages.back(), "list_of_clones(0)=0");

  ASSERT_TRUE(mapped.registry.print_positon_of_markers());
  EXPECT_EQ(
      mapped.record.questions,
      (std::vector<std::string>{"From table of lists of clones: clone_1,..,clone_k (or for all markers in system?)",
                                "Final clusters only?"}));
  EXPECT_EQ(mapped.file("mmm.txt"), "marker,position,n_clones,contig,n_clones_in_contig,left,right\r\n"
                                    "M1,zone 7,3,a/b,2,20.000,62.000\r\nM1,zone 7,3,a_b,1,4.000,64.000\r\n"
                                    "M2,,1,a_b,1,5.000,65.000\r\n");
  EXPECT_EQ(mapped.file("contigs_with_n_markers.txt"), "contig,n_clones,n_markers\r\na/b,3,1\r\na_b,2,2\r\n");
  // Clusters that went off count only when asked for; lists of clones in place of markers, an unknown clone told.
  mapped.registry.cluster_off_clusterName("a_b");
  mapped.write("lists.txt", "C4,C6\nC1,nobody,C3\n");
  mapped.answer("From table of lists", "yes");
  mapped.answer("Open file with lists of lists of clones", (mapped.folder / "lists.txt").string());
  ASSERT_TRUE(mapped.registry.print_positon_of_markers());
  EXPECT_EQ(mapped.file("mmm.txt"), "marker,position,n_clones,contig,n_clones_in_contig,left,right\r\n"
                                    "line 2,,2,a/b,2,10.000,63.000\r\n");
  EXPECT_EQ(mapped.record.messages.back(), "In total, 1 clones not found! ");
  mapped.answer("From table of lists", "yes"); // and no file
  EXPECT_FALSE(mapped.registry.print_positon_of_markers());

  mapped.registry.PrintClonesForMarkers();
  EXPECT_EQ(mapped.file("clones_for_each_marker.txt"), "M1\tC1,C2,C4\tzone 7\r\nM2\tC5\t\r\n");
  mapped.registry.PrintClonesForMarkers(marker_separator::blank);
  EXPECT_EQ(mapped.file("clones_for_each_marker.txt"), "M1\tC1 C2 C4\tzone 7\r\nM2\tC5\t\r\n");
  mapped.database.markers().redim_private_arrays(6, 0, 0);
  mapped.registry.PrintClonesForMarkers();
  EXPECT_EQ(mapped.record.messages.back(), "No markers were loaded!");
}

TEST(registry_tables, contigs_are_renamed_all_or_none) {
  mapped_library mapped;
  const struct {
    const char *lines, *said;
  } refused[]{{"a/b\tX\nnone\tY\n", "Contig none not found!"},
              {"a/b\tX\na_b\tX\n", "A contig or a new name stands in two lines."},
              {"a/b\ta_b\n", "Cluster with name a_b already exist!"},
              {"a/b\tX\na_b\n", "A line holds the name of a contig, a tab and its new name."}};
  for (const auto &wrong : refused) {
    mapped.write("names.txt", wrong.lines);
    EXPECT_FALSE(mapped.registry.rename_contigs(mapped.folder / "names.txt"));
    EXPECT_TRUE(mapped.record.messages.back().starts_with(wrong.said)) << mapped.record.messages.back();
    EXPECT_EQ(mapped.registry.name_of_cluster_get(1), "a/b");
  }
  mapped.write("names.txt", "a/b\ta_b\na_b\ta/b\n"); // they change places
  ASSERT_TRUE(mapped.registry.rename_contigs(mapped.folder / "names.txt"));
  cluster_id id = 0;
  bool not_found = true;
  mapped.registry.search_for_cluster("a/b", id, not_found);
  EXPECT_EQ(id, 2);
  EXPECT_EQ(mapped.registry.name_of_cluster_get(1), "a_b");
}
