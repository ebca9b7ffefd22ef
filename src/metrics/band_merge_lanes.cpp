#include "metrics/band_merge_lanes.h"

#include <algorithm>

namespace orb {

namespace {

constexpr band_value behind_second = 1 << 30, behind_first = behind_second + (1 << 29);
constexpr std::int32_t steps_at_once = 16;

} // namespace

band_merge_lanes::band_merge_lanes(const band_value *bands, const band_adress *first, std::int32_t n) : first_(first) {
  std::int32_t most = 0;
  for (clone_number clone = 1; clone <= n; ++clone)
    most = std::max(most, n_bands(clone));
  const auto copy = [&](band_value end, std::vector<band_value> &lists) {
    lists.reserve(static_cast<std::size_t>(first[n + 1] - first[1]) +
                  static_cast<std::size_t>(n + 2 * most + 2 * steps_at_once));
    for (clone_number clone = 1; clone <= n; ++clone) {
      lists.insert(lists.end(), bands + first[clone], bands + first[clone + 1]);
      lists.push_back(end);
    }
  };
  if (n < 1)
    return;
  copy(behind_first, as_first_);
  copy(behind_second, as_second_);
  as_second_.resize(as_second_.size() + static_cast<std::size_t>(2 * most + 2 * steps_at_once),
                    behind_second); // to walk on in
}

// A step moves a pointer that isn't ahead, and both on a match.
void band_merge_lanes::take_steps(places &at, std::int32_t steps, std::int32_t t) {
  places now = at; // a copy of its own, which the compiler keeps in registers
  for (; steps > 0; --steps) {
#pragma GCC unroll 6
    for (std::size_t l = 0; l < n_lanes; ++l) {
      // The sign bit in place of a comparison: compilers make jumps of comparisons, and these can't be foretold.
      const std::int32_t d = *now.i[l] - *now.j[l];
      now.i[l] += 1 - (static_cast<std::uint32_t>(t - d) >> 31);
      now.j[l] += 1 - (static_cast<std::uint32_t>(t + d) >> 31);
    }
  }
  at = now;
}

void band_merge_lanes::count(const clone_pair *pairs, std::int32_t t, std::int32_t *common) const {
  places at{}, end{};
  std::int32_t steps = 0;
  for (std::size_t l = 0; l < n_lanes; ++l) {
    const auto [a, b] = pairs[l];
    at.i[l] = list(as_first_, a);
    at.j[l] = list(as_second_, b);
    end.i[l] = at.i[l] + n_bands(a);
    end.j[l] = at.j[l] + n_bands(b);
    // A merge takes n1 + n2 - k steps. Pairs that come here have much in common; whoever hasn't gets more steps below.
    steps = std::max(steps, n_bands(a) + n_bands(b) - 3 * std::min(n_bands(a), n_bands(b)) / 8);
  }
  const places begin = at;
  take_steps(at, steps, t);
  const auto all_over = [&] {
    bool over = true;
    for (std::size_t l = 0; l < n_lanes; ++l)
      over = over && at.i[l] == end.i[l] && at.j[l] >= end.j[l];
    return over;
  };
  for (; !all_over(); steps += steps_at_once)
    take_steps(at, steps_at_once, t);
  // Each step moved one place, or two on a match.
  for (std::size_t l = 0; l < n_lanes; ++l)
    common[l] = static_cast<std::int32_t>((at.i[l] - begin.i[l]) + (at.j[l] - begin.j[l])) - steps;
}

} // namespace orb
