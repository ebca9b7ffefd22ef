#include <gtest/gtest.h>

#include <bit>
#include <cmath>

#include "net/clone_test.h"
#include "support/contig_test_library.h"

using namespace orb_test;

namespace {

// Windows on an axis of random bands, evenly spread; from `chimeras` on clones are two windows far apart.
library_data spread_library(std::uint64_t seed, int n_good, int n_chimeras, bool same_places) {
  random_source random(seed);
  library_data data;
  std::vector<std::int32_t> axis;
  constexpr int n_axis = 600, length = 60;
  for (int i = 0; i < n_axis; ++i)
    axis.push_back(500 + random.number_up_to(40000));
  const auto window = [&](int from, int n, std::vector<std::int32_t> &bands) {
    for (int i = from; i < from + n; ++i)
      if (random.uniform() > 0.02)
        bands.push_back(axis[static_cast<std::size_t>(i)] + random.number_up_to(3) - 2);
  };
  for (int c = 0; c < n_good; ++c) {
    std::vector<std::int32_t> bands;
    window(c * (n_axis - length) / (n_good - 1), length, bands);
    data.add("G" + std::to_string(1000 + c), bands);
  }
  for (int c = 0; c < n_chimeras; ++c) {
    std::vector<std::int32_t> bands;
    const int place = same_places ? 100 + c : 60 + c * 150 / n_chimeras;
    window(place, 40, bands);
    window(place + 300, 40, bands);
    data.add("X" + std::to_string(1000 + c), bands);
  }
  return data;
}

// Least number of vertices whose removal parts `from` and `to`, by trying all sets.
int least_cut_by_trial(const clone_neighbourhood &around, int from, int to, int most) {
  const int n = static_cast<int>(around.neighbours().size());
  const auto apart = [&](unsigned out) {
    unsigned reached = 1u << from;
    for (unsigned before = 0; before != reached;) {
      before = reached;
      for (int u = 0; u < n; ++u)
        for (int v = 0; v < n; ++v)
          if ((reached >> u & 1) && !(out >> v & 1) && u != v && around.tied(u, v))
            reached |= 1u << v;
    }
    return !(reached >> to & 1);
  };
  int best = most + 1;
  for (unsigned out = 0; out < 1u << n; ++out)
    if (!(out >> from & 1) && !(out >> to & 1) && std::popcount(out) < best && apart(out))
      best = std::popcount(out);
  return best > most ? -1 : best;
}

} // namespace

// Chance alone and true overlaps mixed in: the positions are those that the bands were drawn from.
TEST(clone_test, positions_are_found_back) {
  random_source random(5);
  library_data data;
  for (int c = 0; c < 400; ++c) {
    std::vector<std::int32_t> bands;
    for (int i = 0; i < 40; ++i)
      bands.push_back(1000 + 9 * random.number_up_to(900)); // a band matches its own position only
    std::sort(bands.begin(), bands.end());
    bands.erase(std::unique(bands.begin(), bands.end()), bands.end());
    data.add("R" + std::to_string(1000 + c), bands);
  }
  contig_session session(data, 30);
  const band_scale scale = band_scale_of(clone_bands(session.database), 1);
  EXPECT_NEAR(scale.n_positions, 900, 45);
  EXPECT_NEAR(scale.cutoff, std::log10(400 * 399 / 2.0) + 1, 1e-9);
  // the formula of the overlap is undone by what it was made for: a true overlap and chance beside it
  const double o = 25, k = 0.94 * o + (40 - o) * (40 - o) / scale.n_positions;
  EXPECT_NEAR(scale.overlap(static_cast<int>(std::lround(k)), 40, 40), o, 1);
  const least_common_table least(clone_bands(session.database), scale, 5);
  for (const int n : {static_cast<int>(data.bands[1].size()), static_cast<int>(data.bands[2].size())})
    EXPECT_TRUE(scale.score(least(n, n), n, n) >= 5 && scale.score(least(n, n) - 1, n, n) < 5);
}

TEST(clone_test, cuts_are_least) {
  int seen[4] = {};
  for (std::uint64_t seed = 1; seed <= 10; ++seed) {
    const library_data data = spread_library(seed, 28, 1 + static_cast<int>(seed) % 5, true);
    contig_session session(data, 18);
    const clone_bands clones(session.database);
    band_scale scale = band_scale_of(clones, 1);
    const scored_net net(session.signif.net(), clones, scale, scale.cutoff, 1, [] { return true; });
    clone_neighbourhood around;
    std::vector<char> none(static_cast<std::size_t>(clones.n) + 1, 0);
    std::vector<std::int32_t> cut;
    for (clone_number c = 1; c <= clones.n; ++c) {
      around.make(clones, scale, net, c, none);
      const int n = static_cast<int>(around.neighbours().size());
      if (n > 15)
        continue;
      for (int u = 0; u < n; ++u)
        for (int v = u + 1; v < n; ++v) {
          if (around.tied(u, v))
            continue;
          const int found = around.least_cut(u, v, cut);
          ASSERT_EQ(found, least_cut_by_trial(around, u, v, 3)) << seed << " " << c;
          EXPECT_EQ(static_cast<int>(cut.size()), std::max(found, 0));
          ++seen[std::max(found, 0)];
        }
    }
  }
  for (const int count : seen)
    EXPECT_GT(count, 0);
}

// Chimeras that join the same two places hide each other from tests of the net; here the bands tell. Equal for any
// number of threads.
TEST(clone_test, chimeras_of_the_same_places_are_found) {
  for (const bool same_places : {false, true}) {
    const library_data data = spread_library(9, 150, 3, same_places);
    contig_session session(data, 18);
    const clone_bands clones(session.database);
    const band_scale scale = band_scale_of(clones, 1);
    const auto go_on = [](double) { return true; };
    const scored_net net(session.signif.net(), clones, scale, scale.cutoff, 2, [] { return true; });
    const auto suspects = find_suspects(clones, scale, net, 1, go_on);
    ASSERT_EQ(suspects.size(), 3u) << same_places;
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(suspects[i].clone, 151 + static_cast<int>(i));
      EXPECT_GT(std::min(suspects[i].bands_1.size(), suspects[i].bands_2.size()), 20u);
    }
    const auto on_three = find_suspects(clones, scale, net, 3, go_on);
    ASSERT_EQ(on_three.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
      EXPECT_EQ(on_three[i].side_1, suspects[i].side_1);
    EXPECT_TRUE(find_suspects(clones, scale, net, 1, [](double) { return false; }).empty());
  }
}

namespace {

// A line of 1200 random bands and clones of parts of it, two each when they are chimeras.
struct band_line {
  random_source random;
  std::vector<std::int32_t> axis;
  library_data data;

  explicit band_line(std::uint64_t seed) : random(seed) {
    for (int i = 0; i < 1200; ++i)
      axis.push_back(500 + random.number_up_to(40000));
  }
  void add(std::initializer_list<std::pair<int, int>> parts) { // from, length
    std::vector<std::int32_t> bands;
    for (const auto &[from, n] : parts)
      for (int i = from; i < from + n; ++i)
        if (random.uniform() > 0.02)
          bands.push_back(axis[static_cast<std::size_t>(i)] + random.number_up_to(3) - 2);
    data.add("T" + std::to_string(1000 + data.count()), bands);
  }
  std::vector<clone_suspect> suspects(telling_suspects &telling) const {
    contig_session session(data, 18);
    const clone_bands clones(session.database);
    const band_scale scale = band_scale_of(clones, 1);
    const scored_net net(session.signif.net(), clones, scale, scale.cutoff, 1, [] { return true; });
    auto found = find_suspects(clones, scale, net, 1, [](double) { return true; });
    telling = find_telling(clones, scale, net, found);
    return found;
  }
};

} // namespace

// Two clones between the same two places, one of them thin: each is all that ties the other's sides. They are chimeras
// where many neighbours show it; where few do, two good clones over a thin place look the same.
TEST(clone_test, two_that_hide_each_other_need_many_neighbours) {
  for (std::uint64_t seed = 1; seed <= 5; ++seed)
    for (const bool chimeras : {false, true}) {
      band_line line(seed);
      const int n_first = chimeras ? 12 : 5, second = chimeras ? 480 : 180;
      for (int k = 0; k < n_first; ++k)
        line.add({{100 + 20 * k / n_first, 60}});
      for (int k = 0; k < 5; ++k)
        line.add({{second + 4 * k, 60}});
      for (int k = 0; k < 60; ++k)
        line.add({{600 + 9 * k, 60}});
      for (int k = 0; k < 2; ++k)
        line.add({{138 + k, 42 - k}, {second, 40 + k}});
      telling_suspects telling;
      const auto suspects = line.suspects(telling);
      ASSERT_EQ(suspects.size(), chimeras ? 2u : 0u) << seed;
      EXPECT_EQ(chimeras ? suspects[0].partner : line.data.count(), line.data.count()) << seed;
      EXPECT_TRUE(telling.clones.empty()) << seed; // by which others are counted: not where sides are tied
    }
}

// Chimeras are counted by suspects in deep places: about as many as there are, whatever the depth, and none where all
// suspects are good clones over thin places.
TEST(clone_test, chimeras_are_counted_in_deep_places) {
  telling_suspects telling;
  for (const int n_good : {60, 100, 180}) {
    double counted = 0;
    const int n_chimeras = n_good / 10;
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
      band_line line(seed);
      const auto place = [&](int length) { return line.random.number_up_to(1200 - length) - 1; };
      for (int c = 0; c < n_good; ++c)
        line.add({{place(60), 60}});
      for (int c = 0; c < n_chimeras; ++c)
        line.add({{place(40), 40}, {place(40), 40}});
      line.suspects(telling);
      counted += static_cast<double>(telling.clones.size()) / telling.share / 8;
    }
    EXPECT_NEAR(counted, n_chimeras, 0.5 * n_chimeras) << n_good;
  }
  for (std::uint64_t seed = 1; seed <= 3; ++seed) {
    band_line line(seed);
    for (int c = 0; c < 130; ++c)
      line.add({{4 * c, 60}});
    for (int thin = 640; thin < 1200; thin += 140) // one clone alone covers it
      for (const int from : {-60, -64, -68, -72, -30, 0, 4, 8, 12})
        line.add({{thin + from, 60}});
    EXPECT_EQ(line.suspects(telling).size(), 4u) << seed;
    EXPECT_TRUE(telling.clones.empty()) << seed;
  }
}
