// What a user sees of a running command: a plain struct of functions, so that a front end is a value.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orb {

enum class panel { process, step, local_process, control, clones };

// Text colours of panel 1, red-green-blue with red in the low byte.
enum class panel_colour : int { resting = 0, running = 255, done = 65280, ended = 65535 };

enum class answer { yes, no, cancel };
enum class answer_choice { yes_no, yes_no_cancel, ok_cancel };

struct question {
  std::string text;
  std::string title;
  answer by_default = answer::no; // what is taken when nobody can be asked
  answer to_go_on = answer::yes;  // the answer that goes on with the work
  answer_choice choice = answer_choice::yes_no;
  bool marks_failure = false; // whatever the answer: the data were wrong, and the command ends with status 1
  std::string explanation{};  // shown to who answers "?"
};

struct input_box {
  std::string prompt;
  std::string title;
  std::string by_default;
  std::string explanation{}; // shown to who answers "?"
};

struct file_dialog {
  std::string title;
  std::string filter;
  std::string proposed_name;
  std::string folder;
  bool to_save = false;
};

struct front_end {
  std::function<void(panel, const std::string &text, panel_colour)> panel_set;
  std::function<void(const std::string &text)> log_shown;                         // a line was logged
  std::function<void(const std::string &text, const std::string &title)> message; // a message box
  std::function<void(const std::string &text, const std::string &title)> alarm;   // one of trouble; empty: as message
  std::function<void(const std::string &text)> note;                              // a line that needs no answer
  std::function<void(const std::string &text)> warning;                           // what is doubtful about an input
  std::function<void(std::int64_t done, std::int64_t total)> progress;            // of the work in hand
  std::function<answer(const question &)> ask;
  std::function<std::string(const input_box &)> input;         // empty: cancelled or nothing entered
  std::function<std::string(const file_dialog &)> choose_file; // empty: cancelled
  std::function<bool()> yield; // events are served here; true: the user wants the work stopped
  std::function<void(bool)> stop_button_enable;
};

// Shows nothing and answers every question with its default.
front_end null_front_end();

// Answers prepared by prompt. An answer serves the first prompt that begins with its text; once, or always.
struct prepared_answer {
  std::string prompt_start;
  std::string reply; // "yes", "no", "cancel", or the text of an input box or a file dialog
  bool always = false;
};

class answer_book {
public:
  void add(prepared_answer prepared) { answers_.push_back(std::move(prepared)); }
  // Takes the first matching answer; false when there is none.
  bool take(const std::string &prompt, std::string &reply);
  // One a line: the start of the prompt, a tab, the answer; a leading "*" lets it serve always. Lines without a tab
  // are named in `problem` with their number.
  static bool parse(const std::string &text, answer_book &book, std::string &problem);

private:
  std::deque<prepared_answer> answers_;
};

// "yes"/"y"/"ok"/"1", "no"/"n"/"0", "cancel", in any case; false for anything else.
bool answer_from_text(const std::string &text, answer &out);

// What a scripted front end saw, in order.
struct front_end_record {
  std::vector<std::string> messages; // message boxes
  std::vector<std::string> notes;
  std::vector<std::string> warnings;
  std::vector<std::string> questions; // texts of questions, input boxes and file dialogs
  std::vector<std::string> panels;    // "2: text"
  std::vector<std::string> log;
};

// Takes answers from `book`, otherwise the default; records everything. Both must outlive the front end.
front_end scripted_front_end(answer_book &book, front_end_record &record);

} // namespace orb
