#include "ui/desktop/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScrollArea>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>

#include "commands/command_door.h"
#include "commands/opening.h"
#include "commands/script.h"
#include "frame/files.h"
#include "frame/version.h"
#include "ui/desktop/forms.h"
#include "ui/desktop/look_windows.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace fs = std::filesystem;

main_window::main_window(desktop_session &session, QSettings *settings) : session_(session), settings_(settings) {
  setObjectName("main_window");
  setAcceptDrops(true);
  menu_ = new main_menu(session, menuBar(), [this](const menu_entry &entry) { choose(entry); });
  add_own_entries();
  menu_->give_mnemonics();
  auto *middle = new QWidget(this);
  auto *rows = new QVBoxLayout(middle);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(new work_panel(session, *menu_, middle), 1);
  rows->addWidget(new status_panels(session, middle));
  setCentralWidget(middle);
  auto *dock = new QDockWidget(tr("Project"), this);
  dock->setObjectName("dock_project");
  dock->setFeatures(QDockWidget::DockWidgetMovable);
  dock->setWidget(new project_panel(session, dock));
  addDockWidget(Qt::LeftDockWidgetArea, dock);
  resizeDocks({dock}, {340}, Qt::Horizontal);
  resize(1280, 800);
  show_title();
  restore();
  connect(&session, &desktop_session::project_changed, this, &main_window::show_title);
  connect(&session, &desktop_session::begun, this, [this](const QString &caption) { caption_ = caption.simplified(); });
  connect(&session, &desktop_session::lines_found, this, &main_window::show_results);
  connect(&session, &desktop_session::running_changed, this, [this](bool running) {
    for (QAction *action : std::as_const(own_entries_))
      action->setEnabled(!running);
  });
  connect(&session, &desktop_session::library_is_replaced, this, [](bool *may_go_on) {
    for (QWidget *viewer : QApplication::topLevelWidgets())
      if (viewer->objectName() == "form_net" && viewer->isVisible() && !viewer->close())
        *may_go_on = false;
  });
  connect(&session, &desktop_session::quit_wanted, this, &main_window::close_unasked);
}

main_window::~main_window() = default;

// ---- menus ---------------------------------------------------------------------------------------------------------

void main_window::add_own_entries() {
  QMenu *file = menu_->menu("File");
  QAction *exit = menu_->action("mnu_FileEnd");
  const auto add = [&](const char *name, const QString &caption, auto what) {
    auto *action = new QAction(caption, this);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, what);
    file->insertAction(exit, action);
    own_entries_ << action;
  };
  add_recent_menu();
  add("mnu_File_RunScript", tr("Run a script..."), &main_window::choose_script);
  add("mnu_File_SaveScript", tr("Save the script of this session..."), &main_window::save_script);
  file->insertSeparator(exit);
  auto *about = new QAction(tr("About ORB"), this);
  about->setObjectName("mnu_Help_About");
  connect(about, &QAction::triggered, this, &main_window::about);
  menu_->menu("Help")->addAction(about);
}

void main_window::choose(const menu_entry &entry) {
  if (entry.command == "program.exit") {
    close();
    return;
  }
  if (session_.is_running())
    return;
  if (entry.opens_window) {
    open_window(entry.control);
    return;
  }
  if (const std::optional<QWidget *> form = form_of_entry(session_, entry, this)) {
    if (*form != nullptr)
      (*form)->show();
    return;
  }
  session_.run(bound_by_name(entry.control));
}

// A run that is loaded, so that nobody need be asked for it.
fs::path main_window::run_in_use() {
  const part_origin &origin = session_.project().origin(project_part::contigs);
  std::error_code failed;
  return fs::is_regular_file(origin.file / "report_contigs.txt", failed) ? origin.file : fs::path();
}

void main_window::open_window(const std::string &control) {
  if (control == "mnu_View_net")
    open_net_viewer(session_, {}, this);
  else if (control == "mnu_View_contigs")
    open_contig_browser(session_, run_in_use(), this);
  else if (control == "mnu_View_lanes")
    open_lanes(session_, this);
}

void main_window::about() {
  const std::string commit(program_commit());
  QMessageBox::about(
      this, tr("About ORB"),
      tr("ORB %1%2\nFrom the restriction fingerprints of BAC clones to contigs.")
          .arg(qt_text(std::string(program_version())), commit.empty() ? "" : " (" + qt_text(commit) + ")"));
}

// ---- files ---------------------------------------------------------------------------------------------------------

void main_window::open_path(const fs::path &path) {
  if (session_.is_running())
    return;
  opening found = opening_of(session_.project(), path);
  if (!found.refused.empty()) {
    QMessageBox::warning(this, "ORB", qt_lines(found.refused));
    return;
  }
  for (const bound_command &command : found.commands)
    if (!session_.run(command).completed)
      return;
  remember(path);
  if (!found.net_to_view.empty())
    open_net_viewer(session_, found.net_to_view, this);
  else if (!found.contigs_to_browse.empty())
    open_contig_browser(session_, found.contigs_to_browse, this);
}

void main_window::dragEnterEvent(QDragEnterEvent *event) {
  if (event->mimeData()->hasUrls() && !session_.is_running())
    event->acceptProposedAction();
}

void main_window::dropEvent(QDropEvent *event) {
  event->acceptProposedAction();
  QStringList paths;
  for (const QUrl &url : event->mimeData()->urls())
    if (url.isLocalFile())
      paths << url.toLocalFile();
  // when the drag is over: whoever it came from waits until then
  QTimer::singleShot(0, this, [this, paths] {
    for (const QString &path : paths)
      open_path(path_of(path));
  });
}

void main_window::add_recent_menu() {
  recent_ = new QMenu(tr("Recent files"), this);
  recent_->setObjectName("menu_Recent");
  QMenu *file = menu_->menu("File");
  file->insertMenu(menu_->action("mnu_FileEnd"), recent_);
  own_entries_ << recent_->menuAction();
  fill_recent_menu();
}

void main_window::fill_recent_menu() {
  recent_->clear();
  const QStringList paths = settings_ ? settings_->value("recent").toStringList() : QStringList();
  for (const QString &path : paths) {
    QAction *action = recent_->addAction(QString(path).replace("&", "&&"));
    connect(action, &QAction::triggered, this, [this, path] { open_path(path_of(path)); });
  }
  recent_->menuAction()->setVisible(!paths.isEmpty());
}

void main_window::remember(const fs::path &path) {
  if (!settings_)
    return;
  constexpr qsizetype most = 9;
  QStringList paths = settings_->value("recent").toStringList();
  const QString whole = QFileInfo(qt_path(path)).absoluteFilePath();
  paths.removeAll(whole);
  paths.prepend(whole);
  settings_->setValue("recent", QStringList(paths.mid(0, most)));
  fill_recent_menu();
}

// ---- scripts -------------------------------------------------------------------------------------------------------

// Whoever started the program for a script reads standard error too.
void main_window::tell_wrong_line(const QString &text) {
  std::fprintf(stderr, "orb-desktop: %s\n", qPrintable(text));
  emit session_.note_shown(text, true);
}

void main_window::run_script_line(const std::string &text, std::int64_t number) {
  const script_line line = parse_script_line(text, number);
  if (line.command.empty())
    return;
  bound_command command = bound_by_name(line.command);
  for (const auto &[key, value] : line.values)
    command.set(key, value);
  const command_result result = session_.run(command);
  if (!result.completed)
    throw usage_error(line.command + ": " + text_of_end(result));
}

bool main_window::run_script_file(const fs::path &file) {
  std::int64_t number = 0;
  try {
    for (const std::string &text : lines_of_script(file_bytes(file)))
      run_script_line(text, ++number);
    return true;
  } catch (const usage_error &wrong) {
    tell_wrong_line(tr("%1, line %2: %3").arg(qt_path(file)).arg(number).arg(qt_lines(wrong.what())));
  } catch (const file_error &failed) {
    tell_wrong_line(qt_lines(failed.what()));
  }
  return false;
}

void main_window::choose_script() {
  const QString file = QFileDialog::getOpenFileName(this, tr("Run a script"));
  if (file.isEmpty())
    return;
  session_.keep_quiet(true, false);
  run_script_file(path_of(file));
  session_.keep_quiet(false, false);
}

// What was asked and answered goes beside it.
void main_window::save_script() {
  const QString chosen = QFileDialog::getSaveFileName(this, tr("Save the script of this session"), "session.orbscript");
  if (chosen.isEmpty())
    return;
  const fs::path file = path_of(chosen);
  const fs::path answers = file.string() + ".answers";
  try {
    result_file out(file);
    if (!session_.answers().isEmpty())
      out.write("# orb script " + file.string() + " --answers " + answers.string() + "\n");
    out.write(session_.lines().join('\n').toStdString() + "\n");
    out.commit();
    if (!session_.answers().isEmpty()) {
      result_file asked(answers);
      asked.write(session_.answers().join('\n').toStdString() + "\n");
      asked.commit();
    }
  } catch (const file_error &failed) {
    QMessageBox::warning(this, "ORB", qt_lines(failed.what()));
  }
}

// ---- what it shows -------------------------------------------------------------------------------------------------

void main_window::show_title() {
  const fs::path library = session_.project().origin(project_part::library).file;
  setWindowTitle(library.empty() ? QString("ORB") : qt_path(library.filename()) + " - ORB");
}

// A table of results gets a window of its own; a line or two stand among the messages.
void main_window::show_results(const QString &lines) {
  constexpr qsizetype few_lines = 2;
  if (!session_.is_quiet() && lines.count('\n') >= few_lines)
    results_window(caption_, lines, this)->show();
}

// ---- both ends -----------------------------------------------------------------------------------------------------

void main_window::restore() {
  if (!settings_)
    return;
  restoreGeometry(settings_->value("geometry").toByteArray());
  restoreState(settings_->value("state").toByteArray());
}

// Windows with work that isn't saved ask for themselves.
bool main_window::close_windows() {
  for (QWidget *window : QApplication::topLevelWidgets())
    if (window != this && window->isVisible() && window->isWindow() && !window->close())
      return false;
  return true;
}

void main_window::close_unasked() {
  is_closing_ = true;
  close();
}

void main_window::closeEvent(QCloseEvent *event) {
  const bool may_close = is_closing_ ? !session_.is_running() : session_.may_quit();
  if (!may_close || !close_windows()) {
    is_closing_ = false;
    event->ignore();
    return;
  }
  if (settings_) {
    settings_->setValue("geometry", saveGeometry());
    settings_->setValue("state", saveState());
  }
  event->accept();
  emit closed();
}

} // namespace orb
