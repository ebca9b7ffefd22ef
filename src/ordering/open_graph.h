// What a lower bound leaves open: the edges and ends that a path shorter than the known one may still have.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "ordering/tour_proof.h"

namespace orb {

using reduced_cost = double; // whole numbers of 1 / scale: exact

struct kept_edge {
  std::int32_t a, b; // a < b
  reduced_cost cost;
  reduced_cost excess; // how much dearer a 1-tree gets that must hold it
};

// What passes the test of the bound.
struct open_graph {
  std::vector<kept_edge> edges;
  std::vector<std::uint8_t> may_end;               // by vertex: it may be an end of a piece
  std::vector<std::vector<std::int32_t>> touching; // by vertex: numbers of its edges
  std::int32_t longest = 0;                        // M
  reduced_cost smallest_joint = 0;                 // least reduced cost of a step of length M
};

class reduced_instance {
public:
  reduced_instance(const square_array<std::int32_t> &distances, std::int32_t n_vertices, const path_bound &of_all)
      : dist(distances), n(n_vertices), bound(of_all) {
    const std::vector<double> &m = bound.multiplier;
    for (std::int32_t i = 1; i <= n; ++i) {
      for (std::int32_t j = i + 1; j <= n; ++j)
        longest = std::max(longest, dist(i, j));
      twice_multipliers += 2 * m[static_cast<std::size_t>(i)];
    }
    std::vector<double> sorted(m.begin() + 1, m.end());
    std::partial_sort(sorted.begin(), sorted.begin() + 2, sorted.end());
    smallest = sorted[0];
    second = sorted[1];
  }
  reduced_cost edge(std::int32_t a, std::int32_t b) const { return with_length(dist(a, b), a, b); }
  reduced_cost joint(std::int32_t a, std::int32_t b) const { return with_length(longest, a, b); }
  reduced_cost end(std::int32_t v) const {
    return longest * (path_bound::scale / 2) + bound.multiplier[static_cast<std::size_t>(v)];
  }

  const square_array<std::int32_t> &dist;
  std::int32_t n;
  const path_bound &bound;
  std::int32_t longest = std::numeric_limits<std::int32_t>::min();
  reduced_cost twice_multipliers = 0, smallest = 0, second = 0;

private:
  reduced_cost with_length(std::int32_t length, std::int32_t a, std::int32_t b) const {
    return length * path_bound::scale + bound.multiplier[static_cast<std::size_t>(a)] +
           bound.multiplier[static_cast<std::size_t>(b)];
  }
};

// Edges and ends whose 1-tree stays `room` above the bound or nearer. O(n^2).
open_graph open_part(const reduced_instance &instance, reduced_cost room);

inline std::int32_t other_end(const kept_edge &e, std::int32_t v) {
  return e.a == v ? e.b : e.a;
}

// The pieces of a linear forest, given by the numbers of its edges, one behind the other.
path_order path_of_edges(const open_graph &graph, const std::vector<std::int32_t> &edges, std::int32_t n);

} // namespace orb
