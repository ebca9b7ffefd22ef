// The table of commands and their handlers: what a script or a menu can ask for.
#pragma once

#include <functional>
#include <iosfwd>
#include <span>
#include <string>

#include "commands/command_options.h"
#include "commands/orb_session.h"
#include "frame/failures.h"

namespace orb {

// Where a command puts what isn't a file: `results` is standard output, `people` is standard error.
struct command_streams {
  std::function<void(const std::string &)> results;
  std::function<void(const std::string &)> people;
};

struct command_row {
  const char *name;
  const char *arguments; // as shown in the help
  const char *purpose;
  const char *example;
  exit_status (*handler)(orb_session &, const command_options &, const command_streams &);
};

std::span<const command_row> table_of_commands();

exit_status load_command(orb_session &, const command_options &, const command_streams &);
exit_status net_command(orb_session &, const command_options &, const command_streams &);
exit_status revise_command(orb_session &, const command_options &, const command_streams &);
exit_status contigs_command(orb_session &, const command_options &, const command_streams &);
exit_status order_command(orb_session &, const command_options &, const command_streams &);
exit_status draw_command(orb_session &, const command_options &, const command_streams &);
exit_status assemble_command(orb_session &, const command_options &, const command_streams &);
exit_status info_command(orb_session &, const command_options &, const command_streams &);

// Runs one command with everything around it: start and end of the log, the stop flag, exceptions, exit status.
exit_status run_command(orb_session &session, const command_options &options, const command_streams &streams);

// A mistake on the command line found by a handler; shown by `run_command`, exit status 2.
class usage_error : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace orb
