// Which program this is, for --version and the records of runs.
#pragma once

#include <string_view>

namespace orb {

// Of the project, as "0.1.0".
std::string_view program_version();

// What `git describe --always --dirty` said when the program was built; empty when it wasn't built in a git checkout.
// "-dirty" at its end: a tracked file differed from the commit.
std::string_view program_commit();

} // namespace orb
