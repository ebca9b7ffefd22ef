// A command: what a menu entry, a line of a script or a step of a verb asks for. A row describes it; a bound command is
// a row with parameters of its own, ready to be filled and run.
//
// A command's function takes project and parameters and gives a result. It loads and saves nothing by itself: loading
// and saving are commands too. It runs through the door (command_door.h) and nowhere else.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "commands/parameter_list.h"
#include "frame/failures.h"
#include "project/project_state.h"

namespace orb {

using figure_value = std::variant<bool, std::int64_t, double, std::string>;
struct named_figure {
  std::string name;
  figure_value value;
};
struct named_file {
  std::string key; // "net", "library"
  std::filesystem::path path;
};

struct command_result {
  exit_status status = exit_status::done;
  // Whether the work came to its end. It may have, with status run_failed: the data were doubtful, and this was told.
  bool completed = true;
  std::string why;                           // of a status other than done, where no message told it yet
  std::string summary;                       // what was done, in a line, for people
  std::string findings;                      // a table or the like, for people, behind the summary
  std::vector<std::string> warnings;         // shown already; what is doubtful about the input
  std::vector<std::string> lines;            // results for standard output
  std::vector<std::filesystem::path> inputs; // files read; a folder stands for its fingerprint files
  std::vector<named_file> files;             // made, or kept
  std::vector<named_figure> parameters;      // as they were in force
  std::vector<named_figure> figures;         // what was found

  template <class Value> void parameter(std::string name, Value value) {
    parameters.push_back({std::move(name), figure_of(value)});
  }
  template <class Value> void figure(std::string name, Value value) {
    figures.push_back({std::move(name), figure_of(value)});
  }
  void file(std::string key, std::filesystem::path path) { files.push_back({std::move(key), std::move(path)}); }

  static command_result ended(exit_status status, std::string why = {}) {
    command_result result;
    result.status = status;
    result.completed = status == exit_status::done;
    result.why = std::move(why);
    return result;
  }

private:
  template <class Value> static figure_value figure_of(const Value &value) {
    if constexpr (std::is_same_v<Value, bool>)
      return value;
    else if constexpr (std::is_integral_v<Value>)
      return static_cast<std::int64_t>(value);
    else if constexpr (std::is_floating_point_v<Value>)
      return static_cast<double>(value);
    else
      return std::string(value);
  }
};

// The parts that are there when a command is to run: those of the project, and in a list of commands those that the
// ones before it make.
class parts_there {
public:
  static parts_there of(const project_state &project);
  bool has(project_part part) const { return there_[static_cast<std::size_t>(part)]; }
  void add(project_part part) { there_[static_cast<std::size_t>(part)] = true; }

private:
  std::array<bool, all_project_parts.size()> there_{};
};

class bound_command;
command_result run_command(project_state &project, const bound_command &command);

class command_row {
public:
  std::string id; // "net.revise"
  std::string caption, purpose, example;
  std::vector<project_part> needs, makes;

  bound_command bind() const;

private:
  template <class Parameters> friend class command_maker;
  friend class bound_command;
  friend command_result run_command(project_state &project, const bound_command &command);

  std::function<std::shared_ptr<void>()> make_parameters_;
  std::function<void(parameter_list &, void *)> describe_;
  std::function<void(const project_state &, const parts_there &, const void *)> check_; // may be empty
  std::function<void(project_state &, const parts_there &, const void *)> foresee_;     // may be empty
  std::function<command_result(project_state &, const void *)> run_;
};

// Describes a row in one statement: command_maker<P>("net.revise").purpose("...").needs({...})... and `row()`.
template <class Parameters> class command_maker {
public:
  explicit command_maker(std::string id) {
    row_.id = std::move(id);
    row_.make_parameters_ = [] { return std::make_shared<Parameters>(); };
    row_.describe_ = [](parameter_list &, void *) {};
  }
  command_maker &captioned(std::string text) { return row_.caption = std::move(text), *this; }
  command_maker &purpose(std::string text) { return row_.purpose = std::move(text), *this; }
  command_maker &example(std::string text) { return row_.example = std::move(text), *this; }
  command_maker &needs(std::vector<project_part> parts) { return row_.needs = std::move(parts), *this; }
  command_maker &makes(std::vector<project_part> parts) { return row_.makes = std::move(parts), *this; }
  command_maker &parameters(void (*describe)(parameter_list &, Parameters &)) {
    row_.describe_ = [describe](parameter_list &list, void *values) {
      describe(list, *static_cast<Parameters *>(values));
    };
    return *this;
  }
  // Before any work: throws usage_error or file_error for parameters that can't do.
  command_maker &checked_by(void (*check)(const project_state &, const parts_there &, const Parameters &)) {
    row_.check_ = [check](const project_state &project, const parts_there &there, const void *values) {
      check(project, there, *static_cast<const Parameters *>(values));
    };
    return *this;
  }
  // What later commands of the same list may count on, told before any of them runs; after the check.
  command_maker &foresees(void (*foresee)(project_state &, const parts_there &, const Parameters &)) {
    row_.foresee_ = [foresee](project_state &project, const parts_there &there, const void *values) {
      foresee(project, there, *static_cast<const Parameters *>(values));
    };
    return *this;
  }
  command_maker &runs(command_result (*run)(project_state &, const Parameters &)) {
    row_.run_ = [run](project_state &project, const void *values) {
      return run(project, *static_cast<const Parameters *>(values));
    };
    return *this;
  }
  command_row row() const { return row_; }

private:
  command_row row_;
};

class bound_command {
public:
  const command_row &row() const { return *row_; }
  const parameter_list &parameters() const { return list_; }
  // The values themselves, for who knows their type.
  template <class Parameters> Parameters &values() { return *static_cast<Parameters *>(values_.get()); }
  // "key=value"; throws usage_error for an unknown key or a value that isn't taken.
  void set(const std::string &key, const std::string &value);
  // What holds while the key isn't given, in place of the default of the command.
  void set_default(const std::string &key, const std::string &value) { list_.set_default(key, value); }
  // What would be asked for has its default for verbs.
  void ask_nothing() { list_.ask_nothing(); }
  // Throws usage_error or file_error: a needed parameter or part is missing, or the parameters can't do.
  void check(const project_state &project, const parts_there &there) const;
  void foresee(project_state &project, const parts_there &there) const;

private:
  friend class command_row;
  friend command_result run_command(project_state &project, const bound_command &command);

  const command_row *row_ = nullptr;
  std::shared_ptr<void> values_;
  parameter_list list_;
};

} // namespace orb
