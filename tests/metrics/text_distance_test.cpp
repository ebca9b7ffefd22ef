// The scores of a pair as a row of a table.
#include <gtest/gtest.h>

#include "database/class_markers.h"
#include "frame/numbers.h"
#include "metrics/class_clone_text_distance.h"
#include "support/library_generator.h"
#include "support/scripted_frame.h"

namespace orb {
namespace {

struct text_library : scripted_frame {
  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{frame, settings, database, usable_values, table};

  text_library() { generate_library(frame, {.n_clones = 60, .bands_in_clone = 30}, database, usable_values); }
};

std::vector<std::string> fields_of(std::string row) {
  std::vector<std::string> fields;
  for (std::size_t tab; (tab = row.find('\t')) != std::string::npos; row.erase(0, tab + 1))
    fields.push_back(row.substr(0, tab));
  fields.push_back(row);
  return fields;
}

TEST(text_distance, formats_choose_the_columns) {
  const std::vector<std::string> names{"Sulston score only", "Sulston & markers", "Sulston and Sulston_frec",
                                       "Lnn, Nof, Sulston", "All known distances"};
  const std::vector<std::string> heads{
      "k\tk_double_tolerance\tSulston_1988\tAbsorption\tweak?",
      "k\tk_double_tolerance\tSulston_1988\tMarkers\tAbsorption\tweak?",
      "k\tk_double_tolerance\tSulston_1988\tSulston_frec\tAbsorption\tweak?",
      "k\tk_double_tolerance\tK\tK/k\tk2/mn\tK2/mn\tNOF\tLnn\tSulston_1988\tSulston_frec\tMarkers\tAbsorption\tweak?",
      "k\tk_double_tolerance\tK\tK/k\tk2/mn\tK2/mn\tNOF\tLnn\tLnnCuted\tSulston_1988\tSulston_frec\tSoderlund_1997\t"
      "LnnSulston\tMarkers\tAbsorption\tweak?"};
  ASSERT_EQ(class_clone_text_distance::table_format_n_text_get(), 5);
  EXPECT_EQ(project_settings().table_format_text, names[0]);
  text_library lib;
  for (std::int32_t format = 0; format < 5; ++format) {
    const auto place = static_cast<std::size_t>(format);
    EXPECT_EQ(class_clone_text_distance::table_format_text_get(format), names[place]);
    EXPECT_EQ(class_clone_text_distance::table_format_of_text(names[place]), format);
    class_clone_text_distance::table_format_select(lib.settings, format);
    lib.usable_values.for_FPC_fast_indicator_set(true);
    EXPECT_EQ(class_clone_text_distance(lib.context, {}).text_of_distance_shapka(),
              heads[std::min<std::size_t>(place, 3)]);
    lib.usable_values.for_FPC_fast_indicator_set(false);
    class_clone_text_distance distance(lib.context, {});
    EXPECT_EQ(distance.text_of_distance_shapka(), heads[place]);
    EXPECT_EQ(fields_of(distance.text_of_distance(1, 2)).size(), fields_of(heads[place]).size());
  }
  EXPECT_EQ(class_clone_text_distance::table_format_text_get(5), "");
  EXPECT_EQ(class_clone_text_distance::table_format_of_text("none"), -1);
}

// Every field against the value operations of a calculator of its own.
TEST(text_distance, rows_hold_the_values_of_the_pair) {
  text_library lib;
  lib.usable_values.for_FPC_fast_indicator_set(false);
  class_clone_text_distance::table_format_select(lib.settings, 4);
  class_markers &markers = lib.database.markers();
  markers.redim_private_arrays(60, 0, 0);
  number_list numbers;
  std::vector<bool> is_new;
  for (clone_number clone = 1; clone <= 60; clone += 2)
    markers.add_clone_with_markers_new(lib.frame, clone, {"", "a", "b"}, 2, numbers, is_new);
  markers.finish_of_adding();
  class_clone_text_distance distance(lib.context, rule_of_metric(4, 6));
  class_clone_dist_calc calc(lib.context, true);
  std::vector<std::string> words_seen;
  for (clone_number a = 1; a <= 60; ++a)
    for (clone_number b = a; b <= 60; b += 3) {
      const std::vector<std::string> row = fields_of(distance.text_of_distance(a, b));
      calc.start_of_distance_calculation_alternative_tollerance(a, b, true, 24);
      const double k2 = calc.x_iid_get();
      const double lnn_sulston = calc.minus_log10_p_value_of_clone_overlapping(a, b, 8);
      calc.start_of_distance_calculation(a, b);
      const double k = calc.x_iid_get(), K = calc.x_fr_get();
      const auto value = [&](std::int16_t j) { return calc.minus_log10_p_value_of_clone_overlapping_no_clones(0, j); };
      const auto text = [](double v) { return number_text(v, 2); };
      const char *const words[] = {"", "buried<", "buried>", "buried="};
      const std::string word = words[calc.burring_index_get(overlap_rule::standard_burying)];
      words_seen.push_back(word);
      EXPECT_EQ(row,
                (std::vector<std::string>{number_text(k, 0), number_text(k2, 0), text(K), text(k > 0 ? K / k : 0),
                                          text(calc.value_k2mn_get()), text(calc.value_kk2mn_get()), "0.00", "0.00",
                                          "0.00", text(value(4)), text(value(13)), text(value(5)), text(lnn_sulston),
                                          a % 2 == 1 && b % 2 == 1 ? "2" : "0", word, value(4) < 6 ? "Weak" : ""}));
      EXPECT_EQ(distance.is_weak_get(4), value(4) < 6);
      EXPECT_EQ(distance.is_weak_get(0), value(0) < 4.5);
      EXPECT_EQ(distance.is_weak_get(13), value(13) < 25);
      EXPECT_FALSE(distance.is_weak_get(5)); // has no cutoff
    }
  for (const char *word : {"", "buried="})
    EXPECT_NE(std::find(words_seen.begin(), words_seen.end(), word), words_seen.end());
  EXPECT_EQ(lib.database.tollerance_get(), 12);
}

TEST(text_distance, weak_is_below_the_cutoff_of_its_metric_whatever_the_columns) {
  text_library lib; // the column of the score only
  class_clone_text_distance distance(lib.context, {});
  EXPECT_FALSE(distance.is_weak_get(14));
  EXPECT_FALSE(distance.is_weak_get(-1));
  class_clone_dist_calc calc(lib.context);
  clone_number a = 1, b = 2;
  while (calc.minus_log10_p_value_of_clone_overlapping(a, b, 0) < 100)
    b = b < 60 ? b + 1 : (++a, a + 1);
  const double shares = calc.minus_log10_p_value_of_clone_overlapping(a, b, 0);
  distance.cutoff_set(0, shares);
  distance.distance_of_pair(a, b);
  EXPECT_FALSE(distance.is_weak_get(0)); // equal is enough
  distance.cutoff_set(0, shares + 0.001);
  const std::string row = distance.text_of_distance(a, b);
  EXPECT_TRUE(distance.is_weak_get(0));
  EXPECT_TRUE(row.ends_with("\tWeak"));
  distance.cutoff_set(4, 0);
  EXPECT_TRUE(distance.text_of_distance(a, b).ends_with("\t"));
}

} // namespace
} // namespace orb
