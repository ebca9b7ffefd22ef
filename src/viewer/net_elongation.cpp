#include "viewer/net_elongation.h"

#include <algorithm>
#include <unordered_map>

#include "clustering/class_FPCto_import.h"
#include "viewer/class_net_elng.h"
#include "viewer/class_net_elng_clust.h"
#include "viewer/clone_records.h"

namespace orb {

namespace {

constexpr rank_number ranks_with_net = 5;
constexpr std::int32_t n_small_rank = 50; // clones of a rank that is still proposed
constexpr std::int32_t clones_between_status = 100;
constexpr std::size_t clones_between_polls = 1000;

std::string added_text(std::int32_t n) {
  return n == 0 ? "No clones to add." : n == 1 ? "1 clone added." : std::to_string(n) + " clones added.";
}

// Which clones could be added: a walk over the library or over the loaded net.
class candidate_search {
public:
  candidate_search(const net_sources &sources, std::span<const node_elng> nodes, const number_list &selected,
                   elongation_candidates &candidates)
      : sources_(sources), candidates_(candidates),
        available_(static_cast<std::size_t>(sources.database.total_number_of_clones_get()) + 1, true) {
    available_[0] = false;
    for (std::size_t n = 1; n < nodes.size(); ++n)
      take(nodes[n].clone_id);
    for (const vertex_number n : selected.members())
      if (is_clone(nodes[static_cast<std::size_t>(n)].clone_id))
        frontier_.push_back(nodes[static_cast<std::size_t>(n)].clone_id);
  }

  // Both give the number of clones of each rank from 1, and false after a stop request.
  bool by_bands(double cutoff, std::vector<std::int32_t> &n_of_rank);
  bool by_net(double cutoff, rank_number n_ranks, std::vector<std::int32_t> &n_of_rank);

private:
  bool is_clone(clone_number clone) const { return clone >= 1 && static_cast<std::size_t>(clone) < available_.size(); }
  bool take(clone_number clone) {
    if (!is_clone(clone) || !available_[static_cast<std::size_t>(clone)])
      return false;
    available_[static_cast<std::size_t>(clone)] = false;
    return true;
  }
  void admit(clone_number clone, rank_number rank) {
    candidates_.list_of_elongate_clones.add(clone);
    candidates_.rank_of_elongate_clones.add(rank);
  }

  const net_sources &sources_;
  elongation_candidates &candidates_;
  std::vector<bool> available_;        // by clone
  std::vector<clone_number> frontier_; // at first the clones of the selected nodes
};

bool candidate_search::by_bands(double cutoff, std::vector<std::int32_t> &n_of_rank) {
  class_clone_dist_my &gate = gate_on_bands(sources_, cutoff);
  const std::int32_t total = sources_.database.total_number_of_clones_get();
  for (clone_number clone = 1; clone <= total; ++clone) {
    if (clone % clones_between_status == 1) {
      sources_.frame.progress(clone, total);
      sources_.frame.local_process_text_set(std::to_string(clone) + " of " + std::to_string(total));
      if (sources_.frame.stop_requested_get())
        return false;
    }
    if (!available_[static_cast<std::size_t>(clone)])
      continue;
    if (std::any_of(frontier_.begin(), frontier_.end(),
                    [&](clone_number selected) { return gate.my_cutoff(clone, selected) >= cutoff; }))
      admit(clone, 1);
  }
  n_of_rank.push_back(candidates_.list_of_elongate_clones.count());
  return true;
}

bool candidate_search::by_net(double cutoff, rank_number n_ranks, std::vector<std::int32_t> &n_of_rank) {
  std::vector<clone_number> next;
  std::size_t n_walked = 0;
  for (rank_number r = 1; r <= n_ranks; ++r) {
    next.clear();
    for (const clone_number clone : frontier_) {
      walk_overlaps(sources_, clone, cutoff, [&](clone_number neighbour, double) {
        if (!take(neighbour))
          return;
        next.push_back(neighbour);
        admit(neighbour, r);
      });
      if (++n_walked % clones_between_polls == 0 && !sources_.frame.goes_on())
        return false;
    }
    n_of_rank.push_back(static_cast<std::int32_t>(next.size()));
    frontier_.swap(next);
  }
  return true;
}

// New nodes and edges, made apart from the document so that a stop leaves it whole.
class clone_adder {
public:
  clone_adder(const net_sources &sources, std::span<const node_elng> nodes, std::span<const cluster_elng> clusters);
  // False after a stop request.
  bool add(std::span<const clone_number> clones, double cutoff, bool use_net);
  std::vector<node_elng> &nodes() { return added_; }
  std::vector<edge_elng> &edges() { return edges_; }

private:
  const node_elng &node(std::size_t n) const { return n < nodes_.size() ? nodes_[n] : added_[n - nodes_.size()]; }
  std::int32_t cluster_of(const node_elng &added);
  void look_set(node_elng &added);
  void edges_by_bands(vertex_number n, double cutoff);
  void edges_by_net(vertex_number n, double cutoff);
  void edge_add(vertex_number from, vertex_number to, double value);

  const net_sources &sources_;
  std::span<const node_elng> nodes_; // those of the document
  const class_net_elng_clust *table_ = nullptr;
  std::unordered_map<std::int32_t, std::size_t> first_node_of_cluster_;
  std::unordered_map<std::string, std::int32_t> own_cluster_; // of captions that the table doesn't have
  std::int32_t last_cluster_ = 0;
  std::vector<vertex_number> node_of_clone_;
  std::vector<node_elng> added_;
  std::vector<edge_elng> edges_;
};

clone_adder::clone_adder(const net_sources &sources, std::span<const node_elng> nodes,
                         std::span<const cluster_elng> clusters)
    : sources_(sources), nodes_(nodes),
      node_of_clone_(static_cast<std::size_t>(sources.database.total_number_of_clones_get()) + 1, 0) {
  if (sources.cluster_table != nullptr && sources.cluster_table->is_loaded()) {
    table_ = sources.cluster_table;
    last_cluster_ = table_->n_clusters_get();
    for (const cluster_elng &row : clusters.subspan(1)) {
      if (row.id > table_->n_clusters_get())
        own_cluster_.emplace(row.name, row.id);
      last_cluster_ = std::max(last_cluster_, row.id);
    }
  }
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    if (nodes[n].cluster_id > 0)
      first_node_of_cluster_.emplace(nodes[n].cluster_id, n);
    const clone_number clone = nodes[n].clone_id;
    if (clone >= 1 && static_cast<std::size_t>(clone) < node_of_clone_.size() &&
        node_of_clone_[static_cast<std::size_t>(clone)] == 0)
      node_of_clone_[static_cast<std::size_t>(clone)] = static_cast<vertex_number>(n);
  }
}

std::int32_t clone_adder::cluster_of(const node_elng &added) {
  if (table_ == nullptr)
    return added.cluster_id;
  if (const std::int32_t cluster = table_->cluster_of_caption(added.caption); cluster > 0)
    return cluster;
  const auto [at, is_new] = own_cluster_.emplace(added.caption, last_cluster_ + 1);
  last_cluster_ += is_new ? 1 : 0;
  return at->second;
}

// The first node of a cluster draws a look, the others wear it.
void clone_adder::look_set(node_elng &added) {
  if (added.cluster_id < 1)
    return;
  const auto [at, is_first] = first_node_of_cluster_.emplace(added.cluster_id, nodes_.size() + added_.size());
  if (!is_first) {
    const node_elng &like = node(at->second);
    added.shape = like.shape;
    added.size = like.size;
    added.x_fact = like.x_fact;
    added.y_fact = like.y_fact;
    added.ic_name = like.ic_name;
    added.ic = like.ic;
    added.bc_name = like.bc_name;
    added.bc = like.bc;
    return;
  }
  added.shape = random_shape(sources_.chance);
  const palette_entry &fill = palette_colour(random_color(sources_.chance, false, false, 0));
  added.ic_name = fill.name;
  added.ic = fill.value;
  const palette_entry &border = palette_colour(random_color(sources_.chance, false, false, 0));
  added.bc_name = border.name;
  added.bc = border.value;
}

void clone_adder::edge_add(vertex_number from, vertex_number to, double value) {
  edges_.push_back(edge_of_score(from, to, value));
  edge_overlay_set(sources_, node(static_cast<std::size_t>(from)), node(static_cast<std::size_t>(to)), edges_.back());
}

void clone_adder::edges_by_bands(vertex_number n, double cutoff) {
  const clone_number clone = node(static_cast<std::size_t>(n)).clone_id;
  for (vertex_number other = 1; other < n; ++other) {
    const clone_number partner = node(static_cast<std::size_t>(other)).clone_id;
    if (partner <= 0)
      continue;
    if (const double value = sources_.gate.my_cutoff(clone, partner); value >= cutoff)
      edge_add(other, n, value);
  }
}

void clone_adder::edges_by_net(vertex_number n, double cutoff) {
  walk_overlaps(sources_, node(static_cast<std::size_t>(n)).clone_id, cutoff,
                [&](clone_number neighbour, double value) {
                  const vertex_number other = node_of_clone_[static_cast<std::size_t>(neighbour)];
                  if (other > 0 && other < n)
                    edge_add(other, n, value);
                });
}

bool clone_adder::add(std::span<const clone_number> clones, double cutoff, bool use_net) {
  const value_source source = sources_.value_source_get(use_net);
  if (source == value_source::bands)
    gate_on_bands(sources_, cutoff);
  added_.reserve(clones.size());
  for (const clone_number clone : clones) {
    node_elng added = node_of_clone(sources_, clone);
    added.cluster_id = cluster_of(added);
    look_set(added);
    vertex_overlay_set(sources_, added); // its size follows the look
    added_.push_back(std::move(added));
    const auto n = static_cast<vertex_number>(nodes_.size() + added_.size() - 1);
    node_of_clone_[static_cast<std::size_t>(clone)] = n;
    if (source == value_source::bands)
      edges_by_bands(n, cutoff);
    else
      edges_by_net(n, cutoff);
    const bool is_poll = source == value_source::bands || added_.size() % clones_between_polls == 0;
    if (is_poll && !sources_.frame.goes_on())
      return false;
  }
  return true;
}

} // namespace

bool class_net_elng::text_rank(const net_sources &sources, double cutoff, bool use_net,
                               elongation_candidates &candidates, std::int32_t &n_small_ranks,
                               std::string &text) const {
  candidates.clear();
  n_small_ranks = 0;
  std::vector<std::int32_t> n_of_rank{selected_.count()};
  candidate_search search(sources, nodes_, selected_, candidates);
  const bool done = sources.value_source_get(use_net) == value_source::bands
                        ? search.by_bands(cutoff, n_of_rank)
                        : search.by_net(cutoff, ranks_with_net, n_of_rank);
  text.clear();
  if (!done) {
    candidates.clear();
    return false;
  }
  for (std::size_t r = 0; r < n_of_rank.size(); ++r) {
    text += (r == 0 ? "n(" : "\r\nn(") + std::to_string(r) + ")=" + std::to_string(n_of_rank[r]);
    if (n_of_rank[r] == 0)
      break;
  }
  n_small_ranks = static_cast<std::int32_t>(std::count_if(n_of_rank.begin() + 1, n_of_rank.end(),
                                                          [](std::int32_t n) { return n >= 1 && n <= n_small_rank; }));
  return true;
}

void class_net_elng::elongate(const net_sources &sources, double cutoff, bool use_net, rank_number rank,
                              elongation_candidates &candidates, std::int32_t &n_added) {
  const std::span<const std::int32_t> ranks = candidates.rank_of_elongate_clones.members();
  const auto end = std::find_if(ranks.begin(), ranks.end(), [rank](rank_number of_clone) { return of_clone > rank; });
  n_added = add_clones(
      sources, candidates.list_of_elongate_clones.members().first(static_cast<std::size_t>(end - ranks.begin())),
      cutoff, use_net);
  candidates.clear();
  if (!sources.frame.stop_requested_get())
    sources.frame.message(added_text(n_added));
}

std::int32_t class_net_elng::add_clones(const net_sources &sources, std::span<const clone_number> clones, double cutoff,
                                        bool use_net) {
  if (clones.empty())
    return 0;
  clone_adder adder(sources, nodes_, clusters_);
  if (!adder.add(clones, cutoff, use_net))
    return 0;
  nodes_.insert(nodes_.end(), std::make_move_iterator(adder.nodes().begin()),
                std::make_move_iterator(adder.nodes().end()));
  edges_.insert(edges_.end(), std::make_move_iterator(adder.edges().begin()),
                std::make_move_iterator(adder.edges().end()));
  private_n_vertices_ = static_cast<std::int32_t>(nodes_.size()) - 1;
  n_edges_ = static_cast<std::int32_t>(edges_.size()) - 1;
  coor_are_known_ = false;
  unfrozen_make();
  make_cluster_info(sources);
  return static_cast<std::int32_t>(clones.size());
}

void class_net_elng::fill_clusters(const net_sources &sources, double cutoff, bool use_net, std::int32_t &n_added) {
  const std::int32_t n_clones = sources.database.total_number_of_clones_get();
  std::vector<bool> wanted(static_cast<std::size_t>(n_clones) + 1, false);
  const auto want = [&](clone_number clone) {
    if (clone >= 1 && clone <= n_clones)
      wanted[static_cast<std::size_t>(clone)] = true;
  };
  const bool with_table = sources.cluster_table != nullptr && sources.cluster_table->is_loaded();
  const bool with_registry = sources.database.contigs_are_specified_get() && sources.database.contigs() != nullptr;
  for (const cluster_elng &row : clusters_) {
    if (!row.is_selected || row.id < 1)
      continue;
    if (with_table)
      for (const std::string &caption : sources.cluster_table->sNodeCaptionsList_forCluster_get(row.name))
        want(sources.database.clone_number_get(caption));
    else if (with_registry)
      for (const clone_number clone : sources.database.contigs()->clones_of_cluster(row.id))
        want(clone);
  }
  for (const node_elng &node : nodes_)
    if (node.clone_id >= 1 && node.clone_id <= n_clones)
      wanted[static_cast<std::size_t>(node.clone_id)] = false;
  std::vector<clone_number> clones;
  for (clone_number clone = 1; clone <= n_clones; ++clone)
    if (wanted[static_cast<std::size_t>(clone)])
      clones.push_back(clone);
  n_added = add_clones(sources, clones, cutoff, use_net);
}

} // namespace orb
