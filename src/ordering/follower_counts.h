// Who stood behind whom in several orders of the same clones, and who at an end; room for what occurs only.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace orb {

class follower_counts {
public:
  struct entry {
    std::int32_t clone = 0, times = 0;
  };

  follower_counts() : follower_counts(0) {}
  explicit follower_counts(std::int32_t n)
      : at_end_(static_cast<std::size_t>(n) + 1, 0), followers_(static_cast<std::size_t>(n) + 1) {}

  // An order of 1..n.
  void count(const std::vector<std::int32_t> &order) {
    if (order.empty())
      return;
    ++at_end_[static_cast<std::size_t>(order.front())];
    ++at_end_[static_cast<std::size_t>(order.back())];
    for (std::size_t i = 1; i < order.size(); ++i)
      add(followers_[static_cast<std::size_t>(order[i - 1])], order[i], 1);
  }
  // The first clone is the one most often at an end; each next one is, of those not yet taken, the one most often
  // behind the clone before it. The lowest number of equals.
  std::vector<std::int32_t> consensus() const;
  // By clone: the clones that stood beside it on either side, with how often.
  std::vector<std::vector<entry>> beside() const {
    std::vector<std::vector<entry>> all(followers_.size());
    for (std::size_t p = 1; p < followers_.size(); ++p)
      for (const entry &follower : followers_[p]) {
        add(all[p], follower.clone, follower.times);
        add(all[static_cast<std::size_t>(follower.clone)], static_cast<std::int32_t>(p), follower.times);
      }
    return all;
  }

private:
  static void add(std::vector<entry> &entries, std::int32_t clone, std::int32_t times) {
    for (entry &known : entries)
      if (known.clone == clone) {
        known.times += times;
        return;
      }
    entries.push_back({clone, times});
  }

  std::vector<std::int32_t> at_end_;
  std::vector<std::vector<entry>> followers_; // by clone
};

} // namespace orb
