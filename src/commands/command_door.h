// The one door through which commands run, whoever asks: a verb, a script, a menu, a test.
#pragma once

#include "commands/command_row.h"

namespace orb {

// Refuses a second command while one runs, in a message and in the result; checks needs and parameters before any work;
// gives the command a scope of the frame, so that nothing of an earlier one is seen and nothing is left behind; turns
// exceptions into a result; leaves one line in the log at each end.
command_result run_command(project_state &project, const bound_command &command);

// "done", "stopped", "failed: why".
std::string text_of_end(const command_result &result);

} // namespace orb
