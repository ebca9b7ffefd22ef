// Parameters proposed from fingerprints: against what a library was made with, and against all pairs.
#include <gtest/gtest.h>

#include "metrics/band_merge.h"
#include "net/band_scale.h"
#include "net/parameter_proposals.h"
#include "net/reading_spread.h"
#include "support/net_fixture.h"

namespace {

using namespace orb;

parameter_proposals proposed(const generated_library &wanted) {
  net_fixture made(wanted);
  return proposals_of(made.database);
}

// Where bands are few for the axis and errors even within +-e, so that the difference of two is a triangle: chance is
// rare, and little less than all readings tell most.
double tolerance_of_even_errors(double e) {
  return 2 * e * (1 - std::sqrt(0.02));
}

TEST(proposals, find_what_a_library_was_made_with) {
  for (const std::int32_t error : {2, 7, 14}) {
    generated_library wanted;
    wanted.n_clones = 250;
    wanted.bands_in_clone = 50;
    wanted.coverage = 8;
    wanted.measuring_error = error;
    wanted.tolerance = 30; // of no importance
    const parameter_proposals found = proposed(wanted);
    const double expected = tolerance_of_even_errors(error + 0.5);
    EXPECT_NEAR(found.tolerance->value, expected, 0.15 * expected + 1) << error;
    EXPECT_EQ(found.tolerance->how_sure, certainty::well);
    EXPECT_EQ(found.gel_length->value, 60000);
    EXPECT_NEAR(found.depth->value, 8, 2.5);
    EXPECT_EQ(found.preset->value, error == 2 ? 5 : 4);
  }
}

TEST(proposals, keep_to_what_is_settled_and_to_numbers_of_bins) {
  generated_library wanted;
  wanted.n_clones = 200;
  net_fixture made(wanted);
  const parameter_proposals free = proposals_of(made.database);
  const parameter_proposals wide = proposals_of(made.database, {.tolerance = 60, .n_bands = {}});
  EXPECT_EQ(wide.tolerance->value, 60);
  EXPECT_LT(wide.n_bands.value, 0.5 * free.n_bands.value);
  // positions that aren't there make scores too high, and the cutoff has to make up for it
  const parameter_proposals fine = proposals_of(made.database, {.tolerance = 60, .n_bands = 5000});
  EXPECT_GT(fine.cutoff.value, wide.cutoff.value + 3);
  EXPECT_NEAR(fine.least_overlap.value, wide.least_overlap.value, 16);
  wanted.bin_numbers = true;
  const parameter_proposals bins = proposed(wanted);
  EXPECT_FALSE(bins.tolerance || bins.gel_length || bins.preset);
  EXPECT_NEAR(bins.n_bands.value, 60000.0 / 24, 300);
}

// No two clones have anything in common: of all pairs of many such libraries hardly one reaches the cutoff.
TEST(proposals, the_cutoff_is_beyond_chance_also_where_bands_lie_close) {
  for (const auto &[n_bands, skewed] : {std::pair{40, false}, {40, true}, {15, false}}) {
    generated_library wanted;
    wanted.n_clones = 600;
    wanted.bands_in_clone = n_bands;
    wanted.coverage = 0.02; // a genome that clones hardly ever share a place of
    wanted.gel_length = 3300;
    wanted.skewed = skewed;
    net_fixture made(wanted);
    const parameter_proposals found = proposals_of(made.database, {.tolerance = 7, .n_bands = {}});
    clone_bands clones(made.database);
    clones.t = 7;
    band_scale scale = band_scale_of(clones, 5);
    scale.n_positions = found.n_bands.value;
    std::int64_t above = 0, near = 0;
    for (clone_number a = 1; a <= clones.n; ++a)
      for (clone_number b = a + 1; b <= clones.n; ++b) {
        const double score = scale.score(common_bands(clones.of(a), clones.of(b), 7), clones.count(a), clones.count(b));
        above += score >= found.cutoff.value;
        near += score >= found.cutoff.value - 4;
      }
    EXPECT_LE(above, wanted.n_clones * wanted.n_clones * 0.02 / 100) << skewed;
    // for 0.01 false ones here 100; scores of skewed bands fall slowly; a cutoff by positions alone is too high
    EXPECT_TRUE(near > (skewed ? 0 : 60) && near < 200) << n_bands << ' ' << near;
    EXPECT_EQ(found.preset->value, 1);
  }
}

// A step asks for as many bands more as the usual one does of the score that is usual for such data.
TEST(proposals, a_step_is_worth_as_many_bands_as_usual) {
  struct data {
    library_parameters fields;
    double cutoff;
    std::int32_t n, usual_positions;
  };
  for (const data &of : {data{{12, 1, 60000, 2250}, 15, 100, 2250}, data{{16, 1, 60000, 1100}, 9, 100, 2250},
                         data{{5, 1, 3300, 170}, 9, 28, 236}, data{{5, 1, 60000, 1500}, 9, 100, 6000}}) {
    band_scale here, usual;
    here.n_positions = of.fields.n_bands;
    usual.n_positions = of.usual_positions;
    const auto least = [&](const band_scale &scale, double score) {
      std::int32_t k = 1;
      while (k < of.n && scale.score(k, of.n, of.n) < score)
        ++k;
      return k;
    };
    const double step = cutoff_step_for(of.cutoff, of.fields, of.n);
    const std::int32_t k = least(here, of.cutoff), more = least(usual, usual.score(k, of.n, of.n) + 3) - k;
    EXPECT_NEAR(least(here, here.score(k, of.n, of.n) + step) - k, more, 1) << of.fields.n_bands;
    EXPECT_GT(more, 1);
    EXPECT_EQ(step == 3, of.fields.n_bands == of.usual_positions) << step;
  }
}

TEST(proposals, tolerance_needs_readings_above_chance) {
  generated_library wanted;
  wanted.n_clones = 50;
  const net_fixture made(wanted);
  const band_places places(made.database);
  band_distances peak(60);
  for (std::size_t d = 0; d <= 60; ++d)
    peak.alike[d] = 100 + 200 * (d % 3 == 0), peak.strange[d] = 2 * peak.alike[d]; // a comb, as of whole base pairs
  EXPECT_EQ(tolerance_by_distances(peak, places, 100).tolerance, 0);
  for (std::size_t d = 0; d < 10; ++d)
    peak.alike[d] += 500;
  const reading_spread found = tolerance_by_distances(peak, places, 100);
  EXPECT_EQ(found.tolerance, 9); // all readings; behind them is only chance
  EXPECT_EQ(found.n_readings, 5000);
  const auto with_far = [&](std::int64_t each) {
    for (std::size_t d = 10; d < 14; ++d)
      peak.alike[d] += each;
    return tolerance_by_distances(peak, places, 100).tolerance;
  };
  EXPECT_EQ(with_far(4), 9);   // three in a thousand readings don't pay for their chance
  EXPECT_EQ(with_far(46), 13); // four in a hundred do
  band_distances few(60);
  few.alike[3] = 200;
  EXPECT_EQ(tolerance_by_distances(few, places, 100).tolerance, 0);
}

// A pair of fingerprints of one name says more than clones that happen to overlap; one name on two clones says nothing.
TEST(proposals, fingerprints_of_one_name_come_first) {
  generated_library wanted;
  wanted.n_clones = 60;
  wanted.coverage = 0.1;
  wanted.n_names = 30;
  net_fixture mistaken(wanted);
  EXPECT_FALSE(spread_of_readings(mistaken.database).of_one_name);
  net_fixture made(wanted);
  class_DB_of_clones twice;
  twice.inicalise_database(made.frame, 60, 60 * 500);
  for (clone_number clone = 1; clone <= 60; ++clone) {
    std::vector<band_value> bands;
    for (const band_value band : made.database.bands_of_clone((clone + 1) / 2))
      bands.push_back(band + (clone % 2) * 2);
    twice.name_of_clone_set(clone, "A" + std::to_string(1000 + (clone + 1) / 2));
    twice.ListOfBands_from_real_database_fast_all_bands_set(clone, bands);
  }
  twice.total_number_of_clones_set(60);
  twice.sort_clones_by_name(made.frame);
  const reading_spread found = spread_of_readings(twice);
  EXPECT_TRUE(found.of_one_name);
  EXPECT_EQ(found.n_pairs, 30);
  EXPECT_EQ(found.tolerance, 2);
}

} // namespace
