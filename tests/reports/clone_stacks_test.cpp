// Stacks of clones: who is in one, and what is told.
#include <gtest/gtest.h>

#include <algorithm>

#include "reports/clone_stacks.h"
#include "support/net_helpers.h"

namespace {

using namespace orb_test;

// Cliques side by side.
class_net cliques(const std::vector<std::int32_t> &sizes) {
  edge_map edges;
  std::int32_t n = 0;
  for (const std::int32_t size : sizes) {
    for (vertex_number a = n + 1; a <= n + size; ++a)
      for (vertex_number b = a + 1; b <= n + size; ++b)
        join(edges, a, b);
    n += size;
  }
  return net_of(n, edges);
}

std::vector<std::int32_t> many(std::int32_t size, std::size_t n, std::vector<std::int32_t> then) {
  then.insert(then.begin(), n, size);
  return then;
}

TEST(clone_stacks, are_far_deeper_than_the_middle) {
  struct {
    std::vector<std::int32_t> sizes;
    std::int32_t middle;
    std::vector<std::size_t> stacks;
  } const cases[] = {
      {{}, 0, {}},
      {{1, 1, 1}, 0, {}},
      {{200}, 199, {}},                      // alone it is the library
      {many(6, 30, {51}), 5, {}},            // 50 overlaps are 10 times 5, not above
      {many(5, 30, {51}), 4, {51}},          // above 10 times 4
      {many(2, 90, {50}), 1, {}},            // above 10 times 1, but below 50
      {many(1, 500, {4, 4, 4, 51}), 50, {}}, // clones alone don't count
      {many(6, 100, {60, 80, 60}), 5, {80, 60, 60}},
  };
  for (const auto &c : cases) {
    const clone_stacks found = find_clone_stacks(cliques(c.sizes));
    EXPECT_EQ(found.middle_depth, c.middle);
    std::vector<std::size_t> sizes;
    for (const auto &stack : found.members) {
      sizes.push_back(stack.size());
      EXPECT_TRUE(std::is_sorted(stack.begin(), stack.end()));
      EXPECT_EQ(static_cast<std::size_t>(stack.back() - stack.front()) + 1, stack.size()); // one clique
    }
    EXPECT_EQ(sizes, c.stacks);
  }
}

} // namespace
