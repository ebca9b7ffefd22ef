// run.json, which every run leaves beside its results: version, command line, parameters, seed, input files with sizes
// and checksums, outputs, time and peak memory of each stage.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "frame/clock.h"
#include "frame/failures.h"
#include "frame/files.h"
#include "metrics/overlap_rule.h"

namespace orb {

// Who runs, and with what chance: the head of the record.
struct run_identity {
  std::string command;                   // by the table of commands
  std::vector<std::string> command_line; // as given
  std::uint64_t seed = 1;
  int threads = 0;
};

class run_record {
public:
  run_record(const run_identity &run, const program_clock &clock);

  void parameter_set(const std::string &name, nlohmann::json value) { json_["parameters"][name] = std::move(value); }
  void input_add(const std::filesystem::path &file); // once, however often it is named
  // The folder's .sizes files, or the one file.
  void inputs_add(const std::filesystem::path &input);
  void library_set(std::int32_t n_clones, std::uint32_t checksum);
  void stage_start(const std::string &name);
  void stage_end();
  // Names of the files beside its record that the run will make and that weren't there before it.
  void makes_set(const std::vector<std::string> &names) { json_["makes"] = names; }
  void makes_add(const std::string &name) { json_["makes"].push_back(name); } // whose name showed only now
  // Those of them that are in the folder now: a run that failed lets the next one overwrite them as long as they stay.
  void leaves_set(const std::filesystem::path &folder);
  // A finished result of the run: a file with size and checksum, or a folder by name. Replaces an older entry of `key`.
  void output_set(const std::string &key, const std::filesystem::path &path);
  void output_drop(const std::string &key) { json_["outputs"].erase(key); }
  // Begins with the outputs and figures of an earlier run of the same kind: a stage made again replaces its own.
  void continue_from(const nlohmann::json &earlier);
  void result_set(const std::string &name, nlohmann::json value) { json_["results"][name] = std::move(value); }
  // What was doubtful about the input.
  void warning_add(const std::string &text) { json_["warnings"].push_back(text); }
  // What the run was asked for, by option: an earlier run with other wishes is another run.
  void wish_set(const std::string &option, nlohmann::json value) { json_["wishes"][option] = std::move(value); }
  // "running", "stopped", "failed" or "complete"; a complete run may end with a status other than done, for data that
  // are doubtful.
  void end_set(const std::string &state, exit_status status, const std::string &why);
  const nlohmann::json &json() const { return json_; }

private:
  nlohmann::json json_;
  std::set<std::string> inputs_; // by their paths
  std::string stage_;
  std::chrono::steady_clock::time_point stage_began_;
};

// The file of a run's record, written before the run's first result and again with every state. Room for the last state
// is set aside while the run goes on: a disk that is full doesn't hide why a run failed.
class run_record_file {
public:
  explicit run_record_file(std::filesystem::path path) : path_(std::move(path)) {}
  const std::filesystem::path &path() const { return path_; }
  // Throws file_error.
  void save(const run_record &record);

private:
  void write(const std::string &text) const;

  std::filesystem::path path_;
  std::unique_ptr<passing_file> room_;
};

// FILE.run.json.
std::filesystem::path run_record_name(std::filesystem::path file);
// The record beside a file (FILE.run.json, else run.json of its folder) or in a folder; nothing when there is none or
// it isn't JSON. Throws file_error when one is there and can't be read: what it says isn't passed over.
std::optional<nlohmann::json> run_record_read(const std::filesystem::path &file);
std::optional<nlohmann::json> run_record_beside(const std::filesystem::path &result);
// Metric and cutoff that it names; nothing when one of them is missing or unknown.
std::optional<overlap_rule> rule_of_record(const nlohmann::json &record);
// What of `now` (wishes, inputs) differs from `before`, in words; empty when nothing does.
std::string run_record_difference(const nlohmann::json &before, const nlohmann::json &now);
// Whether the file of an output entry is still there as it was recorded.
bool output_is_intact(const nlohmann::json &record, const std::string &key, const std::filesystem::path &folder);
// What differs between a file and the record beside it that names it as a result, in words; empty when nothing does, or
// no record names it.
std::string difference_from_record(const std::filesystem::path &file);
// The files that an earlier run of this command left that failed, as it left them, or that was killed while it made
// them; none when it came to its end.
std::vector<std::filesystem::path> leftovers_of_run(const std::filesystem::path &record, const std::string &command);
std::string checksum_text(std::uint32_t checksum); // eight hexadecimal digits

// Peak resident memory since the last reset, in MiB, and the reset (best effort).
double peak_memory_mib();
void peak_memory_reset();

} // namespace orb
