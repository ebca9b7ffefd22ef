// How good the contigs of a run are, by a table of the true positions of its clones.
#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/net_stage.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "reports/evaluate_report.h"
#include "reports/input_kind.h"
#include "simulation/folder_of_contigs_test.h"
#include "simulation/true_positions.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr const char *names_of_results[] = {"report.txt", "contigs.tsv", "damage.tsv", "evaluation.json", "run.json"};

class evaluation {
public:
  evaluation(project_state &session, const command_options &options, const command_streams &streams)
      : frame_(session.frame()), options_(options), streams_(streams), record_(identity_of(options), frame_.clock()),
        session_(session) {}

  exit_status run() {
    if (!options_.out.empty()) {
      for (const char *name : names_of_results)
        check_output(options_.out / name, options_.force);
      work_in(session_, options_.out);
    }
    if (!read())
      return exit_status::run_failed;
    const true_map truth(truth_);
    const map_quality quality = map_quality_of(
        {&run_, orders_, knows_Q_clones_ ? &Q_clones_ : nullptr, options_.evaluate.genome_length}, truth);
    if (!clones_are_known(quality))
      return exit_status::run_failed;
    nlohmann::ordered_json report;
    report["run"] = run_.folder.string();
    report["truth"] = options_.evaluate.truth.string();
    report["Q_clones"] = knows_Q_clones_ ? nlohmann::ordered_json(Q_file_.string()) : nlohmann::ordered_json();
    report.update(report_of_quality(quality, truth));
    if (!options_.out.empty() && !write(report))
      return frame_.was_stopped() ? exit_status::stopped : exit_status::run_failed;
    streams_.results(options_.json ? report.dump(2) : text_of_quality(quality, report));
    return exit_status::done;
  }

private:
  bool refuse(const std::string &text) {
    frame_.message(text);
    frame_.data_failed_set();
    return false;
  }

  bool read() {
    const fs::path folder = folder_of_run(session_, options_.run);
    return !folder.empty() && read_true_positions(frame_, options_.evaluate.truth, truth_) &&
           read_run_folder(frame_, folder, run_) && read_orders_of_run(frame_, run_, orders_) && read_Q_clones_of_run();
  }

  bool read_Q_clones_of_run() {
    Q_file_ = options_.evaluate.Q_clones;
    if (Q_file_.empty())
      find_Q_file();
    if (Q_file_.empty())
      return true;
    knows_Q_clones_ = read_Q_clones(frame_, Q_file_, Q_clones_);
    return knows_Q_clones_;
  }

  // The report that the revision left beside the run's folder. Of several the one of the run's own cutoff.
  void find_Q_file() {
    fs::path run = fs::absolute(run_.folder).lexically_normal();
    if (!run.has_filename())
      run = run.parent_path();
    const fs::path folder = run.parent_path();
    const std::vector<fs::path> found = Q_clone_reports_of_folder(folder);
    if (found.size() == 1)
      Q_file_ = found.front();
    if (found.size() < 2)
      return;
    const auto record = run_record_read(folder / "run.json");
    const auto cutoff = record ? record->value("/parameters/cutoff"_json_pointer, nlohmann::json()) : nlohmann::json();
    if (cutoff.is_number()) {
      const std::string start = "cutoff" + class_serv_raznoe::string_with_letters_and_numbers_only_get(
                                               number_text_shortest(cutoff.get<double>()));
      for (const fs::path &file : found)
        if (file.filename() == start + "_Q_clones.txt")
          Q_file_ = file;
    }
    if (Q_file_.empty())
      streams_.people("Several reports of Q-clones lie beside the run; --q-clones tells which one to use.");
  }

  // A table of another library would give measures of nothing.
  bool clones_are_known(const map_quality &quality) {
    const std::int32_t n = quality.n_clones_in_contigs + quality.n_clones_in_heaps;
    if (n > 0 && quality.n_unknown == n)
      return refuse("None of the run's clones stands in the table of true positions.\r\nfile " +
                    options_.evaluate.truth.string());
    if (quality.n_unknown > 0)
      streams_.people(std::to_string(quality.n_unknown) + " clones of the run aren't in the table of true positions.");
    return true;
  }

  bool write(const nlohmann::ordered_json &report) {
    record_.input_add(options_.evaluate.truth);
    if (knows_Q_clones_)
      record_.input_add(Q_file_);
    record_.parameter_set("run", run_.folder.string());
    record_.parameter_set("genome_length", options_.evaluate.genome_length);
    record_.stage_start("evaluate");
    if (!test_folder_of_contigs(frame_, run_, orders_, truth_, Q_clones_))
      return false;
    write_table_of_contigs(report, options_.out / "contigs.tsv");
    write_table_of_damage(report, options_.out / "damage.tsv");
    result_file whole(options_.out / "evaluation.json");
    whole.write(report.dump(2) + "\n");
    whole.commit();
    record_.stage_end();
    for (const char *name : {"report.txt", "contigs.tsv", "damage.tsv", "evaluation.json"})
      record_.output_set(name, options_.out / name);
    record_.state_set("complete");
    record_.save(options_.out / "run.json");
    return true;
  }

  process_frame &frame_;
  const command_options &options_;
  const command_streams &streams_;
  run_record record_;
  project_state &session_;
  placed_clones truth_;
  run_folder run_;
  std::vector<clone_order> orders_;
  fs::path Q_file_;
  std::vector<std::string> Q_clones_;
  bool knows_Q_clones_ = false;
};

} // namespace

void evaluate_options(option_list &list, command_options &options) {
  list.add("run", options.run, "folder of a run, or of the assembly that holds it").type("RUN").needed();
  list.add("--truth", options.evaluate.truth, "table of the clones' true positions").type("FILE").needed();
  list.add("--q-clones", options.evaluate.Q_clones, "report of Q-clones, or their names, one a line")
      .type("FILE")
      .shown_default("the one beside the run");
  list.add("--genome-length", options.evaluate.genome_length, "of all chromosomes, in base pairs")
      .limits(1, 1e15)
      .shown_default("by the largest ends of clones");
  list.add("--json", options.json, "as JSON");
  list.add("--out", options.out, "folder for report.txt and tables of contigs, clones and damage").type("DIR");
  list.add("--force", options.force, "overwrite results that exist");
  add_common_options(list, options);
}

exit_status evaluate_command(project_state &session, const command_options &options, const command_streams &streams) {
  return evaluation(session, options, streams).run();
}

} // namespace orb
