// The contig registry: every cluster name ever entered, which clusters are in use (on), which cluster each clone
// belongs to, and for clones and clusters the values that an .fpc file carries. Its tables stand in
// contig_statistics.cpp and registry_tables.cpp, what comes from files in clusters_from_files.cpp; .fpc files are the
// business of fpc/.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "clustering/class_clustering.h"
#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "frame/settings.h"

namespace orb {

struct clone_information {
  std::string gel_number;
  double coor_left = 0, coor_right = 0; // in bands, from 1, both ends included
  std::int32_t first_band_adress = 0, number_of_bands = 0;
  double creation_date = 0, modification_date = 0; // day numbers of the frame's clock
};

struct cluster_information {
  std::string user_remark, trace_remark;
  std::string FPC_name; // the long name of the cluster
  bool min_and_max_known = false;
  double min_left = 0, max_right = 0; // in bands
};

// One clone of an assembly that another program made, as its reader hands it over.
struct fpc_clone_record {
  std::string name, map_name; // map_name: the cluster; empty for none
  double coor_left = 0, coor_right = 0;
  std::string gel_number;
  std::int32_t first_band_adress = 0, number_of_bands = 0;
  std::vector<std::string> markers;
  std::optional<double> creation_date, modification_date; // day numbers of the frame's clock; unset: now
};

// What stands between the clones of a marker in a table; `ask` puts the question, and a comma is the default.
enum class marker_separator { ask, comma, blank };

class class_FPCto_import {
public:
  // Empty: `clear_all_run` comes first. The arguments must outlive the object.
  class_FPCto_import(process_frame &frame, const project_settings &settings, class_DB_of_clones &database);

  // Reading.
  std::int32_t n_list_of_all_cluster_names_max_get() const { return n_list_of_all_cluster_names_max_; }
  std::int32_t n_list_of_all_cluster_names_get() const { return n_list_of_all_cluster_names_; }
  // i = 0: the count; i from 1: the id, in order of entry.
  void current_list_of_clusters_in_use_get(std::int32_t i, cluster_id &id) const;
  const number_list &current_list_of_clusters_in_use_get() const; // the same as a list
  bool cluster_is_in_use_get(cluster_id id) const;
  // Empty for an id that wasn't given.
  void name_of_cluster_get(cluster_id id, std::string &name) const;
  const std::string &name_of_cluster_get(cluster_id id) const;
  void clone_in_cluster_get(clone_number clone, cluster_id &id) const { id = clone_in_cluster_get(clone); }
  cluster_id clone_in_cluster_get(clone_number clone) const; // 0: none
  void list_of_clones_get(cluster_id id, number_list &list) const;
  std::span<const clone_number> clones_of_cluster(cluster_id id) const; // the same without a copy
  void n_clones_in_cluster_get(cluster_id id, std::int32_t &n) const { n = n_clones_in_cluster_get(id); }
  std::int32_t n_clones_in_cluster_get(cluster_id id) const;
  // All clusters that hold the clone, on or off, ascending. The dual family is made on demand, once after a change.
  void list_of_clusters_of_clone_get(clone_number clone, number_list &list) const;
  double clone_coor_left(clone_number clone) const { return clone_information_get(clone).coor_left; }
  double clone_coor_right(clone_number clone) const { return clone_information_get(clone).coor_right; }
  const clone_information &clone_information_get(clone_number clone) const {
    return clone_information_[static_cast<std::size_t>(clone)];
  }
  const cluster_information &cluster_information_get(cluster_id id) const {
    return cluster_information_[static_cast<std::size_t>(id)];
  }
  // From left to right; empty when none is known.
  const number_list &tiling_path_get(cluster_id id) const { return tiling_path_[static_cast<std::size_t>(id)]; }
  // Whether the cluster is a contig of an .fpc file: more than one clone, and not "Singletones".
  bool cluster_is_contig_get(cluster_id id) const;
  // max right - min left + 1 when they are known, else 0; in bands.
  double length_of_cluster_bands_get(cluster_id id) const;
  // Constant time. id 0 when not found.
  void search_for_cluster(std::string_view name, cluster_id &id, bool &not_found) const;
  bool clone_in_black_list_get(clone_number clone) const;
  void list_of_clones_black_list_get(number_list &list) const;
  void list_of_clones_add_to_black_list(const number_list &list);
  cluster_id marker_in_cluster_get(std::int32_t marker) const; // 0: none
  class_clustering &clustering() { return clustering_; }

  // Starting anew. Capacity = clones * max(factor, 5) + 5; it is a number to be told, no room is taken for it.
  void clear_all_run(std::int32_t factor, bool ask_markers);
  void clear_all(std::int32_t n_clones);
  // With a name: also one cluster of all clones, in use.
  void clear_all_and_create_cluster_AllDB(std::int32_t factor, const std::string &name, const std::string &long_name);

  // Clones and their values.
  void clone_information_start();
  void clone_information_set(clone_number clone, clone_information information);
  void clone_coordinates_set(clone_number clone, double left, double right);
  // Coordinates of a contig: `left` and `right` by place in the list (0-based spans as long as the list). Creation and
  // modification date become now.
  void clone_information_from_ORB_set(const number_list &list_of_clones, std::span<const std::int32_t> left,
                                      std::span<const std::int32_t> right);
  void make_min_and_max_coor_for_cluster(cluster_id id);
  void tiling_path_set(cluster_id id, number_list path);
  void cluster_user_remark_set(cluster_id id, std::string remark);
  void cluster_trace_remark_set(cluster_id id, std::string remark);
  // After the values of clones were read: minimum and maximum of all clusters in which they are said to be known.
  void make_min_and_max_coor_where_known();
  void contig_user_remark_make_based_on_information_for_clones();
  bool ORB_already_set_get() const { return ORB_already_set_; }
  void ORB_already_set_FALSE() { ORB_already_set_ = false; }

  // Clusters. Refused with a message: a name that exists; with `check`, a clone that lies in a cluster in use. A clone
  // entered twice belongs to the later cluster. A clone number outside the database ends the program.
  bool add_new_cluster(const number_list &list, const std::string &name, const std::string &long_name, bool check);
  // Closes a batch.
  void add_new_cluster_finish();
  void cluster_off_clusterName(const std::string &name);
  void cluster_off_idCluster(cluster_id id);

  // Clusters from an .fpc file: clone by clone, then the finish.
  // `reconcile_duplicates`: a second clone of the same name takes the first one's coordinates. `markers`: where the
  // clones' markers go; a reader fills fresh ones beside a fresh registry.
  void clone_information_from_fpc_file(const fpc_clone_record &record, bool reconcile_duplicates,
                                       class_markers &markers);
  void clone_cluster_set(clone_number clone, const std::string &name, class_clustering &clustering);
  void read_clusterization_from_FPC_finish_to_add_clusters(class_markers &markers);
  // A list from outside may hold any number; one that is no clone of the database ends the program.
  void check_clone_numbers(const number_list &list) const;

  // A folder of list files, each a cluster named after its file.
  void read_clustering_from_folder_of_files_run();
  // `test`: lists with clones of another list are refused; unset: asks. Every file of the folder counts.
  void read_clustering_from_folder_of_files(const std::filesystem::path &folder, std::optional<bool> test = {});

  // Printing.
  // One row for each clone of the list.
  void print_coordinates_of_clones(const number_list &list, const std::filesystem::path &file);
  // contig_statistics_<band size>.txt in the working folder; the name of the file.
  std::filesystem::path print_N50_statistics();
  // The tables below have a header line and fields separated by tabs unless another form is named; empty paths get the
  // default names in the working folder. Clusters are those in use, coordinates are in bands with three decimals.
  //
  // Which contig each clone lies in: "clone", "contig" (empty for none). clones_in_contogs.txt.
  void print_cluster_name_for_clones(const number_list &list, const std::filesystem::path &file = {});
  // All clusters that hold a clone, on or off, in order of entry: "clone", "clusters" with commas between them.
  // clusters_of_clones.txt.
  void print_clusters_of_clones(const number_list &list, const std::filesystem::path &file = {});
  // A new folder with the clones of each cluster from left to right: the names alone, with coordinates, and with their
  // markers behind these, each in a folder of its own, and report.txt with a row a cluster. Returns the folder. Follows
  // the stop flag between clusters.
  std::filesystem::path print_FPC_clusters();
  // Where markers lie, with commas between the fields: mmm.txt, a row for each marker (or for each list of clones in a
  // line "clone_1,..,clone_k" of a file, which is asked about and for when `lists` is empty) and cluster that holds
  // clones of it; and contigs_with_n_markers.txt, a row a cluster. False when the file of lists was cancelled or can't
  // be read.
  bool print_positon_of_markers(const std::filesystem::path &lists = {});
  // clones_for_each_marker.txt: a line a marker, with its clones and its position; the form in which lists of clones
  // for each marker are read. A message when there are no markers.
  void PrintClonesForMarkers(marker_separator separator = marker_separator::ask);
  // New names for clusters from lines "name, tab, new name" of a file. Refused as a whole, with the line: an unknown
  // name, a new name that another cluster has, a line that isn't two names.
  bool rename_contigs(const std::filesystem::path &file);

private:
  struct name_hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };

  cluster_id new_cluster_id(const std::string &name);
  cluster_id cluster_id_with_adding(const std::string &name, bool &is_new);
  bool clones_are_free(const number_list &list);
  void make_clusters_of_clone() const;
  cluster_id singletones_id() const;
  void put_free_clones_into_clusters();
  void rebuild_sets_from_clones();
  void set_marker_clusters(class_markers &markers);
  void set_cluster_of_fpc_clone(clone_number clone, const fpc_clone_record &record);

  process_frame *frame_;
  const project_settings *settings_;
  class_DB_of_clones *database_;
  std::int32_t n_clones_ = 0;
  std::vector<std::string> name_of_cluster_{1}; // by id, from 1
  std::unordered_map<std::string, cluster_id, name_hash, std::equal_to<>> id_of_name_;
  std::int32_t n_list_of_all_cluster_names_ = 0, n_list_of_all_cluster_names_max_ = 0;
  // Clones of cluster id: clones_of_clusters_[first_clone_[id] .. first_clone_[id + 1] - 1].
  std::vector<clone_number> clones_of_clusters_;
  std::vector<std::size_t> first_clone_{0, 0};
  // The dual, made on demand: clusters of a clone.
  mutable std::vector<cluster_id> clusters_of_clones_;
  mutable std::vector<std::size_t> first_cluster_;
  mutable bool clusters_of_clones_known_ = false;
  // Ids in order of entry; ids that went off are taken out when the list is next read.
  mutable number_list current_list_of_clusters_in_use_;
  mutable bool list_in_use_is_compact_ = true;
  std::int32_t n_in_use_ = 0;
  std::vector<char> in_use_{0}; // by id
  number_list clone_in_cluster_;
  std::vector<clone_information> clone_information_{1};
  std::vector<cluster_information> cluster_information_{1};
  std::vector<number_list> tiling_path_{1}; // by id
  std::vector<char> clone_in_black_list_{0};
  class_clustering clustering_;
  number_list marker_in_cluster_;
  bool ORB_already_set_ = false;
};

} // namespace orb
