#include "pairs/least_common.h"

#include <algorithm>
#include <cmath>

#include "database/class_markers.h"
#include "metrics/class_clone_dist_general.h"
#include "metrics/pair_score.h"

namespace orb {

namespace {

using family = class_clone_dist_general;

// No score of a pair without common bands is above -log10(1/e): below this cutoff a probability limits nothing.
constexpr double smallest_cutoff = 0.5;
// Sums of weights are rounded; so much larger than rounding, and so small, that it costs nothing.
constexpr double rounding_margin = 1 + 1e-9;

// The first k from 1 to most + 1 that `reaches`, which must stay true from there on.
template <class condition> std::int32_t first_count(std::int32_t most, condition &&reaches) {
  std::int32_t low = 1, high = most + 1;
  while (low < high) {
    const std::int32_t middle = low + (high - low) / 2;
    if (reaches(middle))
      high = middle;
    else
      low = middle + 1;
  }
  return low;
}

std::int32_t most_markers_of_clone(const class_DB_of_clones &database) {
  std::int32_t most = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    most = std::max(most, database.markers().n_markers_in_clone_get(clone));
  return most;
}

} // namespace

least_common_bands::least_common_bands(const metric_context &context, std::int16_t distance_index, double cutoff,
                                       const class_clone_dist_FPC *significant, double largest_weight)
    : context_(context) {
  switch (distance_index) {
  case family::DISTANCE_INDEX_Sulston_1988_get():
    least_ = sulston(cutoff, significant);
    break;
  case family::DISTANCE_INDEX_Soderlund_1997_get():
    least_ = soderlund(cutoff);
    break;
  case family::DISTANCE_INDEX_k2_frac_mn_get():
    least_ = share_of_bands(cutoff, 1);
    break;
  case family::DISTANCE_INDEX_k2_frac_mn_Markers_get(): // what the bands must bring when all markers agree
    least_ = share_of_bands(cutoff - 100.0 * most_markers_of_clone(context.database), 1);
    break;
  case family::DISTANCE_INDEX_KK2_frac_mn_get():
    least_ = share_of_bands(cutoff, largest_weight * rounding_margin);
    break;
  case family::DISTANCE_INDEX_Sulston_1988_frec_get():
    least_ = scaled_sulston(significant, largest_weight);
    break;
  case family::DISTANCE_INDEX_Nof_get():
    least_ = simulated(cutoff);
    break;
  case family::DISTANCE_INDEX_Lnn_get():
  case family::DISTANCE_INDEX_LnnCuted_get():
    least_ = simulated_weighted(cutoff, largest_weight * rounding_margin);
    break;
  case family::DISTANCE_INDEX_LnnMarkers_get(): // what the table must bring when all markers agree
    least_ =
        simulated_weighted(cutoff - 100.0 * most_markers_of_clone(context.database), largest_weight * rounding_margin);
    break;
  default:
    break;
  }
}

std::int32_t least_common_bands::size_of(std::int32_t n_bands, double weight) const {
  if (!scaled_)
    return n_bands;
  const double scaled = std::floor(weight / context_.database.mean_log_band_frequency_get());
  return static_cast<std::int32_t>(std::clamp(scaled, 0.0, 1e6));
}

least_common_bands::rule least_common_bands::sulston(double cutoff, const class_clone_dist_FPC *significant) {
  if (significant == nullptr) {
    if (cutoff < smallest_cutoff)
      return {};
    own_table_.fill_sulston_significant_table(cutoff, class_clone_dist_FPC::proposed_table_size(context_.database),
                                              context_.database, context_.usable_values);
    significant = &own_table_;
  } else if (!(cutoff > 0)) {
    return {};
  }
  return [significant](std::int32_t a, std::int32_t b) {
    if (std::max(a, b) > significant->table_size_get())
      return 0;
    return std::max(significant->sulston_significant_table_get(a, b), 1); // without bands the score is 0
  };
}

// The score can't fall while k rises.
least_common_bands::rule least_common_bands::soderlund(double cutoff) const {
  if (cutoff < smallest_cutoff)
    return {};
  return [cutoff, this](std::int32_t a, std::int32_t b) {
    return first_count(std::min(a, b), [&](std::int32_t k) {
      return class_clone_dist_FPC::minus_log10_p_value_from_FPC(
                 k, a, b, class_clone_dist_FPC::FPC_DISTANCE_INDEX_Soderlund_1997_get(), context_.database,
                 context_.usable_values) >= cutoff;
    });
  };
}

// 1000 K^2 / (n1 n2) where K is at most k times the largest weight of a band.
least_common_bands::rule least_common_bands::share_of_bands(double cutoff, double largest_weight) const {
  if (!(cutoff > 0))
    return {};
  return [=](std::int32_t a, std::int32_t b) {
    return first_count(std::min(a, b),
                       [&](std::int32_t k) { return 1000 * share_of_common(k * largest_weight, a, b) >= cutoff; });
  };
}

// The value may fall while k rises where simulated counts and curve meet: the first k of all that reaches the cutoff.
least_common_bands::rule least_common_bands::simulated(double cutoff) const {
  const class_clone_dist_table &table = context_.table;
  if (!table.is_loaded(0) || !(cutoff > 0))
    return {};
  return [cutoff, &table](std::int32_t a, std::int32_t b) {
    std::int32_t k = 0;
    while (k <= std::min(a, b) && !(table.minus_log10_p_value_get(k, a, b, 0) >= cutoff))
      ++k;
    return k;
  };
}

// k bands weigh at most k times the largest weight. That bounds the value only where no curve falls.
least_common_bands::rule least_common_bands::simulated_weighted(double cutoff, double largest_weight) const {
  const class_clone_dist_table &table = context_.table;
  if (!(cutoff > 0) || !(largest_weight > 0) || !table.curves_rise(1))
    return {};
  return [=, &table](std::int32_t a, std::int32_t b) {
    if (table.minus_log10_p_value_get(0, a, b, 1) >= cutoff)
      return 0;
    return first_count(std::min(a, b), [&](std::int32_t k) {
      return table.minus_log10_p_value_get(k * largest_weight, a, b, 1) >= cutoff;
    });
  };
}

// The weight of the common bands, in units of the mean weight, must reach the table's entry for the scaled sizes.
least_common_bands::rule least_common_bands::scaled_sulston(const class_clone_dist_FPC *significant,
                                                            double largest_weight) {
  const double mean = context_.database.mean_log_band_frequency_get();
  if (significant == nullptr || !(significant->sulston_significant_table_cutoff_get() > 0) || !(mean > 0) ||
      !(largest_weight > 0))
    return {};
  scaled_ = true;
  const double units_of_band = largest_weight / mean * rounding_margin;
  return [=](std::int32_t a, std::int32_t b) {
    if (std::min(a, b) < 1 || std::max(a, b) > significant->table_size_get())
      return 0; // the score goes on without a table
    return std::max(
        static_cast<std::int32_t>(std::ceil(significant->sulston_significant_table_get(a, b) / units_of_band)), 1);
  };
}

} // namespace orb
