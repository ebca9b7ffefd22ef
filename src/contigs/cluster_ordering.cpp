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
  std::vector<std::size_t> to_be_ordered; // places in tested_
  std::vector<ordering_task> tasks;
  for (std::size_t i = 0; i < tested_.size(); ++i) {
    if (!tested_[i].to_be_ordered)
      continue;
    ordering_task task = tested_[i].contig->detail_control_task(static_cast<std::uint64_t>(tested_[i].row.id));
    if (!folder_to_continue_.empty())
      take_earlier_order(task, tested_[i]);
    if (tested_[i].is_ordered)
      continue;
    to_be_ordered.push_back(i);
    tasks.push_back(std::move(task));
  }
  std::size_t reported = 0; // of tested_, in their sequence
  const auto report_up_to = [&](std::size_t end) {
    for (; reported < end; ++reported)
      if (!tested_[reported].to_be_ordered || tested_[reported].is_ordered)
        report_cluster(tested_[reported], reports);
    reports.flush();
  };
  class_clone_ord_and_verif orderer(signif_->context(), &signif_->net(), files_.ordering);
  std::vector<ordering_work> works;
  if (!tasks.empty())
    orderer.compute_all(tasks, works, [&](std::size_t k) {
      tested_cluster &tested = tested_[to_be_ordered[k]];
      take_order(orderer, works[k], tested);
      report_up_to(to_be_ordered[k] + 1);
    });
  report_up_to(tested_.size());
  tested_.clear();
  n_to_be_ordered_ = 0;
}

void class_contig_adapt_clust::report_cluster(const tested_cluster &tested, run_reports &reports) {
  const std::string row = cluster_row_text(tested.row);
  reports.clusters.line(row);
  if (tested.analysed)
    print_contig_into_common_files(tested, row, reports);
}

void class_contig_adapt_clust::take_order(class_clone_ord_and_verif &orderer, const ordering_work &work,
                                          tested_cluster &tested) {
  std::filesystem::path file_order;
  orderer.write(work, file_order);
  note_order(found_order_of(work), tested);
}

void class_contig_adapt_clust::take_earlier_order(const ordering_task &task, tested_cluster &tested) {
  if (const auto found = read_found_order(task, signif_->context().database, files_.ordering.t_JK_N))
    note_order(*found, tested);
}

void class_contig_adapt_clust::note_order(const found_order &found, tested_cluster &tested) {
  tested.contig->detail_control_done(found);
  count_gaps_of_order(tested);
  tested.is_ordered = true;
  if (found.n_windows == 0 || !tested.analysed)
    return;
  ++result_.windows.n_contigs;
  result_.windows.n_joins += found.n_windows - 1;
  result_.windows.n_weak_joins += found.n_weak_joins;
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
