// The readers of files and lines as functions that take any bytes. Each reads through the door that the program uses,
// and throws when a promise is broken: an input that is refused says why and leaves what was loaded as it was, one that
// is accepted reads back equal when it is written, and memory and allocations stay within the size of the input.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace fuzz_test {

class broken_promise : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

inline void promise(bool kept, const std::string &what) {
  if (!kept)
    throw broken_promise(what);
}

struct fuzz_target {
  std::string name;
  std::function<std::vector<std::string>()> seeds;   // good inputs, and those that once broke a promise
  std::function<bool(const std::string &bytes)> run; // whether the input was accepted
};

// Each process has a folder of its own, which becomes the current one with the first target that needs files.
const std::vector<fuzz_target> &fuzz_targets();

using fuzz_table = std::vector<fuzz_target>;
void add_database_targets(fuzz_table &table);
void add_net_and_run_targets(fuzz_table &table);
void add_other_targets(fuzz_table &table);
void add_viewer_targets(fuzz_table &table);

} // namespace fuzz_test
