// The net viewer driven as a user drives it, by the names of its controls.
#include <QCompleter>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QToolTip>
#include <QWheelEvent>

#include "look_fixture.h"
#include "metrics/band_merge.h"
#include "viewer/view_hints.h"

namespace orb_test {

class viewer : public look_session {
protected:
  // A net of some clones of the example's contig, in a file with places.
  fs::path part_of_a_contig() {
    net_window *window = open_net(net_in(assemble()));
    std::vector<vertex_number> nodes{1};
    number_list near;
    window->view().net().make_idNodesLinkedWithNode(1, near);
    for (std::int32_t i = 2; i <= 60 && i <= near.count(); ++i)
      nodes.push_back(near(i));
    window->view().select_nodes(nodes);
    const fs::path file = folder.path() / "part.net";
    EXPECT_TRUE(window->choose("mnuSaveSubNet", file.string()));
    delete window;
    session.selection().clear(nullptr);
    return file;
  }
  static void fill(QDialog &dialog, const char *field, const char *text) {
    dialog.findChild<QLineEdit *>(field)->setText(text);
    QTest::mouseClick(dialog.findChild<QPushButton *>("Ok"), Qt::LeftButton);
  }
  static void wheel(QWidget *picture, QPoint at, int steps) {
    QWheelEvent event(at, picture->mapToGlobal(at), {}, {0, 120 * steps}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(picture, &event);
  }
  // A line of the log in a session that begins anew, after what led to the run.
  exit_status run_again(const std::string &line) {
    desktop_session other;
    other.keep_quiet(true, true);
    const command_streams streams{[](const std::string &) {}, [](const std::string &) {}, [](const std::string &) {},
                                  [](int, int, const std::string &) {}, [](const std::string &, bool) {}};
    const std::string script = "library.load file=" ORB_SOURCE_DIR
                               "/examples/ecoli536\nnet.create\ncontigs.load folder=" +
                               session.project().origin(project_part::contigs).file.string() + "\n" + line + "\n";
    return run_script(script, "script", other.project(), streams);
  }
  std::vector<std::pair<float, float>> places(net_window &window) const {
    std::vector<std::pair<float, float>> found;
    for (const node_elng &node : window.view().net().nodes())
      found.emplace_back(node.x, node.y);
    return found;
  }
};

TEST_F(viewer, what_is_saved_is_what_the_line_of_the_log_saves) {
  const fs::path file = part_of_a_contig();
  net_window *window = open_net(file);
  QWidget *picture = picture_of(*window);
  EXPECT_FALSE(window->isWindowModified());
  const auto at_first = places(*window);

  drag(picture, place_of(*window, 3), place_of(*window, 3) + QPoint(61, -47));
  EXPECT_TRUE(window->isWindowModified());
  EXPECT_NE(places(*window), at_first);
  key(window, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(places(*window), at_first);
  EXPECT_FALSE(window->isWindowModified()) << "back at what was opened";
  key(window, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_NE(places(*window), at_first);

  wheel(picture, {300, 200}, 2);
  QTest::mousePress(picture, Qt::MiddleButton, {}, {300, 300});
  QTest::mouseMove(picture, {333, 287});
  QTest::mouseMove(picture, {341, 290});
  QTest::mouseRelease(picture, Qt::MiddleButton, {}, {341, 290});
  window->resize(1000, 700);
  QTest::qWait(30);
  choose(*window, "mnuSelectGroup");
  drag(picture, {5, 5}, {700, 610});
  ASSERT_GT(window->view().net().Get_nOfSelectedNodes(), 2);
  when_dialog("form_netElng", [](QDialog &dialog) { fill(dialog, "t_Cutoff", "20"); });
  choose(*window, "mnuSelectRedoEdges");
  const std::int32_t n_nodes = window->view().net().n_vertices_get();
  when_dialog("form_netElng", [](QDialog &first) {
    when_dialog("form_netElng", [](QDialog &second) { fill(second, "t_rank", "1"); });
    fill(first, "t_Cutoff", "22");
  });
  choose(*window, "mnuSelectElongate");
  EXPECT_GT(window->view().net().n_vertices_get(), n_nodes) << window->script_line().toStdString();
  when_dialog("form_netElng", [](QDialog &dialog) { dialog.reject(); });
  choose(*window, "mnuSelectAddEdges"); // cancelled
  choose(*window, "mnuSelectShow_NodeCaptonsSelected");
  const fs::path saved = folder.path() / "saved.net", again = folder.path() / "again.net";
  answer_book book;
  book.add({"Save net", saved.string()});
  session.answers_set(book);
  choose(*window, "mnuSave");
  EXPECT_FALSE(window->isWindowModified());

  ASSERT_FALSE(session.lines().isEmpty());
  std::string line = session.lines().back().toStdString();
  const std::size_t at = line.find(saved.string());
  ASSERT_NE(at, std::string::npos) << line;
  line.replace(at, saved.string().size(), again.string());
  EXPECT_EQ(run_again(line), exit_status::done) << line;
  EXPECT_EQ(bytes_of(again), bytes_of(saved)) << line;
  EXPECT_NE(bytes_of(again), bytes_of(file));
}

TEST_F(viewer, a_net_that_is_saved_over_is_kept_for_the_line_of_the_log) {
  const fs::path file = part_of_a_contig();
  const std::string at_first = bytes_of(file);
  net_window *window = open_net(file);
  const auto save_after_a_drag = [&] {
    drag(picture_of(*window), place_of(*window, 3), place_of(*window, 3) + QPoint(40, -30));
    EXPECT_TRUE(window->choose("mnuSave", file.string()));
    return bytes_of(file);
  };
  save_after_a_drag();
  const std::string second = save_after_a_drag();
  EXPECT_EQ(bytes_of(file.string() + "~"), at_first) << "not as it was between";
  std::string line = session.lines().back().toStdString();
  EXPECT_EQ(run_again(line), exit_status::done) << line;
  EXPECT_EQ(bytes_of(file), second) << line;
  EXPECT_TRUE(window->choose("mnuFileNewNetFile", file.string()));
  const std::string third = save_after_a_drag();
  EXPECT_EQ(bytes_of(file.string() + "~~"), second);
  line = session.lines().back().toStdString();
  EXPECT_EQ(run_again(line), exit_status::done) << line;
  EXPECT_EQ(bytes_of(file), third) << line;
  EXPECT_NE(third, second);
}

TEST_F(viewer, keys_search_and_one_selection_for_all_windows) {
  const fs::path file = part_of_a_contig();
  net_window *one = open_net(file), *two = open_net(file);
  key(one, Qt::Key_A, Qt::ControlModifier);
  const auto n = static_cast<std::size_t>(one->view().net().n_vertices_get());
  EXPECT_EQ(session.selection().clones().size(), n);
  EXPECT_EQ(two->view().net().Get_nOfSelectedNodes(), one->view().net().n_vertices_get());
  EXPECT_EQ(two->findChild<QPlainTextEdit *>("TextSelVertices")->toPlainText().count('\n'), static_cast<int>(n));

  key(two, Qt::Key_F, Qt::ControlModifier);
  auto *search = two->findChild<QLineEdit *>("TxtFind");
  EXPECT_EQ(search->completer()->model()->rowCount(), static_cast<int>(n));
  const std::string wanted = two->view().net().nodes()[5].caption;
  for (int i = 0; i < 9; ++i)
    wheel(picture_of(*two), {1, 1}, 1); // so that it lies outside
  search->setText(qt_text(wanted).toLower());
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(two->view().net().selected().members()[0], 5);
  EXPECT_TRUE(picture_of(*two)->rect().contains(place_of(*two, 5)));
  EXPECT_EQ(session.selection().clones(), std::vector<std::int32_t>{two->view().net().nodes()[5].clone_id});
  EXPECT_EQ(one->view().net().selected().members()[0], 5);

  key(one, Qt::Key_Delete);
  EXPECT_EQ(one->view().net().n_vertices_get(), static_cast<std::int32_t>(n) - 1);
  EXPECT_TRUE(session.selection().clones().empty());
  EXPECT_EQ(two->view().net().Get_nOfSelectedNodes(), 0);
}

TEST_F(viewer, what_an_edge_is) {
  net_window *window = open_net(part_of_a_contig());
  const edge_elng edge = window->view().net().edges()[1];
  bool seen = false;
  when_dialog("form_edge", [&](QDialog &dialog) {
    seen = true;
    const auto *bands = dialog.findChild<QTableWidget *>("bands");
    const class_DB_of_clones &database = session.project().database();
    const clone_number a = window->view().net().nodes()[static_cast<std::size_t>(edge.from)].clone_id,
                       b = window->view().net().nodes()[static_cast<std::size_t>(edge.to)].clone_id;
    const std::int32_t common =
        common_bands(database.bands_of_clone(a), database.bands_of_clone(b), list_tolerance(database));
    std::int32_t n_common = 0;
    for (int row = 0; row < bands->rowCount(); ++row)
      n_common += bands->item(row, 2) != nullptr ? 1 : 0;
    EXPECT_EQ(n_common, common);
    EXPECT_EQ(bands->rowCount(),
              database.number_of_bands_in_clone_get(a) + database.number_of_bands_in_clone_get(b) - common);
    dialog.reject();
  });
  QPoint at = place_of(*window, edge.from);
  const QPoint to = place_of(*window, edge.to);
  for (int share = 1; share < 20 && window->view().edge_at(static_cast<float>(at.x()), static_cast<float>(at.y())) != 1;
       ++share)
    at = place_of(*window, edge.from) + (to - place_of(*window, edge.from)) * share / 20;
  ASSERT_EQ(window->view().edge_at(static_cast<float>(at.x()), static_cast<float>(at.y())), 1);
  QTest::mouseClick(picture_of(*window), Qt::RightButton, {}, at);
  auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr) << "the Selection menu opens";
  EXPECT_TRUE(menu->actions().contains(window->findChild<QAction *>("mnuSelectElongate")));
  menu->close();
  choose(*window, "mnuWhatEdge");
  EXPECT_TRUE(seen);
}

TEST_F(viewer, a_run_keeps_others_away_and_ends_at_a_word) {
  net_window *window = open_net(net_in(assemble())), *other = open_net({});
  EXPECT_FALSE(window->findChild<QAction *>("mnuProcess")->text().contains("Stop"));
  for (int i = 0; i < 2; ++i) { // all defrosted, then the springs
    bool seen = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
      if (seen || window->view().process_state() != view_process::running)
        return;
      seen = true;
      EXPECT_TRUE(session.is_running());
      EXPECT_TRUE(window->findChild<QAction *>("mnuProcess")->text().contains("Stop"));
      EXPECT_FALSE(window->findChild<QAction *>("mnuSave")->isEnabled());
      EXPECT_FALSE(window->findChild<QAction *>("mnuUndo")->isEnabled());
      EXPECT_FALSE(other->findChild<QAction *>("mnuFileNewNetFile")->isEnabled());
      EXPECT_FALSE(other->choose("mnuFileNew"));
      EXPECT_FALSE(run("net.create").completed) << "refused with a word";
      drag(picture_of(*window), place_of(*window, 1), {5, 5}); // does nothing
      key(window, Qt::Key_Escape);
      EXPECT_EQ(window->view().process_state(), view_process::stop_asked);
    });
    watch.start(0);
    window->view().select_nodes({});
    window->choose("mnuSelectAll");
    window->choose("mnuSelect_UnFroze");
    window->choose("mnuProcess");
    EXPECT_TRUE(seen);
    EXPECT_EQ(window->view().process_state(), view_process::idle);
    EXPECT_FALSE(session.is_running());
  }
  const auto &steps = window->view().steps();
  EXPECT_TRUE(
      std::any_of(steps.begin(), steps.end(), [](const std::string &step) { return step.starts_with("stop-after="); }));
}

TEST_F(viewer, closing_asks_and_a_new_library_changes_what_nodes_are) {
  QPointer<net_window> window = open_net(part_of_a_contig());
  window->view().select_nodes({1});
  const lent_sources lent(session.project());
  EXPECT_NE(hint_of_node(lent.sources, window->view().net(), 1).find(" bands\ncontig cl_"), std::string::npos);
  ASSERT_TRUE(run("project.close").completed);
  EXPECT_LT(window->view().net().nodes()[1].clone_id, 1);
  key(window, Qt::Key_Z, Qt::ControlModifier); // nor in what undo brings back
  EXPECT_LT(window->view().net().nodes()[1].clone_id, 1);
  load_example();
  EXPECT_GT(window->view().net().nodes()[1].clone_id, 0);

  answer_book book;
  book.add({"Are you sure you want to quit?", "no"});
  session.answers_set(book);
  window->close();
  QTest::qWait(5);
  EXPECT_FALSE(window.isNull());
  answer_book yes;
  yes.add({"Are you sure you want to quit?", "yes"});
  session.answers_set(yes);
  choose(*window, "mnuExit");
  QTest::qWait(20);
  EXPECT_TRUE(window.isNull());
}

} // namespace orb_test
