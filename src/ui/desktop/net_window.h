// The net viewer as a window over `net_view`: menus and buttons of its table, the picture, the side panels. Every event
// goes to the view; nothing here changes a net.
#pragma once

#include <QMainWindow>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>

#include "commands/lent_sources.h"
#include "ui/desktop/desktop_session.h"
#include "ui/desktop/net_canvas.h"
#include "viewer/net_view.h"
#include "viewer/net_view_menu.h"

class QActionGroup;
class QCompleter;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QStringListModel;
class QToolButton;

namespace orb {

class net_window : public QMainWindow, private net_canvas_owner {
  Q_OBJECT

public:
  net_window(desktop_session &session, QWidget *parent);
  ~net_window() override;

  net_view &view() { return *view_; }
  // False after messages.
  bool open_file(const std::filesystem::path &file);
  // A control by its name, as a click on it; false when it is grey, or while something else runs.
  bool choose(const std::string &control, const std::string &value = {});
  // The line of a script that leads to what is on the screen, and to a file when one is given. What was opened and then
  // saved over is read from the copy that was kept of it.
  QString script_line(const std::string &save_control = {}, const std::filesystem::path &file = {}) const;

protected:
  void closeEvent(QCloseEvent *event) override;
  void timerEvent(QTimerEvent *event) override;

private:
  // net_window_controls.cpp
  void make_menus();
  QMenu *menu_of(const std::string &path);
  void add_entry(const view_menu_item &item);
  void add_shapes(const view_menu_item &item, QMenu *menu);
  void add_columns(const view_menu_item &item, QMenu *menu);
  void add_entries_of_window();
  void make_buttons();
  QToolButton *button_of(const char *control, const QString &text);
  QWidget *make_side();
  QWidget *make_rotate_panel();
  void make_status();
  void refresh_controls();
  void show_panels();
  void show_clusters();
  void fill_columns(const view_menu_item &item, QMenu *menu);
  void search();
  void search_begins();
  void fill_completions();

  // Runs what changes the view; refuses while it is at work or a command runs. `is_long`: commands are kept away.
  bool act(const std::function<void()> &what, bool is_long);
  void guarded(const std::function<void()> &what);
  bool may_act() const { return depth_ == 0 && !session_.is_running(); }
  view_window window_of_view();
  void parts_changed();
  void publish_selection();
  void take_selection(const QObject *by);
  void keep_what_was_opened(const std::filesystem::path &to_be_written);
  // The file that a step opened, 0: the first one; empty: it opened none.
  std::filesystem::path opened_at(std::size_t step) const;
  void file_was_written(const std::string &control, const std::filesystem::path &file);
  std::vector<std::int32_t> selected_clones() const;
  void send_text_of_selected();
  // Where the menu was opened, else the one between the two nodes that are selected; -1: none.
  std::int32_t edge_in_question() const;
  void show_edge(std::int32_t edge);
  void stop_or_cancel();

  // net_canvas_owner
  void mouse_pressed(QPointF at, bool shift) override;
  void mouse_moved(QPointF at) override;
  void mouse_released(QPointF at) override;
  void hand_moved(QPointF by, bool goes_on) override;
  void hand_let_go() override;
  void wheel_turned(int steps, QPointF at) override;
  void hovered(QPointF at) override;
  void menu_wanted(QPointF at, QPoint on_screen) override;
  QString hint_at(QPointF at) override;

  desktop_session &session_;
  std::unique_ptr<lent_sources> lent_;
  std::unique_ptr<net_view> view_;
  net_canvas *canvas_ = nullptr;
  std::filesystem::path first_file_;                  // opened before anything was done
  std::map<std::size_t, std::filesystem::path> kept_; // by step as in opened_at: where the bytes lie now, FILE~
  std::uint64_t version_seen_ = 0;
  overlap_rule rule_seen_;
  std::vector<std::int32_t> clones_seen_; // of the selection, as it was told or taken last
  int depth_ = 0;                         // of calls into the view
  bool closes_after_ = false, text_is_edited_ = false, shows_panels_ = false;

  std::map<std::string, QMenu *> menus_;
  std::map<std::string, QAction *> actions_; // by control
  std::map<std::string, QWidget *> buttons_; // by control
  QLabel *panel_time_ = nullptr, *panel_selection_ = nullptr, *panel_count_ = nullptr, *panel_message_ = nullptr;
  QLabel *heading_ = nullptr;
  QPlainTextEdit *names_ = nullptr;
  QListWidget *clusters_ = nullptr;
  QLineEdit *from_ = nullptr, *to_ = nullptr, *angle_ = nullptr, *search_ = nullptr;
  QStringListModel *captions_ = nullptr;
  std::int32_t edge_of_menu_ = -1;
};

} // namespace orb
