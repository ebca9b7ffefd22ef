// Common bands of a pair of clones. Flat arrays only: no copies, no allocation, no calls inside the loops.
#include <cstdlib>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"

namespace orb {

namespace {

// Greedy merge of two ascending lists: a band is matched to the first partner within t, and used once.
template <typename count_pair>
void merge_within(std::span<const band_value> a, std::span<const band_value> b, std::int64_t t, count_pair count) {
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    const std::int64_t d = static_cast<std::int64_t>(a[i]) - b[j];
    if (d <= t && -d <= t) {
      count(a[i], b[j]);
      ++i;
      ++j;
    } else if (d < 0) {
      ++i;
    } else {
      ++j;
    }
  }
}

} // namespace

void class_DB_of_clones::number_of_band_overlaps_fast_tolr_index1(clone_number clone_1, clone_number clone_2,
                                                                  std::int32_t &n_bands_1, std::int32_t &n_bands_2,
                                                                  double &common, std::int32_t t) const {
  const std::span<const band_value> a = bands_of_clone(clone_1), b = bands_of_clone(clone_2);
  n_bands_1 = number_of_bands_in_clone_get(clone_1);
  n_bands_2 = number_of_bands_in_clone_get(clone_2);
  std::int32_t n = 0;
  merge_within(a, b, t, [&n](band_value, band_value) { ++n; });
  common = n;
}

void class_DB_of_clones::number_of_band_overlaps_fast_index0(clone_number clone_1, clone_number clone_2,
                                                             std::int32_t &n_bands_1, std::int32_t &n_bands_2,
                                                             double &common) const {
  number_of_band_overlaps_fast_tolr_index1(clone_1, clone_2, n_bands_1, n_bands_2, common, 0);
}

void class_DB_of_clones::number_of_band_overlaps_fast_tolr_index1_JK(clone_number clone_1, clone_number clone_2,
                                                                     std::int32_t &n_bands_1, std::int32_t &n_bands_2,
                                                                     double &common, std::int32_t t,
                                                                     const class_usable_values &usable_values) const {
  const std::span<const band_value> a = bands_of_clone(clone_1), b = bands_of_clone(clone_2);
  n_bands_1 = n_bands_2 = 0;
  for (const band_value band : a)
    n_bands_1 += usable_values.band_is_not_excluded_get(band);
  for (const band_value band : b)
    n_bands_2 += usable_values.band_is_not_excluded_get(band);
  std::int32_t n = 0;
  // An excluded band still takes its partner: only the count leaves the pair out.
  merge_within(a, b, t, [&](band_value band_1, band_value band_2) {
    n += usable_values.band_is_not_excluded_get(band_1) && usable_values.band_is_not_excluded_get(band_2);
  });
  common = n;
}

void class_DB_of_clones::number_of_band_overlaps_fast_tolr_index1_with_pair(clone_number c, clone_number a,
                                                                            clone_number b, std::int32_t &count_1,
                                                                            std::int32_t &count_2,
                                                                            std::int32_t &count_3, double &common,
                                                                            std::int32_t t) const {
  const std::span<const band_value> of_c = bands_of_clone(c), of_a = bands_of_clone(a), of_b = bands_of_clone(b);
  count_1 = count_2 = number_of_bands_in_clone_get(a); // not that of c: deliberate
  count_3 = number_of_bands_in_clone_get(b);
  std::int32_t n = 0;
  std::size_t i = 0, j = 0, k = 0;
  while (i < of_c.size() && j < of_a.size() &&
         k < of_b.size()) { // ends with the first list that is used up: deliberate
    const std::int64_t to_a = static_cast<std::int64_t>(of_a[j]) - of_c[i];
    const std::int64_t to_b = static_cast<std::int64_t>(of_b[k]) - of_c[i];
    const bool match_a = std::llabs(to_a) <= t, match_b = std::llabs(to_b) <= t;
    if (match_a || match_b) {
      ++n;
      ++i;
      j += match_a;
      k += match_b;
    } else if (to_a > 0 && to_b > 0) {
      ++i;
    } else {
      j += to_a < 0; // both lagging lists move in one step
      k += to_b < 0;
    }
  }
  common = n;
}

} // namespace orb
