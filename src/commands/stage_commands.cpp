// The commands of one stage each: load, net, revise, contigs.
#include <fmt/format.h>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "database/library_file.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

static void say_what_was_loaded(project_state &session, const command_streams &streams) {
  const load_summary &found = session.reader().summary();
  if (found.n_copies_dropped > 0)
    streams.people(fmt::format("Exact copies dropped: {} of {} records.", found.n_copies_dropped, found.n_records));
  streams.people("Library: " + text_of_library(session) + ".");
}

exit_status library_for_stage(project_state &session, const command_options &options, run_record &record,
                              const command_streams &streams) {
  record.stage_start("load");
  const exit_status loaded = load_library(session, options, streams);
  if (loaded != exit_status::done)
    return loaded;
  record.stage_end();
  record.inputs_add(options.input);
  if (!options.markers.empty())
    record.input_add(options.markers);
  record_library(session, record);
  say_what_was_loaded(session, streams);
  return exit_status::done;
}

exit_status library_and_metric(project_state &session, const command_options &options, run_record &record,
                               const command_streams &streams) {
  exit_status loaded = library_for_stage(session, options, record, streams);
  if (loaded == exit_status::done)
    loaded = load_pvalue_tables(session, options, record, streams);
  if (loaded != exit_status::done)
    return loaded;
  apply_metric(session, options);
  record_metric(session, record);
  say_what_tables_leave_out(session, streams);
  return exit_status::done;
}

void load_options(option_list &list, command_options &options) {
  add_input_argument(list, options);
  add_output_options(list, options, "LIB.ORBdb");
  add_library_options(list, options);
  add_common_options(list, options);
}

exit_status load_command(project_state &session, const command_options &options, const command_streams &streams) {
  run_record record = record_beside_file(session, options);
  const exit_status loaded = library_for_stage(session, options, record, streams);
  if (loaded != exit_status::done)
    return loaded;
  record.stage_start("save");
  DataBase_in_typical_file_print(options.out, session.database());
  record.stage_end();
  record.output_set("library", options.out);
  streams.people("Saved: " + options.out.string());
  return finish_record(record, exit_status::done);
}

// Reads a text net, or the parts of one joined in name order, as the current net.
static bool load_text_net(project_state &session, const net_creation_summary &summary) {
  struct passing_file {
    fs::path path;
    ~passing_file() {
      std::error_code failed;
      if (!path.empty())
        fs::remove(path, failed);
    }
  } joined;
  if (summary.in_parts)
    joined.path = class_serv_raznoe::merge_files_of_folder_sort_del_rep_run(
        session.frame(), summary.text_file.parent_path(),
        summary.text_file.extension().string().substr(summary.text_file.has_extension() ? 1 : 0));
  bool ok = false;
  session.signif().read_text_net(summary.in_parts ? joined.path : summary.text_file, session.signif().net(), ok);
  return ok;
}

// The long way over a text net, for resuming, merging and reading by people. The native net is that text read back; a
// run that began behind clone 1 has it only when the parts before lie in the same folder.
static exit_status net_by_text(project_state &session, const command_options &options, run_record &record,
                               const command_streams &streams, bool &whole) {
  process_frame &frame = session.frame();
  record.stage_start("net");
  net_creation_summary summary;
  text_net_options wanted;
  wanted.file = options.text;
  wanted.start_clone = options.start;
  wanted.parts = options.parts;
  const bool made = session.signif().create_file_with_significant_connections(wanted, summary);
  if (!made || !summary.completed)
    return frame.was_stopped() ? exit_status::stopped : exit_status::run_failed;
  streams.people("Text net: " + summary.text_file.string());
  whole = options.start <= 1 || summary.in_parts;
  if (!whole) {
    streams.people("It begins behind clone 1, so no native net was made of it.");
    return exit_status::done;
  }
  const bool ok = load_text_net(session, summary);
  if (!ok)
    return frame.stop_requested_get() ? exit_status::stopped : exit_status::run_failed;
  save_net(session, options.out, record, streams);
  record.stage_end();
  return exit_status::done;
}

void net_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_output_options(list, options, "NET.ORBns");
  add_library_options(list, options);
  add_metric_options(list, options);
  list.add("--text", options.text, "write a text net too, and load the net from it").type("NET.txt");
  list.add("--start", options.start, "first clone of the text net, to resume").limits(1, 2000000000);
  list.add("--parts", options.parts, "text net in parts of 1000 clones");
  add_common_options(list, options);
}

exit_status net_command(project_state &session, const command_options &options, const command_streams &streams) {
  if (!options.text.empty())
    check_output(options.text, options.force);
  if (options.text.empty() && (options.start != 1 || options.parts))
    throw usage_error("--start and --parts belong to --text");
  run_record record = record_beside_file(session, options);
  exit_status status = library_and_metric(session, options, record, streams);
  if (status != exit_status::done)
    return status;
  bool whole = true;
  status = options.text.empty() ? make_net(session, options.out, record, streams)
                                : net_by_text(session, options, record, streams, whole);
  if (status != exit_status::done || !whole)
    return status;
  record.output_set("net", options.out);
  streams.people("Saved: " + options.out.string());
  return finish_record(record, status);
}

void revise_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_net_argument(list, options);
  add_output_options(list, options, "NET.ORBns");
  add_library_options(list, options);
  add_metric_options(list, options);
  add_revision_options(list, options);
  add_common_options(list, options);
}

exit_status revise_command(project_state &session, const command_options &options, const command_streams &streams) {
  if (options.rank < 1 || options.rank > 50)
    throw usage_error("--rank takes a number from 1 to 50");
  if (options.no_overlaps && options.no_clones)
    throw usage_error("--no-overlaps and --no-clones leave nothing to revise");
  run_record record = record_beside_file(session, options);
  exit_status status = library_and_metric(session, options, record, streams);
  if (status != exit_status::done)
    return status;
  check_revision_reports(session, options, options.out.parent_path());
  record.parameter_set("rank", options.rank);
  record.parameter_set("additional_cutoff", additional_cutoff(session, options));
  record.parameter_set("q_overlaps", !options.no_overlaps);
  record.parameter_set("q_clones", !options.no_clones);
  record.input_add(options.net);
  status = load_net(session, options.net, streams);
  if (status == exit_status::done)
    status = revise_net(session, options, options.out, record, streams);
  if (status != exit_status::done)
    return status;
  record.output_set("net", options.out);
  streams.people("Saved: " + options.out.string());
  return finish_record(record, status);
}

void contigs_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_net_argument(list, options);
  add_output_options(list, options, "DIR");
  add_library_options(list, options);
  add_metric_options(list, options);
  add_contig_options(list, options);
  add_ordering_options(list, options);
  add_common_options(list, options);
}

exit_status contigs_command(project_state &session, const command_options &options, const command_streams &streams) {
  run_record record = record_in_folder(session, options);
  exit_status status = library_and_metric(session, options, record, streams);
  if (status != exit_status::done)
    return status;
  record_contig_options(options, record);
  record.input_add(options.net);
  status = load_net(session, options.net, streams);
  if (status != exit_status::done)
    return status;
  status = make_contigs(session, options, record, streams);
  return finish_record(record, status);
}

} // namespace orb
