#include "commands/opening.h"

#include "commands/command_table.h"
#include "commands/verbs.h"
#include "database/library_file.h"
#include "project/input_kind.h"
#include "project/project_file.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

bound_command command_on(const char *id, const char *key, const fs::path &path) {
  bound_command command = command_by_id(id)->bind();
  command.set(key, path.string());
  return command;
}

// The first value of a project file names a library that is there.
bool is_project_file(const fs::path &file) {
  const project_file values = read_project_file(file);
  std::error_code failed;
  return !values.library.empty() && fs::is_regular_file(values.library, failed);
}

// As the verbs over a run find its parts.
void open_run(project_state &project, const fs::path &folder, opening &found) {
  verb_run call(*verb_by_name("retain"));
  call.run_folder = folder;
  prepare_run_verb(call, project);
  for (const char *id : {"library.load", "metric.set", "contigs.load", "net.load"})
    found.commands.push_back(*call.step(id));
  found.contigs_to_browse = folder;
}

void open_kind(project_state &project, const fs::path &path, input_kind kind, opening &found) {
  switch (kind) {
  case input_kind::sizes_folder:
  case input_kind::sizes_file:
  case input_kind::library:
    found.commands.push_back(command_on("library.load", "file", path));
    return;
  case input_kind::fpc_file: // clones with their bands, or the contigs of clones that are there
    found.commands.push_back(project.has(project_part::library) ? command_on("fpc.read", "file", path)
                                                                : command_on("library.load", "file", path));
    return;
  case input_kind::results_folder:
  case input_kind::run_folder:
    return open_run(project, path, found);
  case input_kind::native_net:
    found.commands.push_back(command_on("net.load", "file", path));
    return;
  case input_kind::text_net:
    found.commands.push_back(command_on("net.load_text", "file", path));
    return;
  case input_kind::native_markers:
    found.commands.push_back(command_on("markers.load", "file", path));
    return;
  case input_kind::pajek_net:
    found.net_to_view = path;
    return;
  case input_kind::table:
    if (path.filename() == "report_contigs.txt" || path.filename() == "report_clusters.txt") {
      found.contigs_to_browse = path;
      return;
    }
    break;
  default:
    break;
  }
  found.refused =
      path.string() +
      (kind == input_kind::missing ? " isn't there." : " can't be opened: it looks like a " + name_of_kind(kind) + ".");
}

} // namespace

opening opening_of(project_state &project, const fs::path &path) {
  opening found;
  try {
    const input_kind kind = kind_of_input(path);
    const bool may_be_project = kind == input_kind::other_file || kind == input_kind::list_of_clones ||
                                (kind == input_kind::library && !is_library_file(path));
    if (may_be_project && is_project_file(path))
      found.commands.push_back(command_on("project.open", "file", path));
    else
      open_kind(project, path, kind, found);
  } catch (const usage_error &wrong) {
    found.refused = wrong.what();
  } catch (const file_error &failed) {
    found.refused = failed.what();
  } catch (const program_end &) {
    found.refused = path.string() + " holds no run that can be opened.";
  }
  return found;
}

} // namespace orb
