#include <unistd.h>

#include "commands/commands.h"
#include "reports/info_clone.h"
#include "reports/info_report.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// Reading a library may write reports (repeats.txt) into the working folder; looking must not leave traces.
class passing_folder {
public:
  passing_folder() : path_(fs::temp_directory_path() / ("orb-info-" + std::to_string(::getpid()))) {
    fs::create_directories(path_);
  }
  ~passing_folder() {
    std::error_code failed;
    fs::remove_all(path_, failed);
  }
  const fs::path &path() const { return path_; }

private:
  fs::path path_;
};

} // namespace

void info_options(option_list &list, command_options &options) {
  list.add("paths", options.info_paths, "libraries, nets, fingerprints, run folders").type("FILE|FOLDER").needed();
  list.add("--clone", options.clone, "all about one clone").type("NAME");
  list.add("--json", options.json, "as JSON");
  add_common_options(list, options);
}

exit_status info_command(project_state &session, const command_options &options, const command_streams &streams) {
  const passing_folder folder;
  session.frame().working_folder_set(folder.path());
  if (!options.clone.empty()) {
    bool found = false;
    const report made = report_on_clone(session, options.info_paths, options.clone, found);
    streams.results(options.json ? made.dump(2) : text_of_report(made));
    if (!found)
      streams.people("No clone " + options.clone + " there.");
    return found ? exit_status::done : exit_status::run_failed;
  }
  report all = report::array();
  for (const fs::path &path : options.info_paths) {
    all.push_back(report_on(session, path));
    if (!options.json)
      streams.results(text_of_report(all.back()) + (all.size() < options.info_paths.size() ? "\n" : ""));
  }
  if (options.json)
    streams.results(all.dump(2));
  return exit_status::done;
}

} // namespace orb
