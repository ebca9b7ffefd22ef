// Common bands of many pairs of a library's clones: several merges side by side.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "metrics/band_merge.h"

namespace orb {

// A merge spends its time waiting for its own last comparison, so six of them together take little longer than one.
// They work on copies of the lists in which nobody has to look for an end: behind each list stands a value beyond all
// bands, and in the copy for the first list of a pair one beyond that of the second. A merge that is over stays at the
// end of its first list and walks on through whatever follows the second, without a match.
class band_merge_lanes {
public:
  using clone_pair = std::pair<clone_number, clone_number>;
  static constexpr std::size_t n_lanes = 6; // more would not find place in the registers

  // Nothing to count.
  band_merge_lanes() = default;
  // Clones 1..n; `first[c]` .. `first[c + 1]` are the places of a clone's bands in `bands`, which must outlive this, as
  // must `first`. Bands are below 2^30.
  band_merge_lanes(const band_value *bands, const band_adress *first, std::int32_t n);

  // The common bands of n_lanes pairs, each as common_bands() gives them. `t` isn't below 0.
  void count(const clone_pair *pairs, std::int32_t t, std::int32_t *common) const;
  // Asks the memory for the bands of a pair that will be counted soon.
  void fetch(const clone_pair &pair) const {
    constexpr std::int32_t bands_of_line = 64 / sizeof(band_value);
    for (std::int32_t at = 0; at < n_bands(pair.first); at += bands_of_line)
      __builtin_prefetch(list(as_first_, pair.first) + at);
    for (std::int32_t at = 0; at < n_bands(pair.second); at += bands_of_line)
      __builtin_prefetch(list(as_second_, pair.second) + at);
  }

private:
  // Where the merges stand.
  struct places {
    std::array<const band_value *, n_lanes> i, j;
  };
  static void take_steps(places &at, std::int32_t steps, std::int32_t t);
  std::int32_t n_bands(clone_number clone) const { return first_[clone + 1] - first_[clone]; }
  // The copies hold one value more for each clone before.
  const band_value *list(const std::vector<band_value> &copy, clone_number clone) const {
    return copy.data() + (first_[clone] - first_[1]) + (clone - 1);
  }

  const band_adress *first_ = nullptr;
  std::vector<band_value> as_first_, as_second_;
};

} // namespace orb
