// The command line: texts in, command_options out.
#pragma once

#include <string>
#include <vector>

#include "commands/command_options.h"

namespace orb {

struct command_line_result {
  bool run = false; // options hold a command to run
  int status = 0;   // otherwise: the exit status, after `text` was shown
  std::string text; // help (status 0, for standard output) or what is wrong (status 2, for standard error)
};

command_line_result parse_command_line(const std::vector<std::string> &arguments, command_options &options);

} // namespace orb
