// The process frame: with it every long task announces itself, shows where it stands, lets the user stop it and
// leaves a line in the log. Only the calling thread touches it.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/clock.h"
#include "frame/failures.h"
#include "frame/front_end.h"
#include "frame/input_doubts.h"

namespace orb {

class process_frame {
public:
  // `program_folder`: ORB.log lies there unless `log_folder_set` moves it; the working folder starts equal to it.
  // An empty program folder writes no log at all.
  explicit process_frame(front_end shown = null_front_end(), std::filesystem::path program_folder = {});

  // Processes. The three endings with words log "NAME words" and show it in yellow; they clear the stop flag.
  void process_start(const std::string &name);
  void process_done();
  void process_stopped_manually();
  void process_canceled();
  void process_aborted();
  const std::string &process_name_get() const { return process_name_; }
  bool process_is_running() const { return process_is_running_; }

  // Appends date, tab, text, CR LF to ORB.log, which is opened and closed for each line. Does not yield.
  void log_line(const std::string &text);

  // Panels 2 to 5. Each call yields: give every loop a stride.
  void step_text_set(const std::string &text);
  void step_text_reset();
  void local_process_text_set(const std::string &text);
  void local_process_text_reset();
  void control_text_set(const std::string &text);
  void control_text_reset();
  void clones_text_set(const std::string &text);
  void clones_text_reset();
  void all_panels_reset();

  bool stop_requested_get() const { return stop_requested_; }
  // Yields first, so that a request from outside is seen: what a loop asks that shows nothing. False: stop.
  bool goes_on() {
    yield();
    return !stop_requested_;
  }
  void stop_requested_set(bool requested);
  // True once a process of the present scope ended because of a stop request.
  bool was_stopped() const { return was_stopped_; }
  // The stop button: asks whether to stop, then yields.
  void stop_process_pressed();
  // The close request of the main window: true when the program may end. `is_busy`: a command runs, whether it has
  // begun its process or not.
  bool quit_requested(bool is_busy = false);
  void yield();

  bool long_time_question();

  // A line for whoever looks on: what was found, what was kept. Nobody has to answer it.
  void note(const std::string &text);
  // What is doubtful about an input that was taken all the same; the summary of a run repeats it. With `strict` the
  // command ends with status 1.
  void warn(const std::string &text);
  const std::vector<std::string> &warnings() const { return warnings_; }
  bool strict_get() const { return strict_; }
  void strict_set(bool strict) { strict_ = strict; }
  // A place of an input that looks wrong and is read all the same. At the end of the command they become one warning.
  void doubt(const std::string &what, const std::string &place) { doubts_.add(what, place); }
  const input_doubts &doubts() const { return doubts_; }
  // How far the work in hand has come, in units of its own; for a bar and the time left. Doesn't yield.
  void progress(std::int64_t done, std::int64_t total) {
    if (!has_whole_)
      show_progress(done, total);
  }
  // Message boxes, questions and input boxes.
  void message(const std::string &text, const std::string &title = {});
  // The same for what went wrong while the work goes on: whoever is spared message boxes sees this.
  void alarm(const std::string &text, const std::string &title = {});
  answer ask(const question &asked);
  bool yes(const question &asked) { return ask(asked) == answer::yes; }
  std::string input(const input_box &asked);
  // The answer of an option to a question of this command: to every prompt that begins so, before anybody is asked; an
  // empty one is the default.
  void answer_ahead(std::string prompt_start, std::function<std::string()> reply) {
    ahead_.push_back({std::move(prompt_start), std::move(reply)});
  }
  // A question whose data were wrong was answered, or a reader reported wrong data: the command ends with status 1,
  // also when its work came to its end.
  bool data_failed() const { return data_failed_; }
  void data_failed_set() { data_failed_ = true; }
  // Shows why an input can't be taken: the data failed. False, for `return`.
  bool refuse(const std::string &text);
  // Shows the text, logs it, and throws program_end.
  [[noreturn]] void program_end_now(const std::string &text, exit_status status = exit_status::broken_invariant);

  // Folders. A file name of a report may begin with a backslash; `path_in_working_folder` resolves it.
  const std::filesystem::path &program_folder_get() const { return program_folder_; }
  const std::filesystem::path &working_folder_get() const { return working_folder_; }
  void working_folder_set(const std::filesystem::path &folder) { working_folder_ = folder; }
  void log_folder_set(const std::filesystem::path &folder) { log_folder_ = folder; }
  std::filesystem::path path_in_working_folder(std::string_view name) const;
  // Folder + name, where the name may begin with a backslash.
  static std::filesystem::path path_in_folder(const std::filesystem::path &folder, std::string_view name);

  // File dialogs; an empty path means cancelled.
  std::filesystem::path open_file_dialog(const std::string &title);
  std::filesystem::path open_file_dialog_typed(const std::string &title, const std::string &type_word);
  void file_filter_set(const std::string &filter) { file_filter_ = filter; }
  std::filesystem::path save_file_dialog(const std::string &title, const std::string &proposed_name,
                                         const std::string &filter);
  std::filesystem::path save_file_dialog_checked(const std::string &title, const std::string &proposed_name,
                                                 const std::string &filter);

  const program_clock &clock() const { return clock_; }

private:
  friend class frame_scope;
  friend class progress_of_whole;
  struct answer_given {
    std::string prompt_start;
    std::function<std::string()> reply;
  };
  void log_write(const std::string &text); // not shown
  void log_message(const std::string &text);
  void show_progress(std::int64_t done, std::int64_t total);
  bool is_answered_ahead(const std::string &prompt, std::string &reply) const;
  void panel_set(panel which, const std::string &text, panel_colour colour = panel_colour::resting);
  void end_with_words(const std::string &words);

  front_end shown_;
  std::filesystem::path program_folder_, working_folder_, log_folder_;
  std::string process_name_, file_filter_;
  std::vector<std::string> warnings_;
  input_doubts doubts_;
  std::vector<answer_given> ahead_;
  bool process_is_running_ = false, stop_requested_ = false, was_stopped_ = false, data_failed_ = false;
  bool strict_ = false;
  bool has_whole_ = false; // a progress_of_whole lives
  program_clock clock_;
};

// What one command sees of the frame: stop flag, was-stopped, data-failed, warnings, doubts, answers given ahead and
// the filter of the dialogs begin empty, and nothing of them is left behind; the working folder is put back. One scope
// at a time.
class frame_scope {
public:
  explicit frame_scope(process_frame &frame);
  ~frame_scope();
  frame_scope(const frame_scope &) = delete;
  frame_scope &operator=(const frame_scope &) = delete;

private:
  void clear();

  process_frame &frame_;
  std::filesystem::path working_folder_;
};

// While one lives, it alone tells how far the work has come, and the works that it consists of don't.
class progress_of_whole {
public:
  progress_of_whole(process_frame &frame, std::int64_t total) : frame_(frame), total_(total) {
    is_part_ = frame.has_whole_;
    frame.has_whole_ = true;
  }
  ~progress_of_whole() { frame_.has_whole_ = is_part_; }
  progress_of_whole(const progress_of_whole &) = delete;
  progress_of_whole &operator=(const progress_of_whole &) = delete;
  void add(std::int64_t n) {
    done_ += n;
    if (!is_part_)
      frame_.show_progress(done_, total_);
  }

private:
  process_frame &frame_;
  std::int64_t done_ = 0, total_;
  bool is_part_; // of a larger one
};

} // namespace orb
