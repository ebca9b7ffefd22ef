#include "metrics/pair_score.h"

#include <algorithm>
#include <cmath>

#include "metrics/class_clone_dist_general.h"

namespace orb {

namespace {

using family = class_clone_dist_general;

std::int32_t whole(double value) {
  constexpr double largest = 2147483647.0;
  if (!(value > -largest))
    return value != value ? 0 : -2147483647;
  return static_cast<std::int32_t>(std::min(value, largest));
}

// True when the table says that k can't be significant. Counts beyond the table have no entry.
bool below_table(const class_clone_dist_FPC *significant, std::int32_t k, std::int32_t n1, std::int32_t n2) {
  if (significant == nullptr || n1 < 0 || n2 < 0 || std::max(n1, n2) > significant->table_size_get())
    return false;
  return k < significant->sulston_significant_table_get(n1, n2);
}

double sulston_score(std::int32_t k, std::int32_t n1, std::int32_t n2, const class_DB_of_clones &database,
                     const class_usable_values &usable_values, const class_clone_dist_FPC *significant) {
  if (below_table(significant, k, n1, n2))
    return 0;
  return class_clone_dist_FPC::minus_log10_p_value_from_FPC(
      k, n1, n2, class_clone_dist_FPC::FPC_DISTANCE_INDEX_Sulston_1988_get(), database, usable_values);
}

// The weighted counts scaled to equivalent plain bands. There is no test of them against 0: deliberate.
double scaled_sulston_score(const pair_counts &counts, const class_DB_of_clones &database,
                            const class_usable_values &usable_values, const class_clone_dist_FPC *significant) {
  const double mean = database.mean_log_band_frequency_get();
  if (!(mean > 0))
    return 0; // no statistics
  return sulston_score(whole(std::floor(counts.x_fr / mean)), whole(std::floor(counts.weight1 / mean)),
                       whole(std::floor(counts.weight2 / mean)), database, usable_values, significant);
}

} // namespace

double share_of_common(double k, std::int32_t n1, std::int32_t n2) {
  const double product = static_cast<double>(n1) * n2;
  return product < 1 ? 0 : k * k / product;
}

std::int16_t burying_code_of_counts(const pair_counts &counts, double border) {
  const bool first = counts.n1 * border <= counts.x_iid, second = counts.n2 * border <= counts.x_iid;
  return static_cast<std::int16_t>((first ? 1 : 0) + (second ? 2 : 0));
}

double score_of_counts(const pair_counts &counts, std::int32_t n_common_markers, std::int16_t distance_index,
                       const class_DB_of_clones &database, const class_usable_values &usable_values,
                       const class_clone_dist_table &table, const class_clone_dist_FPC *significant) {
  const std::int32_t n1 = counts.n1, n2 = counts.n2;
  switch (distance_index) {
  case family::DISTANCE_INDEX_k2_frac_mn_get():
    return 1000 * share_of_common(counts.x_iid, n1, n2);
  case family::DISTANCE_INDEX_Nof_get():
    return table.minus_log10_p_value_get(counts.x_iid, n1, n2, 0);
  case family::DISTANCE_INDEX_Lnn_get():
  case family::DISTANCE_INDEX_LnnCuted_get(): // its counts were made on the class frequencies
    return table.minus_log10_p_value_get(counts.x_fr, n1, n2, 1);
  case family::DISTANCE_INDEX_KK2_frac_mn_get():
    return 1000 * share_of_common(counts.x_fr, n1, n2);
  case family::DISTANCE_INDEX_Sulston_1988_get():
    if (n1 == 0 || n2 == 0)
      return 0;
    return sulston_score(whole(counts.x_iid), n1, n2, database, usable_values, significant);
  case family::DISTANCE_INDEX_Soderlund_1997_get():
    return class_clone_dist_FPC::minus_log10_p_value_from_FPC(
        whole(counts.x_iid), n1, n2, class_clone_dist_FPC::FPC_DISTANCE_INDEX_Soderlund_1997_get(), database,
        usable_values);
  case family::DISTANCE_INDEX_LnnMarkers_get():
    return 100.0 * n_common_markers + table.minus_log10_p_value_get(counts.x_fr, n1, n2, 1);
  case family::DISTANCE_INDEX_LnnSulston_get():
    return class_clone_dist_FPC::minus_log10_p_value_from_FPC(whole(std::floor(counts.x_fr)), n1, n2,
                                                              class_clone_dist_FPC::FPC_DISTANCE_INDEX_LnnSulston_get(),
                                                              database, usable_values);
  case family::DISTANCE_INDEX_k2_frac_mn_Markers_get():
    return 1000 * share_of_common(counts.x_iid, n1, n2) + 100.0 * n_common_markers;
  case family::DISTANCE_INDEX_Sulston_1988_frec_get():
    return scaled_sulston_score(counts, database, usable_values, significant);
  default: // Special, k and TagsSulston have no value of their own here
    return 0;
  }
}

} // namespace orb
