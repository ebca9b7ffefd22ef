#include "drawing/interval_rows.h"

#include <algorithm>
#include <functional>
#include <queue>
#include <utility>

namespace orb {

std::vector<std::int32_t> rows_of_intervals(std::span<const std::int32_t> left, std::span<const std::int32_t> right) {
  std::vector<std::int32_t> order(left.size()), rows(left.size(), 0);
  for (std::size_t i = 0; i < order.size(); ++i)
    order[i] = static_cast<std::int32_t>(i);
  std::stable_sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) { return left[a] < left[b]; });
  using pair_of_numbers = std::pair<std::int32_t, std::int32_t>;
  std::priority_queue<pair_of_numbers, std::vector<pair_of_numbers>, std::greater<>> taken; // right end, row
  std::priority_queue<std::int32_t, std::vector<std::int32_t>, std::greater<>> free_rows;
  std::int32_t n_rows = 0;
  for (const std::int32_t i : order) {
    for (; !taken.empty() && taken.top().first < left[i]; taken.pop())
      free_rows.push(taken.top().second);
    if (free_rows.empty())
      free_rows.push(++n_rows);
    rows[i] = free_rows.top();
    free_rows.pop();
    taken.emplace(right[i], rows[i]);
  }
  return rows;
}

} // namespace orb
