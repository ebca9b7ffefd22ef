// Contigs that are there already judged as they are: by themselves, and with an older tiling path kept.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/contig_parameters.h"
#include "commands/row_steps.h"
#include "contigs/class_contig_adapt_clust.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// What is asked where a contig that is given isn't as the cutoff would make it; unset: asked.
struct given_cluster_answers {
  std::optional<bool> use_maximal_subcluster, increase_cutoff;
};

void describe_given_clusters(parameter_list &list, given_cluster_answers &p) {
  list.add("largest-part", p.use_maximal_subcluster,
           "where a contig isn't connected at the cutoff, go on with its largest part")
      .asked_else("no");
  list.add("raise-cutoff", p.increase_cutoff, "raise the cutoff until few clones stray from the path").asked_else("no");
}

// ---- contigs.test ----

struct test_parameters {
  fs::path out;
  std::optional<double> check_cutoff;
  given_cluster_answers answers;
  std::optional<bool> browse;
  contig_file_parameters files;
};

void describe_test(parameter_list &list, test_parameters &p) {
  list.add("out", p.out, "folder in which the run's folder is made").type("DIR");
  list.add("check-cutoff", p.check_cutoff, "at which cutoff it is measured how far clones lie from the tiling path")
      .limits(-1e9, 1e9)
      .unset("cutoff of the rule");
  describe_given_clusters(list, p.answers);
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
  clust.given_clusters_answers_set(p.answers.use_maximal_subcluster, p.answers.increase_cutoff);
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
  given_cluster_answers answers;
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
  describe_given_clusters(list, p.answers);
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
  clust.given_clusters_answers_set(p.answers.use_maximal_subcluster, p.answers.increase_cutoff);
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

void add_given_contig_rows(command_rows &rows) {
  using part = project_part;
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
