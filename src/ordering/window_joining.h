// The order of a long contig from the orders of windows of its clones that overlap along the contig's axis.
#pragma once

#include <cstdint>
#include <vector>

#include "ordering/tour_proof.h"

namespace orb {

// More clones than this, not counting buried ones, are ordered in windows: the work on all their pairs would grow with
// the square, and no proof is to be had.
inline constexpr std::int32_t most_in_one_search = 500;

// Ranks on the axis, from 0, both inside.
struct axis_window {
  std::int32_t first = 0, last = 0;
  std::int32_t count() const { return last - first + 1; }
};
// Windows of nearly one size for n above `most_in_one_search`; a clone lies in two of them at the most.
std::vector<axis_window> windows_along_axis(std::int32_t n);

// How well two neighbouring windows agree.
struct window_join {
  std::int32_t n_shared = 0;   // clones in both windows
  std::int32_t n_agreeing = 0; // the most of them that both orders hold in the same sequence
  bool is_weak() const { return 4 * n_agreeing < 3 * n_shared; }
};

// Pieces of a path without a link between them, in any sequence and direction, as one order: each is turned along the
// axis and they follow each other by their middles. `rank`: on the axis, by vertex.
path_order pieces_along_axis(const std::vector<std::int32_t> &rank, std::vector<path_order> pieces);

// Each order is turned along the axis and joined with the one before it at a shared clone from which on the two orders
// part the clones alike, or most nearly so; of several, the one in the middle. Every vertex stands in the result once,
// whatever the orders are. Near linear.
path_order join_windows(const std::vector<std::int32_t> &rank, std::vector<path_order> orders,
                        std::vector<window_join> &joins);

} // namespace orb
