#include "clustering/nets_and_clusters.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "frame/files.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "net/net_as_text.h"
#include "net/pair_by_rule.h"

namespace orb {

namespace {

constexpr clone_number clones_between_polls = 100;

std::int32_t asked_max_size(process_frame &frame, const std::optional<double> &given, std::int32_t n) {
  double size = n;
  if (given)
    size = *given;
  else
    number_from_text_silent(frame.input({"maximal size of cluster", {}, std::to_string(n)}), size);
  return static_cast<std::int32_t>(std::clamp<double>(size, 0, n));
}

// The other clones of a clone's cluster, ascending and each once; none when the cluster is of another size.
void others_of_cluster(const class_FPCto_import &registry, clone_number clone, std::int32_t max_size,
                       std::vector<clone_number> &others) {
  others.clear();
  const cluster_id id = registry.clone_in_cluster_get(clone);
  const std::int32_t size = id >= 1 ? registry.n_clones_in_cluster_get(id) : 0;
  if (size < 2 || size > max_size)
    return;
  const auto clones = registry.clones_of_cluster(id);
  others.assign(clones.begin(), clones.end());
  std::sort(others.begin(), others.end());
  others.erase(std::unique(others.begin(), others.end()), others.end());
  others.erase(std::remove(others.begin(), others.end(), clone), others.end());
}

// Follows the stop flag at every row: a cluster may be all of the library.
bool write_rows(const metric_context &context, const class_FPCto_import &registry, pair_by_rule &pair,
                std::int32_t max_size, growing_file &output, net_within_clusters_summary &summary) {
  const class_DB_of_clones &database = context.database;
  const clone_number n = database.total_number_of_clones_get();
  std::vector<clone_number> others;
  std::string lines;
  for (clone_number i = 1; i <= n; ++i) {
    others_of_cluster(registry, i, max_size, others);
    summary.n_clones += !others.empty();
    lines.clear();
    std::int32_t n_overlaps = 0;
    double value = 0;
    std::int16_t code = 0;
    for (const clone_number j : others)
      if (pair.overlaps(i, j, value, code)) {
        text_net_overlap_append(lines, database, j, value, code);
        ++n_overlaps;
      }
    output.line(text_net_block(database, i, n_overlaps, lines));
    summary.n_overlaps += n_overlaps;
    if (i % clones_between_polls == 0 || i == n) {
      context.frame.progress(i, n);
      context.frame.local_process_text_set(std::to_string(i) + " from " + std::to_string(n));
    } else if (!others.empty())
      context.frame.yield();
    if (context.frame.stop_requested_get())
      return false;
  }
  return true;
}

} // namespace

bool create_file_with_significant_connections_within_clusters_text(const metric_context &context,
                                                                   const class_FPCto_import &registry,
                                                                   const overlap_rule &rule,
                                                                   const net_within_clusters_options &options,
                                                                   net_within_clusters_summary &summary) {
  process_frame &frame = context.frame;
  summary = {};
  frame.process_start("Construct net within clusters");
  const std::int32_t max_size = asked_max_size(frame, options.max_size, context.database.total_number_of_clones_get());
  auto significant = std::make_shared<class_clone_dist_FPC>();
  significant->create_sulston_significant_table(frame, rule.cutoff, context.database, context.usable_values);
  frame.message("Precalc is Ok");
  pair_by_rule pair(context, rule);
  pair.significant_table_set(std::move(significant));
  summary.file = frame.path_in_working_folder("\\signif_overlaps_clust.txt");
  growing_file output(summary.file, true);
  const bool completed = write_rows(context, registry, pair, max_size, output, summary);
  output.close();
  if (!completed) {
    frame.process_stopped_manually();
    return false;
  }
  frame.all_panels_reset();
  return true;
}

bool create_list_of_clones_with_connectionOutFromCluster(const metric_context &context, const class_net &net,
                                                         const class_FPCto_import &registry,
                                                         std::optional<double> cutoff, number_list &list,
                                                         std::filesystem::path &file) {
  constexpr std::int32_t least_overlaps = 2;
  process_frame &frame = context.frame;
  frame.process_start("Clones with connection out from cluster");
  double least = 15;
  if (cutoff)
    least = *cutoff;
  else
    number_from_text_silent(frame.input({"cutoff", {}, "15"}), least);
  list.clear();
  const clone_number n = std::min(net.number_of_vertices_get(), context.database.total_number_of_clones_get());
  for (clone_number a = 1; a <= n; ++a) {
    const cluster_id own = registry.clone_in_cluster_get(a);
    std::int32_t n_out = 0;
    for (const net_edge &edge : net.edges_of_vertex(a)) {
      const cluster_id other = edge.neighbour <= n ? registry.clone_in_cluster_get(edge.neighbour) : 0;
      n_out += edge.value >= least && own >= 1 && other >= 1 && other != own;
    }
    if (n_out >= least_overlaps)
      list.add(a);
    if (a % clones_between_polls != 0 && a != n)
      continue;
    frame.progress(a, n);
    frame.local_process_text_set(std::to_string(a) + " of " + std::to_string(n));
    if (frame.stop_requested_get()) {
      frame.process_stopped_manually();
      return false;
    }
  }
  file = frame.path_in_working_folder("\\clones_with_connectionOutFromCluster.txt");
  class_list_of_clones(frame, context.settings).print_list_of_clones(list, file, context.database);
  frame.all_panels_reset();
  frame.message("Ok");
  return true;
}

} // namespace orb
