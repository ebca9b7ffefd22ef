// The stateless numeric toolbox: sorting with a companion index, random selection, log-factorials and binomial terms,
// least-squares fits, histograms and statistics.
//
// Sorted arrays are numbered from 1 (element 0 of the vector is unused); the data of fits and statistics are spans.
#pragma once

#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/lists.h"
#include "frame/random_source.h"

namespace orb {

class result_file;

class class_math1 {
public:
  // ---- sorting -------------------------------------------------------------------------------------------------
  // Each sorts list(first..last) ascending and carries index(first..last) along; `fill_index` first fills the index
  // of the range with the positions. Equal keys keep their order, so that results are the same everywhere. n log n.

  // float64 keys; NaN last.
  static void quicksort_tourerpp(std::vector<double> &list, std::vector<std::int32_t> &index, std::int32_t first,
                                 std::int32_t last, bool fill_index);
  // Strings by `string1less2`.
  static void quicksort_string_numPP(std::vector<std::string> &list, std::vector<std::int32_t> &index,
                                     std::int32_t first, std::int32_t last, bool fill_index);
  // Runs of digits compare as numbers of any length, everything else by bytes. Runs of equal value compare by bytes
  // when all else is equal, so that only equal texts are equal.
  static bool string1less2(std::string_view text_1, std::string_view text_2);
  static void quicksort_long(std::vector<std::int32_t> &list, std::vector<std::int32_t> &index, std::int32_t first,
                             std::int32_t last, bool fill_index);
  // A list of strings numbered from 1; equal neighbours are dropped and the count n adjusted.
  static void sort_list_of_string_and_delete_repeats(std::vector<std::string> &list, std::int32_t &n);
  static void sort_list_of_long_and_delete_repeats(number_list &list);

  // ---- selection and chance ------------------------------------------------------------------------------------

  // Draws an index 1..n from cumulative weights cumulative(1..n) (element 0 unused): i with the probability of its
  // step. log n. With a total that isn't above 0 all indices are equally likely.
  static std::int32_t random_value_number(const std::vector<double> &cumulative, std::int32_t n, random_source &chance);
  // A member of a list that isn't empty, each as likely as the others.
  static std::int32_t random_from_list(const number_list &list, random_source &chance);
  // Draws k of n elements without repetition with chances in proportion to weights(1..n), none of them negative, in
  // the order of drawing; k >= n takes all in order. marks(1..n) tells which were taken. When fewer than k weights
  // are above 0, the elements of weight 0 fill the rest in order.
  static void selection_realization(std::int32_t n, const std::vector<double> &weights, std::vector<bool> &marks,
                                    std::int32_t k, number_list &result, random_source &chance);
  // Removes the elements of a list whose positions are marked: marks(1..count).
  static void compress_list(number_list &list, const std::vector<bool> &marks);
  // A random order of 1..n, all equally likely.
  static number_list random_ordering(std::int32_t n, random_source &chance);

  // The k-subsets of 1..n in lexicographic order. `selected_combination_next` goes from one (ascending members) to
  // the next; `next_select_k_f_from_n` does it for flags(1..n), of which k are set. False behind the last.
  static bool selected_combination_next(number_list &combination, std::int32_t n);
  static bool next_select_k_f_from_n(std::vector<bool> &flags, std::int32_t k, std::int32_t n);
  // The numbers of the set flags, ascending.
  static void make_list_of_selected(const std::vector<bool> &flags, number_list &list);

  // ---- probability ---------------------------------------------------------------------------------------------

  // ln n! by the approximation of Ramanujan (The Lost Notebook), with pi rounded to 3.1415. Below 1 the result is
  // 1.0, not 0: deliberate, the scores depend on it.
  static double log_n_factorial(double n) {
    if (n < 1)
      return 1.0;
    return n * std::log(n) - n + std::log(n * (1 + 4 * n * (1 + 2 * n))) / 6 + 0.5 * std::log(3.1415);
  }
  // ln of "n over k". Through the rule above C(n, 0) and C(n, n) come out as exactly -1: deliberate as well.
  static double log_binom_C(double n, double k) {
    // subtracting the equal term first keeps k = 0 exact
    if (k < 1)
      return log_n_factorial(n) - log_n_factorial(n - k) - log_n_factorial(k);
    return log_n_factorial(n) - log_n_factorial(k) - log_n_factorial(n - k);
  }
  // ln of the binomial term: k successes of n with probability p. p may be 0 or 1 where its power is 0.
  static double log_T_b(double n, double k, double p) {
    double value = log_binom_C(n, k);
    if (k != 0)
      value += k * std::log(p);
    if (n != k)
      value += (n - k) * std::log(1 - p);
    return value;
  }

  // ---- fits ----------------------------------------------------------------------------------------------------

  // Least squares of y = a2 x^2 + a1 x + a0 under the model 0 to 6 named in `model_text`:
  //   0 a2 alone; 1 a2, a1; 2 a2, a1 <= 0; 3 all; 4 all, a2 <= 0; 5 all, a2 >= 0; 6 all, a2 and a1 >= 0.
  // Where 4 to 6 are violated a line is fitted instead. A model out of range or a fit with a determinant of 0 gives 0.
  static void find_optimal_parabola(std::span<const double> x, std::span<const double> y, int model, double &a2,
                                    double &a1, double &a0, std::string &model_text);
  // Least squares of y = a1 x + a0; with equal x values a1 = 0 and a0 is the mean.
  static void find_optimal_line(std::span<const double> x, std::span<const double> y, double &a1, double &a0);
  // The largest real root of a2 x^2 + a1 x + a0 = 0 (of the line when a2 is 0); false when there is none.
  static bool maximal_root_of_square_equation(double a2, double a1, double a0, double &root);
  // Bilinear interpolation on the unit square between the corners fpq at (p, q). On the diagonal of a symmetric table
  // (`diagonal`) the corner (0, 1) lies outside the stored half and equals (1, 0), which is taken for it.
  static double function_on_01x01(double u, double v, double f00, double f01, double f10, double f11, bool diagonal);

  // ---- histograms ----------------------------------------------------------------------------------------------

  // n + 1 ascending ends of n zones of equal width between two values; none when n is below 1.
  static std::vector<double> make_histogram_ends_of_zone_standard(double from, double to, std::int32_t n);
  // Writes count, range, mean and STDV of the values, and a row for each zone between two neighbouring ends; values
  // outside stand in rows of their own, marked "-".
  static void make_histogram_SPb(std::span<const double> values, std::span<const double> zone_ends, result_file &file);

  // ---- statistics ----------------------------------------------------------------------------------------------
  // Of empty or constant data, where a definition has no value, the result is 0.

  static double mean_value_get(std::span<const double> values);
  static double STDV_get(std::span<const double> values); // of a sample: divided by n - 1
  static double median_get(std::span<const double> values);
  static double correlation(std::span<const double> x, std::span<const double> y);     // Pearson
  static double rankCorrelation(std::span<const double> x, std::span<const double> y); // Spearman
  // Ranks from 1; equal values share the mean of their ranks.
  static void rankVector_make(std::span<const std::int32_t> values, std::vector<double> &ranks);
  static void rankVectorDouble_make(std::span<const double> values, std::vector<double> &ranks);
  static double distManhettn_get(std::span<const double> x, std::span<const double> y);
  static double distEuclide_get(std::span<const double> x, std::span<const double> y);
  static double distRankCorrelation_get(std::span<const double> x, std::span<const double> y); // 1 - rankCorrelation
  static double distCorrelation_get(std::span<const double> x, std::span<const double> y);     // 1 - correlation
  // Two-sided p-value of Student's t. Incomplete beta by continued fraction (Lentz 1976), about 1e-13 relative.
  static double t_test_distribution_Student_p_value_get(double t, double degrees_of_freedom);
  // Adjusted p-values in the order of the input (Benjamini and Hochberg 1995).
  static void FDR_correction(std::span<const double> p_values, std::vector<double> &adjusted);
  // A normally distributed value (Box and Muller 1958); takes two numbers of the source.
  static double gauss_value(double mean, double stdv, random_source &chance);
};

} // namespace orb
