// Reading the command line of the program orb into a call of a verb; made from the table of verbs, with the help.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/verbs.h"

namespace orb {

struct command_line_result {
  std::unique_ptr<verb_run> call; // null: nothing is to be run, `text` is for standard output or error
  int status = 0;
  std::string text;
};

// `arguments`: without the program's name. Status 2 for anything wrong.
command_line_result parse_command_line(const std::vector<std::string> &arguments);

} // namespace orb
