#include <algorithm>
#include <cmath>

#include "viewer_fixture.h"

namespace orb_test {

namespace {

struct net_document : testing::Test, viewer_session {
  class_net_elng net;
  net_document() : viewer_session(1, 12) {}

  // Nodes at (x, y) with the captions "1", "2", ...; edges by pairs.
  void make(const std::vector<std::pair<float, float>> &places, const std::vector<std::pair<int, int>> &links = {}) {
    std::vector<node_elng> nodes(1);
    std::vector<edge_elng> edges(1);
    for (const auto &[x, y] : places) {
      node_elng node;
      node.caption = std::to_string(nodes.size());
      node.x = x;
      node.y = y;
      node.is_coor_known = true;
      nodes.push_back(node);
    }
    for (const auto &[from, to] : links) {
      edges.emplace_back();
      edges.back().from = from;
      edges.back().to = to;
    }
    net.contents_set("made", nodes, edges, true);
  }
  std::vector<std::int32_t> selected() const { return copy_of(net.selected()); }
};

using numbers = std::vector<std::int32_t>;

TEST_F(net_document, selecting_and_hitting) {
  make({{0, 0}, {2, 0}, {0, 0}, {4, 4}});
  EXPECT_TRUE(net.AddSelectedNode(3) && net.AddSelectedNode(1));
  EXPECT_FALSE(net.AddSelectedNode(3) || net.AddSelectedNode(5) || net.AddSelectedNode(0));
  EXPECT_EQ(selected(), (numbers{3, 1})) << "in the order of the clicks";
  EXPECT_EQ(net.unselect_vertex(2), 3);
  EXPECT_EQ(net.unselect_vertex(3), 0);
  EXPECT_EQ(net.unselect_vertex(1), 0);
  EXPECT_EQ(net.unselect_vertex(1), 2);
  EXPECT_EQ(net.select_all_clones_from_rectangle(0, -1, 4, 5), 1) << "nodes on the border stay out";
  EXPECT_EQ(selected(), numbers{2});
  EXPECT_EQ(net.closest_vertex_from_square_manhettn_distance(0, 0, 1), 1) << "the lower of two at one point";
  EXPECT_EQ(net.closest_vertex_from_square_manhettn_distance(3, 1, 2), 2) << "the border of the square belongs to it";
  EXPECT_EQ(net.closest_vertex_from_square_manhettn_distance(3, 2, 1), -1);
  net.SelectAll();
  EXPECT_FALSE(net.DeleteSelectedNodes(sources)) << "not all of them";
  EXPECT_EQ(net.n_vertices_get(), 4);
  node_elng node;
  EXPECT_TRUE(net.node_get(2, node) && !net.node_get(5, node) && !net.node_set(0, node));
  node.is_selected = node.is_coor_known = false;
  node.is_frozen = true;
  net.node_set(2, node);
  EXPECT_EQ(selected(), (numbers{1, 3, 4}));
  EXPECT_EQ(copy_of(net.unfrozen()), (numbers{1, 3, 4}));
  node_drawing drawing;
  EXPECT_TRUE(net.NodeDraw_get(1, drawing) && !net.NodeDraw_get(2, drawing) && !net.NodeDrawMark_get(1, drawing));
}

// Against maps of captions, for nets by chance.
TEST_F(net_document, deleting_keeps_the_rest_as_it_was) {
  for (int round = 0; round < 15; ++round) {
    fill_by_chance(net, chance, 12, 30);
    const auto nodes = copy_of(net.nodes());
    const auto edges = copy_of(net.edges());
    for (int i = 0; i < 4; ++i)
      net.AddSelectedNode(chance.number_up_to(12));
    const auto gone = [chosen = selected()](vertex_number n) {
      return std::find(chosen.begin(), chosen.end(), n) != chosen.end();
    };
    std::vector<node_elng> kept(1);
    std::vector<edge_elng> kept_edges(1), cut(1);
    for (std::size_t n = 1; n < nodes.size(); ++n)
      if (!gone(static_cast<int>(n)))
        kept.push_back(nodes[n]);
    for (std::size_t e = 1; e < edges.size(); ++e) {
      if (!gone(edges[e].from) || !gone(edges[e].to))
        cut.push_back(edges[e]);
      if (gone(edges[e].from) || gone(edges[e].to))
        continue;
      kept_edges.push_back(edges[e]);
      for (vertex_number *end : {&kept_edges.back().from, &kept_edges.back().to}) {
        vertex_number fewer = 0;
        for (vertex_number n = 1; n < *end; ++n)
          fewer += gone(n);
        *end -= fewer;
      }
    }
    class_net_elng other;
    other.copy_all_from(net);
    EXPECT_EQ(other.DeleteEdgesBetweenSelectedNodes(), static_cast<std::int32_t>(edges.size() - cut.size()));
    EXPECT_EQ(copy_of(other.edges()), cut);
    ASSERT_TRUE(net.DeleteSelectedNodes(sources));
    EXPECT_EQ(copy_of(net.nodes()), kept);
    EXPECT_EQ(copy_of(net.edges()), kept_edges);
    EXPECT_TRUE(net.selected().empty());
  }
}

// Distances by relaxation of all edges until nothing changes.
TEST_F(net_document, linked_groups_and_components_against_plain_distances) {
  for (int round = 0; round < 15; ++round) {
    fill_by_chance(net, chance, 25, 20);
    const auto before = copy_of(net.nodes());
    const vertex_number start = chance.number_up_to(25);
    net.AddSelectedNode(start);
    std::vector<int> distance(26, 99);
    distance[static_cast<std::size_t>(start)] = 0;
    for (int i = 0; i < 25; ++i)
      for (const edge_elng &edge : net.edges().subspan(1)) {
        int &a = distance[static_cast<std::size_t>(edge.from)], &b = distance[static_cast<std::size_t>(edge.to)];
        a = std::min(a, b + 1);
        b = std::min(b, a + 1);
      }
    number_list list;
    net.make_idNodesLinkedWithNode(start, list);
    EXPECT_EQ(list(1), start);
    EXPECT_EQ(list.count(), std::count_if(distance.begin() + 1, distance.end(), [](int d) { return d < 99; }));
    for (std::int32_t i = 2; i <= list.count(); ++i)
      EXPECT_LE(distance[static_cast<std::size_t>(list(i - 1))], distance[static_cast<std::size_t>(list(i))]);
    net.MoveLinkedGroups(60, -6, 2);
    for (std::size_t n = 1; n <= 25; ++n) {
      const double share = distance[n] == 1 ? 2.0 / 3 : distance[n] == 2 ? 1.0 / 3 : 0;
      EXPECT_NEAR(net.nodes()[n].x - before[n].x, 60 * share, 1e-4);
      EXPECT_NEAR(net.nodes()[n].y - before[n].y, -6 * share, 1e-4);
    }
  }
}

TEST_F(net_document, boxes_and_turns) {
  EXPECT_EQ(net.box(), net_box());
  make({{3, 4}});
  EXPECT_EQ(net.box(), (net_box{-7, 13, -6, 14}));
  make({{1, 0}, {0, 2}, {-1, 0}, {0, 0}});
  net.SelectAll();
  net.Rotate(0, 0, 90, 1, 0.5F); // a point at (0, 2) lies as far as one at (1, 0)
  const std::vector<std::pair<float, float>> turned{{0, 2}, {-1, 0}, {0, -2}, {0, 0}};
  for (std::size_t n = 1; n <= 4; ++n) {
    EXPECT_NEAR(net.nodes()[n].x, turned[n - 1].first, 1e-4);
    EXPECT_NEAR(net.nodes()[n].y, turned[n - 1].second, 1e-4);
  }
  net.coorLimitsUpdate();
  net.CheckIsToRotate();
  EXPECT_NEAR(net.nodes()[1].x, 0, 1e-4) << "the box is no wider than four times its height";
  make({{0, 0}, {100, 0}});
  net.CheckIsToRotate();
  EXPECT_NEAR(std::atan2(net.nodes()[2].y, net.nodes()[2].x - 50) * 180 / 3.14159, 0.785, 1e-3);
  net.resize_real(2);
  EXPECT_NEAR(net.box().width(), 200, 0.1);
  net.AddSelectedNode(2);
  float left = 0, right = 0, up = 0, down = 0;
  net.getDeltaXY(left, right, up, down);
  EXPECT_NEAR(left, net.box().width(), 1e-4);
  EXPECT_NEAR(right + up, net.box().height(), 1e-4);
  net.SelectedNodesCoorFroze();
  EXPECT_EQ(copy_of(net.unfrozen()), numbers{1});
}

TEST_F(net_document, colours_of_the_selection) {
  make({{0, 0}});
  net.SelectAll();
  const colour_value odd = color_from_name("blue") + 3;
  for (const bool standard : {true, false}) {
    answer("Selected color is not standard for Pajek format!\r\nUse color <BLUE>?", standard ? "yes" : "no");
    net.SetColorSelectedNodes(frame, odd, !standard);
  }
  EXPECT_EQ(net.nodes()[1].ic, color_from_name("blue"));
  EXPECT_EQ(net.nodes()[1].bc, odd);
  EXPECT_EQ(net.nodes()[1].ic_name + net.nodes()[1].bc_name, "BLUEBLUE");
  net.SetColorSelectedNodes(frame, 0, false);
  EXPECT_EQ(record.questions.size(), 2U) << "black is of the palette";
}

TEST_F(net_document, lists_select_by_caption_clone_or_part) {
  make({{0, 0}, {0, 0}, {0, 0}, {0, 0}});
  const std::vector<std::string> captions{"ctg", "a ctg1", "node", "ctg7"};
  for (vertex_number n = 1; n <= 4; ++n) {
    node_elng node = net.nodes()[static_cast<std::size_t>(n)];
    node.caption = captions[static_cast<std::size_t>(n) - 1];
    node.clone_id = n == 3 ? 5 : n == 4 ? 7 : -1;
    net.node_set(n, node);
  }
  net.AddToSelectedNodes_list_of_clones_from_text(sources, "ctg\r\n" + name(5) + "\n\n  nowhere \tneither");
  EXPECT_EQ(selected(), (numbers{1, 3})) << "parts don't count behind an exact match";
  EXPECT_EQ(last_message(), "2 nodes from list were not found!");
  EXPECT_EQ(bytes("nodes_not_in_net.txt"), "nowhere\r\nneither\r\n");
  answer("NB! tg is only subline of ctg!\r\nShow such messages for other sublines?", "no");
  net.AddToSelectedNodes_list_of_clones_from_text(sources, "tg");
  EXPECT_EQ(selected(), (numbers{1, 3, 2, 4}));
  EXPECT_EQ(record.questions.size(), 1U);
  std::vector<std::string> lines;
  net.textSelectedNodes_get(sources, lines, true);
  EXPECT_EQ(lines, (std::vector<std::string>{"v1\tctg", "3\t" + name(5), "v2\ta ctg1", "4\t" + name(7)}));
  net.UnselectAll();
  answer("In total, 2 clones did not found in the net!\r\nDo you want to save corresponding lists?", "yes");
  net.AddToSelectedNodes_list_of_clones(sources, {7, 2, 5, 99});
  EXPECT_EQ(selected(), (numbers{4, 3}));
  EXPECT_EQ(bytes("clones_not_in_net.txt"), name(2) + "\r\n99\r\n");
}

TEST_F(net_document, clusters_of_a_loaded_table) {
  make({{0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}});
  EXPECT_EQ(net.n_clusters_get(), -1);
  EXPECT_FALSE(table.readClusteringFile_run(frame, write("short.txt", "caption\tcluster\n"), chance));
  const auto file =
      write("t.txt", "caption\tcluster\tlen\textra\n1\tcl10\t7\n3\tcl9\t\tx\n9\tcl10\n\tcl8\n2\n5\tcl9\n");
  ASSERT_TRUE(table.readClusteringFile_run(frame, file, chance));
  net.cluster_looks_from_table(sources);
  // clusters in byte order are "2" (named as its caption), "cl10", "cl9"; node 4 is one of its own
  ASSERT_EQ(net.n_clusters_get(), 4);
  net.AddToSelectedAllClonesOfCluster(net.Get_ClusterIdByNodeId(3));
  std::string heading;
  std::vector<cluster_line> lines;
  net.textClustersSort_get(heading, lines);
  EXPECT_EQ(heading, "#\tName\tClones (shown)");
  std::string text;
  for (const cluster_line &line : lines)
    text += line.text + (line.is_selected ? "!\n" : "\n");
  EXPECT_EQ(text, "1\t2   \n2\t4   \n3\tcl9 \t2 (2)!\n4\tcl10\t2 (1)*\n");
  EXPECT_EQ(net.ClusterNumberInNetNonSorted(4), 2);
  EXPECT_EQ(net.ClusterNumberInNetSorted(2), 4);
  EXPECT_NE(net.nodes()[1].ic, color_from_name("white"));
  EXPECT_EQ(net.nodes()[2].ic_name, "WHITE") << "a single row";
  bool now_selected = true;
  EXPECT_TRUE(net.AddToSelectedAllClonesOfClusterContainingNode(3, true, now_selected) && !now_selected);
  EXPECT_TRUE(net.selected().empty() && !net.cluster_is_selected(3));
  EXPECT_EQ(table.sCaptionForNode("1"), "1");
  table.column_is_shown_set(3, true);
  table.column_is_shown_set(4, true);
  EXPECT_EQ(table.sCaptionForNode("1"), "1 (7, -)");
  EXPECT_EQ(table.sNodeCaptionsList_forCluster_get("cl10"), (std::vector<std::string>{"1", "9"}));
  EXPECT_TRUE(table.readClusteringFile_newColSelected(frame, 3, chance));
  EXPECT_EQ(table.sClusterName_forNodeName_get("1"), "7");
  EXPECT_EQ(table.sClusterName_forNodeName_get("nobody"), "");
}

} // namespace

} // namespace orb_test
