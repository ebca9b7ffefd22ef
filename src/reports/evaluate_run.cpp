#include "reports/evaluate_run.h"

#include "contigs/layout_reports.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "reports/evaluate_report.h"
#include "reports/run_record.h"
#include "simulation/folder_of_contigs_test.h"
#include "simulation/true_positions.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

fs::path folder_beside(const fs::path &run_folder) {
  fs::path run = fs::absolute(run_folder).lexically_normal();
  if (!run.has_filename())
    run = run.parent_path();
  return run.parent_path();
}

// How the names of a revision's reports begin that was made with the run's cutoff; empty when no record tells it.
std::string start_by_cutoff(const fs::path &folder) {
  const auto record = run_record_read(folder / "run.json");
  const auto cutoff = record ? record->value("/parameters/cutoff"_json_pointer, nlohmann::json()) : nlohmann::json();
  if (!cutoff.is_number())
    return {};
  return "cutoff" +
         class_serv_raznoe::string_with_letters_and_numbers_only_get(number_text_shortest(cutoff.get<double>()));
}

// What a layout left out, or the report that the revision left beside the run's folder; empty when there is none, or
// none can be chosen.
fs::path Q_file_beside(process_frame &frame, const fs::path &run) {
  std::error_code failed;
  if (const fs::path of_layout = run / layout_suspects_name; fs::is_regular_file(of_layout, failed))
    return of_layout;
  const fs::path folder = folder_beside(run);
  const std::vector<fs::path> found = Q_clone_reports_of_folder(folder);
  if (found.empty())
    return {};
  if (found.size() == 1)
    return found.front();
  const std::string start = start_by_cutoff(folder);
  for (const fs::path &file : found)
    if (!start.empty() && file.filename() == start + "_Q_clones.txt")
      return file;
  frame.note("Several reports of Q-clones lie beside the run; --q-clones tells which one to use.");
  return {};
}

bool read_Q_clones_of_run(process_frame &frame, const fs::path &named, run_evaluation &made) {
  made.Q_file = named.empty() ? Q_file_beside(frame, made.run.folder) : named;
  return made.Q_file.empty() || read_Q_clones(frame, made.Q_file, made.Q_clones);
}

// A table of another library would give measures of nothing.
bool clones_are_known(process_frame &frame, const map_quality &quality, const fs::path &truth) {
  const std::int32_t n = quality.n_clones_in_contigs + quality.n_clones_in_heaps;
  if (n > 0 && quality.n_unknown == n) {
    return frame.refuse("None of the run's clones stands in the table of true positions.\r\nfile " + truth.string());
  }
  if (quality.n_unknown > 0)
    frame.warn(std::to_string(quality.n_unknown) + " clones of the run aren't in the table of true positions.");
  return true;
}

} // namespace

bool evaluate_run(process_frame &frame, const evaluation_sources &sources, run_evaluation &made) {
  if (!read_true_positions(frame, sources.truth, made.truth) || !read_run_folder(frame, sources.run, made.run) ||
      !read_orders_of_run(frame, made.run, made.orders) || !read_Q_clones_of_run(frame, sources.Q_clones, made))
    return false;
  const bool knows_Q_clones = !made.Q_file.empty();
  const true_map truth(made.truth);
  made.quality =
      map_quality_of({&made.run, made.orders, knows_Q_clones ? &made.Q_clones : nullptr, sources.genome_length}, truth);
  if (!clones_are_known(frame, made.quality, sources.truth))
    return false;
  made.report["run"] = made.run.folder.string();
  made.report["truth"] = sources.truth.string();
  made.report["Q_clones"] = knows_Q_clones ? nlohmann::ordered_json(made.Q_file.string()) : nlohmann::ordered_json();
  made.report.update(report_of_quality(made.quality, truth));
  return true;
}

bool write_evaluation(process_frame &frame, const run_evaluation &made) {
  if (!test_folder_of_contigs(frame, made.run, made.orders, made.truth, made.Q_clones))
    return false;
  const fs::path &folder = frame.working_folder_get();
  write_table_of_contigs(made.report, folder / "contigs.tsv");
  write_table_of_damage(made.report, folder / "damage.tsv");
  result_file whole(folder / "evaluation.json");
  whole.write(made.report.dump(2) + "\n");
  whole.commit();
  return true;
}

} // namespace orb
