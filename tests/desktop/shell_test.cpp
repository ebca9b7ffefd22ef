// The main window: the road of a day's work, stopping, closing, what may be clicked while something runs.
#include <QCloseEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>

#include "commands/script.h"
#include "desktop_fixture.h"

namespace fs = std::filesystem;
using orb::bytes_of;
using orb::qt_text;

namespace {

class shell : public orb_test::desktop_test {
protected:
  // What happens once in the midst of a work that would last for hours, which is stopped then.
  template <class Deed> orb::command_result long_work(Deed deed) {
    EXPECT_TRUE(run("library.load", {{"file", example()}}));
    QTimer::singleShot(30, &window, [this, deed] {
      EXPECT_TRUE(session.is_running());
      deed();
      boxes.answer("Are you shure you want to stop process\nEstimate p-values", "yes");
      QPushButton *stop = window.findChild<QPushButton *>("CmdStopProcess");
      EXPECT_TRUE(stop->isEnabled());
      QTest::mouseClick(stop, Qt::LeftButton);
    });
    orb::bound_command command = orb::bound_by_name("pvalue.estimate");
    for (const auto &[key, value] : {std::pair{"n1", "100"}, {"n2", "90"}, {"runs", "2000000000"}})
      command.set(key, value);
    command.set("out", in_folder("estimate"));
    const orb::command_result result = session.run(command);
    settle();
    EXPECT_FALSE(window.findChild<QPushButton *>("CmdStopProcess")->isEnabled());
    return result;
  }
  void drop(const std::string &path) {
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(qt_text(path))});
    QDragEnterEvent enter(QPoint(400, 300), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &enter);
    EXPECT_EQ(enter.isAccepted(), !session.is_running());
    QDropEvent event(QPointF(400, 300), Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
  }
  // The relative names and bytes of all files of a folder but logs and their dates.
  static std::map<std::string, std::string> files_of(const fs::path &folder) {
    std::map<std::string, std::string> files;
    for (const auto &entry : fs::recursive_directory_iterator(folder))
      if (entry.is_regular_file() && entry.path().filename() != "ORB.log")
        files[fs::relative(entry.path(), folder).string()] = bytes_of(entry.path());
    return files;
  }
};

} // namespace

TEST_F(shell, a_day_of_work_is_a_script_that_gives_the_same_bytes) {
  QWidget *load = choose("mnu_File_open_Database_folder_text", "mnu_File_open_Database_folder_text");
  fill(load, "file", qt_text(example()));
  boxes.answer("Save lists of bands for clones", qt_text(in_folder("kept.ORBdb")));
  press(load, "c_ok");
  EXPECT_TRUE(boxes.saw("Fingerprint data for all of 423 clones are loaded."));
  QWidget *metric = choose("mnu_View_metrics", "form_metric");
  fill(metric, "t_cutoff", "16");
  press(metric, "c_ok");
  window.action("mnu_Analysis_MakeNet")->trigger();
  settle();
  QWidget *qq = choose("mnu_Analysis_RevizeNetSignif_QQ", "FrmSettingQQ");
  boxes.answer("Resulted net of significant clone overlaps", qt_text(in_folder("revised.ORBns")));
  boxes.answer("max rank connections", "1");
  press(qq, "c_ok");
  EXPECT_TRUE(boxes.saw("Net of significant clone overlaps is revized"));
  QWidget *cut = choose("mnu_Analysis_WholeDB_AdaptClustering", "form_adapt_clust");
  fill(cut, "t_minimal_cluster_size", "5");
  fill(cut, "t_out", qt_text(in_folder("results")));
  press(cut, "c_more");
  fill(cut, "ordering-steps", "500");
  press(cut, "c_start");
  EXPECT_TRUE(boxes.saw("Adaptive clustering is completed"));
  ASSERT_TRUE(session.project().has(orb::project_part::contigs));

  // the lines and answers of the session, in another folder and without a window
  orb::temporary_folder other;
  QString script = session.lines().join('\n'), answers = session.answers().join('\n');
  for (QString *text : {&script, &answers})
    text->replace(qt_text(folder.path().string()), qt_text(other.path().string()));
  orb::answer_book book;
  std::string problem;
  ASSERT_TRUE(orb::answer_book::parse(answers.toStdString(), book, problem)) << problem;
  orb::front_end_record record;
  orb::project_state project(orb::scripted_front_end(book, record), other.path());
  project.working_folder_set(other.path());
  const auto nothing = [](const std::string &) {};
  orb::command_streams streams{nothing, nothing, [](const std::string &why) { ADD_FAILURE() << why; }};
  EXPECT_EQ(orb::run_script(script.toStdString(), "session", project, streams), orb::exit_status::done);
  const auto made = files_of(folder.path()), again = files_of(other.path());
  EXPECT_GT(made.size(), 60u);
  for (const auto &[name, bytes] : made)
    EXPECT_TRUE(again.contains(name) && again.at(name) == bytes) << name;
  EXPECT_EQ(made.size(), again.size());
}

TEST_F(shell, the_stop_button_stops) {
  const orb::command_result result = long_work([] {});
  EXPECT_EQ(result.status, orb::exit_status::stopped);
  EXPECT_EQ(panel(1), "Estimate p-values has stopped manually.");
  EXPECT_EQ(window.findChild<QWidget *>("panel_1")->property("panel_colour").toInt(), 65535);
  EXPECT_EQ(session.answers().filter("Are you shure").size(), 0) << "that question isn't one of the command";
}

TEST_F(shell, no_answer_but_yes_stops) {
  int n_asked = 0;
  const orb::command_result result = long_work([&] {
    boxes.answer("Are you shure", "no");
    QTest::mouseClick(window.findChild<QPushButton *>("CmdStopProcess"), Qt::LeftButton);
    n_asked = static_cast<int>(boxes.seen.filter("Are you shure you want to stop process").size());
    EXPECT_FALSE(session.project().frame().stop_requested_get());
  });
  EXPECT_EQ(n_asked, 1);
  EXPECT_EQ(result.status, orb::exit_status::stopped) << "by the second one";
}

TEST_F(shell, closing_waits_for_the_end_of_a_process) {
  long_work([this] {
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(boxes.seen.back(), "No quit when process run. \nPress Stop Process before.");
  });
  EXPECT_FALSE(window.close()) << "the question was answered no";
  EXPECT_EQ(boxes.seen.back(), "Are you sure you want to quit ?");
  boxes.answer("Are you sure you want to quit ?", "yes");
  EXPECT_TRUE(window.close());
}

TEST_F(shell, a_second_command_is_refused_with_a_word) {
  std::uint64_t before = 0;
  long_work([&] {
    before = session.project().version();
    EXPECT_FALSE(session.run(orb::bound_by_name("project.close")).completed);
    EXPECT_EQ(boxes.seen.back(), "project.close can't begin while pvalue.estimate runs.");
    window.open_path(example());
  });
  EXPECT_EQ(session.project().version(), before);
  const orb::desktop_session::busy_mark window_at_work(session);
  EXPECT_FALSE(session.run(orb::bound_by_name("project.close")).completed);
  EXPECT_EQ(boxes.seen.back(), "project.close can't begin while a window is at work.");
  EXPECT_FALSE(window.close());
  EXPECT_EQ(boxes.seen.back(), "No quit when process run. \nPress Stop Process before.");
}

TEST_F(shell, whatever_is_clicked_while_a_command_runs_changes_nothing) {
  std::size_t n_clicked = 0;
  QStringList lines;
  QWidget *simulations = nullptr;
  ASSERT_TRUE(run("library.load", {{"file", example()}}));
  simulations = choose("mnu_File_Simul_Score", "form_simul_1");
  const orb::command_result result = long_work([&] {
    lines = session.lines();
    for (QAction *action : window.findChildren<QAction *>()) {
      action->trigger(); // a grey one does nothing
      ++n_clicked;
    }
    for (QWidget *top : QApplication::topLevelWidgets())
      for (QAbstractButton *button : top->findChildren<QAbstractButton *>())
        if (button->isVisible() && button->objectName() != "CmdStopProcess") {
          QTest::mouseClick(button, Qt::LeftButton);
          ++n_clicked;
        }
    for (const QWidget *top : QApplication::topLevelWidgets())
      EXPECT_TRUE(!top->isVisible() || top == &window || top == simulations) << top->objectName().toStdString();
    simulations->close();
    drop(example());
  });
  EXPECT_GT(n_clicked, 120u);
  EXPECT_EQ(session.lines().mid(0, lines.size()), lines);
  EXPECT_EQ(session.lines().size(), lines.size() + 1) << "the stopped one, as a comment";
  EXPECT_EQ(result.status, orb::exit_status::stopped);
  EXPECT_EQ(session.project().database().total_number_of_clones_get(), 423);
  EXPECT_TRUE(run("net.create")) << "and all goes on";
}

TEST_F(shell, entries_are_grey_until_what_they_need_is_loaded) {
  const auto check_all = [this] {
    const orb::parts_there there = orb::parts_there::of(session.project());
    for (const orb::menu_entry &entry : orb::table_of_menu_entries()) {
      const QAction *action = window.action(entry.control);
      ASSERT_TRUE(action) << entry.control;
      const std::string missing = orb::parts_missing_for(entry, there);
      EXPECT_EQ(action->isEnabled(), entry.has_action() && missing.empty()) << entry.control;
      if (entry.has_action() && !missing.empty()) {
        EXPECT_EQ(action->toolTip(), "Needs " + qt_text(missing));
      }
    }
  };
  check_all();
  EXPECT_EQ(window.action("mnu_View_lanes")->toolTip(), "Needs a library");
  ASSERT_TRUE(run("library.load", {{"file", example()}}));
  check_all();
  ASSERT_TRUE(run("net.create"));
  check_all();
  EXPECT_TRUE(window.action("mnu_Analysis_RevizeNetSignif_QQ")->isEnabled());
}

TEST_F(shell, mnemonics_of_a_menu_differ) {
  for (const QMenu *menu : window.menuBar()->findChildren<QMenu *>()) {
    QSet<QChar> letters;
    for (const QAction *action : menu->actions()) {
      const qsizetype at = action->text().indexOf('&');
      if (at < 0 || action->text().mid(at, 2) == "&&")
        continue;
      EXPECT_FALSE(letters.contains(action->text()[at + 1].toLower())) << action->text().toStdString();
      letters.insert(action->text()[at + 1].toLower());
    }
  }
}

TEST_F(shell, what_is_dropped_is_opened) {
  const auto drop_and_wait = [this](const std::string &path) {
    drop(path);
    settle();
  };
  drop_and_wait(example());
  EXPECT_EQ(session.project().database().total_number_of_clones_get(), 423);
  session.selection().set({5, 3, 5}, nullptr);
  EXPECT_EQ(session.selection().clones(), (std::vector<std::int32_t>{3, 5}));
  drop_and_wait(example());
  EXPECT_TRUE(session.selection().clones().empty()) << "numbers of another library";
  ASSERT_TRUE(run("net.create"));
  ASSERT_TRUE(run("net.save", {{"out", in_folder("n.ORBns")}}));
  ASSERT_TRUE(run("project.close"));
  drop_and_wait(in_folder("n.ORBns"));
  EXPECT_TRUE(boxes.seen.back().startsWith("net.load needs a library")) << boxes.seen.back().toStdString();
  drop_and_wait(in_folder("nowhere"));
  EXPECT_TRUE(boxes.seen.back().endsWith("nowhere isn't there.")) << boxes.seen.back().toStdString();
}

TEST_F(shell, a_viewer_closes_before_its_library_goes) {
  struct stubborn : QWidget {
    bool refuses = true;
    void closeEvent(QCloseEvent *event) override { event->setAccepted(!refuses); }
  } viewer;
  viewer.setObjectName("form_net");
  viewer.show();
  ASSERT_FALSE(run("library.load", {{"file", example()}}));
  EXPECT_FALSE(session.project().has(orb::project_part::library));
  viewer.refuses = false;
  ASSERT_TRUE(run("library.load", {{"file", example()}}));
  EXPECT_FALSE(viewer.isVisible());
}

TEST_F(shell, recent_files_and_places_are_kept) {
  window.hide();
  QSettings settings(qt_text(in_folder("desktop.ini")), QSettings::IniFormat);
  {
    orb::main_window first(session, &settings);
    first.resize(900, 700);
    first.show();
    first.open_path(example());
    settle();
    first.close_unasked();
  }
  orb::main_window second(session, &settings);
  EXPECT_EQ(second.size(), QSize(900, 700));
  const QMenu *recent = second.findChild<QMenu *>("menu_Recent");
  ASSERT_EQ(recent->actions().size(), 1);
  EXPECT_EQ(recent->actions()[0]->text(), qt_text(example()));
  ASSERT_TRUE(run("project.close"));
  recent->actions()[0]->trigger();
  settle();
  EXPECT_EQ(session.project().database().total_number_of_clones_get(), 423);
}
