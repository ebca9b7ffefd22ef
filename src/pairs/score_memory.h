// Scores by counts: a library has far fewer different counts than pairs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orb {

// A table of open places, doubled when it is two thirds full. Each worker has its own.
class score_memory {
public:
  // Counts are below 2^21; `compute()` gives the score when it isn't known yet.
  template <class function>
  double get(std::uint32_t k, std::uint32_t n_small, std::uint32_t n_large, function &&compute) {
    const std::uint64_t key = (std::uint64_t{k} << 42 | std::uint64_t{n_small} << 21 | n_large) + 1; // 0: free
    if (3 * (count_ + 1) > 2 * places_.size())
      grow();
    place &at = find(key);
    if (at.key == 0) {
      at = {key, compute()};
      ++count_;
    }
    return at.score;
  }

private:
  struct place {
    std::uint64_t key = 0;
    double score = 0;
  };
  place &find(std::uint64_t key) {
    constexpr std::uint64_t golden = 0x9e3779b97f4a7c15;
    const std::size_t mask = places_.size() - 1;
    std::size_t at = static_cast<std::size_t>(key * golden >> 20) & mask;
    while (places_[at].key != 0 && places_[at].key != key)
      at = (at + 1) & mask;
    return places_[at];
  }
  void grow() {
    std::vector<place> old(places_.empty() ? 1024 : 2 * places_.size());
    old.swap(places_);
    for (const place &p : old)
      if (p.key != 0)
        find(p.key) = p;
  }

  std::vector<place> places_; // a power of two of them
  std::size_t count_ = 0;
};

} // namespace orb
