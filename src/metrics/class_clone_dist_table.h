// Lookup of simulated p-values of common band counts.
#pragma once

#include <cstdint>

namespace orb {

class class_clone_dist_table {
public:
  // No tables are loaded yet by any command: metrics that live on them score 0 and are refused by name.
  bool is_loaded() const { return false; }
  // -log10 of the p-value of `count` common bands (mode 0 plain, mode 1 weighted); 0 without tables.
  double minus_log10_p_value_get(double /*count*/, std::int32_t /*n1*/, std::int32_t /*n2*/, int /*mode*/) const {
    return 0;
  }
};

} // namespace orb
