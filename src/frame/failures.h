// The exceptions of the system, and the exit statuses that scripts rely on.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace orb {

enum class exit_status : int {
  done = 0,
  run_failed = 1,         // the data or the run failed
  wrong_command = 2,      // wrong command line
  no_input_or_output = 3, // an input is missing or unreadable, or an output can't be written
  broken_invariant = 4,   // of the program itself
  stopped = 130           // by the user
};

// Thrown where the system ends the program by design; caught in `main` only. The message was shown already.
class program_end : public std::runtime_error {
public:
  program_end(const std::string &message, exit_status status) : std::runtime_error(message), status_(status) {}
  exit_status status() const { return status_; }

private:
  exit_status status_;
};

// A file that can't be opened, read to its end, or written. Names the file and the system's reason.
class file_error : public std::runtime_error {
public:
  // what() is `action` file `path`: `reason`; e.g. "can't open a.txt: No such file or directory".
  file_error(const std::string &action, const std::filesystem::path &path, const std::string &reason)
      : std::runtime_error(action + " " + path.string() + ": " + reason), path_(path) {}
  const std::filesystem::path &path() const { return path_; }

private:
  std::filesystem::path path_;
};

// A mistake of whoever asked for the work, found before it began: an option that doesn't fit, a word that isn't known.
class usage_error : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace orb
