#include "ordering/window_joining.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace orb {

namespace {

constexpr std::int32_t most_of_window = 160;
constexpr std::int32_t clones_shared = 60; // by neighbouring windows

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

// So that the sum of the products of both ranks, each from its middle, isn't negative.
void turn_along_axis(const std::vector<std::int32_t> &rank, path_order &order) {
  std::int64_t sum_of_ranks = 0, together = 0;
  const auto n = static_cast<std::int64_t>(order.size());
  for (const std::int32_t v : order)
    sum_of_ranks += rank[place(v)];
  for (std::int64_t i = 0; i < n; ++i)
    together += (2 * i - n + 1) * (n * rank[place(order[static_cast<std::size_t>(i)])] - sum_of_ranks);
  if (together < 0)
    std::reverse(order.begin(), order.end());
}

std::int32_t longest_ascending(const std::vector<std::int32_t> &values) {
  std::vector<std::int32_t> least_end; // of ascending rows by length
  for (const std::int32_t value : values) {
    const auto at = std::lower_bound(least_end.begin(), least_end.end(), value);
    if (at == least_end.end())
      least_end.push_back(value);
    else
      *at = value;
  }
  return static_cast<std::int32_t>(least_end.size());
}

// The end of the joined order against the next window's order.
class seam {
public:
  // `where`: scratch by vertex, all -1 before and after.
  seam(path_order &joined, std::size_t n_before, const path_order &next, std::vector<std::int32_t> &where)
      : joined_(joined), next_(next), where_(where), begin_(joined.size() - std::min(joined.size(), n_before)) {
    for (std::size_t i = 0; i < next.size(); ++i)
      where_[place(next[i])] = static_cast<std::int32_t>(i);
    for (std::size_t i = begin_; i < joined.size(); ++i)
      if (where_[place(joined[i])] >= 0)
        shared_.push_back({static_cast<std::int32_t>(i), where_[place(joined[i])]});
  }
  ~seam() {
    for (const std::int32_t v : next_)
      where_[place(v)] = -1;
  }

  window_join agreement() const {
    std::vector<std::int32_t> in_next;
    for (const both_places &clone : shared_)
      in_next.push_back(clone.in_next);
    return {static_cast<std::int32_t>(shared_.size()), longest_ascending(in_next)};
  }

  void close() {
    const std::size_t kept = shared_.empty() ? joined_.size() : place(best_cut().in_joined) + 1;
    path_order behind; // what only the windows before know
    for (std::size_t i = kept; i < joined_.size(); ++i)
      if (where_[place(joined_[i])] < 0)
        behind.push_back(joined_[i]);
    joined_.resize(kept);
    std::vector<char> is_kept(next_.size(), 0);
    for (const both_places &clone : shared_)
      is_kept[place(clone.in_next)] = place(clone.in_joined) < kept ? 1 : 0;
    joined_.insert(joined_.end(), behind.begin(), behind.end());
    for (std::size_t i = 0; i < next_.size(); ++i)
      if (is_kept[i] == 0)
        joined_.push_back(next_[i]);
  }

private:
  struct both_places {
    std::int32_t in_joined, in_next;
  };

  // Clones that lie before the cut in one order and behind it in the other; a clone that only one of them holds belongs
  // on that one's side.
  std::int32_t conflicts_at(std::int32_t k) const {
    const both_places &cut = shared_[place(k)];
    const auto n_shared = static_cast<std::int32_t>(shared_.size());
    std::int32_t shared_before = 0, conflicts = 0;
    for (std::int32_t other = 0; other < n_shared; ++other) {
      const bool before_in_next = shared_[place(other)].in_next <= cut.in_next;
      shared_before += before_in_next ? 1 : 0;
      conflicts += before_in_next != (other <= k) ? 1 : 0;
    }
    const auto n_behind = static_cast<std::int32_t>(joined_.size()) - cut.in_joined - 1;
    return conflicts + n_behind - (n_shared - k - 1) + cut.in_next + 1 - shared_before;
  }

  const both_places &best_cut() const {
    std::pair<std::int32_t, std::int32_t> least{-1, 0}; // conflicts, twice the way from the middle
    std::int32_t best = 0;
    const auto n_shared = static_cast<std::int32_t>(shared_.size());
    for (std::int32_t k = 0; k < n_shared; ++k) {
      const std::pair<std::int32_t, std::int32_t> now{conflicts_at(k), std::abs(2 * k + 1 - n_shared)};
      if (least.first < 0 || now < least) {
        least = now;
        best = k;
      }
    }
    return shared_[place(best)];
  }

  path_order &joined_;
  const path_order &next_;
  std::vector<std::int32_t> &where_;
  std::size_t begin_;
  std::vector<both_places> shared_; // in the joined order
};

} // namespace

std::vector<axis_window> windows_along_axis(std::int32_t n) {
  constexpr std::int32_t most_apart = most_of_window - clones_shared;
  const std::int32_t n_windows = (n - clones_shared + most_apart - 1) / most_apart;
  const auto begin_of = [&](std::int32_t k) {
    return static_cast<std::int32_t>(std::int64_t{n - clones_shared} * k / n_windows);
  };
  std::vector<axis_window> windows;
  for (std::int32_t k = 0; k < n_windows; ++k)
    windows.push_back({begin_of(k), begin_of(k + 1) + clones_shared - 1});
  return windows;
}

path_order pieces_along_axis(const std::vector<std::int32_t> &rank, std::vector<path_order> pieces) {
  std::vector<std::pair<double, std::size_t>> middles; // mean rank, number: pieces of equal ones keep their sequence
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    turn_along_axis(rank, pieces[k]);
    double sum = 0;
    for (const std::int32_t v : pieces[k])
      sum += rank[place(v)];
    middles.emplace_back(sum / static_cast<double>(pieces[k].size()), k);
  }
  std::sort(middles.begin(), middles.end());
  path_order order;
  for (const auto &[middle, k] : middles)
    order.insert(order.end(), pieces[k].begin(), pieces[k].end());
  return order;
}

path_order join_windows(const std::vector<std::int32_t> &rank, std::vector<path_order> orders,
                        std::vector<window_join> &joins) {
  joins.clear();
  std::vector<std::int32_t> where(rank.size(), -1);
  for (path_order &order : orders)
    turn_along_axis(rank, order);
  path_order joined;
  for (std::size_t k = 0; k < orders.size(); ++k) {
    if (k == 0) {
      joined = orders[0];
      continue;
    }
    seam now(joined, orders[k - 1].size(), orders[k], where);
    joins.push_back(now.agreement());
    now.close();
  }
  return joined;
}

} // namespace orb
