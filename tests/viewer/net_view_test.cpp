// The viewer without a window: presses, drags and menu entries on a recorded surface.
#include "viewer/net_view.h"

#include <algorithm>
#include <set>

#include "drawing/recording_surface.h"
#include "viewer/contig_browser.h"
#include "viewer/net_view_menu.h"
#include "viewer/view_hints.h"
#include "viewer/view_steps.h"
#include "viewer_fixture.h"

using namespace orb;
using namespace orb_test;

namespace {

struct open_view : viewer_session {
  surface_record drawn{{1000, 500}, 0, {}};
  net_view view;

  open_view() : view(sources, window(), 1) {}
  // Nodes 1 to 6 on a line from (0, 0) to (10, 0) and (0, 5), (10, 5) below; 1-2-3 and 4-5-6 are linked.
  void open_worked_net() {
    const auto file =
        write("worked.net", "*Network worked\r\n*Vertices 8\r\n"
                            "1 \"" +
                                name(1) +
                                "\" 0 0 sh ellipse ic gray bc black\r\n"
                                "2 \"" +
                                name(2) +
                                "\" 2 0\r\n3 \"three\" 4 0 sh box\r\n"
                                "4 \"four\" 6 0 sh diamond\r\n5 \"five\" 8 0 sh cross\r\n"
                                "6 \"six\" 10 0 sh triangle\r\n7 \"seven\" 0 5\r\n8 \"eight\" 10 5\r\n"
                                "*Edges 4\r\n1 2 20 w 1 c Green p Solid l \"20.00\"\r\n"
                                "2 3 7 w 3 c Red p Dots l \"7.00\"\r\n4 5 9 l \"9.00\"\r\n5 6 1 l \"loose\"\r\n");
    ASSERT_TRUE(view.ShowNetFile(file));
  }
  float x(vertex_number n) const { return view.geometry().coorOnPictX_get(node(n).x); }
  float y(vertex_number n) const { return view.geometry().coorOnPictY_get(node(n).y); }
  const node_elng &node(vertex_number n) const { return view.net().nodes()[static_cast<std::size_t>(n)]; }
  void click(vertex_number n, bool shift = false) {
    view.press(net_view::button::first, x(n), y(n), shift);
    view.release(x(n), y(n));
  }
  void drag(float x1, float y1, float x2, float y2) {
    view.press(net_view::button::first, x1, y1, false);
    view.move((x1 + x2) / 2, (y1 + y2) / 2);
    view.move(x2, y2);
    view.release(x2, y2);
  }
  std::set<std::int32_t> selected() const {
    const auto list = view.net().selected().members();
    return {list.begin(), list.end()};
  }
  // What was drawn since the last clear.
  int n_lines() const {
    int n = 0;
    for (const auto &part : drawn.drawn)
      if (const auto *lines = std::get_if<drawn_lines>(&part))
        n += static_cast<int>(lines->lines.size());
    return n;
  }
  std::multiset<std::string> texts() const {
    std::multiset<std::string> found;
    for (const auto &part : drawn.drawn)
      if (const auto *text = std::get_if<drawn_text>(&part))
        found.insert(text->text);
    return found;
  }
  int n_shapes(colour_value fill) const {
    int n = 0;
    for (const auto &part : drawn.drawn) {
      if (const auto *boxes = std::get_if<drawn_boxes>(&part))
        n += boxes->look.fill == fill ? static_cast<int>(boxes->boxes.size()) : 0;
      if (const auto *polygons = std::get_if<drawn_polygons>(&part))
        n += polygons->look.fill == fill ? static_cast<int>(polygons->points.size()) / polygons->corners : 0;
    }
    return n;
  }

private:
  view_window window() {
    view_window lent;
    lent.surface = recording_surface(drawn);
    lent.resize = [this](surface_size size) { drawn.size = size; };
    return lent;
  }
};

const colour_value yellow = palette_colour(palette_selection_colour).value;

} // namespace

TEST(net_view, a_net_is_fitted_and_drawn_by_its_rules) {
  open_view w;
  EXPECT_FALSE(is_enabled(*view_menu_item_by_control("mnuSave"), w.view)) << "no net yet";
  w.open_worked_net();
  EXPECT_FLOAT_EQ(w.x(1), 50);
  EXPECT_FLOAT_EQ(w.x(6), 950);
  EXPECT_FLOAT_EQ(w.y(7), 475);
  EXPECT_EQ(w.n_lines(), 4 + 2) << "edges and the two strokes of the cross";
  EXPECT_EQ(w.n_shapes(node_gray), 7);
  EXPECT_TRUE(w.texts().empty());
  EXPECT_EQ(w.view.panels().txtFrom, "worked.net");
  EXPECT_FALSE(w.view.history().undo_is_enabled());
  const auto *lines = std::get_if<drawn_lines>(&w.drawn.drawn.at(1));
  ASSERT_NE(lines, nullptr);
  EXPECT_EQ(lines->pen, (surface_pen{color_from_name("RED"), 3, line_pattern::dots}));

  w.view.choose("mnuOptionsShowEdgeCaptons");
  EXPECT_EQ(w.texts(), (std::multiset<std::string>{"20.00", "7.00", "9.00", "loose"}));
  w.view.choose("mnuOptionsEdgesBigger", "8");
  EXPECT_EQ(w.texts(), (std::multiset<std::string>{"20.00", "9.00", "loose"}));
  w.view.choose("mnuOptionsEdgesSmaller", "15,5");
  EXPECT_EQ(w.texts(), (std::multiset<std::string>{"9.00", "loose"}));
  w.view.choose("mnuOptionsEdgesNo");
  EXPECT_EQ(w.texts(), (std::multiset<std::string>{"loose"})) << "captions that are no numbers are never filtered";
  w.view.choose("mnuOptionsEdgesAll");
  EXPECT_EQ(w.texts().size(), 4u);
}

TEST(net_view, presses_and_drags_in_each_mode) {
  open_view w;
  w.open_worked_net();
  w.click(1);
  w.click(3, true);
  EXPECT_EQ(w.selected(), (std::set<std::int32_t>{1, 3}));
  EXPECT_EQ(w.n_shapes(yellow), 2);
  w.click(3, true);
  EXPECT_EQ(w.selected(), (std::set<std::int32_t>{1}));
  EXPECT_TRUE(w.view.history().is_change_pending());
  w.view.press(net_view::button::first, w.x(1) + 3, w.y(1) - 3, false); // near enough
  w.view.move(w.x(1) + 4, w.y(1));
  w.view.release(w.x(1) + 4, w.y(1));
  EXPECT_EQ(w.node(1).x, 0) << "less than 5 pixels is no drag";
  const float before = w.x(1);
  w.drag(w.x(1), w.y(1), w.x(1) + 90, w.y(1) + 9);
  EXPECT_NEAR(w.x(1), before + 90, 0.01);
  EXPECT_EQ(w.node(2).x, 2) << "neighbours stay";
  EXPECT_FALSE(w.view.press(net_view::button::second, 5, 5, false)) << "the menu opens";
  w.view.press(net_view::button::first, 500, 300, false);
  w.view.release(500, 300);
  EXPECT_TRUE(w.selected().empty()) << "empty space clears";

  w.view.choose("mnuSelectGroupByLinks");
  EXPECT_EQ(w.view.label_of_mode(), "Selection = Group by link");
  w.click(5);
  EXPECT_EQ(w.selected(), (std::set<std::int32_t>{4, 5, 6}));
  w.click(7, true);
  EXPECT_EQ(w.selected(), (std::set<std::int32_t>{4, 5, 6, 7}));
  w.view.choose("mnuSelectGroup");
  w.view.choose("mnuUnselectAll");
  w.drag(980, 490, 600, 300); // from the lower right
  EXPECT_EQ(w.selected(), (std::set<std::int32_t>{8}));
  EXPECT_EQ(w.view.panels().message, "Added 1 selected clones.");
  w.drag(400, 300, 500, 350);
  EXPECT_EQ(w.view.panels().message, "No new selected clones found");

  w.view.choose("mnuSelectVertex");
  w.view.choose("mnuSelectGroup_move_connected_groups");
  const float of_5 = w.node(5).x;
  w.drag(w.x(4), w.y(4), w.x(4) + 90, w.y(4));
  EXPECT_NEAR(w.node(5).x, of_5 + (1 - 1.0 / 6), 0.001) << "one step away it follows by 5/6";
  w.view.choose("mnuSelectAll");
  EXPECT_EQ(w.view.text_of_selected(), "N_selected = 8");
}

TEST(net_view, zoom_and_moves_keep_the_middle) {
  open_view w;
  w.open_worked_net();
  w.view.choose("CmdMove(6)");
  EXPECT_EQ(w.view.geometry().zoom, 1) << "there is no smaller one";
  const float middle = w.view.geometry().coorOnNetX_get(500);
  for (const char *button : {"CmdMove(5)", "CmdMove(5)", "CmdMove(6)"})
    w.view.choose(button);
  EXPECT_FLOAT_EQ(w.view.geometry().zoom, 1.5f);
  EXPECT_NEAR(w.view.geometry().coorOnNetX_get(500), middle, 1e-4);
  const float at = w.x(1);
  w.view.choose("CmdMove(1)");
  EXPECT_FLOAT_EQ(w.x(1), at - 100);
  w.view.choose("CmdMove(0)");
  EXPECT_FLOAT_EQ(w.x(1), 50);
  w.drawn.size = {1004, 505};
  w.view.resized();
  EXPECT_FLOAT_EQ(w.x(1), 50) << "less than 10 pixels";
  w.drawn.size = {2000, 500};
  w.view.resized();
  EXPECT_FLOAT_EQ(w.x(1), 100);
  w.drag(w.x(8), w.y(8), w.x(8) + 300, w.y(8)); // out of the box
  w.view.choose("CmdMove(0)");
  EXPECT_FLOAT_EQ(w.x(8), 1900) << "the whole net is in the picture again";
}

TEST(net_view, rotation_turns_the_selection_round_on_the_screen) {
  open_view w;
  w.open_worked_net();
  w.view.choose("CmdActivateRotate");
  EXPECT_EQ(w.view.panels().message, "Select vertices to rotate");
  w.click(2);
  w.view.choose("CmdActivateRotate");
  w.view.press(net_view::button::first, w.x(4), w.y(4), false);
  EXPECT_EQ(w.view.panels().message, "Use arrows to rotate selected vertices");
  const float radius = w.x(4) - w.x(2);
  w.view.choose("TxtAngle", "90");
  w.view.choose("CmdClockwise");
  EXPECT_NEAR(w.x(2), w.x(4), 0.1);
  EXPECT_NEAR(w.y(2), w.y(4) - radius, 0.1) << "from the left to the top: clockwise";
  w.view.choose("TxtAngle", "much");
  w.view.choose("CmdClockwise");
  EXPECT_NEAR(w.x(2), w.x(4), 0.1);
  w.view.choose("CmdCancelRotate");
  EXPECT_EQ(w.view.label_of_mode(), "Selection = Vertex");
}

TEST(net_view, removing_undoing_and_saving) {
  open_view w;
  w.open_worked_net();
  w.view.choose("mnuSelect_Delete");
  EXPECT_EQ(w.last_message(), "No selected nodes!");
  w.view.choose("mnuSelectAll");
  w.view.choose("mnuSelect_Delete");
  EXPECT_EQ(w.last_message(), "Can't delete all nodes!");
  w.view.choose("mnuSelectVertex");
  w.click(3);
  w.view.choose("mnuSelect_Delete");
  EXPECT_EQ(w.view.panels().message, "1 nodes deleted.");
  EXPECT_EQ(w.view.net().n_vertices_get(), 7);
  EXPECT_EQ(w.view.net().n_edges_get(), 3);
  w.view.choose("mnuUndo");
  EXPECT_EQ(w.view.net().n_vertices_get(), 8);
  w.view.choose("mnuRedo");
  EXPECT_EQ(w.view.net().n_vertices_get(), 7);
  w.click(1);
  w.view.choose("mnuSaveSubNetRm", (w.folder / "part.net").string());
  EXPECT_EQ(w.view.net().n_vertices_get(), 6);
  EXPECT_NE(w.bytes("part.net").find("*Vertices 1\r\n1 \"" + w.name(1)), std::string::npos);
  w.answer("Are you sure you want to quit?", "no");
  w.view.choose("mnuExit");
  EXPECT_FALSE(w.view.wants_to_close());
  w.view.choose("mnuFileNew");
  EXPECT_FALSE(w.view.has_net());
  EXPECT_EQ(w.view.net().n_vertices_get(), 0);
}

TEST(net_view, the_run_loop_places_and_stops) {
  open_view w;
  const auto chain = w.write("chain.net", "*Network c\n*Vertices 4\n1 \"a\"\n2 \"b\"\n3 \"c\"\n4 \"d\"\n"
                                          "*Edges 3\n1 2 1\n2 3 1\n3 4 1\n");
  w.view.ShowNetFile(chain);
  EXPECT_FALSE(w.node(1).is_coor_known) << "no place was asked for";
  w.answer("Use ordering of clusters?", "no");
  w.view.choose("mnuProcess");
  EXPECT_TRUE(w.node(4).is_coor_known);
  EXPECT_EQ(w.n_lines(), 3);
  w.view.choose("mnuSelectAll");
  w.view.choose("mnuSelect_UnFroze");
  w.view.choose("mnuProcess");
  EXPECT_TRUE(w.view.panels().message.starts_with("Steps = ")) << w.view.panels().message;
  int n_yields = 0;
  std::string enabled;
  w.on_yield = [&] {
    if (++n_yields != 3)
      return false;
    for (const view_menu_item &item : table_of_view_menu())
      if (is_enabled(item, w.view))
        enabled += item.control + " ";
    w.view.press(net_view::button::first, w.x(1), w.y(1), false); // does nothing now
    w.view.choose("mnuProcess");
    return false;
  };
  w.view.choose("mnuSelect_RndShiftsOfSelected");
  n_yields = 0;
  w.view.choose("mnuProcess");
  EXPECT_EQ(enabled, "mnuExit mnuProcess ");
  EXPECT_EQ(w.view.process_state(), view_process::idle);
  EXPECT_TRUE(w.view.panels().message.starts_with("Steps = 3 ") || w.view.panels().message.starts_with("Steps = 2 "))
      << w.view.panels().message;
  EXPECT_TRUE(w.view.choose("mnuOptions_Multilevel"));
  EXPECT_EQ(w.n_lines(), 3);
  w.on_yield = []() -> bool { throw program_end("the end", exit_status::run_failed); };
  EXPECT_THROW(w.view.choose("mnuProcess"), program_end);
  EXPECT_EQ(w.view.process_state(), view_process::idle) << "the window is to stay of use";
  EXPECT_EQ(w.view.net().n_vertices_get(), 4);
}

// Every entry changes the document, the picture, the panels or a file, or asks for what it needs.
TEST(net_view, no_entry_of_the_menus_is_without_effect) {
  const std::map<std::string, std::string> values{{"mnuChangeBkgColor", "CYAN"},
                                                  {"mnuOptionsSelectedVertices_ForeColor", "red"},
                                                  {"mnuOptionsSelectedVertices_BorderColor", "1,2,3"},
                                                  {"mnuOptionsSelectedVertices_shape", "box"},
                                                  {"mnuOptionsEdgesBigger", "8"},
                                                  {"mnuOptionsEdgesSmaller", "8"},
                                                  {"mnuOptionsVerticesCol", "2"},
                                                  {"mnuOptionsClustersCol", "2"},
                                                  {"mnuSelec_fromListOnly", "six"},
                                                  {"mnuOptionsShowNodesFromList", "six"},
                                                  {"TxtAngle", "20"},
                                                  {"TextSelVertices", "six"}};
  for (const view_menu_item &item : table_of_view_menu()) {
    open_view w;
    w.open_worked_net();
    for (const char *prompt : {"Scaling ratio:", "k_coef"})
      w.answer(prompt, "2");
    w.write("names.txt", w.name(9) + "\n" + w.name(10) + "\n");
    w.write("table.txt", "caption\tcluster\tother\nthree\tA\tx\nfour\tA\ty\nsix\tB\tz\n");
    w.answer("Open file with table of cluster", (w.folder / "table.txt").string());
    w.answer_always("Open", (w.folder / "names.txt").string());
    w.answer_always("Save", (w.folder / "saved.net").string());
    w.view.choose("mnuFileClusters");
    w.view.choose("mnuOptionsShowNodeCaptons");
    w.view.choose("mnuSelectVertex");
    w.click(2);
    w.click(1, true);
    if (item.control == "mnuUndo" || item.control == "mnuRedo")
      w.view.choose("mnuSelect_Froze");
    if (item.control == "mnuRedo")
      w.view.choose("mnuUndo");
    if (item.control.starts_with("mnuOptionsEdgesNo"))
      w.view.choose("mnuOptionsEdgesAll");
    if (item.control == "CmdMove(6)" || item.control == "CmdMove(0)")
      w.view.choose("CmdMove(5)");
    if (item.control.ends_with("ockwise") || item.control == "CmdCancelRotate")
      w.view.choose("CmdActivateRotate");
    if (item.control == "mnuSelectVertex")
      w.view.choose("mnuSelectCluster");
    const auto state = [&w, &item] {
      std::string all = w.view.label_of_mode() + w.view.panels().TextSelVertices + w.view.panels().TxtAngle +
                        std::to_string(w.view.history().k_net_elng_get()) + std::to_string(w.record.questions.size()) +
                        std::to_string(w.record.messages.size()) + std::to_string(w.drawn.background) +
                        std::to_string(w.view.geometry().left) + " " + std::to_string(w.view.geometry().top) +
                        std::to_string(w.n_lines()) + (item.is_checked && item.is_checked(w.view) ? "checked" : "") +
                        (std::filesystem::exists(w.folder / "saved.net") ? "saved" : "");
      for (const std::string &text : w.texts())
        all += text + ";";
      for (const node_elng &node : w.view.net().nodes())
        all += node.ic_name + std::to_string(node.x) + std::to_string(node.is_frozen);
      return all;
    };
    const std::string before = state();
    EXPECT_TRUE(w.view.choose(item.control, values.contains(item.control) ? values.at(item.control) : ""))
        << item.control;
    EXPECT_NE(state(), before) << item.control;
  }
}

TEST(net_view, growing_by_the_dialog) {
  open_view w;
  w.open_worked_net();
  w.click(1);
  w.answer_always("- Log_10 (Cutoff)", "6");
  w.answer("Rank =", "1");
  w.answer_always("Use ordering of clusters?", "no");
  w.view.choose("mnuSelectElongate");
  std::set<std::int32_t> wanted{1, 2};
  for (const net_edge &edge : w.signif.net().edges_of_vertex(1))
    wanted.insert(edge.neighbour);
  std::set<std::int32_t> found;
  for (vertex_number n = 1; n <= w.view.net().n_vertices_get(); ++n)
    if (w.node(n).clone_id > 0)
      found.insert(w.node(n).clone_id);
  EXPECT_EQ(found, wanted);
  EXPECT_TRUE(w.node(w.view.net().n_vertices_get()).is_coor_known) << "the run loop followed";
}

// Clicks, drags, wheel and controls at random; the steps that the view notes lead a second one to the same net.
TEST(net_view, noted_steps_lead_to_the_same_net) {
  const std::vector<std::string> controls{"mnuSelectVertex",
                                          "mnuSelectGroup",
                                          "mnuSelectGroupByLinks",
                                          "mnuSelectAll",
                                          "mnuSelect_RndShiftsOfSelected",
                                          "mnuUndo",
                                          "mnuRedo",
                                          "mnuDo",
                                          "mnuSelect_Delete",
                                          "mnuSelectAddEdges",
                                          "mnuSelectRedoEdges",
                                          "mnuProcess",
                                          "mnuSelect_UnFroze",
                                          "CmdMove(5)",
                                          "CmdMove(2)",
                                          "mnuOptions_RealResize",
                                          "CmdActivateRotate",
                                          "CmdClockwise",
                                          "mnuSelectGroup_move_connected_groups",
                                          "mnuOptions_Multilevel",
                                          "mnuOptionsEdgesBigger",
                                          "mnuSelectElongate"};
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    open_view first, second;
    random_source chance(seed);
    const auto pixels = [&chance](int n) {
      std::string text;
      for (int i = 0; i < n; ++i)
        text += (i > 0 ? "," : "") + std::to_string(chance.number_up_to(i % 2 == 0 ? 1000 : 500));
      return text;
    };
    first.open_worked_net();
    EXPECT_TRUE(first.view.is_clean());
    for (int i = 0; i < 40; ++i) {
      const std::int32_t what = chance.number_up_to(10);
      const std::string step = what == 1   ? "zoom=1," + pixels(2)
                               : what == 2 ? "pan=" + pixels(2)
                               : what == 3 ? "size=" + std::to_string(600 + chance.number_up_to(900)) + ",480"
                               : what < 6  ? "drag=" + pixels(4)
                               : what == 6 ? "select=1,3," + std::to_string(chance.number_up_to(9))
                               : what == 7 ? "stop-after=" + std::to_string(chance.number_up_to(20))
                                           : controls[static_cast<std::size_t>(chance.number_up_to(22)) - 1];
      do_view_step(first.view, step);
    }
    second.open_worked_net();
    for (const std::string &step : first.view.steps())
      EXPECT_TRUE(do_view_step(second.view, step)) << step;
    EXPECT_EQ(copy_of(first.view.net().nodes()), copy_of(second.view.net().nodes())) << "seed " << seed;
    EXPECT_EQ(copy_of(first.view.net().edges()), copy_of(second.view.net().edges())) << "seed " << seed;
  }
  open_view w;
  w.open_worked_net();
  EXPECT_FALSE(do_view_step(w.view, "mnuRedo")) << "grey";
  EXPECT_FALSE(do_view_step(w.view, "no such"));
  for (const char *wrong : {"press=1", "press=1,x", "zoom=1,2", "size=", "row=1,2"})
    EXPECT_THROW(do_view_step(w.view, wrong), usage_error) << wrong;
}

TEST(net_view, clean_is_what_was_opened_or_saved) {
  open_view w;
  w.open_worked_net();
  w.click(2);
  EXPECT_TRUE(w.view.is_clean()) << "a selection is no change";
  w.drag(w.x(2), w.y(2), 500, 300);
  EXPECT_FALSE(w.view.is_clean());
  w.view.choose("mnuUndo");
  EXPECT_TRUE(w.view.is_clean());
  w.view.choose("mnuRedo");
  EXPECT_FALSE(w.view.is_clean());

  w.open_worked_net();
  w.drag(w.x(2), w.y(2), 500, 300);
  w.view.choose("mnuDo");
  ASSERT_TRUE(w.view.save(true, false, w.folder / "saved.net"));
  EXPECT_TRUE(w.view.is_clean());
  w.view.choose("mnuSelect_Delete");
  EXPECT_FALSE(w.view.is_clean());
  w.view.choose("mnuUndo");
  EXPECT_TRUE(w.view.is_clean()) << "back at what was saved";
  w.view.choose("mnuUndo");
  EXPECT_FALSE(w.view.is_clean());
}

TEST(net_view, a_selection_draws_what_it_changes) {
  open_view w;
  w.open_worked_net();
  const std::size_t n = w.drawn.drawn.size();
  w.click(3); // the box, by itself
  // what was drawn stays, the node comes over it; the release draws all
  w.view.choose("mnuSelectVertex");
  w.view.press(net_view::button::first, w.x(3), w.y(3), true); // out again
  EXPECT_EQ(w.drawn.drawn.size(), n + 1);
  const auto *node = std::get_if<drawn_boxes>(&w.drawn.drawn.back());
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->look.fill, w.node(3).ic);
  w.view.release(w.x(3), w.y(3));
  w.view.select_nodes({1, 2, 3, 4}); // many: all is drawn anew
  EXPECT_EQ(w.n_shapes(yellow), 4);
  w.view.select_nodes({});
  EXPECT_EQ(w.n_shapes(yellow), 0) << "nothing is left of them";
}

TEST(net_view, what_is_pointed_at) {
  open_view w;
  w.open_worked_net();
  EXPECT_EQ(w.view.node_at(w.x(3), w.y(3)), 3);
  EXPECT_EQ(w.view.node_at(w.x(3), 250), -1);
  EXPECT_EQ(w.view.edge_at((w.x(2) + w.x(3)) / 2, w.y(2) + 3), 2);
  EXPECT_EQ(w.view.edge_at((w.x(2) + w.x(3)) / 2, w.y(2) + 6), -1);
  EXPECT_EQ(hint_of_edge(w.view.net(), 2), w.name(2) + " - three: 7.00");
  EXPECT_EQ(hint_of_edge(w.view.net(), 99), "");
  EXPECT_EQ(hint_of_node(w.sources, w.view.net(), 3), "three\nno clone of the library\n1 overlaps here");
  const std::string hint = hint_of_node(w.sources, w.view.net(), 1);
  EXPECT_EQ(hint.find(w.name(1) + "\n" + std::to_string(w.database.number_of_bands_in_clone_get(1)) + " bands\n"), 0u);
  EXPECT_NE(hint.find("1 overlaps here, " + std::to_string(w.signif.net().edges_of_vertex(1).size()) + " in the net"),
            std::string::npos);
  EXPECT_EQ(node_by_name(w.view.net(), "THREE"), 3);
  EXPECT_EQ(node_by_name(w.view.net(), "eigh"), 8);
  EXPECT_EQ(node_by_name(w.view.net(), "ine"), -1);
  w.view.zoom_at(9, 5, 5);
  w.view.bring_into_view(8);
  EXPECT_NEAR(w.x(8), 500, 1);
  EXPECT_NEAR(w.y(8), 250, 1);
}

TEST(contig_browser, rows_and_what_go_opens) {
  temporary_folder folder;
  for (const char *name : {"run/cl_2/b.net", "run/cl_2/z.NET", "run/cl_2/cl_2.txt", "run/Heaps/cl_3.txt"}) {
    std::filesystem::create_directories((folder.path() / name).parent_path());
    folder.write(name, "x");
  }
  const auto table = folder.write("run/report_clusters.txt",
                                  "i\tcluster\tn_clones\tcontig\tcutoff\tdiam\twidth\tn_gaps\tn_rank_MTP>1\tU\tf\r\n"
                                  "2\tcl_2\t40000\ttrue\t15,50\t7\t1\t2\t3\tremark\tlong\r\n"
                                  "3\tcl_3\t4\tFalse\t15\t\t\t\t\t\tlonger\r\n\r\n");
  FrmContigSelect form;
  ASSERT_TRUE(form.SetContigsName(table));
  EXPECT_EQ(form.status(), "Select contig and press 'Go' button");
  EXPECT_EQ(form.TxtClusters(), (std::vector<std::string>{"2\tcl_2\tTrue\t40000\t15.50\t7\t1\t2\t3\t",
                                                          "3\tcl_3\tFalse\t4\t15.00\t0\t0\t0\t0\t"}));
  EXPECT_EQ(form.contigs().GetContig(1).full_Name_get(), "long");
  form.row_clicked(1);
  EXPECT_EQ(form.status(), "Press 'Go' button to show this contig");
  form.CmdSelect();
  EXPECT_EQ(form.GetNetFileName(), folder.path() / "run/cl_2/z.NET") << "the last one";
  EXPECT_FALSE(form.is_to_be_separated());
  form.row_clicked(2);
  form.CmdSelect();
  EXPECT_EQ(form.GetNetFileName(), folder.path() / "run/Heaps/cl_3.txt");
  EXPECT_TRUE(form.is_to_be_separated());
  EXPECT_FALSE(form.SetContigsName(folder.path() / "absent.txt"));
  form.CmdSelect();
  EXPECT_TRUE(form.GetNetFileName().empty());
}
