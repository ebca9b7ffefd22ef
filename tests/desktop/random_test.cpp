// Hundreds of clicks, drags, keys and menu choices at random: the net that is open stays consistent after each, and
// the line of the log leads to the same net again.
#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>
#include <QWheelEvent>
#include <algorithm>
#include <set>

#include "frame/random_source.h"
#include "look_fixture.h"

namespace orb_test {

class random : public look_session {
protected:
  int up_to(int n) { return chance.number_up_to(n) - 1; }
  QPoint place(net_window &window) {
    const std::int32_t n = window.view().net().n_vertices_get();
    const QRect all = picture_of(window)->rect();
    if (n > 0 && up_to(3) > 0)
      return place_of(window, chance.number_up_to(n));
    return {up_to(all.width()), up_to(all.height())};
  }
  Qt::KeyboardModifiers shift() { return up_to(3) == 0 ? Qt::ShiftModifier : Qt::NoModifier; }

  void use_mouse(net_window &window) {
    QWidget *picture = picture_of(window);
    const QPoint from = place(window), to = place(window);
    const Qt::MouseButton button = up_to(4) == 0 ? Qt::MiddleButton : Qt::LeftButton;
    switch (up_to(5)) {
    case 0:
      QTest::mouseClick(picture, up_to(4) == 0 ? Qt::RightButton : Qt::LeftButton, shift(), from);
      break;
    case 1: {
      QWheelEvent event(from, picture->mapToGlobal(from), {}, {0, 120 * (up_to(2) == 0 ? 1 : -1)}, {}, {},
                        Qt::NoScrollPhase, false);
      QApplication::sendEvent(picture, &event);
      break;
    }
    case 2:
      QTest::mouseMove(picture, from);
      QTest::qWait(1);
      break;
    default:
      QTest::mousePress(picture, button, shift(), from);
      for (const int share : {1, 2, 3, 4})
        QTest::mouseMove(picture, from + (to - from) * share / 4);
      QTest::mouseRelease(picture, button, {}, to);
    }
    while (QWidget *popup = QApplication::activePopupWidget())
      popup->close();
  }
  void use_key(net_window &window) {
    const std::pair<Qt::Key, Qt::KeyboardModifiers> keys[]{{Qt::Key_Z, Qt::ControlModifier},
                                                           {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
                                                           {Qt::Key_A, Qt::ControlModifier},
                                                           {Qt::Key_Delete, {}},
                                                           {Qt::Key_Escape, {}},
                                                           {Qt::Key_Space, {}},
                                                           {Qt::Key_F, Qt::ControlModifier},
                                                           {Qt::Key_Tab, {}}};
    const auto &[wanted, with] = keys[up_to(static_cast<int>(std::size(keys)))];
    key(&window, wanted, with);
  }
  void use_controls(net_window &window) {
    QList<QAction *> actions;
    for (QAction *action : window.findChildren<QAction *>())
      if (action->isEnabled() && action->menu() == nullptr && action->objectName().startsWith("mnu") &&
          action->objectName() != "mnuExit" && action->objectName() != "mnuFileNew" &&
          action->objectName() != "mnuLanes")
        actions << action;
    QList<QToolButton *> buttons;
    for (QToolButton *button : window.findChildren<QToolButton *>())
      if (button->isEnabled() && button->objectName().startsWith("Cmd"))
        buttons << button;
    switch (up_to(5)) {
    case 0:
      if (!buttons.isEmpty())
        buttons.at(up_to(static_cast<int>(buttons.size())))->click();
      break;
    case 1: {
      auto *names = window.findChild<QPlainTextEdit *>("TextSelVertices");
      names->setPlainText(qt_text(session.project().database().name_of_clone_get(chance.number_up_to(400))) +
                          "\nno such");
      break;
    }
    case 2:
      if (auto *rows = window.findChild<QListWidget *>("TxtClusters"); rows->count() > 0)
        emit rows->itemClicked(rows->item(up_to(rows->count())));
      break;
    default:
      actions.at(up_to(static_cast<int>(actions.size())))->trigger();
    }
  }
  // Closes what waits, after filling it.
  void answer_dialogs() {
    QObject::connect(&answering, &QTimer::timeout, &answering, [this] {
      auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
      if (dialog == nullptr)
        return;
      if (auto *cutoff = dialog->findChild<QLineEdit *>("t_Cutoff"); cutoff != nullptr && up_to(4) > 0) {
        cutoff->setText(QString::number(10 + up_to(25)));
        dialog->findChild<QLineEdit *>("t_rank")->setText(QString::number(up_to(3)));
        dialog->findChild<QPushButton *>("Ok")->click();
      } else {
        dialog->reject();
      }
    });
    answering.start(1);
  }
  static std::string fault_in(const net_view &view) {
    const class_net_elng &net = view.net();
    const std::int32_t n = net.n_vertices_get();
    if (static_cast<std::size_t>(n) + 1 != net.nodes().size() ||
        static_cast<std::size_t>(net.n_edges_get()) + 1 != net.edges().size())
      return "counts";
    for (const edge_elng &edge : net.edges().subspan(1))
      if (edge.from < 1 || edge.from > n || edge.to < 1 || edge.to > n)
        return "an edge leads nowhere";
    std::set<vertex_number> selected, unfrozen;
    for (vertex_number v = 1; v <= n; ++v) {
      const node_elng &node = net.nodes()[static_cast<std::size_t>(v)];
      if (node.is_selected)
        selected.insert(v);
      if (!node.is_frozen)
        unfrozen.insert(v);
      if (!std::isfinite(node.x) || !std::isfinite(node.y))
        return "a place that is no number";
    }
    const auto holds = [](const number_list &list, const std::set<vertex_number> &wanted) {
      return static_cast<std::size_t>(list.count()) == wanted.size() &&
             std::set<vertex_number>(list.members().begin(), list.members().end()) == wanted;
    };
    if (!holds(net.selected(), selected))
      return "the list of selected nodes";
    if (!holds(net.unfrozen(), unfrozen))
      return "the list of unfrozen nodes";
    const net_history &history = view.history();
    if (history.n_Undo_get() < 0 || history.n_Undo_get() > 4 || history.n_Redo_get() < 0 || history.n_Redo_get() > 3)
      return "the history";
    return view.process_state() == view_process::idle ? "" : "the state of the process";
  }
  fs::path write_part(const fs::path &run) {
    net_window *window = open_net(net_in(run));
    number_list near;
    window->view().net().make_idNodesLinkedWithNode(7, near);
    window->view().select_nodes({near.members().begin(), near.members().begin() + 50});
    const fs::path file = folder.path() / "part.net";
    window->choose("mnuSaveSubNet", file.string());
    delete window;
    session.selection().clear(nullptr);
    return file;
  }

  random_source chance;
  QTimer answering;
};

TEST_F(random, use_of_the_viewer) {
  const fs::path run = assemble(), file = write_part(run);
  answer_dialogs();
  for (std::uint64_t seed = 1; seed <= 5; ++seed) {
    chance = random_source(seed);
    net_window *window = open_net(file);
    for (int i = 0; i < 100; ++i) {
      const int what = up_to(10);
      what < 5 ? use_mouse(*window) : what < 9 ? use_controls(*window) : use_key(*window);
      if (what == 9 && up_to(3) == 0)
        window->resize(900 + up_to(300), 600 + up_to(200));
      ASSERT_EQ(fault_in(window->view()), "") << "seed " << seed << ", step " << i << "\n"
                                              << window->script_line().toStdString();
      ASSERT_FALSE(session.is_running());
    }
    const fs::path saved = folder.path() / "saved.net", again = folder.path() / "again.net";
    ASSERT_TRUE(window->view().save(true, false, saved));
    std::string line = session.lines().back().toStdString();
    line.replace(line.find(saved.string()), saved.string().size(), again.string());
    desktop_session other;
    other.keep_quiet(true, true);
    other.project().working_folder_set(folder.path());
    for (const std::string &command : {std::string("library.load file=" ORB_SOURCE_DIR "/examples/ecoli536"),
                                       std::string("net.create"), "contigs.load folder=" + run.string(), line}) {
      const script_line parsed = parse_script_line(command, 1);
      bound_command bound = bound_by_name(parsed.command);
      for (const auto &[key_of, value] : parsed.values)
        bound.set(key_of, value);
      const command_result result = other.run(bound);
      ASSERT_TRUE(result.completed) << result.why << "\n" << command;
    }
    EXPECT_TRUE(bytes_of(again) == bytes_of(saved)) << "seed " << seed << "\n" << line;
    delete window;
  }
}

} // namespace orb_test
