// The whole road: library, net, revision, contigs; each stage's result is kept and, with --resume, not made again.
#include <algorithm>
#include <fmt/format.h>

#include "commands/command_door.h"
#include "commands/command_table.h"
#include "commands/recorded_run.h"
#include "commands/row_steps.h"
#include "commands/verbs.h"
#include "contigs/run_folder.h"
#include "contigs/run_reports.h"
#include "database/class_DB_of_clones.h"
#include "fpc/fpc_blocks.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "net/parameter_proposals.h"
#include "project/input_kind.h"
#include "reports/contig_summary_text.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr const char *library_name = "CloneBandSizes.ORBdb";

class assembly {
public:
  assembly(verb_run &call, project_state &project, const command_streams &streams)
      : call_(call), project_(project), streams_(streams), record_(identity_of(call), project.frame().clock()),
        stages_(streams, by_layout() ? 3 : 4), out_(call.path("out")), record_file_(out_ / "run.json") {}

  command_result run() {
    if (by_layout() && (call_.is_given("cutoff") || call_.is_given("metric")))
      throw usage_error("--cutoff and --metric belong to --method own: a layout finds its scale in the fingerprints");
    take_gel_of_fingerprints(call_);
    note_inputs(call_, project_);
    record_inputs();
    if (call_.is_given("pvalue-tables")) {
      record_inputs_ = true;
      if (const command_result tables = step("pvalue.load"); !tables.completed)
        return tables;
      record_inputs_ = false;
    }
    check_steps(call_, project_); // a wrong parameter leaves no folder
    create_folder(out_);
    check_folder_is_writable(out_);
    for (const std::string &words : project_.files().claim_folder(out_, words_of_call(call_)))
      project_.frame().note(words);
    project_.working_folder_set(out_);
    record_wishes(call_, project_, record_);
    if (!settle_earlier_run())
      return command_result::ended(exit_status::no_input_or_output);
    if (is_complete())
      return summarise_again();
    const command_result end = run_recorded();
    repeat_warnings();
    if (end.status == exit_status::stopped)
      streams_.trouble(words_on_what_is_kept(record_.json(), out_) +
                       " The same command with --resume goes on from there.");
    return end;
  }

private:
  void record_inputs() {
    const fs::path input = call_.path("input");
    if (kind_of_input(input) != input_kind::missing)
      record_.inputs_add(input);
    if (std::error_code failed; kind_of_input(input) == input_kind::fpc_file && fs::exists(cor_file_of(input), failed))
      record_.input_add(cor_file_of(input));
    if (const fs::path markers = call_.path("markers"); !markers.empty())
      record_.input_add(markers);
  }

  // The record is there before the first result, and at the end with the final state, whatever happens between.
  command_result run_recorded() {
    record_.makes_set(new_results(project_, record_file_.path()));
    record_.end_set("running", exit_status::done, {});
    record_file_.save(record_);
    command_result end;
    try {
      end = run_stages();
    } catch (const file_error &failed) {
      end = command_result::ended(exit_status::no_input_or_output, failed.what());
    } catch (const std::exception &wrong) {
      save_at_the_end(command_result::ended(exit_status::run_failed, wrong.what()));
      throw;
    }
    save_at_the_end(end);
    return end;
  }

  command_result run_stages() {
    command_result end;
    for (auto stage : {&assembly::library, &assembly::net, &assembly::revision, &assembly::contigs}) {
      take_end((this->*stage)(), end);
      if (!end.completed)
        break;
      record_file_.save(record_);
    }
    stages_.end();
    return end;
  }

  // Runs a command of the verb and keeps in the record what it found.
  command_result step(const std::string &command) { return keep(run_command(project_, *call_.step(command))); }

  command_result keep(command_result result) {
    stages_.add(result);
    command_result recorded = result;
    if (!record_inputs_)
      recorded.inputs.clear(); // recorded before any work, so that an earlier run can be compared
    recorded.files.clear();    // under the names of stages, below
    record_result(recorded, record_);
    for (const named_file &file : result.files)
      if (file.key == "run_folder" && fs::exists(file.path))
        record_.output_set(file.key, file.path);
    return result;
  }

  // What was told before the contigs would be out of sight behind them.
  void repeat_warnings() {
    for (const nlohmann::json &warning : record_.json().value("warnings", nlohmann::json::array())) {
      const std::string text = warning.get<std::string>();
      streams_.people("\nWarning: " + text);
    }
  }

  void save_at_the_end(const command_result &end) {
    if (!end.completed)
      record_.leaves_set(out_);
    record_.end_set(state_of(end), end.status, end.why);
    try {
      record_file_.save(record_);
    } catch (const file_error &failed) {
      if (end.completed)
        throw;
      streams_.trouble(failed.what());
    }
  }

  fs::path library_file() const { return out_ / library_name; }
  // Contigs by layout come from a net of a scale of its own; its clone test stands for the revision.
  bool by_layout() const { return call_.option("method")->rows.front()->text() == "layout"; }
  fs::path net_file() const {
    return out_ / (by_layout() ? std::string("net_layout.ORBns") : net_signif_file_name(project_.rule()));
  }
  fs::path revised_file() const {
    double additional = project_.rule().cutoff + QQ_proposed_step;
    number_parse(call_.option("additional-cutoff")->rows.front()->text(), additional);
    return out_ / net_noQQ_file_name(project_.rule(), additional);
  }

  // The results that aren't in the run's own folder.
  std::vector<fs::path> results_to_be() const {
    if (by_layout())
      return {library_file(), net_file()};
    std::vector<fs::path> files{library_file(), net_file(), revised_file()};
    const bool q_overlaps = !call_.flag("no-overlaps"), q_clones = !call_.flag("no-clones");
    for (const std::string &name : QQ_report_names(project_.rule(), q_overlaps, q_clones, call_.flag("clone-test")))
      files.push_back(out_ / name);
    return files;
  }

  // False when results are there that this run may neither continue nor overwrite.
  bool settle_earlier_run() {
    const std::vector<fs::path> results = results_to_be();
    project_.files().writes(record_file_.path());
    for (const fs::path &file : results)
      project_.files().writes(file);
    if (call_.flag("force"))
      return true;
    const auto before = run_record_read(record_file_.path());
    for (const fs::path &leftover : leftovers_of_run(record_file_.path(), call_.the_verb().name))
      project_.files().gives_way(leftover);
    if (call_.resume && before)
      return settle_resumption(*before);
    // a run that made nothing is no result, nor is what it left under the names of its files
    const bool was_empty = before && before->value("outputs", nlohmann::json::object()).empty();
    if (before && !was_empty && before->value("state", nlohmann::json()) != "complete")
      throw file_error("can't write", record_file_.path(),
                       "an assembly is there that didn't come to its end; --resume goes on with it, --force makes it "
                       "anew");
    if (!was_empty)
      check_output(project_, record_file_.path(), false);
    for (const fs::path &file : results)
      check_output(project_, file, false);
    return true;
  }

  bool settle_resumption(const nlohmann::json &before) {
    const std::string difference = run_record_difference(before, record_.json());
    if (difference.empty()) {
      earlier_ = before;
      record_.continue_from(before);
      return true;
    }
    streams_.trouble(
        fmt::format("The assembly in {} can't be resumed: {}. --force makes it anew.", out_.string(), difference));
    return false;
  }

  bool kept(const char *key) const { return earlier_ && output_is_intact(*earlier_, key, out_); }

  bool is_complete() const {
    return earlier_ && earlier_->value("state", "") == "complete" && kept("library") && kept("net") &&
           (by_layout() || kept("revised_net")) && kept("run_folder");
  }

  command_result summarise_again() {
    const fs::path folder = out_ / (*earlier_)["outputs"]["run_folder"]["name"].get<std::string>();
    streams_.people("This assembly is complete; nothing was made again (--force makes it anew).");
    const nlohmann::json results = earlier_->value("results", nlohmann::json::object());
    const auto figure = [&](const char *name) { return number_text_thousands(results.value(name, std::int64_t{0})); };
    streams_.people(
        fmt::format("Clones read: {}. Exact copies dropped: {}.", figure("clones"), figure("copies_dropped")));
    if (!by_layout())
      streams_.people(fmt::format("Overlaps: {}. Removed as false: {} Q-overlaps, {} Q-clones.", figure("overlaps"),
                                  figure("q_overlaps"), figure("q_clones")));
    run_folder run;
    if (!read_run_folder(project_.frame(), folder, run))
      return command_result::ended(exit_status::run_failed);
    std::int32_t min_size = contig_figures{}.min_size;
    whole_number_parse(call_.option("min-size")->rows.front()->text(), min_size);
    contig_figures figures =
        contig_figures_of(run, min_size, static_cast<std::int32_t>(results.value("clones", std::int64_t{0})));
    figures.ordering = !call_.flag("no-ordering") && !by_layout();
    figures.windows = {results.value("contigs_in_windows", std::int32_t{0}),
                       results.value("window_joins", std::int32_t{0}),
                       results.value("weak_window_joins", std::int32_t{0})};
    streams_.people(text_of_contigs(figures, results.value("band_length", std::string())));
    streams_.results(folder.string());
    return command_result::ended(static_cast<exit_status>(earlier_->value("exit_status", 0)));
  }

  // A command that isn't one of the verb's own, with values of its own.
  command_result other(const std::string &command, const std::vector<std::pair<std::string, std::string>> &values) {
    bound_command bound = command_by_id(command)->bind();
    for (const auto &[key, value] : values)
      bound.set(key, value);
    return keep(run_command(project_, bound));
  }

  command_result read_library(bool resumed) {
    if (!resumed)
      return step("library.load");
    return other("library.load",
                 {{"file", library_file().string()}, {"capacity", call_.option("capacity")->rows.front()->text()}});
  }

  // The names of nets and reports go by the cutoff, which is settled only now.
  command_result parameters_by_library() {
    const command_result made = step("parameters.by_library");
    const auto settle = [&](const char *command, const char *name, double value) {
      if (!call_.is_given("metric") && !call_.is_given(name))
        call_.step(command)->set_default(name, number_text_shortest(value));
    };
    settle("net.revise", "additional-cutoff", additional_cutoff_for(project_.rule().cutoff));
    settle("contigs.assemble", "step",
           cutoff_step_for(project_.rule().cutoff, parameters_of(project_.database()),
                           median_of_band_counts(project_.database())));
    const std::vector<fs::path> results = made.completed ? results_to_be() : std::vector<fs::path>{};
    for (const fs::path &file : results)
      if (earlier_ || file == library_file())
        project_.files().writes(file);
      else
        check_output(project_, file, call_.flag("force"));
    return made;
  }

  command_result library() {
    const bool resumed = kept("library");
    const nlohmann::json earlier_copies = record_.json()["results"].value("copies_dropped", nlohmann::json());
    stages_.begin("load");
    record_.stage_start("load");
    command_result end = read_library(resumed);
    if (!end.completed)
      return end;
    if (resumed) {
      record_.result_set("copies_dropped", earlier_copies);
      tell_kept("the library is there already");
    }
    if (call_.is_given("markers"))
      take_end(step("markers.load"), end);
    if (end.completed)
      take_end(step("metric.set"), end);
    if (end.completed && call_.automatic)
      take_end(parameters_by_library(), end);
    if (end.completed && by_layout()) // the library is kept with the positions found
      take_end(other("metric.by_library", {}), end);
    if (end.completed && !resumed)
      take_end(other("library.save", {{"out", library_file().string()}, {"force", "yes"}}), end);
    record_.stage_end();
    if (!end.completed)
      return end;
    record_.output_set("library", library_file());
    record_.library_set(project_.database().total_number_of_clones_get(), library_checksum(project_.database()));
    take_end(step("options.set"), end);
    return end;
  }

  command_result net() {
    stages_.begin("net");
    if (kept("net")) {
      tell_kept("the net is there already");
      return !by_layout() && kept("revised_net") ? command_result{} : load(net_file());
    }
    for (const char *later : {"net", "revised_net", "run_folder"})
      record_.output_drop(later);
    record_.stage_start("net");
    command_result end = step("net.create");
    if (end.completed)
      take_end(other("net.save", {{"out", net_file().string()}, {"force", "yes"}}), end);
    record_.stage_end();
    if (end.completed)
      record_.output_set("net", net_file());
    earlier_.reset(); // what hangs on an older net is made anew
    return end;
  }

  command_result load(const fs::path &file) { return other("net.load", {{"file", file.string()}}); }

  command_result revision() {
    if (by_layout())
      return {};
    stages_.begin("revision");
    if (kept("revised_net")) {
      tell_kept("the revised net is there already");
      return load(revised_file());
    }
    for (const char *later : {"revised_net", "run_folder"})
      record_.output_drop(later);
    record_.stage_start("revision");
    bound_command &revise = *call_.step("net.revise");
    revise.set("out", revised_file().string());
    revise.set("force", "yes");
    const command_result end = step("net.revise");
    record_.stage_end();
    if (end.completed)
      record_.output_set("revised_net", revised_file());
    return end;
  }

  command_result contigs() {
    stages_.begin("contigs");
    record_.stage_start("contigs");
    // the folder is in the record before the first contig is in it, so that a killed run can be gone on with too
    const fs::path folder = kept_run_folder();
    record_.output_set("run_folder", folder);
    record_file_.save(record_);
    call_.step("contigs.assemble")->set("continue", folder.string());
    const command_result end = step("contigs.assemble");
    record_.stage_end();
    return end;
  }

  fs::path kept_run_folder() {
    const nlohmann::json outputs = record_.json()["outputs"];
    const auto entry = outputs.find("run_folder");
    const std::string name = entry != outputs.end() ? entry->value("name", "") : "";
    if (std::error_code failed; name.empty() || !fs::is_directory(out_ / name, failed))
      return make_run_folder(project_.frame(), out_);
    project_.frame().note("Contigs that are finished in " + name + " stay.");
    return out_ / name;
  }

  void tell_kept(const std::string &what) {
    command_result told;
    told.summary = what;
    stages_.add(told);
  }

  verb_run &call_;
  project_state &project_;
  const command_streams &streams_;
  run_record record_;
  told_stages stages_;
  fs::path out_;
  run_record_file record_file_;
  std::optional<nlohmann::json> earlier_; // the run that --resume continues
  bool record_inputs_ = false;
};

} // namespace

exit_status run_assemble_verb(verb_run &call, project_state &project, const command_streams &streams) {
  const files_scope in_hand(project.files());
  const command_result end = assembly(call, project, streams).run();
  say_why(call, end, streams);
  return end.status;
}

} // namespace orb
