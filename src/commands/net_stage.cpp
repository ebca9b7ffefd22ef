#include "commands/net_stage.h"

#include <algorithm>
#include <fmt/format.h>

#include "commands/library_stage.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "reports/contig_summary_text.h"

namespace orb {

namespace fs = std::filesystem;

void check_revision_reports(const project_state &session, const command_options &options, const fs::path &folder) {
  for (const std::string &name : QQ_report_names(session.settings(), !options.no_overlaps, !options.no_clones))
    check_output(folder / name, options.force);
}

// The record of a net says which library, metric and cutoff it was made with.
static bool net_fits_record(project_state &session, const fs::path &file, const nlohmann::json &record) {
  const nlohmann::json library = record.value("library", nlohmann::json::object());
  const std::string recorded = library.is_object() ? library.value("checksum", "") : "";
  const std::string own = checksum_text(library_checksum(session.database()));
  if (recorded.empty() || recorded == own)
    return true;
  session.frame().message(fmt::format("Net {} was made from another library: its record names checksum {}, the library "
                                      "has {}.\r\nNet of significant overlaps was not loaded.",
                                      file.string(), recorded, own));
  session.frame().data_failed_set();
  return false;
}

static void settle_metric_of_net(project_state &session, const std::optional<nlohmann::json> &record,
                                 const command_streams &streams) {
  project_settings &settings = session.settings();
  const nlohmann::json parameters = record ? record->value("parameters", nlohmann::json::object()) : nlohmann::json();
  const std::string metric = parameters.is_object() ? parameters.value("metric", "") : "";
  const std::string own = class_clone_dist_general::name_of_cutoff_distance(settings.distance_index);
  if (!metric.empty() && metric != own) {
    settings.same_metric_as_net = false;
    streams.people("The net was made with " + metric + "; its overlaps are scored again with " + own + ".");
  }
  const bool known = parameters.is_object() && parameters.contains("cutoff") && parameters["cutoff"].is_number();
  const double smallest = session.signif().net().minimal_edge_value_get();
  const bool below = known ? settings.cutoff < parameters["cutoff"].get<double>() : settings.cutoff < smallest;
  if (below && settings.same_metric_as_net)
    session.frame().message("NB! Selected cutoff level " + number_text(settings.cutoff, 4) + "<" +
                            number_text(smallest, 4) +
                            " =Min(edge_value)\rin the loaded net of significant clone overlaps:\r" +
                            session.signif().net().title_of_net_get());
}

exit_status load_net(project_state &session, const fs::path &file, const command_streams &streams) {
  std::error_code failed;
  if (!fs::exists(file, failed))
    throw file_error("can't open", file, "No such file or directory");
  const auto record = run_record_beside(file);
  if (record && !net_fits_record(session, file, *record))
    return exit_status::run_failed;
  bool ok = false;
  session.signif().read_file_with_significant_connections(file, "", true, false, ok);
  if (session.frame().stop_requested_get())
    return exit_status::stopped;
  if (!ok)
    return exit_status::run_failed;
  settle_metric_of_net(session, record, streams);
  return exit_status::done;
}

exit_status make_net(project_state &session, const fs::path &out, run_record &record, const command_streams &streams) {
  process_frame &frame = session.frame();
  record.stage_start("net");
  net_creation_summary summary;
  if (!session.signif().create_net_in_memory(summary))
    return frame.was_stopped() ? exit_status::stopped : exit_status::run_failed;
  save_net(session, out, record, streams);
  record.stage_end();
  return exit_status::done;
}

void save_net(project_state &session, const fs::path &out, run_record &record, const command_streams &streams) {
  class_net &net = session.signif().net();
  net.title_of_net_set(out.stem().string());
  net.FullFileNameSet(out.string());
  net.save_net_type(session.frame(), out);
  session.frame().all_panels_reset();
  std::int32_t most = 0;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    most = std::max(most, net.number_of_edges_for_vertex_total_get(v));
  record.result_set("overlaps", net.number_of_edges_get() / 2);
  streams.people(fmt::format("Overlaps: {} between {} clones, at most {} of one clone.",
                             number_text_thousands(net.number_of_edges_get() / 2),
                             number_text_thousands(net.number_of_vertices_get()), most));
}

double additional_cutoff(const project_state &session, const command_options &options) {
  const double current = session.settings().cutoff;
  if (options.additional_cutoff.empty())
    return current + 10;
  const std::string refused = QQ_additional_cutoff_refused(options.additional_cutoff, current);
  if (!refused.empty())
    throw usage_error("--additional-cutoff: " + refused);
  double value = 0;
  number_parse(options.additional_cutoff, value);
  return value;
}

exit_status revise_net(project_state &session, const command_options &options, const fs::path &out, run_record &record,
                       const command_streams &streams) {
  record.stage_start("revision");
  class_clone_net_signif::revision_options wanted;
  wanted.q_overlaps = !options.no_overlaps;
  wanted.q_clones = !options.no_clones;
  wanted.max_rank = options.rank;
  wanted.additional_cutoff = number_text_shortest(additional_cutoff(session, options));
  wanted.file = out;
  class_clone_net_signif::revision_summary summary;
  const bool revised = session.signif().revise_connections(wanted, summary);
  if (!revised || !summary.completed)
    return stopped_or_failed(session);
  record.stage_end();
  record.result_set("q_overlaps", summary.n_q_overlaps);
  record.result_set("q_clones", summary.n_q_clones);
  streams.people(fmt::format("Removed as false: {} Q-overlaps, {} Q-clones.",
                             number_text_thousands(summary.n_q_overlaps), number_text_thousands(summary.n_q_clones)));
  return exit_status::done;
}

void record_contig_options(const command_options &options, run_record &record) {
  record.parameter_set("max_clones", options.max_clones);
  record.parameter_set("min_size", options.min_size);
  record.parameter_set("max_width", options.max_width);
  record.parameter_set("step", options.step);
  record.parameter_set("steps", options.steps);
  record.parameter_set("ordering", !options.no_ordering);
  record.parameter_set("pair_tables", !options.no_pair_tables);
  record.parameter_set("drawings", !options.no_drawings);
  if (!options.no_drawings && options.format != "net")
    record.parameter_set("drawing_format", options.format);
  if (!options.no_ordering)
    record_ordering_options(options, record);
}

void record_ordering_options(const command_options &options, run_record &record) {
  if (options.ordering_steps > 0)
    record.parameter_set("ordering_steps", options.ordering_steps);
  else
    record.parameter_set("ordering_seconds", options.ordering_seconds);
  record.parameter_set("jackknife", options.jackknife);
  record.parameter_set("jackknife_alpha", options.jackknife_alpha);
}

ordering_options ordering_options_of(const command_options &options) {
  ordering_options wanted;
  wanted.seconds = options.ordering_seconds;
  wanted.steps = options.ordering_steps;
  wanted.t_JK_N = options.jackknife;
  wanted.t_JK_alpha = options.jackknife_alpha;
  return wanted;
}

void set_drawing_format(const command_options &options, drawing_options &drawing) {
  drawing.write_pajek = options.format != "graphml";
  drawing.write_graphml = options.format != "net";
}

contig_files files_of_contigs(project_state &session, const command_options &options) {
  contig_files files;
  files.pair_tables = !options.no_pair_tables;
  files.drawings = !options.no_drawings;
  set_drawing_format(options, files.drawing);
  files.ordering = ordering_options_of(options);
  if (!files.pair_tables)
    return files;
  question asked;
  asked.text = "From the net only?";
  asked.by_default = asked.to_go_on = answer::no;
  files.pairs = session.frame().yes(asked) ? pairs_of_table::from_net_only : pairs_of_table::all;
  return files;
}

exit_status make_contigs(project_state &session, const command_options &options, run_record &record,
                         const command_streams &streams) {
  record.stage_start("contigs");
  class_contig_adapt_clust clust(session.signif(), files_of_contigs(session, options));
  clust.main_parameters_set(options.max_clones, options.min_size, options.max_width, options.step, options.steps, false,
                            2, 3);
  clust.detail_control_set(!options.no_ordering);
  clust.print_all_dist_on_set(!options.no_pair_tables);
  const fs::path working_folder = session.frame().working_folder_get();
  clust.adaptive_clustering_all_run(session.database());
  session.frame().working_folder_set(working_folder);
  record.stage_end();
  const adapt_clust_result &result = clust.result();
  if (!result.folder.empty())
    record.output_set("run_folder", result.folder);
  record_contigs(contig_figures_of(result, options.min_size), record);
  if (!result.completed) {
    if (!result.folder.empty())
      streams.results(result.folder.string());
    return stopped_or_failed(session);
  }
  streams.people(text_of_contigs(contig_figures_of(result, options.min_size)));
  streams.results(result.folder.string());
  return exit_status::done;
}

} // namespace orb
