// The one project of the window program, with what its widgets need around it: the door for commands, the lines of a
// script that repeat what was done, the selection, and signals by which windows see what changed.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>

#include "commands/command_row.h"
#include "frame/front_end.h"
#include "project/project_state.h"
#include "ui/desktop/selection_model.h"

namespace orb {

class desktop_session : public QObject {
  Q_OBJECT

public:
  // `program_folder`: where ORB.log lies; empty: no log.
  explicit desktop_session(const std::filesystem::path &program_folder = {}, QObject *parent = nullptr);
  ~desktop_session() override;

  project_state &project() { return *project_; }
  bool is_running() const { return runs_ > 0; }
  // Through the one door; a second one is refused with a word. Notes the line of a script that repeats it.
  command_result run(const bound_command &command);
  // A line of a script that something other than a command row did (the viewer's steps).
  void note_line(const QString &line);
  const QStringList &lines() const { return lines_; }
  // What was asked while commands ran and what was answered, a line each as `orb script --answers` reads them.
  const QStringList &answers() const { return answers_; }
  selection_model &selection() { return selection_; }

  // The stop button: asks whether to stop.
  void ask_to_stop();
  // The close request: a question, or a word while something runs. True when the program may end.
  bool may_quit();
  // Serves events, at most every few milliseconds: what the yields of the frame do.
  void serve_events();

  // For work of a window that isn't a command (a layout that runs): while one lives no command begins.
  class busy_mark {
  public:
    explicit busy_mark(desktop_session &session) : session_(session) { session_.running_begins(); }
    ~busy_mark() { session_.running_ends(); }
    busy_mark(const busy_mark &) = delete;
    busy_mark &operator=(const busy_mark &) = delete;

  private:
    desktop_session &session_;
  };

  // Answers come from here before anybody is asked.
  void answers_set(answer_book book) { book_ = std::move(book); }
  // Message boxes become notes; with `nobody_there` questions get their defaults too. For scripts.
  void keep_quiet(bool on, bool nobody_there);
  bool is_quiet() const { return is_quiet_; }

signals:
  void project_changed(); // a part is new or dropped (project().version()), or a setting
  void line_noted(const QString &line);
  void running_changed(bool running);
  // A command is about to replace the library: who shows a net of it closes, or sets this to false when it can't.
  void library_is_replaced(bool *may_go_on);
  void panel_shown(int panel, const QString &text, int colour); // the five panels, from 0; colour: of `panel_colour`
  void progress_shown(qint64 done, qint64 total);
  void note_shown(const QString &text, bool is_warning);
  void log_shown(const QString &text);                                // a line of ORB.log
  void stop_enabled(bool on);                                         // of the stop button
  void begun(const QString &caption);                                 // a command
  void ended(int status, const QString &end, const QString &results); // its end in words, its result lines
  void lines_found(const QString &lines);                             // results of it that are lines
  void quit_wanted();                                                 // the command that ends the program was run

private:
  struct panel_text {
    std::string text;
    panel_colour colour = panel_colour::resting;
    bool is_new = false;
  };

  front_end as_front_end();
  void set_boxes(front_end &shown);
  void running_begins();
  void running_ends();
  void show_panels();
  bool may_replace_library(const command_row &row);
  void tell_end(const command_result &result);
  void note_answer(const std::string &prompt, const std::string &reply);
  answer answer_question(const question &asked);
  std::string answer_input(const input_box &asked);
  std::string answer_file(const file_dialog &asked);
  void show_message(const std::string &text, const std::string &title, bool is_trouble);

  answer_book book_;
  selection_model selection_;
  QStringList lines_, answers_;
  std::array<panel_text, 5> panels_;
  std::optional<std::pair<std::int64_t, std::int64_t>> progress_; // not shown yet
  QElapsedTimer since_events_;
  int runs_ = 0;
  bool is_quiet_ = false, nobody_there_ = false;
  std::unique_ptr<project_state> project_; // shows itself through all of these
};

} // namespace orb
