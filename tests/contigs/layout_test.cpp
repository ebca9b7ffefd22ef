#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numeric>

#include "contigs/layout_ends.h"
#include "contigs/layout_method.h"
#include "contigs/layout_path.h"
#include "contigs/skyline_solver.h"
#include "support/contig_test_library.h"

using namespace orb_test;

namespace {

// The same by elimination on the whole matrix.
std::vector<double> solve_dense(const std::vector<axis_spring> &springs, const std::vector<double> &start) {
  const std::size_t n = start.size();
  std::vector<std::vector<double>> a(n, std::vector<double>(n + 1, 0));
  for (std::size_t i = 0; i < n; ++i) {
    a[i][i] = 1e-6;
    a[i][n] = 1e-6 * start[i];
  }
  for (const axis_spring &s : springs) {
    const auto low = static_cast<std::size_t>(s.low), high = static_cast<std::size_t>(s.high);
    a[low][low] += s.weight, a[high][high] += s.weight;
    a[low][high] -= s.weight, a[high][low] -= s.weight;
    a[low][n] -= s.weight * s.target, a[high][n] += s.weight * s.target;
  }
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = 0; j < n; ++j)
      if (j != i) {
        const double f = a[j][i] / a[i][i];
        for (std::size_t k = i; k <= n; ++k)
          a[j][k] -= f * a[i][k];
      }
  std::vector<double> x(n);
  for (std::size_t i = 0; i < n; ++i)
    x[i] = a[i][n] / a[i][i];
  return x;
}

// Clones of a line of random bands, each with the place where it begins.
struct line_library {
  library_data data;
  std::vector<int> begin{0}, length{0};

  line_library(std::uint64_t seed, int n_axis, int n_clones, double lost, bool twins = false) {
    random_source random(seed);
    std::vector<std::int32_t> axis;
    for (int i = 0; i < n_axis; ++i)
      axis.push_back(500 + random.number_up_to(40000));
    // a third of the bands have the size of one nearby, and show as one with it
    const auto twin = [twins](int i) { return twins && i >= 7 && i % 3 == 0 ? i - 7 : -1; };
    for (int i = 0; i < n_axis; ++i)
      if (twin(i) >= 0)
        axis[static_cast<std::size_t>(i)] = axis[static_cast<std::size_t>(twin(i))];
    for (int c = 0; c < n_clones; ++c) {
      length.push_back(50 + random.number_up_to(30));
      begin.push_back(random.number_up_to(n_axis - length.back()) - 1);
      std::vector<std::int32_t> bands;
      for (int i = begin.back(); i < begin.back() + length.back(); ++i)
        if (random.uniform() > lost && twin(i) < begin.back())
          bands.push_back(axis[static_cast<std::size_t>(i)] + random.number_up_to(3) - 2);
      data.add("L" + std::to_string(1000 + c), bands);
    }
  }
};

// A line's clones where they belong, in bands, `shift(clone)` further to the right.
struct laid_line {
  contig_session session;
  clone_bands clones{session.database};
  band_scale scale = band_scale_of(clones, 1);
  std::vector<laid_clone> laid;

  laid_line(
      const line_library &line, const std::function<double(int)> &shift = [](int) { return 0.0; })
      : session(line.data, 25) {
    for (int c = 1; c <= clones.n; ++c) {
      const auto i = static_cast<std::size_t>(c);
      const double left = line.begin[i] + shift(c);
      laid.push_back({c, left, left + line.length[i]});
    }
    sort();
  }
  void sort() {
    std::ranges::sort(laid, {}, [](const laid_clone &one) { return std::pair(one.left, one.clone); });
  }
};

layout_result laid_out(contig_session &session, int threads) {
  const layout_progress progress{[](const std::string &) {}, [](double) { return true; }};
  return lay_contigs(clone_bands(session.database), session.signif.net(), {1, threads}, progress);
}

} // namespace

TEST(layout, springs_are_solved_as_by_elimination) {
  random_source random(3);
  skyline_solver solver;
  for (int trial = 0; trial < 20; ++trial) {
    const int n = 5 + random.number_up_to(40);
    std::vector<double> start, x;
    for (int i = 0; i < n; ++i)
      start.push_back(10 * i + random.uniform());
    std::vector<axis_spring> springs;
    for (int i = 1; i < n; ++i)
      for (int k = 0; k < 3; ++k) {
        const std::int32_t low = std::max(0, i - random.number_up_to(6));
        springs.push_back({low, i, 10.0 * (i - low) + 4 * random.uniform(), 0.1 + random.uniform()});
      }
    solver.solve(springs, start, x, false);
    const std::vector<double> slow = solve_dense(springs, start);
    for (int i = 0; i < n; ++i)
      ASSERT_NEAR(x[static_cast<std::size_t>(i)], slow[static_cast<std::size_t>(i)], 1e-5);
    if (trial > 3)
      continue;
    solver.solve(springs, slow, x, false, 1); // no room: place by place, which stays where all is settled
    for (int i = 0; i < n; ++i)
      ASSERT_NEAR(x[static_cast<std::size_t>(i)], slow[static_cast<std::size_t>(i)], 1e-3);
  }
}

// The place of a column, by scoring every tenth of the axis.
TEST(layout, columns_lie_where_their_clones_overlap) {
  const line_library line(4, 300, 40, 0.02);
  const laid_line drawn(line);
  const std::vector<laid_clone> &laid = drawn.laid;
  band_columns map(drawn.clones, drawn.scale);
  const column_chances chances;
  map.make(laid, chances, false);
  EXPECT_GT(map.columns().size(), 200u);
  EXPECT_LT(map.columns().size(), 320u);
  std::size_t compared = 0;
  for (const band_column &column : map.columns()) {
    const auto members = map.members(column);
    const auto score = [&](double x) {
      double sum = 0;
      for (std::size_t i = 0; i < laid.size(); ++i)
        if (laid[i].left < x && x < laid[i].right)
          sum += std::find(members.begin(), members.end(), static_cast<std::int32_t>(i)) != members.end()
                     ? std::log((1 - chances.missing) / chances.stray)
                     : -std::log((1 - chances.stray) / chances.missing);
      return sum;
    };
    double best = 0;
    for (double x = 0.05; x < 300; x += 0.1)
      best = std::max(best, score(x));
    compared += best - score(column.place) < 3; // a mean over the best segments
  }
  EXPECT_GT(compared, map.columns().size() * 95 / 100);
}

// Two bands of one size near each other: a column at each place, with the clones that cover it; a clone that covers
// both shows one band for the two, and it alone is said to.
TEST(layout, bands_of_like_size_make_two_columns) {
  constexpr int first = 110, second = 160, size = 45000;
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    line_library line(seed, 300, 60, 0);
    const auto covers = [&](int c, int place) {
      const int begin = line.begin[static_cast<std::size_t>(c)];
      return begin <= place && place < begin + line.length[static_cast<std::size_t>(c)];
    };
    for (int c = 1; c <= line.data.count(); ++c)
      if (covers(c, first) || covers(c, second))
        line.data.bands[static_cast<std::size_t>(c)].push_back(size);
    const laid_line drawn(line);
    const std::vector<laid_clone> &laid = drawn.laid;
    band_columns map(drawn.clones, drawn.scale);
    map.make(laid, {}, false);
    std::vector<band_column> found;
    std::ranges::copy_if(map.columns(), std::back_inserter(found),
                         [](const band_column &c) { return std::abs(c.value - size) < 1; });
    ASSERT_EQ(found.size(), 2u) << seed;
    EXPECT_EQ(found[0].group, found[1].group);
    for (const band_column &column : found) {
      const int place = &column == &found[0] ? first : second;
      EXPECT_NEAR(column.place, place + 0.5, 6) << seed;
      std::size_t off = 0;
      for (std::size_t i = 0; i < laid.size(); ++i) {
        const auto members = map.members(column);
        const auto at = std::ranges::find(members, static_cast<std::int32_t>(i));
        off += (at != members.end()) != covers(laid[i].clone, place);
        if (at != members.end() && covers(laid[i].clone, place))
          off += (map.shares_a_band(column)[static_cast<std::size_t>(at - members.begin())] != 0) !=
                 (covers(laid[i].clone, first) && covers(laid[i].clone, second));
      }
      EXPECT_LE(off, 4u) << seed; // clones that end within a few bands of the place
    }
  }
}

// Ends that were laid some bands off are found again: in their order, where a third of the bands have the size of one
// nearby and show as one with it; to within a few bands, beyond the last column too, where none has.
TEST(layout, columns_tell_ends) {
  double turned = 0, pairs = 0, off = 0;
  for (std::uint64_t seed = 1; seed <= 18; ++seed) {
    const line_library line(seed, 300, 40, 0.03, seed > 6);
    random_source random(seed);
    laid_line drawn(line, [&random](int) { return 12 * random.uniform() - 6; });
    std::vector<laid_clone> &laid = drawn.laid;
    const auto begin = [&](const laid_clone &one) { return line.begin[static_cast<std::size_t>(one.clone)]; };
    band_columns map(drawn.clones, drawn.scale);
    lay_by_columns(drawn.scale, laid, map, false);
    for (const laid_clone &a : laid)
      for (const laid_clone &b : laid)
        if (seed > 6 && begin(a) < begin(b) && begin(b) < begin(a) + 6) {
          ++pairs;
          turned += a.left > b.left - 0.25; // or not told apart
        }
    drawn.sort();
    if (seed <= 6)
      off += std::abs(laid[0].left - laid[3].left - begin(laid[0]) + begin(laid[3])) / 6;
  }
  EXPECT_LT(turned / pairs, 0.16);
  EXPECT_LT(off, 1);
}

namespace {

// Fewest clones from the first to the last by trying all subsequences that grow to the right.
double cheapest_by_trial(const path_step_rule &rule, const std::vector<laid_clone> &laid, const common_columns &common,
                         std::size_t at, double goal) {
  if (laid[at].right >= goal)
    return 1;
  double best = 1e9;
  for (std::size_t next = at + 1; next < laid.size(); ++next)
    if (double step = 0; rule.may_follow(laid[at], laid[next], common(at, next), step))
      best = std::min(best, step + cheapest_by_trial(rule, laid, common, next, goal));
  return best;
}

} // namespace

TEST(layout, tiling_path_is_the_cheapest) {
  for (std::uint64_t seed = 1; seed <= 8; ++seed) {
    const line_library line(seed, 220, 22, 0.02);
    const laid_line drawn(line, [](int c) { return c == 7 ? 40 : 0; }); // one of them lies wrongly
    const band_scale &scale = drawn.scale;
    const std::vector<laid_clone> &laid = drawn.laid;
    band_columns map(drawn.clones, scale);
    map.make(laid, {}, false);
    shown_columns shown;
    for (std::size_t i = 0; i < laid.size(); ++i) {
      std::vector<std::int32_t> of;
      for (std::size_t c = 0; c < map.columns().size(); ++c)
        if (std::ranges::count(map.members(map.columns()[c]), static_cast<std::int32_t>(i)) > 0)
          of.push_back(static_cast<std::int32_t>(c));
      shown.add(of);
    }
    const common_columns common = [&](std::size_t a, std::size_t b) { return shown.common(a, b); };
    const path_step_rule rule{scale};
    const std::vector<char> usable(laid.size(), 1);
    const auto paths = tiling_paths(rule, laid, usable, common);
    ASSERT_FALSE(paths.empty());
    double reached = 0, cost = 1, step = 0, best = 1e9;
    const auto place = [&](clone_number c) {
      return std::find_if(laid.begin(), laid.end(), [c](const laid_clone &l) { return l.clone == c; });
    };
    for (std::size_t i = 0; i < paths[0].size(); ++i) {
      reached = std::max(reached, place(paths[0][i])->right);
      if (i > 0) {
        const auto u = place(paths[0][i - 1]), v = place(paths[0][i]);
        const auto at = [&](const auto &x) { return static_cast<std::size_t>(x - laid.begin()); };
        ASSERT_TRUE(rule.may_follow(*u, *v, common(at(u), at(v)), step));
        EXPECT_GE(common(at(u), at(v)), 0.7 * (u->right - v->left)); // seen, not only laid so
        cost += step;
      }
    }
    for (std::size_t first = 0; first < laid.size(); ++first)
      if (laid[first].left <= laid[0].left + 2 * scale.r)
        best = std::min(best, cheapest_by_trial(rule, laid, common, first, reached));
    EXPECT_NEAR(cost, best, 1e-9) << seed;
  }
}

// A whole line comes back as one contig in its order, whatever the number of threads; two lines as two.
TEST(layout, lines_come_back) {
  const line_library line(7, 900, 220, 0.03);
  contig_session session(line.data, 18);
  const layout_result found = laid_out(session, 1);
  ASSERT_TRUE(found.completed);
  ASSERT_EQ(found.contigs.size(), 1u);
  const laid_contig &contig = found.contigs.front();
  EXPECT_GT(contig.clones.size(), 215u);
  double agree = 0, pairs = 0;
  for (std::size_t i = 0; i < contig.clones.size(); ++i)
    for (std::size_t j = i + 1; j < contig.clones.size(); ++j) {
      ++pairs;
      agree += line.begin[static_cast<std::size_t>(contig.clones[i])] <=
               line.begin[static_cast<std::size_t>(contig.clones[j])];
    }
  EXPECT_GT(std::abs(2 * agree / pairs - 1), 0.99);
  ASSERT_EQ(contig.paths.size(), 1u);
  EXPECT_LT(contig.paths.front().size(), 25u);
  const layout_result again = laid_out(session, 3);
  ASSERT_EQ(again.contigs.size(), 1u);
  EXPECT_EQ(again.contigs.front().clones, contig.clones);
  EXPECT_EQ(again.contigs.front().left, contig.left);
  EXPECT_EQ(again.contigs.front().right, contig.right);
  EXPECT_EQ(again.contigs.front().paths, contig.paths);
}

// A stop at any look at the user ends the work early, with nothing half done.
TEST(layout, a_stop_is_seen) {
  const line_library line(8, 500, 120, 0.03);
  contig_session session(line.data, 18);
  for (int after = 0; after < 6; ++after) {
    int looks = 0;
    const layout_progress progress{[](const std::string &) {}, [&](double) { return looks++ < after; }};
    EXPECT_FALSE(lay_contigs(clone_bands(session.database), session.signif.net(), {1, 2}, progress).completed);
    EXPECT_LT(looks, after + 12);
  }
}
