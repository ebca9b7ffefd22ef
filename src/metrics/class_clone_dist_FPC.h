// The probability that two clones share k or more bands by chance, as -log10 (Sulston et al. 1988; Soderlund et al.
// 1997), and the table of the least significant k.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"

namespace orb {

class class_clone_dist_FPC {
public:
  static constexpr std::int16_t FPC_DISTANCE_INDEX_Sulston_1988_get() { return 0; }
  static constexpr std::int16_t FPC_DISTANCE_INDEX_Soderlund_1997_get() { return 1; }
  static constexpr std::int16_t FPC_DISTANCE_INDEX_Soderlund_1997_NO_TOLERANCE_get() { return 0; } // deliberate
  static constexpr std::int16_t FPC_DISTANCE_INDEX_LnnSulston_get() { return 3; }

  // Safe to call from several threads: its work array is the caller's thread's own.
  static double minus_log10_p_value_from_FPC(std::int32_t k, std::int32_t n1, std::int32_t n2, std::int16_t index,
                                             const class_DB_of_clones &database,
                                             const class_usable_values &usable_values);
  // The first of them (Sulston) where bands can take `n_positions` positions, whatever a library says.
  static double minus_log10_p_value_of_positions(std::int32_t k, std::int32_t n1, std::int32_t n2, double n_positions);

  // Asks for the largest band count M ("Preprocess"), fills the table with progress and writes metric_table.txt.
  void create_sulston_significant_table(process_frame &frame, double cutoff, const class_DB_of_clones &database,
                                        const class_usable_values &usable_values);
  // The same table without question, progress and file, for counts up to M.
  void fill_sulston_significant_table(double cutoff, std::int32_t M, const class_DB_of_clones &database,
                                      const class_usable_values &usable_values);
  // Larger of 215 and the largest band count of the library.
  static std::int32_t proposed_table_size(const class_DB_of_clones &database);
  std::int32_t sulston_significant_table_get(std::int32_t a, std::int32_t b) const {
    return table_[static_cast<std::size_t>(a) * static_cast<std::size_t>(size_ + 1) + static_cast<std::size_t>(b)];
  }
  double sulston_significant_table_cutoff_get() const { return cutoff_; }
  std::int32_t table_size_get() const { return size_; } // M
  // Row a of the table, indexed by b from 0 to M.
  const std::int32_t *row(std::int32_t a) const {
    return table_.data() + static_cast<std::size_t>(a) * static_cast<std::size_t>(size_ + 1);
  }

private:
  static double probability_of_band_match(std::int32_t n_max, std::int32_t n_min, std::int16_t index,
                                          const class_DB_of_clones &database);
  std::int32_t least_significant_k(std::int32_t a, std::int32_t b, std::int32_t k0, double cutoff,
                                   const class_DB_of_clones &database, const class_usable_values &usable_values) const;
  void fill_rows(double cutoff, std::int32_t M, const class_DB_of_clones &database,
                 const class_usable_values &usable_values, const std::function<void(std::int32_t)> &row_done);
  std::vector<std::int32_t> table_; // both triangles; row and column 0 stay 0
  std::int32_t size_ = 0;
  double cutoff_ = 0;
};

} // namespace orb
