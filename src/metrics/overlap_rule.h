// What is compared: by which metric two clones overlap, from which score on, and when one is buried in the other.
#pragma once

#include <cstdint>

#include "metrics/class_clone_dist_general.h"

namespace orb {

struct overlap_rule {
  static constexpr double standard_burying = 0.9;

  std::int16_t distance_index = class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get();
  double cutoff = 15;                // least score of an overlap, on the metric's scale
  double burying = standard_burying; // share of a clone's bands that buries it, 0 to 1
  bool weights = false;              // abundances of the common bands are summed too: for metrics that live on them

  bool operator==(const overlap_rule &) const = default;
};

// A rule whose weights go by its metric.
inline overlap_rule rule_of_metric(std::int16_t distance_index, double cutoff,
                                   double burying = overlap_rule::standard_burying) {
  return {distance_index, cutoff, burying,
          class_clone_dist_general::need_take_band_abundances_into_account_get(distance_index)};
}
// Whether counting by a rule sums weights: its metric has the last word, since it scores nothing without them.
inline bool sums_weights(const overlap_rule &rule) {
  return rule.weights || class_clone_dist_general::need_take_band_abundances_into_account_get(rule.distance_index);
}
// The same at another cutoff.
inline overlap_rule at_cutoff(overlap_rule rule, double cutoff) {
  rule.cutoff = cutoff;
  return rule;
}

} // namespace orb
