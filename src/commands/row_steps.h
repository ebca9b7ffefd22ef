// Steps that the functions of many commands share: outputs checked, ends of loads and works as results, lists read.
#pragma once

#include <filesystem>
#include <string>

#include "commands/command_row.h"
#include "frame/lists.h"
#include "project/part_loading.h"

namespace orb {

// ---- outputs ----

// Throws file_error when a result is an input of the commands in hand (whatever `force` says), when it is there already
// and may not be overwritten, or its folder can't be written (it is created when missing).
void check_output(const project_state &project, const std::filesystem::path &file, bool force);
// The files and folders that parameters name and that are read; what isn't there is left out, and so is a pipe.
std::vector<std::filesystem::path> inputs_of(const parameter_list &list);
// Locks the results that the commands in hand took note of, and says whose locks were taken over.
void claim_results(project_state &project, const std::string &command);
// The folder of a command's results becomes the working folder; empty: it stays as it is.
void work_in(project_state &project, const std::filesystem::path &folder);
// The folder of a result file, "." for a bare name.
std::filesystem::path folder_of(const std::filesystem::path &file);

// ---- ends ----

// What a load ended with; `what`: the input, for a result that says that it isn't there.
command_result result_of(load_end end);
// What a command ends with whose work ended early.
command_result stopped_or_failed(project_state &project);
// Done, or stopped_or_failed.
command_result result_of(project_state &project, bool done);

// ---- inputs ----

// A list of clones from a file, with its pure name; false after its messages.
bool read_list(project_state &project, const std::filesystem::path &file, number_list &list, std::string &name);
// Throws file_error when a file that was named isn't there; an empty path is none.
void check_input(const std::filesystem::path &file);
// Refuses a library or net that was changed since the record beside it was written: false.
bool is_as_recorded(project_state &project, const std::filesystem::path &file);
// The folder of a run: `given` itself, or the newest run in the folder of an assembly. Empty, after a message, when it
// is neither. Throws file_error when nothing is there.
std::filesystem::path folder_of_run(project_state &project, const std::filesystem::path &given);

// Says so where the record in this folder tells of an assembly that is stopped, failed or running.
void tell_unfinished_run(process_frame &frame, const std::filesystem::path &folder);

// Answers a question of the work by an option.
void answer_ahead(project_state &project, const char *prompt_start, bool yes);

// ---- parameters that many commands have ----

struct no_parameters {};

// A result file or folder, and whether one that exists is overwritten.
struct output_wishes {
  std::filesystem::path out;
  bool force = false;
};
void describe_output(parameter_list &list, output_wishes &wishes, const char *type, bool needed = true);

} // namespace orb
