// The test of one cluster: is it connected, is it nearly a path, and what is written about it.
#include "contigs/class_contig_adapt_clust.h"

#include <algorithm>
#include <string_view>

#include "contigs/contig_reports.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

constexpr std::int32_t n_clones_for_status = 50;    // larger clusters are announced
constexpr std::int32_t n_clones_for_all_dist = 200; // larger clusters get no pair table
constexpr std::int32_t n_clones_for_contig_files = 3;
constexpr std::int32_t contigs_ordered_together = 64; // few enough for their files to come while the run goes on
constexpr std::int32_t n_far_accepted = 5;            // clones off the path with which the cutoff needn't rise
constexpr double step_for_MTP = 1.0;
constexpr std::int32_t n_clones_for_question = 500; // contigs that are worth a question

} // namespace

void class_contig_adapt_clust::test_cluster(cluster_test &test, run_reports &reports, class_DB_of_clones &database) {
  const metric_context &context = signif_->context();
  class_FPCto_import &registry = *database.contigs();
  bool not_found = false;
  registry.search_for_cluster(test.name, test.id, not_found);
  if (not_found) {
    test.id = 0;
    context.frame.alarm("Cluster " + test.name + " not found!", "Adaptive clustering");
  } else {
    test.n_clones = registry.n_clones_in_cluster_get(test.id);
  }
  if (test.n_clones < 2) {
    test.final = true;
    return;
  }
  test.cutoff = cutoff_curent_get(test.level);
  if (test.n_clones > n_clones_for_status)
    context.frame.clones_text_set(std::to_string(test.n_clones) + " clones");
  if (stopped())
    return;
  make_contig_for_cluster(test, registry);
  if (stopped())
    return;
  test.too_large = test.n_clones > n_clones_max_;
  if (test.increase_cutoff)
    increase_cutoff_for_MTP(test, false);
  if (stopped())
    return;
  analyse_contig_and_decide(test);
  if (stopped()) {
    test.final = false;
    return;
  }
  print_cluster_files(test, reports, registry);
  if (stopped())
    return;
  tested_.push_back({row_of_test(test), test.contig, test.analysed, is_to_be_ordered(test)});
  n_to_be_ordered_ += tested_.back().to_be_ordered ? 1 : 0;
  if (n_to_be_ordered_ == 0 || n_to_be_ordered_ >= contigs_ordered_together)
    report_tested_clusters(reports);
}

void class_contig_adapt_clust::make_contig_for_cluster(cluster_test &test, const class_FPCto_import &registry) {
  test.contig = std::make_shared<class_contig_analysis>(*signif_, at_cutoff(rule_, test.cutoff));
  class_contig_analysis &contig = *test.contig;
  contig.cluster_name_set(test.name);
  contig.cluster_name_long_set(test.name_long);
  number_list list;
  registry.list_of_clones_get(test.id, list);
  contig.list_of_clones_set(list, list.count());
  if (test.is_connected) {
    contig.clustering_no_need_all_in_one_cluster();
    return;
  }
  contig.clustering_single_linkage_run(test.cutoff);
  test.is_connected = contig.clustering().number_of_clusters_get() < 2;
  if (!test.use_maximal_subcluster)
    return;
  if (!test.is_connected)
    keep_largest_subcluster(test);
  test.n_clones = test.contig->n_list_of_clones_get();
}

void class_contig_adapt_clust::keep_largest_subcluster(cluster_test &test) {
  const class_clustering &clustering = test.contig->clustering();
  std::int32_t largest = 1;
  for (std::int32_t c = 2; c <= clustering.number_of_clusters_get(); ++c) {
    if (clustering.n_elements_in_cluster_get(c) > clustering.n_elements_in_cluster_get(largest))
      largest = c;
  }
  number_list part, kept;
  clustering.read_from_arrays_for_clusters(largest, part, false);
  for (std::int32_t j = 1; j <= part.count(); ++j)
    kept.add(clustering.get_actual_clone_number(part(j)));
  const number_list all = test.contig->list_of_clones();
  if (kept.count() < all.count())
    print_clones_not_in(all, kept, test.name);
  test.name_long += "_only_" + std::to_string(kept.count()) + "_of_" + std::to_string(all.count()) + "_not_all_linked";
  test.contig = std::make_shared<class_contig_analysis>(*signif_, at_cutoff(rule_, test.cutoff));
  test.contig->cluster_name_set(test.name);
  test.contig->cluster_name_long_set(test.name_long);
  test.contig->list_of_clones_set(kept, kept.count());
  test.contig->clustering_no_need_all_in_one_cluster();
  test.is_connected = true;
}

// Clones of `all` whose names don't occur in `kept`.
void class_contig_adapt_clust::print_clones_not_in(const number_list &all, const number_list &kept,
                                                   const std::string &name) {
  const metric_context &context = signif_->context();
  std::vector<std::string_view> names;
  for (const clone_number clone : kept.members())
    names.push_back(context.database.name_of_clone_get(clone));
  std::sort(names.begin(), names.end());
  number_list lost;
  for (const clone_number clone : all.members()) {
    if (!std::binary_search(names.begin(), names.end(), std::string_view(context.database.name_of_clone_get(clone))))
      lost.add(clone);
  }
  class_list_of_clones(context.frame, context.settings)
      .print_list_of_clones(lost, context.frame.path_in_working_folder("non_in_" + cluster_file_name(name) + ".txt"),
                            context.database);
}

void class_contig_adapt_clust::increase_cutoff_for_MTP(cluster_test &test, bool ask) {
  if (!test.is_connected || test.too_large)
    return;
  const metric_context &context = signif_->context();
  class_contig_analysis &contig = *test.contig;
  contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  double cutoff = test.cutoff;
  while (contig.net_n_far_get() > n_far_accepted && contig.net_is_connected_get() && !stopped()) {
    cutoff += step_for_MTP;
    contig.cutoff_set(cutoff);
    contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
    context.frame.yield();
    if (!ask || test.n_clones < n_clones_for_question || contig.net_n_far_get() <= n_far_accepted ||
        !contig.net_is_connected_get())
      continue;
    question asked;
    asked.text = "NB! Large contig " + test.name + " = " + test.name_long + " " + std::to_string(test.n_clones) +
                 " clones, n_far=" + std::to_string(contig.net_n_far_get()) +
                 ". Continue to increase cutoff for this contig?";
    if (!context.frame.yes(asked))
      break;
  }
  if (!contig.net_is_connected_get()) {
    contig.cutoff_set(test.cutoff);
    return;
  }
  if (cutoff <= test.cutoff)
    return;
  test.name_long += "_cutoff_increased_from_" + number_text(test.cutoff, 2) + "_to_" + number_text(cutoff, 2);
  contig.cluster_name_long_set(test.name_long);
  test.cutoff = cutoff;
}

// The tiling path is found at the cluster's own cutoff, but how far clones lie from it is measured at the cutoff with
// which the run began: it is that width which must not exceed the largest one accepted.
void class_contig_adapt_clust::analyse_contig_and_decide(cluster_test &test) {
  if (!test.is_connected)
    return; // neither final nor a contig
  if (test.too_large) {
    test.final = test.analysed = test.level == n_steps_;
    return;
  }
  class_contig_analysis &contig = *test.contig;
  contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  contig.check_contig_with_MTP_new_cutoff(check_cutoff_.value_or(rule_.cutoff));
  test.diam = contig.net_diam_get();
  test.width = contig.net_width_NewCutoff_get();
  test.n_far = contig.net_n_far_NewCutoff_get();
  if (test.n_clones < minimal_cluster_size_) {
    test.final = true;
    return;
  }
  test.final = test.analysed = test.width <= width_max_ || test.level > n_steps_;
  if (test.width <= width_max_ || test.level <= n_steps_ || !excluding_branching_)
    return;
  if (contig.clustering_delete_brunching_run(rank_relative_to_diam_path_, minimal_branch_size_))
    test.final = test.analysed = false; // the branches would come back as clusters
}

void class_contig_adapt_clust::print_cluster_files(cluster_test &test, const run_reports &reports,
                                                   class_FPCto_import &registry) {
  class_contig_analysis &contig = *test.contig;
  const bool is_heap = test.n_clones < minimal_cluster_size_;
  contig.dir_name_to_output_set(is_heap ? reports.folder_heaps : reports.folder_contigs, !is_heap);
  print_clones_of_cluster(contig);
  print_markers(contig);
  if (test.too_large)
    return;
  if (print_all_dist_on_ && files_.pair_tables && test.n_clones <= n_clones_for_all_dist)
    print_all_dist(contig, files_.pairs);
  if (!test.is_connected)
    return;
  print_contig_files(test.n_clones, contig);
  if (contig.clone_coor_known_get()) {
    registry.clone_information_from_ORB_set(contig.list_of_clones(), contig.coor_left_of_list(),
                                            contig.coor_right_of_list());
    registry.make_min_and_max_coor_for_cluster(test.id);
    registry.tiling_path_set(test.id, contig.list_of_clones_MTP());
  }
}

void class_contig_adapt_clust::print_contig_files(std::int32_t n_clones, class_contig_analysis &contig) {
  print_clones_indicateMTP_coordinates_and_markers(contig);
  if (n_clones < n_clones_for_contig_files)
    return;
  if (files_.drawings) {
    print_files_with_net_Pajek(contig, false, files_.drawing);
    check_contig_with_MTP_new_cutoff_print_net_Pajek(contig, files_.drawing);
  }
  print_list_of_clones_MTP(contig);
  print_list_of_clones_unoverlapped_with_diam_path(contig);
  print_list_of_clones_unoverlapped_with_diam_path_NewCutoff(contig);
  if (files_.pair_tables)
    contig.gaps_MTP_set(print_consecuent_dist_MTP(contig, true));
  print_list_of_clones_with_coordinates(contig);
  if (files_.pair_tables)
    contig.gaps_initial_set(print_consecuent_dist_initial_list_of_clones(contig, true));
}

cluster_row class_contig_adapt_clust::row_of_test(const cluster_test &test) const {
  cluster_row row;
  row.id = test.id;
  row.name = test.name;
  row.n_clones = test.n_clones;
  row.contig = test.analysed;
  row.cutoff = test.cutoff;
  row.diam = test.diam;
  row.width = test.width;
  row.n_gaps = test.n_gaps;
  row.n_far = test.n_far;
  const bool wide = test.analysed && !test.by_layout && test.width > width_max_;
  row.remark = !test.is_connected ? remark_not_connected : test.too_large ? remark_too_large : wide ? remark_wide : "";
  row.full_name = test.name_long;
  return row;
}

} // namespace orb
