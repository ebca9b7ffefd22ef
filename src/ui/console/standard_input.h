// "-" in place of a list of clones or of fingerprints: standard input, which is read once and kept in a file as long as
// the command runs, since readers look at a file more than once.
#pragma once

#include <filesystem>

#include "commands/verbs.h"

namespace orb {

class standard_input {
public:
  // Puts the file in the place of the option's "-". Throws usage_error when two options want it, file_error when the
  // file can't be written.
  explicit standard_input(verb_run &call);
  ~standard_input();
  standard_input(const standard_input &) = delete;
  standard_input &operator=(const standard_input &) = delete;

private:
  std::filesystem::path folder_; // empty: nobody wants it
};

} // namespace orb
