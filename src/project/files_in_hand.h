// The files of the commands that run: what they read is never written, what they write belongs to them alone until they
// end, and what a run left that failed gives way to the same run.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "frame/output_lock.h"

namespace orb {

class files_in_hand {
public:
  // A file, or a folder: of fingerprints, of a run, or of a run's assembly. One that isn't there is none.
  void reads(const std::filesystem::path &input);
  // Takes note of a result. Throws file_error when it is an input, by whatever name or link, or would become one.
  void writes(const std::filesystem::path &output);
  // May be overwritten: left by an earlier run that these commands repeat.
  void gives_way(const std::filesystem::path &leftover);
  bool may_give_way(const std::filesystem::path &output) const;
  // Results that were taken note of, in the order in which they were.
  const std::vector<std::filesystem::path> &results() const { return results_; }

  // Locks the folder, or each result that isn't locked yet by itself or with its folder, until the commands end. Both
  // throw file_error when another command works there, and answer whose locks were taken over, in words.
  std::vector<std::string> claim_folder(const std::filesystem::path &folder, const std::string &command);
  std::vector<std::string> claim_results(const std::string &command);

private:
  friend class files_scope;
  using file_number = std::pair<std::uint64_t, std::uint64_t>; // of the device, and of the file on it
  struct known_input {
    std::filesystem::path name;
    bool is_folder_of_fingerprints = false;
  };

  void read_file(const std::filesystem::path &file, const std::filesystem::path &name);
  void read_run(const std::filesystem::path &folder);
  void keep(output_lock lock, const std::filesystem::path &real, std::vector<std::string> &taken_over);
  void clear();

  std::map<file_number, known_input> inputs_;
  std::vector<std::filesystem::path> results_;
  std::set<std::filesystem::path> leftovers_, locked_; // by their real names
  std::vector<output_lock> locks_;
  int depth_ = 0;
};

// From the first command of a list to its end; in another one it is nothing.
class files_scope {
public:
  explicit files_scope(files_in_hand &files) : files_(files) { ++files_.depth_; }
  ~files_scope() {
    if (--files_.depth_ == 0)
      files_.clear();
  }
  files_scope(const files_scope &) = delete;
  files_scope &operator=(const files_scope &) = delete;
  bool is_outermost() const { return files_.depth_ == 1; }

private:
  files_in_hand &files_;
};

} // namespace orb
