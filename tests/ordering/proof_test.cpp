// Proven paths against brute force, and bounds that never pass the shortest path.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

#include "frame/random_source.h"
#include "ordering/tour_proof.h"

namespace {

using namespace orb;

using distances = square_array<std::int32_t>;

// 0: any numbers; 1: few links; 2: clones on an axis; 3: many equal numbers.
distances random_distances(std::int32_t n, int kind, random_source &random) {
  distances d(n);
  for (std::int32_t i = 1; i <= n; ++i)
    for (std::int32_t j = i + 1; j <= n; ++j) {
      const std::int32_t apart = std::abs(i * 7 % n - j * 7 % n);
      std::int32_t value = random.number_up_to(1000);
      if (kind == 1)
        value = random.uniform() < 0.3 ? 900 + random.number_up_to(80) : 10000;
      else if (kind == 2)
        value = apart <= 4 ? 900 + 20 * apart + random.number_up_to(20) : 10000;
      else if (kind == 3)
        value = random.number_up_to(3);
      d(i, j) = d(j, i) = value;
    }
  return d;
}

std::int64_t shortest_by_trying_all(const distances &d, std::int32_t n, std::int32_t first, std::int32_t last) {
  path_order order(static_cast<std::size_t>(n));
  std::iota(order.begin(), order.end(), 1);
  std::int64_t best = INT64_MAX;
  do
    if ((first == 0 || order.front() == first) && (last == 0 || order.back() == last))
      best = std::min(best, cost_of_path(d, order));
  while (std::next_permutation(order.begin(), order.end()));
  return best;
}

bool is_order_of_all(path_order order, std::int32_t n) {
  std::sort(order.begin(), order.end());
  path_order all(static_cast<std::size_t>(n));
  std::iota(all.begin(), all.end(), 1);
  return order == all;
}

TEST(shortest_path, subsets_find_what_trying_all_finds) {
  random_source random(3);
  for (int k = 0; k < 80; ++k) {
    const std::int32_t n = 3 + k % 6;
    const distances d = random_distances(n, k % 4, random);
    const std::int32_t first = k % 3 == 0 ? 1 : 0, last = k % 3 == 0 ? n : 0;
    path_order order;
    EXPECT_EQ(shortest_path_by_subsets(d, n, first, last, order), shortest_by_trying_all(d, n, first, last));
    EXPECT_TRUE(is_order_of_all(order, n));
    EXPECT_TRUE(first == 0 || (order.front() == first && order.back() == last));
  }
}

TEST(shortest_path, the_proof_of_larger_ones_gives_the_optimum) {
  random_source random(5);
  int n_proven = 0;
  for (int k = 0; k < 160; ++k) {
    const std::int32_t n = 5 + k % 10;
    const distances d = random_distances(n, k % 4, random);
    path_order order;
    const std::int64_t optimum = shortest_path_by_subsets(d, n, 0, 0, order);
    const proof_outcome outcome = prove_shortest_path(d, n, search_clock());
    EXPECT_TRUE(is_order_of_all(outcome.order, n));
    EXPECT_EQ(outcome.cost, cost_of_path(d, outcome.order));
    EXPECT_LE(outcome.lower_bound, optimum);
    EXPECT_TRUE(!outcome.proven || outcome.cost == optimum) << "n " << n << " kind " << k % 4;
    n_proven += outcome.proven;
  }
  EXPECT_GT(n_proven, 150);
}

// The search has to find its way back from a bad path, not only to confirm a good one.
TEST(shortest_path, the_search_below_a_bad_path_ends_at_the_optimum) {
  random_source random(11);
  for (int k = 0; k < 40; ++k) {
    const std::int32_t n = 6 + k % 5;
    const distances d = random_distances(n, k % 4, random);
    path_order optimal, order(static_cast<std::size_t>(n));
    const std::int64_t optimum = shortest_path_by_subsets(d, n, 0, 0, optimal);
    std::iota(order.begin(), order.end(), 1);
    const path_bound bound = ascend_bound(d, n, cost_of_path(d, order), 30, search_clock());
    ASSERT_LE(bound.bound, static_cast<double>(optimum) * path_bound::scale);
    ASSERT_TRUE(search_below(d, n, bound, 1000000, search_clock(), order).complete);
    EXPECT_EQ(cost_of_path(d, order), optimum) << "n " << n << " kind " << k % 4;
  }
}

TEST(shortest_path, improvement_keeps_all_vertices_and_never_lengthens) {
  random_source random(17);
  for (int k = 0; k < 40; ++k) {
    const std::int32_t n = 3 + k;
    const distances d = random_distances(n, k % 4, random);
    path_order order(static_cast<std::size_t>(n));
    std::iota(order.begin(), order.end(), 1);
    const std::int64_t before = cost_of_path(d, order);
    const std::int64_t cost = improve_path(d, n, 50, search_clock(), order);
    EXPECT_TRUE(is_order_of_all(order, n));
    EXPECT_EQ(cost, cost_of_path(d, order));
    EXPECT_LE(cost, before);
    path_order fresh;
    improve_path(d, n, 50, search_clock(), fresh);
    EXPECT_TRUE(is_order_of_all(fresh, n));
  }
}

// How often a phase asks whether to stop follows from its work, so that none goes on for long unasked.
TEST(shortest_path, each_phase_asks_at_its_stride) {
  random_source random(5);
  const std::int32_t n = 60, n_iterations = 40, n_kicks = 1600;
  const distances d = random_distances(n, 0, random);
  path_order order(static_cast<std::size_t>(n));
  std::iota(order.begin(), order.end(), 1);
  std::int64_t n_asked = 0;
  const stop_question stop = [&] { return ++n_asked < 0; };
  const search_clock clock(-1, &stop);
  const path_bound bound = ascend_bound(d, n, 2 * cost_of_path(d, order), n_iterations, clock);
  EXPECT_GE(n_asked, n_iterations);
  n_asked = 0;
  improve_path(d, n, n_kicks, clock, order);
  EXPECT_GE(n_asked, n_kicks / 16);
  n_asked = 0;
  search_below(d, n, bound, 20000, clock, order);
  EXPECT_GE(n_asked, 1000) << "of the layers that it walks most hold thousands of states, and 256 are a stride";
}

} // namespace
