// Commands that read finished files and say what is in them; the project stays as it is.
#include <unistd.h>

#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "reports/evaluate_report.h"
#include "reports/evaluate_run.h"
#include "reports/info_clone.h"
#include "reports/info_report.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// ---- info.show -----------------------------------------------------------------------------------------------------

struct info_parameters {
  std::vector<fs::path> paths;
  std::string clone;
  bool json = false;
};

void describe_info(parameter_list &list, info_parameters &p) {
  list.add("paths", p.paths, "libraries, nets, fingerprints, run folders").type("FILE|FOLDER").needed();
  list.add("clone", p.clone, "all about one clone").type("NAME");
  list.add("json", p.json, "as JSON");
}

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
  passing_folder(const passing_folder &) = delete;
  passing_folder &operator=(const passing_folder &) = delete;
  const fs::path &path() const { return path_; }

private:
  fs::path path_;
};

command_result show_clone(project_state &project, const info_parameters &p) {
  process_frame &frame = project.frame();
  bool found = false;
  const report made = report_on_clone(frame, project.settings(), p.paths, p.clone, found);
  command_result result = found ? command_result{} : command_result::ended(exit_status::run_failed);
  result.lines.push_back(p.json ? made.dump(2) : text_of_report(made));
  if (!found)
    frame.note("No clone " + p.clone + " there.");
  return result;
}

command_result show_paths(project_state &project, const info_parameters &p) {
  command_result result;
  report all = report::array();
  try {
    for (const fs::path &path : p.paths) {
      all.push_back(report_on(project.frame(), project.settings(), path));
      if (!p.json)
        result.lines.push_back(text_of_report(all.back()) + (all.size() < p.paths.size() ? "\n" : ""));
    }
  } catch (const file_error &failed) { // what was told of the paths before this one stays
    result.status = exit_status::no_input_or_output;
    result.completed = false;
    result.why = failed.what();
    return result;
  }
  if (p.json)
    result.lines.push_back(all.dump(2));
  return result;
}

command_result show(project_state &project, const info_parameters &p) {
  const passing_folder folder;
  project.frame().working_folder_set(folder.path());
  return p.clone.empty() ? show_paths(project, p) : show_clone(project, p);
}

// ---- contigs.evaluate ----------------------------------------------------------------------------------------------

struct evaluate_parameters {
  evaluation_sources sources; // `run`: or the folder of the assembly that holds the run
  output_wishes output;
  bool json = false;
};

void describe_evaluate(parameter_list &list, evaluate_parameters &p) {
  list.add("folder", p.sources.run, "folder of a run, or of the assembly that holds it").type("RUN").needed();
  list.add("truth", p.sources.truth, "table of the clones' true positions").type("FILE").needed();
  list.add("q-clones", p.sources.Q_clones, "report of Q-clones, or their names, one a line")
      .type("FILE")
      .unset("the one beside the run");
  list.add("genome-length", p.sources.genome_length, "of all chromosomes, in base pairs")
      .limits(1, 1e15)
      .unset("by the largest ends of clones");
  list.add("json", p.json, "as JSON");
  list.add("out", p.output.out, "folder for report.txt and tables of contigs, clones and damage").type("DIR");
  list.add("force", p.output.force, "overwrite results that exist");
}

void check_evaluate(const project_state &project, const parts_there &, const evaluate_parameters &p) {
  if (p.output.out.empty())
    return;
  for (const char *name : names_of_evaluation_files)
    check_output(project, p.output.out / name, p.output.force);
}

command_result evaluate(project_state &project, const evaluate_parameters &p) {
  process_frame &frame = project.frame();
  work_in(project, p.output.out);
  evaluation_sources sources = p.sources;
  sources.run = folder_of_run(project, p.sources.run);
  run_evaluation made;
  if (sources.run.empty() || !evaluate_run(frame, sources, made))
    return stopped_or_failed(project);
  command_result result;
  result.inputs.push_back(sources.truth);
  if (!made.Q_file.empty())
    result.inputs.push_back(made.Q_file);
  result.parameter("run", made.run.folder.string());
  tell_unfinished_run(frame, fs::absolute(sources.run).lexically_normal().parent_path());
  result.parameter("genome_length", sources.genome_length);
  if (!p.output.out.empty()) {
    if (!write_evaluation(frame, made))
      return stopped_or_failed(project);
    for (const char *name : names_of_evaluation_files)
      result.file(name, p.output.out / name);
  }
  result.lines.push_back(p.json ? made.report.dump(2) : text_of_quality(made.quality, made.report));
  return result;
}

} // namespace

void add_report_rows(command_rows &rows) {
  rows.push_back(command_maker<info_parameters>("info.show")
                     .captioned("What a file holds")
                     .purpose("say what a file or folder holds, or all about one clone")
                     .example("info.show paths=results/ecoli536 clone=EC001A01")
                     .parameters(describe_info)
                     .runs(show)
                     .row());
  rows.push_back(command_maker<evaluate_parameters>("contigs.evaluate")
                     .captioned("Evaluate contigs")
                     .purpose("say how good contigs are where the true places of their clones are known")
                     .example("contigs.evaluate folder=results/ecoli536 truth=examples/ecoli536/truth.tsv")
                     .parameters(describe_evaluate)
                     .checked_by(check_evaluate)
                     .runs(evaluate)
                     .row());
}

} // namespace orb
