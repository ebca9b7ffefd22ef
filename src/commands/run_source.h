// A finished run in hand: its folder, and the library, net, metric and cutoff that it was made with.
#pragma once

#include <filesystem>
#include <optional>

#include "commands/commands.h"
#include "reports/run_record.h"

namespace orb {

struct run_source {
  std::filesystem::path folder;  // with the reports of the run
  std::filesystem::path library; // a library file or fingerprints
  std::filesystem::path net;     // the one that was cut into contigs; empty when it isn't known
};

// Finds these from `options.run` (a run folder, or the folder of an assembly) and its record; what the options name
// (library, net) is taken instead. Metric, cutoff and burying fraction that aren't given become the run's in `options`.
// The folder is empty, after a message, when there is no run. Throws usage_error when no library is known, file_error
// when nothing is there.
run_source source_of_run(project_state &session, command_options &options);

} // namespace orb
