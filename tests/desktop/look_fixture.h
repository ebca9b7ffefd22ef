// The example with its net and a run, and the windows that look at them; nobody is asked: questions have their answers
// in a book, and dialogs are answered by who waits for them.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "commands/command_door.h"
#include "commands/command_table.h"
#include "commands/script.h"
#include "support/temporary_folder.h"
#include "ui/desktop/desktop_session.h"
#include "ui/desktop/look_windows.h"
#include "ui/desktop/net_window.h"
#include "ui/desktop/qt_text.h"

namespace orb_test {

namespace fs = std::filesystem;
using namespace orb;

class look_session : public ::testing::Test {
protected:
  look_session() {
    session.keep_quiet(true, true);
    session.project().frame().working_folder_set(folder.path());
    session.project().working_folder_set(folder.path());
  }
  ~look_session() override {
    QList<QPointer<QWidget>> windows;
    for (QWidget *window : QApplication::topLevelWidgets())
      windows << window;
    for (const QPointer<QWidget> &window : windows)
      delete window;
  }

  command_result run(const std::string &line) {
    const script_line parsed = parse_script_line(line, 1);
    bound_command command = bound_by_name(parsed.command);
    for (const auto &[key, value] : parsed.values)
      command.set(key, value);
    return session.run(command);
  }
  void load_example() {
    ASSERT_TRUE(run("library.load file=" ORB_SOURCE_DIR "/examples/ecoli536").completed);
    ASSERT_TRUE(run("net.create").completed);
  }
  // The folder of a run of the example.
  fs::path assemble() {
    load_example();
    const command_result result =
        run("contigs.assemble no-ordering=yes no-pair-tables=yes browse=no out=" + folder.path().string());
    EXPECT_TRUE(result.completed) << result.why;
    return result.files.front().path;
  }
  static fs::path net_in(const fs::path &run) {
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(run))
      if (entry.path().extension() == ".net" && entry.path().parent_path() != run / "Heaps")
        return entry.path();
    return {};
  }
  net_window *open_net(const fs::path &file) {
    auto *window = static_cast<net_window *>(open_net_viewer(session, file, nullptr));
    window->resize(1180, 740);
    QTest::qWait(30);
    return window;
  }
  // Called when a dialog of this name waits, once.
  static void when_dialog(const char *name, const std::function<void(QDialog &)> &answer) {
    auto *timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, timer, [timer, name, answer] {
      auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
      if (dialog == nullptr || dialog->objectName() != name)
        return;
      timer->stop();
      timer->deleteLater();
      answer(*dialog);
    });
    timer->start(5);
  }
  static void choose(QWidget &window, const char *control) {
    auto *action = window.findChild<QAction *>(control);
    ASSERT_NE(action, nullptr) << control;
    EXPECT_TRUE(action->isEnabled()) << control;
    action->trigger();
  }
  static QPoint place_of(net_window &window, vertex_number n) {
    const node_elng &node = window.view().net().nodes()[static_cast<std::size_t>(n)];
    const view_geometry &at = window.view().geometry();
    return {static_cast<int>(std::lround(at.coorOnPictX_get(node.x))),
            static_cast<int>(std::lround(at.coorOnPictY_get(node.y)))};
  }
  // Nobody manages windows on the screen of the tests: the one that gets a key is put in front by hand.
  static void key(QWidget *window, Qt::Key wanted, Qt::KeyboardModifiers with = {}) {
    QApplication::setActiveWindow(window);
    QTest::keyClick(window, wanted, with);
  }
  static QWidget *picture_of(QWidget &window) { return window.findChild<QWidget *>("picture"); }
  static void drag(QWidget *picture, QPoint from, QPoint to) {
    QTest::mousePress(picture, Qt::LeftButton, {}, from);
    for (const int share : {1, 2, 3})
      QTest::mouseMove(picture, from + (to - from) * share / 3);
    QTest::mouseRelease(picture, Qt::LeftButton, {}, to);
  }

  orb::temporary_folder folder;
  desktop_session session;
};

} // namespace orb_test
