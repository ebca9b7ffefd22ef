#include "contigs/layout_path.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orb {

namespace {

constexpr double least_predicted = 10; // times l
constexpr double seen_share = 0.7;     // of the predicted columns: two clones of two show 0.94 of theirs each
constexpr std::int32_t fewest_seen = 3;
constexpr double at_the_end = 2; // times r

} // namespace

std::int32_t shown_columns::common(std::size_t a, std::size_t b) const {
  const auto x = of(a), y = of(b);
  std::int32_t n = 0;
  for (std::size_t i = 0, j = 0; i < x.size() && j < y.size();) {
    n += x[i] == y[j];
    const bool x_moves = x[i] <= y[j], y_moves = y[j] <= x[i];
    i += x_moves;
    j += y_moves;
  }
  return n;
}

bool path_step_rule::are_in_order(const laid_clone &u, const laid_clone &v) const {
  return v.left >= u.left && v.right > u.right && u.right - v.left >= least_predicted * scale.l;
}

bool path_step_rule::may_follow(const laid_clone &u, const laid_clone &v, std::int32_t common, double &cost) const {
  const double predicted = u.right - v.left;
  if (!are_in_order(u, v) || common < fewest_seen || common < seen_share * predicted)
    return false;
  cost = 1 + 0.2 * std::exp(-predicted / (8 * scale.l));
  return true;
}

namespace {

struct path_search {
  const path_step_rule &rule;
  std::span<const laid_clone> laid;
  std::span<const char> usable;
  const common_columns &common;
  std::vector<double> cost;
  std::vector<std::int32_t> before;

  // Cheapest ways from clones that begin the stretch at `from`, on to the right. Gives back the end of the cheapest
  // that reaches farthest.
  std::int32_t run(double from, std::size_t first, double slack) {
    constexpr double none = std::numeric_limits<double>::infinity();
    cost.assign(laid.size(), none);
    before.assign(laid.size(), -1);
    double longest = 0;
    for (const laid_clone &clone : laid)
      longest = std::max(longest, clone.right - clone.left);
    for (std::size_t i = first; i < laid.size(); ++i)
      if (usable[i] != 0 && laid[i].left <= from + slack)
        cost[i] = 1;
    for (std::size_t v = first; v < laid.size(); ++v) {
      if (usable[v] == 0)
        continue;
      for (std::size_t u = v; u-- > first && laid[u].left + longest > laid[v].left;) {
        double step = 0;
        if (usable[u] == 0 || cost[u] == none || cost[u] + 1 >= cost[v] || !rule.are_in_order(laid[u], laid[v]) ||
            !rule.may_follow(laid[u], laid[v], common(u, v), step) || cost[u] + step >= cost[v])
          continue;
        cost[v] = cost[u] + step;
        before[v] = static_cast<std::int32_t>(u);
      }
    }
    double reached = -none;
    for (std::size_t v = first; v < laid.size(); ++v)
      if (cost[v] < none)
        reached = std::max(reached, laid[v].right);
    std::int32_t best = -1;
    for (std::size_t v = first; v < laid.size(); ++v)
      if (cost[v] < none && laid[v].right >= reached - slack &&
          (best < 0 || cost[v] < cost[static_cast<std::size_t>(best)]))
        best = static_cast<std::int32_t>(v);
    return best;
  }
};

} // namespace

std::vector<std::vector<clone_number>> tiling_paths(const path_step_rule &rule, std::span<const laid_clone> laid,
                                                    std::span<const char> is_usable, const common_columns &common) {
  std::vector<std::vector<clone_number>> paths;
  path_search search{rule, laid, is_usable, common, {}, {}};
  const double slack = at_the_end * rule.scale.r;
  std::size_t first = 0;
  for (;;) {
    while (first < laid.size() && is_usable[first] == 0)
      ++first;
    if (first == laid.size())
      return paths;
    const std::int32_t end = search.run(laid[first].left, first, slack);
    if (end < 0)
      return paths;
    std::vector<clone_number> path;
    for (std::int32_t at = end; at >= 0; at = search.before[static_cast<std::size_t>(at)])
      path.push_back(laid[static_cast<std::size_t>(at)].clone);
    std::reverse(path.begin(), path.end());
    paths.push_back(std::move(path));
    // What goes on beyond the reach begins the next path: the first clones that stick out by more than the slack.
    const double reached = laid[static_cast<std::size_t>(end)].right;
    std::size_t next = laid.size();
    for (std::size_t i = 0; i < laid.size(); ++i)
      if (is_usable[i] != 0 && laid[i].left > laid[first].left && laid[i].right > reached + slack) {
        next = i;
        break;
      }
    if (next == laid.size() || next <= first)
      return paths;
    first = next;
  }
}

} // namespace orb
