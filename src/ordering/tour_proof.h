// Shortest paths with a proof: exactly for a few vertices; otherwise a good path, a lower bound, and a search of all
// that the bound leaves open.
#pragma once

#include <cstdint>
#include <vector>

#include "ordering/search_clock.h"
#include "ordering/square_array.h"

namespace orb {

using path_order = std::vector<std::int32_t>; // vertices 1..n along a path

// Sum of the steps.
std::int64_t cost_of_path(const square_array<std::int32_t> &dist, const path_order &order);

// The shortest path through 1..n by dynamic programming over subsets (Held and Karp 1962; Bellman 1962). `first`,
// `last`: its ends, 0 for free ones. n from 1 to `most_for_subsets`; O(2^n n^2), a millisecond or two at the most.
constexpr std::int32_t most_for_subsets = 13;
std::int64_t shortest_path_by_subsets(const square_array<std::int32_t> &dist, std::int32_t n, std::int32_t first,
                                      std::int32_t last, path_order &order);

// Betters a path with free ends by 2-opt moves and moves of short pieces among near neighbours, again and again after
// small double bridges, `n_kicks` times or until the clock ends. Returns the cost. An empty order starts greedily.
// The same result for the same arguments, unless the clock ends it.
std::int64_t improve_path(const square_array<std::int32_t> &dist, std::int32_t n, std::int64_t n_kicks,
                          const search_clock &clock, path_order &order);

// Lower bound of paths with free ends: minimum 1-trees with multipliers of the vertices' degrees (Held and Karp 1971).
// All numbers are multiples of 1 / `scale`, so that sums are exact in double.
struct path_bound {
  static constexpr double scale = 512;
  double bound = 0;                   // no path costs less; in units of 1 / scale
  std::vector<double> multiplier;     // of vertices 1..n, in the same units
  std::vector<std::int32_t> parent;   // 1..n: the tree of the best multipliers, as Prim grew it; 0 for its root
  std::vector<std::int32_t> sequence; // the vertices in the order of growth
};
// `upper`: cost of a known path. Ends early when the bound meets it.
path_bound ascend_bound(const square_array<std::int32_t> &dist, std::int32_t n, std::int64_t upper,
                        std::int32_t n_iterations, const search_clock &clock);

// Looks through all paths shorter than `order` that the bound leaves possible, by dynamic programming along a frontier
// of the remaining edges. `order` is bettered when a shorter one is met.
struct search_outcome {
  bool complete = false; // every path was looked through: `order` is the shortest now
  double share_cut = 0;  // of the layers that had more than `most_states`; 1 when the time was over
};
search_outcome search_below(const square_array<std::int32_t> &dist, std::int32_t n, const path_bound &bound,
                            std::int32_t most_states, const search_clock &clock, path_order &order);

struct proof_outcome {
  path_order order;
  std::int64_t cost = 0;
  std::int64_t lower_bound = 0;
  bool proven = false;
};
// All of it for a path with free ends. Work is bounded by counts, so that without a time limit the result is the same
// on every machine.
proof_outcome prove_shortest_path(const square_array<std::int32_t> &dist, std::int32_t n, const search_clock &clock);

} // namespace orb
