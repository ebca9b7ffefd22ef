// Contigs: adaptive clustering, runs read back, the re-analysis with an older tiling path.
#include <cmath>
#include <fmt/format.h>
#include <limits>

#include "commands/command_table.h"
#include "commands/contig_parameters.h"
#include "commands/row_steps.h"
#include "contigs/class_contig_adapt_clust.h"
#include "contigs/clone_layout.h"
#include "contigs/run_reports.h"
#include "database/class_DB_of_clones.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

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
  result.figure("clones_of_stacks", laid.n_of_stacks);
}

std::string text_of_layout(const layout_figures &laid) {
  const std::string of_stacks =
      laid.n_of_stacks == 0
          ? ""
          : fmt::format(
                "Clones with more than {} overlaps: {}; of these a part was looked at, so that the layout there is "
                "rough.\n",
                clone_layout::most_overlaps, number_text_thousands(laid.n_of_stacks));
  return fmt::format(
      "\nBands take {:.0f} positions; overlaps count from a score of {} at that.\n"
      "Left out: {} suspects (clones of two places), {} clones and {} overlaps that contradict the layout.\n"
      "Joins of contigs: {}, {} of them carried by one side or by two clones only.\n"
      "Why, clone by clone: layout_doubts.txt, layout_suspects.txt, layout_joins.txt, "
      "layout_dropped_overlaps.txt.\n{}",
      laid.n_positions, number_text(laid.cutoff, 2), laid.n_suspects, laid.n_misfits, laid.n_dropped, laid.n_joins,
      laid.n_weak_joins, of_stacks);
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
}

} // namespace orb
