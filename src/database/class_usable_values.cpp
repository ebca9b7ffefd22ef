#include "database/class_usable_values.h"

#include <algorithm>
#include <cmath>

#include "database/class_DB_of_clones.h"
#include "frame/class_math1.h"

namespace orb {

namespace {

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

} // namespace

void class_usable_values::create_band_is_not_excluded(process_frame &frame, double fraction,
                                                      const class_DB_of_clones &database, random_source &random) {
  const std::int32_t n = database.total_number_of_different_bands_get();
  band_is_not_excluded_.assign(place(n) + 6, 1);
  JK_on_bands_ = true;
  const double target = n * fraction;
  if (target > n * 0.8)
    frame.program_end_now("Too mach bands are excluded!", exit_status::run_failed);
  std::int32_t n_usable = 0;
  for (std::int32_t b = 1; b <= n; ++b)
    n_usable += database.frecuency_of_band_in_clones_get(b) > 0;
  std::int32_t n_excluded = 0;
  while (n_excluded < target && n_usable > 0) {
    const std::int32_t b = random.number_up_to(n);
    if (!band_is_not_excluded_get(b) || !(database.frecuency_of_band_in_clones_get(b) > 0))
      continue;
    band_is_not_excluded_[place(b)] = 0;
    ++n_excluded;
    --n_usable;
  }
  if (n_excluded < target)
    frame.log_line("No band is left to exclude: " + std::to_string(n_excluded) + " were, of " +
                   std::to_string(static_cast<std::int64_t>(std::ceil(target))) + " wanted");
}

void class_usable_values::inicialize_buffer(const class_DB_of_clones &database) {
  const std::int32_t n = database.total_number_of_different_bands_get();
  band_is_not_excluded_.assign(place(n) + 6, 1);
  bands_per_class_.fill(0);
  class_of_band_.assign(place(n) + 6, n_classes_);
  band_frec_buffer_.assign(place(n) + 6, 0);
  for (std::int32_t b = 1; b <= n; ++b) {
    std::size_t c = 1;
    while (c < n_classes_ && class_value_[c] > database.frecuency_of_band_in_clones_get(b))
      ++c;
    class_of_band_[place(b)] = static_cast<std::int8_t>(c);
    ++bands_per_class_[c];
    band_frec_buffer_[place(b)] = class_value_[c];
  }
}

void class_usable_values::switch_frecuency_of_band_in_clones_and_band_frec_buffer(class_DB_of_clones &database) {
  std::vector<double> &frequency = database.frecuency_of_band_in_clones_array();
  const auto n = static_cast<std::ptrdiff_t>(database.total_number_of_different_bands_get());
  std::swap_ranges(frequency.begin() + 1, frequency.begin() + 1 + n, band_frec_buffer_.begin() + 1);
}

// One term for each tuple (m1, m2, m3) of common bands by class whose score -sum m(c) ln value(c) reaches x:
//   ln n_min! - sum ln m(c)! + sum m(c) ln p(c) + (n_min - M) ln(1 - p) - ln (n_min - M)!,   M = m1 + m2 + m3,
// where p(c) is the chance that a clone of n_max bands shows a given band of class c, and p their mean weighted by
// value.
void class_usable_values::calculate_all_ln_T_LnnSulston(std::int32_t x, std::int32_t n_max, std::int32_t n_min,
                                                        std::int32_t &upper, std::vector<double> &terms) const {
  std::array<double, 4> p{}, ln_p{}, ln_value{};
  std::array<std::int32_t, 4> m_max{};
  double d = 0, weighted = 0;
  std::int64_t n_bands = 0;
  for (std::size_t c = 1; c <= n_classes_; ++c) {
    d += bands_per_class_[c] * class_value_[c];
    n_bands += bands_per_class_[c];
    m_max[c] = std::min(bands_per_class_[c], n_min);
    ln_value[c] = std::log(class_value_[c]);
  }
  upper = std::max(x, 0) - 1;
  terms.resize(place(std::max(x, 0)));
  if (n_bands == 0)
    return;
  for (std::size_t c = 1; c <= n_classes_; ++c) {
    // A class without bands can have a value above the sum; its chance counts as 1.
    p[c] = 1 - std::pow(std::max(1 - class_value_[c] / d, 0.0), n_max);
    ln_p[c] = std::log(p[c]);
    weighted += class_value_[c] * p[c];
  }
  const double ln_rest = std::log(1 - weighted / static_cast<double>(n_bands));
  const double ln_n_min = class_math1::log_n_factorial(n_min);
  const auto times = [](std::int32_t m, double ln) { return m == 0 ? 0.0 : m * ln; }; // 0 * ln 0 is 0
  std::array<std::int32_t, 4> m{};
  for (m[1] = 0; m[1] <= m_max[1]; ++m[1])
    for (m[2] = 0; m[2] <= m_max[2] && m[1] + m[2] <= n_min; ++m[2])
      for (m[3] = 0; m[3] <= m_max[3] && m[1] + m[2] + m[3] <= n_min; ++m[3]) {
        double score = 0, term = ln_n_min;
        for (std::size_t c = 1; c <= n_classes_; ++c) {
          score -= m[c] * ln_value[c];
          term += times(m[c], ln_p[c]) - class_math1::log_n_factorial(m[c]);
        }
        if (score < x)
          continue;
        const std::int32_t rest = n_min - m[1] - m[2] - m[3];
        terms.push_back(term + times(rest, ln_rest) - class_math1::log_n_factorial(rest));
        ++upper;
      }
}

} // namespace orb
