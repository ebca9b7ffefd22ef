// The scores against slow direct formulations, and the table of the least significant k against a search.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>

#include "frame/class_math1.h"
#include "frame/files.h"
#include "metrics/class_clone_dist_FPC.h"
#include "metrics/pair_score.h"
#include "support/library_generator.h"
#include "support/scripted_frame.h"

namespace orb {
namespace {

struct small_library {
  process_frame frame;
  class_DB_of_clones database;
  class_usable_values usable_values;
  explicit small_library(generated_library wanted = {.n_clones = 30, .bands_in_clone = 20}) {
    generate_library(frame, wanted, database, usable_values);
  }
};

// exp of the terms added up as they are, in extended precision.
long double probability_sum(std::int32_t k, std::int32_t upper, long double p) {
  const auto log_factorial = [](std::int32_t n) -> long double {
    if (n < 1)
      return 1.0L; // of the system's own ln n!, deliberately not 0
    const long double x = n;
    return x * std::log(x) - x + std::log(x * (1 + 4 * x * (1 + 2 * x))) / 6 + std::log(3.1415L) / 2;
  };
  long double sum = 0;
  for (std::int32_t m = k; m <= std::max(k, upper); ++m)
    sum += std::exp(log_factorial(upper) - log_factorial(m) - log_factorial(upper - m) + (m ? m * std::log(p) : 0) +
                    (upper - m ? (upper - m) * std::log(1 - p) : 0));
  return sum;
}

TEST(score, sulston_is_the_sum_of_the_binomial_tail) {
  small_library library;
  for (const std::int32_t N : {100, 2250, 10000}) {
    library.database.total_number_of_different_bands_FPC_set(N);
    for (const std::int32_t n1 : {1, 2, 7, 40, 133, 215})
      for (const std::int32_t n2 : {1, 5, 40, 90, 215})
        for (std::int32_t k = 0; k <= std::min(n1, n2); k += 1 + k / 5) {
          const long double p = 1 - std::pow(1 - 1.0L / N, std::max(n1, n2));
          const long double direct = -std::log10(probability_sum(k, std::min(n1, n2), p));
          const double score =
              class_clone_dist_FPC::minus_log10_p_value_from_FPC(k, n1, n2, 0, library.database, library.usable_values);
          ASSERT_NEAR(score, static_cast<double>(direct), 1e-9 * (1 + std::fabs(static_cast<double>(direct))))
              << k << " " << n1 << " " << n2;
          ASSERT_EQ(score, class_clone_dist_FPC::minus_log10_p_value_from_FPC(k, n2, n1, 0, library.database,
                                                                              library.usable_values));
        }
  }
}

TEST(score, soderlund_with_and_without_the_fast_path) {
  small_library library;
  library.database.total_number_of_different_bands_FPC_set(400);
  const std::int32_t U = 400;
  const long double t = 12, D = library.database.total_number_of_different_bands_get();
  for (const bool fast : {true, false})
    for (const std::int32_t n1 : {3, 60, 150})
      for (const std::int32_t n2 : {20, 100})
        for (std::int32_t k = 0; k <= 60; k += 6) {
          library.usable_values.for_FPC_fast_indicator_set(fast);
          const long double a = std::min(n1, n2) / D, b = std::max(n1, n2) / D;
          const long double p = (1 - std::pow(1 - a, t + 1)) * b * std::pow(1 - a, t) +
                                (1 - std::pow(1 - b, t + 1)) * a * std::pow(1 - b, t) - a * b;
          std::int32_t upper = U;
          const auto expected = static_cast<std::int32_t>(std::nearbyint(static_cast<double>(U * p * 4)));
          if (fast)
            upper = k > expected ? k : std::min(U, expected);
          const double direct = static_cast<double>(-std::log10(probability_sum(k, upper, p)));
          ASSERT_NEAR(
              class_clone_dist_FPC::minus_log10_p_value_from_FPC(k, n1, n2, 1, library.database, library.usable_values),
              direct, 1e-8 * (1 + std::fabs(direct)))
              << k << " " << n1 << " " << n2 << " " << fast;
        }
}

TEST(score, table_of_least_significant_k_equals_a_search_from_one) {
  small_library library;
  constexpr std::int32_t M = 45;
  for (const double cutoff : {0.5, 4.0, 15.0}) {
    class_clone_dist_FPC table;
    table.fill_sulston_significant_table(cutoff, M, library.database, library.usable_values);
    for (std::int32_t a = 1; a <= M; ++a)
      for (std::int32_t b = 1; b <= M; ++b) {
        std::int32_t k = 1;
        const std::int32_t least = std::min(a, b);
        while (k <= least && class_clone_dist_FPC::minus_log10_p_value_from_FPC(k, a, b, 0, library.database,
                                                                                library.usable_values) < cutoff)
          ++k;
        ASSERT_EQ(table.sulston_significant_table_get(a, b), k) << a << " " << b;
      }
  }
}

TEST(score, table_asks_for_its_size_and_writes_its_file) {
  small_library library;
  // answer, size of the table
  const std::pair<const char *, std::int32_t> cases[] = {{"20", 20}, {"4", 215}, {"many", 215}, {"5", 5}};
  for (const auto &[reply, size] : cases) {
    scripted_frame asked;
    asked.answer("Input max number of bands in clone:", reply);
    class_clone_dist_FPC table;
    table.create_sulston_significant_table(asked.frame, 15, library.database, library.usable_values);
    EXPECT_EQ(table.table_size_get(), size) << reply;
  }
  scripted_frame asked;
  asked.answer_always("Input max", "20");
  class_clone_dist_FPC table;
  table.create_sulston_significant_table(asked.frame, 15, library.database, library.usable_values);
  const auto entry = [&](std::int32_t a, std::int32_t b) {
    return std::to_string(table.sulston_significant_table_get(a, b));
  };
  EXPECT_EQ(asked.bytes("metric_table.txt"),
            "10\t10\t" + entry(10, 10) + "\r\n10\t20\t" + entry(10, 20) + "\r\n20\t20\t" + entry(20, 20) + "\r\n");
  EXPECT_EQ(asked.record.panels.front(), "2: Preprocessing...");
}

TEST(score, edges) {
  small_library library;
  const auto &database = library.database;
  const class_clone_dist_table none;
  const auto score = [&](pair_counts counts, std::int16_t metric, const class_clone_dist_FPC *table = nullptr) {
    return score_of_counts(counts, 2, metric, database, library.usable_values, none, table);
  };
  // k = 0 scores just above 0: the ends of the sum carry the -1 of ln C(n, 0)
  const double at_zero = score({10, 20, 0, 0, 0, 0}, 4);
  EXPECT_GT(at_zero, 0);
  EXPECT_LT(at_zero, 0.44);
  EXPECT_EQ(score({0, 20, 0, 0, 0, 0}, 4), 0);
  EXPECT_EQ(score({0, 20, 0, 0, 0, 0}, 0), 0);
  EXPECT_DOUBLE_EQ(score({10, 20, 6, 3, 0, 0}, 0), 1000 * 36 / 200.0);
  EXPECT_DOUBLE_EQ(score({10, 20, 6, 3, 0, 0}, 3), 1000 * 9 / 200.0);
  EXPECT_DOUBLE_EQ(score({10, 20, 6, 3, 0, 0}, 10), 1000 * 36 / 200.0 + 200);
  EXPECT_DOUBLE_EQ(score({10, 20, 6, 3, 0, 0}, 6), 200);
  for (const int zero : {1, 2, 7, 9, 11, 12})
    EXPECT_EQ(score({10, 20, 6, 3, 0, 0}, static_cast<std::int16_t>(zero)), 0);
  class_clone_dist_FPC table;
  table.fill_sulston_significant_table(5, 40, database, library.usable_values);
  const auto least = table.sulston_significant_table_get(40, 40);
  EXPECT_EQ(score({40, 40, least - 1.0, 0, 0, 0}, 4, &table), 0);
  EXPECT_EQ(score({40, 40, least + 0.0, 0, 0, 0}, 4, &table), score({40, 40, least + 0.0, 0, 0, 0}, 4));
  EXPECT_GT(score({41, 40, least - 1.0, 0, 0, 0}, 4, &table), 0); // no entry for 41
  const double M = database.mean_log_band_frequency_get();
  EXPECT_EQ(score({9, 9, 9, 6.5 * M, 40.2 * M, 30.9 * M}, 13),
            class_clone_dist_FPC::minus_log10_p_value_from_FPC(6, 40, 30, 0, database, library.usable_values));
}

} // namespace
} // namespace orb
