#include "frame/process_frame.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace orb {

namespace {

constexpr const char *resting_step = "Step";
constexpr const char *resting_local_process = "Local process";
constexpr const char *resting_control = "Control";
constexpr const char *resting_clones = "Search for clones";

// One write of a whole line, so that lines of two programs don't mix.
void append_to_file(const std::filesystem::path &path, const std::string &bytes) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (file < 0)
    throw file_error("can't write", path, std::strerror(errno));
  std::size_t done = 0;
  int error = 0;
  while (done < bytes.size() && error == 0) {
    const ssize_t written = ::write(file, bytes.data() + done, bytes.size() - done);
    if (written >= 0)
      done += static_cast<std::size_t>(written);
    else if (errno != EINTR)
      error = errno;
  }
  if (::close(file) != 0 && error == 0)
    error = errno;
  if (error != 0)
    throw file_error("can't write", path, std::strerror(error));
}

// The answer in the words of the question's buttons: a box without "cancel" takes it for no, one without "no" takes
// that for cancel.
answer fitted_to_choice(answer given, answer_choice choice) {
  if (choice == answer_choice::yes_no && given == answer::cancel)
    return answer::no;
  if (choice == answer_choice::ok_cancel && given == answer::no)
    return answer::cancel;
  return given;
}

} // namespace

process_frame::process_frame(front_end shown, std::filesystem::path program_folder)
    : shown_(std::move(shown)), program_folder_(std::move(program_folder)), working_folder_(program_folder_) {}

// ---- processes -----------------------------------------------------------------------------------------------------

void process_frame::panel_set(panel which, const std::string &text, panel_colour colour) {
  if (shown_.panel_set)
    shown_.panel_set(which, text, colour);
}

void process_frame::process_start(const std::string &name) {
  process_name_ = name;
  panel_set(panel::process, name, panel_colour::running);
  process_is_running_ = true;
  if (shown_.stop_button_enable)
    shown_.stop_button_enable(true);
  log_line(name);
  yield();
}

void process_frame::process_done() {
  if (process_name_.empty()) {
    panel_set(panel::process, "Process", panel_colour::done);
  } else {
    const std::string text = process_name_ + " done";
    panel_set(panel::process, text, panel_colour::done);
    log_line(text);
  }
  process_is_running_ = false;
  if (shown_.stop_button_enable)
    shown_.stop_button_enable(false);
  yield();
}

void process_frame::end_with_words(const std::string &words) {
  was_stopped_ = was_stopped_ || stop_requested_; // whatever the words
  const std::string text = process_name_ + " " + words;
  log_line(text);
  panel_set(panel::process, text, panel_colour::ended);
  stop_requested_set(false);
}

void process_frame::process_stopped_manually() {
  was_stopped_ = true;
  end_with_words("has stopped manually.");
}

void process_frame::process_canceled() {
  end_with_words("has canceled.");
}

void process_frame::process_aborted() {
  end_with_words("has aborted.");
}

void process_frame::log_write(const std::string &text) {
  const std::filesystem::path &folder = log_folder_.empty() ? program_folder_ : log_folder_;
  if (!folder.empty())
    append_to_file(folder / "ORB.log", clock_.log_date() + "\t" + text + "\r\n");
}

// In one line. A box is seen, so that a log that can't take it is no reason to stop.
void process_frame::log_message(const std::string &text) {
  std::string line = text;
  std::replace(line.begin(), line.end(), '\r', ' ');
  line.erase(std::remove(line.begin(), line.end(), '\n'), line.end());
  try {
    log_write(line);
  } catch (const file_error &) {
  }
}

void process_frame::log_line(const std::string &text) {
  log_write(text);
  if (shown_.log_shown)
    shown_.log_shown(text);
}

// ---- panels --------------------------------------------------------------------------------------------------------

void process_frame::step_text_set(const std::string &text) {
  panel_set(panel::step, text);
  yield();
}

void process_frame::step_text_reset() {
  step_text_set(resting_step);
}

void process_frame::local_process_text_set(const std::string &text) {
  panel_set(panel::local_process, text);
  yield();
}

void process_frame::local_process_text_reset() {
  local_process_text_set(resting_local_process);
}

void process_frame::control_text_set(const std::string &text) {
  panel_set(panel::control, text);
  yield();
}

void process_frame::control_text_reset() {
  control_text_set(resting_control);
}

void process_frame::clones_text_set(const std::string &text) {
  panel_set(panel::clones, text);
  yield();
}

void process_frame::clones_text_reset() {
  clones_text_set(resting_clones);
}

void process_frame::all_panels_reset() {
  process_done();
  step_text_reset();
  local_process_text_reset();
  control_text_reset();
  clones_text_reset();
}

// ---- stopping ------------------------------------------------------------------------------------------------------

void process_frame::stop_requested_set(bool requested) {
  stop_requested_ = requested;
  if (shown_.stop_button_enable)
    shown_.stop_button_enable(requested);
  if (!requested)
    process_is_running_ = false;
}

void process_frame::stop_process_pressed() {
  question asked;
  asked.text = "Are you shure you want to stop process\r\n" + process_name_;
  asked.to_go_on = answer::no;
  if (yes(asked))
    stop_requested_set(true);
  yield();
}

bool process_frame::quit_requested(bool is_busy) {
  if (is_busy || process_is_running_ || stop_requested_) {
    message("No quit when process run. \r\nPress Stop Process before.", "Quit");
    return false;
  }
  question asked;
  asked.text = "Are you sure you want to quit ?";
  asked.title = "Quit";
  asked.by_default = answer::yes;
  return ask(asked) != answer::no;
}

void process_frame::yield() {
  // a wish that has stopped one process isn't put on what comes between it and the next one
  if (shown_.yield && shown_.yield() && !stop_requested_ && (process_is_running_ || !was_stopped_))
    stop_requested_set(true);
}

bool process_frame::long_time_question() {
  question asked;
  asked.text = "This process is long.\r\nIt can take some hours.\r\nContinue?";
  asked.explanation = "A stop ends it later too; what is finished by then stays.";
  asked.by_default = answer::yes;
  return ask(asked) != answer::no;
}

// ---- boxes ---------------------------------------------------------------------------------------------------------

void process_frame::note(const std::string &text) {
  if (shown_.note)
    shown_.note(text);
}

void process_frame::warn(const std::string &text) {
  warnings_.push_back(text);
  data_failed_ = data_failed_ || strict_;
  log_write("Warning: " + text);
  if (shown_.warning)
    shown_.warning(text);
}

void process_frame::show_progress(std::int64_t done, std::int64_t total) {
  if (shown_.progress)
    shown_.progress(done, total);
}

bool process_frame::refuse(const std::string &text) {
  alarm(text);
  data_failed_ = true;
  return false;
}

void process_frame::message(const std::string &text, const std::string &title) {
  log_message(text);
  if (shown_.message)
    shown_.message(text, title);
}

bool process_frame::is_answered_ahead(const std::string &prompt, std::string &reply) const {
  for (const answer_given &given : ahead_)
    if (prompt.starts_with(given.prompt_start)) {
      reply = given.reply();
      return true;
    }
  return false;
}

void process_frame::alarm(const std::string &text, const std::string &title) {
  if (!shown_.alarm)
    return message(text, title);
  log_message(text);
  shown_.alarm(text, title);
}

answer process_frame::ask(const question &asked) {
  if (asked.marks_failure)
    data_failed_ = true;
  std::string reply;
  answer given = asked.by_default;
  if (is_answered_ahead(asked.text, reply) && answer_from_text(reply, given))
    return fitted_to_choice(given, asked.choice);
  return fitted_to_choice(shown_.ask ? shown_.ask(asked) : asked.by_default, asked.choice);
}

std::string process_frame::input(const input_box &asked) {
  std::string reply;
  if (is_answered_ahead(asked.prompt, reply))
    return reply.empty() ? asked.by_default : reply;
  return shown_.input ? shown_.input(asked) : asked.by_default;
}

void process_frame::program_end_now(const std::string &text, exit_status status) {
  alarm(text);
  try {
    log_line(text);
  } catch (const file_error &) {
    // the reason for the end counts more than the log that can't take it
  }
  throw program_end(text, status);
}

// ---- folders and file dialogs ----

std::filesystem::path process_frame::path_in_folder(const std::filesystem::path &folder, std::string_view name) {
  std::string relative(name);
  for (char &c : relative)
    if (c == '\\')
      c = '/';
  return folder / relative.substr(std::min(relative.find_first_not_of('/'), relative.size()));
}

std::filesystem::path process_frame::path_in_working_folder(std::string_view name) const {
  return path_in_folder(working_folder_, name);
}

std::filesystem::path process_frame::open_file_dialog(const std::string &title) {
  file_dialog asked;
  asked.title = title;
  asked.filter = file_filter_;
  asked.folder = working_folder_.string();
  file_filter_.clear();
  try {
    return shown_.choose_file ? shown_.choose_file(asked) : std::string();
  } catch (const program_end &) {
    throw;
  } catch (const std::exception &) {
    return {}; // a dialog that fails counts as cancelled
  }
}

std::filesystem::path process_frame::open_file_dialog_typed(const std::string &title, const std::string &type_word) {
  if (type_word == "txt")
    file_filter_set("Txt files |*.txt|All files|*.*");
  else if (type_word == "sizes")
    file_filter_set("Sizes files |*.sizes|All files|*.*");
  return open_file_dialog(title);
}

std::filesystem::path process_frame::save_file_dialog(const std::string &title, const std::string &proposed_name,
                                                      const std::string &filter) {
  if (!filter.empty())
    file_filter_set(filter);
  file_dialog asked;
  asked.title = title;
  asked.filter = file_filter_;
  asked.proposed_name = proposed_name;
  asked.folder = working_folder_.string();
  asked.to_save = true;
  try {
    return shown_.choose_file ? shown_.choose_file(asked) : std::string();
  } catch (const program_end &) {
    throw;
  } catch (const std::exception &) {
    return {};
  }
}

std::filesystem::path process_frame::save_file_dialog_checked(const std::string &title,
                                                              const std::string &proposed_name,
                                                              const std::string &filter) {
  for (;;) {
    const std::filesystem::path path = save_file_dialog(title, proposed_name, filter);
    std::error_code ignored;
    if (path.empty() || !std::filesystem::exists(path, ignored))
      return path;
    question asked;
    asked.text = "File " + path.string() + " already exists! Overwrite?";
    asked.choice = answer_choice::yes_no_cancel;
    asked.by_default = answer::cancel;
    const answer given = ask(asked);
    if (given == answer::yes)
      return path;
    if (given == answer::cancel)
      return {};
  }
}

// ---- scope ---------------------------------------------------------------------------------------------------------

frame_scope::frame_scope(process_frame &frame) : frame_(frame), working_folder_(frame.working_folder_get()) {
  clear();
}

frame_scope::~frame_scope() {
  frame_.working_folder_set(working_folder_);
  clear();
}

void frame_scope::clear() {
  frame_.stop_requested_ = frame_.was_stopped_ = frame_.data_failed_ = frame_.process_is_running_ = false;
  frame_.file_filter_.clear();
  frame_.warnings_.clear();
  frame_.doubts_ = {};
  frame_.ahead_.clear();
}

} // namespace orb
