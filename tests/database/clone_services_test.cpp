#include <cmath>

#include "database/band_statistics.h"
#include "database/class_clone_serv.h"
#include "database/class_markers.h"
#include "frame/class_math1.h"
#include "support/database_fixture.h"

using namespace orb_test;

namespace {

class clone_services : public database_fixture {};

} // namespace

TEST_F(clone_services, names_between_formats) {
  struct translation {
    std::string text;
    int input, output;
    std::string name;
  };
  settings.automatic_name_prefix_length = 2;
  settings.automatic_name_number_column = true;
  for (const auto &[text, input, output, name] :
       std::vector<translation>{{"015-A24", 1, 0, "3B_015_A24"},
                                {"15A24", 2, 0, "3B_015_A24"},
                                {"anything,at.all", 7, 7, "anything,at.all"},
                                {"3B_015_A24xyz", 0, 0, "3B_015_A24"},
                                {"015-A24xyz", 1, 1, "015-A24"},
                                {"RT001C07xyz", 3, 3, "RT001C07"},
                                {"MNEA0021H03xyz", 4, 4, "MNEA0021H03"},
                                {"a_b_c_d_e_f_g_h", 5, 5, "a_b_c_d_e_f_g_h"},
                                {"TaaCsp1BS001A03xyz", 6, 6, "TaaCsp1BS001A03"},
                                {"3B_015_A24", 0, 1, "015-A24"},
                                {"RT001C07", 3, 5, "RT_001_C07"},
                                {"MNEA0021H03", 4, 0, "MNEA0_021_H03"},
                                {"TaaCsp1BS001A03", 6, 3, "1BS001A03"},
                                {"RT001C07", 3, 6, "TaaCspRT001C07"},
                                {"3B.._015_A24", 5, 3, "3B..015A24"},
                                {"3B_015_A24", 0, 7, "A24"},
                                {"015", 1, 1, "015"},
                                {"01", 0, 1, ""},
                                {"A24", 7, 1, "A24"},
                                {"XY12B07", 8, 0, "XY_12_B07"},
                                {"XY", 8, 3, "XY"},
                                {"XYB07", 8, 0, "XY__B07"},
                                {"", 2, 3, "3B000"}})
    EXPECT_EQ(class_clone_serv::extract_clone_name(text, input, output, settings), name) << text << input << output;
  EXPECT_EQ(class_clone_serv::clone_format_example_get(6), "TaaCsp1BS001A03");
  EXPECT_EQ(class_clone_serv::file_format_caption_get(1), "Splitted by symbol with Asc()=10");
}

TEST_F(clone_services, the_automatic_format) {
  struct library {
    std::string files;
    int prefix, end;
    bool column;
  };
  for (const auto &[bytes, prefix, end, column] : std::vector<library>{{"XY12B07\n1\nXY13C01\n", 3, 5, true},
                                                                       {"XY12B07\n1\nXY1B071\n", 3, 0, true},
                                                                       {"XY2B07\n1\nX-13C01\n", 1, 0, false},
                                                                       {"XY12\n1\n", 4, 0, true}}) {
    ASSERT_TRUE(load_sizes(write("a.sizes", bytes)));
    class_clone_serv::automatically_selecting_clone_name_format_start(database, settings);
    EXPECT_EQ(settings.automatic_name_prefix_length, prefix) << bytes;
    EXPECT_EQ(settings.automatic_name_number_end, end) << bytes;
    EXPECT_EQ(settings.automatic_name_number_column, column) << bytes;
  }
}

TEST_F(clone_services, lists_of_bands_in_other_forms) {
  apply_parameters(12, 1, 21);
  number_list list{9, 2, 9, 14};
  class_clone_serv::sorting_list_of_bands(list, database);
  EXPECT_EQ(list, (number_list{2, 9, 14}));
  class_clone_serv::band_presence presence;
  class_clone_serv::transform_ListOfBands_to_BandsPresentence(22, list, presence);
  EXPECT_EQ(class_clone_serv::text_clone_BandsPresentence(22, presence), ".1......1. ...1...... ..");
  EXPECT_EQ(class_clone_serv::text_list_of_bands(number_list{1, 2, 7}), "3: 1 2 7,"); // position against value
  EXPECT_EQ(class_clone_serv::text_list_of_bands_with_real_lengths(list, database), "3\t:\t2.0\t9.0\t14.0");
  ASSERT_TRUE(load_sizes(write("a.sizes", "A b\n3\n7\n-1\n")));
  result_file file(folder / "out.sizes");
  class_clone_serv::add_clone_to_file_with_bands(1, file, database);
  file.commit();
  EXPECT_EQ(file_bytes(folder / "out.sizes"), "A\t2\tGel\r\n3\r\n7\r\n-1\r\n\r\n");
  EXPECT_NEAR(class_clone_serv::freq_band_among_bands_get(class_clone_serv::freq_band_among_clones_get(0.01, 90), 90),
              0.01, 1e-12);
  EXPECT_EQ(class_clone_serv::freq_band_among_clones_get(1.5, 90), 1);
  EXPECT_EQ(class_clone_serv::freq_band_among_bands_get(1, 1), 0.9999);
}

TEST_F(clone_services, excluded_bands) {
  apply_parameters(0, 1, 99);
  ASSERT_TRUE(load_sizes(write("a.sizes", "A\n1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n")));
  random_source random(1);
  usable_values.create_band_is_not_excluded(frame, 0.05, database, random);
  number_list list;
  std::int32_t count = 0;
  class_clone_serv::read_ListOfBands_from_real_database(1, count, list, database, usable_values);
  EXPECT_EQ(count, 5);
  for (const band_value band : list.members())
    EXPECT_TRUE(usable_values.band_is_not_excluded_get(band));
  usable_values.create_band_is_not_excluded(frame, 0.5, database, random); // more than occur
  EXPECT_EQ(record.log.back(), "No band is left to exclude: 10 were, of 50 wanted");
  usable_values.JK_on_bands_set(false);
  class_clone_serv::read_ListOfBands_from_real_database(1, count, list, database, usable_values);
  EXPECT_EQ(count, 10);
  EXPECT_THROW(usable_values.create_band_is_not_excluded(frame, 0.9, database, random), program_end);
  EXPECT_EQ(last_message(), "Too mach bands are excluded!");
}

TEST_F(clone_services, frequency_classes_and_their_log_terms) {
  apply_parameters(0, 1, 30);
  ASSERT_TRUE(load_sizes(write("a.sizes", "A\n1\n2\n3\n-1\nB\n2\n-1\n")));
  const std::vector<double> before = database.frecuency_of_band_in_clones_array();
  usable_values.switch_frecuency_of_band_in_clones_and_band_frec_buffer(database);
  EXPECT_EQ(database.frecuency_of_band_in_clones_get(2), 0.1);
  EXPECT_EQ(database.frecuency_of_band_in_clones_get(9), 0.001); // below all classes: the last one
  usable_values.switch_frecuency_of_band_in_clones_and_band_frec_buffer(database);
  EXPECT_EQ(database.frecuency_of_band_in_clones_array(), before);
  // 3 bands of class 1, none of class 2, 28 of class 3; the sum over all tuples, written out.
  const double d = 3 * 0.1 + 28 * 0.001;
  const auto chance = [&](double value, int n) { return 1 - std::pow(1 - value / d, n); };
  const double p1 = chance(0.1, 5), p2 = chance(0.01, 5), p3 = chance(0.001, 5);
  const double rest = 1 - (0.1 * p1 + 0.01 * p2 + 0.001 * p3) / 31;
  double expected = 0, got = 0;
  // by the toolbox's rule for factorials, in which 0! is e
  const auto factorial = [](int n) { return std::exp(class_math1::log_n_factorial(n)); };
  for (int m1 = 0; m1 <= 3; ++m1)
    for (int m3 = 0; m1 + m3 <= 4; ++m3)
      if (m1 * std::log(10) + m3 * std::log(1000) >= 6)
        expected += factorial(4) / factorial(m1) / factorial(0) / factorial(m3) / factorial(4 - m1 - m3) *
                    std::pow(p1, m1) * std::pow(p3, m3) * std::pow(rest, 4 - m1 - m3);
  std::int32_t upper = 0;
  std::vector<double> terms;
  usable_values.calculate_all_ln_T_LnnSulston(6, 5, 4, upper, terms);
  for (std::int32_t i = 6; i <= upper; ++i)
    got += std::exp(terms[static_cast<std::size_t>(i)]);
  EXPECT_NEAR(got, expected, 1e-12);
}

TEST_F(clone_services, which_list_a_clone_lies_in) {
  ASSERT_TRUE(load_sizes(write("a.sizes", "B\n1\nA\n2\nC\n3\n")));
  write("l/one.txt", "A, X\nB");
  write("l/two.txt", "C");
  write("adresses", "l/one.txt\t3\nl/two.txt\t2\n");
  book.add({"Open file adresses of clones in lists", (folder / "adresses").string(), false});
  usable_values.clone_in_lists_read(frame, settings, database);
  EXPECT_EQ(record.messages,
            (std::vector<std::string>{"Unknown clone 'X' (line 1)", "Incorrect number of clones in list! 2=/=1"}));
  usable_values.clone_in_lists_print(frame, database);
  EXPECT_EQ(file_bytes(folder / "clone_in_lists.txt"), "A\tone\r\nB\tone\r\nC\ttwo\r\n");
  usable_values.clone_in_lists_clear(frame, database);
  book.add({"Open any file from the folder", (folder / "l/two.txt").string(), false});
  usable_values.clone_in_lists_add_folder_of_lists(frame, settings, database);
  EXPECT_EQ(usable_values.clone_in_lists_get(1), "one");
}

TEST_F(clone_services, markers_of_clones) {
  ASSERT_TRUE(load_sizes(write("a.sizes", "A\n1\nB\nC\n")));
  class_markers &markers = database.markers();
  std::int32_t common = -1;
  markers.number_of_common_markers(1, 2, common);
  EXPECT_EQ(common, 0);
  markers.redim_private_arrays(3, 10, 2000000000); // counts are hints
  number_list numbers;
  std::vector<bool> is_new;
  markers.add_clone_with_markers_new(frame, 2, {"", "m1", "m2", "m3"}, 3, numbers, is_new);
  markers.add_clone_with_markers_new(frame, 1, {"", "m4", "m3", "m1"}, 3, numbers, is_new);
  EXPECT_EQ(numbers, (number_list{4, 3, 1}));
  EXPECT_EQ(is_new, (std::vector<bool>{false, true, false, false}));
  markers.add_clone_with_markers_new(frame, 9, {"", "m9"}, 1, numbers, is_new); // no such clone
  markers.finish_of_adding();
  markers.number_of_common_markers(1, 2, common);
  EXPECT_EQ(common, 2);
  EXPECT_EQ(markers.total_number_of_markers_get(), 4);
  EXPECT_EQ(markers.n_clones_with_markers_get(), 2);
  EXPECT_EQ(markers.list_of_clones_of_marker_get(3), (number_list{2, 1}));
  markers.list_of_markers_in_clone_get(1, numbers);
  EXPECT_EQ(numbers, (number_list{1, 3, 4}));
  markers.list_of_markers_in_clone_get(3, numbers);
  EXPECT_EQ(numbers.count(), 0);
  markers.position_of_marker_set(4, "1A");
  markers.position_of_marker_set(1, "2B");
  std::string zones;
  markers.string_of_zones(number_list{3, 1, 2}, zones);
  EXPECT_EQ(zones, "Zones of markers:\t2B\t1A");
  markers.print_marker_presence_for_list_of_clones(frame, database, number_list{2, 3, 1}, 3, {}, "x");
  EXPECT_EQ(file_bytes(folder / "Consec_markers_x.txt"), "B\tm1\tm2\tm3\t\r\nC\t\t\t\t\r\nA\tm1\t\tm3\tm4\r\n");
  std::vector<bool> present;
  markers.create_marker_presence_for_clone_and_list_of_markers(frame, 1, number_list{4, 2, 1}, present);
  EXPECT_EQ(present, (std::vector<bool>{false, true, false, true}));
  EXPECT_EQ(last_message(), "Marker m3 of clone 1 is not in list_of_markers()");
  std::vector<std::string> names{"", "m2", "zz"};
  std::int32_t n = 1;
  markers.update_array_marker_name_by_markers_presented_in_clone(2, names, n);
  EXPECT_EQ(names, (std::vector<std::string>{"", "m2", "m1", "m3"}));
  markers.create_marker_presence_in_list_of_marker_names(frame, 2, names, n, present);
  EXPECT_EQ(present, (std::vector<bool>{false, true, true, true}));
  ASSERT_TRUE(load_sizes(write("b.sizes", "A\n1\n")));
  EXPECT_EQ(database.markers().total_number_of_markers_get(), 0); // a load begins with no markers
}
