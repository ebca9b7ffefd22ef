// Clusters that come from files: the blocks of an .fpc assembly, and a folder of list files.
#include <algorithm>

#include "clustering/class_FPCto_import.h"
#include "database/class_markers.h"
#include "frame/class_serv_raznoe.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

constexpr const char *singletones_name = "Singletones";

void widen(cluster_information &cluster, double left, double right) {
  cluster.min_left = std::min(cluster.min_left, left);
  cluster.max_right = std::max(cluster.max_right, right);
}

} // namespace

cluster_id class_FPCto_import::singletones_id() const {
  cluster_id id = 0;
  bool not_found = false;
  search_for_cluster(singletones_name, id, not_found);
  return id;
}

void class_FPCto_import::clone_cluster_set(clone_number clone, const std::string &name, class_clustering &clustering) {
  std::int32_t c = 0;
  if (!name.empty()) {
    clustering.search_for_cluster_in_current_clustering(name, c);
    if (c == 0) {
      c = clustering.number_of_clusters_get() + 1;
      clustering.number_of_clusters_set(c);
      clustering.name_of_cluster_set(c, name);
    }
  }
  clustering.cluster_number_set(clone, c);
}

void class_FPCto_import::set_cluster_of_fpc_clone(clone_number clone, const fpc_clone_record &record) {
  cluster_id id = 0;
  bool not_found = false;
  search_for_cluster(record.map_name, id, not_found);
  cluster_id &cluster = clone_in_cluster_(clone);
  if (cluster > 0 && cluster != id)
    frame_->program_end_now("Contradiction in contig name for clone " + record.name + ": " +
                                name_of_cluster_get(cluster) + "=/=" + record.map_name,
                            exit_status::run_failed);
  cluster = id;
}

void class_FPCto_import::clone_information_from_fpc_file(const fpc_clone_record &record, bool reconcile_duplicates,
                                                         class_markers &markers) {
  number_list clones = database_->clone_number_get_with_repeats(record.name);
  if (clones.empty())
    clones = number_list{0}; // an unknown name makes its cluster known all the same
  clone_information information;
  information.gel_number = record.gel_number;
  information.first_band_adress = record.first_band_adress;
  information.number_of_bands = record.number_of_bands;
  const double now = frame_->clock().day_number();
  information.creation_date = record.creation_date.value_or(now);
  information.modification_date = record.modification_date.value_or(now);

  std::vector<std::string> marker_names(1);
  marker_names.insert(marker_names.end(), record.markers.begin(), record.markers.end());
  for (std::int32_t k = 1; k <= clones.count(); ++k) {
    const clone_number clone = clones(k);
    information.coor_left = record.coor_left;
    information.coor_right = record.coor_right;
    if (k > 1 && reconcile_duplicates) {
      information.coor_left = clone_coor_left(clones(1));
      information.coor_right = clone_coor_right(clones(1));
    } else if (!record.map_name.empty()) {
      bool is_new = false;
      cluster_information &cluster =
          cluster_information_[static_cast<std::size_t>(cluster_id_with_adding(record.map_name, is_new))];
      if (is_new) {
        cluster.min_and_max_known = true;
        cluster.min_left = record.coor_left;
        cluster.max_right = record.coor_right;
      } else {
        widen(cluster, record.coor_left, record.coor_right);
      }
    }
    if (clone < 1 || clone > n_clones_)
      continue;
    if (!record.map_name.empty())
      set_cluster_of_fpc_clone(clone, record);
    if (record.map_name.empty() && clone_in_cluster_get(clone) > 0) { // a second block that leaves the contig out
      information.coor_left = clone_coor_left(clone);
      information.coor_right = clone_coor_right(clone);
    } else {
      clone_cluster_set(clone, record.map_name, clustering_);
    }
    if (!record.markers.empty()) {
      number_list numbers;
      std::vector<bool> are_new;
      markers.add_clone_with_markers_new(*frame_, clone, marker_names, static_cast<std::int32_t>(record.markers.size()),
                                         numbers, are_new);
    }
    clone_information_set(clone, information);
  }
}

void class_FPCto_import::put_free_clones_into_clusters() {
  const auto n_free = std::count(clone_in_cluster_.members().begin(), clone_in_cluster_.members().end(), 0);
  if (n_free == 0)
    return;
  const std::string text = "In total, " + std::to_string(n_free) + " clones not in FPC contigs!";
  bool into_singletones = false;
  if (settings_->singletones)
    into_singletones =
        frame_->yes({.text = text + "\r\nDo you want to put these clones into set of singletones (cluster #" +
                             std::to_string(n_list_of_all_cluster_names_ + 1) + ")?",
                     .title = {},
                     .by_default = answer::no,
                     .to_go_on = answer::no});
  else
    frame_->message(text);
  for (clone_number clone = 1; clone <= n_clones_; ++clone) {
    if (clone_in_cluster_(clone) != 0)
      continue;
    bool is_new = false;
    if (into_singletones) {
      clone_in_cluster_(clone) = cluster_id_with_adding(singletones_name, is_new);
      continue;
    }
    std::string name = "ctg_" + database_->name_of_clone_get(clone);
    if (id_of_name_.contains(name))
      name += "_" + std::to_string(clone); // clones may share a name, clusters may not
    clone_in_cluster_(clone) = cluster_id_with_adding(name, is_new);
  }
}

// Sets of all ids from the clusters of the clones, each ascending.
void class_FPCto_import::rebuild_sets_from_clones() {
  first_clone_.assign(static_cast<std::size_t>(n_list_of_all_cluster_names_) + 2, 0);
  for (const cluster_id id : clone_in_cluster_.members())
    if (id > 0)
      ++first_clone_[static_cast<std::size_t>(id) + 1];
  for (std::size_t i = 1; i < first_clone_.size(); ++i)
    first_clone_[i] += first_clone_[i - 1];
  clones_of_clusters_.assign(first_clone_.back(), 0);
  std::vector<std::size_t> next(first_clone_);
  for (clone_number clone = 1; clone <= n_clones_; ++clone)
    if (const cluster_id id = clone_in_cluster_(clone); id > 0)
      clones_of_clusters_[next[static_cast<std::size_t>(id)]++] = clone;
  clusters_of_clones_known_ = false;
}

void class_FPCto_import::read_clusterization_from_FPC_finish_to_add_clusters(class_markers &markers) {
  put_free_clones_into_clusters();
  current_list_of_clusters_in_use_ = number_list::range(1, n_list_of_all_cluster_names_);
  list_in_use_is_compact_ = true;
  n_in_use_ = n_list_of_all_cluster_names_;
  for (cluster_id id = 1; id <= n_list_of_all_cluster_names_; ++id) {
    in_use_[static_cast<std::size_t>(id)] = 1;
    cluster_information &cluster = cluster_information_[static_cast<std::size_t>(id)];
    // Whether they are known stays; who has read the coordinates makes them anew from the clones.
    cluster.min_left = cluster.max_right = 0;
    cluster.FPC_name.clear();
  }
  rebuild_sets_from_clones();
  clustering_.cluster_number_for_all_elements_set_go();
  clustering_.create_arrays_for_clusters(false, false);
  set_marker_clusters(markers);
}

void class_FPCto_import::set_marker_clusters(class_markers &markers) {
  const std::int32_t n_markers = markers.total_number_of_markers_get();
  marker_in_cluster_.clear();
  marker_in_cluster_.resize(n_markers);
  if (n_markers == 0)
    return;
  markers.finish_of_adding();
  const cluster_id singletones = singletones_id();
  std::int32_t n_problematic = 0;
  for (std::int32_t m = 1; m <= n_markers; ++m) {
    cluster_id &cluster = marker_in_cluster_(m);
    cluster = singletones;
    bool problematic = false;
    const number_list clones = markers.list_of_clones_of_marker_get(m);
    for (const clone_number clone : clones.members()) {
      const cluster_id id = clone_in_cluster_get(clone);
      if (id == 0 || id == singletones)
        continue;
      if (cluster == singletones)
        cluster = id;
      else if (cluster != id)
        problematic = problematic || (cluster_is_in_use_get(cluster) && cluster_is_in_use_get(id));
    }
    n_problematic += problematic;
  }
  if (n_problematic > 0)
    frame_->alarm("Number of problematic markers is " + std::to_string(n_problematic));
}

void class_FPCto_import::read_clustering_from_folder_of_files_run() {
  const std::filesystem::path file = frame_->open_file_dialog("Click any file from directory");
  if (!file.empty())
    read_clustering_from_folder_of_files(file.parent_path());
}

void class_FPCto_import::read_clustering_from_folder_of_files(const std::filesystem::path &folder,
                                                              std::optional<bool> test) {
  const auto names = class_serv_raznoe::create_ordered_list_of_files_in_folder(folder, "");
  const bool check =
      test ? *test
           : frame_->yes({.text = "Need to test?", .title = {}, .by_default = answer::no, .to_go_on = answer::no});
  class_list_of_clones lists(*frame_, *settings_);
  for (const std::string &name : names) {
    number_list list;
    std::string pure_name;
    if (lists.run_reading_file_with_list_of_clones(folder / name, list, pure_name, *database_))
      add_new_cluster(list, pure_name, "", check);
  }
  add_new_cluster_finish();
  frame_->message("Clustering is loaded");
}

} // namespace orb
