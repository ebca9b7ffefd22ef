// The registry itself: names, sets of clones, which clusters are on, and the values of clones and clusters.
#include "clustering/class_FPCto_import.h"

#include <algorithm>
#include <limits>

#include "database/class_markers.h"

namespace orb {

class_FPCto_import::class_FPCto_import(process_frame &frame, const project_settings &settings,
                                       class_DB_of_clones &database)
    : frame_(&frame), settings_(&settings), database_(&database), clustering_(frame, settings, &database) {}

// ---- reading ---------------------------------------------------------------------------------------------------

const number_list &class_FPCto_import::current_list_of_clusters_in_use_get() const {
  if (!list_in_use_is_compact_) {
    number_list kept;
    kept.reserve(n_in_use_);
    for (const cluster_id id : current_list_of_clusters_in_use_.members())
      if (cluster_is_in_use_get(id))
        kept.add(id);
    current_list_of_clusters_in_use_ = std::move(kept);
    list_in_use_is_compact_ = true;
  }
  return current_list_of_clusters_in_use_;
}

void class_FPCto_import::current_list_of_clusters_in_use_get(std::int32_t i, cluster_id &id) const {
  id = i == 0 ? n_in_use_ : current_list_of_clusters_in_use_get()(i);
}

bool class_FPCto_import::cluster_is_in_use_get(cluster_id id) const {
  return id >= 1 && id <= n_list_of_all_cluster_names_ && in_use_[static_cast<std::size_t>(id)] != 0;
}

const std::string &class_FPCto_import::name_of_cluster_get(cluster_id id) const {
  static const std::string none;
  return id >= 1 && id <= n_list_of_all_cluster_names_ ? name_of_cluster_[static_cast<std::size_t>(id)] : none;
}

void class_FPCto_import::name_of_cluster_get(cluster_id id, std::string &name) const {
  name = name_of_cluster_get(id);
}

cluster_id class_FPCto_import::clone_in_cluster_get(clone_number clone) const {
  return clone >= 1 && clone <= n_clones_ ? clone_in_cluster_(clone) : 0;
}

std::span<const clone_number> class_FPCto_import::clones_of_cluster(cluster_id id) const {
  if (id < 1 || static_cast<std::size_t>(id) + 1 >= first_clone_.size())
    return {};
  const std::size_t first = first_clone_[static_cast<std::size_t>(id)];
  return std::span(clones_of_clusters_).subspan(first, first_clone_[static_cast<std::size_t>(id) + 1] - first);
}

void class_FPCto_import::list_of_clones_get(cluster_id id, number_list &list) const {
  list = number_list(clones_of_cluster(id));
}

std::int32_t class_FPCto_import::n_clones_in_cluster_get(cluster_id id) const {
  return static_cast<std::int32_t>(clones_of_cluster(id).size());
}

bool class_FPCto_import::cluster_is_contig_get(cluster_id id) const {
  return n_clones_in_cluster_get(id) > 1 && name_of_cluster_get(id) != "Singletones";
}

void class_FPCto_import::make_clusters_of_clone() const {
  first_cluster_.assign(static_cast<std::size_t>(n_clones_) + 2, 0);
  for (const clone_number clone : clones_of_clusters_)
    ++first_cluster_[static_cast<std::size_t>(clone) + 1];
  for (std::size_t i = 1; i < first_cluster_.size(); ++i)
    first_cluster_[i] += first_cluster_[i - 1];
  clusters_of_clones_.resize(clones_of_clusters_.size());
  std::vector<std::size_t> next(first_cluster_);
  for (cluster_id id = 1; static_cast<std::size_t>(id) + 1 < first_clone_.size(); ++id)
    for (const clone_number clone : clones_of_cluster(id))
      clusters_of_clones_[next[static_cast<std::size_t>(clone)]++] = id;
  clusters_of_clones_known_ = true;
}

void class_FPCto_import::list_of_clusters_of_clone_get(clone_number clone, number_list &list) const {
  if (!clusters_of_clones_known_)
    make_clusters_of_clone();
  list.clear();
  if (clone < 1 || clone > n_clones_)
    return;
  const auto at = static_cast<std::size_t>(clone);
  for (std::size_t i = first_cluster_[at]; i < first_cluster_[at + 1]; ++i)
    list.add(clusters_of_clones_[i]);
}

double class_FPCto_import::length_of_cluster_bands_get(cluster_id id) const {
  const cluster_information &cluster = cluster_information_get(id);
  return cluster.min_and_max_known ? cluster.max_right - cluster.min_left + 1 : 0;
}

void class_FPCto_import::search_for_cluster(std::string_view name, cluster_id &id, bool &not_found) const {
  const auto found = id_of_name_.find(name);
  not_found = found == id_of_name_.end();
  id = not_found ? 0 : found->second;
}

bool class_FPCto_import::clone_in_black_list_get(clone_number clone) const {
  return clone >= 1 && clone <= n_clones_ && clone_in_black_list_[static_cast<std::size_t>(clone)] != 0;
}

void class_FPCto_import::list_of_clones_black_list_get(number_list &list) const {
  list.clear();
  for (clone_number clone = 1; clone <= n_clones_; ++clone)
    if (clone_in_black_list_get(clone))
      list.add(clone);
}

void class_FPCto_import::list_of_clones_add_to_black_list(const number_list &list) {
  check_clone_numbers(list);
  for (const clone_number clone : list.members())
    clone_in_black_list_[static_cast<std::size_t>(clone)] = 1;
}

cluster_id class_FPCto_import::marker_in_cluster_get(std::int32_t marker) const {
  return marker >= 1 && marker <= marker_in_cluster_.count() ? marker_in_cluster_(marker) : 0;
}

// ---- starting anew ---------------------------------------------------------------------------------------------

void class_FPCto_import::clear_all_run(std::int32_t factor, bool ask_markers) {
  const std::int32_t n_clones = database_->total_number_of_clones_get();
  const std::int64_t capacity = std::int64_t{n_clones} * std::max(factor, 5) + 5;
  clear_all(n_clones);
  n_list_of_all_cluster_names_max_ =
      static_cast<std::int32_t>(std::min<std::int64_t>(capacity, std::numeric_limits<std::int32_t>::max()));
  if (ask_markers && database_->markers().total_number_of_markers_get() > 0 &&
      frame_->yes(
          {.text = "Clear information about markers?", .title = {}, .by_default = answer::no, .to_go_on = answer::no}))
    database_->markers().redim_private_arrays(n_clones, 0, 0);
  clone_information_start();
}

void class_FPCto_import::clear_all(std::int32_t n_clones) {
  n_clones_ = n_clones;
  const auto by_clone = static_cast<std::size_t>(n_clones) + 1;
  clone_information_.assign(by_clone, {});
  clone_in_black_list_.assign(by_clone, 0);
  clone_in_cluster_.clear();
  clone_in_cluster_.resize(n_clones);
  // What goes by cluster grows with the clusters.
  cluster_information_.assign(1, {});
  tiling_path_.assign(1, {});
  name_of_cluster_.assign(1, {});
  in_use_.assign(1, 0);
  id_of_name_.clear();
  clones_of_clusters_.clear();
  first_clone_.assign(2, 0);
  clusters_of_clones_known_ = false;
  n_list_of_all_cluster_names_ = 0;
  n_list_of_all_cluster_names_max_ = 0;
  current_list_of_clusters_in_use_.clear();
  list_in_use_is_compact_ = true;
  n_in_use_ = 0;
  clustering_ = class_clustering(*frame_, *settings_, database_);
  clustering_.clustering_start_n_elements_set(n_clones);
  marker_in_cluster_.clear();
}

void class_FPCto_import::clear_all_and_create_cluster_AllDB(std::int32_t factor, const std::string &name,
                                                            const std::string &long_name) {
  clear_all_run(factor, name.empty());
  if (name.empty())
    return;
  if (!database_->clone_name_sorted_is_created_get())
    database_->sort_clones_by_name(*frame_);
  add_new_cluster(number_list::range(1, n_clones_), name, long_name, false);
  add_new_cluster_finish();
}

void class_FPCto_import::clone_information_start() {
  const double now = frame_->clock().day_number();
  for (clone_number clone = 1; clone <= n_clones_; ++clone) {
    clone_information &information = clone_information_[static_cast<std::size_t>(clone)];
    information.coor_left = information.coor_right = 0;
    information.first_band_adress = database_->first_band_adress_get(clone);
    information.number_of_bands = database_->number_of_bands_in_clone_get(clone);
    information.creation_date = information.modification_date = now;
  }
}

// ---- values ----------------------------------------------------------------------------------------------------

void class_FPCto_import::clone_information_set(clone_number clone, clone_information information) {
  clone_information_[static_cast<std::size_t>(clone)] = std::move(information);
}

void class_FPCto_import::clone_coordinates_set(clone_number clone, double left, double right) {
  clone_information &information = clone_information_[static_cast<std::size_t>(clone)];
  information.coor_left = left;
  information.coor_right = right;
}

void class_FPCto_import::clone_information_from_ORB_set(const number_list &list_of_clones,
                                                        std::span<const std::int32_t> left,
                                                        std::span<const std::int32_t> right) {
  const double now = frame_->clock().day_number();
  for (std::size_t k = 0; k < list_of_clones.members().size(); ++k) {
    const clone_number clone = list_of_clones.members()[k];
    clone_coordinates_set(clone, left[k], right[k]);
    clone_information &information = clone_information_[static_cast<std::size_t>(clone)];
    information.creation_date = information.modification_date = now;
  }
  ORB_already_set_ = true;
}

void class_FPCto_import::make_min_and_max_coor_for_cluster(cluster_id id) {
  const auto clones = clones_of_cluster(id);
  if (clones.empty())
    return;
  cluster_information &cluster = cluster_information_[static_cast<std::size_t>(id)];
  cluster.min_and_max_known = true;
  cluster.min_left = clone_coor_left(clones.front());
  cluster.max_right = clone_coor_right(clones.front());
  for (const clone_number clone : clones) {
    cluster.min_left = std::min(cluster.min_left, clone_coor_left(clone));
    cluster.max_right = std::max(cluster.max_right, clone_coor_right(clone));
  }
}

void class_FPCto_import::make_min_and_max_coor_where_known() {
  for (cluster_id id = 1; id <= n_list_of_all_cluster_names_; ++id)
    if (cluster_information_get(id).min_and_max_known)
      make_min_and_max_coor_for_cluster(id);
}

void class_FPCto_import::tiling_path_set(cluster_id id, number_list path) {
  tiling_path_[static_cast<std::size_t>(id)] = std::move(path);
}

void class_FPCto_import::cluster_user_remark_set(cluster_id id, std::string remark) {
  cluster_information_[static_cast<std::size_t>(id)].user_remark = std::move(remark);
}

void class_FPCto_import::cluster_trace_remark_set(cluster_id id, std::string remark) {
  cluster_information_[static_cast<std::size_t>(id)].trace_remark = std::move(remark);
}

void class_FPCto_import::contig_user_remark_make_based_on_information_for_clones() {
  std::vector<std::string> positions;
  for (const cluster_id id : current_list_of_clusters_in_use_get().members()) {
    number_list clones;
    list_of_clones_get(id, clones);
    std::int32_t n = 0;
    database_->markers().create_list_of_marker_position_for_list_of_clones(clones, positions, n);
    std::string remark = "Zones:";
    for (std::int32_t i = 1; i <= n; ++i)
      remark += " " + positions[static_cast<std::size_t>(i)];
    cluster_user_remark_set(id, std::move(remark));
  }
}

// ---- clusters --------------------------------------------------------------------------------------------------

void class_FPCto_import::check_clone_numbers(const number_list &list) const {
  for (const clone_number clone : list.members())
    if (clone < 1 || clone > n_clones_)
      frame_->program_end_now("Clone number must be from 1 to " + std::to_string(n_clones_) + ", but it is " +
                              std::to_string(clone));
}

// Room for the name, its values and its set of clones; the set follows.
cluster_id class_FPCto_import::new_cluster_id(const std::string &name) {
  const cluster_id id = ++n_list_of_all_cluster_names_;
  n_list_of_all_cluster_names_max_ = std::max(n_list_of_all_cluster_names_max_, id);
  name_of_cluster_.push_back(name);
  id_of_name_.emplace(name, id);
  cluster_information_.emplace_back();
  tiling_path_.emplace_back();
  in_use_.push_back(0);
  first_clone_.push_back(clones_of_clusters_.size()); // an empty set
  return id;
}

cluster_id class_FPCto_import::cluster_id_with_adding(const std::string &name, bool &is_new) {
  cluster_id id = 0;
  search_for_cluster(name, id, is_new);
  return is_new ? new_cluster_id(name) : id;
}

bool class_FPCto_import::clones_are_free(const number_list &list) {
  for (const clone_number clone : list.members()) {
    const cluster_id id = clone_in_cluster_get(clone);
    if (!cluster_is_in_use_get(id))
      continue;
    frame_->alarm("Clone " + std::to_string(clone) + " " + database_->name_of_clone_get(clone) +
                  " is already situated in cluster " + name_of_cluster_get(id));
    return false;
  }
  return true;
}

bool class_FPCto_import::add_new_cluster(const number_list &list, const std::string &name, const std::string &long_name,
                                         bool check) {
  check_clone_numbers(list);
  if (id_of_name_.contains(name)) {
    frame_->alarm("Cluster with name " + name + " already exist!");
    return false;
  }
  if (check && !clones_are_free(list))
    return false;
  const cluster_id id = new_cluster_id(name);
  cluster_information_[static_cast<std::size_t>(id)].FPC_name = long_name;
  in_use_[static_cast<std::size_t>(id)] = 1;
  current_list_of_clusters_in_use_.add(id);
  ++n_in_use_;
  clones_of_clusters_.insert(clones_of_clusters_.end(), list.members().begin(), list.members().end());
  first_clone_.back() = clones_of_clusters_.size();
  for (const clone_number clone : list.members())
    clone_in_cluster_(clone) = id;
  clusters_of_clones_known_ = false;
  return true;
}

// The dual family is made when it is next asked for, so that a run of many batches doesn't pay for each.
void class_FPCto_import::add_new_cluster_finish() {
  clusters_of_clones_known_ = false;
}

void class_FPCto_import::cluster_off_clusterName(const std::string &name) {
  cluster_id id = 0;
  bool not_found = false;
  search_for_cluster(name, id, not_found);
  if (not_found)
    frame_->alarm("Contig " + name + " not found!");
  else
    cluster_off_idCluster(id);
}

void class_FPCto_import::cluster_off_idCluster(cluster_id id) {
  const std::string &name = name_of_cluster_get(id);
  if (n_in_use_ == 0) {
    frame_->alarm("No contigs! Can't OFF contig " + name);
  } else if (!cluster_is_in_use_get(id)) {
    frame_->alarm("NB! Can't OFF contig " + name + " that was not ON.");
  } else {
    in_use_[static_cast<std::size_t>(id)] = 0;
    --n_in_use_;
    list_in_use_is_compact_ = false;
  }
}

} // namespace orb
