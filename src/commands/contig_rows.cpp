// Contigs: adaptive clustering, runs read back, the re-analysis with an older tiling path.
#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "commands/command_table.h"
#include "commands/contig_parameters.h"
#include "commands/row_steps.h"
#include "contigs/class_contig_adapt_clust.h"
#include "contigs/run_reports.h"
#include "database/class_DB_of_clones.h"
#include "frame/numbers.h"
#include "reports/contig_summary_text.h"

namespace orb {

namespace fs = std::filesystem;

// ---- shared parameters ----

void describe_ordering(parameter_list &list, ordering_parameters &p) {
  const char *group = "Order of the clones";
  list.add("ordering-seconds", p.seconds, "limit of each search for an order").limits(0, 1e6).in_group(group);
  list.add("ordering-steps", p.steps, "limit by steps in its place, the same on every machine")
      .limits(0, 1e12)
      .unset("none")
      .in_group(group);
  list.add("jackknife", p.jackknife, "runs with bands left out by chance").limits(0, 10000).in_group(group);
  list.add("jackknife-alpha", p.jackknife_alpha, "chance of leaving a band out").limits(0, 0.8).in_group(group);
}

ordering_options ordering_of(const ordering_parameters &p) {
  ordering_options wanted;
  wanted.seconds = p.seconds;
  wanted.steps = p.steps;
  wanted.t_JK_N = p.jackknife;
  wanted.t_JK_alpha = p.jackknife_alpha;
  return wanted;
}

void put_ordering(const ordering_parameters &p, command_result &result) {
  if (p.steps > 0)
    result.parameter("ordering_steps", p.steps);
  else
    result.parameter("ordering_seconds", p.seconds);
  result.parameter("jackknife", p.jackknife);
  result.parameter("jackknife_alpha", p.jackknife_alpha);
}

void set_drawing_format(const std::string &format, drawing_options &drawing) {
  drawing.write_pajek = format != "graphml";
  drawing.write_graphml = format != "net";
}

void describe_contig_files(parameter_list &list, contig_file_parameters &p) {
  const char *group = "Files of a contig";
  list.add("no-ordering", p.no_ordering, "no ordering by jackknife").in_group(group);
  list.add("no-pair-tables", p.no_pair_tables, "no tables of pairs").in_group(group);
  list.add("from-net-only", p.from_net_only, "tables of pairs hold the pairs of the net only")
      .asked_else("no")
      .in_group(group);
  list.add("no-drawings", p.no_drawings, "no drawings of nets").in_group(group);
  list.add("drawing-format", p.drawing_format, "of drawings: net, graphml, or both")
      .one_of({"net", "graphml", "both"})
      .in_group(group);
  describe_drawing_panel(list, p.drawing);
  describe_ordering(list, p.ordering);
  describe_lengths(list, p.lengths);
}

contig_files files_of_contigs(process_frame &frame, const contig_file_parameters &p) {
  contig_files files;
  files.pair_tables = !p.no_pair_tables;
  files.drawings = !p.no_drawings;
  files.drawing = p.drawing;
  set_drawing_format(p.drawing_format, files.drawing);
  files.ordering = ordering_of(p.ordering);
  if (!files.pair_tables)
    return files;
  question asked;
  asked.text = "From the net only?";
  asked.by_default = asked.to_go_on = answer::no;
  files.pairs =
      (p.from_net_only ? *p.from_net_only : frame.yes(asked)) ? pairs_of_table::from_net_only : pairs_of_table::all;
  return files;
}

void put_contig_files(const contig_file_parameters &p, command_result &result) {
  result.parameter("ordering", !p.no_ordering);
  result.parameter("pair_tables", !p.no_pair_tables);
  result.parameter("drawings", !p.no_drawings);
  if (!p.no_drawings && p.drawing_format != "net")
    result.parameter("drawing_format", p.drawing_format);
  if (!p.no_ordering)
    put_ordering(p.ordering, result);
}

namespace {

// ---- contigs.assemble ----

// The form of adaptive clustering, with its own defaults.
struct assemble_parameters {
  static constexpr std::int32_t any_number = std::numeric_limits<std::int32_t>::max();
  fs::path out, folder_to_continue;
  std::int32_t n_clones_max = 1200, minimal_cluster_size = 6, width_max = 1, n_steps = 6;
  double step_cutoff = 3;
  std::string method = "own";
  bool by_layout() const { return method == "layout"; }
  bool excluding_branching = false;
  std::int32_t rank_relative_to_diam_path = 2, minimal_branch_size = 3;
  std::optional<bool> browse;
  contig_file_parameters files;
};

void describe_assemble(parameter_list &list, assemble_parameters &p) {
  constexpr double most = 2000000000;
  const char *group = "Contigs";
  list.add("out", p.out, "folder in which the run's folder is made").type("DIR");
  list.add("continue", p.folder_to_continue,
           "folder of the run in place of a new one; one where a run of the same library, net and parameters was "
           "stopped is gone on with")
      .type("RUN");
  list.add("method", p.method,
           "own: clusters are cut at rising cutoffs; layout: all overlaps lay the clones out, and ends are joined by "
           "their end stretches")
      .one_of({"own", "layout"})
      .in_group(group);
  list.add("max-clones", p.n_clones_max, "a larger cluster is cut")
      .captioned("N clones in cluster >")
      .limits(1, most)
      .word_for("none", assemble_parameters::any_number)
      .in_group(group);
  list.add("min-size", p.minimal_cluster_size, "a smaller cluster is a heap")
      .captioned("Minimal cluster size")
      .limits(0, most)
      .in_group(group);
  list.add("max-width", p.width_max, "a wider cluster is cut")
      .captioned("Width of net >")
      .limits(0, most)
      .in_group(group);
  list.add("step", p.step_cutoff, "rise of the cutoff a level")
      .captioned("Step size = 10^")
      .limits(0, 1e6)
      .in_group(group);
  list.add("steps", p.n_steps, "levels above the base").captioned("N steps").limits(0, 10000).in_group(group);
  describe_contig_files(list, p.files);
  describe_browse(list, p.browse);
}

void put_assemble(const assemble_parameters &p, command_result &result) {
  if (p.by_layout()) {
    result.parameter("method", p.method);
    result.parameter("min_size", p.minimal_cluster_size);
    contig_file_parameters files = p.files;
    files.no_ordering = true;
    return put_contig_files(files, result);
  }
  if (p.n_clones_max == assemble_parameters::any_number)
    result.parameter("max_clones", std::string("none"));
  else
    result.parameter("max_clones", p.n_clones_max);
  result.parameter("min_size", p.minimal_cluster_size);
  result.parameter("max_width", p.width_max);
  result.parameter("step", p.step_cutoff);
  result.parameter("steps", p.n_steps);
  put_contig_files(p.files, result);
}

void put_figures(const contig_figures &figures, command_result &result) {
  result.figure("contigs", figures.contigs.size());
  result.figure("clones_in_contigs", figures.n_clones_in_contigs);
  result.figure("heaps", figures.n_heaps);
  result.figure("clones_in_heaps", figures.n_clones_in_heaps);
  result.figure("clones_alone", figures.n_clones_alone);
  result.figure("N50_bands", figures.N50_bands);
  result.figure("contigs_in_windows", figures.windows.n_contigs);
  result.figure("window_joins", figures.windows.n_joins);
  result.figure("weak_window_joins", figures.windows.n_weak_joins);
}

void check_assemble(const project_state &, const parts_there &there, const assemble_parameters &p) {
  if (p.by_layout() && !there.has(project_part::net))
    throw usage_error("--method layout needs a net of overlaps");
  check_lengths(p.files.lengths);
}

void put_layout(const layout_figures &laid, command_result &result) {
  result.figure("positions_of_bands", laid.n_positions);
  result.figure("cutoff_of_layout", laid.cutoff);
  result.figure("suspects", laid.n_suspects);
  result.figure("misfits", laid.n_misfits);
  result.figure("dropped_overlaps", laid.n_dropped);
  result.figure("joins", laid.n_joins);
  result.figure("weak_joins", laid.n_weak_joins);
}

std::string text_of_layout(const layout_figures &laid) {
  return fmt::format(
      "\nBands take {:.0f} positions; overlaps count from a score of {} at that.\n"
      "Left out: {} suspects (clones of two places), {} clones and {} overlaps that contradict the layout.\n"
      "Joins of contigs: {}, {} of them carried by one side or by two clones only.\n"
      "Why, clone by clone: layout_doubts.txt, layout_suspects.txt, layout_joins.txt, "
      "layout_dropped_overlaps.txt.\n",
      laid.n_positions, number_text(laid.cutoff, 2), laid.n_suspects, laid.n_misfits, laid.n_dropped, laid.n_joins,
      laid.n_weak_joins);
}

// A net that was made by another scale serves, but hides what it left out.
void tell_of_another_net(project_state &project) {
  const band_scale scale = band_scale_of(clone_bands(project.database()), project.settings().seed);
  const std::optional<overlap_rule> made_by = project.rule_of_net();
  const std::int32_t n_bands = project.database().total_number_of_different_bands_FPC_get();
  const bool same = made_by && made_by->distance_index == class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get() &&
                    std::abs(made_by->cutoff - cutoff_of_net(scale)) < 0.01 && n_bands == positions_of_library(scale);
  if (same)
    return;
  project.frame().note(
      fmt::format("The layout would make its net by Sulston_1988 at cutoff {} with {} positions of bands; it takes the "
                  "net given{}.",
                  number_text(cutoff_of_net(scale), 2), positions_of_library(scale),
                  made_by ? fmt::format(", which was made by {} at cutoff {} with {}",
                                        class_clone_dist_general::name_of_cutoff_distance(made_by->distance_index),
                                        number_text(made_by->cutoff, 2), n_bands)
                          : std::string(", of which it isn't known how it was made")));
}

command_result run_assemble(project_state &project, const assemble_parameters &p) {
  work_in(project, p.out);
  answer_browse_ahead(project, p.browse);
  const auto band_length = answer_band_lengths_ahead(project, p.files.lengths);
  class_contig_adapt_clust clust(project.signif(), project.rule(), files_of_contigs(project.frame(), p.files));
  clust.main_parameters_set(p.n_clones_max, p.minimal_cluster_size, p.width_max, p.step_cutoff, p.n_steps,
                            p.excluding_branching, p.rank_relative_to_diam_path, p.minimal_branch_size);
  clust.detail_control_set(!p.files.no_ordering);
  clust.print_all_dist_on_set(!p.files.no_pair_tables);
  clust.folder_to_continue_set(p.folder_to_continue);
  if (p.by_layout()) {
    tell_of_another_net(project);
    clust.layout_all_run(project.database());
  } else {
    clust.adaptive_clustering_all_run(project.database());
  }
  const adapt_clust_result &found = clust.result();
  contig_figures figures = contig_figures_of(found, p.minimal_cluster_size);
  figures.ordering = !p.files.no_ordering && !p.by_layout();
  command_result result = result_of(project, found.completed);
  put_assemble(p, result);
  put_figures(figures, result);
  if (p.by_layout())
    put_layout(clust.laid(), result);
  if (!found.folder.empty()) {
    result.file("run_folder", found.folder);
    result.lines.push_back(found.folder.string());
    project.loaded(project_part::contigs, {found.folder, "contigs.assemble"});
  }
  if (found.completed) {
    result.summary = fmt::format("{} contigs with {} clones", figures.contigs.size(),
                                 number_text_thousands(figures.n_clones_in_contigs));
    result.findings = text_of_contigs(figures, *band_length);
    if (p.by_layout())
      result.findings += text_of_layout(clust.laid());
    result.figure("band_length", *band_length);
  }
  return result;
}

// ---- contigs.separate ----

struct separate_parameters {
  std::string cluster;
  std::optional<double> cutoff;
  fs::path out;
};

void describe_separate(parameter_list &list, separate_parameters &p) {
  list.add("cluster", p.cluster, "the cluster that is to be cut").needed();
  list.add("cutoff", p.cutoff, "where the cutting begins").limits(-1e9, 1e9).unset("cutoff of the rule");
  list.add("out", p.out, "folder in which the run's folder is made").type("DIR");
}

void check_separate(const project_state &project, const parts_there &, const separate_parameters &p) {
  if (!project.has(project_part::contigs)) // they are to be loaded by a step before
    return;
  cluster_id id = 0;
  bool not_found = false;
  project.database().contigs()->search_for_cluster(p.cluster, id, not_found);
  if (not_found)
    throw usage_error("there is no cluster " + p.cluster);
}

// The clones of a cluster as the only one of a fresh registry, where its parts find free names. The contigs that were
// loaded give way to those that are found.
void keep_only(class_DB_of_clones &database, process_frame &frame, const project_settings &settings,
               const std::string &cluster) {
  const class_FPCto_import &old = *database.contigs();
  cluster_id id = 0;
  bool not_found = false;
  old.search_for_cluster(cluster, id, not_found);
  const auto clones = old.clones_of_cluster(id);
  const number_list list(std::vector<clone_number>(clones.begin(), clones.end()));
  const std::string long_name = old.cluster_information_get(id).FPC_name;
  auto fresh = std::make_shared<class_FPCto_import>(frame, settings, database);
  fresh->clear_all_run(0, false);
  fresh->add_new_cluster(list, "cl_1", long_name.empty() ? cluster : long_name, false);
  fresh->add_new_cluster_finish();
  database.contigs_set(std::move(fresh));
}

// A cluster of the registry through adaptive clustering with its standard settings.
command_result run_separate(project_state &project, const separate_parameters &p) {
  work_in(project, p.out);
  keep_only(project.database(), project.frame(), project.settings(), p.cluster);
  const assemble_parameters standard;
  contig_file_parameters files;
  files.no_pair_tables = true;
  class_contig_adapt_clust clust(project.signif(), at_cutoff(project.rule(), p.cutoff.value_or(project.rule().cutoff)),
                                 files_of_contigs(project.frame(), files));
  clust.main_parameters_set(standard.n_clones_max, standard.minimal_cluster_size, standard.width_max,
                            standard.step_cutoff, standard.n_steps, standard.excluding_branching,
                            standard.rank_relative_to_diam_path, standard.minimal_branch_size);
  clust.detail_control_set(false);
  clust.print_all_dist_on_set(false);
  clust.adaptive_clustering_run({"", "cl_1"}, {"", p.cluster}, 1, project.database());
  const adapt_clust_result &found = clust.result();
  command_result result = result_of(project, found.completed);
  put_figures(contig_figures_of(found, standard.minimal_cluster_size), result);
  if (!found.folder.empty()) {
    result.file("run_folder", found.folder);
    result.lines.push_back(found.folder.string());
    project.loaded(project_part::contigs, {found.folder, "contigs.separate"});
  }
  return result;
}

// ---- contigs.load, contigs.load_folder ----

struct run_parameters {
  fs::path folder;
  std::optional<bool> test;
};

void describe_load(parameter_list &list, run_parameters &p) {
  list.add("folder", p.folder, "folder of a run, or of an assembly").type("RUN").needed();
}

void check_folder(const project_state &, const parts_there &, const run_parameters &p) {
  check_input(p.folder);
}

command_result run_load(project_state &project, const run_parameters &p) {
  const fs::path folder = folder_of_run(project, p.folder);
  if (folder.empty())
    return command_result::ended(exit_status::run_failed);
  const load_end end = load_run(project, folder, "contigs.load");
  if (end != load_end::loaded)
    return result_of(end);
  command_result result;
  result.inputs.push_back(folder / "report_clusters.txt");
  project.frame().note(fmt::format("Run: {}, {} clusters.", folder.string(),
                                   project.database().contigs()->current_list_of_clusters_in_use_get().count()));
  return result;
}

void describe_load_folder(parameter_list &list, run_parameters &p) {
  list.add("folder", p.folder, "folder of lists of clones, each a cluster; without it a dialog asks").type("DIR");
  list.add("test", p.test, "lists with clones of another list aren't taken").asked_else("no");
}

command_result run_load_folder(project_state &project, const run_parameters &p) {
  return result_of(load_folder_of_clusters(project, p.folder, "contigs.load_folder", p.test));
}

// ---- contigs.test ----

struct test_parameters {
  fs::path out;
  std::optional<double> check_cutoff;
  std::optional<bool> use_maximal_subcluster, increase_cutoff, browse;
  contig_file_parameters files;
};

void describe_test(parameter_list &list, test_parameters &p) {
  list.add("out", p.out, "folder in which the run's folder is made").type("DIR");
  list.add("check-cutoff", p.check_cutoff, "at which cutoff it is measured how far clones lie from the tiling path")
      .limits(-1e9, 1e9)
      .unset("cutoff of the rule");
  list.add("largest-part", p.use_maximal_subcluster,
           "where a contig isn't connected at the cutoff, go on with its largest part")
      .asked_else("no");
  list.add("raise-cutoff", p.increase_cutoff, "raise the cutoff until few clones stray from the path").asked_else("no");
  describe_contig_files(list, p.files);
  describe_browse(list, p.browse);
}

void check_test(const project_state &, const parts_there &, const test_parameters &p) {
  check_lengths(p.files.lengths);
}

command_result run_test(project_state &project, const test_parameters &p) {
  work_in(project, p.out);
  answer_browse_ahead(project, p.browse);
  const auto band_length = answer_band_lengths_ahead(project, p.files.lengths);
  class_contig_adapt_clust clust(project.signif(), project.rule(), files_of_contigs(project.frame(), p.files));
  if (p.check_cutoff)
    clust.check_cutoff_set(*p.check_cutoff);
  clust.detail_control_set(!p.files.no_ordering);
  clust.print_all_dist_on_set(!p.files.no_pair_tables);
  clust.given_clusters_answers_set(p.use_maximal_subcluster, p.increase_cutoff);
  clust.test_all_FPC_contigs(false);
  const adapt_clust_result &found = clust.result();
  command_result result = result_of(project, found.completed);
  if (!found.folder.empty())
    result.file("run_folder", found.folder);
  if (!found.completed)
    return result;
  const contig_figures figures = contig_figures_of(found, 2);
  put_contig_files(p.files, result);
  put_figures(figures, result);
  std::int32_t n_apart = 0;
  for (const contig_summary &cluster : found.clusters)
    n_apart += cluster.remark == remark_not_connected;
  result.figure("not_connected", n_apart);
  result.summary = fmt::format("{} contigs tested, {} of them not connected", found.clusters.size(), n_apart);
  result.findings = *band_length;
  result.lines.push_back(found.folder.string());
  project.loaded(project_part::contigs, {found.folder, "contigs.test"});
  return result;
}

// ---- contigs.retain ----

struct retain_parameters {
  fs::path out, old_MTP, sequenced;
  std::optional<std::int32_t> which_clusters;
  std::optional<bool> use_maximal_subcluster, increase_cutoff;
  contig_file_parameters files;
};

void describe_retain(parameter_list &list, retain_parameters &p) {
  list.add("out", p.out, "folder in which the run's folder is made").type("DIR");
  list.add("old-mtp", p.old_MTP, "clones of the old tiling path").type("LIST").needed();
  list.add("sequenced", p.sequenced, "clones that are sequenced already, kept where possible").type("LIST");
  list.add("contigs", p.which_clusters,
           "0 all contigs, 1 those with clones of the lists, 2 those with sequenced clones")
      .limits(0, 2)
      .asked_else("1");
  list.add("largest-part", p.use_maximal_subcluster,
           "where a contig isn't connected at the cutoff, go on with its largest part")
      .asked_else("no");
  list.add("raise-cutoff", p.increase_cutoff, "raise the cutoff until few clones stray from the path").asked_else("no");
  describe_contig_files(list, p.files);
}

void check_retain(const project_state &, const parts_there &, const retain_parameters &p) {
  check_input(p.old_MTP);
  check_input(p.sequenced);
  check_lengths(p.files.lengths);
}

retained_path_options wishes_of(const retain_parameters &p) {
  retained_path_options wanted;
  wanted.old_MTP = p.old_MTP;
  wanted.sequenced = p.sequenced;
  wanted.no_sequenced = p.sequenced.empty();
  if (p.which_clusters)
    wanted.clusters = static_cast<retained_clusters>(*p.which_clusters);
  return wanted;
}

command_result run_retain(project_state &project, const retain_parameters &p) {
  work_in(project, p.out);
  const auto band_length = answer_band_lengths_ahead(project, p.files.lengths);
  class_contig_adapt_clust clust(project.signif(), project.rule(), files_of_contigs(project.frame(), p.files));
  clust.detail_control_set(!p.files.no_ordering);
  clust.print_all_dist_on_set(!p.files.no_pair_tables);
  clust.given_clusters_answers_set(p.use_maximal_subcluster, p.increase_cutoff);
  const bool begun = clust.test_all_FPC_contigs(true, wishes_of(p));
  const adapt_clust_result &found = clust.result();
  command_result result = result_of(project, begun && found.completed);
  for (const fs::path &file : {p.old_MTP, p.sequenced})
    if (!file.empty())
      result.inputs.push_back(file);
  if (!found.folder.empty())
    result.file("run_folder", found.folder);
  if (result.completed) {
    result.summary = fmt::format("{} contigs analysed again", found.clusters.size());
    result.findings = "The path that keeps old clones: list_of_clones_MTP_new.tsv; old clones off it: "
                      "list_of_clones_from_allow_to_use_not_used.tsv.";
    if (!band_length->empty())
      result.findings += "\n" + *band_length;
    result.lines.push_back(found.folder.string());
  }
  return result;
}

} // namespace

void add_contig_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<assemble_parameters>("contigs.assemble")
                     .captioned("Adaptive clustering")
                     .purpose("cut the net into contigs by adaptive clustering")
                     .example("contigs.assemble out=results min-size=6")
                     .needs({part::library})
                     .makes({part::contigs})
                     .parameters(describe_assemble)
                     .checked_by(check_assemble)
                     .runs(run_assemble)
                     .row());
  rows.push_back(command_maker<separate_parameters>("contigs.separate")
                     .captioned("Separate a cluster")
                     .purpose("cut one cluster of the contigs that are loaded into contigs, by adaptive clustering")
                     .example("contigs.separate cluster=cl_12 cutoff=18 out=results")
                     .needs({part::library, part::contigs})
                     .makes({part::contigs})
                     .parameters(describe_separate)
                     .checked_by(check_separate)
                     .runs(run_separate)
                     .row());
  rows.push_back(command_maker<run_parameters>("contigs.load")
                     .captioned("Load a run")
                     .purpose("read the contigs of a finished run back")
                     .example("contigs.load folder=results")
                     .needs({part::library})
                     .makes({part::contigs})
                     .parameters(describe_load)
                     .checked_by(check_folder)
                     .runs(run_load)
                     .row());
  rows.push_back(command_maker<run_parameters>("contigs.load_folder")
                     .captioned("Read folder of clusters")
                     .purpose("a folder of lists of clones, each a cluster")
                     .example("contigs.load_folder folder=lists")
                     .needs({part::library})
                     .makes({part::contigs})
                     .parameters(describe_load_folder)
                     .checked_by(check_folder)
                     .runs(run_load_folder)
                     .row());
  rows.push_back(command_maker<test_parameters>("contigs.test")
                     .captioned("Test of given contigs")
                     .purpose("judge the contigs that are loaded as they are: topology, tiling path, and check at "
                              "another cutoff")
                     .example("contigs.test check-cutoff=12 out=tested")
                     .needs({part::library, part::contigs})
                     .parameters(describe_test)
                     .checked_by(check_test)
                     .runs(run_test)
                     .row());
  rows.push_back(command_maker<retain_parameters>("contigs.retain")
                     .captioned("Re-analysis of contigs")
                     .purpose("analyse the contigs again, keeping an older tiling path")
                     .example("contigs.retain old-mtp=old_path.txt out=retained")
                     .needs({part::library, part::net, part::contigs})
                     .parameters(describe_retain)
                     .checked_by(check_retain)
                     .runs(run_retain)
                     .row());
}

} // namespace orb
