// Maps of bands: the stretch of a clone against all stretches, distances, whole maps of simulated clones.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "ordering/class_map_of_bands1.h"
#include "ordering/class_map_of_bands4.h"
#include "support/scripted_frame.h"

using namespace orb;

TEST(band_map, the_best_stretch_is_the_first_best_of_all) {
  random_source chance(5);
  for (int round = 0; round < 300; ++round) {
    std::vector<double> scores(static_cast<std::size_t>(chance.number_up_to(14)));
    for (double &score : scores)
      score = chance.number_up_to(7) - 4;
    const auto n = static_cast<std::int32_t>(scores.size());
    const std::int32_t least = chance.number_up_to(16);
    best_stretch plain;
    for (std::int32_t first = 1; first <= n; ++first)
      for (std::int32_t last = first + std::min(least, n) - 1; last <= n; ++last) {
        double score = 0;
        for (std::int32_t i = first; i <= last; ++i)
          score += scores[static_cast<std::size_t>(i) - 1];
        if (plain.first == 0 || score > plain.score)
          plain = {first, last, score};
      }
    const best_stretch found = best_stretch_of(scores, least);
    EXPECT_EQ(found.first, plain.first);
    EXPECT_EQ(found.last, plain.last);
    EXPECT_EQ(found.score, plain.score);
  }
}

TEST(band_map, a_clone_is_aligned_to_its_stretch) {
  std::vector<band_value> map;
  for (int i = 0; i < 60; ++i)
    map.push_back(900 * ((i * 37) % 60) + 500);
  std::vector<band_value> bands(map.begin() + 20, map.begin() + 40);
  bands[3] += 20; // found at double tolerance only
  bands[7] = 55;  // the band is lost, another is false
  std::sort(bands.begin(), bands.end());
  class_map_of_bands3 found;
  found.align_clone_to_Band_Map(map, 4, bands, {});
  EXPECT_EQ(found.clone_number(), 4);
  EXPECT_EQ(found.adres_start(), 21);
  EXPECT_EQ(found.adres_end(), 40);
  EXPECT_EQ(found.band_of_map_presentance(24), 2);
  EXPECT_EQ(found.band_of_map_presentance(28), 0);
  EXPECT_EQ(found.n_absent_bands_in_clone(), 1);
  EXPECT_EQ(found.n_false_bands_in_clone(), 2);
  EXPECT_FALSE(found.band_of_clone_presentance(1)); // 55
  found.align_clone_to_Band_Map(map, 1, std::span(map).first(0), {});
  EXPECT_EQ(found.adres_start(), 0);
}

// Every band of the map once and no more, near its place: the clones of each lie within its stretch.
TEST(band_map, simulated_maps_are_found_again) {
  scripted_frame shown;
  std::vector<std::int32_t> numbers;
  random_source chance(2);
  for (int i = 0; i < 60; ++i)
    numbers.push_back(59 + chance.number_up_to(61));
  for (const double share : {0.0, 0.05}) {
    band_map_simulation wanted;
    wanted.lost = wanted.added = share;
    wanted.coverage = 8;
    class_map_of_bands4 maker(shown.frame, {});
    band_map_quality found;
    ASSERT_TRUE(maker.simulate_make_all_work(numbers, {}, wanted, shown.folder, found));
    EXPECT_GT(found.bands_found, 0.93);
    EXPECT_GT(found.bands_true, 0.97);
    EXPECT_GT(found.neighbours_right, share > 0 ? 0.8 : 0.95);
    EXPECT_GT(found.tau, 0.98);
    EXPECT_EQ(std::set<std::int32_t>(maker.order_of_clones().begin(), maker.order_of_clones().end()).size(), 60u);
  }
  const std::string sorted = shown.bytes("band_map_all_clones.txt"), simulated = shown.bytes("band_map_simulation.txt");
  EXPECT_TRUE(sorted.starts_with("Length_of_Map\t")) << sorted.substr(0, 200);
  EXPECT_NE(sorted.find("\r\nc\tc_old\tclone\tstart\tend\tlength\r\n1\t"), std::string::npos);
  EXPECT_NE(simulated.find("\r\nc\tclone\tbands\tabsent\t"), std::string::npos) << simulated.substr(0, 300);
  EXPECT_TRUE(shown.bytes("band_dist.txt").starts_with("i\tlen\\len\t"));
}

TEST(band_map, groups_are_cut_where_clones_begin) {
  scripted_frame shown;
  class_map_of_bands1 map(shown.frame, {});
  const std::vector<std::vector<band_value>> rows{
      {100, 200, 300, 400, 500, 600}, {400, 500, 600, 700, 800, 900}, {805, 900, 1000, 1100}};
  band_map_clones clones{{"A", "B", "C"}, rows, {}};
  map.creation_of_initial_map_of_bands(clones);
  map.creation_of_initial_borders(clones);
  ASSERT_EQ(map.n_groups(), 5); // of A alone, of A and B, of B, of B and C, of C
  number_list bands;
  ASSERT_TRUE(map.read_ListOfBands_from_map_of_bands(bands, 2));
  EXPECT_EQ(bands, (number_list{400, 500, 600}));
  ASSERT_TRUE(map.read_ListOfBands_from_map_of_bands(bands, 4));
  EXPECT_EQ(bands, (number_list{800, 900}));
  EXPECT_FALSE(map.read_ListOfBands_from_map_of_bands(bands, 6));
  EXPECT_EQ(shown.last_message(), "Group is not exist!");
  for (std::int32_t clone = 1; clone <= 3; ++clone)
    EXPECT_TRUE(map.control_of_x_clone_border(clone, rows[static_cast<std::size_t>(clone) - 1]));
  EXPECT_EQ(map.clone_borders(0, 2), 4);
  EXPECT_EQ(map.clone_borders(1, 2), 9);
  map.add_ListOfBands_to_side_of_map_of_bands({10, 20}, 1);
  EXPECT_EQ(map.clone_borders(0, 2), 6);
  EXPECT_EQ(map.group_start(2), 3);
  const auto quality = map.position_of_clone_quality(rows[2], 5, 5);
  EXPECT_EQ(quality.n_matches_inside + 10 * quality.n_matches_outside, 2 + 10 * 2);
  EXPECT_EQ(quality.unmatched, (number_list{1000, 1100}));
}

TEST(band_map, stops_in_the_midst_without_a_map) {
  scripted_frame shown;
  band_map_clones clones;
  const std::vector<std::int32_t> numbers(30, 60);
  class_map_of_bands4::simulate_read_clones_from_band_map(numbers, {}, {}, clones);
  for (const int yields : {0, 20, 200}) {
    int n = 0;
    shown.on_yield = [&] {
      shown.frame.stop_requested_set(n >= yields);
      return n++ >= yields;
    };
    class_map_of_bands4 maker(shown.frame, {});
    EXPECT_FALSE(maker.make_all_work(clones, shown.folder)) << yields;
    EXPECT_TRUE(maker.map().empty());
    EXPECT_FALSE(std::filesystem::exists(shown.folder / "band_map.txt"));
    shown.frame.stop_requested_set(false);
  }
}
