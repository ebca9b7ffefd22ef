#include "ordering/tour_proof.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace orb {

namespace {

constexpr std::int32_t most_for_bound = 700;   // vertices; beyond it the proof costs more than it is likely to give
constexpr double hopeless_share = 0.05;        // of layers with too many states: more of them won't do
constexpr std::int32_t kicks_at_the_end = 200; // for each vertex, where there is no proof

std::int64_t whole_bound(const path_bound &bound) {
  return static_cast<std::int64_t>(std::ceil(bound.bound / path_bound::scale));
}

} // namespace

std::int64_t cost_of_path(const square_array<std::int32_t> &dist, const path_order &order) {
  std::int64_t cost = 0;
  for (std::size_t i = 1; i < order.size(); ++i)
    cost += dist(order[i - 1], order[i]);
  return cost;
}

std::int64_t shortest_path_by_subsets(const square_array<std::int32_t> &dist, std::int32_t n, std::int32_t first,
                                      std::int32_t last, path_order &order) {
  constexpr std::int64_t unreached = std::numeric_limits<std::int64_t>::max() / 4;
  const auto size = static_cast<std::size_t>(n);
  const std::size_t n_sets = std::size_t{1} << size;
  std::vector<std::int64_t> best(n_sets * size, unreached); // of paths through the set that end at v
  for (std::size_t v = 0; v < size; ++v)
    if (first == 0 || first == static_cast<std::int32_t>(v) + 1)
      best[(std::size_t{1} << v) * size + v] = 0;
  for (std::size_t set = 1; set < n_sets; ++set)
    for (std::size_t v = 0; v < size; ++v) {
      const std::int64_t here = best[set * size + v];
      if (here >= unreached)
        continue;
      for (std::size_t w = 0; w < size; ++w) {
        if ((set >> w & 1) != 0)
          continue;
        std::int64_t &there = best[(set | std::size_t{1} << w) * size + w];
        there = std::min(there, here + dist(static_cast<std::int32_t>(v) + 1, static_cast<std::int32_t>(w) + 1));
      }
    }
  std::size_t set = n_sets - 1, v = last > 0 ? static_cast<std::size_t>(last) - 1 : 0;
  if (last == 0)
    v = static_cast<std::size_t>(std::min_element(best.end() - n, best.end()) - (best.end() - n));
  const std::int64_t cost = best[set * size + v];
  order.assign(size, 0);
  for (std::size_t place = size; place-- > 0;) {
    order[place] = static_cast<std::int32_t>(v) + 1;
    const std::int64_t here = best[set * size + v];
    set &= ~(std::size_t{1} << v);
    for (std::size_t u = 0; u < size && set != 0; ++u)
      if ((set >> u & 1) != 0 &&
          best[set * size + u] + dist(static_cast<std::int32_t>(u) + 1, static_cast<std::int32_t>(v) + 1) == here) {
        v = u;
        break;
      }
  }
  return cost;
}

proof_outcome prove_shortest_path(const square_array<std::int32_t> &dist, std::int32_t n, const search_clock &clock) {
  proof_outcome outcome;
  outcome.lower_bound = std::numeric_limits<std::int64_t>::min();
  // Each round spends more than the one before: on the path, on the bound, and on what lies between them.
  struct round {
    std::int32_t kicks_a_vertex, iterations, states;
  };
  for (const round &now : {round{10, 300, 1000}, round{20, 600, 8000}, round{30, 1200, 120000}}) {
    outcome.cost = improve_path(dist, n, std::int64_t{now.kicks_a_vertex} * n, clock, outcome.order);
    if (n > most_for_bound || clock.over())
      break;
    const path_bound bound = ascend_bound(dist, n, outcome.cost, now.iterations, clock);
    outcome.lower_bound = std::max(outcome.lower_bound, whole_bound(bound));
    const search_outcome below = search_below(dist, n, bound, now.states, clock, outcome.order);
    outcome.cost = cost_of_path(dist, outcome.order);
    outcome.proven = below.complete || outcome.lower_bound >= outcome.cost;
    if (outcome.proven || clock.over() || below.share_cut > hopeless_share)
      break;
  }
  if (!outcome.proven)
    outcome.cost = improve_path(dist, n, std::int64_t{kicks_at_the_end} * n, clock, outcome.order);
  outcome.proven = outcome.proven || outcome.lower_bound >= outcome.cost;
  if (outcome.proven)
    outcome.lower_bound = outcome.cost;
  return outcome;
}

} // namespace orb
