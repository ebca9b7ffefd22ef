// One partition of a set of elements into numbered clusters: how it is made (connected components), changed and
// printed. Elements are usually the clones of a list; an element is then a position in that list.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "frame/settings.h"
#include "graph/class_net.h"
#include "graph/label_forest.h"
#include "metrics/overlap_rule.h"

namespace orb {

class class_clone_dist_my;
class class_clone_net_signif;

// What decides that two clones belong together.
struct clustering_metric {
  std::int16_t distance = 4; // metric index
  double cutoff = 15.0;      // on the scale of the metric, more is stronger
  double burying = overlap_rule::standard_burying;
};

class class_clustering {
public:
  static constexpr std::int32_t STANDARD_MIN_cluster_SIZE = 6;
  static constexpr const char *NAME_OF_SET_OF_ELEMENTS_NOT_IN_CLUSTERS = "Not_in_clusters";

  // A light handle: nothing is allocated before a `clustering_start`. Without a database the elements bear names of
  // their own (`name_of_element_set`). All three must outlive the object.
  class_clustering(process_frame &frame, const project_settings &settings,
                   const class_DB_of_clones *database = nullptr);

  // Start. Elements are 1..n; `list` maps them to clone numbers.
  void clustering_start_n_elements_set(std::int32_t n);
  void clustering_start_no_metric(const std::string &folder_suffix, std::int32_t n, const number_list &list);
  // The folder's suffix becomes folder_suffix + "_T" + tolerance + "_" + whole part of the cutoff + "_" + metric name.
  void clustering_start(std::int32_t n, const number_list &list, const std::string &folder_suffix,
                        std::int16_t distance, double cutoff, double burying);
  void clustering_start_cutoff_set(double cutoff) { metric_.cutoff = cutoff; }
  const clustering_metric &metric_get() const { return metric_; }

  // Plain access. Clusters are 1..number_of_clusters_get(), elements 1..n_elements_get().
  std::int32_t n_elements_get() const { return n_elements_; }
  std::int32_t number_of_clusters_get() const { return private_n_of_clusters_; }
  void number_of_clusters_set(std::int32_t n);
  std::int32_t cluster_number_get(std::int32_t element) const { return cluster_number_(element); }
  void cluster_number_set(std::int32_t element, std::int32_t cluster) { cluster_number_(element) = cluster; }
  std::int32_t n_elements_in_cluster_get(std::int32_t cluster) const { return n_elements_in_cluster_(cluster); }
  void name_of_cluster_resize(std::int32_t n);
  void name_of_cluster_set(std::int32_t cluster, std::string name);
  std::string name_of_cluster_get(std::int32_t cluster) const; // empty when none was set
  void name_of_element_resize(std::int32_t n) { name_of_element_.resize(static_cast<std::size_t>(n) + 1); }
  void name_of_element_set(std::int32_t element, std::string name);
  std::string name_of_element_get(std::int32_t element) const; // asks the database when elements are clones
  bool elements_are_clones_get() const { return elements_are_clones_; }
  void elements_are_clones_set(bool clones) { elements_are_clones_ = clones; }
  // The clone of an element; the element itself when there is no list.
  clone_number clone_number_get(std::int32_t element) const;
  clone_number get_actual_clone_number(std::int32_t element) const { return clone_number_get(element); }
  const std::string &folder_name_dobaffka_my_get() const { return folder_name_dobaffka_; }
  void folder_name_dobaffka_my_set(std::string suffix) { folder_name_dobaffka_ = std::move(suffix); }
  static std::int32_t STANDARD_MIN_cluster_SIZE_get() { return STANDARD_MIN_cluster_SIZE; }
  static std::string NAME_OF_SET_OF_ELEMENTS_NOT_IN_CLUSTERS_get() { return NAME_OF_SET_OF_ELEMENTS_NOT_IN_CLUSTERS; }
  // The first cluster of that name; 0 when there is none. Constant time once names stand still.
  void search_for_cluster_in_current_clustering(std::string_view text, std::int32_t &cluster) const;

  // Making the partition.
  void put_all_elements_into_single_cluster();
  // Components of a flat neighbour list as `class_net::save_net_into_arrayes` gives it (one direction is enough): the
  // neighbours of i are neighbours[adress_of_start[i] .. adress_of_start[i + 1] - 1]. Clusters come numbered by their
  // smallest element. Near linear. Names and the grouped list are left to the caller.
  void clusterization_fast(std::int32_t n, const std::vector<vertex_number> &neighbours,
                           const std::vector<edge_adress> &adress_of_start);
  // The same straight from a net of the elements.
  void clustering_based_on_net(const class_net &net);
  // Single linkage at the cutoff set, through the net that `nets` makes for the list.
  void run_clusterization_fast(class_clone_net_signif &nets);
  // The same by testing pairs, only across what isn't joined yet. `metric` is given this object's parameters. With
  // `print` the joinings go to test_clustering.txt of the working folder, and `print_clusters_run` follows.
  void clusterization_slow(bool print, class_clone_dist_my &metric);
  // The pair test by itself: true when elements i < j belong together, with their score.
  using pair_test = std::function<bool(std::int32_t i, std::int32_t j, double &score)>;
  void clusterization_slow(bool print, const pair_test &test);

  // Cluster numbers from outside (list by element). Gaps in the numbers are asked about; yes ends the program.
  void cluster_number_for_all_elements_set(const number_list &numbers);
  // The same, with numbers <= 0 collected into a last cluster "Not_in_clusters". Takes `numbers` of this object.
  void cluster_number_for_all_elements_set_go();
  // Has to be called after any change of cluster numbers, before the grouped list is read.
  void create_arrays_for_clusters(bool drop_empty, bool renumber);
  void delete_cluster(std::int32_t cluster, bool rebuild);

  // The grouped list.
  std::int32_t element_of_cluster_get(std::int32_t cluster, std::int32_t k) const;
  // list(0) = size. With `allocate` the list is sized for at least 2 members first.
  void read_from_arrays_for_clusters(std::int32_t cluster, number_list &list, bool allocate = true) const;
  // New place k gets the element formerly at place order(k).
  void order_of_elements_in_cluster_set(std::int32_t cluster, const number_list &order);

  // Printing; see clustering_printing.cpp. A negative size becomes STANDARD_MIN_cluster_SIZE.
  void print_clusters_run(std::string caption, std::int32_t &min_size);
  void print_clusters(std::int32_t &min_size, bool print_data, const std::string &suffix, bool drop_empty,
                      bool elements_are_clones, std::filesystem::path &folder, std::string &caption);
  static std::string auto_cluster_name(const std::string &caption, std::int32_t cluster, std::int32_t size);
  // One integer a line, chosen in a dialog; false when cancelled or refused (then nothing changed).
  bool read_clusterization();
  bool read_clusterization(const std::filesystem::path &file);

private:
  void start_sizes(std::int32_t n_clusters);
  void count_sizes_and_gaps(const number_list &numbers, std::int32_t &max_cluster, std::int32_t &n_used);
  void ask_about_gaps(std::int32_t max_cluster, std::int32_t n_used) const;
  void place_elements(const std::vector<std::int32_t> &map);
  void print_test_clustering(const std::vector<std::string> &lines) const;
  void print_clusterization(const std::filesystem::path &folder) const;
  void print_one_cluster(bool print_data, const std::string &caption, std::int32_t cluster, const number_list &list,
                         const std::filesystem::path &folder) const;

  void index_names() const;

  process_frame *frame_;
  const project_settings *settings_;
  const class_DB_of_clones *database_;
  std::int32_t n_elements_ = 0;
  std::vector<std::string> name_of_element_, name_of_cluster_;            // from 1
  mutable std::unordered_map<std::string, std::int32_t> cluster_of_name_; // first cluster of a name, made on demand
  mutable bool names_are_indexed_ = false;
  std::string folder_name_dobaffka_;
  number_list cluster_number_;        // by element
  number_list n_elements_in_cluster_; // by cluster
  std::int32_t private_n_of_clusters_ = 0;
  number_list list_of_elements_by_clusters_, array_starts_, array_ends_;
  bool elements_are_clones_ = true;
  number_list list_of_clones_;
  clustering_metric metric_;
};

} // namespace orb
