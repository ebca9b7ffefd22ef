// The net against the clusters of the registry, each time beside the plainest way to say the same.
#include <gtest/gtest.h>

#include "clustering/nets_and_clusters.h"
#include "frame/numbers.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

// Clones in clusters of chance sizes from 1 to 30; about a quarter lie in none, and one cluster is off.
struct clustered_fixture : net_fixture {
  class_FPCto_import registry{frame, settings, database};
  explicit clustered_fixture(std::uint64_t seed)
      : net_fixture({.n_clones = 90, .bands_in_clone = 20, .coverage = 10, .seed = seed}) {
    registry.clear_all_run(5, false);
    random_source chance(seed);
    for (clone_number next = 90; next >= 1;) {
      number_list list;
      for (std::int32_t n = chance.number_up_to(30); n > 0 && next >= 1; --n, --next)
        list.add(next);
      if (chance.uniform() < 0.75)
        registry.add_new_cluster(list, "k" + std::to_string(next), "", false);
    }
    registry.add_new_cluster_finish();
    record = {};
  }
};

std::string plain_text_net(const clustered_fixture &f, const overlap_rule &rule, std::int32_t max_size) {
  class_clone_dist_calc calc(f.context);
  std::string text;
  for (clone_number i = 1; i <= 90; ++i) {
    std::string lines;
    int n = 0;
    for (clone_number j = 1; j <= 90; ++j) {
      const cluster_id id = f.registry.clone_in_cluster_get(i);
      if (i == j || id == 0 || id != f.registry.clone_in_cluster_get(j) ||
          f.registry.n_clones_in_cluster_get(id) > max_size)
        continue;
      const double value = calc.minus_log10_p_value_of_clone_overlapping(i, j, rule.distance_index);
      if (value < rule.cutoff)
        continue;
      const int code = calc.burring_index_get(rule.burying);
      ++n;
      lines += std::to_string(j) + "\t" + f.database.name_of_clone_get(j) + "\t" + number_text(value, 2) +
               (code > 0 ? "\tabs" + std::to_string(code) : "") + "\r\n";
    }
    text += "clone\t" + std::to_string(i) + "\t" + f.database.name_of_clone_get(i) + "\t" + std::to_string(n) + "\r\n" +
            lines;
  }
  return text;
}

TEST(nets_and_clusters, text_net_within_clusters) {
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    clustered_fixture f(seed);
    const overlap_rule rule{seed % 2 == 0 ? std::int16_t{4} : std::int16_t{0}, seed % 2 == 0 ? 4.0 : 60.0, 0.6};
    const bool all = seed <= 2;
    std::int32_t size = 0; // of some cluster, which is looked into
    for (clone_number clone = 1; size < 5; ++clone)
      size = f.registry.n_clones_in_cluster_get(f.registry.clone_in_cluster_get(clone));
    net_within_clusters_summary summary;
    ASSERT_TRUE(create_file_with_significant_connections_within_clusters_text(
        f.context, f.registry, rule, {all ? std::nullopt : std::optional<double>(size)}, summary));
    EXPECT_EQ(file_bytes(f.folder / "signif_overlaps_clust.txt"), plain_text_net(f, rule, all ? 90 : size)) << seed;
    EXPECT_GT(summary.n_overlaps, 0);
    EXPECT_EQ(f.record.messages, std::vector<std::string>{"Precalc is Ok"});
    if (all) {
      EXPECT_EQ(f.record.questions.front(), "maximal size of cluster");
    }
    f.frame.stop_requested_set(true);
    EXPECT_FALSE(
        create_file_with_significant_connections_within_clusters_text(f.context, f.registry, rule, {}, summary));
    const std::string begun = file_bytes(summary.file);
    EXPECT_EQ(begun, plain_text_net(f, rule, 90).substr(0, begun.size()));
  }
}

TEST(nets_and_clusters, clones_joined_out_of_their_cluster) {
  net_fixture f({.n_clones = 8, .bands_in_clone = 6});
  class_FPCto_import registry(f.frame, f.settings, f.database);
  registry.clear_all_run(5, false);
  registry.add_new_cluster({1, 2}, "a", "", false);
  registry.add_new_cluster({3, 4, 5}, "b", "", false);
  registry.add_new_cluster({6}, "c", "", false);
  registry.add_new_cluster_finish();
  // 1: to 3 and 4, both strong; 3: to 1 and 6; 4: only to 1, 5 is of its own; 6: one is weak; 2: to 7 and 8 in no
  // cluster; 7: has none itself.
  const class_net net = net_of_edges(
      8, {{1, 3, 15}, {1, 4, 20}, {4, 5, 30}, {3, 6, 16}, {5, 6, 14.99}, {2, 7, 20}, {2, 8, 20}, {6, 7}, {3, 7}});
  number_list list;
  std::filesystem::path file;
  ASSERT_TRUE(create_list_of_clones_with_connectionOutFromCluster(f.context, net, registry, {}, list, file));
  EXPECT_EQ(list, (number_list{1, 3}));
  EXPECT_EQ(f.record.questions, std::vector<std::string>{"cutoff"});
  EXPECT_EQ(f.record.messages, std::vector<std::string>{"Ok"});
  EXPECT_EQ(file, f.folder / "clones_with_connectionOutFromCluster.txt");
  EXPECT_EQ(file_bytes(file), f.database.name_of_clone_get(1) + "\r\n" + f.database.name_of_clone_get(3) + "\r\n");
  ASSERT_TRUE(create_list_of_clones_with_connectionOutFromCluster(f.context, net, registry, 14.5, list, file));
  EXPECT_EQ(list, (number_list{1, 3, 6}));
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(create_list_of_clones_with_connectionOutFromCluster(f.context, net, registry, 20, list, file));
}

} // namespace
} // namespace orb
