#include "metrics/class_clone_dist_FPC.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "frame/class_math1.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::int32_t smallest_table = 215;
constexpr std::int32_t largest_table = 2000; // far above the 500 bands that a clone may have

// ln n! for n = 0..largest, kept by each thread; 1.0 for n below 1 as `log_n_factorial` has it.
const std::vector<double> &log_factorials(std::int32_t largest) {
  thread_local std::vector<double> values;
  for (auto n = static_cast<std::int32_t>(values.size()); n <= largest; ++n)
    values.push_back(class_math1::log_n_factorial(n));
  return values;
}

// Beside the largest term, which adds 1, a term below exp(-40) is lost in rounding: leaving it out changes no bit.
constexpr double lost_in_rounding = -40;

// -log10 of the sum of exp(term), summed relative to the largest term, since the terms underflow long before they
// cease to count. 0 when nothing is left.
double minus_log10_of_sum(const double *first, const double *last) {
  double largest = -std::numeric_limits<double>::infinity();
  for (const double *term = first; term != last; ++term)
    largest = std::max(largest, *term);
  if (!(largest > -std::numeric_limits<double>::infinity()))
    return 0;
  double sum = 0;
  for (const double *term = first; term != last; ++term)
    if (sum < 1 || *term - largest >= lost_in_rounding)
      sum += std::exp(*term - largest);
  const double log_sum = sum > 0 ? largest + std::log(sum) : 0;
  return -log_sum / std::log(10.0);
}

// Terms ln C(U, m) + m ln p + (U - m) ln(1 - p) for m = k..U; the first one whatever U is. Beyond U p they only fall:
// the list ends where they are lost beside the first.
void binomial_terms(std::int32_t k, std::int32_t upper, double p, std::vector<double> &terms) {
  const std::int32_t last = std::max(k, upper);
  const std::vector<double> &table = log_factorials(std::max(last, 1));
  const auto log_factorial = [&](std::int32_t n) { return n < 1 ? 1.0 : table[static_cast<std::size_t>(n)]; };
  const double log_p = std::log(p), log_q = std::log(1 - p), largest_at = upper * p;
  terms.clear();
  for (std::int32_t m = k; m <= last; ++m) {
    // subtracting the equal term first keeps C(U, 0) at exactly -1
    double term = m < 1 ? log_factorial(upper) - log_factorial(upper - m) - log_factorial(m)
                        : log_factorial(upper) - log_factorial(m) - log_factorial(upper - m);
    if (m != 0)
      term += m * log_p;
    if (m != upper)
      term += (upper - m) * log_q;
    if (m > k && m > largest_at + 1 && term < terms.front() + lost_in_rounding)
      break;
    terms.push_back(term);
  }
}

// Four times the expected count, rounded half to even: beyond it the terms are negligible.
std::int32_t upper_limit_fast(std::int32_t k, std::int32_t upper, double p) {
  const double expected = std::nearbyint(upper * p * 4);
  if (k > expected)
    return k;
  return upper > expected ? static_cast<std::int32_t>(expected) : upper;
}

} // namespace

double class_clone_dist_FPC::probability_of_band_match(std::int32_t n_max, std::int32_t n_min, std::int16_t index,
                                                       const class_DB_of_clones &database) {
  double p = 0;
  if (index == 0) {
    p = 1 - std::pow(1 - 1.0 / database.total_number_of_different_bands_FPC_get(), n_max);
  } else if (index == 1 || index == 2) {
    const double t = database.tollerance_get();
    double axis = database.total_number_of_different_bands_get();
    if (t >= 1 && database.taking_tollerance_into_account_index_get() == 0)
      axis *= 2 * t;
    const double a = n_min / axis, b = n_max / axis;
    p = (1 - std::pow(1 - a, t + 1)) * b * std::pow(1 - a, t) + (1 - std::pow(1 - b, t + 1)) * a * std::pow(1 - b, t) -
        a * b;
  }
  if (!(p > 0))
    return 0; // also when parameters make it no number
  return std::min(p, 1.0);
}

double class_clone_dist_FPC::minus_log10_p_value_from_FPC(std::int32_t k, std::int32_t n1, std::int32_t n2,
                                                          std::int16_t index, const class_DB_of_clones &database,
                                                          const class_usable_values &usable_values) {
  const std::int32_t n_max = std::max(n1, n2), n_min = std::min(n1, n2);
  k = std::max(k, 0); // weights of very frequent bands can bring a scaled count below 0
  thread_local std::vector<double> terms;
  if (index == FPC_DISTANCE_INDEX_LnnSulston_get()) {
    std::int32_t upper = k;
    usable_values.calculate_all_ln_T_LnnSulston(k, n_max, n_min, upper, terms);
    if (upper < k)
      return 0;
    return minus_log10_of_sum(terms.data() + k, terms.data() + upper + 1);
  }
  const double p = probability_of_band_match(n_max, n_min, index, database);
  std::int32_t upper = index == 0 ? n_min : database.total_number_of_different_bands_FPC_get();
  if (index == FPC_DISTANCE_INDEX_Soderlund_1997_get() && usable_values.for_FPC_fast_indicator_get())
    upper = upper_limit_fast(k, upper, p);
  binomial_terms(k, upper, p, terms);
  return minus_log10_of_sum(terms.data(), terms.data() + terms.size());
}

double class_clone_dist_FPC::minus_log10_p_value_of_positions(std::int32_t k, std::int32_t n1, std::int32_t n2,
                                                              double n_positions) {
  thread_local std::vector<double> terms;
  const double p = std::clamp(1 - std::pow(1 - 1.0 / n_positions, std::max(n1, n2)), 0.0, 1.0);
  binomial_terms(std::max(k, 0), std::min(n1, n2), p, terms);
  return minus_log10_of_sum(terms.data(), terms.data() + terms.size());
}

std::int32_t class_clone_dist_FPC::proposed_table_size(const class_DB_of_clones &database) {
  std::int32_t largest = smallest_table;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    largest = std::max(largest, database.number_of_bands_in_clone_get(clone));
  return largest;
}

std::int32_t class_clone_dist_FPC::least_significant_k(std::int32_t a, std::int32_t b, std::int32_t k0, double cutoff,
                                                       const class_DB_of_clones &database,
                                                       const class_usable_values &usable_values) const {
  for (std::int32_t k = k0; k <= a; ++k)
    if (minus_log10_p_value_from_FPC(k, a, b, FPC_DISTANCE_INDEX_Sulston_1988_get(), database, usable_values) >= cutoff)
      return k;
  return a + 1;
}

void class_clone_dist_FPC::fill_rows(double cutoff, std::int32_t M, const class_DB_of_clones &database,
                                     const class_usable_values &usable_values,
                                     const std::function<void(std::int32_t)> &row_done) {
  cutoff_ = cutoff;
  size_ = M;
  const auto width = static_cast<std::size_t>(M) + 1;
  table_.assign(width * width, 0);
  const auto entry = [&](std::int32_t a, std::int32_t b) -> std::int32_t & {
    return table_[static_cast<std::size_t>(a) * width + static_cast<std::size_t>(b)];
  };
  for (std::int32_t a = 1; a <= M; ++a) {
    // The entry can't fall when b grows: each search starts where the one before ended.
    std::int32_t k0 = a == 1 ? 1 : entry(a, a - 1);
    for (std::int32_t b = a; b <= M; ++b) {
      k0 = least_significant_k(a, b, k0, cutoff, database, usable_values);
      entry(b, a) = entry(a, b) = k0;
    }
    if (row_done)
      row_done(a);
  }
}

void class_clone_dist_FPC::fill_sulston_significant_table(double cutoff, std::int32_t M,
                                                          const class_DB_of_clones &database,
                                                          const class_usable_values &usable_values) {
  fill_rows(cutoff, M, database, usable_values, {});
}

void class_clone_dist_FPC::create_sulston_significant_table(process_frame &frame, double cutoff,
                                                            const class_DB_of_clones &database,
                                                            const class_usable_values &usable_values) {
  frame.step_text_set("Preprocessing...");
  result_file file(frame.path_in_working_folder("\\metric_table.txt"));
  std::int32_t M = proposed_table_size(database);
  double typed = 0;
  const std::string reply = frame.input({"Input max number of bands in clone:", "Preprocess", std::to_string(M)});
  if (number_from_text_silent(reply, typed) && typed >= 5)
    M = static_cast<std::int32_t>(std::min<double>(typed, std::max(M, largest_table)));
  fill_rows(cutoff, M, database, usable_values, [&](std::int32_t a) {
    for (std::int32_t b = a; a % 10 == 0 && b <= M; b += 10)
      file.line(std::to_string(a) + "\t" + std::to_string(b) + "\t" +
                std::to_string(sulston_significant_table_get(a, b)));
    frame.progress(a, M);
    frame.local_process_text_set(std::to_string(a) + " of " + std::to_string(M));
  });
  file.commit();
  frame.step_text_reset();
  frame.local_process_text_reset();
}

} // namespace orb
