// Reads where the clones of a library truly lie.
#pragma once

#include <filesystem>

#include "frame/process_frame.h"
#include "simulation/simul_clone.h"

namespace orb {

// Reads a table of true positions: tab-separated, the heads "clone", "part", "chromosome", "start", "end", one line a
// stretch. Parts of a clone are numbered 1, 2, ... and stand in this order; more than one is a chimera. Start and end
// are base pairs from the chromosome's start, [start, end); an empty stretch (start = end) is allowed.
// False with a message (file and line) when something is damaged; `truth` stays as it was. Throws file_error.
bool read_true_positions(process_frame &frame, const std::filesystem::path &file, placed_clones &truth);

} // namespace orb
