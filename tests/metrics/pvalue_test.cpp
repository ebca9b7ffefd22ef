// Simulated p-values: drawn pairs against exact probabilities, the fit range and its bounds by hand, lookups against a
// slow formulation, the files to the letter and back, and damaged ones.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <map>
#include <numbers>

#include "frame/class_math1.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_parab.h"
#include "metrics/class_clone_dist_simul.h"
#include "metrics/form_simul_1.h"
#include "support/library_generator.h"
#include "support/scripted_frame.h"

namespace orb {
namespace {

struct pvalue_fixture : scripted_frame {
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};

  explicit pvalue_fixture(generated_library wanted = {.n_clones = 60, .bands_in_clone = 20}) {
    generate_library(frame, wanted, database, usable_values);
    database.total_number_of_different_bands_FPC_set(300);
    settings.threads = 2;
    record = {};
  }
  simulation_services services(int threads = 2, std::uint64_t seed = 1) {
    return {frame, usable_values, seed, threads};
  }
  // The message and the panels, without those of the ends of processes.
  std::string only_message() const { return record.messages.size() == 1 ? record.messages[0] : "not one message"; }
};

// P(at least k common) of n1 and n2 bands drawn from B without repetition.
double hypergeometric_tail(int B, int n1, int n2, int k) {
  const auto ln_C = [](int n, int m) { return std::lgamma(n + 1.) - std::lgamma(m + 1.) - std::lgamma(n - m + 1.); };
  double sum = 0;
  for (int i = std::max(k, n1 + n2 - B); i <= std::min(n1, n2); ++i)
    sum += std::exp(ln_C(n1, i) + ln_C(B - n1, n2 - i) - ln_C(B, n2));
  return sum;
}

// P(exactly these bands in this order) summed over all orders that give the common bands: by walking all draws.
void walk_draws(const std::vector<double> &weight, std::vector<int> &taken_1, std::vector<int> &taken_2, int n1, int n2,
                double p, const std::function<void(int common, double p)> &found) {
  std::vector<int> &taken = n1 > 0 ? taken_1 : taken_2;
  if (n1 == 0 && n2 == 0) {
    int common = 0;
    for (std::size_t b = 0; b < weight.size(); ++b)
      common += taken_1[b] && taken_2[b];
    return found(common, p);
  }
  double left = 0;
  for (std::size_t b = 0; b < weight.size(); ++b)
    left += taken[b] ? 0 : weight[b];
  for (std::size_t b = 0; b < weight.size(); ++b) {
    if (taken[b] || weight[b] == 0)
      continue;
    taken[b] = 1;
    walk_draws(weight, taken_1, taken_2, n1 > 0 ? n1 - 1 : 0, n1 > 0 ? n2 : n2 - 1, p * weight[b] / left, found);
    taken[b] = 0;
  }
}

TEST(pvalue, equal_bands_give_the_hypergeometric_distribution_for_any_number_of_threads) {
  pvalue_fixture f;
  const struct {
    int B, n1, n2;
  } cases[] = {{300, 40, 25}, {300, 25, 40}, {30, 30, 12}, {12, 9, 8}, {5, 1, 1}, {2250, 100, 100}};
  constexpr int n_runs = 40000;
  for (const auto &c : cases) {
    f.database.total_number_of_different_bands_FPC_set(c.B);
    std::vector<double> minus_log_P, mean, again;
    std::vector<std::uint8_t> infinite;
    class_clone_dist_simul one(f.services(1)), three(f.services(3));
    ASSERT_TRUE(
        one.estimation_of_log_probability_new(n_runs, c.n1, c.n2, minus_log_P, infinite, mean, f.database, true));
    ASSERT_TRUE(three.estimation_of_log_probability_new(n_runs, c.n1, c.n2, again, infinite, mean, f.database, true));
    EXPECT_EQ(minus_log_P, again);
    ASSERT_EQ(minus_log_P.size(), static_cast<std::size_t>(std::min(c.n1, c.n2)) + 1);
    for (int k = 0; k <= std::min(c.n1, c.n2); ++k) {
      const auto at = static_cast<std::size_t>(k);
      const double p = hypergeometric_tail(c.B, c.n1, c.n2, k), found = infinite[at] ? 0 : std::exp(-minus_log_P[at]);
      EXPECT_NEAR(found, p, 5 * std::sqrt(p * std::max(1 - p, 0.0) / n_runs) + 5.0 / n_runs) << c.B << " k " << k;
      EXPECT_TRUE(mean[at] == 0 || mean[at] == k);
    }
  }
  std::vector<double> other, mean, first;
  std::vector<std::uint8_t> infinite;
  class_clone_dist_simul(f.services(2, 1))
      .estimation_of_log_probability_new(500, 100, 100, first, infinite, mean, f.database, true);
  class_clone_dist_simul(f.services(2, 2))
      .estimation_of_log_probability_new(500, 100, 100, other, infinite, mean, f.database, true);
  EXPECT_NE(first, other);
}

// Few bands with frequencies set by hand: all orders of drawing can be walked.
TEST(pvalue, weighted_draws_give_the_probabilities_of_all_orders) {
  pvalue_fixture f;
  f.database = class_DB_of_clones();
  f.database.total_number_of_different_bands_FPC_set(6);
  f.database.frecuency_of_band_in_clones_inicializate();
  const std::vector<double> frequency = {0.9, 0.02, 0, 0.4, 0.3, 1.0};
  for (std::size_t b = 0; b < frequency.size(); ++b)
    f.database.frecuency_of_band_in_clones_set(static_cast<std::int32_t>(b) + 1, frequency[b]);
  class_clone_simul simul;
  for (const int kind : {0, 1, 2}) {
    simul.create_distribution_function(f.frame, f.database, kind);
    std::vector<double> weight;
    for (const double p : frequency)
      weight.push_back(kind == 0   ? 1
                       : kind == 1 ? p
                       : p >= 1    ? 1 - std::pow(0.0001, 1 / 160.)
                                   : 1 - std::pow(1 - p, 1 / 160.));
    EXPECT_EQ(simul.n_drawable_get(false), kind == 0 ? 6 : 5);
    std::map<int, double> expected, found;
    std::vector<int> none_1(6, 0), none_2(6, 0);
    walk_draws(weight, none_1, none_2, 3, 2, 1, [&](int k, double p) { expected[k] += p; });
    random_source chance(4);
    class_clone_simul::band_states states;
    constexpr int n_runs = 40000;
    double sum_of_weights = 0, expected_weight = 0;
    for (int run = 0; run < n_runs; ++run) {
      std::int32_t k = 0;
      double x_fr = 0;
      simul.create_single_pair_of_clones_and_characterize_overlap_fast(3, 2, 6, false, k, x_fr, states, chance);
      found[k] += 1.0 / n_runs;
      sum_of_weights += x_fr / n_runs;
    }
    for (const auto &[k, p] : expected)
      EXPECT_NEAR(found[k], p, 5 * std::sqrt(p / n_runs)) << "kind " << kind << " k " << k;
    // the expected weight of the common bands, band by band
    for (std::size_t b = 0; b < 6; ++b) {
      std::vector<int> mine(6, 0), other(6, 0);
      walk_draws(weight, mine, other, 3, 2, 1, [&](int, double p) {
        expected_weight += mine[b] && other[b] && frequency[b] > 0 ? -p * std::log(frequency[b]) : 0;
      });
    }
    EXPECT_NEAR(sum_of_weights, expected_weight, 0.05);
    random_source a(9), b(9); // the guide finds what a search in the sums finds
    for (int i = 0; i < 5000; ++i)
      ASSERT_EQ(simul.random_band(false, a), class_math1::random_value_number(simul.band_cumulative_get(), 6, b));
  }
}

TEST(pvalue, clones_as_wholes_have_their_size_and_the_frequencies) {
  pvalue_fixture f({.n_clones = 200, .bands_in_clone = 40, .skewed = true});
  class_clone_simul simul;
  simul.create_distribution_function(f.frame, f.database, 1);
  EXPECT_EQ(simul.n_bands_get(), 300);
  EXPECT_NEAR(simul.band_cumulative_get().back(), 1, 1e-12);
  random_source chance(2);
  double n_bands = 0, expected = 0;
  for (std::int32_t b = 1; b <= 300; ++b)
    expected += std::min(std::exp(-simul.band_log_weight_get(b)), 1.0) * (simul.band_log_weight_get(b) != 0);
  number_list list;
  for (int i = 0; i < 400; ++i) {
    simul.create_random_clone(list, chance);
    n_bands += list.count() / 400.0;
  }
  EXPECT_NEAR(n_bands, expected, 2);
  for (const std::int32_t n : {0, 1, 20, 60, 250, 300, 400}) {
    const std::int32_t bounded = std::min(n, 300);
    for (const bool by_frequency : {true, false}) {
      if (by_frequency)
        simul.create_clone_of_fixed_length(n, list, chance);
      else
        class_clone_simul::create_iid_clone_of_fixed_length(n, 300, list, chance);
      EXPECT_EQ(list.count(), bounded);
      const auto members = static_cast<const number_list &>(list).members();
      EXPECT_TRUE(std::is_sorted(members.begin(), members.end()));
      EXPECT_EQ(std::adjacent_find(members.begin(), members.end()), members.end());
    }
    for (const bool equal : {true, false}) {
      class_clone_serv::band_presence presence;
      simul.create_clone_of_fixed_length_new(n, equal, presence, chance);
      EXPECT_EQ(std::count(presence.begin(), presence.end(), 1), std::min(n, simul.n_drawable_get(equal)));
    }
  }
}

// -ln P of a tail of whole counts of pairs.
class_clone_dist_parab::simulated_counts tail(std::int32_t n_runs, const std::vector<int> &pairs) {
  class_clone_dist_parab::simulated_counts counts;
  counts.n_runs = n_runs;
  counts.n1 = counts.n2 = 30;
  counts.n_shown = static_cast<std::int32_t>(pairs.size()) - 1;
  for (const int n : pairs) {
    counts.minus_log_P.push_back(n > 0 && n < n_runs ? -std::log(static_cast<double>(n) / n_runs) : 0);
    counts.infinite.push_back(n == 0);
    counts.mean_iid.push_back(0);
  }
  return counts;
}

TEST(pvalue, bounds_of_few_and_of_many_pairs) {
  pvalue_fixture f;
  class_clone_dist_parab curves;
  curves.prepare_curves(tail(1000, {1000, 100, 10, 9, 8, 4, 3, 1, 0}), f.database, f.usable_values);
  const double expected[][2] = {{0, 0},
                                {0.1 + 0.03, 0.1 - 0.03},
                                {0.01 + 3 * std::sqrt(1e-5), 0.01 - 3 * std::sqrt(1e-5)},
                                {0.018, 1 / 20000.0}, // nothing is left of nine pairs
                                {0.008 + 3 * std::sqrt(8e-6), 1 / 20000.0},
                                {0.010, 1 / 20000.0},
                                {0.009, 1 / 20000.0},
                                {0.007, 1 / 20000.0}};
  for (std::int32_t b = 1; b <= 7; ++b) {
    EXPECT_NEAR(curves.minus_probabilities_min_get(b), -std::log(expected[b][0]), 1e-9) << b;
    EXPECT_NEAR(curves.minus_probabilities_max_get(b), -std::log(expected[b][1]), 1e-9) << b;
  }
  EXPECT_TRUE(curves.infinite_get(8));
  EXPECT_NEAR(curves.minus_probabilities_min_get(8), -std::log(0.004), 1e-9);
  EXPECT_EQ(curves.minus_probabilities_max_get(8), std::numeric_limits<double>::infinity());
}

// Tails that halve from count to count, behind some counts of P above 0.1.
TEST(pvalue, range_of_the_fit) {
  pvalue_fixture f;
  const struct {
    int first_below, n_in_range, start, end;
  } cases[] = {{1, 2, 0, 2},  {5, 1, 3, 5},   {5, 2, 4, 6},   {5, 3, 5, 7},   {5, 5, 5, 9}, {5, 6, 5, 10},
               {5, 7, 6, 10}, {5, 13, 9, 13}, {5, 14, 9, 14}, {5, 20, 9, 20}, {1, 1, 0, 0}, {9, 0, 6, 8}};
  for (const auto &c : cases) {
    std::vector<int> pairs(static_cast<std::size_t>(c.first_below), 900000000);
    pairs[0] = 1000000000;
    for (int i = 0, n = 100000000; i < c.n_in_range; ++i, n = n * 5 / 12)
      pairs.push_back(i + 1 == c.n_in_range ? 3 : n); // the last one is exactly at the limit of three pairs
    pairs.push_back(2);
    pairs.push_back(0);
    class_clone_dist_parab curves;
    f.record = {};
    curves.prepare_curves(tail(1000000000, pairs), f.database, f.usable_values);
    const bool chosen = curves.choose_fit_range(f.frame, 1000000000);
    EXPECT_EQ(chosen, c.end > 0);
    EXPECT_EQ(curves.b_start_get(), c.start) << c.first_below << " " << c.n_in_range;
    EXPECT_EQ(curves.b_end_get(), c.end) << c.first_below << " " << c.n_in_range;
    EXPECT_TRUE(chosen || f.only_message() == "Not enought points for parabola");
  }
}

TEST(pvalue, index_and_number_of_situations) {
  class_clone_dist_table table;
  table.table_parameters_set(20, 5, 3, 1);
  EXPECT_EQ(table.n_situations_get(), 20);
  std::int32_t index = 0;
  for (std::int32_t a = 20; a <= 35; a += 5)
    for (std::int32_t b = 20; b <= a; b += 5) {
      EXPECT_EQ(table.index_of_situation(a, b), ++index);
      EXPECT_EQ(table.index_of_situation(b, a), index);
    }
  for (const auto &[a, b] : {std::pair{21, 20}, {25, 15}, {40, 20}, {40, 40}, {-20, 20}, {26, 24}})
    EXPECT_EQ(table.index_of_situation(a, b), 0) << a << " " << b;
  double value = 7;
  table.parabola_for_partial_case(30, 21, 20, 0, value);
  EXPECT_EQ(value, 0);
  table.no_tables();
  EXPECT_EQ(table.index_of_situation(21, 3), 1);
  EXPECT_FALSE(table.is_loaded());
  EXPECT_EQ(class_clone_dist_table::wrong_parameters(1, 1, 179), "");
  for (const auto &[least, step, steps] : {std::tuple{0, 1, 1}, {1, 0, 1}, {1, 1, 180}, {1, 1, -1}, {1, 30000, 2}})
    EXPECT_NE(class_clone_dist_table::wrong_parameters(least, step, steps), "");
}

// A table by hand, of curves that differ from cell to cell.
void fill(class_clone_dist_table &table, int mode) {
  table.table_parameters_set(20, 10, 3, 1);
  for (std::int32_t a = 20; a <= 50; a += 10)
    for (std::int32_t b = 20; b <= a; b += 10) {
      table.table_of_abc_parameters_for_one_situation_set(a, b, 0, mode, -1 - a / 50.0);
      table.table_of_abc_parameters_for_one_situation_set(b, a, 1, mode, 0.3 - b / 500.0);
      table.table_of_abc_parameters_for_one_situation_set(a, b, 2, mode, 0.01 + a * b / 1e6);
    }
}

TEST(pvalue, values_on_the_net_and_at_its_nodes) {
  class_clone_dist_table table;
  fill(table, 1);
  const auto node = [&](double x, int a, int b) { // the curve from the count on at which it reaches 2
    if (a < b)
      std::swap(a, b);
    const double a0 = -1 - a / 50.0, a1 = 0.3 - b / 500.0, a2 = 0.01 + a * b / 1e6;
    const double y = a0 + a1 * x + a2 * x * x;
    return y > 2 && x > 0 ? y : 0;
  };
  double value = 0;
  for (double x = 0; x < 60; x += 3.7)
    for (int a = 20; a <= 50; ++a)
      for (int b = 20; b <= a; ++b) {
        // of the symmetric function on the whole square of four nodes
        const int i = std::min((a - 20) / 10, 2) * 10 + 20, j = std::min((b - 20) / 10, 2) * 10 + 20;
        const double u = (a - i) / 10.0, v = (b - j) / 10.0;
        const double expected = (1 - u) * ((1 - v) * node(x, i, j) + v * node(x, i, j + 10)) +
                                u * ((1 - v) * node(x, i + 10, j) + v * node(x, i + 10, j + 10));
        table.parabola_on_net(x, a, b, 1, value);
        ASSERT_NEAR(value, expected, 1e-9) << x << " " << a << " " << b;
        EXPECT_EQ(value, table.minus_log10_p_value_get(x, b, a, 1));
        table.parabola_on_net(x, a, b, 0, value);
        EXPECT_EQ(value, 0);
      }
  for (const auto &[a, b] : {std::pair{51, 30}, {30, 19}, {0, 0}, {-5, 700}}) {
    table.parabola_on_net(40, a, b, 1, value);
    EXPECT_EQ(value, 0);
  }
  table.table_of_abc_parameters_for_one_situation_get(30, 20, 0, 1, value);
  EXPECT_EQ(value, -1.6);
  table.table_of_abc_parameters_for_one_situation_get(30, 20, 3, 1, value);
  EXPECT_EQ(value, 0);
}

// A falling branch above 2 must not score clones that share nothing.
TEST(pvalue, where_the_curve_begins_to_rule) {
  const struct {
    double a0, a1, a2;
    std::int32_t b_start;
    double threshold;
  } cases[] = {{0, 0.5, 0, 0, 4},
               {-2, 0, 0.04, 0, 10},
               {27.5, -4, 0.16, 0, 12.5},
               {5, 0.5, 0.1, 0, -2.5},
               {3, 0, 0, 0, p_value_situation::infinite_threshold},
               {0, 0.5, 0, 7, 7}};
  for (const auto &c : cases) {
    p_value_situation at;
    at.a0 = c.a0;
    at.a1 = c.a1;
    at.a2 = c.a2;
    at.b_start = c.b_start;
    at.find_threshold();
    EXPECT_DOUBLE_EQ(at.threshold, c.threshold);
  }
  class_clone_dist_table table;
  table.table_parameters_set(10, 1, 0, 1);
  table.table_of_abc_parameters_for_one_situation_set(10, 10, 1, 0, 0.5); // reaches 2 at exactly 4
  double at_node = 0, on_net = 0;
  table.parabola_for_partial_case(4, 10, 10, 0, at_node);
  table.parabola_on_net(4, 10, 10, 0, on_net);
  EXPECT_EQ(at_node, 2);
  EXPECT_EQ(on_net, 0) << "the threshold itself belongs to the simulated counts there";
}

TEST(pvalue, a_table_is_made_written_and_read) {
  pvalue_fixture f;
  f.table.table_parameters_set(10, 15, 1, 1);
  ASSERT_TRUE(f.table.create_tables_of_both_modes(3000, f.database, f.services()));
  EXPECT_EQ(f.bytes("parameters_table.txt"),
            "Size of tables for p-value (in Simulations) of overlap of two clones\r\nMin number of bands in "
            "clone:\r\n10\r\nSteap of table:\r\n15\r\nNumber of steaps:\r\n1\r\n");
  EXPECT_EQ(f.bytes("parameters_n_fr.txt"), "bands\t10\t25\r\n10\t3000\t3000\r\n25\t3000\t3000\r\n");
  std::vector<std::string> shown;
  for (const std::string &panel : f.record.panels)
    if (panel.find(" from ") != std::string::npos || panel.find("Simul(") != std::string::npos)
      shown.push_back(panel);
  EXPECT_EQ(shown, (std::vector<std::string>{"2: 1 from 6", "3: Simul(10,10)", "2: 2 from 6", "3: Simul(25,10)",
                                             "2: 3 from 6", "3: Simul(25,25)", "2: 4 from 6", "3: Simul(10,10)",
                                             "2: 5 from 6", "3: Simul(25,10)", "2: 6 from 6", "3: Simul(25,25)"}));

  // the fit is the one over the simulated values, the values are those of one situation by itself
  const p_value_situation &at = *f.table.situation(25, 25, 0);
  std::vector<double> x, y;
  for (std::int32_t b = at.b_start; b <= at.b_end; ++b) {
    x.push_back(b);
    y.push_back(at.minus_log_P[static_cast<std::size_t>(b)] / std::numbers::ln10);
  }
  ASSERT_GE(x.size(), 3u);
  double a2 = 0, a1 = 0, a0 = 0;
  std::string model;
  class_math1::find_optimal_parabola(x, y, 5, a2, a1, a0, model);
  EXPECT_EQ(std::tuple(at.a2, at.a1, at.a0), std::tuple(a2, a1, a0));
  EXPECT_EQ(at.n_non_infinite, static_cast<std::int32_t>(at.minus_log_P.size()));
  class_clone_dist_table alone;
  p_value_situation again;
  ASSERT_TRUE(alone.estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
      25, 25, true, 3000, true, f.database, f.services(1), again));
  EXPECT_EQ(again.minus_log_P, at.minus_log_P);
  EXPECT_EQ(f.bytes("func_300b_25_25.txt"), f.bytes("iid/func_300b_25_25.txt"));
  EXPECT_NE(f.bytes("func_300b_25_25.txt"), f.bytes("fr/func_300b_25_25.txt"));

  const std::string f_file = f.bytes("parameters_f_iid.txt");
  const auto text = [](double value) { return number_text(value, 4); };
  std::string head = "3\t25\t25", values = "\r\n-Log10";
  for (std::int32_t b = 0; b < at.n_non_infinite; ++b) {
    head += "\t" + std::to_string(b);
    values += "\t" + text(at.minus_log_P[static_cast<std::size_t>(b)] / std::numbers::ln10);
  }
  const std::string facts = "\r\nn_runs=3000, n_non_infinite=" + std::to_string(at.n_non_infinite) +
                            ", b_start=" + std::to_string(at.b_start) + ", b_end=" + std::to_string(at.b_end) +
                            ", a2=" + text(at.a2) + ", a1=" + text(at.a1) + ", a0=" + text(at.a0);
  EXPECT_NE(f_file.find(head + facts + values + "\r\nmin\t"), std::string::npos) << f_file;

  // read: the fits alone, and written again to the byte
  class_clone_dist_table read;
  ASSERT_TRUE(read.run_read_tables(f.frame, f.folder));
  EXPECT_TRUE(read.is_loaded(0) && read.is_loaded(1));
  EXPECT_EQ(read.situation(25, 25, 0)->b_start, 0);
  EXPECT_NEAR(read.situation(25, 10, 1)->a1, f.table.situation(25, 10, 1)->a1, 5e-7);
  double low = 1, high = 0, back = 0;
  ASSERT_TRUE(read.value_of_count(1, 25, 25, 0, low));
  EXPECT_EQ(low, 0) << "below the threshold nothing is known";
  ASSERT_TRUE(read.value_of_count(20, 18, 22, 0, high));
  EXPECT_GT(high, 5);
  ASSERT_TRUE(read.parabola_for_partial_case_arg(high, 18, 22, 0, back));
  EXPECT_NEAR(back, 20, 1e-6);
  std::map<std::string, std::string> before;
  for (const char *name : {"a0_iid", "a1_iid", "a2_iid", "a0_fr", "a1_fr", "a2_fr"})
    before[name] = f.bytes("parameters_" + std::string(name) + ".txt");
  read.write_tables(f.frame, true);
  read.write_tables(f.frame, false);
  for (const auto &[name, bytes] : before)
    EXPECT_EQ(f.bytes("parameters_" + name + ".txt"), bytes);
}

// Curves of the uniform mode against the exact probability, where it is far too small to be simulated. The fit goes
// through four decades and is asked at three times as many: wide bounds are honest.
TEST(pvalue, the_curve_extends_the_exact_probabilities) {
  pvalue_fixture f;
  f.database.total_number_of_different_bands_FPC_set(2250);
  p_value_situation made;
  ASSERT_TRUE(f.table.estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
      100, 90, false, 200000, true, f.database, f.services(), made));
  for (int k = made.b_start; k <= 24; ++k) {
    const double exact = -std::log10(hypergeometric_tail(2250, 100, 90, k));
    EXPECT_NEAR(made.parabola(k), exact, k <= made.b_end ? 0.25 : 0.35 * exact) << k;
  }
  form_simul_1 form; // the closed formula assumes bands drawn with repetition: near it, not equal
  form.put_GUI_m_n_k(100, 90, 12);
  ASSERT_TRUE(form.calculate(f.context));
  double closed = 0;
  ASSERT_TRUE(form.l_lg_P_val.starts_with("-Lod_10(P)=") && number_parse(form.l_lg_P_val.substr(11), closed));
  EXPECT_NEAR(closed, -std::log10(hypergeometric_tail(2250, 100, 90, 12)), 0.6);
}

TEST(pvalue, the_report_of_one_situation) {
  pvalue_fixture f;
  class_clone_dist_parab curves;
  auto counts = tail(1000, {1000, 90, 30, 9, 3, 0});
  counts.mean_iid = {0, 1, 2, 3, 4, 0};
  double a2 = 0, a1 = 0, a0 = 0;
  std::int32_t start = 0, end = 0;
  ASSERT_TRUE(curves.control_results_of_p_val_estimation_a2a1a0(f.frame, counts, a2, a1, a0, start, end, f.database,
                                                                f.usable_values));
  EXPECT_EQ(std::pair(start, end), std::pair(1, 4));
  result_file file(f.folder / "report.txt");
  curves.control_results_of_p_val_estimation_print(counts, file);
  file.commit();
  const std::string report = f.bytes("report.txt");
  EXPECT_TRUE(report.starts_with("b\t0\t1\t2\t3\t4\t5\r\n-Log10P\t0.0000\t1.0458\t1.5229\t2.0458\t2.5229\tInfinit\r\n"
                                 "d1\t\t1.0458\t0.4771\t0.5229\t0.4771\t\r\nd2\t\t\t-0.5686\t0.0458\t-0.0458\t\r\n"
                                 "d3\t\t\t\t0.6144\t-0.0915\t\r\nmin\t"))
      << report;
  EXPECT_NE(report.find("\t4.3010\tInfinit\r\nSulston\t"), std::string::npos) << report;
  const std::string line = number_text(a2, 5) + "*x^2+" + number_text(a1, 5) + "*x+" + number_text(a0, 5);
  EXPECT_NE(report.find("\r\n\r\n" + line + "\r\nn=4, index=5, b_min=1, b_max=4\r\nx\t0\t1\t2\t3\t4\t5\r\ny\t"),
            std::string::npos)
      << report;
  EXPECT_NE(report.find("\r\n\r\n\r\n" + std::string("0.")), std::string::npos)
      << "two empty lines, then that of a fit";
  EXPECT_TRUE(report.ends_with("\r\n\r\nComparison iid vs fr:\r\niidvsfr\t0.00\t1.00\t2.00\t3.00\t4.00\t0.00\r\n"));
}

TEST(pvalue, damaged_tables_are_refused_with_their_place_and_what_was_loaded_stays) {
  pvalue_fixture f;
  f.table.table_parameters_set(10, 15, 1, 1);
  ASSERT_TRUE(f.table.create_tables_of_both_modes(500, f.database, f.services()));
  const std::string sizes = f.bytes("parameters_table.txt"), a1 = f.bytes("parameters_a1_fr.txt");
  double before = 0, after = 0;
  f.table.parabola_on_net(9, 20, 20, 0, before);
  EXPECT_GT(before, 0);
  const auto with = [](std::string text, const std::string &what, const std::string &other) {
    return text.replace(text.find(what), what.size(), other);
  };
  const struct {
    std::string file, bytes, said;
  } cases[] = {
      {"table", "", "the file ends too early (file "},
      {"table", sizes.substr(0, 130), "the file ends too early"},
      {"table", with(sizes, "\r\n15\r\n", "\r\nmany\r\n"), "\"many\" is no whole number"},
      {"table", with(sizes, "\r\n1\r\n", "\r\n2000000000\r\n"), "The number of steps of a table is from 0 to 179"},
      {"table", with(sizes, "\r\n1\r\n", "\r\n99999999999999999999\r\n"), "is no whole number"},
      {"table", with(sizes, "\r\n1\r\n", "\r\n-1\r\n"), "from 0 to 179, not -1"},
      {"table", with(sizes, "\r\n1\r\n", "\r\n2\r\n"), "3 fields where the table has 4 (file "},
      {"table", with(sizes, "\r\n10\r\n", "\r\n11\r\n"), "the sizes of the columns"},
      {"a1_fr", "bands\t10\t25\r\n10\t1\t2\r\n", "the file ends too early"},
      {"a1_fr", "bands\t10\t25\r\n10\t1\t2\r\n25\t1\r\n", "2 fields where the table has 3 (file "},
      {"a1_fr", "bands\t10\t25\r\n10\t1\t2\r\n26\t1\t2\r\n", "a row of 25 bands was expected"},
      {"a1_fr", "bands\t10\t25\r\n10\t1\t2\r\n25\tx1\t2\r\n", "a field is no number"},
      {"a1_fr", "bands\t10\t25\r\n10\t1\t2\r\n25\t1E+300\t2\r\n", "1E+300 can't be the coefficient"},
      {"a1_fr", std::string("\0\1\2", 3), "1 fields where"},
  };
  for (const auto &c : cases) {
    f.record = {};
    const std::string name = "parameters_" + c.file + ".txt", good = f.bytes(name);
    f.write(name, c.bytes);
    EXPECT_FALSE(f.table.run_read_tables(f.frame, f.folder)) << c.said;
    EXPECT_NE(f.only_message().find(c.said), std::string::npos) << f.only_message();
    EXPECT_NE(f.only_message().find(".txt, line "), std::string::npos) << f.only_message();
    f.table.parabola_on_net(9, 20, 20, 0, after);
    EXPECT_EQ(after, before);
    const bool asked =
        c.said.starts_with("\"many") || c.said.starts_with("a field is"); // the tolerant reader says its words too
    EXPECT_EQ(f.record.questions.size(), asked ? 1u : 0u);
    EXPECT_TRUE(!asked || f.record.questions[0].find(" is not number?!\rZero will be used instead.") < 30u);
    f.write(name, good);
  }
  EXPECT_TRUE(f.frame.data_failed());
  // commas and other line ends are fine
  f.write("parameters_a1_fr.txt", "bands\t10\t25\n 10 \t0,5\tx\n25\t1\t2\n");
  EXPECT_TRUE(f.table.run_read_tables(f.frame, f.folder));
  EXPECT_EQ(f.table.situation(10, 10, 1)->a1, 0.5);
  std::filesystem::remove(f.folder / "parameters_a1_fr.txt");
  EXPECT_THROW(f.table.run_read_tables(f.frame, f.folder), file_error);
  std::filesystem::remove(f.folder / "parameters_a0_fr.txt");
  std::filesystem::remove(f.folder / "parameters_a2_fr.txt");
  EXPECT_TRUE(f.table.run_read_tables(f.frame, f.folder));
  EXPECT_TRUE(f.table.is_loaded(0));
  EXPECT_FALSE(f.table.is_loaded(1)) << "made in one mode";
}

TEST(pvalue, sizes_that_cannot_be_drawn_and_stops) {
  pvalue_fixture f;
  p_value_situation made;
  const auto estimate = [&](std::int32_t n1, std::int32_t n2, bool iid) {
    f.record = {};
    return f.table.estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
        n1, n2, true, 100, iid, f.database, f.services(), made);
  };
  EXPECT_TRUE(estimate(300, 300, true));
  EXPECT_FALSE(estimate(301, 20, true));
  EXPECT_EQ(f.only_message(), "Clones of 301 and 20 bands can't be drawn: from 1 to 300 of the 300 band positions are "
                              "possible.");
  EXPECT_FALSE(estimate(20, 0, true));
  EXPECT_TRUE(estimate(5, 3, true)); // 100 runs are too few for a curve of so small clones
  EXPECT_EQ(f.only_message(), "Not enought points for parabola");
  EXPECT_EQ(made.b_end, 0);
  EXPECT_NE(f.bytes("func_300b_5_3.txt").find("Not enought points for parabola"), std::string::npos);

  for (const int stop_at : {1, 4}) { // at once, and midway
    int yields = 0;
    front_end shown = null_front_end();
    shown.yield = [&] { return ++yields >= stop_at; };
    process_frame frame(shown);
    temporary_folder folder;
    frame.working_folder_set(folder.path());
    class_clone_dist_table table;
    table.table_parameters_set(100, 10, 2, 1);
    EXPECT_FALSE(table.create_tables_of_both_modes(2000000000, f.database, {frame, f.usable_values, 1, 2}));
    EXPECT_FALSE(table.is_loaded());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "parameters_table.txt"));
  }
}

TEST(pvalue, the_panel) {
  pvalue_fixture f;
  form_simul_1 form;
  EXPECT_EQ(form.t_n_estimations, "10000");
  form.put_GUI_m_n_k(25, 20, 21);
  EXPECT_FALSE(form.calculate(f.context));
  EXPECT_EQ(f.only_message(), "k takes a whole number from 0 to 20, not \"21\".");
  EXPECT_FALSE(form.minus_lg_p_value_of_K(f.context)) << "nothing is loaded";
  form.ch_iid = true;
  form.t_n_estimations = "2000";
  form.put_GUI_table_size(10, 15, 1);
  ASSERT_TRUE(form.create_table(f.context));
  EXPECT_TRUE(f.table.is_loaded(0) && !f.table.is_loaded(1));
  EXPECT_FALSE(std::filesystem::exists(f.folder / "parameters_a0_fr.txt"));
  form.t_k = "15";
  ASSERT_TRUE(form.minus_lg_p_value_of_K(f.context));
  form.t_k = "";
  ASSERT_TRUE(form.K_of_minus_lg_p_value(f.context));
  double k = 0;
  EXPECT_TRUE(number_parse(form.t_k, k));
  EXPECT_NEAR(k, 15, 1e-6);
  form.put_GUI_table_size(0, 0, 0);
  f.table.show_table_parameters_in_form_simul_1(form);
  EXPECT_EQ(form.t_min_bands + " " + form.t_shag + " " + form.t_n_shag, "10 15 1");

  EXPECT_EQ(class_clone_simul::known_problem_n_get(), 5);
  class_DB_of_clones empty;
  const metric_context context{f.frame, f.settings, empty, f.usable_values, f.table};
  f.book.add({"Start to simulate?", "no", false});
  EXPECT_FALSE(form.known_problem_run(context, 1));
  f.book.add({"Reduce", "yes", false});
  f.book.add({"Start to simulate?", "yes", true});
  form.ch_iid = false;
  for (const auto &[index, L, n] : {std::tuple{1, 3289.0, 235}, {2, 19500.0, 1800}, {4, 60000.0, 2250}}) {
    ASSERT_TRUE(form.known_problem_run(context, index));
    EXPECT_EQ(empty.max_band_length_get(), L);
    EXPECT_EQ(empty.total_number_of_different_bands_FPC_get(), n);
    EXPECT_EQ(empty.frecuency_of_band_in_clones_get(1), 0.001);
    EXPECT_EQ(f.table.situation(100, 100, 1)->n_runs, 2050);
  }
  EXPECT_EQ(form.t_further_1, "6");
}

} // namespace
} // namespace orb
