#include <cmath>

#include "database/band_statistics.h"
#include "support/database_fixture.h"

using namespace orb_test;

namespace {

class clone_database : public database_fixture {
protected:
  void fill(const std::vector<std::vector<band_value>> &clones, const std::vector<std::string> &names = {}) {
    const auto n = static_cast<std::int32_t>(clones.size());
    database.inicalise_database(frame, n, 1);
    for (clone_number i = 1; i <= n; ++i) {
      database.name_of_clone_set(i, names.empty() ? "C" + std::to_string(i) : names[static_cast<std::size_t>(i) - 1]);
      database.ListOfBands_from_real_database_fast_all_bands_set(i, clones[static_cast<std::size_t>(i) - 1]);
    }
    database.total_number_of_clones_set(n);
  }
  std::vector<std::vector<band_value>> random_clones(random_source &random, int n, int largest) {
    std::vector<std::vector<band_value>> clones(static_cast<std::size_t>(n));
    for (auto &bands : clones) {
      bands.resize(static_cast<std::size_t>(random.number_up_to(25)) - 1);
      for (band_value &band : bands)
        band = random.number_up_to(largest) - 1;
      std::sort(bands.begin(), bands.end());
    }
    return clones;
  }
};

// Each band of a in turn takes the first band of b in range that no earlier one took and that none skipped over: a
// partner that is too low for one band is too low for all later ones.
int slow_common(const std::vector<band_value> &a, const std::vector<band_value> &b, int t,
                const std::function<bool(band_value, band_value)> &counts) {
  std::vector<bool> taken(b.size(), false);
  int common = 0;
  for (const band_value band : a)
    for (std::size_t j = 0; j < b.size(); ++j)
      if (!taken[j] && std::abs(band - b[j]) <= t) {
        taken[j] = true;
        common += counts(band, b[j]);
        break;
      }
  return common;
}

// The three pointers written out step by step over copies that end in a mark.
int slow_common_with_pair(std::vector<band_value> c, std::vector<band_value> a, std::vector<band_value> b, int t) {
  int common = 0;
  const auto drop = [](std::vector<band_value> &list) { list.erase(list.begin()); };
  while (!c.empty() && !a.empty() && !b.empty()) {
    const int da = a[0] - c[0], db = b[0] - c[0];
    if (std::abs(da) > t && std::abs(db) > t) {
      if (da > 0 && db > 0) {
        drop(c);
      } else {
        if (da < 0)
          drop(a);
        if (db < 0)
          drop(b);
      }
    } else {
      ++common;
      drop(c);
      if (std::abs(da) <= t)
        drop(a);
      if (std::abs(db) <= t)
        drop(b);
    }
  }
  return common;
}

} // namespace

TEST_F(clone_database, pair_counters_agree_with_slow_ones) {
  random_source random(5);
  apply_parameters(12, 1, 300);
  for (int round = 0; round < 30; ++round) {
    const auto clones = random_clones(random, 8, round % 2 ? 40 : 300);
    fill(clones);
    ASSERT_TRUE(make_band_statistics(frame, database, usable_values));
    usable_values.create_band_is_not_excluded(frame, 0.2, database, random);
    const auto all = [](band_value, band_value) { return true; };
    const auto usable = [this](band_value x, band_value y) {
      return usable_values.band_is_not_excluded_get(x) && usable_values.band_is_not_excluded_get(y);
    };
    const std::int32_t t = random.number_up_to(15) - 1;
    std::int32_t n1 = -1, n2 = -1, n3 = -1;
    double common = -1;
    for (clone_number i = 1; i <= 8; ++i)
      for (clone_number j = 1; j <= 8; ++j) {
        const auto &a = clones[static_cast<std::size_t>(i) - 1], &b = clones[static_cast<std::size_t>(j) - 1];
        database.number_of_band_overlaps_fast_tolr_index1(i, j, n1, n2, common, t);
        EXPECT_EQ(common, slow_common(a, b, t, all));
        EXPECT_EQ(n1, static_cast<int>(a.size()));
        EXPECT_EQ(n2, static_cast<int>(b.size()));
        database.number_of_band_overlaps_fast_index0(i, j, n1, n2, common);
        EXPECT_EQ(common, slow_common(a, b, 0, all));
        database.number_of_band_overlaps_fast_tolr_index1_JK(i, j, n1, n2, common, t, usable_values);
        EXPECT_EQ(common, slow_common(a, b, t, usable));
        EXPECT_EQ(n1, std::count_if(a.begin(), a.end(), [&](band_value x) { return usable(x, x); }));
        const clone_number k = random.number_up_to(8);
        database.number_of_band_overlaps_fast_tolr_index1_with_pair(k, i, j, n1, n2, n3, common, t);
        EXPECT_EQ(common, slow_common_with_pair(clones[static_cast<std::size_t>(k) - 1], a, b, t));
        EXPECT_EQ(n1, static_cast<int>(a.size())); // of a, not of c
        EXPECT_EQ(n2, static_cast<int>(a.size()));
        EXPECT_EQ(n3, static_cast<int>(b.size()));
      }
  }
}

TEST_F(clone_database, band_frequencies_agree_with_sums_written_out) {
  random_source random(9);
  for (const auto &[t, index] : std::vector<std::pair<int, int>>{{0, 1}, {3, 1}, {12, 1}, {3, 0}, {400, 1}}) {
    apply_parameters(static_cast<std::int16_t>(t), static_cast<std::int16_t>(index), 200);
    auto clones = random_clones(random, 20, 30);
    fill(clones);
    ASSERT_TRUE(make_band_statistics(frame, database, usable_values));
    const int n_positions = database.total_number_of_different_bands_get();
    std::vector<double> plain(static_cast<std::size_t>(n_positions) + 1, 0), summed = plain;
    double n_bands = 0;
    std::size_t fewest = 500;
    for (const auto &bands : clones) {
      for (const band_value band : bands)
        plain[static_cast<std::size_t>(band)] += 1.0 / 20;
      n_bands += static_cast<double>(bands.size());
      fewest = std::min(fewest, bands.size());
    }
    for (int b = 1; b <= n_positions; ++b)
      for (int j = 1; j <= n_positions; ++j)
        if (index == 1 ? std::abs(b - j) <= t : b == j)
          summed[static_cast<std::size_t>(b)] += plain[static_cast<std::size_t>(j)];
    for (int b = 1; b <= n_positions; ++b)
      ASSERT_NEAR(database.frecuency_of_band_in_clones_get(b), summed[static_cast<std::size_t>(b)], 1e-12);
    EXPECT_NEAR(database.frecuency_of_band_in_clones_get(0), n_bands / 20 + plain[0], 1e-12);
    double log_sum = 0, count = 0;
    for (int b = 1; b <= n_positions; b += std::max(t, 1))
      if (summed[static_cast<std::size_t>(b)] > 1e-9)
        log_sum -= std::log(summed[static_cast<std::size_t>(b)]), ++count;
    EXPECT_NEAR(database.mean_log_band_frequency_get(), log_sum / count, 1e-12);
    EXPECT_EQ(usable_values.min_n_different_bands_in_clone_get(), static_cast<int>(fewest));
  }
  band_statistics statistics;
  prepare_band_statistics(database, statistics);
  for (const int count : {7, 3, 0, 0, 0, 7, 3})
    note_number_of_bands(count, statistics);
  find_most_frequent_number_of_bands(statistics);
  EXPECT_EQ(statistics.histogram[0], 3);
  EXPECT_EQ(statistics.min_n_different_bands_in_clone, 0);
}

TEST_F(clone_database, names_are_found_sorted_or_not) {
  random_source random(2);
  for (int round = 0; round < 40; ++round) {
    std::vector<std::string> names;
    for (int i = 0; i < random.number_up_to(12); ++i)
      names.push_back("N" + std::to_string(random.number_up_to(8)));
    fill(std::vector<std::vector<band_value>>(names.size()), names);
    database.clone_name_sorted_is_created_set(false);
    const auto first = [&names](const std::string &name) {
      const auto at = std::find(names.begin(), names.end(), name);
      return at == names.end() ? -1 : static_cast<int>(at - names.begin()) + 1;
    };
    for (int i = 0; i <= 9; ++i)
      EXPECT_EQ(database.clone_number_get("N" + std::to_string(i)), first("N" + std::to_string(i)));
    database.sort_clones_by_name(frame);
    for (int i = 0; i <= 9; ++i) {
      const std::string name = "N" + std::to_string(i);
      number_list all;
      for (std::size_t k = 0; k < names.size(); ++k)
        if (names[k] == name)
          all.add(static_cast<std::int32_t>(k) + 1);
      EXPECT_EQ(database.clone_number_get_with_repeats(name), all); // equal names keep clone order
      const clone_number hit = database.clone_number_get(name);
      EXPECT_EQ(hit < 1, all.empty());
      for (const clone_number clone : all.members())
        EXPECT_EQ(database.nRepeatsCloneName_get(clone), clone == hit ? all.count() : -hit);
    }
  }
  class_DB_of_clones empty;
  empty.sort_clones_by_name(frame);
  EXPECT_EQ(empty.clone_number_get("N1"), -1);
  EXPECT_EQ(empty.name_of_clone_get(-1), "");
}

TEST_F(clone_database, names_in_a_line) {
  fill({{}, {}, {}}, {"abc", "de", "f"});
  const std::vector<std::tuple<std::string, number_list, std::vector<std::string>>> cases{
      {"a;bc", {1}, {}}, {" abc, de;xy ", {1, 2}, {"xy"}}, {"f", {}, {}}, {"f,,de", {}, {"fde"}}, {"", {}, {}}};
  for (const auto &[text, expected, unknown_expected] : cases) {
    number_list clones;
    std::vector<std::string> unknown(1);
    std::int32_t n = 0;
    database.list_of_clones_in_line_get(text, clones, unknown, n);
    EXPECT_EQ(clones, expected) << text;
    EXPECT_EQ(std::vector<std::string>(unknown.begin() + 1, unknown.end()), unknown_expected) << text;
  }
}

TEST_F(clone_database, parameters_and_band_numbers) {
  struct numbering {
    std::int16_t t, index;
    double length;
    std::int32_t number;
    double back;
    std::int32_t n_positions; // of a gel of 3300
  };
  for (const auto &[t, index, length, number, back, n_positions] : std::vector<numbering>{{12, 1, 99.9, 99, 99, 3301},
                                                                                          {7, 0, 99.9, 8, 98, 236},
                                                                                          {0, 0, 99.9, 100, 99, 3301},
                                                                                          {7, 5, 99.9, 99, 99, 3301}}) {
    database.tollerance_parameters_set(t, index);
    EXPECT_EQ(database.BandNumber_for_given_BandLength(length), number);
    EXPECT_EQ(database.BandLength_for_given_BandNumber(number), back);
    database.total_number_of_different_bands_set_by_eff_len(3300);
    EXPECT_EQ(database.total_number_of_different_bands_get(), n_positions);
  }
  EXPECT_EQ(database.index_of_band_type_get(), 1); // index 5 left it
  EXPECT_EQ(database.BandNumber_for_given_BandLength(-1e300), std::numeric_limits<std::int32_t>::min());
}

TEST_F(clone_database, positions_of_the_FPC_scores) {
  database.total_number_of_different_bands_set(1000);
  database.total_number_of_different_bands_FPC_set(90);
  // a = 900, gap 25, quarters of 250: (band - 25 * quarter) / 900 * 90 + 1
  for (const auto &[band, number] :
       std::vector<std::pair<int, int>>{{1, -1}, {30, 2}, {250, 24}, {251, 21}, {1000, 90}, {1001, 89}})
    EXPECT_EQ(database.band_number_FPC_get(frame, band), number) << band;
  fill({{1, 30, 251}, {30}});
  const std::vector<double> frequency = database.create_band_FPC_frequency_in_clones(frame);
  EXPECT_EQ(frequency.size(), 91u);
  EXPECT_EQ(frequency[2], 1);
  EXPECT_EQ(frequency[21], 0.5);
  database.total_number_of_different_bands_set(3);
  EXPECT_THROW(database.band_number_FPC_get(frame, 1), program_end);
}

TEST_F(clone_database, a_very_large_estimate_asks) {
  database.inicalise_database(frame, 140000, 0);
  EXPECT_TRUE(record.questions.empty());
  database.inicalise_database(frame, 140001, 0);
  EXPECT_EQ(record.questions.back(),
            "NB! Estimated number of bands in database is very large: 70000500. We recomed to "
            "set less number, say 70,000,000. Please input maximal number of bands in BAC library:");
}
