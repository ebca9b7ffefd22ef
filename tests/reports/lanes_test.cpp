// Fingerprints as lanes: joins and marks against plain counting, and what stands where.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "drawing/recording_surface.h"
#include "metrics/band_merge.h"
#include "reports/lanes.h"
#include "support/contig_test_library.h"

namespace {

using namespace orb;
using namespace orb_test;

using lane_place = std::pair<std::int32_t, std::int32_t>; // lane, band

// Greedy, from the smallest band on: each takes the first free band of the other list that is near enough.
std::vector<std::pair<std::int32_t, std::int32_t>> plain_common(std::span<const band_value> a,
                                                                std::span<const band_value> b, std::int32_t t) {
  std::vector<std::pair<std::int32_t, std::int32_t>> found;
  std::size_t next = 0;
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t j = next; j < b.size(); ++j)
      if (std::abs(a[i] - b[j]) <= t) {
        found.emplace_back(static_cast<std::int32_t>(i), static_cast<std::int32_t>(j));
        next = j + 1;
        break;
      }
  return found;
}

TEST(lanes, common_bands_are_joined_and_others_marked) {
  for (std::uint64_t seed = 1; seed <= 5; ++seed) {
    const contig_session session(random_library(seed, 30, 300, 0), 6);
    const std::vector<clone_number> clones{7, 3, 12, 13, 14, 29, 1};
    const auto overlap = [](clone_number a, clone_number b) { return (a * b) % 3 != 0; };
    const lane_values values = lane_values_of(session.database, clones, overlap);
    std::set<lane_place> explained;
    std::vector<std::tuple<int, int, int>> joins;
    for (int a = 0; a < 7; ++a)
      for (int b = a + 1; b < 7; ++b)
        for (const auto &[i, j] : plain_common(session.database.bands_of_clone(clones[static_cast<std::size_t>(a)]),
                                               session.database.bands_of_clone(clones[static_cast<std::size_t>(b)]),
                                               list_tolerance(session.database))) {
          if (overlap(clones[static_cast<std::size_t>(a)], clones[static_cast<std::size_t>(b)])) {
            explained.insert({a, i});
            explained.insert({b, j});
          }
          if (b == a + 1)
            joins.emplace_back(a, i, j);
        }
    std::vector<std::tuple<int, int, int>> found;
    for (const lane_join &join : values.joins)
      found.emplace_back(join.lane, join.band, join.band_of_next);
    EXPECT_EQ(found, joins);
    for (std::int32_t lane = 0; lane < 7; ++lane) {
      const auto &of = values.lanes[static_cast<std::size_t>(lane)];
      EXPECT_EQ(of.has_neighbours, of.clone % 3 != 0);
      for (std::int32_t band = 0; band < static_cast<std::int32_t>(of.bands.size()); ++band)
        EXPECT_EQ(of.bands[static_cast<std::size_t>(band)].is_explained, explained.count({lane, band}) > 0)
            << of.name << " " << band;
    }
  }
}

TEST(lanes, stand_below_each_other_on_one_axis) {
  const contig_session session(random_library(3, 30, 300, 0), 6);
  const lane_values values =
      lane_values_of(session.database, {1, 2, 3, 4}, [](clone_number, clone_number) { return true; });
  surface_record record{{900, 400}, 0, {}};
  const drawing_surface surface = recording_surface(record);
  for (const double from : {0.0, values.largest / 3.0}) {
    const lanes_page page = lay_out_lanes(values, {900, from, from + values.largest / 2.0}, surface.text_width);
    ASSERT_EQ(page.rows.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
      const lane_row &row = page.rows[i];
      EXPECT_LE(row.strip.corner.y + row.strip.size.height, page.size.height);
      if (i > 0) {
        EXPECT_GT(row.strip.corner.y, page.rows[i - 1].strip.corner.y + page.rows[i - 1].strip.size.height);
      }
      for (std::size_t band = 0; band < row.x.size(); ++band) {
        EXPECT_FLOAT_EQ(row.x[band], page.axis.x_of(values.lanes[i].bands[band].size));
        const found_band found = band_at(page, row.x[band], row.strip.corner.y + 3);
        EXPECT_EQ(found.lane, static_cast<std::int32_t>(i));
        EXPECT_FLOAT_EQ(row.x[static_cast<std::size_t>(found.band)], row.x[band]);
      }
    }
    for (const surface_line &join : page.joins)
      EXPECT_LE(std::max(join.from.x, join.to.x), 900);
    draw_lanes(page, surface);
    EXPECT_FALSE(record.drawn.empty());
  }
  EXPECT_EQ(band_at({}, 5, 5).lane, -1);
}

} // namespace
