#include <algorithm>

#include "drawing/class_net_draw.h"
#include "viewer_fixture.h"

namespace orb_test {

namespace {

struct net_file : testing::Test, viewer_session {
  class_net_elng net;
  bool all_or_none = false;
  bool read(const std::string &text) { return net.ReadNetFile(sources, write("some.net", text), true, all_or_none); }
};

const std::string head = "*Network n\n*Vertices 2\n1 \"a\"\n2 \"b\"\n";

TEST_F(net_file, what_is_saved_reads_back_equal) {
  random_source by(3);
  for (int round = 0; round < 20; ++round) {
    class_net_elng made;
    fill_by_chance(made, by, 1 + round, 3 * round);
    ASSERT_TRUE(made.SaveNet(frame, folder / "a.net", {made.net_name_get(), true, {}, {}}));
    ASSERT_TRUE(net.ReadNetFile(sources, folder / "a.net", true, all_or_none));
    EXPECT_TRUE(all_or_none && net.coor_are_known_get());
    EXPECT_EQ(net.net_name_get(), made.net_name_get());
    ASSERT_EQ(copy_of(net.nodes()), copy_of(made.nodes()));
    ASSERT_EQ(copy_of(net.edges()), copy_of(made.edges()));
    EXPECT_EQ(net.box(), made.box());
    ASSERT_TRUE(net.SaveNet(frame, folder / "b.net", {net.net_name_get(), true, {}, {}}));
    EXPECT_EQ(bytes("a.net"), bytes("b.net"));
  }
}

TEST_F(net_file, ids_with_gaps_attributes_and_a_part_saved) {
  ASSERT_TRUE(
      read("*Vertices 3\r\n\r\n10 \"x y\" 1 2,5 0 sh box ic Red bc nosuch x_fact 9 y_fact 6 zz 1\n20 \"b\"\n"
           "  30 \"c\" sh nosuch\n*Edges 2\n20 30 1.5\n30 10 7 l \"9\"\n*Arcs 1\n10 30 0 w 2.9 c pink p Dots\n"));
  EXPECT_FALSE(all_or_none);
  EXPECT_FALSE(net.coor_are_known_get());
  const node_elng &first = net.nodes()[1];
  EXPECT_EQ(first.caption + first.ic_name + first.bc_name, "x yRednosuch");
  EXPECT_EQ(first.bc, 0);
  EXPECT_EQ(first.ic, 255);
  EXPECT_EQ(first.size, 7);
  EXPECT_EQ(first.shape, 1);
  EXPECT_EQ(first.y, 2.5F);
  EXPECT_TRUE(first.is_frozen && first.is_coor_known && !net.nodes()[2].is_frozen);
  EXPECT_EQ(copy_of(net.unfrozen()), (std::vector<std::int32_t>{2, 3}));
  ASSERT_EQ(net.n_edges_get(), 3);
  const edge_elng &arc = net.edges()[3];
  EXPECT_TRUE(arc.is_arc && arc.from == 1 && arc.to == 3 && arc.width == 2 && arc.pattern == 1 && arc.value == 0);
  net.AddSelectedNode(3);
  net.AddSelectedNode(1);
  int n_removals = 0;
  const net_saving saving{"part", false, [](const edge_elng &edge) { return edge.caption.empty(); },
                          [&n_removals] { ++n_removals; }};
  ASSERT_TRUE(net.SaveNet(frame, folder / "part.net", saving));
  EXPECT_EQ(n_removals, 1);
  EXPECT_EQ(bytes("part.net"),
            "*Network part\r\n*Vertices 2\r\n1 \"c\" 0.000 0.000 sh ellipse x_fact 1 y_fact 1 ic gray bc black\r\n"
            "2 \"x y\" 1.000 2.500 sh box x_fact 1 y_fact 1 ic Red bc nosuch\r\n*Arcs 1\r\n"
            "2 1 1 w 2 c pink p Dots l \"\"\r\n*Edges 0\r\n");
  net.UnselectAll();
  EXPECT_FALSE(net.SaveNet(frame, folder / "none.net", saving));
  EXPECT_EQ(last_message(), "No nodes were selected!");
}

TEST_F(net_file, what_is_wrong_is_told_and_leaves_the_net) {
  ASSERT_TRUE(read(head));
  const struct {
    std::string text, message;
    int line;
  } cases[] = {
      {head + "*Vertices 2\n", "Number of vertices defined twice!", 5},
      {"*Vertices two\n", "Number of vertices is not numeric!", 1},
      {"*Vertices\n", "Number of vertices is not numeric!", 1},
      {"*Vertices 0\n", "Number of vertices should be > 0", 1},
      {head + "*Arcs 0\n*Arcs 0\n", "Number of vectors (arcs) defined twice!", 6},
      {head + "*Arcs x\n", "Number of vectors (arcs) is not numeric!", 5},
      {head + "*Arcs -1\n", "Number of vectors (arcs) should be > = 0", 5},
      {head + "*Edges 0\n*Edges 1\n", "Number of edges defined twice!", 6},
      {head + "*Edges x\n", "Number of edges is not numeric!", 5},
      {head + "*Edges -1\n", "Number of edges should be >= 0", 5},
  };
  for (const auto &one : cases) {
    EXPECT_FALSE(read(one.text)) << one.text;
    const std::string place = "\r\nfile " + (folder / "some.net").string() + ", line " + std::to_string(one.line);
    EXPECT_EQ(record.messages.at(record.messages.size() - 2), one.message + place);
    EXPECT_EQ(last_message(), "File with net was not read!");
  }
  const auto not_understood = [&](const std::string &text, const std::string &what, const std::string &rest) {
    record.messages.clear();
    EXPECT_FALSE(read(text)) << text;
    ASSERT_EQ(record.messages.size(), 2U) << text;
    EXPECT_EQ(record.messages[0].rfind("Can't understand " + what + " in file with net.\r\n It can be also " + rest, 0),
              0U)
        << record.messages[0];
  };
  for (const char *line : {"nothing", "*edges 1", "*Matrix 2", "\"*Edges\" 1"})
    not_understood(head + line, "line #5", "undeclared object.");
  not_understood("*Network n\n*Edges 1\n", "line #2", "undeclared object.");
  for (const char *line :
       {"1 a", "x \"a\"", "0 \"a\"", "600001 \"a\"", "1", "1 \"a\" x_fact -1", "1 \"a\" y_fact z",
        "1 \"a\" 1 2 3 x_fact", "1.5 \"a\"", "7 \"a", "*Edges 0", "1 \"a\" 1e+99 0", "1 \"a\" ic Red\" bc"})
    not_understood("*Vertices 1\n" + std::string(line), "vertex line #2", "result of missed object.");
  not_understood("*Vertices 2\n1 \"a\"\n1 \"b\"\n", "vertex line #3", "result of missed object.");
  for (const char *line : {"1 3 1", "0 1 1", "1 2", "1 2 x", "a 2 1", "1 2 1 w x", "1 2 1 l 17", "1 2 1 l", "*Arcs 0",
                           "1 2 1 c Red\" p *"})
    not_understood(head + "*Edges 1\n" + line, "line #6", "result of missed object.");
  record.messages.clear();
  EXPECT_FALSE(net.ReadNetFile(sources, folder / "no.net", true, all_or_none));
  EXPECT_TRUE(record.messages.empty()) << "no such file: no word";
  EXPECT_EQ(net.n_vertices_get(), 2) << "as it was";
}

TEST_F(net_file, a_file_cut_anywhere_is_refused_or_holds_whole_sections) {
  class_net_elng made;
  fill_by_chance(made, chance, 3, 4);
  ASSERT_TRUE(made.SaveNet(frame, folder / "whole.net", {"cut", true, {}, {}}));
  const std::string whole = bytes("whole.net");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    class_net_elng cut;
    std::swap(cut, net);
    if (!read(whole.substr(0, size))) {
      EXPECT_EQ(net.n_vertices_get(), 0);
      EXPECT_EQ(last_message(), "File with net was not read!");
      continue;
    }
    EXPECT_EQ(net.n_vertices_get(), 3);
    const auto arcs =
        std::count_if(made.edges().begin() + 1, made.edges().end(), [](const edge_elng &edge) { return edge.is_arc; });
    EXPECT_TRUE(net.n_edges_get() == 0 || net.n_edges_get() == arcs || net.n_edges_get() == 4) << size;
  }
}

TEST_F(net_file, drawings_are_read_and_captions_find_their_clones) {
  class_net_draw drawing(frame);
  drawing.inicialisate_net(3);
  drawing.add_vertex(name(5) + "[ctg]", 2, 4, 4, 7);
  drawing.add_vertex("nobody", 0, 1, 5, 10);
  drawing.add_vertex(name(9), 0, 1, 5, 10);
  drawing.add_edge(1, 3, 17.3, "17.3", 4, 3, 2, false);
  drawing.print_net_pajek(folder / "drawn.net", -1, "a title");
  signif.net().change_vertex_index(5, 3);
  table.readClusteringFile_run(frame, write("t.txt", "n\tc\na\tb\n"), chance);
  ASSERT_TRUE(net.ReadNetFile(sources, folder / "drawn.net", true, all_or_none));
  EXPECT_FALSE(table.is_loaded()) << "a table belongs to one net";
  EXPECT_TRUE(all_or_none && !net.coor_are_known_get());
  EXPECT_EQ(net.nodes()[1].clone_id, 5);
  EXPECT_EQ(net.nodes()[2].clone_id, -1);
  EXPECT_EQ(net.nodes()[3].clone_id, 9);
  EXPECT_EQ(net.nodes()[1].shape, 2);
  EXPECT_TRUE(net.nodes()[1].is_marked && !net.nodes()[2].is_marked);
  EXPECT_EQ(net.nodes()[1].mark_ic, color_from_name("dark_green"));
  EXPECT_EQ(net.edges()[1].caption + net.edges()[1].c_name, "17.3Green");
  EXPECT_TRUE(net.ReadNetFile(sources, folder / "drawn.net", false, all_or_none) && net.n_edges_get() == 0);
  class_net visible;
  std::vector<std::string> names;
  net.SaveNet__visible({}, {}, visible, names);
  EXPECT_EQ(visible.number_of_vertices_get(), 0) << "no node has a place";
}

} // namespace

} // namespace orb_test
