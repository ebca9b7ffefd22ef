// The merge of common_bands() for one list with two others, side by side: a merge spends its time waiting for its own
// last comparison, so that two together take hardly longer than one.
#pragma once

#include <cstdint>
#include <span>
#include <utility>

#include "database/class_DB_of_clones.h"

namespace orb {

struct common_pair {
  const band_value *own, *other;
};

// Writes the common bands of `own` with either other list, ascending, to two places that have room for one more than
// `own` has; how many there are. `t` isn't below 0.
inline std::pair<std::size_t, std::size_t> merge_with_two(std::span<const band_value> own,
                                                          std::span<const band_value> other_1,
                                                          std::span<const band_value> other_2, std::int32_t t,
                                                          common_pair *found_1, common_pair *found_2) {
  const band_value *i = own.data(), *j = other_1.data(), *k = i, *l = other_2.data();
  const band_value *const end = i + own.size(), *const end_1 = j + other_1.size(), *const end_2 = l + other_2.size();
  common_pair *at_1 = found_1, *at_2 = found_2;
  const auto step = [t](const band_value *&a, const band_value *&b, common_pair *&at) {
    // The sign bit in place of a comparison: compilers make jumps of comparisons, and these can't be foretold.
    const std::int32_t d = *a - *b;
    const std::size_t a_moves = 1 - (static_cast<std::uint32_t>(t - d) >> 31);
    const std::size_t b_moves = 1 - (static_cast<std::uint32_t>(t + d) >> 31);
    *at = {a, b};
    at += a_moves & b_moves;
    a += a_moves;
    b += b_moves;
  };
  while (i != end && j != end_1 && k != end && l != end_2) {
    step(i, j, at_1);
    step(k, l, at_2);
  }
  while (i != end && j != end_1)
    step(i, j, at_1);
  while (k != end && l != end_2)
    step(k, l, at_2);
  return {at_1 - found_1, at_2 - found_2};
}

} // namespace orb
