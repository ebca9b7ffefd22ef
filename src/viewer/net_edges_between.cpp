// Edges that selected nodes should have and haven't.
#include <algorithm>
#include <cstdint>

#include "viewer/class_net_elng.h"
#include "viewer/clone_records.h"

namespace orb {

namespace {

// Pairs of places in the selection, the lower one first.
using place_pair = std::pair<std::int32_t, std::int32_t>;

struct found_edge {
  place_pair places;
  double value;
};

class missing_edges {
public:
  missing_edges(std::span<const node_elng> nodes, std::span<const edge_elng> edges, const number_list &selected)
      : nodes_(nodes), selected_(selected), place_(nodes.size(), 0) {
    for (std::int32_t i = 1; i <= selected.count(); ++i)
      place_[static_cast<std::size_t>(selected(i))] = i;
    for (std::size_t e = 1; e < edges.size(); ++e) {
      const auto [a, b] =
          std::minmax(place_[static_cast<std::size_t>(edges[e].from)], place_[static_cast<std::size_t>(edges[e].to)]);
      if (a > 0 && a != b)
        there_.emplace_back(a, b);
    }
    std::sort(there_.begin(), there_.end());
    there_.erase(std::unique(there_.begin(), there_.end()), there_.end());
  }

  bool none() const {
    const std::int64_t n = selected_.count();
    return static_cast<std::int64_t>(there_.size()) == n * (n - 1) / 2;
  }
  // Is there a pair to be looked at with a node that is no clone?
  bool asks_for_no_clone() const {
    std::vector<std::int32_t> n_partners(static_cast<std::size_t>(selected_.count()) + 1, 0);
    for (const auto &[a, b] : there_) {
      ++n_partners[static_cast<std::size_t>(a)];
      ++n_partners[static_cast<std::size_t>(b)];
    }
    for (std::int32_t i = 1; i <= selected_.count(); ++i)
      if (clone_at(i) < 1 && n_partners[static_cast<std::size_t>(i)] < selected_.count() - 1)
        return true;
    return false;
  }
  // Both in the order of the pairs; false after a stop request.
  bool find_by_bands(const net_sources &sources, double cutoff, std::vector<found_edge> &found) const;
  bool find_by_net(const net_sources &sources, double cutoff, std::vector<found_edge> &found) const;

private:
  clone_number clone_at(std::int32_t place) const {
    return nodes_[static_cast<std::size_t>(selected_(place))].clone_id;
  }
  bool is_there(place_pair places) const { return std::binary_search(there_.begin(), there_.end(), places); }

  std::span<const node_elng> nodes_;
  const number_list &selected_;
  std::vector<std::int32_t> place_; // by node; 0: not selected
  std::vector<place_pair> there_;   // pairs with an edge, ascending
};

bool missing_edges::find_by_bands(const net_sources &sources, double cutoff, std::vector<found_edge> &found) const {
  class_clone_dist_my &gate = gate_on_bands(sources, cutoff);
  for (std::int32_t i = 1; i <= selected_.count(); ++i) {
    for (std::int32_t j = i + 1; j <= selected_.count(); ++j) {
      if (is_there({i, j}))
        continue;
      if (const double value = gate.my_cutoff(clone_at(i), clone_at(j)); value >= cutoff)
        found.push_back({{i, j}, value});
    }
    if (!sources.frame.goes_on())
      return false;
  }
  return true;
}

// Each selected clone's overlaps are walked once, whatever the number of pairs.
bool missing_edges::find_by_net(const net_sources &sources, double cutoff, std::vector<found_edge> &found) const {
  constexpr std::int32_t clones_between_polls = 1000;
  std::vector<place_pair> place_of_clone; // several nodes may be one clone
  for (std::int32_t i = 1; i <= selected_.count(); ++i)
    place_of_clone.emplace_back(clone_at(i), i);
  std::sort(place_of_clone.begin(), place_of_clone.end());
  for (std::int32_t i = 1; i <= selected_.count(); ++i) {
    const std::size_t first = found.size();
    walk_overlaps(sources, clone_at(i), cutoff, [&](clone_number neighbour, double value) {
      auto at = std::upper_bound(place_of_clone.begin(), place_of_clone.end(), place_pair(neighbour, i));
      for (; at != place_of_clone.end() && at->first == neighbour; ++at)
        if (!is_there({i, at->second}))
          found.push_back({{i, at->second}, value});
    });
    std::sort(found.begin() + static_cast<std::ptrdiff_t>(first), found.end(),
              [](const found_edge &a, const found_edge &b) { return a.places < b.places; });
    if (i % clones_between_polls == 0 && !sources.frame.goes_on())
      return false;
  }
  return true;
}

} // namespace

void class_net_elng::add_edges_between_selected_clones(const net_sources &sources, double cutoff, bool use_net,
                                                       bool &ok, std::int32_t &n_added) {
  ok = true;
  n_added = 0;
  if (selected_.count() < 2)
    return;
  const missing_edges missing(nodes_, edges_, selected_);
  if (missing.none())
    return sources.frame.message("All possible edges, connecting to selected nodes, are presented in the net!");
  std::vector<found_edge> found;
  const bool by_net = sources.value_source_get(use_net) == value_source::net;
  ok = !missing.asks_for_no_clone() &&
       (by_net ? missing.find_by_net(sources, cutoff, found) : missing.find_by_bands(sources, cutoff, found));
  if (!ok)
    return;
  for (const found_edge &edge : found) {
    const vertex_number from = selected_(edge.places.first), to = selected_(edge.places.second);
    edges_.push_back(edge_of_score(from, to, edge.value));
    edge_overlay_set(sources, nodes_[static_cast<std::size_t>(from)], nodes_[static_cast<std::size_t>(to)],
                     edges_.back());
  }
  n_added = static_cast<std::int32_t>(found.size());
  n_edges_ += n_added;
  sources.frame.message(n_added > 0 ? "In total, " + std::to_string(n_added) + " edges were added."
                                    : "NB! No edges were added.");
}

} // namespace orb
