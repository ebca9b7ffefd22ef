// One pair of clones: counts, burial codes, the gate, and the comparisons on lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "metrics/band_merge_lanes.h"
#include "metrics/class_clone_dist_my.h"
#include "metrics/two_merges.h"
#include "support/library_generator.h"
#include "support/scripted_frame.h"

namespace orb {
namespace {

struct library : scripted_frame {
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};

  explicit library(const std::vector<std::vector<band_value>> &clones) {
    database.tollerance_parameters_set(12, 1);
    database.total_number_of_different_bands_set_by_eff_len(5000);
    const auto n = static_cast<std::int32_t>(clones.size());
    database.inicalise_database(frame, n, 500 * n);
    for (std::int32_t i = 1; i <= n; ++i) {
      database.name_of_clone_set(i, "clone" + std::to_string(i));
      database.ListOfBands_from_real_database_fast_all_bands_set(i, clones[static_cast<std::size_t>(i) - 1]);
    }
    database.total_number_of_clones_set(n);
    database.sort_clones_by_name(frame);
    make_band_statistics(frame, database, usable_values);
  }
};

TEST(pair, common_bands_are_a_greedy_matching_with_a_closed_tolerance) {
  library lib({{100, 112, 200}, {112, 124, 188}, {}, {100, 112, 200}});
  class_clone_dist_calc calc(lib.context);
  calc.start_of_distance_calculation(1, 2);
  EXPECT_EQ(calc.x_iid_get(), 3); // 100-112, 112-124, 200-188
  EXPECT_EQ(calc.burring_index_get(0.9), 3);
  calc.start_of_distance_calculation_alternative_tollerance(1, 2, true, 11);
  EXPECT_EQ(calc.x_iid_get(), 1); // only 112-112 is left
  EXPECT_EQ(lib.database.tollerance_get(), 12);
  EXPECT_EQ(lib.database.index_of_band_type_get(), 0);
  calc.start_of_distance_calculation(3, 1);
  EXPECT_EQ(calc.burring_index_get(0.9), 1); // no bands: all of them are common
  EXPECT_EQ(calc.value_k2mn_get(), 0);
  calc.start_of_distance_calculation(1, 3);
  EXPECT_EQ(calc.burring_index_get(0.9), 2);
}

// One list with two others, each common pair by its places.
void expect_two_at_once(const class_DB_of_clones &database, clone_number own, clone_number a, clone_number b,
                        std::int32_t t) {
  std::vector<common_pair> found[2];
  for (auto &one : found)
    one.resize(database.bands_of_clone(own).size() + 1);
  const auto [n_a, n_b] = merge_with_two(database.bands_of_clone(own), database.bands_of_clone(a),
                                         database.bands_of_clone(b), t, found[0].data(), found[1].data());
  found[0].resize(n_a);
  found[1].resize(n_b);
  for (const clone_number other : {a, b}) {
    std::vector<std::pair<band_value, band_value>> expected, given;
    merge_bands(database.bands_of_clone(own), database.bands_of_clone(other), t,
                [&](band_value x, band_value y) { expected.emplace_back(x, y); });
    for (const common_pair &pair : found[other == a ? 0 : 1])
      given.emplace_back(*pair.own, *pair.other);
    ASSERT_EQ(given, expected);
  }
}

TEST(pair, merges_side_by_side_count_as_one_by_one) {
  random_source chance(5);
  for (const std::int32_t axis : {30, 400, 5000}) {
    std::vector<std::vector<band_value>> clones(60);
    for (auto &bands : clones) {
      for (std::int32_t n = chance.number_up_to(120) - 1; n > 0; --n)
        bands.push_back(chance.number_up_to(axis));
      std::sort(bands.begin(), bands.end());
    }
    const library lib(clones);
    const band_merge_lanes lanes(lib.database.band_array(), lib.database.first_band_adress_array(), 60);
    for (const std::int32_t t : {0, 3, 60, 6000})
      for (int round = 0; round < 300; ++round) {
        std::vector<band_merge_lanes::clone_pair> pairs(band_merge_lanes::n_lanes);
        for (auto &[a, b] : pairs) {
          a = chance.number_up_to(60);
          b = chance.number_up_to(60);
        }
        std::int32_t common[band_merge_lanes::n_lanes];
        lanes.count(pairs.data(), t, common);
        for (std::size_t l = 0; l < pairs.size(); ++l) {
          std::int32_t expected = 0;
          merge_bands(lib.database.bands_of_clone(pairs[l].first), lib.database.bands_of_clone(pairs[l].second), t,
                      [&](band_value, band_value) { ++expected; });
          ASSERT_EQ(common[l], expected);
        }
        expect_two_at_once(lib.database, pairs[0].first, pairs[0].second, pairs[1].second, t);
      }
  }
}

TEST(pair, counting_with_weights_weighs_common_bands_by_their_frequency) {
  library lib({{100, 500, 900}, {105, 500, 2000}, {500}});
  class_clone_dist_calc calc(lib.context, true);
  calc.start_of_distance_calculation(1, 2);
  const auto f = [&](band_value band) { return lib.database.frecuency_of_band_in_clones_get(band); };
  EXPECT_EQ(calc.x_iid_get(), 2);
  EXPECT_DOUBLE_EQ(calc.x_fr_get(), -std::log(std::max(f(100), f(105))) - std::log(f(500)));
  EXPECT_DOUBLE_EQ(calc.list_weight2_get(), -std::log(f(105)) - std::log(f(500)) - std::log(f(2000)));
  // class frequencies in place of the real ones: the same as with both swapped
  const double read = calc.minus_log10_p_value_of_clone_overlapping(1, 2, 8);
  const double x_fr = calc.x_fr_get();
  lib.usable_values.switch_frecuency_of_band_in_clones_and_band_frec_buffer(lib.database);
  calc.start_of_distance_calculation(1, 2);
  lib.usable_values.switch_frecuency_of_band_in_clones_and_band_frec_buffer(lib.database);
  EXPECT_EQ(calc.x_fr_get(), x_fr);
  EXPECT_EQ(calc.minus_log10_p_value_of_clone_overlapping_no_clones(0, 8), read);
  lib.database.frecuency_of_band_in_clones_set(500, 0);
  EXPECT_THROW(calc.start_of_distance_calculation(1, 2), program_end);
  EXPECT_EQ(lib.record.messages.back(), "Error!: f=0");
}

TEST(pair, gate_asks_the_net_first) {
  library lib({{100, 500, 900}, {100, 500, 900}, {100, 500, 900}});
  class_net net;
  net.inicializate_net(3, 2);
  net.add_vertex_fast(0);
  net.add_edge_fast(1, 2, 15.0, 0, 1);
  net.add_vertex_fast(0);
  net.add_edge_fast(2, 1, 15.0, 0, 2);
  net.add_vertex_fast(0);
  net.finish_of_adding();
  class_clone_dist_my gate(lib.context, &net);
  double value;
  std::int16_t code;
  bool significant;
  struct {
    const char *what;
    bool use_net, same_metric;
    clone_number a, b;
    double limit, value;
    std::int16_t code;
    bool significant;
  } const cases[] = {
      {"value equal to the cutoff", true, true, 1, 2, 15.0, 15.0, 1, true},
      {"from the other end", true, true, 2, 1, 15.0, 15.0, 2, true},
      {"below the cutoff", true, true, 1, 2, 15.01, 15.0, 1, false},
      {"not in the net: no comparison", true, true, 1, 3, 0, 0, 0, false},
      {"not in the net, another metric", true, false, 1, 3, 0, 0, 0, false},
      {"in the net, another metric", true, false, 1, 2, 1000, 1000, 3, true},
      {"no net", false, true, 1, 3, 1000, 1000, 3, true},
  };
  for (const auto &c : cases) {
    gate.net_private_parameters_set(0, c.limit, 0.9, c.use_net, c.same_metric); // k2mn of equal clones: 1000
    gate.cutoff_and_burring_calculation(c.a, c.b, value, code, significant);
    EXPECT_EQ(value, c.value) << c.what;
    EXPECT_EQ(code, c.code) << c.what;
    EXPECT_EQ(significant, c.significant) << c.what;
    EXPECT_EQ(gate.my_cutoff(c.a, c.b), c.value) << c.what;
    EXPECT_EQ(gate.overlap_is_significant(c.a, c.b), c.significant) << c.what;
  }
  gate.net_private_parameters_set(3, 0, 0.9, false, true);
  EXPECT_EQ(gate.my_cutoff(1, 3), 0); // a metric on abundances: bands that all clones have weigh nothing
  gate.distance_index_set(0);
  EXPECT_EQ(gate.my_cutoff(1, 3), 1000);
}

TEST(pair, comparisons_on_lists) {
  library lib({{100}, {200}, {300}});
  number_list common, only_1, only_2;
  class_clone_dist_general::create_overlaping_lists_of_bands({100, 200, 300, 400}, {110, 250}, common, only_1, only_2,
                                                             lib.database);
  EXPECT_EQ(common, number_list({110}));
  EXPECT_EQ(only_1, number_list({200}));
  EXPECT_EQ(only_2, number_list({250})); // 300 and 400 lie behind the end of the other list
  std::vector<bool> marks;
  std::int32_t k = 0;
  class_clone_dist_general::update_overlaping({100, 200, 300}, {110, 290}, marks, k, lib.database);
  EXPECT_EQ(k, 2);
  EXPECT_EQ(marks, std::vector<bool>({false, true, false, true}));
  number_list near;
  class_clone_dist_general::create_monade_of_band(3, near, lib.database);
  EXPECT_EQ(near, number_list::range(0, 15));
  std::int32_t position = 0;
  EXPECT_TRUE(class_clone_dist_general::band_is_similar_to_one_of_list(150, {100, 140, 155}, position, lib.database));
  EXPECT_EQ(position, 2);
  for (std::int16_t metric = 0; metric <= class_clone_dist_general::number_distance_index_get(); ++metric)
    EXPECT_EQ(class_clone_dist_general::index_of_name(class_clone_dist_general::name_of_cutoff_distance(metric)),
              metric);
}

} // namespace
} // namespace orb
