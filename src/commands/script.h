// A script: lines of a command's id or control name with key=value words, on one project.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "commands/verbs.h"

namespace orb {

struct script_line {
  std::int64_t number = 0; // from 1
  std::string command;     // id or control name; empty: nothing stands in the line
  std::vector<std::pair<std::string, std::string>> values;
};

// A line cut into its words: blanks part them but within double quotes, in which \" is a quote and \\ a backslash; # at
// the start of a word begins a comment. A word without "=" behind the command is a flag that is switched on. Throws
// usage_error for an open quote or a word that begins with "=".
script_line parse_script_line(const std::string &text, std::int64_t number);

std::vector<std::string> lines_of_script(const std::string &text);
// The line that asks for the same again: the id and what was given.
std::string script_line_of(const bound_command &command);

// Runs line after line and stops at the first that fails, which is named with its number and why. Lines of a command's
// results go to `streams.results`. `name`: of the script, for messages.
exit_status run_script(const std::string &text, const std::string &name, project_state &project,
                       const command_streams &streams);

} // namespace orb
