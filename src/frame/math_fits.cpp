// class_math1: least-squares fits and histograms.
#include <algorithm>

#include "frame/class_math1.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr int n_models = 7;
// The text of the last model is that of the one before it: deliberate.
constexpr const char *text_of_model[n_models] = {"y=a2 x*x",
                                                 "y=a2 x*x +a1 x",
                                                 "y=a2 x*x +a1 x, a1<=0",
                                                 "y=a2 x*x +a1 x+a0",
                                                 "y=a2 x*x +a1 x+a0, a2<=0",
                                                 "y=a2 x*x +a1 x+a0, a2>=0",
                                                 "y=a2 x*x +a1 x+a0, a2>=0"};

struct power_sums {
  double n = 0, x = 0, x2 = 0, x3 = 0, x4 = 0, y = 0, xy = 0, x2y = 0;
};

power_sums sums_of(std::span<const double> x, std::span<const double> y) {
  power_sums sums;
  const std::size_t n = std::min(x.size(), y.size());
  sums.n = static_cast<double>(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double square = x[i] * x[i];
    sums.x += x[i];
    sums.x2 += square;
    sums.x3 += square * x[i];
    sums.x4 += square * square;
    sums.y += y[i];
    sums.xy += x[i] * y[i];
    sums.x2y += square * y[i];
  }
  return sums;
}

// u a + v b = p, v a + w b = q; with a determinant of 0 both are 0.
void solve_symmetric(double u, double v, double w, double p, double q, double &a, double &b) {
  const double determinant = u * w - v * v;
  a = determinant == 0 ? 0 : (p * w - q * v) / determinant;
  b = determinant == 0 ? 0 : (u * q - v * p) / determinant;
}

double quotient(double above, double below) {
  return below == 0 ? 0 : above / below;
}

void fit_through_origin(const power_sums &s, double &a2, double &a1) {
  solve_symmetric(s.x4, s.x3, s.x2, s.x2y, s.xy, a2, a1);
}

void fit_whole(const power_sums &s, double &a2, double &a1, double &a0) {
  if (s.n == 0)
    return;
  solve_symmetric(s.x4 - s.x2 * s.x2 / s.n, s.x3 - s.x2 * s.x / s.n, s.x2 - s.x * s.x / s.n, s.x2y - s.x2 * s.y / s.n,
                  s.xy - s.x * s.y / s.n, a2, a1);
  a0 = (s.y - a2 * s.x2 - a1 * s.x) / s.n;
}

} // namespace

void class_math1::find_optimal_parabola(std::span<const double> x, std::span<const double> y, int model, double &a2,
                                        double &a1, double &a0, std::string &model_text) {
  a2 = a1 = a0 = 0;
  model_text.clear();
  if (model < 0 || model >= n_models)
    return;
  model_text = text_of_model[model];
  const power_sums sums = sums_of(x, y);
  if (model == 0) {
    a2 = quotient(sums.x2y, sums.x4);
  } else if (model <= 2) {
    fit_through_origin(sums, a2, a1);
    if (model == 2 && a1 > 0) {
      a1 = 0;
      a2 = quotient(sums.x2y, sums.x4);
    }
  } else {
    fit_whole(sums, a2, a1, a0);
    const bool violated = (model == 4 && a2 > 0) || (model == 5 && a2 < 0) || (model == 6 && !(a2 >= 0 && a1 >= 0));
    if (!violated)
      return;
    a2 = 0;
    find_optimal_line(x, y, a1, a0);
  }
}

void class_math1::find_optimal_line(std::span<const double> x, std::span<const double> y, double &a1, double &a0) {
  const power_sums sums = sums_of(x, y);
  a1 = quotient(sums.n * sums.xy - sums.x * sums.y, sums.n * sums.x2 - sums.x * sums.x);
  a0 = quotient(sums.y - a1 * sums.x, sums.n);
}

bool class_math1::maximal_root_of_square_equation(double a2, double a1, double a0, double &root) {
  if (a2 == 0) {
    if (a1 == 0)
      return false;
    root = -a0 / a1;
    return true;
  }
  const double discriminant = a1 * a1 - 4 * a2 * a0;
  if (!(discriminant >= 0))
    return false;
  // both roots without the difference of nearly equal numbers
  const double sum = -0.5 * (a1 + std::copysign(std::sqrt(discriminant), a1));
  const double root_1 = sum / a2, root_2 = sum == 0 ? root_1 : a0 / sum;
  root = std::max(root_1, root_2);
  return true;
}

double class_math1::function_on_01x01(double u, double v, double f00, double f01, double f10, double f11,
                                      bool diagonal) {
  if (diagonal)
    f01 = f10;
  return (1 - u) * ((1 - v) * f00 + v * f01) + u * ((1 - v) * f10 + v * f11);
}

std::vector<double> class_math1::make_histogram_ends_of_zone_standard(double from, double to, std::int32_t n) {
  std::vector<double> ends;
  for (std::int32_t i = 0; n >= 1 && i <= n; ++i)
    ends.push_back(i == n ? to : from + (to - from) * i / n);
  return ends;
}

namespace {

std::string count_and_fraction(std::int64_t count, std::size_t n) {
  return std::to_string(count) + "\t" + number_text(static_cast<double>(count) / static_cast<double>(n), 4);
}

void print_zones(std::span<const double> values, std::span<const double> ends, result_file &file) {
  std::vector<std::int64_t> counts(ends.size() + 1, 0); // below the first end, the zones, from the last end on
  for (const double value : values)
    ++counts[static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), value) - ends.begin())];
  const auto text = [](double value) { return number_text(value, 4); };
  file.line("zone\tfrom (>=)\tto (<)\tcenter\tn\tfraction");
  file.line("-\t-\t" + text(ends.front()) + "\t-\t" + count_and_fraction(counts.front(), values.size()));
  for (std::size_t zone = 1; zone < ends.size(); ++zone)
    file.line(std::to_string(zone) + "\t" + text(ends[zone - 1]) + "\t" + text(ends[zone]) + "\t" +
              text((ends[zone - 1] + ends[zone]) / 2) + "\t" + count_and_fraction(counts[zone], values.size()));
  file.line("-\t" + text(ends.back()) + "\t-\t-\t" + count_and_fraction(counts.back(), values.size()));
}

} // namespace

void class_math1::make_histogram_SPb(std::span<const double> values, std::span<const double> zone_ends,
                                     result_file &file) {
  if (values.empty()) {
    file.line("NB! number of elements = 0");
    return;
  }
  const auto [smallest, largest] = std::minmax_element(values.begin(), values.end());
  file.line("n\t" + std::to_string(values.size()));
  file.line("min\t" + number_text(*smallest, 4));
  file.line("max\t" + number_text(*largest, 4));
  file.line("average\t" + number_text(mean_value_get(values), 4));
  file.line("STDV\t" + number_text(STDV_get(values), 4));
  if (zone_ends.size() < 2)
    file.line("n_zones=0");
  else
    print_zones(values, zone_ends, file);
}

} // namespace orb
