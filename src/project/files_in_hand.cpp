#include "project/files_in_hand.h"

#include <algorithm>
#include <optional>
#include <sys/stat.h>

#include "frame/failures.h"
#include "frame/files.h"
#include "project/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// Without links and dots; what isn't there stands by its name in its folder.
fs::path real_name(const fs::path &path) {
  std::error_code failed;
  const fs::path real = fs::weakly_canonical(fs::absolute(path), failed);
  return failed ? fs::absolute(path).lexically_normal() : real;
}

std::optional<std::pair<std::uint64_t, std::uint64_t>> number_of_file(const fs::path &path) {
  struct stat about {};
  if (::stat(path.c_str(), &about) != 0)
    return std::nullopt;
  return std::pair{std::uint64_t{about.st_dev}, std::uint64_t{about.st_ino}};
}

// Of the runs in a results folder, which have folders of their own.
void remove_stale_temporaries_of_runs(const fs::path &results) {
  std::error_code failed;
  for (const fs::directory_entry &run : fs::directory_iterator(results, failed)) {
    if (!run.path().filename().string().starts_with("ORB_contigs_") || !run.is_directory(failed))
      continue;
    remove_stale_temporaries(run.path());
    for (fs::recursive_directory_iterator at(run.path(), failed), end; !failed && at != end; at.increment(failed))
      if (at->is_directory(failed))
        remove_stale_temporaries(at->path());
  }
}

// A device or a pipe is nobody's.
bool can_be_locked(const fs::path &file) {
  std::error_code failed;
  const fs::file_status status = fs::status(file, failed);
  return !fs::exists(status) || fs::is_regular_file(status);
}

} // namespace

void files_in_hand::read_file(const fs::path &file, const fs::path &name) {
  std::error_code failed;
  if (const auto number = number_of_file(file); number && !fs::is_character_file(file, failed))
    inputs_.insert({*number, {name, false}});
}

// What a run is read back from; its other tables may be made anew.
void files_in_hand::read_run(const fs::path &folder) {
  std::error_code failed;
  for (fs::recursive_directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed))
    if (at.depth() > 0 || at->path().filename().string().starts_with("report_"))
      read_file(at->path(), at->path());
}

void files_in_hand::reads(const fs::path &input) {
  const input_kind kind = input.empty() ? input_kind::missing : kind_of_input(input);
  switch (kind) {
  case input_kind::missing:
    return;
  case input_kind::sizes_folder:
    for (const fs::path &file : sizes_files_of_folder(input))
      read_file(file, file);
    if (const auto number = number_of_file(input))
      inputs_[*number] = {input, true};
    return;
  case input_kind::results_folder:
    read_file(input / "run.json", input / "run.json");
    read_run(run_folder_of_results(input));
    return;
  case input_kind::run_folder:
    read_file(input / ".." / "run.json", fs::absolute(input).lexically_normal().parent_path() / "run.json");
    read_run(input);
    return;
  default:
    if (!fs::is_directory(input))
      read_file(input, input);
  }
}

void files_in_hand::writes(const fs::path &output) {
  const auto number = number_of_file(output);
  if (const auto at = number ? inputs_.find(*number) : inputs_.end(); at != inputs_.end())
    throw file_error("can't write", output,
                     "it is an input of this command" +
                         (at->second.name == output ? std::string() : ", " + at->second.name.string()));
  const fs::path real = real_name(output);
  if (real.extension() == ".sizes")
    if (const auto folder = number_of_file(real.parent_path()))
      if (const auto at = inputs_.find(*folder); at != inputs_.end() && at->second.is_folder_of_fingerprints)
        throw file_error("can't write", output,
                         "it would be one of the fingerprints of the input " + at->second.name.string());
  if (std::find(results_.begin(), results_.end(), output) == results_.end())
    results_.push_back(output);
}

void files_in_hand::gives_way(const fs::path &leftover) {
  leftovers_.insert(real_name(leftover));
}

bool files_in_hand::may_give_way(const fs::path &output) const {
  return leftovers_.contains(real_name(output));
}

void files_in_hand::keep(output_lock lock, const fs::path &real, std::vector<std::string> &taken_over) {
  if (!lock.taken_over().empty())
    taken_over.push_back(lock.taken_over());
  locks_.push_back(std::move(lock));
  locked_.insert(real);
}

std::vector<std::string> files_in_hand::claim_folder(const fs::path &folder, const std::string &command) {
  std::vector<std::string> taken_over;
  if (const fs::path real = real_name(folder); !locked_.contains(real))
    keep(output_lock::of_folder(real, command), real, taken_over);
  remove_stale_temporaries_of_runs(folder);
  return taken_over;
}

std::vector<std::string> files_in_hand::claim_results(const std::string &command) {
  std::vector<std::string> taken_over;
  for (const fs::path &file : results_)
    if (const fs::path real = real_name(file);
        !locked_.contains(real) && !locked_.contains(real.parent_path()) && can_be_locked(real))
      keep(output_lock::of_file(real, command), real, taken_over);
  return taken_over;
}

void files_in_hand::clear() {
  inputs_.clear();
  results_.clear();
  leftovers_.clear();
  locked_.clear();
  locks_.clear();
}

} // namespace orb
