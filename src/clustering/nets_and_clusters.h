// The net of overlaps seen against the clusters of the registry: overlaps within clusters, and clones that are joined
// out of theirs. A clone belongs to the cluster that the registry says, in use or not.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "clustering/class_FPCto_import.h"
#include "metrics/metric_context.h"
#include "metrics/overlap_rule.h"

namespace orb {

struct net_within_clusters_options {
  std::optional<double> max_size; // of a cluster that is looked into, in clones; unset: asked for, all by default
};

struct net_within_clusters_summary {
  std::int32_t n_clones = 0;   // in clusters looked into
  std::int64_t n_overlaps = 0; // lines of overlaps
  std::filesystem::path file;
};

// Compares each clone with the others of its cluster and writes a text net, signif_overlaps_clust.txt of the working
// folder, with a block for every clone of the library. False after a stop request: the file holds what was done.
bool create_file_with_significant_connections_within_clusters_text(const metric_context &context,
                                                                   const class_FPCto_import &registry,
                                                                   const overlap_rule &rule,
                                                                   const net_within_clusters_options &options,
                                                                   net_within_clusters_summary &summary);

// Clones with at least two overlaps of at least `cutoff` (unset: asked for, 15 by default) with clones of another
// cluster, ascending, into clones_with_connectionOutFromCluster.txt of the working folder. Clones without a cluster are
// in no other one. False, and no file, after a stop request.
bool create_list_of_clones_with_connectionOutFromCluster(const metric_context &context, const class_net &net,
                                                         const class_FPCto_import &registry,
                                                         std::optional<double> cutoff, number_list &list,
                                                         std::filesystem::path &file);

} // namespace orb
