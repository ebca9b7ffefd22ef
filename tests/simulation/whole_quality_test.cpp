#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "frame/random_source.h"
#include "simulation/whole_quality.h"

using namespace orb;

namespace {

std::vector<whole_point> points_on_a_line(random_source &random, int n, int bands) {
  std::vector<whole_point> points;
  for (int i = 0; i < n; ++i) {
    const auto begin = static_cast<true_position>(random.number_up_to(bands * 1000));
    const double left = std::floor(static_cast<double>(begin) / 1000 + 2 * random.uniform());
    points.push_back({left, left + 40, begin, begin + 40000});
  }
  return points;
}

} // namespace

// Expected numbers against many drawn orders of those that are tied; read backwards, the same contig is as good.
TEST(whole_quality, ties_count_as_drawn) {
  random_source random(4);
  const std::vector<whole_point> points = points_on_a_line(random, 60, 50);
  const whole_quality found = whole_quality_of(points);
  double out = 0;
  constexpr int draws = 4000;
  for (int draw = 0; draw < draws; ++draw) {
    std::vector<std::pair<double, double>> keys; // place, then chance
    for (const whole_point &p : points)
      keys.emplace_back(p.left, random.uniform());
    std::vector<std::size_t> order(points.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    for (std::size_t i = 1; i < order.size(); ++i)
      out += points[order[i]].begin < points[order[i - 1]].begin;
  }
  EXPECT_NEAR(found.lefts.out, out / draws, 0.3);
  EXPECT_EQ(found.lefts.n, 59);
  EXPECT_GT(found.lefts.out, found.lefts.floor);

  std::vector<whole_point> turned;
  for (const whole_point &p : points)
    turned.push_back({-p.right, -p.left, p.begin, p.end});
  const whole_quality other = whole_quality_of(turned);
  EXPECT_NEAR(other.lefts.out, found.lefts.out, 1e-9);
  EXPECT_NEAR(*other.tau(), *found.tau(), 1e-9);
  EXPECT_EQ(other.n_turned, found.n_turned);
}

// Two places 60 kb apart are one over a gap; those 200 kb away, or on another chromosome however near, aren't.
TEST(whole_quality, places_over_a_gap_are_one) {
  placed_clones clones;
  clones.chromosomes = {"1", "2"};
  const auto add = [&](int chromosome, int begin) {
    simul_clone clone;
    clone.name = "c" + std::to_string(clones.clones.size());
    clone.parts.push_back({chromosome, begin, begin + 50000});
    clones.clones.push_back(clone);
  };
  for (const int begin : {0, 20000, 110000, 310000})
    add(1, begin);
  add(2, 10);
  const true_map truth(clones);
  std::vector<true_stretch> all;
  for (true_clone c = 0; c < truth.n_clones(); ++c)
    all.push_back(truth.stretches(c).front());
  EXPECT_EQ(clones_apart(all, truth), 2);
}

// A contig folded onto itself, and one with a block turned round.
TEST(whole_quality, folds_and_turned_blocks_show) {
  std::vector<whole_point> straight, folded, block;
  for (int i = 0; i < 100; ++i) {
    const true_position begin = i * 5000;
    straight.push_back({5.0 * i, 5.0 * i + 50, begin, begin + 50000});
    const double fold = i < 50 ? 10.0 * i : 10.0 * (99 - i) + 5;
    folded.push_back({fold, fold + 50, begin, begin + 50000});
    const double turned = i >= 40 && i < 60 ? 5.0 * (99 - i) : 5.0 * i;
    block.push_back({turned, turned + 50, begin, begin + 50000});
  }
  EXPECT_NEAR(*whole_quality_of(straight).tau(), 1, 1e-12);
  EXPECT_EQ(whole_quality_of(straight).lefts.out, 0);
  EXPECT_LT(*whole_quality_of(folded).tau(), 0.1);
  EXPECT_EQ(whole_quality_of(folded).n_clones_right, 0);
  EXPECT_EQ(whole_quality_of(block).n_turned, 1);
  EXPECT_EQ(whole_quality_of(block).n_clones_right, 100);
}
