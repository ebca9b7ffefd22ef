// A run by layout: the contigs found go through the same registry, files and reports as clusters do.
#include <algorithm>
#include <numeric>

#include "contigs/class_contig_adapt_clust.h"
#include "contigs/contig_reports.h"
#include "contigs/layout_reports.h"
#include "frame/numbers.h"

namespace orb {

namespace {

layout_figures figures_of(const layout_result &found) {
  layout_figures figures;
  figures.n_positions = found.scale.n_positions;
  figures.cutoff = found.scale.cutoff;
  figures.n_overlaps = found.n_overlaps;
  figures.n_overlaps_below = found.n_overlaps_below;
  figures.n_suspects = static_cast<std::int32_t>(found.suspects.size());
  figures.n_misfits = static_cast<std::int32_t>(found.misfits.size());
  figures.n_dropped = static_cast<std::int32_t>(found.dropped.size());
  figures.n_joins = static_cast<std::int32_t>(found.joins.size());
  figures.n_of_stacks = found.n_of_stacks;
  for (const layout_join &join : found.joins)
    figures.n_weak_joins += join.kind == join_kind::end_stretch && join.support != join_support::both_sides;
  return figures;
}

} // namespace

void class_contig_adapt_clust::layout_all_run(class_DB_of_clones &database) {
  process_frame &frame = signif_->context().frame;
  if (frame.process_is_running())
    return;
  new_registry(database)->clear_all_and_create_cluster_AllDB(2, "", "");
  in_a_process("Contigs by layout", "Contigs by layout are made", database, [&](run_reports &reports) {
    const clone_bands clones(database);
    const layout_progress progress{[&](const std::string &step) { frame.step_text_set(step + "..."); },
                                   [&](double) { return frame.goes_on(); }};
    const layout_result found = lay_contigs(
        clones, signif_->net(), {signif_->context().settings.seed, signif_->context().settings.threads}, progress);
    if (found.completed)
      laid_contigs_loop(found, reports, database);
  });
}

void class_contig_adapt_clust::laid_contigs_loop(const layout_result &found, run_reports &reports,
                                                 class_DB_of_clones &database) {
  process_frame &frame = signif_->context().frame;
  class_FPCto_import &registry = *database.contigs();
  laid_ = figures_of(found);
  std::vector<std::string> names;
  for (std::size_t k = 0; k < found.contigs.size(); ++k) {
    names.push_back("cl_" + std::to_string(k + 1));
    std::vector<clone_number> sorted(found.contigs[k].clones);
    std::sort(sorted.begin(), sorted.end());
    registry.add_new_cluster(number_list(sorted), names.back(),
                             "layout_" + std::to_string(sorted.size()) + "_of_" +
                                 std::to_string(database.total_number_of_clones_get()),
                             false);
  }
  for (std::size_t i = 0; i < found.alone.size(); ++i)
    registry.add_new_cluster({found.alone[i]}, "cl_" + std::to_string(names.size() + i + 1), "layout_alone", false);
  registry.add_new_cluster_finish();
  result_.n_clones_alone = static_cast<std::int32_t>(found.alone.size());
  print_layout_reports(database, found, names, reports.folder_contigs);
  reports.clones_in_MTP_details.line(header_of_MTP_details());
  progress_of_whole in_contigs(frame, database.total_number_of_clones_get());
  for (std::size_t k = 0; k < found.contigs.size() && !stopped(); ++k) {
    frame.step_text_set("Contig " + std::to_string(k + 1) + " of " + std::to_string(found.contigs.size()) + ": " +
                        names[k] + "...");
    cluster_test test;
    test.name = names[k];
    test_laid_contig(found.contigs[k], test, reports, registry);
    if (stopped())
      break;
    note_result(test, registry);
    in_contigs.add(test.n_clones);
    frame.control_text_set(std::to_string(k + 1));
  }
  report_tested_clusters(reports);
}

void class_contig_adapt_clust::test_laid_contig(const laid_contig &laid, cluster_test &test, run_reports &reports,
                                                class_FPCto_import &registry) {
  bool not_found = false;
  registry.search_for_cluster(test.name, test.id, not_found);
  test.name_long = registry.cluster_information_get(test.id).FPC_name;
  test.n_clones = static_cast<std::int32_t>(laid.clones.size());
  test.cutoff = rule_.cutoff;
  test.is_connected = test.final = test.by_layout = true;
  test.analysed = test.n_clones >= minimal_cluster_size_;
  make_contig_for_cluster(test, registry);
  const auto at = [](std::int32_t i) { return static_cast<std::size_t>(i); };
  std::vector<std::int32_t> order(laid.clones.size()), left, right;
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(),
            [&](std::int32_t a, std::int32_t b) { return laid.clones[at(a)] < laid.clones[at(b)]; });
  for (const std::int32_t i : order) {
    left.push_back(laid.left[at(i)]);
    right.push_back(laid.right[at(i)]);
  }
  number_list path;
  for (const auto &part : laid.paths)
    for (const clone_number c : part)
      path.add(c);
  test.contig->laid_set(left, right, std::move(path));
  test.contig->check_contig_with_MTP_new_cutoff(rule_.cutoff);
  test.diam = test.contig->net_diam_get();
  test.width = test.contig->net_width_NewCutoff_get();
  test.n_far = test.contig->net_n_far_NewCutoff_get();
  if (stopped())
    return;
  print_cluster_files(test, reports, registry);
  if (!stopped())
    tested_.push_back({row_of_test(test), test.contig, test.analysed, false});
  report_tested_clusters(reports);
}

} // namespace orb
