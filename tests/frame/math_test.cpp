#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "frame/class_math1.h"
#include "frame/files.h"
#include "support/temporary_folder.h"

namespace orb {
namespace {

using math = class_math1;

TEST(log_factorials, approximation_with_its_deliberate_edges) {
  EXPECT_EQ(math::log_n_factorial(0), 1.0); // deliberate: not 0
  EXPECT_EQ(math::log_n_factorial(0.5), 1.0);
  double exact = 0;
  for (int n = 1; n <= 500; ++n) {
    exact += std::log(n);
    // the rounded pi takes away 1.5e-5, the approximation itself is good to 1/n^3
    EXPECT_NEAR(math::log_n_factorial(n), exact + 0.5 * std::log(3.1415 / 3.14159265358979), 0.002 / n / n / n) << n;
    EXPECT_EQ(math::log_binom_C(n, 0), -1.0) << n;
    EXPECT_EQ(math::log_binom_C(n, n), -1.0) << n;
  }
  EXPECT_EQ(math::log_binom_C(5, 5), -1.0);
  EXPECT_NEAR(math::log_binom_C(20, 6), std::log(38760), 1e-4);
  EXPECT_NEAR(math::log_T_b(20, 6, 0.3), std::log(38760 * std::pow(0.3, 6) * std::pow(0.7, 14)), 1e-4);
  EXPECT_EQ(math::log_T_b(5, 5, 1), -1.0);
}

TEST(sorting_numbers, keys_with_their_origin) {
  random_source chance(31);
  for (int round = 0; round < 200; ++round) {
    const std::int32_t n = chance.number_up_to(50);
    std::vector<std::int32_t> keys(static_cast<std::size_t>(n) + 1), index, index_d;
    for (std::int32_t &key : keys)
      key = round % 2 == 0 ? static_cast<std::int32_t>(chance.next()) : chance.number_up_to(5) - 3;
    std::vector<double> doubles(keys.begin(), keys.end());
    const std::vector<std::int32_t> original = keys;
    const std::int32_t first = std::min(n, chance.number_up_to(3));
    math::quicksort_long(keys, index, first, n, true);
    math::quicksort_tourerpp(doubles, index_d, first, n, true);
    EXPECT_TRUE(std::is_sorted(keys.begin() + first, keys.end()));
    EXPECT_EQ(index, index_d);
    for (std::int32_t i = first; i <= n; ++i) {
      EXPECT_EQ(keys[i], original[index[i]]);
      EXPECT_EQ(doubles[i], keys[i]);
      EXPECT_TRUE(i == first || keys[i - 1] < keys[i] || index[i - 1] < index[i]);
    }
    EXPECT_TRUE(std::equal(keys.begin(), keys.begin() + first, original.begin()));
  }
  std::vector<std::int32_t> keys{0, 3, 1, 2}, index{0, 30, 10, 20};
  math::quicksort_long(keys, index, 1, 3, false); // the index is carried along
  EXPECT_EQ(index, (std::vector<std::int32_t>{0, 10, 20, 30}));
  number_list list{3, 1, 3, 2, 1};
  math::sort_list_of_long_and_delete_repeats(list);
  EXPECT_EQ(list, (number_list{1, 2, 3}));
  std::vector<std::string> names{"", "b", "a", "b"};
  std::int32_t n = 3;
  math::sort_list_of_string_and_delete_repeats(names, n);
  EXPECT_EQ(n, 2);
  EXPECT_EQ(names[2], "b");
}

TEST(sorting_numbers, digits_in_strings_compare_as_numbers) {
  std::vector<std::string> sorted{
      "",   "00",   "0a",  "1",   "2",  "10", "99999999999999999999998", "99999999999999999999999", "a",
      "a2", "a02b", "a2b", "a10", "ab", "b1"};
  for (std::size_t i = 1; i < sorted.size(); ++i)
    for (std::size_t j = 1; j < sorted.size(); ++j)
      EXPECT_EQ(math::string1less2(sorted[i], sorted[j]), i < j) << sorted[i] << " " << sorted[j];
  std::vector<std::string> list{"", "a10", "a9", "a09"};
  std::vector<std::int32_t> index;
  math::quicksort_string_numPP(list, index, 1, 3, true);
  EXPECT_EQ(list, (std::vector<std::string>{"", "a09", "a9", "a10"}));
  EXPECT_EQ(index, (std::vector<std::int32_t>{0, 3, 2, 1}));
}

TEST(fits, every_model_on_worked_data) {
  const std::vector<double> x{1, 2, 3, 4}, zeros{0, 0, 0};
  const auto values = [&](double a2, double a1, double a0) {
    std::vector<double> y;
    for (const double v : x)
      y.push_back(a2 * v * v + a1 * v + a0);
    return y;
  };
  struct one_case {
    int model;
    std::vector<double> y;
    double a2, a1, a0;
    const char *text;
  };
  // 2.92 = sum x^2 y / sum x^4 of y = 2 x^2 + 3 x + 0 is 1008 / 354; the lines are those through the four points
  const one_case cases[] = {{0, values(2, 0, 0), 2, 0, 0, "y=a2 x*x"},
                            {1, values(2, 3, 0), 2, 3, 0, "y=a2 x*x +a1 x"},
                            {2, values(2, -3, 0), 2, -3, 0, "y=a2 x*x +a1 x, a1<=0"},
                            {2, values(2, 3, 0), 1008.0 / 354, 0, 0, "y=a2 x*x +a1 x, a1<=0"},
                            {3, values(-2, 3, 5), -2, 3, 5, "y=a2 x*x +a1 x+a0"},
                            {4, values(-2, 3, 5), -2, 3, 5, "y=a2 x*x +a1 x+a0, a2<=0"},
                            {4, values(2, 0, 0), 0, 10, -10, "y=a2 x*x +a1 x+a0, a2<=0"},
                            {5, values(2, 3, 5), 2, 3, 5, "y=a2 x*x +a1 x+a0, a2>=0"},
                            {5, values(-2, 0, 0), 0, -10, 10, "y=a2 x*x +a1 x+a0, a2>=0"},
                            {6, values(2, 3, 5), 2, 3, 5, "y=a2 x*x +a1 x+a0, a2>=0"}, // the text of 5: deliberate
                            {6, values(2, -1, 0), 0, 9, -10, "y=a2 x*x +a1 x+a0, a2>=0"}};
  double a2 = 7, a1 = 7, a0 = 7;
  std::string text;
  for (const one_case &c : cases) {
    math::find_optimal_parabola(x, c.y, c.model, a2, a1, a0, text);
    EXPECT_NEAR(a2, c.a2, 1e-9) << c.model;
    EXPECT_NEAR(a1, c.a1, 1e-9) << c.model;
    EXPECT_NEAR(a0, c.a0, 1e-9) << c.model;
    EXPECT_EQ(text, c.text);
  }
  for (int model = 0; model <= 6; ++model) {
    math::find_optimal_parabola(zeros, zeros, model, a2, a1, a0, text);
    EXPECT_EQ(a2, 0);
    EXPECT_EQ(a1, 0);
  }
}

TEST(fits, roots_and_interpolation) {
  double root = 0;
  EXPECT_TRUE(math::maximal_root_of_square_equation(1, -3, 2, root));
  EXPECT_EQ(root, 2);
  EXPECT_TRUE(math::maximal_root_of_square_equation(-1, 3, -2, root));
  EXPECT_EQ(root, 2);
  EXPECT_TRUE(math::maximal_root_of_square_equation(0, 2, -5, root));
  EXPECT_EQ(root, 2.5);
  EXPECT_TRUE(math::maximal_root_of_square_equation(3, 0, 0, root));
  EXPECT_EQ(root, 0);
  EXPECT_FALSE(math::maximal_root_of_square_equation(1, 0, 1, root));
  EXPECT_FALSE(math::maximal_root_of_square_equation(0, 0, 1, root));
  EXPECT_DOUBLE_EQ(math::function_on_01x01(0.25, 0.5, 1, 2, 3, 4, false), 2);
  EXPECT_DOUBLE_EQ(math::function_on_01x01(0, 1, 1, 99, 3, 4, true), 3);
}

TEST(histogram, zones_and_what_lies_outside) {
  const temporary_folder folder;
  const auto printed = [&](std::vector<double> values, std::vector<double> ends) {
    result_file file(folder.path() / "h");
    math::make_histogram_SPb(values, ends, file);
    file.commit();
    return file_bytes(folder.path() / "h");
  };
  EXPECT_EQ(printed({}, {1, 2}), "NB! number of elements = 0\r\n");
  const std::string head = "n\t4\r\nmin\t-1.0000\r\nmax\t4.0000\r\naverage\t1.5000\r\nSTDV\t2.0817\r\n";
  EXPECT_EQ(printed({-1, 1, 2, 4}, {}), head + "n_zones=0\r\n");
  EXPECT_EQ(printed({-1, 1, 2, 4}, math::make_histogram_ends_of_zone_standard(0, 4, 2)),
            head + "zone\tfrom (>=)\tto (<)\tcenter\tn\tfraction\r\n"
                   "-\t-\t0.0000\t-\t1\t0.2500\r\n"
                   "1\t0.0000\t2.0000\t1.0000\t1\t0.2500\r\n"
                   "2\t2.0000\t4.0000\t3.0000\t1\t0.2500\r\n"
                   "-\t4.0000\t-\t-\t1\t0.2500\r\n");
}

TEST(statistics, worked_values) {
  const std::vector<double> x{1, 2, 2, 5}, y{2, 4, 4, 10}, none;
  EXPECT_EQ(math::mean_value_get(x), 2.5);
  EXPECT_NEAR(math::STDV_get(x), 1.7320508, 1e-7);
  EXPECT_EQ(math::median_get(x), 2);
  EXPECT_EQ(math::median_get(std::vector<double>{9, 1, 4}), 4);
  EXPECT_EQ(math::median_get(std::vector<double>{9, 1, 4, 5}), 4.5);
  EXPECT_EQ(math::median_get(none), 0);
  EXPECT_NEAR(math::correlation(x, y), 1, 1e-12);
  EXPECT_NEAR(math::rankCorrelation(std::vector<double>{1, 2, 3}, std::vector<double>{1, 3, 2}), 0.5, 1e-12);
  EXPECT_NEAR(math::distCorrelation_get(x, y), 0, 1e-12);
  EXPECT_EQ(math::distManhettn_get(x, y), 10);
  EXPECT_NEAR(math::distEuclide_get(x, y), std::sqrt(34), 1e-12);
  std::vector<double> ranks;
  math::rankVectorDouble_make(x, ranks);
  EXPECT_EQ(ranks, (std::vector<double>{1, 2.5, 2.5, 4}));
  // two-sided values of printed tables; 1 degree of freedom is Cauchy's distribution
  EXPECT_NEAR(math::t_test_distribution_Student_p_value_get(2.228138852, 10), 0.05, 1e-9);
  EXPECT_NEAR(math::t_test_distribution_Student_p_value_get(-1, 1), 0.5, 1e-12);
  EXPECT_NEAR(math::t_test_distribution_Student_p_value_get(0.1, 1), 1 - 2 * std::atan(0.1) / std::acos(-1.0), 1e-12);
  std::vector<double> adjusted;
  math::FDR_correction(std::vector<double>{0.04, 0.01, 0.03}, adjusted);
  EXPECT_NEAR(adjusted[0], 0.04, 1e-12);
  EXPECT_NEAR(adjusted[1], 0.03, 1e-12);
  EXPECT_NEAR(adjusted[2], 0.04, 1e-12);
}

TEST(chance, same_seed_same_numbers_and_streams_differ) {
  random_source a(5), b(5), other_stream(5, 1), other_seed(6);
  for (int i = 0; i < 10; ++i) {
    const std::uint64_t number = a.next();
    EXPECT_EQ(number, b.next());
    EXPECT_NE(number, other_stream.next());
    EXPECT_NE(number, other_seed.next());
  }
  std::map<std::int32_t, int> counts;
  for (int i = 0; i < 60000; ++i)
    ++counts[a.number_up_to(6)];
  EXPECT_EQ(counts.size(), 6u);
  for (const auto &[number, count] : counts)
    EXPECT_NEAR(count, 10000, 500) << number; // 5 sigma
  double sum = 0, squares = 0;
  for (int i = 0; i < 40000; ++i) {
    const double value = math::gauss_value(3, 2, a);
    sum += value;
    squares += (value - 3) * (value - 3);
  }
  EXPECT_NEAR(sum / 40000, 3, 0.05);
  EXPECT_NEAR(squares / 40000, 4, 0.15);
}

TEST(chance, draws_follow_their_weights) {
  random_source chance(8);
  const std::vector<double> cumulative{0, 1, 1, 4, 4}; // weights 1, 0, 3, 0
  std::map<std::int32_t, int> counts;
  for (int i = 0; i < 40000; ++i)
    ++counts[math::random_value_number(cumulative, 4, chance)];
  EXPECT_EQ(counts.size(), 2u);
  EXPECT_NEAR(counts[1], 10000, 450);
  std::vector<bool> marks;
  number_list drawn;
  for (int round = 0; round < 300; ++round) {
    const std::int32_t n = chance.number_up_to(30), k = chance.number_up_to(35) - 1;
    std::vector<double> weights(static_cast<std::size_t>(n) + 1);
    std::int32_t n_positive = 0;
    for (std::int32_t i = 1; i <= n; ++i)
      n_positive += (weights[i] = std::max(0, chance.number_up_to(9) - 4)) > 0;
    math::selection_realization(n, weights, marks, k, drawn, chance);
    ASSERT_EQ(drawn.count(), std::min(k, n));
    const std::set<std::int32_t> distinct(drawn.members().begin(), drawn.members().end());
    ASSERT_EQ(distinct.size(), static_cast<std::size_t>(drawn.count()));
    std::int32_t n_weighted = 0;
    for (const std::int32_t e : drawn.members()) {
      ASSERT_TRUE(marks[e]);
      n_weighted += weights[e] > 0;
    }
    ASSERT_EQ(n_weighted, std::min(drawn.count(), n_positive));
    ASSERT_TRUE(k < n || drawn == number_list::range(1, n));
  }
  int first_is_heavy = 0;
  for (int i = 0; i < 20000; ++i) {
    math::selection_realization(3, {0, 1, 1, 2}, marks, 2, drawn, chance);
    first_is_heavy += drawn(1) == 3;
  }
  EXPECT_NEAR(first_is_heavy, 10000, 400);
}

TEST(chance, orders_and_subsets_are_complete) {
  random_source chance(9);
  std::map<std::string, int> orders;
  for (int i = 0; i < 24000; ++i) {
    std::string text;
    const number_list order = math::random_ordering(4, chance);
    for (const std::int32_t k : order.members())
      text += static_cast<char>('0' + k);
    ++orders[text];
  }
  EXPECT_EQ(orders.size(), 24u);
  for (const auto &[text, count] : orders)
    EXPECT_NEAR(count, 1000, 170) << text;
  number_list subset{1, 2, 3};
  std::vector<bool> flags{false, true, true, true, false, false};
  std::set<std::vector<std::int32_t>> seen;
  do {
    number_list selected;
    math::make_list_of_selected(flags, selected);
    EXPECT_EQ(selected, subset);
    const std::vector<std::int32_t> members(subset.members().begin(), subset.members().end());
    EXPECT_TRUE(seen.empty() || *seen.rbegin() < members);
    seen.insert(members);
    if (!math::next_select_k_f_from_n(flags, 3, 5))
      break;
  } while (math::selected_combination_next(subset, 5));
  EXPECT_EQ(seen.size(), 10u);
  EXPECT_FALSE(math::selected_combination_next(subset, 5));
  number_list list{7, 8, 9};
  math::compress_list(list, {false, true, false, true});
  EXPECT_EQ(list, (number_list{8}));
}

} // namespace
} // namespace orb
