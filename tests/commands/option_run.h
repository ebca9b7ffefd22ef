// One run of command lines on a fresh project in an empty folder, and all that can be seen of it afterwards.
#pragma once

#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "commands/command_door.h"
#include "commands/command_table.h"
#include "commands/script.h"
#include "option_cases.h"
#include "project/project_file.h"
#include "support/temporary_folder.h"

namespace option_test {

namespace fs = std::filesystem;

// By name. "status" and "why"; "lines", "findings", "figures", "parameters" and "files" of the results; "messages",
// "notes", "warnings", "questions" and "panels"; "panel", "settings", "rule" and "parts" of the project; "folder", the
// names of the files that lie there; and each file by its name, with its bytes.
using observation = std::map<std::string, std::string>;

inline std::string bytes_of(const fs::path &file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline std::string joined(const std::vector<std::string> &texts) {
  std::string all;
  for (const std::string &text : texts)
    all += text + "\n";
  return all;
}

inline std::string text_of(const std::vector<orb::named_figure> &figures) {
  std::string all;
  for (const orb::named_figure &figure : figures)
    all += std::visit([&](const auto &value) { return fmt::format("{}={}\n", figure.name, value); }, figure.value);
  return all;
}

inline std::string text_of(const orb::project_settings &s) {
  return fmt::format("{} {} {} {} {} {} | {} {} {} {} {} | {} {} {} | {} {} {}", s.clone_name_format_input,
                     s.clone_name_format_output, s.automatic_name_prefix_length, s.automatic_name_number_column,
                     s.automatic_name_number_end, s.file_format_index, s.several_metrics_and_cutoffs,
                     s.markers_in_clones, s.for_FPC_fast_indicator, s.table_format_column_subset, s.table_format_text,
                     s.use_file_with_connections, s.same_metric_as_net, s.same_metric_net_ord_as_net, s.fast_clustering,
                     s.net_in_ordering, s.singletones);
}

inline std::string text_of(const orb::overlap_rule &rule) {
  return fmt::format("{} {} {}", rule.distance_index, rule.cutoff, rule.burying);
}

inline void see_project(const orb::project_state &project, observation &seen) {
  seen["panel"] = orb::text_of_project_panel(project);
  seen["settings"] = text_of(project.settings());
  seen["rule"] = text_of(project.rule());
  std::string &parts = seen["parts"];
  for (const orb::project_part part : orb::all_project_parts)
    parts +=
        fmt::format("{} {} {}\n", project.has(part), project.origin(part).made_by, project.origin(part).file.string());
  parts += fmt::format("{} {} {} {}", project.version(), project.working_folder().string(),
                       project.rule_of_net() ? text_of(*project.rule_of_net()) : "",
                       project.database().max_number_of_real_clones_get());
}

// All files below the current folder but those of "in", which is a link.
inline void see_files(observation &seen) {
  std::string &folder = seen["folder"];
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator("."))
    if (entry.is_regular_file())
      seen[entry.path().lexically_normal().string()] = bytes_of(entry.path());
  for (const auto &[name, bytes] : seen)
    folder += fs::exists(name) ? name + "\n" : "";
}

// The command of a line with its options, one of them perhaps given besides.
inline orb::bound_command bound_line(const std::string &text, const option_case *option = nullptr) {
  const orb::script_line line = orb::parse_script_line(text, 1);
  orb::bound_command command = orb::bound_by_name(line.command);
  for (const auto &[key, value] : line.values)
    command.set(key, value);
  if (option)
    command.set(option->key, option->value);
  return command;
}

// Lines that load the parts; `in`: the folder of inputs.
inline std::string loading_line(const std::string &part) {
  static const std::map<std::string, std::string> lines{{"library", "library.load file=in/library.ORBdb"},
                                                        {"small", "library.load file=in/small.sizes"},
                                                        {"one", "library.load file=in/one.sizes"},
                                                        {"new-net", "net.create"},
                                                        {"net", "net.load file=in/net.ORBns"},
                                                        {"raw-net", "net.load file=in/raw.ORBns"},
                                                        {"contigs", "contigs.load folder=in/run"},
                                                        {"markers", "markers.load file=in/markers.txt"},
                                                        {"tables", "pvalue.load folder=in/tables"}};
  return lines.at(part);
}

inline void prepare(orb::project_state &project) {
  project.settings().seed = 1;
  project.settings().threads = 2;
}

// Runs a line that only prepares; throws when it fails.
inline void run_or_throw(orb::project_state &project, const std::string &line) {
  const orb::command_result result = orb::run_command(project, bound_line(line));
  if (!result.completed)
    throw std::runtime_error(line + ": " + orb::text_of_end(result));
}

inline void run_and_see(orb::project_state &project, const orb::bound_command &command, observation &seen) {
  const orb::command_result result = orb::run_command(project, command);
  seen["status"] += fmt::format("{} {}\n", int(result.status), result.completed);
  seen["why"] += result.why;
  seen["lines"] += joined(result.lines);
  seen["findings"] += result.findings;
  seen["figures"] += text_of(result.figures);
  seen["parameters"] += text_of(result.parameters);
  for (const orb::named_file &file : result.files)
    seen["files"] += file.key + " " + file.path.string() + "\n";
}

// A folder of its own becomes the current one while it lives; "in" leads from there to the inputs.
class current_folder {
public:
  explicit current_folder(const fs::path &inputs) : before_(fs::current_path()) {
    fs::create_directory_symlink(inputs, folder_.path() / "in");
    fs::current_path(folder_.path());
  }
  ~current_folder() { fs::current_path(before_); }
  current_folder(const current_folder &) = delete;
  current_folder &operator=(const current_folder &) = delete;

private:
  orb::temporary_folder folder_;
  fs::path before_;
};

inline observation observed(const case_block &block, const option_case *option, const fs::path &inputs) {
  const current_folder folder(inputs);
  orb::answer_book book;
  for (const auto &[prompt, reply] : block.answers)
    book.add({prompt, reply, true});
  orb::front_end_record record;
  orb::project_state project(orb::scripted_front_end(book, record));
  prepare(project);
  for (const std::string &part : block.parts)
    run_or_throw(project, loading_line(part));
  for (const std::string &line : block.before)
    run_or_throw(project, line);
  record = {};
  observation seen;
  run_and_see(project, bound_line(block.run, option), seen);
  for (const std::string &line : block.after)
    run_and_see(project, bound_line(line), seen);
  seen["messages"] = joined(record.messages);
  seen["notes"] = joined(record.notes);
  seen["warnings"] = joined(record.warnings);
  seen["questions"] = joined(record.questions);
  seen["panels"] = joined(record.panels);
  see_project(project, seen);
  see_files(seen);
  return seen;
}

// The names of what differs.
inline std::vector<std::string> differences(const observation &a, const observation &b) {
  std::vector<std::string> names;
  for (const auto &[name, text] : a)
    if (const auto at = b.find(name); at == b.end() || at->second != text)
      names.push_back(name);
  for (const auto &[name, text] : b)
    if (!a.contains(name))
      names.push_back(name);
  return names;
}

} // namespace option_test
