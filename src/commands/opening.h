// What opening a file or folder means, whatever it is: the commands that load it, and the window that shows it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "commands/command_row.h"

namespace orb {

struct opening {
  std::vector<bound_command> commands;     // to be run in their order, each when the one before it is done
  std::filesystem::path net_to_view;       // a drawing: nothing is loaded
  std::filesystem::path contigs_to_browse; // a run, or a table of contigs
  std::string refused;                     // why nothing can be done with it
};

// Told by content. A run brings its library, its metric and its net along.
opening opening_of(project_state &project, const std::filesystem::path &path);

} // namespace orb
