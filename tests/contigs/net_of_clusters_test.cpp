// The net of clusters: a chain of clusters that is united, a branching, and what is printed of them.
#include <gtest/gtest.h>

#include "contigs/net_of_clusters.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

// Clones B1..B9 in lists a to e and one empty list; a - b - c are a chain with free ends, d - e another one.
struct clusters_fixture : net_fixture {
  net_of_clusters result;
  clusters_fixture() : net_fixture({.n_clones = 9, .bands_in_clone = 6}) {
    for (clone_number clone = 1; clone <= 9; ++clone)
      database.name_of_clone_set(clone, "B" + std::to_string(clone));
    database.sort_clones_by_name(frame);
    signif.net() = net_of_edges(
        9, {{1, 2, 40}, {2, 3, 20}, {1, 4, 22.26}, {4, 5, 16}, {5, 6, 30}, {3, 6, 14}, {7, 8, 19}, {8, 9, 50}});
    signif.net_is_loaded_set();
    create_folder(folder / "lists");
    write("lists/a.txt", "B1\n B2 \n\nB77\n");
    write("lists/b.txt", "B4\nB3\n");
    write("lists/c.txt", "B5\nB6\n");
    write("lists/d.txt", "");
    write("lists/e.txt", "B7\n");
    write("lists/f.txt", "B8\n");
    write("lists/not_a_list.doc", "B9\n");
    record = {};
  }
  bool run(net_of_clusters_options options = {}) { return create_net_of_clusters(signif, {4, 15}, options, result); }
  std::vector<std::string> folders(const std::string &start) const {
    std::vector<std::string> found;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
      if (entry.is_directory() && entry.path().filename().string().starts_with(start))
        found.push_back(entry.path().filename().string());
    std::sort(found.begin(), found.end());
    return found;
  }
};

TEST(net_of_clusters, chains_are_united_and_printed) {
  clusters_fixture f;
  f.answer_always("Open any file from the folder", (f.folder / "lists" / "c.txt").string());
  f.answer_always("Input minimal cluster size", "1");
  ASSERT_TRUE(f.run());
  EXPECT_EQ(f.record.messages, std::vector<std::string>{"Unknown clone 'B77' (line 4) in file " +
                                                        (f.folder / "lists" / "a.txt").string()});
  EXPECT_EQ(f.result.names, (std::vector<std::string>{"", "a", "b", "c", "d", "e", "f"}));
  EXPECT_EQ(f.result.clones, number_list::range(1, 8));
  EXPECT_EQ(f.result.cluster_of_clone, (number_list{1, 1, 2, 2, 3, 3, 5, 6}));
  EXPECT_EQ(f.result.united_of_cluster, (number_list{1, 1, 1, 3, 2, 2}));
  const std::string look = "\" sh ellipse x_fact 1 y_fact 1 ic Blue bc Black\r\n", line = " 1 w 1 c Black p Solid l \"";
  std::string vertices;
  for (const std::string caption : {"1 \"a", "2 \"b", "3 \"c", "4 \"d", "5 \"e", "6 \"f"})
    vertices += caption + look;
  EXPECT_EQ(file_bytes(f.folder / "NetOfClusters.net"), "*Network NetOfClusters\r\n*Vertices 6\r\n" + vertices +
                                                            "*Arcs 0\r\n*Edges 3\r\n1 2" + line + "22.3\"\r\n2 3" +
                                                            line + "16.0\"\r\n5 6" + line + "19.0\"\r\n");
  EXPECT_EQ(file_bytes(f.folder / "net1.txt"),
            "\r\nn_vereces\t6\r\nn_edges\t6\r\n\r\n1\ta\t0\t1\r\n1\t1\t2\tb\t0\t2\t22.26\t0\t0\r\n\r\n2\tb\t0\t2\r\n"
            "1\t2\t1\ta\t0\t1\t22.26\t0\t0\r\n2\t3\t3\tc\t0\t1\t16.00\t0\t0\r\n\r\n3\tc\t0\t1\r\n"
            "1\t4\t2\tb\t0\t2\t16.00\t0\t0\r\n\r\n4\td\t0\t0\r\n\r\n5\te\t0\t1\r\n1\t5\t6\tf\t0\t1\t19.00\t0\t0\r\n\r\n"
            "6\tf\t0\t1\r\n1\t6\t5\te\t0\t1\t19.00\t0\t0\r\n");
  // The lists: once of clusters, once of clones, where the cluster without clones is left out.
  const std::vector<std::string> folders = f.folders("clusters_ClusteringNew");
  ASSERT_EQ(folders.size(), 2U);
  EXPECT_TRUE(folders[1].starts_with("clusters_ClusteringNew_of_clusters_"));
  EXPECT_EQ(file_bytes(f.folder / folders[0] / "cluster_1_6.txt"), "B1\r\nB2\r\nB3\r\nB4\r\nB5\r\nB6\r\n");
  EXPECT_EQ(file_bytes(f.folder / folders[0] / "cluster_2_2.txt"), "B7\r\nB8\r\n");
  EXPECT_EQ(file_bytes(f.folder / folders[1] / "cluster_1_3.txt"), "a\r\nb\r\nc\r\n");
  EXPECT_EQ(file_bytes(f.folder / folders[1] / "cluster_3_1.txt"), "d\r\n");
  EXPECT_EQ(file_bytes(f.folder / "net2.txt"),
            "\r\nn_vereces\t3\r\nn_edges\t0\r\n\r\n1\tClusteringNew_1_6\t0\t0\r\n\r\n2\tClusteringNew_2_2\t0\t0\r\n\r\n"
            "3\tClusteringNew_3_0\t0\t0\r\n");
  EXPECT_TRUE(file_bytes(f.folder / "NetOfClustersAutoMerg.net").starts_with("*Network NetOfClusters\r\n*Vertices 3"));
  EXPECT_EQ(f.result.files_written.size(), 4U);
}

TEST(net_of_clusters, a_branching_stays_and_the_last_list_has_the_clone) {
  clusters_fixture f;
  f.write("lists/g.txt", "B9\nB6\n"); // takes B6 from c
  f.signif.net() = net_of_edges(9, {{2, 3}, {3, 5}, {4, 6}, {6, 9, 55}, {5, 9, 17}});
  ASSERT_TRUE(f.run({f.folder / "lists", "new", 1})); // b, c and g are a cycle with a tail: only b branches
  EXPECT_EQ(f.result.cluster_of_clone, (number_list{1, 1, 2, 2, 3, 7, 5, 6, 7}));
  EXPECT_EQ(f.result.united_of_cluster(3), f.result.united_of_cluster(7));
  EXPECT_NE(f.result.united_of_cluster(2), f.result.united_of_cluster(3));
  EXPECT_NE(f.result.united_of_cluster(2), f.result.united_of_cluster(1));
  EXPECT_EQ(f.result.united_net.number_of_edges_get(), 4);
  EXPECT_EQ(std::count(f.record.questions.begin(), f.record.questions.end(),
                       "Input caption for clusters: <caption>_<cluster number>_<size>"),
            0);
}

TEST(net_of_clusters, ends_without_files) {
  clusters_fixture f;
  EXPECT_FALSE(f.run()); // no folder chosen
  f.write("lists/b.txt", std::string("B1\n\0\1\2", 6));
  EXPECT_FALSE(f.run({f.folder / "lists", "", -1}));
  EXPECT_TRUE(f.frame.data_failed());
  f.write("lists/b.txt", "B3\n");
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(f.run({f.folder / "lists", "", -1}));
  EXPECT_FALSE(std::filesystem::exists(f.folder / "net1.txt"));
  for (const auto &entry : std::filesystem::directory_iterator(f.folder / "lists"))
    std::filesystem::remove(entry.path());
  EXPECT_TRUE(f.run({f.folder / "lists", "x", -1})); // no lists at all: an empty net
  EXPECT_EQ(f.result.net.number_of_vertices_get(), 0);
}

} // namespace
} // namespace orb
