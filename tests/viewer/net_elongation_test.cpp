#include <algorithm>
#include <map>
#include <set>

#include "frame/numbers.h"
#include "viewer/clone_records.h"
#include "viewer_fixture.h"

namespace orb_test {

namespace {

struct net_elongation : testing::Test, viewer_session {
  class_net_elng net;
  elongation_candidates candidates;
  std::int32_t n_small = 0, n_added = 0;
  std::string text;
  bool ok = false;

  explicit net_elongation(std::uint64_t seed = 1) : viewer_session(seed) {}
  double value_in_net(clone_number a, clone_number b) const {
    for (const net_edge &edge : signif.net().edges_of_vertex(a))
      if (edge.neighbour == b)
        return edge.value;
    return -1;
  }
  void make(const number_list &list, double cutoff, bool use_net = true) {
    net.make_net_for_list_of_clones_run(sources, list, cutoff, use_net, "cl", ok);
  }
  // Pairs of clones with an edge, and their labels.
  std::map<std::pair<int, int>, std::string> edges() const {
    std::map<std::pair<int, int>, std::string> all;
    for (const edge_elng &edge : net.edges().subspan(1)) {
      const auto [a, b] = std::minmax(net.nodes()[static_cast<std::size_t>(edge.from)].clone_id,
                                      net.nodes()[static_cast<std::size_t>(edge.to)].clone_id);
      EXPECT_TRUE(all.emplace(std::pair(a, b), edge.caption + edge.c_name).second) << "an edge twice";
    }
    return all;
  }
  // The edges that all pairs of nodes should have.
  template <class value_function> auto edges_of_all_pairs(double cutoff, value_function &&value) {
    std::map<std::pair<int, int>, std::string> all;
    for (const node_elng &a : net.nodes().subspan(1))
      for (const node_elng &b : net.nodes().subspan(1))
        if (a.clone_id < b.clone_id && value(a.clone_id, b.clone_id) >= cutoff) {
          const edge_elng edge = edge_of_score(1, 2, value(a.clone_id, b.clone_id));
          all[{a.clone_id, b.clone_id}] = edge.caption + edge.c_name;
        }
    return all;
  }
};

// Ranks by relaxation over all pairs of the library.
TEST_F(net_elongation, ranks_and_edges_against_all_pairs_of_the_net) {
  const auto value = [this](int a, int b) { return value_in_net(a, b); };
  for (int round = 0; round < 8; ++round) {
    const double cutoff = 6 + round;
    number_list list;
    for (int i = 0; i < 4; ++i)
      list.add(chance.number_up_to(60));
    make(list, cutoff);
    EXPECT_EQ(edges(), edges_of_all_pairs(cutoff, value));
    net.AddSelectedNode(1);
    net.AddSelectedNode(2);
    std::map<int, int> rank;
    for (const node_elng &node : net.nodes().subspan(1))
      rank[node.clone_id] = node.is_selected ? 0 : 99;
    for (int r = 1; r <= 5; ++r)
      for (int a = 1; a <= 60; ++a)
        for (int b = 1; b <= 60; ++b)
          if (rank.count(a) && rank[a] == r - 1 && !rank.count(b) && value(a, b) >= cutoff)
            rank[b] = r;
    ASSERT_TRUE(net.text_rank(sources, cutoff, true, candidates, n_small, text));
    std::string wanted_text = "n(0)=2";
    std::set<int> wanted, found;
    int n_wanted_small = 0;
    for (int r = 1; r <= 5; ++r) {
      const auto n = std::count_if(rank.begin(), rank.end(), [r](const auto &one) { return one.second == r; });
      n_wanted_small += n >= 1 && n <= 50;
      if (wanted_text.substr(wanted_text.size() - 2) != "=0")
        wanted_text += "\r\nn(" + std::to_string(r) + ")=" + std::to_string(n);
    }
    EXPECT_EQ(text, wanted_text);
    EXPECT_EQ(n_small, n_wanted_small);
    for (const auto &[clone, r] : rank)
      if (r <= 2 || r == 99)
        wanted.insert(clone);
    net.elongate(sources, cutoff, true, 2, candidates, n_added);
    for (const node_elng &node : net.nodes().subspan(1))
      found.insert(node.clone_id);
    EXPECT_EQ(found, wanted);
    EXPECT_EQ(net.n_vertices_get(), static_cast<int>(found.size())) << "none twice";
    EXPECT_FALSE(net.coor_are_known_get());
    // edges between nodes that were there before stay as they are, and they were complete
    EXPECT_EQ(edges(), edges_of_all_pairs(cutoff, value));
  }
}

TEST_F(net_elongation, by_bands_one_rank_and_no_net_is_asked) {
  const double cutoff = 4;
  gate.net_private_parameters_set(rule.distance_index, cutoff, 0.9, false, false);
  const auto value = [this](int a, int b) { return gate.my_cutoff(a, b); };
  make({3, 17}, cutoff, false);
  EXPECT_EQ(edges(), edges_of_all_pairs(cutoff, value));
  net.AddSelectedNode(2);
  ASSERT_TRUE(net.text_rank(sources, cutoff, false, candidates, n_small, text));
  std::vector<std::int32_t> overlapping;
  for (clone_number clone = 1; clone <= 60; ++clone)
    if (clone != 3 && clone != 17 && value(clone, 17) >= cutoff)
      overlapping.push_back(clone);
  EXPECT_EQ(copy_of(candidates.list_of_elongate_clones), overlapping);
  net.elongate(sources, cutoff, false, 1, candidates, n_added);
  EXPECT_GT(n_added, 1);
  EXPECT_EQ(last_message(), std::to_string(n_added) + " clones added.");
  EXPECT_EQ(edges(), edges_of_all_pairs(cutoff, value));
  net.elongate(sources, cutoff, false, 1, candidates, n_added);
  EXPECT_EQ(last_message(), "No clones to add.");
  const auto before = copy_of(net.nodes());
  on_yield = [] { return true; };
  EXPECT_FALSE(net.text_rank(sources, cutoff, false, candidates, n_small, text));
  EXPECT_TRUE(candidates.list_of_elongate_clones.empty());
  candidates = {{1, 2, 3, 4}, {1, 1, 1, 1}};
  net.elongate(sources, cutoff, false, 1, candidates, n_added);
  EXPECT_EQ(n_added, 0);
  EXPECT_EQ(copy_of(net.nodes()), before) << "a stop leaves the net whole";
}

TEST_F(net_elongation, edges_between_selected_nodes_are_completed) {
  for (const bool use_net : {true, false}) {
    make(number_list::range(1, 30), 8);
    const auto all = edges();
    record.messages.clear();
    net.add_edges_between_selected_clones(sources, 8, use_net, ok, n_added);
    EXPECT_TRUE(ok && n_added == 0 && record.messages.empty()) << "nothing is selected: no word";
    for (vertex_number n = 1; n <= 12; ++n)
      net.AddSelectedNode(n);
    const std::int32_t n_gone = net.DeleteEdgesBetweenSelectedNodes();
    ASSERT_GT(n_gone, 3);
    net.SelectAll();
    const double cutoff = use_net ? 8 : 1000;
    net.add_edges_between_selected_clones(sources, cutoff, use_net, ok, n_added);
    EXPECT_EQ(n_added, use_net ? n_gone : 0);
    EXPECT_EQ(last_message(),
              use_net ? "In total, " + std::to_string(n_gone) + " edges were added." : "NB! No edges were added.");
    EXPECT_EQ(edges() == all, use_net);
  }
  net.UnselectAll();
  for (const edge_elng &edge : net.edges().subspan(1)) {
    net.AddSelectedNode(edge.from);
    net.AddSelectedNode(edge.to);
    break;
  }
  net.add_edges_between_selected_clones(sources, 8, true, ok, n_added);
  EXPECT_EQ(last_message(), "All possible edges, connecting to selected nodes, are presented in the net!");
  node_elng nobody = net.nodes()[1];
  nobody.clone_id = -1;
  net.node_set(1, nobody);
  net.SelectAll();
  net.add_edges_between_selected_clones(sources, 1, true, ok, n_added);
  EXPECT_TRUE(!ok && n_added == 0);
}

TEST_F(net_elongation, nets_of_names) {
  answer("Unknown clone name: nobody", "yes");
  answer("Name of list of nodes", "mine");
  net.make_net_for_clones_from_text(sources, name(4) + "\r\nnobody\n" + name(2) + "\t" + name(4), 6, true, ok);
  EXPECT_EQ(net.net_name_get(), "mine_6.0");
  ASSERT_EQ(net.n_vertices_get(), 2);
  EXPECT_EQ(net.nodes()[1].caption, name(2));
  EXPECT_EQ(ok, value_in_net(2, 4) >= 6);
  answer("Unknown clone name: nobody", "cancel");
  net.make_net_for_clones_from_text(sources, name(1) + "\nnobody", 6, true, ok);
  EXPECT_TRUE(!ok && net.n_vertices_get() == 2) << "given up";
  net.make_net_for_clones_from_text(sources, "", 6, true, ok);
  EXPECT_EQ(last_message(), "No clones!");
  make({9, 1}, 1000);
  EXPECT_EQ(last_message(), "Net is not connected! Number of connected components =2");
  EXPECT_FALSE(ok);
  EXPECT_EQ(net.nodes()[1].clone_id, 9) << "in the order of the list";
}

TEST_F(net_elongation, clusters_are_filled_and_wear_one_look) {
  auto contigs = std::make_shared<class_FPCto_import>(frame, settings, database);
  contigs->clear_all(60);
  contigs->add_new_cluster({1, 2, 3, 4, 5}, "ctg1", "", false);
  contigs->add_new_cluster({6, 7}, "ctg2", "", false);
  database.contigs_set(contigs);
  database.contigs_are_specified_set(true);
  make({2, 6, 40}, 6);
  ASSERT_EQ(net.n_clusters_get(), 2);
  EXPECT_EQ(net.clusters()[1].n_clones, 5);
  node_elng first = net.nodes()[1];
  first.ic_name = "Red";
  first.size = 9;
  net.node_set(1, first);
  net.AddSelectedNode(1);
  net.AddSelectedNode(3);
  net.fill_clusters(sources, 6, true, n_added);
  EXPECT_EQ(n_added, 4);
  EXPECT_EQ(net.clusters()[1].n_shown, 5);
  for (std::size_t n = 4; n <= 7; ++n) {
    EXPECT_EQ(net.nodes()[n].ic_name, "Red");
    EXPECT_EQ(net.nodes()[n].mark_size, 18);
    EXPECT_FALSE(net.nodes()[n].is_coor_known || net.nodes()[n].is_frozen);
  }
  EXPECT_EQ(net.nodes()[4].clone_id, 1);
}

TEST_F(net_elongation, overlays_show_marks_and_scores_of_the_net) {
  number_list pair;
  for (clone_number a = 1; a <= 60 && pair.empty(); ++a)
    if (signif.net().number_of_edges_for_vertex_total_get(a) > 0)
      pair = {a, signif.net().edges_of_vertex(a)[0].neighbour};
  const std::int16_t marks[]{-2, -1, 0, 5, 4};
  const char *fills[]{"gray", "white", "green", "black", "red"};
  for (std::size_t i = 0; i < 5; ++i) {
    signif.net().change_vertex_index(pair(1), marks[i]);
    make(pair, 6);
    EXPECT_EQ(net.nodes()[1].is_marked, marks[i] >= -1);
    EXPECT_EQ(net.nodes()[1].mark_ic, color_from_name(fills[i]));
    EXPECT_EQ(net.edges()[1].is_marked, marks[i] == 0 || marks[i] == 4) << marks[i];
  }
  EXPECT_EQ(net.EdgeCaptionMark_get(1), number_text(value_in_net(pair(1), pair(2)), 1));
  EXPECT_EQ(net.edges()[1].mark_c, color_from_name("white"));
}

} // namespace

} // namespace orb_test
