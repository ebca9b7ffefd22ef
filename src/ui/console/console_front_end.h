// The terminal as front end: progress, messages and questions on standard error.
#pragma once

#include "frame/front_end.h"

namespace orb {

struct console_manner {
  bool quiet = false;   // only messages and questions
  bool verbose = false; // log lines and all counters too
  bool yes = false;     // questions get the answer that goes on with the work
};

// Questions are answered by `book`, by --yes, on the terminal when standard input is one, by their default.
// The yields answer Ctrl-C. `book` must outlive the front end.
front_end console_front_end(const console_manner &manner, answer_book &book);

// Ctrl-C asks the running command to stop; a second one ends the program at once, status 130.
void interrupts_install();
bool interrupt_was_requested();

// Ends a progress line that stands on the terminal, so that other text can follow.
void progress_line_end();

} // namespace orb
