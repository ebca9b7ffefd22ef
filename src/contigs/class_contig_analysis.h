// The topology of one cluster of clones in the net of significant overlaps: connected or not, the longest shortest
// path (diam), how far clones stray from it (width), and where every clone lies on an axis counted in bands.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "clustering/class_clustering.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"
#include "ordering/found_order.h"

namespace orb {

class class_contig_analysis {
public:
  // `rule`: that of the cluster, with the cutoff of its level. `signif` must outlive the object.
  class_contig_analysis(class_clone_net_signif &signif, const overlap_rule &rule);

  // What reports, tables and drawings reach through the contig.
  class_clone_net_signif &signif() const { return *signif_; }
  const metric_context &context() const { return signif_->context(); }
  const overlap_rule &rule() const { return rule_; }
  // For the analyses that follow.
  void cutoff_set(double cutoff) { rule_.cutoff = cutoff; }

  void list_of_clones_set(const number_list &list, std::int32_t n);
  void list_of_clones_get(number_list &list, std::int32_t &n) const;
  const number_list &list_of_clones() const { return list_of_clones_; }
  std::int32_t n_list_of_clones_get() const { return list_of_clones_.count(); }
  const std::string &cluster_name_get() const { return cluster_name_; }
  void cluster_name_set(std::string name) { cluster_name_ = std::move(name); }
  const std::string &cluster_name_long_get() const { return cluster_name_long_; }
  void cluster_name_long_set(std::string name) { cluster_name_long_ = std::move(name); }
  // With `own_folder` a folder named after the cluster is made in `folder`.
  void dir_name_to_output_set(const std::filesystem::path &folder, bool own_folder);
  const std::filesystem::path &dir_name_to_output_get() const { return dir_name_to_output_; }
  const std::filesystem::path &dir_name_to_output_ok_get() const { return dir_name_to_output_ok_; }

  // --- analysis, in this order ---
  void clustering_single_linkage_run(double cutoff);
  void clustering_no_need_all_in_one_cluster();
  // Diametric path, far clones, coordinates, tiling path.
  void contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  // How well the tiling path explains the cluster at another cutoff.
  void check_contig_with_MTP_new_cutoff(double cutoff);
  // In place of the analysis: coordinates (by position in the list, from 0) and tiling path that were found elsewhere.
  void laid_set(std::span<const std::int32_t> left, std::span<const std::int32_t> right, number_list path);
  // The short form: shape without coordinates.
  void old_contig_topology_and_MTP_analyse();
  // A hook that does nothing yet in this system: deliberate.
  bool clustering_delete_brunching_run(std::int32_t rank_relative_to_diam_path, std::int32_t minimal_branch_size);

  class_clustering &clustering() { return *clustering_; }
  bool net_is_connected_get() const { return net_is_connected_; }
  std::int32_t net_radius_get() const { return net_radius_; }
  std::int32_t net_diam_get() const { return net_diam_; }
  std::int32_t net_width_get() const { return net_width_; }
  std::int32_t net_width_NewCutoff_get() const { return net_width_NewCutoff_; }
  bool net_is_connected_NewCutoff_get() const { return net_is_connected_NewCutoff_; }
  std::int32_t net_n_far_get() const { return list_of_clones_far_.count(); }
  std::int32_t net_n_far_NewCutoff_get() const { return list_of_clones_far_NewCutoff_.count(); }
  std::int32_t n_gaps_Sulston_get() const; // 0 while no ordering was made
  // Weak steps by metric index (from 0) along the tiling path, the cluster's list, and the list and the order without
  // buried clones; empty while nobody counted them. Who counts them sets them: see contig_tables.h.
  const std::vector<std::int32_t> &gaps_MTP() const { return gaps_MTP_; }
  const std::vector<std::int32_t> &gaps_initial() const { return gaps_initial_; }
  const std::vector<std::int32_t> &gaps_NoBuriedInit() const { return gaps_NoBuriedInit_; }
  const std::vector<std::int32_t> &gaps_NoBuriedORB() const { return gaps_NoBuriedORB_; }
  void gaps_MTP_set(std::vector<std::int32_t> gaps) { gaps_MTP_ = std::move(gaps); }
  void gaps_initial_set(std::vector<std::int32_t> gaps) { gaps_initial_ = std::move(gaps); }
  void gaps_NoBuriedInit_set(std::vector<std::int32_t> gaps) { gaps_NoBuriedInit_ = std::move(gaps); }
  void gaps_NoBuriedORB_set(std::vector<std::int32_t> gaps) { gaps_NoBuriedORB_ = std::move(gaps); }
  double cutoff_new_get() const { return cutoff_new_; }
  bool clone_coor_known_get() const { return clone_coor_known_; }
  // Of a clone of this cluster, in bands; 0 for any other clone.
  std::int32_t clone_coor_left_get(clone_number clone) const;
  std::int32_t clone_coor_right_get(clone_number clone) const;
  // The same for the whole list, in list order; empty while nothing is known.
  std::span<const std::int32_t> coor_left_of_list() const { return by_position(coor_left_); }
  std::span<const std::int32_t> coor_right_of_list() const { return by_position(coor_right_); }
  // Twice the middle of each clone, in bands; empty while nothing is known.
  std::vector<std::int32_t> axis_of_list() const;
  const number_list &list_of_clones_MTP() const { return list_of_clones_MTP_; }
  void list_of_clones_MTP_get(number_list &list) const { list = list_of_clones_MTP_; }
  const number_list &list_of_clones_diam_path() const { return list_of_clones_diam_path_; }
  const number_list &list_of_clones_far() const { return list_of_clones_far_; }
  const number_list &list_of_clones_far_NewCutoff() const { return list_of_clones_far_NewCutoff_; }
  // The tiling path followed by the far clones, of the new cutoff when asked.
  void list_of_clones_important_get(number_list &list, bool use_new_cutoff) const;

  // --- order of the clones, verified by a jackknife on bands ---
  // All at once. False when the user stopped: there is no order then.
  bool detail_control_of_clone_ordering(const ordering_options &options, std::uint64_t number);
  // The same in two steps, so that contigs can be ordered side by side: what is to be computed, and what is done with
  // the result. `number`: of the contig, for its generators.
  ordering_task detail_control_task(std::uint64_t number) const;
  void detail_control_done(const found_order &found);
  const number_list &list_NoBuriedInit() const { return list_NoBuriedInit_; }
  const number_list &list_NoBuriedORB() const { return list_NoBuriedORB_; }

private:
  std::span<const std::int32_t> by_position(const std::vector<std::int32_t> &values) const;
  std::int32_t position_of_clone(clone_number clone) const; // 0: not of this cluster
  void start_clustering(const overlap_rule &rule);
  void positions_to_clones(const number_list &positions, number_list &clones) const;
  void shape_set(const contig_shape &shape);
  void make_clone_coordinates(const contig_shape &shape);
  void add_extreme_clones_to_MTP(clone_number left_extreme, clone_number right_extreme);
  void positions_of_MTP(number_list &positions) const;

  class_clone_net_signif *signif_;
  overlap_rule rule_;
  std::unique_ptr<class_clustering> clustering_;
  number_list list_of_clones_;
  std::string cluster_name_, cluster_name_long_;
  std::filesystem::path dir_name_to_output_, dir_name_to_output_ok_;
  std::int32_t net_radius_ = 0, net_diam_ = 0, net_width_ = 0;
  bool net_is_connected_ = false;
  number_list list_of_clones_MTP_, list_of_clones_diam_path_, list_of_clones_far_;
  double cutoff_new_ = 0;
  std::int32_t net_width_NewCutoff_ = 0;
  bool net_is_connected_NewCutoff_ = false;
  number_list list_of_clones_far_NewCutoff_;
  std::vector<std::int32_t> coor_left_, coor_right_; // by position in list_of_clones, element 0 unused
  bool clone_coor_known_ = false;
  std::vector<std::int32_t> gaps_MTP_, gaps_initial_, gaps_NoBuriedInit_, gaps_NoBuriedORB_; // by metric index, from 0
  number_list order_init_, order_ORB_;               // places among the clones that aren't buried
  number_list list_NoBuriedInit_, list_NoBuriedORB_; // clones that aren't buried, in list order and in that order
  std::vector<std::int32_t> positions_by_clone_;     // positions in the order of their clones; empty: the list ascends
};

} // namespace orb
