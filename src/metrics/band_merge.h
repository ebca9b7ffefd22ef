// Counting the common bands of two ascending lists: a greedy matching in which every band is used at most once and the
// first partner in range wins.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <span>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"

namespace orb {

// Similar bands without a frequency: statistics were not made, or bands and statistics don't belong together. Thrown by
// weighing code that may run on a worker thread; whoever called it shows "Error!: f=0" and ends the program.
struct zero_frequency : std::exception {
  const char *what() const noexcept override { return "Error!: f=0"; }
};

// Number of common bands within the closed tolerance t (below 0: none). Both pointers move on a match, otherwise the
// one on the smaller band. No branch depends on the bands: that is what makes it fast. O(n1 + n2).
inline std::int32_t common_bands(std::span<const band_value> list_1, std::span<const band_value> list_2,
                                 std::int32_t t) {
  if (t < 0)
    return 0;
  const band_value *i = list_1.data(), *j = list_2.data();
  const band_value *const end_1 = i + list_1.size(), *const end_2 = j + list_2.size();
  std::int32_t common = 0;
  while (i != end_1 && j != end_2) {
    const std::int32_t d = *i - *j;
    const bool first_moves = d <= t, second_moves = d >= -t;
    common += first_moves && second_moves;
    i += first_moves;
    j += second_moves;
  }
  return common;
}

// The same merge, in which `matched(band_1, band_2)` is called for each common pair, in ascending order.
template <class matched_pair>
void merge_bands(std::span<const band_value> list_1, std::span<const band_value> list_2, std::int32_t t,
                 matched_pair &&matched) {
  std::size_t i = 0, j = 0;
  while (i < list_1.size() && j < list_2.size()) {
    if (std::abs(list_1[i] - list_2[j]) <= t)
      matched(list_1[i++], list_2[j++]);
    else if (list_1[i] > list_2[j])
      ++j;
    else
      ++i;
  }
}

// The tolerance of comparisons on explicit lists: bin numbers are compared for equality.
inline std::int32_t list_tolerance(const class_DB_of_clones &database) {
  return database.index_of_band_type_get() != 0 ? 0 : database.tollerance_get();
}

} // namespace orb
