#include "commands/command_steps.h"

#include "frame/files.h"
#include "lists/class_list_of_clones.h"
#include "reports/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

fs::path run_record_path(const fs::path &file) {
  fs::path record = file;
  record += ".run.json";
  return record;
}

void check_output(const fs::path &file, bool force) {
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  create_folder(folder);
  check_folder_is_writable(folder);
  std::error_code failed;
  if (!force && fs::exists(file, failed))
    throw file_error("can't write", file, "it exists already; --force overwrites it");
}

void work_in(project_state &session, const fs::path &folder) {
  session.frame().working_folder_set(folder.empty() ? fs::path(".") : folder);
}

static run_record begun_record(project_state &session, const command_options &options, const fs::path &folder,
                               const fs::path &file) {
  work_in(session, folder);
  run_record record(identity_of(options), session.frame().clock());
  record.file_set(file);
  return record;
}

run_record record_in_folder(project_state &session, const command_options &options) {
  check_output(options.out / "run.json", options.force);
  return begun_record(session, options, options.out, options.out / "run.json");
}

run_record record_beside_file(project_state &session, const command_options &options) {
  check_output(options.out, options.force);
  return begun_record(session, options, options.out.parent_path(), run_record_path(options.out));
}

exit_status finish_record(run_record &record, exit_status status) {
  record.state_set(status == exit_status::done ? "complete" : status == exit_status::stopped ? "stopped" : "failed");
  record.save(record.file());
  return status;
}

bool read_list(project_state &session, const fs::path &file, number_list &list, std::string &name) {
  if (!class_list_of_clones(session.frame(), session.settings())
           .run_reading_file_with_list_of_clones(file, list, name, session.database()))
    return false;
  if (list.empty())
    session.frame().message("List " + file.string() + " holds no clone of the library.");
  return true;
}

exit_status stopped_or_failed(project_state &session) {
  process_frame &frame = session.frame();
  if (frame.stop_requested_get() && frame.process_is_running())
    frame.process_stopped_manually();
  return frame.was_stopped() || frame.stop_requested_get() ? exit_status::stopped : exit_status::run_failed;
}

fs::path folder_of_run(project_state &session, const fs::path &given) {
  const input_kind kind = kind_of_input(given);
  if (kind == input_kind::missing)
    throw file_error("can't open", given, "No such file or directory");
  if (kind == input_kind::run_folder)
    return given;
  const fs::path newest = kind == input_kind::results_folder ? run_folder_of_results(given) : fs::path();
  if (newest.empty()) {
    session.frame().message("This is neither the folder of a run nor of an assembly with one: " + given.string());
    session.frame().data_failed_set();
  }
  return newest;
}

} // namespace orb
