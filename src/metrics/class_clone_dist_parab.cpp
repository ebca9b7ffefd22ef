#include "metrics/class_clone_dist_parab.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

#include "frame/class_math1.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_FPC.h"

namespace orb {

namespace {

constexpr int model_of_tables = 5, n_models_shown = 6;
constexpr double infinity = std::numeric_limits<double>::infinity();
// Values are logarithms of whole counts: a comparison that means a count must not turn on the rounding of one.
constexpr double rounding = 1e-9;
const char *const too_few_points = "Not enought points for parabola";

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

std::string row(const char *name, std::int32_t last, const std::function<std::string(std::int32_t)> &field) {
  std::string text = name;
  for (std::int32_t b = 0; b <= last; ++b)
    text += "\t" + field(b);
  return text;
}

std::string number_or_infinite(double value) {
  return value == infinity ? "Infinit" : number_text(value, 4);
}

} // namespace

// ---- curves --------------------------------------------------------------------------------------------------------

// Three standard deviations to both sides of the simulated share p, for shares of few pairs something coarser.
void class_clone_dist_parab::set_bounds(std::size_t b, double n_runs) {
  if (infinite_[b] != 0) {
    min_[b] = -std::log10(4 / n_runs);
    max_[b] = infinity;
    return;
  }
  const double p = std::pow(10, -minus_log10_P_[b]), three_sigma = 3 * std::sqrt(p / n_runs);
  min_[b] = -std::log10(p < 4 / n_runs ? p + 6 / n_runs : p + three_sigma);
  const double least = 1 / (20 * n_runs);
  // at nine pairs the deviation takes all of p, and rounding would decide what is left
  max_[b] = -std::log10(p < 9 / n_runs || p - three_sigma < least ? least : p - three_sigma);
}

void class_clone_dist_parab::prepare_curves(const simulated_counts &counts, const class_DB_of_clones &database,
                                            const class_usable_values &usable_values) {
  const std::size_t n = std::max(counts.minus_log_P.size(), place(counts.n_shown) + 1);
  minus_log10_P_.assign(n, 0);
  infinite_ = counts.infinite;
  infinite_.resize(n, 1);
  for (std::size_t b = 0; b < counts.minus_log_P.size(); ++b)
    minus_log10_P_[b] = counts.minus_log_P[b] / std::numbers::ln10;
  differences_[0] = minus_log10_P_;
  for (std::size_t j = 1; j < differences_.size(); ++j) {
    differences_[j].assign(n, 0);
    for (std::size_t b = j; b < n && infinite_[b] == 0; ++b)
      differences_[j][b] = differences_[j - 1][b] - differences_[j - 1][b - 1];
  }
  min_.assign(n, 0);
  max_.assign(n, 0);
  for (std::size_t b = 0; b < n; ++b)
    set_bounds(b, counts.n_runs);
  sulston_.assign(place(counts.n_shown) + 1, 0);
  for (std::int32_t b = 0; b <= counts.n_shown; ++b)
    sulston_[place(b)] = class_clone_dist_FPC::minus_log10_p_value_from_FPC(
        b, counts.n1, counts.n2, class_clone_dist_FPC::FPC_DISTANCE_INDEX_Sulston_1988_get(), database, usable_values);
}

double class_clone_dist_parab::minus_probabilities_min_get(std::int32_t b) const {
  return min_[place(b)] * std::numbers::ln10;
}

double class_clone_dist_parab::minus_probabilities_max_get(std::int32_t b) const {
  return max_[place(b)] * std::numbers::ln10;
}

// ---- range and fit -------------------------------------------------------------------------------------------------

bool class_clone_dist_parab::choose_fit_range(process_frame &frame, std::int32_t n_runs) {
  b_start_ = b_end_ = 0;
  const double limit = -std::log10(3.0 / n_runs);
  std::int32_t start = 1, end = 0;
  for (std::int32_t b = 1; !infinite_get(b) && minus_log10_P_[place(b)] <= limit + rounding; ++b) {
    if (minus_log10_P_[place(b)] < 1.0 - rounding)
      start = b + 1;
    end = b;
  }
  if (end < 2) {
    frame.alarm(too_few_points);
    return false;
  }
  const std::int32_t length = end - start + 1;
  const std::int32_t cut = length < 6 ? 0 : length < 14 ? (length - 5) / 2 : 4;
  b_start_ = length < 3 ? end - 2 : start + cut;
  b_end_ = end - cut;
  return true;
}

void class_clone_dist_parab::fit_parabola(int index, double &a2, double &a1, double &a0) const {
  std::vector<double> x, y;
  for (std::int32_t b = b_start_; b <= b_end_; ++b) {
    x.push_back(b);
    y.push_back(minus_log10_P_[place(b)]);
  }
  std::string model;
  class_math1::find_optimal_parabola(x, y, index, a2, a1, a0, model);
}

bool class_clone_dist_parab::control_results_of_p_val_estimation_a2a1a0(
    process_frame &frame, const simulated_counts &counts, double &a2, double &a1, double &a0, std::int32_t &b_start,
    std::int32_t &b_end, const class_DB_of_clones &database, const class_usable_values &usable_values) {
  a2 = a1 = a0 = 0;
  prepare_curves(counts, database, usable_values);
  const bool enough = choose_fit_range(frame, counts.n_runs);
  if (enough)
    fit_parabola(model_of_tables, a2, a1, a0);
  b_start = b_start_;
  b_end = b_end_;
  return enough;
}

// ---- report --------------------------------------------------------------------------------------------------------

std::string class_clone_dist_parab::text_of_fit(int index, std::int32_t n_shown) const {
  double a2 = 0, a1 = 0, a0 = 0;
  fit_parabola(index, a2, a1, a0);
  const auto whole = [](std::int32_t n) { return std::to_string(n); };
  return "\r\n" + number_text(a2, 5) + "*x^2+" + number_text(a1, 5) + "*x+" + number_text(a0, 5) +
         "\r\nn=" + whole(b_end_ - b_start_ + 1) + ", index=" + std::to_string(index) + ", b_min=" + whole(b_start_) +
         ", b_max=" + whole(b_end_) + "\r\n" + row("x", n_shown, whole) + "\r\n" +
         row("y", n_shown, [&](std::int32_t b) { return number_text(a0 + (a1 + a2 * b) * b, 4); });
}

void class_clone_dist_parab::control_results_of_p_val_estimation_print(const simulated_counts &counts,
                                                                       result_file &file) const {
  const std::int32_t n = counts.n_shown;
  file.line(row("b", n, [](std::int32_t b) { return std::to_string(b); }));
  file.line(row("-Log10P", n, [&](std::int32_t b) {
    return infinite_get(b) ? std::string("Infinit") : number_text(minus_log10_P_[place(b)], 4);
  }));
  const char *const names[] = {"", "d1", "d2", "d3"};
  for (std::int32_t j = 1; j <= n_differences; ++j)
    file.line(row(names[j], n, [&](std::int32_t b) {
      return b < j || infinite_get(b) ? std::string() : number_text(differences_[place(j)][place(b)], 4);
    }));
  file.line(row("min", n, [&](std::int32_t b) { return number_or_infinite(min_[place(b)]); }));
  file.line(row("max", n, [&](std::int32_t b) { return number_or_infinite(max_[place(b)]); }));
  file.line(row("Sulston", n, [&](std::int32_t b) { return number_text(sulston_[place(b)], 4); }));
  file.line("");
  file.line("");
  if (b_end_ == 0)
    file.line(too_few_points);
  for (int index = 0; index < n_models_shown && b_end_ > 0; ++index)
    file.line(text_of_fit(index, n));
  file.line("");
  file.line("Comparison iid vs fr:");
  file.line(row("iidvsfr", n, [&](std::int32_t b) {
    return number_text(place(b) < counts.mean_iid.size() ? counts.mean_iid[place(b)] : 0, 2);
  }));
}

} // namespace orb
