// The commands over a finished run: the re-analysis with an old tiling path, and the tables over its contigs.
#include <fmt/format.h>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "commands/run_source.h"
#include "contigs/class_contig_adapt_clust.h"
#include "contigs/run_folder.h"
#include "database/class_markers.h"
#include "fpc/fpc_writing.h"
#include "reports/contig_summary_text.h"

namespace orb {

namespace fs = std::filesystem;

static void add_run_argument(option_list &list, command_options &options) {
  list.add("run", options.run, "folder of a run, or of an assembly").type("RUN").needed();
}

static void add_library_of_run_option(option_list &list, command_options &options) {
  list.add("--library", options.library, "library of the run").type("LIB").shown_default("by its run.json");
}

// The run's library, metric and contigs in the session; `options` become those of the run.
static exit_status load_run(project_state &session, command_options &options, const run_source &source,
                            run_record &record, const command_streams &streams) {
  options.input = source.library;
  const exit_status status = library_and_metric(session, options, record, streams);
  if (status != exit_status::done)
    return status;
  record.input_add(source.folder / "report_clusters.txt");
  if (!read_run_folder_into_registry(session.frame(), session.settings(), source.folder, session.database()))
    return exit_status::run_failed;
  const class_FPCto_import &registry = *session.database().contigs();
  streams.people(fmt::format("Run: {}, {} clusters.", source.folder.string(),
                             registry.current_list_of_clusters_in_use_get().count()));
  return exit_status::done;
}

// ---- retain --------------------------------------------------------------------------------------------------------

void retain_options(option_list &list, command_options &options) {
  add_run_argument(list, options);
  add_output_options(list, options, "DIR");
  list.add("--old-mtp", options.old_MTP, "clones of the old tiling path").type("LIST").needed();
  list.add("--sequenced", options.sequenced, "clones that are sequenced already, kept where possible").type("LIST");
  list.add("--contigs", options.which_clusters,
           "0 all contigs, 1 those with clones of the lists, 2 those with sequenced clones")
      .limits(0, 2)
      .shown_default("1");
  list.add("--largest-part", options.use_maximal_subcluster,
           "where a contig isn't connected at the cutoff, go on with its largest part");
  list.add("--raise-cutoff", options.increase_cutoff, "raise the cutoff until few clones stray from the path");
  add_library_of_run_option(list, options);
  list.add("--net", options.net, "net of the run").type("NET").shown_default("by its run.json");
  add_metric_options(list, options);
  add_contig_file_options(list, options);
  add_ordering_options(list, options);
  add_common_options(list, options);
}

static retained_path_options wishes_of(const command_options &options) {
  retained_path_options wanted;
  wanted.old_MTP = options.old_MTP;
  wanted.sequenced = options.sequenced;
  wanted.no_sequenced = options.sequenced.empty();
  if (options.which_clusters)
    wanted.clusters = static_cast<retained_clusters>(*options.which_clusters);
  return wanted;
}

static exit_status retain_clones(project_state &session, const command_options &options, run_record &record,
                                 const command_streams &streams) {
  record.stage_start("retain");
  class_contig_adapt_clust clust(session.signif(), files_of_contigs(session, options));
  // Given clusters are tested as they are: none is too large, too small or too wide, and the ladder has one step.
  constexpr std::int32_t any_size = 5000, smallest = 2, any_width = 5000;
  clust.main_parameters_set(any_size, smallest, any_width, 0, 0, false, 5, 5);
  clust.detail_control_set(!options.no_ordering);
  clust.print_all_dist_on_set(!options.no_pair_tables);
  clust.given_clusters_answers_set(options.use_maximal_subcluster, options.increase_cutoff);
  const bool begun = clust.process_clusters_without_adaptive_clustering_Retain_run(wishes_of(options));
  record.stage_end();
  if (!begun || !clust.result().completed)
    return stopped_or_failed(session);
  record.output_set("run_folder", clust.result().folder);
  streams.people(fmt::format("Contigs analysed again: {}. The path that keeps old clones: list_of_clones_MTP_new.tsv; "
                             "old clones off it: list_of_clones_from_allow_to_use_not_used.tsv.",
                             clust.result().clusters.size()));
  streams.results(clust.result().folder.string());
  return exit_status::done;
}

exit_status retain_command(project_state &session, const command_options &given, const command_streams &streams) {
  command_options options = given;
  const run_source source = source_of_run(session, options);
  if (source.folder.empty())
    return exit_status::run_failed;
  if (source.net.empty())
    throw usage_error("no record of " + options.run.string() + " names a net; give one with --net");
  run_record record = record_in_folder(session, options);
  exit_status status = load_run(session, options, source, record, streams);
  if (status != exit_status::done)
    return status;
  for (const fs::path &file : {source.net, options.old_MTP, options.sequenced})
    if (!file.empty())
      record.input_add(file);
  status = load_net(session, source.net, streams);
  if (status == exit_status::done)
    status = retain_clones(session, options, record, streams);
  return finish_record(record, status);
}

// ---- report --------------------------------------------------------------------------------------------------------

void report_options(option_list &list, command_options &options) {
  add_run_argument(list, options);
  add_output_options(list, options, "DIR");
  list.add("--list", options.list, "only these clones in the tables by clone").type("LIST");
  list.add("--new-names", options.new_names, "new names of contigs: name, tab, new name").type("FILE");
  list.add("--spaces", options.separated_by_spaces, "blanks in place of commas between the clones of a marker");
  add_library_of_run_option(list, options);
  list.add("--markers", options.markers, "markers of clones, or clones of markers").type("FILE");
  list.add("--positions", options.positions, "positions of markers: marker, tab, position").type("FILE");
  add_common_options(list, options);
}

// The clones of the tables by clone: those of --list, else all.
static bool read_list_of_report(project_state &session, const command_options &options, number_list &list) {
  if (options.list.empty()) {
    list = number_list::range(1, session.database().total_number_of_clones_get());
    return true;
  }
  std::string name;
  return read_list(session, options.list, list, name);
}

static exit_status print_report(project_state &session, const command_options &options,
                                const command_streams &streams) {
  class_FPCto_import &registry = *session.database().contigs();
  class_markers &markers = session.database().markers();
  const bool with_markers = markers.total_number_of_markers_get() > 0;
  number_list list;
  if (!read_list_of_report(session, options, list) ||
      (!options.new_names.empty() && !registry.rename_contigs(options.new_names)) ||
      (!options.positions.empty() &&
       !markers.read_file_with_marker_position(session.frame(), session.database(), options.positions)))
    return stopped_or_failed(session);
  if (with_markers)
    registry.contig_user_remark_make_based_on_information_for_clones();
  registry.print_N50_statistics();
  registry.print_coordinates_of_clones(list, options.out / "coordinates_of_clones.txt");
  registry.print_cluster_name_for_clones(list);
  registry.print_FPC_clusters();
  print_FPC_like_file_run(session.frame(), session.settings(), session.database(), registry,
                          options.out / "FPC_like.fpc", options.out / "FPC_like_pp.fpc", options.out, true);
  if (with_markers) {
    if (!registry.print_positon_of_markers())
      return exit_status::run_failed;
    registry.PrintClonesForMarkers(options.separated_by_spaces ? marker_separator::blank : marker_separator::ask);
  }
  streams.results(options.out.string());
  return session.frame().stop_requested_get() ? exit_status::stopped : exit_status::done;
}

exit_status report_command(project_state &session, const command_options &given, const command_streams &streams) {
  command_options options = given;
  const run_source source = source_of_run(session, options);
  if (source.folder.empty())
    return exit_status::run_failed;
  run_record record = record_in_folder(session, options);
  exit_status status = load_run(session, options, source, record, streams);
  if (status != exit_status::done)
    return status;
  record.stage_start("report");
  status = print_report(session, options, streams);
  record.stage_end();
  return finish_record(record, status);
}

} // namespace orb
