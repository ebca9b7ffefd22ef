// The terminal: stages, messages and questions on standard error, results on standard output.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "commands/verbs.h"
#include "frame/front_end.h"
#include "ui/console/stage_line.h"

namespace orb {

struct console_manner {
  bool quiet = false;   // only warnings, what failed, and questions that somebody is asked
  bool verbose = false; // message boxes, log lines and counters too
  bool yes = false;     // questions get the answer that goes on with the work
};

// Message boxes of a stage are kept back, and shown when the stage ends badly: a stage that goes well is one line.
// Questions are answered by `book`, by --yes, on the terminal when standard input is one, by their default. The yields
// answer Ctrl-C. `book` must outlive the console, and the console what it gives away.
class console {
public:
  console(const console_manner &manner, answer_book &book);
  console(const console &) = delete;
  console &operator=(const console &) = delete;

  front_end as_front_end();
  command_streams streams();

private:
  void panel_set(panel which, const std::string &text);
  void say(const std::string &text);  // a line, at once
  void hold(const std::string &text); // a line for who wants all, or for when the stage fails
  void show_held();
  void tell_answered(const std::string &prompt, const std::string &reply);
  answer answer_question(const question &asked);
  std::string answer_input(const input_box &asked);
  bool ask_terminal(const std::string &prompt, const std::string &explanation, std::string &reply);

  console_manner manner_;
  answer_book &book_;
  stage_line stage_;
  std::vector<std::string> held_;
  std::map<std::string, int> told_questions_; // by their beginnings
  std::string shown_[5];                      // of the panels, when verbose
};

// Ctrl-C asks the running command to stop; a second one ends the program at once, status 130.
void interrupts_install();

// As a terminal or a text file takes it: CR and CR LF as LF, other control characters as "?".
std::string for_terminal(const std::string &text);

} // namespace orb
