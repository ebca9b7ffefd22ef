// Ordering the contigs of a run side by side, and the rows of the reports that wait for it.
#include "contigs/class_contig_adapt_clust.h"
#include "contigs/contig_reports.h"

namespace orb {

namespace {

constexpr std::int32_t n_clones_at_least = 3;

} // namespace

bool is_shape_to_order(std::int32_t n_clones, std::int32_t width) {
  return n_clones >= n_clones_at_least && (n_clones <= n_clones_of_any_width || width < width_to_order);
}

bool class_contig_adapt_clust::is_to_be_ordered(const cluster_test &test) const {
  return detail_control_ && !test.too_large && test.is_connected && is_shape_to_order(test.n_clones, test.width);
}

void class_contig_adapt_clust::report_tested_clusters(run_reports &reports) {
  if (!order_tested_clusters()) {
    tested_.clear();
    return;
  }
  for (const tested_cluster &tested : tested_) {
    const std::string row = cluster_row_text(tested.row);
    reports.clusters.line(row);
    if (tested.analysed)
      print_contig_into_common_files(tested, row, reports);
  }
  reports.flush();
  tested_.clear();
}

// False when the user stopped.
bool class_contig_adapt_clust::order_tested_clusters() {
  const metric_context &context = signif_->context();
  std::vector<tested_cluster *> clusters;
  std::vector<ordering_task> tasks;
  for (tested_cluster &tested : tested_) {
    if (!tested.to_be_ordered)
      continue;
    clusters.push_back(&tested);
    tasks.push_back(tested.contig->detail_control_task(static_cast<std::uint64_t>(tested.row.id)));
  }
  n_to_be_ordered_ = 0;
  if (tasks.empty())
    return !stopped();
  class_clone_ord_and_verif orderer(context, &signif_->net(), files_.ordering);
  std::vector<ordering_work> works;
  if (!orderer.compute_all(tasks, works))
    return false;
  std::filesystem::path file_order;
  for (std::size_t i = 0; i < works.size(); ++i) {
    orderer.write(works[i], file_order);
    clusters[i]->contig->detail_control_done(works[i]);
    count_gaps_of_order(*clusters[i]);
    if (works[i].in_windows() && clusters[i]->analysed) {
      ++result_.windows.n_contigs;
      result_.windows.n_joins += static_cast<std::int32_t>(works[i].windows.size()) - 1;
      result_.windows.n_weak_joins += works[i].n_weak_joins();
    }
  }
  return !stopped();
}

void class_contig_adapt_clust::count_gaps_of_order(tested_cluster &tested) {
  class_contig_analysis &contig = *tested.contig;
  contig.gaps_NoBuriedInit_set(print_consecuent_dist_NoBuriedInit(contig, files_.pair_tables));
  contig.gaps_NoBuriedORB_set(print_consecuent_dist_NoBuriedORB(contig, files_.pair_tables));
  tested.row.n_gaps = contig.n_gaps_Sulston_get();
}

void class_contig_adapt_clust::print_contig_into_common_files(const tested_cluster &tested, const std::string &row,
                                                              run_reports &reports) {
  reports.contigs.line(row);
  print_list_of_clones_MTP_update_files_with_all_MTPs(*tested.contig, &reports.clones_in_MTP,
                                                      &reports.clones_in_MTP_details);
  number_list important;
  tested.contig->list_of_clones_important_get(important, true);
  for (const clone_number clone : important.members())
    reports.clones_in_MTP_and_bridges.line(signif_->context().database.name_of_clone_get(clone));
}

} // namespace orb
