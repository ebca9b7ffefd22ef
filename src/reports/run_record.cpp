#include "reports/run_record.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fmt/format.h>
#include <fstream>

#include "frame/files.h"
#include "frame/version.h"
#include "project/input_kind.h"

namespace orb {

namespace fs = std::filesystem;
using nlohmann::json;

run_record::run_record(const run_identity &run, const program_clock &clock) {
  json_["program"] = "ORB";
  json_["version"] = std::string(program_version());
  json_["commit"] = std::string(program_commit());
  json_["command"] = run.command;
  json_["command_line"] = run.command_line;
  json_["date"] = clock.iso_date();
  json_["state"] = "running";
  json_["seed"] = run.seed;
  json_["threads"] = run.threads;
  json_["parameters"] = json::object();
  json_["inputs"] = json::array();
  json_["stages"] = json::array();
  json_["outputs"] = json::object();
  json_["results"] = json::object();
}

void run_record::input_add(const fs::path &file) {
  if (!inputs_.insert(file.string()).second)
    return;
  const file_checksum sum = checksum_of_file(file);
  json_["inputs"].push_back({{"file", file.filename().string()},
                             {"path", file.string()},
                             {"size", sum.size},
                             {"crc32", checksum_text(sum.crc32)}});
}

void run_record::inputs_add(const fs::path &input) {
  if (!fs::is_directory(input))
    return input_add(input);
  for (const fs::path &file : sizes_files_of_folder(input))
    input_add(file);
}

void run_record::library_set(std::int32_t n_clones, std::uint32_t checksum) {
  json_["library"] = {{"clones", n_clones}, {"checksum", checksum_text(checksum)}};
}

void run_record::stage_start(const std::string &name) {
  stage_ = name;
  stage_began_ = std::chrono::steady_clock::now();
  peak_memory_reset();
}

void run_record::stage_end() {
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - stage_began_).count();
  json_["stages"].push_back({{"stage", stage_},
                             {"seconds", std::round(seconds * 1000) / 1000},
                             {"peak_memory_MiB", std::round(peak_memory_mib() * 10) / 10}});
}

static json entry_of(const fs::path &path) {
  json entry{{"name", path.filename().string()}};
  if (fs::is_regular_file(path)) {
    const file_checksum sum = checksum_of_file(path);
    entry["size"] = sum.size;
    entry["crc32"] = checksum_text(sum.crc32);
  }
  return entry;
}

// As it was recorded; a folder counts by being there.
static bool is_as_in_entry(const json &entry, const fs::path &path) {
  std::error_code failed;
  if (!entry.contains("crc32"))
    return fs::is_directory(path, failed);
  if (!fs::is_regular_file(path, failed))
    return false;
  const file_checksum sum = checksum_of_file(path);
  return entry.value("size", std::uint64_t{0}) == sum.size && entry.value("crc32", "") == checksum_text(sum.crc32);
}

void run_record::output_set(const std::string &key, const fs::path &path) {
  json_["outputs"][key] = entry_of(path);
}

void run_record::leaves_set(const fs::path &folder) {
  nlohmann::json left = nlohmann::json::array();
  std::error_code failed;
  for (const nlohmann::json &name : json_.value("makes", nlohmann::json::array()))
    if (const fs::path file = folder / name.get<std::string>(); fs::is_regular_file(file, failed))
      left.push_back(entry_of(file));
  json_["leaves"] = std::move(left);
}

void run_record::continue_from(const nlohmann::json &earlier) {
  for (const char *part : {"outputs", "results"})
    if (earlier.contains(part) && earlier[part].is_object())
      json_[part] = earlier[part];
}

void run_record::end_set(const std::string &state, exit_status status, const std::string &why) {
  json_["state"] = state;
  json_["exit_status"] = static_cast<int>(status);
  if (!why.empty())
    json_["why"] = why;
}

void run_record_file::write(const std::string &text) const {
  result_file out(path_);
  out.write(text);
  out.commit();
}

void run_record_file::save(const run_record &record) {
  const std::string text = record.json().dump(2, ' ', false, json::error_handler_t::replace) + "\n";
  try {
    write(text);
  } catch (const file_error &) {
    if (!room_)
      throw;
    room_.reset();
    write(text);
    return;
  }
  constexpr std::size_t least_room = 16 * 1024;
  if (room_ || record.json().value("state", "") != "running")
    return;
  fs::path name = path_;
  name += temporary_suffix();
  if (set_room_aside(name, std::max(least_room, 2 * text.size())))
    room_ = std::make_unique<passing_file>(name);
}

fs::path run_record_name(fs::path file) {
  return file += ".run.json";
}

std::optional<json> run_record_read(const fs::path &file) {
  std::error_code failed;
  if (!fs::is_regular_file(file, failed))
    return std::nullopt;
  json read = json::parse(file_bytes(file), nullptr, false);
  if (read.is_discarded() || !read.is_object())
    return std::nullopt;
  return read;
}

std::optional<overlap_rule> rule_of_record(const json &record) {
  const json parameters = record.value("parameters", json::object());
  if (!parameters.is_object() || !parameters.contains("metric") || !parameters.contains("cutoff") ||
      !parameters["cutoff"].is_number())
    return std::nullopt;
  const std::int16_t index = class_clone_dist_general::index_of_name(parameters.value("metric", ""));
  if (index < 0)
    return std::nullopt;
  return rule_of_metric(index, parameters["cutoff"].get<double>());
}

std::optional<json> run_record_beside(const fs::path &result) {
  std::error_code failed;
  if (fs::is_directory(result, failed))
    return run_record_read(result / "run.json");
  if (auto read = run_record_read(run_record_name(result)))
    return read;
  auto read = run_record_read(result.parent_path() / "run.json");
  if (!read || !read->contains("outputs") || !(*read)["outputs"].is_object())
    return std::nullopt;
  for (const auto &[key, entry] : (*read)["outputs"].items())
    if (entry.is_object() && entry.value("name", "") == result.filename().string())
      return read;
  return std::nullopt;
}

std::string run_record_difference(const json &before, const json &now) {
  if (before.value("version", json()) != now.value("version", json()))
    return "another version of the program";
  const json was = before.value("wishes", json::object()), is = now.value("wishes", json::object());
  const auto shown = [](const json &value) { return value.is_null() ? std::string("not given") : value.dump(); };
  for (const auto &[name, value] : is.items())
    if (!was.is_object() || !was.contains(name) || was[name] != value)
      return fmt::format("{} is {} now and was {}", name, shown(value),
                         was.is_object() && was.contains(name) ? shown(was[name]) : "not recorded");
  if (before.value("seed", json()) != now.value("seed", json()))
    return "another seed";
  const json files_before = before.value("inputs", json::array()), files_now = now.value("inputs", json::array());
  if (files_before.size() != files_now.size())
    return fmt::format("{} input files now and {} then", files_now.size(), files_before.size());
  for (std::size_t i = 0; i < files_now.size(); ++i)
    for (const char *field : {"file", "size", "crc32"})
      if (!files_before[i].is_object() || files_before[i].value(field, json()) != files_now[i].value(field, json()))
        return "input file " + files_now[i].value("file", "") + " has changed";
  return {};
}

bool output_is_intact(const json &record, const std::string &key, const fs::path &folder) {
  const auto outputs = record.find("outputs");
  if (outputs == record.end() || !outputs->is_object() || !outputs->contains(key))
    return false;
  const json &entry = (*outputs)[key];
  if (!entry.is_object() || !entry.contains("name") || !entry["name"].is_string())
    return false;
  return is_as_in_entry(entry, folder / entry["name"].get<std::string>());
}

std::string difference_from_record(const fs::path &file) {
  const auto record = run_record_beside(file);
  const json outputs = record ? record->value("outputs", json::object()) : json::object();
  for (const json &entry : outputs) {
    if (!entry.is_object() || entry.value("name", "") != file.filename().string() || !entry.contains("crc32"))
      continue;
    const file_checksum sum = checksum_of_file(file);
    const std::string recorded = entry.value("crc32", ""), found = checksum_text(sum.crc32);
    if (recorded == found && entry.value("size", std::uint64_t{0}) == sum.size)
      return {};
    return fmt::format("{} isn't the file that its run.json tells of: expected are {} bytes with checksum {}, found {} "
                       "bytes with {}",
                       file.string(), entry.value("size", std::uint64_t{0}), recorded, sum.size, found);
  }
  return {};
}

std::vector<fs::path> leftovers_of_run(const fs::path &file, const std::string &command) {
  const auto record = run_record_read(file);
  std::vector<fs::path> leftovers;
  if (!record || record->value("command", json()) != command || record->value("state", json()) == "complete")
    return leftovers;
  const fs::path folder = file.parent_path();
  if (record->value("state", json()) == "running") // killed: nobody could look what it left
    for (const json &name : record->value("makes", json::array()))
      if (name.is_string())
        leftovers.push_back(folder / name.get<std::string>());
  for (const json &entry : record->value("leaves", json::array()))
    if (const fs::path left = folder / entry.value("name", ""); entry.contains("crc32") && is_as_in_entry(entry, left))
      leftovers.push_back(left);
  return leftovers;
}

std::string checksum_text(std::uint32_t checksum) {
  return fmt::format("{:08x}", checksum);
}

double peak_memory_mib() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (word == "VmHWM:") {
      double kib = 0;
      status >> kib;
      return kib / 1024;
    }
  return 0;
}

void peak_memory_reset() {
  // "5" resets the high-water mark of resident memory; where the system forbids it the mark simply goes on rising.
  if (std::FILE *refs = std::fopen("/proc/self/clear_refs", "w")) {
    std::fputs("5", refs);
    std::fclose(refs);
  }
}

} // namespace orb
