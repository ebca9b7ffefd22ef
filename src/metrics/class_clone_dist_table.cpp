// Parameters and lookups of the tables. How they are made stands in p_value_making.cpp, their files in
// p_value_files.cpp.
#include "metrics/class_clone_dist_table.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "frame/class_math1.h"
#include "frame/numbers.h"
#include "metrics/form_simul_1.h"

namespace orb {

// The fit of the tables has this value of -log10 P where it begins to rule when only the fit is known.
static constexpr double value_at_threshold = 2;

void p_value_situation::find_threshold() {
  threshold = b_start;
  if (b_start != 0)
    return;
  if (class_math1::maximal_root_of_square_equation(a2, a1, a0 - value_at_threshold, threshold))
    return;
  threshold = a2 > 0 ? -a1 / (2 * a2) : infinite_threshold;
}

double p_value_situation::simulated(double x) const {
  const bool stored = x >= 0 && x < static_cast<double>(minus_log_P.size());
  return stored ? minus_log_P[static_cast<std::size_t>(x)] / std::numbers::ln10 : 0;
}

// ---- parameters ----------------------------------------------------------------------------------------------------

std::string class_clone_dist_table::wrong_parameters(std::int64_t min_n_bands, std::int64_t step,
                                                     std::int64_t n_steps) {
  constexpr std::int64_t largest_size = 32767; // sizes are signed 16-bit numbers
  const auto text = [](std::int64_t n) { return std::to_string(n); };
  if (min_n_bands < 1 || min_n_bands > largest_size)
    return "The min number of bands in clone of a table is from 1 to " + text(largest_size) + ", not " +
           text(min_n_bands) + ".";
  if (step < 1 || step > largest_size)
    return "The step of a table is from 1 to " + text(largest_size) + ", not " + text(step) + ".";
  if (n_steps < 0 || n_steps > most_steps)
    return "The number of steps of a table is from 0 to " + text(most_steps) + ", not " + text(n_steps) + ".";
  if (min_n_bands + step * n_steps > largest_size)
    return "The largest size of the table, " + text(min_n_bands + step * n_steps) + ", is above " + text(largest_size) +
           ".";
  return {};
}

void class_clone_dist_table::table_parameters_set(std::int16_t min_n_bands, std::int16_t step, std::int16_t n_steps,
                                                  std::int16_t table_type) {
  min_n_bands_ = min_n_bands;
  step_ = step;
  n_steps_ = n_steps;
  table_type_ = table_type;
  loaded_ = {};
  n_situations_ = static_cast<std::int16_t>(table_type == 1 ? (n_steps + 2) * (n_steps + 1) : 1);
  table_.clear();
  table_.resize(static_cast<std::size_t>(table_type == 1 ? n_pairs_of_sizes() : 1) + 1);
}

void class_clone_dist_table::show_table_parameters_in_form_simul_1(form_simul_1 &form) const {
  form.put_GUI_table_size(min_n_bands_, step_, n_steps_);
}

std::int32_t class_clone_dist_table::index_of_situation(std::int32_t n1, std::int32_t n2) const {
  if (table_type_ != 1)
    return 1;
  const std::int32_t a = std::max(n1, n2) - min_n_bands_, b = std::min(n1, n2) - min_n_bands_;
  if (b < 0 || a % step_ != 0 || b % step_ != 0 || a / step_ > n_steps_)
    return 0;
  const std::int32_t i = a / step_, j = b / step_;
  return i * (i + 1) / 2 + j + 1;
}

const p_value_situation *class_clone_dist_table::situation(std::int32_t n1, std::int32_t n2, int mode) const {
  const auto index = static_cast<std::size_t>(index_of_situation(n1, n2));
  if (index == 0 || index >= table_.size() || mode < 0 || mode >= n_modes)
    return nullptr;
  return &table_[index][static_cast<std::size_t>(mode)];
}

// ---- values --------------------------------------------------------------------------------------------------------

void class_clone_dist_table::table_of_abc_parameters_for_one_situation_get(std::int32_t n1, std::int32_t n2, int which,
                                                                           int mode, double &value) const {
  const p_value_situation *const at = situation(n1, n2, mode);
  value = at == nullptr ? 0 : which == 0 ? at->a0 : which == 1 ? at->a1 : which == 2 ? at->a2 : 0;
}

void class_clone_dist_table::table_of_abc_parameters_for_one_situation_set(std::int32_t n1, std::int32_t n2, int which,
                                                                           int mode, double value) {
  if (situation(n1, n2, mode) == nullptr || which < 0 || which > 2)
    return;
  p_value_situation &at = table_[static_cast<std::size_t>(index_of_situation(n1, n2))][static_cast<std::size_t>(mode)];
  (which == 0 ? at.a0 : which == 1 ? at.a1 : at.a2) = value;
  at.find_threshold();
}

void class_clone_dist_table::parabola_for_partial_case(double x, std::int32_t n1, std::int32_t n2, int mode,
                                                       double &value) const {
  const p_value_situation *const at = situation(n1, n2, mode);
  value = at == nullptr ? 0 : x >= at->threshold ? at->parabola(x) : at->simulated(x);
}

static double value_of_cell(double x, const p_value_situation &at) {
  return x > at.threshold ? at.parabola(x) : at.simulated(x);
}

void class_clone_dist_table::parabola_on_net(double x, std::int32_t n1, std::int32_t n2, int mode,
                                             double &value) const {
  value = 0;
  if (mode < 0 || mode >= n_modes || table_.empty())
    return;
  if (table_type_ != 1) {
    value = std::max(value_of_cell(x, table_[1][static_cast<std::size_t>(mode)]), 0.0);
    return;
  }
  const std::int32_t a = std::max(n1, n2) - min_n_bands_, b = std::min(n1, n2) - min_n_bands_;
  if (b < 0 || a > step_ * n_steps_)
    return;
  const std::int32_t i = a / step_, j = b / step_;
  const double u = static_cast<double>(a - i * step_) / step_, v = static_cast<double>(b - j * step_) / step_;
  // at the largest size the corners above have no weight, and there are none
  const std::int32_t i_above = std::min<std::int32_t>(i + 1, n_steps_),
                     j_above = std::min<std::int32_t>(j + 1, i_above);
  const bool diagonal = i == j;
  const double f00 = value_of_cell(x, cell(i, j, mode)), f10 = value_of_cell(x, cell(i_above, j, mode));
  const double f01 = diagonal ? f10 : value_of_cell(x, cell(i, j_above, mode));
  const double f11 = value_of_cell(x, cell(i_above, j_above, mode));
  value = std::max(class_math1::function_on_01x01(u, v, f00, f01, f10, f11, diagonal), 0.0);
}

bool class_clone_dist_table::value_of_count(double x, std::int32_t n1, std::int32_t n2, int mode, double &value) const {
  value = 0;
  const p_value_situation *const exact = situation(n1, n2, mode);
  if (exact != nullptr && (is_loaded(mode) || exact->n_runs > 0))
    parabola_for_partial_case(x, n1, n2, mode, value);
  else if (is_loaded(mode))
    parabola_on_net(x, n1, n2, mode, value);
  else
    return false;
  return true;
}

bool class_clone_dist_table::parabola_for_partial_case_arg(double value, std::int32_t n1, std::int32_t n2, int mode,
                                                           double &x) const {
  double before = 0, here = 0;
  x = 0;
  if (!value_of_count(0, n1, n2, mode, before))
    return false;
  if (before >= value)
    return true;
  const std::int64_t most = 100 * (static_cast<std::int64_t>(n1) + n2);
  for (std::int64_t step = 1; step <= most; ++step, before = here) {
    value_of_count(static_cast<double>(step), n1, n2, mode, here);
    if (here >= value) {
      x = static_cast<double>(step - 1) + (value - before) / (here - before);
      return true;
    }
  }
  return false;
}

bool class_clone_dist_table::curves_rise(int mode) const {
  if (!is_loaded(mode))
    return false;
  return std::all_of(table_.begin() + 1, table_.end(), [mode](const auto &modes) {
    const p_value_situation &at = modes[static_cast<std::size_t>(mode)];
    if (at.threshold >= p_value_situation::infinite_threshold)
      return at.minus_log_P.empty();
    return at.minus_log_P.empty() && at.threshold >= 0 && at.a2 >= 0 && at.a1 + 2 * at.a2 * at.threshold >= 0;
  });
}

} // namespace orb
