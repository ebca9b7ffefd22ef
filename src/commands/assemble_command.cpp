// The whole road: load, net, revision, contigs; each stage's result is kept and, with --resume, not made again.
#include <fmt/format.h>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "database/band_statistics.h"
#include "database/library_file.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "reports/contig_summary_text.h"
#include "reports/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr const char *library_name = "CloneBandSizes.ORBdb";

class assembly {
public:
  assembly(project_state &session, const command_options &options, const command_streams &streams)
      : session_(session), options_(options), streams_(streams), record_(identity_of(options), session.frame().clock()),
        record_file_(options.out / "run.json") {}

  exit_status run() {
    create_folder(options_.out);
    check_folder_is_writable(options_.out);
    work_in(session_, options_.out);
    if (kind_of_input(options_.input) != input_kind::missing)
      record_.inputs_add(options_.input);
    if (!options_.markers.empty())
      record_.input_add(options_.markers);
    const exit_status tables = load_pvalue_tables(session_, options_, record_, streams_);
    if (tables != exit_status::done)
      return tables;
    record_wishes();
    if (!settle_earlier_run())
      return exit_status::no_input_or_output;
    if (is_complete())
      return summarise_again();
    exit_status status = exit_status::done;
    for (auto stage : {&assembly::library, &assembly::net, &assembly::revision, &assembly::contigs}) {
      status = (this->*stage)();
      if (status != exit_status::done)
        break;
      if (session_.frame().was_stopped() || session_.frame().stop_requested_get()) {
        status = exit_status::stopped;
        break;
      }
      record_.save(record_file_);
    }
    record_.state_set(status == exit_status::done ? "complete" : status == exit_status::stopped ? "stopped" : "failed");
    if (!record_.json()["outputs"].empty())
      record_.save(record_file_);
    return status;
  }

private:
  // What was asked for: a run with other wishes is another run.
  void record_wishes() {
    const auto given = [](const auto &option) { return option ? nlohmann::json(*option) : nlohmann::json(); };
    record_.parameter_set("given_for_input", {{"plain_text", options_.plain_text},
                                              {"name_formats", {options_.name_format_in, options_.name_format_out}},
                                              {"tolerance", given(options_.tolerance)},
                                              {"tolerance_index", given(options_.tolerance_index)},
                                              {"gel_length", given(options_.gel_length)},
                                              {"n_bands", given(options_.n_bands)},
                                              {"preset", given(options_.preset)}});
    apply_metric(session_, options_);
    record_metric(session_, record_);
    record_.parameter_set("rank", options_.rank);
    record_.parameter_set("additional_cutoff", additional_cutoff(session_, options_));
    record_.parameter_set("q_overlaps", !options_.no_overlaps);
    record_.parameter_set("q_clones", !options_.no_clones);
    record_contig_options(options_, record_);
  }

  fs::path net_file() { return options_.out / net_signif_file_name(session_.settings()); }
  fs::path revised_file() {
    return options_.out / net_noQQ_file_name(session_.settings(), additional_cutoff(session_, options_));
  }

  // False when results are there that this run may neither continue nor overwrite.
  bool settle_earlier_run() {
    if (options_.force)
      return true;
    const auto before = run_record_read(record_file_);
    if (options_.resume && before) {
      const std::string difference = run_record_difference(*before, record_.json());
      if (difference.empty()) {
        earlier_ = *before;
        record_.continue_from(*before);
        return true;
      }
      streams_.people(fmt::format("The assembly in {} can't be resumed: {}. --force makes it anew.",
                                  options_.out.string(), difference));
      return false;
    }
    for (const fs::path &file : {record_file_, options_.out / library_name, net_file(), revised_file()})
      check_output(file, false);
    check_revision_reports(session_, options_, options_.out);
    return true;
  }

  bool kept(const char *key) const { return earlier_ && output_is_intact(*earlier_, key, options_.out); }

  bool is_complete() const {
    return earlier_ && earlier_->value("state", "") == "complete" && kept("library") && kept("net") &&
           kept("revised_net") && kept("run_folder");
  }

  exit_status summarise_again() {
    const fs::path folder = options_.out / (*earlier_)["outputs"]["run_folder"]["name"].get<std::string>();
    streams_.people("This assembly is complete; nothing was made again (--force makes it anew).");
    const nlohmann::json results = earlier_->value("results", nlohmann::json::object());
    const auto figure = [&](const char *name) { return number_text_thousands(results.value(name, std::int64_t{0})); };
    streams_.people(
        fmt::format("Clones read: {}. Exact copies dropped: {}.", figure("clones"), figure("copies_dropped")));
    streams_.people(fmt::format("Overlaps: {}. Removed as false: {} Q-overlaps, {} Q-clones.", figure("overlaps"),
                                figure("q_overlaps"), figure("q_clones")));
    run_folder run;
    if (!read_run_folder(session_.frame(), folder, run))
      return exit_status::run_failed;
    streams_.people(text_of_contigs(contig_figures_of(
        run, options_.min_size, static_cast<std::int32_t>(results.value("clones", std::int64_t{0})))));
    streams_.results(folder.string());
    return exit_status::done;
  }

  exit_status library() {
    const fs::path file = options_.out / library_name;
    const bool resumed = kept("library");
    command_options read = options_;
    if (resumed) {
      streams_.people("Resumed: the library is there.");
      read.input = file;
      read.plain_text = false;
      read.tolerance.reset(), read.tolerance_index.reset(), read.gel_length.reset(), read.n_bands.reset(),
          read.preset.reset();
    }
    record_.stage_start("load");
    const exit_status loaded = load_library(session_, read, streams_);
    if (loaded != exit_status::done)
      return loaded;
    const load_summary &found = session_.reader().summary();
    if (!resumed) {
      DataBase_in_typical_file_print(file, session_.database());
      // The reader's statistics count the exact copies that it dropped, those of a library file don't. From here on the
      // library is what its file says, so that a resumed run and the stages one by one give the same results.
      if (found.n_copies_dropped > 0)
        make_band_statistics(session_.frame(), session_.database(), session_.usable_values());
    }
    record_.stage_end();
    record_.output_set("library", file);
    record_library(session_, record_);
    record_.result_set("clones", session_.database().total_number_of_clones_get());
    if (!resumed) {
      record_.result_set("copies_dropped", found.n_copies_dropped);
      streams_.people(fmt::format("Clones read: {}. Exact copies dropped: {}.",
                                  number_text_thousands(session_.database().total_number_of_clones_get()),
                                  number_text_thousands(found.n_copies_dropped)));
    }
    streams_.people("Library: " + text_of_library(session_) + ".");
    apply_metric(session_, options_);
    say_what_tables_leave_out(session_, streams_);
    return exit_status::done;
  }

  exit_status net() {
    if (!kept("net")) {
      const exit_status made = make_net(session_, net_file(), record_, streams_);
      if (made == exit_status::done)
        record_.output_set("net", net_file());
      earlier_.reset(); // what hangs on an older net is made anew
      return made;
    }
    streams_.people("Resumed: the net is there.");
    return kept("revised_net") ? exit_status::done : load_net(session_, net_file(), streams_);
  }

  exit_status revision() {
    if (!kept("revised_net")) {
      const exit_status made = revise_net(session_, options_, revised_file(), record_, streams_);
      if (made == exit_status::done)
        record_.output_set("revised_net", revised_file());
      return made;
    }
    streams_.people("Resumed: the revised net is there.");
    return load_net(session_, revised_file(), streams_);
  }

  exit_status contigs() { return make_contigs(session_, options_, record_, streams_); }

  project_state &session_;
  const command_options &options_;
  const command_streams &streams_;
  run_record record_;
  fs::path record_file_;
  std::optional<nlohmann::json> earlier_; // the run that --resume continues
};

} // namespace

void assemble_options(option_list &list, command_options &options) {
  add_input_argument(list, options);
  add_output_options(list, options, "DIR");
  add_library_options(list, options);
  add_metric_options(list, options);
  add_revision_options(list, options);
  add_contig_options(list, options);
  add_ordering_options(list, options);
  list.add("--resume", options.resume, "go on with an earlier run of the same kind");
  add_common_options(list, options);
}

exit_status assemble_command(project_state &session, const command_options &options, const command_streams &streams) {
  if (options.rank < 1 || options.rank > 50)
    throw usage_error("--rank takes a number from 1 to 50");
  return assembly(session, options, streams).run();
}

} // namespace orb
