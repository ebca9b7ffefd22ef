// Which process this is, and whether another one that left its name somewhere is still there.
#pragma once

#include <cstdint>
#include <string>

namespace orb {

struct process_identity {
  std::int64_t number = 0;
  std::uint64_t start = 0; // in ticks since the machine started; tells a process from a later one of the same number
  std::string host;        // name of the machine
  std::string space;       // in which process numbers count: containers have their own
};

const process_identity &this_process();
// Ended, or its number belongs to another process now. Only for processes of this host and space. A start of 0 is
// unknown.
bool process_is_gone(std::int64_t number, std::uint64_t start = 0);

} // namespace orb
