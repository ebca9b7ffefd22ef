// The steps that most commands begin and end with: outputs checked, the record of the run, lists read.
#pragma once

#include "commands/commands.h"
#include "reports/run_record.h"

namespace orb {

// FILE.run.json.
std::filesystem::path run_record_path(const std::filesystem::path &file);
// Throws file_error when a result is there already and --force wasn't given, or its folder can't be written (it is
// created when missing).
void check_output(const std::filesystem::path &file, bool force);
// The folder of --out becomes the working folder.
void work_in(project_state &session, const std::filesystem::path &folder);

// Begins the record of a command whose results go into the folder --out, or into the file --out: nothing may be there
// yet unless --force was given, and the folder becomes the working folder. Throws file_error.
run_record record_in_folder(project_state &session, const command_options &options);
run_record record_beside_file(project_state &session, const command_options &options);
// Saves such a record with the state that goes with the status, which is passed on.
exit_status finish_record(run_record &record, exit_status status);

// A list of clones from a file, with its pure name; false after its messages.
bool read_list(project_state &session, const std::filesystem::path &file, number_list &list, std::string &name);
// What a command ends with whose work ended early.
exit_status stopped_or_failed(project_state &session);
// The folder of a run: `given` itself, or the newest run in the folder of an assembly. Empty, after a message, when it
// is neither. Throws file_error when nothing is there.
std::filesystem::path folder_of_run(project_state &session, const std::filesystem::path &given);

} // namespace orb
