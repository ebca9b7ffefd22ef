// Small clusters joined into larger ones by their best link, the strongest link of all first.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "clustering/class_clustering.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"

namespace orb {

class class_clust_Linker_nenado {
public:
  static constexpr std::int32_t STANDARD_MIN_cluster_SIZE = 6; // larger clusters start closed
  static constexpr std::int32_t largest_group = 300;           // two clusters of so many clones together stay apart

  // `use_net`: links are overlaps of the loaded net; otherwise all pairs of clones are compared, of two large clusters
  // a part of them.
  class_clust_Linker_nenado(class_clone_net_signif &signif, const overlap_rule &rule, bool use_net)
      : signif_(&signif), rule_(rule), use_net_(use_net) {}

  // `cluster_numbers` by element of `list`, from 1 to n_clusters. The groups go into `clustering`, numbered in the
  // order in which they arose, and from there into the folder `folder` (made when it is empty) with the caption
  // "Linker" and clustering_cutoffs.txt beside them; `min_size` of the printing. False after a stop request, with
  // nothing printed.
  bool grouping_of_clusters(const number_list &cluster_numbers, std::int32_t n, const number_list &list,
                            std::int32_t n_clusters, class_clustering &clustering, std::filesystem::path &folder,
                            std::int32_t &min_size);
  std::int32_t n_merges_get() const { return n_merges_; }
  // Whether the sizes add up to the number of elements; ends the program when they don't.
  void control_of_sum() const;

  // Pairs of the net between two lists, clones of the first list in column 1. The second list is ascending, and so is
  // the first.
  void create_list_of_connections_for_two_lists_of_clones(const number_list &list1, const number_list &list2,
                                                          std::vector<std::pair<clone_number, clone_number>> &pairs,
                                                          std::int32_t &n) const;

private:
  struct cluster {
    std::vector<std::int32_t> elements;
    bool is_closed = false;
    double cutoff = 0;                    // at which it arose
    std::map<std::int32_t, double> links; // by the other cluster, of those that are left
  };
  struct link_in_queue {
    double value = 0;
    std::int32_t a = 0, b = 0;                        // a < b
    bool operator<(const link_in_queue &other) const; // the strongest is the greatest
  };

  bool find_links();
  bool compare_pairs();
  static double best_link(const number_list &clones_1, const number_list &clones_2, class_clone_dist_my &metric);
  void links_of_net();
  void note_link(std::int32_t a, std::int32_t b, double value);
  bool merge_clusters();
  void merge(std::int32_t a, std::int32_t b, double value, std::vector<link_in_queue> &queue);
  number_list clones_of(std::int32_t c) const;
  void put_into(class_clustering &clustering, std::vector<std::int32_t> &number_of) const;
  void print_cutoffs(const class_clustering &clustering, const std::vector<std::int32_t> &number_of,
                     const std::filesystem::path &file) const;

  class_clone_net_signif *signif_;
  overlap_rule rule_;
  bool use_net_;
  number_list list_;
  std::vector<cluster> clusters_; // from 1; a merge adds one and empties two
  std::int32_t n_merges_ = 0;
};

} // namespace orb
