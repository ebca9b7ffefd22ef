// First places for the nodes of a net: rank by rank outwards from those that have one.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/process_frame.h"
#include "viewer/layout_graph.h"
#include "viewer/places_apart.h"

namespace orb {

struct growth_node {
  float x = 0, y = 0;
  bool is_frozen = false, is_coor_known = false; // either: it has its place and stays there
};

// A point that stands for the nodes of one group while others are placed.
struct kk_circle {
  float x = 0, y = 0;
  std::int32_t weight = 0; // number of nodes
  std::int32_t rank = 0, group = 0;
};

// Holds its own copy of the graph; nodes and edges are numbered from 1 in the order in which they are added. A caller
// initialises, adds all nodes and edges, starts, and reads the places back.
class class_net_elngKK {
public:
  void KK_inicializate(std::int32_t n_nodes, std::int32_t n_edges);
  // False when the arrays are full and may not grow.
  bool add_node(const growth_node &rec, bool grow);
  bool add_edge(const layout_edge &rec, bool grow);

  // Places all nodes. In rounds: what can be reached from the placed nodes is placed by `set_position`, else a node of
  // another component gets a place of its own. Shows in panel 4 how far it is and polls at each round and each group;
  // false when stopped, with the nodes that were reached placed. Groups * circles * 360 directions.
  bool startKK(process_frame &frame);
  // One round: places the groups of ranks 1..n_ranks. Tells of nodes that no edge reaches, once.
  bool set_position(process_frame &frame);

  float node_Xcoor_get(std::int32_t i) const { return nodes_[static_cast<std::size_t>(i)].x; }
  float node_Ycoor_get(std::int32_t i) const { return nodes_[static_cast<std::size_t>(i)].y; }
  bool is_placed_get(std::int32_t i) const { return nodes_[static_cast<std::size_t>(i)].is_frozen; }

private:
  void make_adjacency();
  std::span<const std::int32_t> neighbours(std::int32_t node) const;
  void place(std::int32_t node, float x, float y);
  void place_next_component(process_frame &frame);
  void find_ranks();
  void begin_round();
  void split_rank(std::span<const std::int32_t> of_rank);
  void fill_group(std::int32_t first_node);
  std::span<const std::int32_t> members(std::int32_t group) const;
  std::vector<std::int32_t> groups_by_size(std::int32_t rank) const;
  std::int32_t parent_of(std::int32_t group, std::int32_t rank);
  void place_circle(std::int32_t group, std::int32_t rank, const kk_circle &parent);
  void spread_nodes(const kk_circle &circle);
  void tell_unlinked(process_frame &frame);

  std::int32_t n_nodes_ = 0, n_edges_ = 0, n_ranks_ = 0, n_placed_ = 0;
  std::vector<growth_node> nodes_;
  std::vector<layout_edge> edges_;
  std::vector<std::int32_t> adj_first_, adj_last_, adj_, degree_;
  std::vector<std::int32_t> by_degree_;                  // nodes from the highest degree down, from 0
  std::size_t next_by_degree_ = 0;                       // those before have their place
  std::vector<std::int32_t> rank_of_node_;               // -1 not reached, 0 placed
  std::vector<std::int32_t> frontier_;                   // what was placed since the last walk
  std::vector<std::vector<std::int32_t>> nodes_of_rank_; // of this round, in the order in which they were met
  std::vector<std::int32_t> group_of_node_;              // -1 none; element 0: number of groups
  std::vector<std::int32_t> group_size_, group_first_, group_last_, group_members_, first_group_of_rank_;
  std::vector<kk_circle> circles_;                              // from 0
  std::vector<std::int32_t> circle_of_group_, edges_to_circle_; // -1: has none yet; 0 between uses
  places_apart components_;
  bool unlinked_are_told_ = false;
};

} // namespace orb
