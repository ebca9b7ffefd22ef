// The cutoff tree and the joining of small clusters, each beside the plainest way to say the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <set>

#include "clustering/class_clust_Linker_nenado.h"
#include "clustering/class_tree.h"
#include "support/net_fixture.h"
#include "support/net_helpers.h"

namespace {

using namespace orb_test;

std::vector<std::string> names_of(std::int32_t n) {
  std::vector<std::string> names{""};
  for (std::int32_t i = 1; i <= n; ++i)
    names.push_back("v" + std::to_string(i));
  return names;
}

// Leaves by name with their atoms, by plain components of each leaf that is refined.
using leaves_by_name = std::map<std::string, std::set<std::int32_t>>;

void refine_plainly(const std::string &name, const std::set<std::int32_t> &atoms, const class_net &net,
                    leaves_by_name &leaves) {
  const std::vector<std::int32_t> order(atoms.begin(), atoms.end());
  std::set<std::int32_t> left = atoms;
  for (int c = 1; !left.empty(); ++c) {
    std::set<std::int32_t> part{*left.begin()};
    for (std::vector<std::int32_t> wave{*left.begin()}; !wave.empty();) {
      const std::int32_t v = wave.back();
      wave.pop_back();
      for (const net_edge &edge : net.edges_of_vertex(v))
        if (atoms.contains(edge.neighbour) && part.insert(edge.neighbour).second)
          wave.push_back(edge.neighbour);
    }
    for (const std::int32_t v : part)
      left.erase(v);
    leaves[name.empty() ? std::to_string(c) : name + "_" + std::to_string(c)] = part;
  }
}

TEST(cutoff_tree, refines_as_plain_walks_do) {
  random_source chance(5);
  for (int round = 0; round < 20; ++round) {
    orb::scripted_frame f;
    const std::int32_t n = 60;
    const edge_map edges = random_edges(n, 70, 3, 4, chance);
    const class_net whole = net_of(n, edges);
    class_tree tree(f.frame);
    tree.inicializate_tree(n, names_of(n), 10);
    leaves_by_name expected;
    std::map<std::string, std::int32_t> leaf_of_name{{"", 0}};
    expected[""] = {};
    for (std::int32_t v = 1; v <= n; ++v)
      expected[""].insert(v);
    std::vector<std::string> work{""};
    for (const double cutoff : {0.0, 13.0, 17.0}) {
      class_net net;
      whole.create_sub_net_without_edges_small_or_large_value(cutoff, net, true);
      std::vector<std::string> next;
      for (const std::string &name : work) {
        leaves_by_name made;
        refine_plainly(name, expected[name], net, made);
        const std::int32_t before = tree.current_number_of_leafs_get();
        tree.clustering_of_leaf(leaf_of_name[name], net, cutoff);
        EXPECT_EQ(tree.leaf_number_of_sub_leafs_get(leaf_of_name[name]), static_cast<std::int32_t>(made.size()));
        for (std::int32_t leaf = before + 1; leaf <= tree.current_number_of_leafs_get(); ++leaf)
          leaf_of_name[tree.leaf_name_get(leaf)] = leaf;
        for (const auto &[child, atoms] : made) {
          expected[child] = atoms;
          if (atoms.size() > 6)
            next.push_back(child);
        }
      }
      work = next;
    }
    for (const auto &[name, atoms] : expected) {
      ASSERT_TRUE(leaf_of_name.contains(name)) << name;
      const std::int32_t leaf = leaf_of_name[name];
      number_list list;
      tree.make_list_of_atoms(leaf, list);
      EXPECT_EQ(std::set<std::int32_t>(list.members().begin(), list.members().end()), atoms) << name;
      EXPECT_TRUE(std::is_sorted(list.members().begin(), list.members().end()));
      for (std::int32_t v = 1; v <= n && leaf > 0; ++v) {
        bool yes = false;
        std::int32_t depth = 0;
        tree.atom_in_leaf_get(v, leaf, depth, yes);
        EXPECT_EQ(yes, atoms.contains(v)) << v << " in " << name;
      }
    }
    EXPECT_TRUE(f.record.messages.empty());
  }
}

TEST(cutoff_tree, statistics_and_ladder) {
  orb::scripted_frame f;
  std::vector<plain_edge> chain;
  for (vertex_number v = 1; v < 600; ++v)
    chain.push_back({v, v + 1, v == 550 || v == 3 ? 10.0 : 20.0});
  const class_net strong = net_of_edges(600, chain);
  class_net weak;
  strong.create_sub_net_without_edges_small_or_large_value(15, weak, true);
  strong.save_net_type(f.frame, f.folder / "1.ORBns");
  weak.save_net_type(f.frame, f.folder / "2.ORBns");
  class_tree tree(f.frame);
  tree.inicializate_tree(600, names_of(600), 0);
  ASSERT_TRUE(
      tree.adaptive_clustering({f.folder / "report.txt", f.folder / "1.ORBns", f.folder / "2.ORBns"}, {0, 5, 15}, 2));
  EXPECT_EQ(f.bytes("report.txt"),
            "Tree statistics: n_leafs_total=601, h_interest=1, min_rs=6, max_rs=500, heap=0, N_in_rs=0, k_large=1, "
            "N_601=600\r\n"
            "Tree statistics: n_leafs_total=604, h_interest=2, min_rs=6, max_rs=500, heap=3, N_in_rs=50, min=50, "
            "max=50, k=1, mean=50.0, k_large=1, N_603=547\r\n");
  EXPECT_EQ(f.record.messages.size(), 2u);
  EXPECT_EQ(tree.leaf_name_get(604), "1_3");
  const tree_statistics none = tree.statistics_of_tree(-1, 7, 6, 500);
  EXPECT_EQ(none.line, "Tree statistics: n_leafs_total=604, index_itirest=7, min_rs=6, max_rs=500, heap=0, N_in_rs=0, "
                       "k_large=0");
  class_tree other(f.frame);
  other.inicializate_tree(5, names_of(5), 0);
  EXPECT_FALSE(other.adaptive_clustering({f.folder / "r.txt", f.folder / "1.ORBns"}, {0, 5}, 1));
}

// The joining as it is described: again and again the strongest link of two open clusters.
std::set<std::set<std::int32_t>> joined_plainly(std::vector<std::set<std::int32_t>> clusters, const class_net &net,
                                                double cutoff) {
  std::vector<bool> closed;
  for (const auto &one : clusters)
    closed.push_back(one.size() > 6);
  for (;;) {
    double best = cutoff;
    std::size_t a = 0, b = 0;
    bool found = false;
    for (std::size_t i = 0; i < clusters.size(); ++i)
      for (std::size_t j = i + 1; j < clusters.size(); ++j)
        for (const std::int32_t v : clusters[i])
          for (const net_edge &edge : net.edges_of_vertex(v))
            if (!closed[i] && !closed[j] && clusters[j].contains(edge.neighbour) &&
                (found ? edge.value > best : edge.value >= best)) {
              best = edge.value;
              a = i, b = j, found = true;
            }
    if (!found)
      break;
    if (clusters[a].size() + clusters[b].size() >= 300) {
      closed[a] = closed[b] = true;
      continue;
    }
    std::set<std::int32_t> united = clusters[a];
    united.insert(clusters[b].begin(), clusters[b].end());
    clusters[a].clear(), clusters[b].clear();
    closed[a] = closed[b] = true;
    clusters.push_back(united);
    closed.push_back(false);
  }
  std::set<std::set<std::int32_t>> left;
  for (const auto &one : clusters)
    if (!one.empty())
      left.insert(one);
  return left;
}

TEST(linker, joins_as_the_plain_search_does) {
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    const std::int32_t n = seed <= 10 ? 90 : 400; // with the larger ones groups reach their limit
    net_fixture f({.n_clones = n, .bands_in_clone = 20, .coverage = 10, .seed = seed});
    random_source chance(seed);
    f.signif.net() = net_of(n, random_edges(n, n * 2, 4, n / 10, chance));
    std::vector<std::set<std::int32_t>> clusters;
    number_list numbers;
    for (clone_number clone = 1; clone <= n;) {
      clusters.emplace_back();
      for (std::int32_t k = chance.number_up_to(8); k > 0 && clone <= n; --k, ++clone) {
        clusters.back().insert(clone);
        numbers.add(static_cast<std::int32_t>(clusters.size()));
      }
    }
    f.rule.cutoff = 12;
    class_clust_Linker_nenado linker(f.signif, f.rule, true);
    class_clustering clustering(f.frame, f.settings, &f.database);
    std::filesystem::path folder;
    std::int32_t min_size = 1;
    ASSERT_TRUE(linker.grouping_of_clusters(numbers, n, number_list::range(1, n),
                                            static_cast<std::int32_t>(clusters.size()), clustering, folder, min_size));
    std::set<std::set<std::int32_t>> found;
    for (std::int32_t c = 1; c <= clustering.number_of_clusters_get(); ++c) {
      number_list part;
      clustering.read_from_arrays_for_clusters(c, part);
      found.insert({part.members().begin(), part.members().end()});
    }
    EXPECT_EQ(found, joined_plainly(clusters, f.signif.net(), 12)) << "seed " << seed;
    EXPECT_EQ(linker.n_merges_get(), static_cast<std::int32_t>(clusters.size()) - clustering.number_of_clusters_get());
    EXPECT_TRUE(std::filesystem::exists(folder / "clustering_cutoffs.txt"));
  }
}

TEST(linker, connections_of_two_lists_and_pairs_without_a_net) {
  net_fixture f({.n_clones = 40, .bands_in_clone = 20, .coverage = 12, .seed = 4});
  f.rule.cutoff = 4;
  net_creation_summary summary;
  ASSERT_TRUE(f.signif.create_net_in_memory(f.rule, summary));
  class_clust_Linker_nenado linker(f.signif, f.rule, true);
  std::vector<std::pair<clone_number, clone_number>> pairs;
  std::int32_t n = 0;
  for (const auto &[one, two] : {std::pair{number_list::range(1, 30), number_list::range(31, 40)},
                                 std::pair{number_list::range(1, 5), number_list::range(6, 40)}}) {
    linker.create_list_of_connections_for_two_lists_of_clones(one, two, pairs, n);
    std::set<std::pair<clone_number, clone_number>> expected;
    for (const clone_number a : one.members())
      for (const net_edge &edge : f.signif.net().edges_of_vertex(a))
        if (edge.neighbour >= two(1) && edge.neighbour <= two(two.count()))
          expected.emplace(a, edge.neighbour);
    EXPECT_EQ((std::set<std::pair<clone_number, clone_number>>(pairs.begin(), pairs.end())), expected);
    EXPECT_EQ(n, static_cast<std::int32_t>(expected.size()));
  }
  number_list numbers; // pairs of clones
  for (std::int32_t clone = 1; clone <= 40; ++clone)
    numbers.add((clone + 1) / 2);
  std::array<std::int32_t, 2> n_merges{};
  for (const bool use_net : {true, false}) {
    class_clust_Linker_nenado one(f.signif, f.rule, use_net);
    class_clustering clustering(f.frame, f.settings, &f.database);
    std::filesystem::path folder;
    std::int32_t min_size = 1;
    ASSERT_TRUE(one.grouping_of_clusters(numbers, 40, number_list::range(1, 40), 20, clustering, folder, min_size));
    n_merges[use_net ? 0 : 1] = one.n_merges_get();
  }
  EXPECT_EQ(n_merges[0], n_merges[1]);
  EXPECT_GT(n_merges[0], 0);
}

} // namespace
