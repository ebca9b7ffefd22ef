// The table of clusters beside the picture.
#include <algorithm>
#include <string>
#include <unordered_map>

#include "clustering/class_FPCto_import.h"
#include "frame/class_math1.h"
#include "viewer/class_net_elng.h"
#include "viewer/class_net_elng_clust.h"

namespace orb {

namespace {

// Gives each node of `nodes` that belongs to a cluster to its row, rows by cluster number; then rows without nodes go.
void fill_rows(std::span<const node_elng> nodes, std::vector<cluster_elng> &rows) {
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    const std::int32_t id = nodes[n].cluster_id;
    if (id < 1 || static_cast<std::size_t>(id) >= rows.size())
      continue;
    cluster_elng &row = rows[static_cast<std::size_t>(id)];
    if (row.n_shown++ == 0)
      row.color = nodes[n].ic;
    row.is_selected = row.is_selected || nodes[n].is_selected;
  }
  rows.erase(std::remove_if(rows.begin() + 1, rows.end(), [](const cluster_elng &row) { return row.n_shown == 0; }),
             rows.end());
}

std::string padded(std::string text, std::size_t width) {
  if (text.size() < width)
    text.append(width - text.size(), ' ');
  return text;
}

std::string row_text(const cluster_elng &row, std::int32_t number, std::size_t width_1, std::size_t width_2) {
  std::string text = padded(std::to_string(number), width_1) + "\t" + padded(row.name, width_2);
  if (row.n_clones > 1)
    text += "\t" + std::to_string(row.n_clones) + " (" + std::to_string(row.n_shown) + ")" +
            (row.n_clones > row.n_shown ? "*" : "");
  return text;
}

} // namespace

void class_net_elng::make_cluster_info(const net_sources &sources) {
  if (sources.cluster_table != nullptr && sources.cluster_table->is_loaded())
    clusters_from_table(sources);
  else if (sources.database.contigs_are_specified_get() && sources.database.contigs() != nullptr)
    clusters_from_registry(sources);
  else {
    clusters_.resize(1);
    n_clusters_ = -1;
    return;
  }
  n_clusters_ = static_cast<std::int32_t>(clusters_.size()) - 1;
}

void class_net_elng::clusters_from_registry(const net_sources &sources) {
  const class_FPCto_import &registry = *sources.database.contigs();
  clusters_.assign(static_cast<std::size_t>(registry.n_list_of_all_cluster_names_get()) + 1, {});
  for (std::size_t id = 1; id < clusters_.size(); ++id)
    clusters_[id].id = static_cast<std::int32_t>(id);
  fill_rows(nodes_, clusters_);
  for (std::size_t i = 1; i < clusters_.size(); ++i) {
    clusters_[i].name = registry.name_of_cluster_get(clusters_[i].id);
    clusters_[i].n_clones = registry.n_clones_in_cluster_get(clusters_[i].id);
  }
}

void class_net_elng::clusters_from_table(const net_sources &sources) {
  const class_net_elng_clust &table = *sources.cluster_table;
  const std::int32_t n_of_table = table.n_clusters_get();
  clusters_.assign(static_cast<std::size_t>(n_of_table) + 1, {});
  for (std::int32_t i = 1; i <= n_of_table; ++i) {
    clusters_[static_cast<std::size_t>(i)].name = table.cluster_name_get(i);
    clusters_[static_cast<std::size_t>(i)].n_clones = table.n_rows_of_cluster_get(i);
  }
  // a caption that the table doesn't have is a cluster of its own
  std::unordered_map<std::string, std::int32_t> own;
  for (std::size_t n = 1; n < nodes_.size(); ++n) {
    node_elng &node = nodes_[n];
    node.cluster_id = table.cluster_of_caption(node.caption);
    if (node.cluster_id > 0)
      continue;
    const auto [at, is_new] = own.emplace(node.caption, static_cast<std::int32_t>(clusters_.size()));
    node.cluster_id = at->second;
    if (is_new) {
      clusters_.emplace_back();
      clusters_.back().name = node.caption;
      clusters_.back().n_clones = 1;
    }
  }
  for (std::size_t id = 1; id < clusters_.size(); ++id)
    clusters_[id].id = static_cast<std::int32_t>(id);
  fill_rows(nodes_, clusters_);
}

void class_net_elng::cluster_looks_from_table(const net_sources &sources) {
  make_cluster_info(sources);
  if (sources.cluster_table == nullptr || !sources.cluster_table->is_loaded())
    return;
  for (std::size_t n = 1; n < nodes_.size(); ++n) {
    node_elng &node = nodes_[n];
    if (node.cluster_id > sources.cluster_table->n_clusters_get())
      continue;
    const cluster_appearance &look = sources.cluster_table->cluster_look_get(node.cluster_id);
    node.ic_name = palette_colour(look.fill).name;
    node.ic = palette_colour(look.fill).value;
    node.bc_name = palette_colour(look.border).name;
    node.bc = palette_colour(look.border).value;
    node.shape = look.shape;
  }
  make_cluster_info(sources);
}

void class_net_elng::textClusters_get(std::vector<cluster_line> &lines) const {
  lines.clear();
  for (std::size_t i = 1; i < clusters_.size(); ++i)
    lines.push_back(
        {row_text(clusters_[i], static_cast<std::int32_t>(i), 0, 0), clusters_[i].color, clusters_[i].is_selected});
}

void class_net_elng::textClustersSort_get(std::string &heading, std::vector<cluster_line> &lines) {
  const auto n = static_cast<std::int32_t>(clusters_.size()) - 1;
  std::vector<std::string> names(1);
  std::vector<std::int32_t> place;
  std::size_t width_1 = 1, width_2 = 4;
  for (std::int32_t i = 1; i <= n; ++i) {
    names.push_back(clusters_[static_cast<std::size_t>(i)].name);
    width_1 = std::max(width_1, std::to_string(i).size());
    width_2 = std::max(width_2, names.back().size());
  }
  class_math1::quicksort_string_numPP(names, place, 1, n, true);
  heading = padded("#", width_1) + "\t" + padded("Name", width_2) + "\tClones (shown)";
  lines.clear();
  for (std::int32_t row = 1; row <= n; ++row) {
    cluster_elng &cluster = clusters_[static_cast<std::size_t>(place[static_cast<std::size_t>(row)])];
    cluster.sorted_row = row;
    lines.push_back({row_text(cluster, row, width_1, width_2), cluster.color, cluster.is_selected});
  }
}

std::int32_t class_net_elng::ClusterNumberInNetNonSorted(std::int32_t row) const {
  for (std::size_t i = 1; i < clusters_.size(); ++i)
    if (clusters_[i].sorted_row == row)
      return static_cast<std::int32_t>(i);
  return -1;
}

std::int32_t class_net_elng::ClusterNumberInNetSorted(std::int32_t i) const {
  return i >= 1 && i <= n_clusters_ ? clusters_[static_cast<std::size_t>(i)].sorted_row : -1;
}

std::int32_t class_net_elng::cluster_of_id(std::int32_t id) const {
  const auto at = std::lower_bound(clusters_.begin() + 1, clusters_.end(), id,
                                   [](const cluster_elng &row, std::int32_t wanted) { return row.id < wanted; });
  return at != clusters_.end() && at->id == id ? static_cast<std::int32_t>(at - clusters_.begin()) : 0;
}

std::int32_t class_net_elng::Get_ClusterIdByNodeId(vertex_number n) const {
  return is_node(n) ? cluster_of_id(nodes_[static_cast<std::size_t>(n)].cluster_id) : 0;
}

bool class_net_elng::cluster_is_selected(std::int32_t i) const {
  return i >= 1 && i <= n_clusters_ && clusters_[static_cast<std::size_t>(i)].is_selected;
}

void class_net_elng::AddToSelectedAllClonesOfCluster(std::int32_t i) {
  if (i < 1 || i > n_clusters_)
    return;
  clusters_[static_cast<std::size_t>(i)].is_selected = true;
  for (vertex_number n = 1; n <= private_n_vertices_; ++n)
    if (nodes_[static_cast<std::size_t>(n)].cluster_id == clusters_[static_cast<std::size_t>(i)].id)
      AddSelectedNode(n);
}

bool class_net_elng::AddToSelectedAllClonesOfClusterContainingNode(vertex_number n, bool toggle, bool &now_selected) {
  const std::int32_t i = Get_ClusterIdByNodeId(n);
  if (i < 1)
    return false;
  now_selected = !toggle || !cluster_is_selected(i);
  if (now_selected) {
    AddToSelectedAllClonesOfCluster(i);
    return true;
  }
  for (node_elng &node : nodes_)
    if (node.cluster_id == clusters_[static_cast<std::size_t>(i)].id)
      node.is_selected = false;
  number_list rest;
  for (const vertex_number selected : selected_.members())
    if (nodes_[static_cast<std::size_t>(selected)].is_selected)
      rest.add(selected);
  selected_ = std::move(rest);
  make_SelectedClusters();
  return true;
}

void class_net_elng::make_SelectedClusters() {
  for (cluster_elng &row : clusters_)
    row.is_selected = false;
  if (n_clusters_ < 1)
    return;
  for (const vertex_number n : selected_.members())
    if (const std::int32_t i = Get_ClusterIdByNodeId(n); i > 0)
      clusters_[static_cast<std::size_t>(i)].is_selected = true;
}

} // namespace orb
