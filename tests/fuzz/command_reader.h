// A reader that a command leads to: small inputs to read beside it, a project that holds something already, and the
// promises that all of them make.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "fuzz_targets.h"
#include "memory_count.h"
#include "support/project_session.h"

namespace fuzz_test {

using namespace orb;
using orb_test::session;

// The lines of a script that are run on a project; throws when one isn't done.
void run_lines(session &on, const std::vector<std::string> &lines);

// Small inputs of every kind, made once a process by the commands themselves, and only read: the folder "../in" as seen
// from the current one, in which "read" holds what is changed and "out" what commands write.
const std::filesystem::path &small_inputs();
std::string bytes_of_input(const std::string &name);
std::vector<std::string> load_line(const std::vector<std::string> &parts); // "library", "net", ...

// A writer of commands that are all done.
std::function<bool(session &)> by_lines(std::vector<std::string> lines);

// What a project holds, for two that must hold the same.
std::string parts_of(const session &of);

// When a command changes the project: never, when the input is accepted, or also in part when something is refused.
enum class effect { none, when_accepted, some };

struct command_reader {
  std::vector<std::string> parts; // that are loaded before, as load_line takes them
  std::string file;               // in the folder "read": what the bytes become
  std::string read;               // the command that reads it
  // Writes what was read into the folder "out", false when there is nothing to write; the commands that read that, on a
  // project with the same parts.
  std::function<bool(session &)> write = {};
  std::vector<std::string> read_again = {};
  std::function<std::string(const session &)> text = parts_of; // equal in both projects
  std::string folder = {}; // of the inputs, which is copied to "read" first: the file stands in it
  effect does = effect::when_accepted;
  work_limits limits = {};
};

// Seeds are inputs by their names, and the file itself when it comes from a folder; `kept`: bytes that once broke a
// promise.
fuzz_target target_of(const std::string &name, command_reader reader, std::vector<std::string> inputs = {},
                      std::vector<std::string> kept = {});

} // namespace fuzz_test
