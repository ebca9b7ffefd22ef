// class_math1: statistics with their textbook definitions.
#include <algorithm>
#include <cmath>
#include <limits>

#include "frame/class_math1.h"
#include "frame/sorting.h"

namespace orb {

double class_math1::mean_value_get(std::span<const double> values) {
  double sum = 0;
  for (const double value : values)
    sum += value;
  return values.empty() ? 0 : sum / static_cast<double>(values.size());
}

double class_math1::STDV_get(std::span<const double> values) {
  if (values.size() < 2)
    return 0;
  const double mean = mean_value_get(values);
  double sum = 0;
  for (const double value : values)
    sum += (value - mean) * (value - mean);
  return std::sqrt(sum / static_cast<double>(values.size() - 1));
}

double class_math1::median_get(std::span<const double> values) {
  if (values.empty())
    return 0;
  std::vector<double> sorted(values.begin(), values.end());
  const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
  std::nth_element(sorted.begin(), middle, sorted.end());
  if (sorted.size() % 2 == 1)
    return *middle;
  return (*std::max_element(sorted.begin(), middle) + *middle) / 2;
}

double class_math1::correlation(std::span<const double> x, std::span<const double> y) {
  const std::size_t n = std::min(x.size(), y.size());
  const double mean_x = mean_value_get(x.first(n)), mean_y = mean_value_get(y.first(n));
  double xx = 0, yy = 0, xy = 0;
  for (std::size_t i = 0; i < n; ++i) {
    xx += (x[i] - mean_x) * (x[i] - mean_x);
    yy += (y[i] - mean_y) * (y[i] - mean_y);
    xy += (x[i] - mean_x) * (y[i] - mean_y);
  }
  return xx > 0 && yy > 0 ? xy / (std::sqrt(xx) * std::sqrt(yy)) : 0;
}

namespace {

template <class value> void make_ranks(std::span<const value> values, std::vector<double> &ranks) {
  const std::vector<std::uint32_t> places =
      sorted_places(values.size(), [values](std::uint32_t a, std::uint32_t b) { return values[a] < values[b]; });
  ranks.assign(values.size(), 0);
  for (std::size_t first = 0; first < places.size();) {
    std::size_t behind = first + 1;
    while (behind < places.size() && values[places[behind]] == values[places[first]])
      ++behind;
    // ranks first + 1 to behind
    for (std::size_t i = first; i < behind; ++i)
      ranks[places[i]] = static_cast<double>(first + 1 + behind) / 2;
    first = behind;
  }
}

} // namespace

void class_math1::rankVector_make(std::span<const std::int32_t> values, std::vector<double> &ranks) {
  make_ranks(values, ranks);
}

void class_math1::rankVectorDouble_make(std::span<const double> values, std::vector<double> &ranks) {
  make_ranks(values, ranks);
}

double class_math1::rankCorrelation(std::span<const double> x, std::span<const double> y) {
  std::vector<double> ranks_x, ranks_y;
  const std::size_t n = std::min(x.size(), y.size());
  make_ranks(x.first(n), ranks_x);
  make_ranks(y.first(n), ranks_y);
  return correlation(ranks_x, ranks_y);
}

double class_math1::distManhettn_get(std::span<const double> x, std::span<const double> y) {
  double sum = 0;
  for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i)
    sum += std::fabs(x[i] - y[i]);
  return sum;
}

double class_math1::distEuclide_get(std::span<const double> x, std::span<const double> y) {
  double sum = 0;
  for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i)
    sum += (x[i] - y[i]) * (x[i] - y[i]);
  return std::sqrt(sum);
}

double class_math1::distRankCorrelation_get(std::span<const double> x, std::span<const double> y) {
  return 1 - rankCorrelation(x, y);
}

double class_math1::distCorrelation_get(std::span<const double> x, std::span<const double> y) {
  return 1 - correlation(x, y);
}

namespace {

// std::lgamma writes a global of the C library; this one may be called from several threads (Lanczos 1964, g = 7).
double log_gamma(double x) {
  constexpr double terms[] = {0.99999999999980993,  676.5203681218851,     -1259.1392167224028,
                              771.32342877765313,   -176.61502916214059,   12.507343278686905,
                              -0.13857109526572012, 9.9843695780195716e-6, 1.5056327351493116e-7};
  x -= 1;
  double sum = terms[0];
  for (int i = 1; i < 9; ++i)
    sum += terms[i] / (x + i);
  const double t = x + 7.5;
  return 0.91893853320467274 + (x + 0.5) * std::log(t) - t + std::log(sum); // the number is ln sqrt(2 pi)
}

// The continued fraction of the incomplete beta function.
double beta_fraction(double a, double b, double x) {
  constexpr double tiny = 1e-300;
  constexpr int most_steps = 10000;
  const auto not_zero = [](double value) { return std::fabs(value) < tiny ? tiny : value; };
  double c = 1, d = 1 / not_zero(1 - (a + b) * x / (a + 1)), fraction = d;
  for (int m = 1; m <= most_steps; ++m) {
    const double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
    d = 1 / not_zero(1 + even * d);
    c = not_zero(1 + even / c);
    fraction *= d * c;
    const double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
    d = 1 / not_zero(1 + odd * d);
    c = not_zero(1 + odd / c);
    fraction *= d * c;
    if (std::fabs(d * c - 1) < 1e-15)
      break;
  }
  return fraction;
}

double incomplete_beta(double a, double b, double x) {
  if (x <= 0)
    return 0;
  if (x >= 1)
    return 1;
  const double front = std::exp(log_gamma(a + b) - log_gamma(a) - log_gamma(b) + a * std::log(x) + b * std::log1p(-x));
  // the fraction converges fast below the mean only
  if (x < (a + 1) / (a + b + 2))
    return front * beta_fraction(a, b, x) / a;
  return 1 - front * beta_fraction(b, a, 1 - x) / b;
}

} // namespace

double class_math1::t_test_distribution_Student_p_value_get(double t, double degrees_of_freedom) {
  if (!(degrees_of_freedom > 0) || std::isnan(t))
    return 1;
  return incomplete_beta(degrees_of_freedom / 2, 0.5, degrees_of_freedom / (degrees_of_freedom + t * t));
}

void class_math1::FDR_correction(std::span<const double> p_values, std::vector<double> &adjusted) {
  const std::size_t n = p_values.size();
  const std::vector<std::uint32_t> places =
      sorted_places(n, [p_values](std::uint32_t a, std::uint32_t b) { return p_values[a] < p_values[b]; });
  adjusted.assign(n, 0);
  double smallest = 1;
  for (std::size_t rank = n; rank >= 1; --rank) {
    const std::uint32_t i = places[rank - 1];
    smallest = std::min(smallest, p_values[i] * static_cast<double>(n) / static_cast<double>(rank));
    adjusted[i] = smallest;
  }
}

} // namespace orb
