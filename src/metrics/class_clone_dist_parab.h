// From counted pairs to a curve: bounds of the simulated p-values, the counts that a parabola may be fitted to, the
// fit, and the report in which a person can check all of it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/files.h"
#include "frame/process_frame.h"

namespace orb {

class class_clone_dist_parab {
public:
  // What the curves are made of: n_runs pairs of clones of n1 and n2 bands, and -ln P of each count as
  // class_clone_dist_simul gives it. Counts behind the end of the arrays never occurred.
  struct simulated_counts {
    std::int32_t n_runs = 0, n1 = 0, n2 = 0;
    std::int32_t n_shown = 0; // counts 0..n_shown stand in the report and the table
    std::vector<double> minus_log_P;
    std::vector<std::uint8_t> infinite;
    std::vector<double> mean_iid;
  };

  // Curves, range and the fit of the tables: -log10 P of b is about a2 b^2 + a1 b + a0 for b from b_start to b_end.
  // With too few usable counts the box "Not enought points for parabola" appears, all results are 0 and the answer is
  // false.
  bool control_results_of_p_val_estimation_a2a1a0(process_frame &frame, const simulated_counts &counts, double &a2,
                                                  double &a1, double &a0, std::int32_t &b_start, std::int32_t &b_end,
                                                  const class_DB_of_clones &database,
                                                  const class_usable_values &usable_values);
  // The report of the curves made last: tab-separated.
  void control_results_of_p_val_estimation_print(const simulated_counts &counts, result_file &file) const;

  // Simulated value, its differences and its bounds for 0..last count; `sulston`: the closed formula beside them.
  void prepare_curves(const simulated_counts &counts, const class_DB_of_clones &database,
                      const class_usable_values &usable_values);
  bool choose_fit_range(process_frame &frame, std::int32_t n_runs);
  // The fit over the range, by the model `index` of find_optimal_parabola.
  void fit_parabola(int index, double &a2, double &a1, double &a0) const;
  std::int32_t b_start_get() const { return b_start_; }
  std::int32_t b_end_get() const { return b_end_; }

  std::int32_t last_count_get() const { return static_cast<std::int32_t>(minus_log10_P_.size()) - 1; }
  bool infinite_get(std::int32_t b) const {
    return b > last_count_get() || infinite_[static_cast<std::size_t>(b)] != 0;
  }
  // Bounds in natural-log units. The upper one of a count that never occurred is infinite.
  double minus_probabilities_min_get(std::int32_t b) const;
  double minus_probabilities_max_get(std::int32_t b) const;

private:
  void set_bounds(std::size_t b, double n_runs);
  std::string text_of_fit(int index, std::int32_t n_shown) const;

  static constexpr std::int16_t n_differences = 3;
  std::vector<double> minus_log10_P_;
  std::array<std::vector<double>, n_differences + 1> differences_;
  std::vector<double> min_, max_;
  std::vector<std::uint8_t> infinite_;
  std::vector<double> sulston_;
  std::int32_t b_start_ = 0, b_end_ = 0;
};

} // namespace orb
