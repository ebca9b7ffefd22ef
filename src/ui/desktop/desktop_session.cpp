#include "ui/desktop/desktop_session.h"

#include <QCoreApplication>
#include <algorithm>

#include "commands/command_door.h"
#include "commands/script.h"
#include "ui/desktop/message_boxes.h"
#include "ui/desktop/qt_text.h"

namespace orb {

namespace {

constexpr qint64 between_events = 15; // milliseconds

// The first line, without what `--answers` would take for the end of the prompt.
QString start_of_prompt(const std::string &prompt) {
  QString start = qt_lines(prompt).section('\n', 0, 0).section('\t', 0, 0);
  return start.startsWith('*') ? QString() : start;
}

} // namespace

desktop_session::desktop_session(const std::filesystem::path &program_folder, QObject *parent)
    : QObject(parent), project_(std::make_unique<project_state>(as_front_end(), program_folder)) {
  since_events_.start();
  project_->start();
}

desktop_session::~desktop_session() {
  project_->finish();
}

// ---- commands ------------------------------------------------------------------------------------------------------

static bool replaces_library(const command_row &row) {
  return row.id == "project.close" ||
         std::find(row.makes.begin(), row.makes.end(), project_part::library) != row.makes.end();
}

bool desktop_session::may_replace_library(const command_row &row) {
  bool may_go_on = true;
  if (replaces_library(row))
    emit library_is_replaced(&may_go_on);
  return may_go_on;
}

command_result desktop_session::run(const bound_command &command) {
  if (is_running() && project_->running().empty()) {
    const std::string why = command.row().id + " can't begin while a window is at work.";
    show_message(why, {}, false);
    return command_result::ended(exit_status::run_failed, why);
  }
  if (is_running())
    return run_command(*project_, command); // refuses it
  if (!may_replace_library(command.row()))
    return command_result::ended(exit_status::run_failed, "a window stays open");
  const bool quits = command.row().id == "program.exit";
  const std::uint64_t before = project_->version();
  emit begun(qt_text(command.row().caption));
  command_result result;
  {
    const busy_mark mark(*this);
    result = run_command(*project_, command);
  }
  const QString line = qt_text(script_line_of(command));
  if (result.completed)
    note_line(line);
  else if (result.status != exit_status::wrong_command)
    note_line("# " + qt_text(text_of_end(result)).section('\n', 0, 0) + ": " + line);
  if (project_->version() != before && replaces_library(command.row()))
    selection_.clear(this);
  emit project_changed();
  tell_end(result);
  if (quits && result.completed)
    emit quit_wanted();
  return result;
}

void desktop_session::tell_end(const command_result &result) {
  std::string lines, results = result.summary;
  for (const std::string &line : result.lines)
    lines += (lines.empty() ? "" : "\n") + line;
  for (const std::string &text : {lines, result.findings})
    if (!text.empty())
      results += (results.empty() ? "" : "\n") + text;
  emit ended(static_cast<int>(result.status), qt_lines(text_of_end(result)), qt_lines(results));
  emit lines_found(qt_lines(lines));
  if (!result.completed && !result.why.empty())
    show_message(result.why, {}, true);
}

void desktop_session::note_line(const QString &line) {
  lines_ << line;
  emit line_noted(line);
}

void desktop_session::running_begins() {
  if (runs_++ > 0)
    return;
  since_events_.restart();
  emit running_changed(true);
}

void desktop_session::running_ends() {
  show_panels();
  if (--runs_ > 0)
    return;
  emit stop_enabled(false);
  emit running_changed(false);
}

void desktop_session::ask_to_stop() {
  if (!is_running())
    return;
  const QStringList answers = answers_; // a question of the button isn't one of the command
  project_->frame().stop_process_pressed();
  answers_ = answers;
}

bool desktop_session::may_quit() {
  return project_->frame().quit_requested(is_running());
}

void desktop_session::serve_events() {
  if (since_events_.elapsed() < between_events)
    return;
  show_panels();
  QCoreApplication::processEvents();
  since_events_.restart();
}

// ---- what the frame shows ------------------------------------------------------------------------------------------

void desktop_session::show_panels() {
  for (std::size_t i = 0; i < panels_.size(); ++i)
    if (panel_text &shown = panels_[i]; shown.is_new) {
      shown.is_new = false;
      emit panel_shown(static_cast<int>(i), qt_text(shown.text), static_cast<int>(shown.colour));
    }
  if (progress_) {
    const auto [done, total] = *progress_;
    progress_.reset();
    emit progress_shown(done, total);
  }
}

front_end desktop_session::as_front_end() {
  front_end shown;
  shown.panel_set = [this](panel which, const std::string &text, panel_colour colour) {
    panels_[static_cast<std::size_t>(which)] = {text, colour, true};
    if (which == panel::process)
      show_panels();
  };
  shown.log_shown = [this](const std::string &text) { emit log_shown(qt_lines(text)); };
  shown.note = [this](const std::string &text) { emit note_shown(qt_lines(text), false); };
  shown.warning = [this](const std::string &text) { emit note_shown(qt_lines(text), true); };
  shown.progress = [this](std::int64_t done, std::int64_t total) { progress_ = {done, total}; };
  shown.yield = [this] {
    serve_events();
    return false; // the stop button sets the flag of the frame itself
  };
  shown.stop_button_enable = [this](bool on) { emit stop_enabled(on); };
  set_boxes(shown);
  return shown;
}

void desktop_session::set_boxes(front_end &shown) {
  shown.message = [this](const std::string &text, const std::string &title) { show_message(text, title, false); };
  shown.alarm = [this](const std::string &text, const std::string &title) { show_message(text, title, true); };
  shown.ask = [this](const question &asked) { return answer_question(asked); };
  shown.input = [this](const input_box &asked) { return answer_input(asked); };
  shown.choose_file = [this](const file_dialog &asked) { return answer_file(asked); };
}

// ---- boxes ---------------------------------------------------------------------------------------------------------

void desktop_session::keep_quiet(bool on, bool nobody_there) {
  is_quiet_ = on;
  nobody_there_ = on && nobody_there;
}

void desktop_session::show_message(const std::string &text, const std::string &title, bool is_trouble) {
  emit note_shown(qt_lines(text), is_trouble);
  if (is_quiet_)
    return;
  show_panels();
  show_message_box(text, title, is_trouble);
  since_events_.restart(); // who reads a box isn't kept waiting
}

void desktop_session::note_answer(const std::string &prompt, const std::string &reply) {
  const QString start = start_of_prompt(prompt);
  if (is_running() && !start.isEmpty() && !reply.empty())
    answers_ << start + "\t" + qt_text(reply);
}

answer desktop_session::answer_question(const question &asked) {
  std::string reply;
  answer given = asked.by_default;
  if (book_.take(asked.text, reply) && answer_from_text(reply, given)) {
  } else if (!nobody_there_) {
    show_panels();
    given = ask_in_a_box(asked);
    since_events_.restart();
  }
  note_answer(asked.text, given == answer::yes ? "yes" : given == answer::no ? "no" : "cancel");
  return given;
}

std::string desktop_session::answer_input(const input_box &asked) {
  std::string reply;
  if (book_.take(asked.prompt, reply)) {
  } else if (nobody_there_) {
    reply = asked.by_default;
  } else {
    show_panels();
    reply = ask_for_a_text(asked);
    since_events_.restart();
  }
  note_answer(asked.prompt, reply);
  return reply;
}

std::string desktop_session::answer_file(const file_dialog &asked) {
  std::string reply;
  if (!book_.take(asked.title, reply) && !nobody_there_) {
    show_panels();
    reply = ask_for_a_file(asked);
    since_events_.restart();
  }
  note_answer(asked.title, reply);
  return reply;
}

} // namespace orb
