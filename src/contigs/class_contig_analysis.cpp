#include "contigs/class_contig_analysis.h"

#include <algorithm>
#include <functional>
#include <numeric>

#include "clustering/cluster_file_name.h"
#include "contigs/contig_coordinates.h"
#include "frame/files.h"
#include "metrics/class_clone_dist_my.h"

namespace orb {

class_contig_analysis::class_contig_analysis(class_clone_net_signif &signif, const overlap_rule &rule)
    : signif_(&signif), rule_(rule),
      clustering_(std::make_unique<class_clustering>(signif.context().frame, signif.context().settings,
                                                     &signif.context().database)) {}

void class_contig_analysis::dir_name_to_output_set(const std::filesystem::path &folder, bool own_folder) {
  dir_name_to_output_ = folder;
  dir_name_to_output_ok_ = folder;
  if (!own_folder)
    return;
  dir_name_to_output_ok_ = folder / cluster_file_name(cluster_name_);
  create_folder(dir_name_to_output_ok_);
}

void class_contig_analysis::list_of_clones_set(const number_list &list, std::int32_t n) {
  list_of_clones_ = number_list(list.members().first(static_cast<std::size_t>(n)));
  positions_by_clone_.clear();
  const auto clones = list_of_clones_.members();
  if (std::is_sorted(clones.begin(), clones.end()))
    return;
  positions_by_clone_.resize(clones.size());
  std::iota(positions_by_clone_.begin(), positions_by_clone_.end(), 1);
  std::sort(positions_by_clone_.begin(), positions_by_clone_.end(), [this](std::int32_t a, std::int32_t b) {
    return list_of_clones_(a) != list_of_clones_(b) ? list_of_clones_(a) < list_of_clones_(b) : a < b;
  });
}

void class_contig_analysis::list_of_clones_get(number_list &list, std::int32_t &n) const {
  list = list_of_clones_;
  n = list.count();
}

std::int32_t class_contig_analysis::position_of_clone(clone_number clone) const {
  if (positions_by_clone_.empty()) {
    const auto clones = list_of_clones_.members();
    const auto found = std::lower_bound(clones.begin(), clones.end(), clone);
    return found != clones.end() && *found == clone ? static_cast<std::int32_t>(found - clones.begin()) + 1 : 0;
  }
  const auto found = std::lower_bound(
      positions_by_clone_.begin(), positions_by_clone_.end(), clone,
      [this](std::int32_t position, clone_number wanted) { return list_of_clones_(position) < wanted; });
  return found != positions_by_clone_.end() && list_of_clones_(*found) == clone ? *found : 0;
}

std::span<const std::int32_t> class_contig_analysis::by_position(const std::vector<std::int32_t> &values) const {
  if (!clone_coor_known_)
    return {};
  return std::span<const std::int32_t>(values).subspan(1);
}

std::int32_t class_contig_analysis::clone_coor_left_get(clone_number clone) const {
  const std::int32_t position = position_of_clone(clone);
  return clone_coor_known_ && position > 0 ? coor_left_[static_cast<std::size_t>(position)] : 0;
}

std::int32_t class_contig_analysis::clone_coor_right_get(clone_number clone) const {
  const std::int32_t position = position_of_clone(clone);
  return clone_coor_known_ && position > 0 ? coor_right_[static_cast<std::size_t>(position)] : 0;
}

std::int32_t class_contig_analysis::n_gaps_Sulston_get() const {
  return gaps_NoBuriedORB_.size() > 4 ? gaps_NoBuriedORB_[4] : 0;
}

void class_contig_analysis::list_of_clones_important_get(number_list &list, bool use_new_cutoff) const {
  list = list_of_clones_MTP_;
  const number_list &far = use_new_cutoff ? list_of_clones_far_NewCutoff_ : list_of_clones_far_;
  for (const clone_number clone : far.members())
    list.add(clone);
}

void class_contig_analysis::start_clustering(const overlap_rule &rule) {
  clustering_->clustering_start(list_of_clones_.count(), list_of_clones_, std::string(), rule.distance_index,
                                rule.cutoff, rule.burying);
}

void class_contig_analysis::clustering_single_linkage_run(double cutoff) {
  start_clustering(at_cutoff(rule_, cutoff));
  if (signif_->context().settings.fast_clustering) {
    clustering_->run_clusterization_fast(*signif_);
  } else {
    class_clone_dist_my metric(signif_->context(), &signif_->net());
    metric.net_private_parameters_set_interface(rule_);
    clustering_->clusterization_slow(false, metric);
  }
  clustering_->create_arrays_for_clusters(false, false);
}

void class_contig_analysis::clustering_no_need_all_in_one_cluster() {
  start_clustering(rule_);
  clustering_->put_all_elements_into_single_cluster();
  clustering_->create_arrays_for_clusters(false, false);
}

void class_contig_analysis::positions_to_clones(const number_list &positions, number_list &clones) const {
  clones.clear();
  for (const std::int32_t position : positions.members())
    clones.add(list_of_clones_(position));
}

void class_contig_analysis::shape_set(const contig_shape &shape) {
  net_diam_ = shape.diameter;
  net_radius_ = shape.diameter / 2;
  net_width_ = shape.width;
  net_is_connected_ = net_width_ >= 0;
  positions_to_clones(shape.path, list_of_clones_diam_path_);
  list_of_clones_MTP_ = list_of_clones_diam_path_;
  list_of_clones_far_.clear();
}

void class_contig_analysis::contig_topology_analyse_and_MTP_and_ordering_without_TSP() {
  contig_shape shape;
  if (!list_of_clones_.empty())
    signif_->contigomer_clone_ordering(list_of_clones_, rule_, shape);
  shape_set(shape);
  if (!net_is_connected_)
    return;
  for (std::int32_t position = 1; position <= list_of_clones_.count(); ++position) {
    if (shape.ranks_from_path(position) > 1)
      list_of_clones_far_.add(list_of_clones_(position));
  }
  make_clone_coordinates(shape);
}

void class_contig_analysis::make_clone_coordinates(const contig_shape &shape) {
  const metric_context &context = signif_->context();
  class_net net;
  number_list net_list;
  signif_->create_net_general_run(list_of_clones_, rule_, net, net_list);
  contig_coordinates coordinates(context.frame, context.database, list_of_clones_);
  coordinates.make_clone_coordinates(shape.path, shape.ranks_from_path, shape.width, net, net_list);
  std::int32_t left_extreme = 0, right_extreme = 0;
  coordinates.shift_coordinates_to_positive(shape.path(1), shape.path(shape.path.count()), left_extreme, right_extreme);
  coor_left_.swap(coordinates.left);
  coor_right_.swap(coordinates.right);
  clone_coor_known_ = true;
  add_extreme_clones_to_MTP(list_of_clones_(left_extreme), list_of_clones_(right_extreme));
}

void class_contig_analysis::laid_set(std::span<const std::int32_t> left, std::span<const std::int32_t> right,
                                     number_list path) {
  coor_left_.assign(1, 0);
  coor_left_.insert(coor_left_.end(), left.begin(), left.end());
  coor_right_.assign(1, 0);
  coor_right_.insert(coor_right_.end(), right.begin(), right.end());
  clone_coor_known_ = true;
  net_is_connected_ = true;
  net_diam_ = path.count();
  net_radius_ = net_diam_ / 2;
  net_width_ = 0;
  list_of_clones_diam_path_ = path;
  list_of_clones_MTP_ = std::move(path);
  list_of_clones_far_.clear();
}

// Only the two ends are looked at: a clone that reaches farthest to both sides, or one inside the path, may come to
// stand in the tiling path twice. Deliberate.
void class_contig_analysis::add_extreme_clones_to_MTP(clone_number left_extreme, clone_number right_extreme) {
  const number_list &path = list_of_clones_diam_path_;
  const bool left_is_new = left_extreme != path(1), right_is_new = right_extreme != path(path.count());
  if (right_is_new)
    list_of_clones_MTP_.add(right_extreme);
  if (!left_is_new)
    return;
  number_list widened{left_extreme};
  for (const clone_number clone : list_of_clones_MTP_.members())
    widened.add(clone);
  list_of_clones_MTP_ = std::move(widened);
}

// Positions of the clones of the tiling path, each once, ascending.
void class_contig_analysis::positions_of_MTP(number_list &positions) const {
  std::vector<std::int32_t> found;
  for (const clone_number clone : list_of_clones_MTP_.members()) {
    const std::int32_t position = position_of_clone(clone);
    if (position > 0)
      found.push_back(position);
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  positions = number_list(found);
}

void class_contig_analysis::check_contig_with_MTP_new_cutoff(double cutoff) {
  cutoff_new_ = cutoff;
  class_net net;
  number_list net_list, positions, start_list, ranks, reached;
  signif_->create_net_general_run(list_of_clones_, at_cutoff(rule_, cutoff), net, net_list);
  positions_of_MTP(positions);
  std::vector<std::int32_t> vertex_of_position(static_cast<std::size_t>(list_of_clones_.count()) + 1, 0);
  for (std::int32_t v = 1; v <= net_list.count(); ++v)
    vertex_of_position[static_cast<std::size_t>(net_list(v))] = v;
  for (const std::int32_t position : positions.members())
    start_list.add(vertex_of_position[static_cast<std::size_t>(position)]);

  std::int32_t largest_rank = 0;
  std::vector<std::int32_t> n_in_rank;
  bool connected = false;
  net.calculate_ranks_of_vertices(start_list, ranks, 2, false, 0, largest_rank, reached, n_in_rank, connected);
  net_width_NewCutoff_ = largest_rank;
  net_is_connected_NewCutoff_ = connected;
  list_of_clones_far_NewCutoff_.clear();
  for (std::int32_t position = 1; position <= list_of_clones_.count(); ++position) {
    const std::int32_t rank = ranks(vertex_of_position[static_cast<std::size_t>(position)]);
    if (rank != 0 && rank != 1)
      list_of_clones_far_NewCutoff_.add(list_of_clones_(position)); // -1: not reached
  }
}

void class_contig_analysis::old_contig_topology_and_MTP_analyse() {
  contig_shape shape;
  if (!list_of_clones_.empty())
    signif_->contigomer(list_of_clones_, rule_, shape);
  shape_set(shape);
  net_radius_ = shape.radius;
  positions_to_clones(shape.far, list_of_clones_far_);
}

bool class_contig_analysis::clustering_delete_brunching_run(std::int32_t /*rank_relative_to_diam_path*/,
                                                            std::int32_t /*minimal_branch_size*/) {
  return false;
}

std::vector<std::int32_t> class_contig_analysis::axis_of_list() const {
  const auto left = coor_left_of_list(), right = coor_right_of_list();
  std::vector<std::int32_t> twice_middle(left.size());
  std::transform(left.begin(), left.end(), right.begin(), twice_middle.begin(), std::plus<>());
  return twice_middle;
}

// ---- order of the clones -------------------------------------------------------------------------------------------

ordering_task class_contig_analysis::detail_control_task(std::uint64_t number) const {
  ordering_task task;
  task.list = list_of_clones_;
  task.rule = rule_;
  task.name = cluster_file_name(cluster_name_);
  task.flag = true;
  task.folder = dir_name_to_output_ok_;
  task.shares_folder = dir_name_to_output_ok_ == dir_name_to_output_; // a heap
  task.number = number;
  task.axis = axis_of_list();
  return task;
}

void class_contig_analysis::detail_control_done(const found_order &found) {
  order_ORB_ = found.order;
  class_clone_ord_and_verif::create_list_of_clones_after_ordering(list_of_clones_, list_of_clones_.count(),
                                                                  found.clone_is_not_excluded, order_ORB_,
                                                                  list_NoBuriedInit_, list_NoBuriedORB_);
  order_init_ = number_list::range(1, list_NoBuriedInit_.count());
}

bool class_contig_analysis::detail_control_of_clone_ordering(const ordering_options &options, std::uint64_t number) {
  const metric_context &context = signif_->context();
  class_clone_ord_and_verif orderer(context, &signif_->net(), options);
  const ordering_task task = detail_control_task(number);
  std::vector<ordering_work> works;
  if (!orderer.compute_all(std::span(&task, 1), works))
    return false;
  std::filesystem::path file_order;
  orderer.write(works.front(), file_order);
  detail_control_done(found_order_of(works.front()));
  return true;
}

} // namespace orb
