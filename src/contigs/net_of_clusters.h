// The net whose vertices are clusters: two are joined when clones of theirs overlap. Chains of clusters without
// branching are united.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"

namespace orb {

struct net_of_clusters_options {
  std::filesystem::path any_file; // of the folder of lists, or the folder; empty: asked for
  std::string caption;            // of the united clusters' lists; empty: asked for, once a printing
  std::int32_t min_size = -1;     // proposed for these lists; negative: the standard one
};

struct net_of_clusters {
  // Clusters in the order of their files' names, from 1; element 0 unused.
  std::vector<std::string> names;
  number_list clones;            // with a cluster, ascending
  number_list cluster_of_clone;  // by place in `clones`; a clone of several files belongs to the last
  class_net net;                 // of the clusters; values: the strongest overlap of two
  number_list united_of_cluster; // united cluster of each cluster
  std::int32_t n_united = 0;
  std::vector<std::string> united_names; // from 1
  class_net united_net;
  std::vector<std::filesystem::path> files_written; // but for those in the folders of lists
};

// Reads every "*.txt" of a folder as a cluster, one clone a line, and writes net1.txt, NetOfClusters.net, the lists of
// united clusters in two folders (of clusters, then of clones), net2.txt and NetOfClustersAutoMerg.net. Unknown names
// are told and passed over. False when cancelled, stopped or refused.
bool create_net_of_clusters(class_clone_net_signif &signif, const overlap_rule &rule,
                            const net_of_clusters_options &options, net_of_clusters &result);

// The steps by themselves. The Pajek file NetOfClusters + suffix + ".net" of the working folder; returns its path.
std::filesystem::path net_of_clusters_to_pajek(process_frame &frame, const class_net &net,
                                               const std::vector<std::string> &names, const std::string &suffix);
// Unites chains of clusters of result.net and prints the outcome.
void unite_clusters_along_liniar_parts(const metric_context &context, const net_of_clusters_options &options,
                                       net_of_clusters &result);

} // namespace orb
