// How many common bands a pair needs before its score can reach the cutoff: what makes most pairs of a library cheap.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "metrics/class_clone_dist_FPC.h"
#include "metrics/metric_context.h"

namespace orb {

// For one metric and cutoff. A clone enters by its size: the number of its bands that are compared or, where the metric
// scales counts by the weight of bands, the scaled number.
class least_common_bands {
public:
  // `significant`: the table that the scores use, or null. `largest_weight`: largest |ln f| of a band, for metrics on
  // weighted counts; 0 else.
  least_common_bands(const metric_context &context, std::int16_t distance_index, double cutoff,
                     const class_clone_dist_FPC *significant, double largest_weight);

  // False when this metric, or this cutoff, sets no lower limit.
  bool exists() const { return static_cast<bool>(least_); }
  // `weight`: sum of -ln f over the clone's bands.
  std::int32_t size_of(std::int32_t n_bands, double weight) const;
  // A pair with fewer common bands isn't significant. At least 1, or 0 when nothing is known for such sizes.
  std::int32_t operator()(std::int32_t size_1, std::int32_t size_2) const { return least_(size_1, size_2); }

private:
  using rule = std::function<std::int32_t(std::int32_t, std::int32_t)>;
  rule sulston(double cutoff, const class_clone_dist_FPC *significant);
  rule soderlund(double cutoff) const;
  rule share_of_bands(double cutoff, double largest_weight) const;
  rule simulated(double cutoff) const;
  rule simulated_weighted(double cutoff, double largest_weight) const;
  rule scaled_sulston(const class_clone_dist_FPC *significant, double largest_weight);

  const metric_context &context_;
  bool scaled_ = false;
  class_clone_dist_FPC own_table_; // when the scores use none
  rule least_;
};

} // namespace orb
