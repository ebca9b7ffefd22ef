#include "ordering/follower_counts.h"

namespace orb {

std::vector<std::int32_t> follower_counts::consensus() const {
  const auto n = static_cast<std::int32_t>(at_end_.size()) - 1;
  std::vector<std::int32_t> order;
  std::vector<std::uint8_t> used(at_end_.size(), 0);
  std::int32_t lowest_left = 1;
  while (static_cast<std::int32_t>(order.size()) < n) {
    entry best;
    const auto look_at = [&](std::int32_t clone, std::int32_t times) {
      const bool is_better = best.clone == 0 || times > best.times || (times == best.times && clone < best.clone);
      if (used[static_cast<std::size_t>(clone)] == 0 && is_better)
        best = {clone, times};
    };
    if (order.empty()) {
      for (std::int32_t clone = 1; clone <= n; ++clone)
        look_at(clone, at_end_[static_cast<std::size_t>(clone)]);
    } else {
      for (const entry &follower : followers_[static_cast<std::size_t>(order.back())])
        look_at(follower.clone, follower.times);
    }
    while (lowest_left <= n && used[static_cast<std::size_t>(lowest_left)] != 0)
      ++lowest_left;
    if (best.clone == 0)
      best.clone = lowest_left;
    order.push_back(best.clone);
    used[static_cast<std::size_t>(best.clone)] = 1;
  }
  return order;
}

} // namespace orb
