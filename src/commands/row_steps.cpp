#include "commands/row_steps.h"

#include "frame/files.h"
#include "lists/class_list_of_clones.h"
#include "project/input_kind.h"
#include "reports/run_record.h"

namespace orb {

namespace fs = std::filesystem;

fs::path folder_of(const fs::path &file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

void check_output(const project_state &project, const fs::path &file, bool force) {
  project.files().writes(file);
  const fs::path folder = folder_of(file);
  create_folder(folder);
  check_folder_is_writable(folder);
  std::error_code failed;
  if (!force && fs::exists(file, failed) && !project.files().may_give_way(file))
    throw file_error("can't write", file, "it exists already; --force overwrites it");
}

static bool names_a_result(const parameter_row &row) {
  return row.key == "out" || row.key == "save" || row.key == "log";
}

std::vector<fs::path> inputs_of(const parameter_list &list) {
  std::vector<fs::path> inputs;
  const auto add = [&](const fs::path &path) {
    std::error_code failed;
    if (fs::is_regular_file(path, failed) || fs::is_directory(path, failed))
      inputs.push_back(path);
  };
  for (const parameter_row &row : list.rows()) {
    if (!row.is_given() || names_a_result(row))
      continue;
    if (const auto *path = std::get_if<fs::path *>(&row.target))
      add(**path);
    if (const auto *paths = std::get_if<std::vector<fs::path> *>(&row.target))
      for (const fs::path &one : **paths)
        add(one);
  }
  return inputs;
}

void claim_results(project_state &project, const std::string &command) {
  for (const std::string &words : project.files().claim_results(command))
    project.frame().note(words);
}

void work_in(project_state &project, const fs::path &folder) {
  if (folder.empty())
    return;
  create_folder(folder);
  project.frame().working_folder_set(folder);
}

command_result result_of(load_end end) {
  switch (end) {
  case load_end::loaded:
    return {};
  case load_end::cancelled:
    return command_result::ended(exit_status::run_failed, "nothing was chosen");
  case load_end::stopped:
    return command_result::ended(exit_status::stopped);
  case load_end::refused:
    return command_result::ended(exit_status::run_failed);
  case load_end::nothing_there:
    return command_result::ended(exit_status::no_input_or_output);
  }
  return {};
}

command_result stopped_or_failed(project_state &project) {
  process_frame &frame = project.frame();
  if (frame.stop_requested_get() && frame.process_is_running())
    frame.process_stopped_manually();
  return command_result::ended(frame.was_stopped() || frame.stop_requested_get() ? exit_status::stopped
                                                                                 : exit_status::run_failed);
}

command_result result_of(project_state &project, bool done) {
  return done ? command_result{} : stopped_or_failed(project);
}

bool read_list(project_state &project, const fs::path &file, number_list &list, std::string &name) {
  const auto tell_kind = [&] {
    const std::string found = file.empty() ? "" : words_of_other_kind(file, {input_kind::list_of_clones});
    if (!found.empty())
      project.frame().message(found + " Wanted: a list of clones.");
  };
  if (!class_list_of_clones(project.frame(), project.settings())
           .run_reading_file_with_list_of_clones(file, list, name, project.database())) {
    tell_kind();
    return false;
  }
  if (list.empty()) { // the result will be as empty, and says so
    project.frame().refuse("List " + file.string() + " holds no clone of the library.");
    tell_kind();
  }
  return true;
}

void answer_ahead(project_state &project, const char *prompt_start, bool yes) {
  project.frame().answer_ahead(prompt_start, [yes] { return std::string(yes ? "yes" : "no"); });
}

void check_input(const fs::path &file) {
  std::error_code failed;
  if (!file.empty() && !fs::exists(file, failed))
    throw file_error("can't open", file, "No such file or directory");
}

bool is_as_recorded(project_state &project, const fs::path &file) {
  const std::string difference = file.empty() ? std::string() : difference_from_record(file);
  return difference.empty() ||
         project.frame().refuse(difference +
                                ".\r\nIt was changed by hand or is damaged. Without its run.json it is read as it is.");
}

fs::path folder_of_run(project_state &project, const fs::path &given) {
  const input_kind kind = kind_of_input(given);
  if (kind == input_kind::missing)
    throw file_error("can't open", given, "No such file or directory");
  if (kind == input_kind::run_folder)
    return given;
  const fs::path newest = kind == input_kind::results_folder ? run_folder_of_results(given) : fs::path();
  if (newest.empty()) {
    project.frame().refuse("This is neither the folder of a run nor of an assembly with one: " + given.string());
  }
  return newest;
}

void tell_unfinished_run(process_frame &frame, const fs::path &folder) {
  const auto record = run_record_read(folder / "run.json");
  const std::string state = record ? record->value("state", "") : "";
  if (state == "stopped" || state == "failed" || state == "running")
    frame.alarm("The run is " + state + ", not complete: clones of clusters that it didn't reach stand alone.");
}

void describe_output(parameter_list &list, output_wishes &wishes, const char *type, bool needed) {
  parameter_row &out = list.add("out", wishes.out, "where the result goes").type(type);
  if (needed)
    out.needed();
  list.add("force", wishes.force, "overwrite results that exist");
}

} // namespace orb
