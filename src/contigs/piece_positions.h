// Where the clones of a piece lie: a first order from shortest ways along strong overlaps, then robust least squares.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "contigs/clone_layout.h"
#include "contigs/skyline_solver.h"

namespace orb {

// Strong overlaps: by them pieces hang together.
inline constexpr double backbone_share = 0.6; // of the clone with fewer bands
bool is_backbone(const clone_layout &layout, clone_number a, const scored_edge &edge);

class piece_positions {
public:
  explicit piece_positions(clone_layout &layout)
      : layout_(layout), rank_(static_cast<std::size_t>(layout.clones.n) + 1, -1) {}

  // Sets the centres of the piece's clones and sorts them. `from_scratch`: by shortest ways first, for which the piece
  // must hang together by backbone overlaps; otherwise from the centres as they are. Writes to the piece's clones only.
  // Ends early, with what it has by then, when `stopped` turns true.
  void lay(std::int32_t piece, bool from_scratch, const std::atomic<bool> &stopped);

private:
  struct pair_term {
    std::int32_t low, high; // ranks
    float bands_low, bands_high, overlap, weight;
    bool backbone, spring;
  };
  struct link { // of a join, by ranks
    std::int32_t from, to;
    double length;
  };
  void shortest_ways(std::span<const clone_number> members, std::int32_t from, std::vector<double> &ways);
  void first_centres(std::vector<clone_number> &members);
  void gather_terms(std::int32_t piece);
  void solve_round(std::int32_t piece, double sigma, bool all_edges, const std::atomic<bool> &stopped);

  clone_layout &layout_;
  std::vector<std::int32_t> rank_; // by clone, of the piece in hand; -1 outside it
  std::vector<link> links_;        // ascending by `from`
  std::vector<pair_term> terms_;
  std::vector<axis_spring> springs_;
  std::vector<double> start_, x_, ways_a_, ways_b_;
  skyline_solver solver_;
};

} // namespace orb
