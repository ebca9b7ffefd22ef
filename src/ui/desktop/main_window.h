// The main window: menu tree, project panel, the road, status panels; it opens forms, windows, files that are dropped
// on it, and refuses to close while something runs.
#pragma once

#include <QMainWindow>
#include <QSettings>
#include <filesystem>

#include "ui/desktop/desktop_session.h"
#include "ui/desktop/main_menu.h"
#include "ui/desktop/project_panel.h"
#include "ui/desktop/status_panels.h"
#include "ui/desktop/work_panel.h"

namespace orb {

class main_window : public QMainWindow {
  Q_OBJECT

public:
  // `settings`: places of windows, recent files; null keeps none.
  main_window(desktop_session &session, QSettings *settings);
  ~main_window() override;

  // Loads or shows a file or folder, whatever it is.
  void open_path(const std::filesystem::path &path);
  // Runs the lines of a script one after the other; stops at the first that fails. False then.
  bool run_script_file(const std::filesystem::path &file);
  // Closes without the question whether to quit, which was answered already; windows still ask for their own work.
  void close_unasked();
  QAction *action(const std::string &control) const { return menu_->action(control); }

signals:
  void closed(); // the program may end

protected:
  void closeEvent(QCloseEvent *event) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dropEvent(QDropEvent *event) override;

private:
  void choose(const menu_entry &entry);
  void open_window(const std::string &control);
  void add_own_entries();
  void add_recent_menu();
  void fill_recent_menu();
  void remember(const std::filesystem::path &path);
  void show_title();
  void show_results(const QString &lines);
  void run_script_line(const std::string &text, std::int64_t number); // throws usage_error
  void tell_wrong_line(const QString &text);
  void save_script();
  void choose_script();
  void about();
  bool close_windows();
  void restore();
  std::filesystem::path run_in_use();

  desktop_session &session_;
  QSettings *settings_;
  main_menu *menu_;
  QMenu *recent_ = nullptr;
  QList<QAction *> own_entries_; // that can't be chosen while something runs
  QString caption_;              // of the command that runs
  bool is_closing_ = false;
};

} // namespace orb
