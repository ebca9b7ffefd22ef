// Services around one clone: its list of bands in other forms, the record of it in a fingerprint file, and the
// translation of its name between the naming schemes of plate libraries. Lists of bands have the count in element 0.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "frame/files.h"
#include "frame/lists.h"
#include "frame/settings.h"

namespace orb {

class class_DB_of_clones;
class class_usable_values;

class class_clone_serv {
public:
  // One flag a band number, 1..n_bands (element 0 unused). Bands outside of that range have no flag.
  using band_presence = std::vector<std::uint8_t>;

  static void transform_ListOfBands_to_BandsPresentence(std::int32_t n_bands, const number_list &list,
                                                        band_presence &presence);
  static void transform_BandsPresentence_to_ListOfBands(std::int32_t n_bands, const band_presence &presence,
                                                        number_list &list);
  // Ascending, without equal bands; bands outside of the database's 1..N are lost on the way.
  static void sorting_list_of_bands(number_list &list, const class_DB_of_clones &database);

  // "1" for a present band and "." for an absent one, with a blank after every 10.
  static std::string text_clone_BandsPresentence(std::int32_t n_bands, const band_presence &presence);
  // Count, ":", the bands with a blank in front. A comma follows a band whose position in the list is below its value:
  // deliberately not a comparison with the count.
  static std::string text_list_of_bands(const number_list &list);
  // Count, tab, ":", then each band's length in the format "0.0", each after a tab.
  static std::string text_list_of_bands_with_real_lengths(const number_list &list, const class_DB_of_clones &database);

  // All bands of the clone, or only those that are not excluded while JK_on_bands is on. Allocates only when `list`
  // is too small.
  static void read_ListOfBands_from_real_database(clone_number clone, std::int32_t &count, number_list &list,
                                                  const class_DB_of_clones &database,
                                                  const class_usable_values &usable_values);
  static void print_ListOfBands_to_real_database(clone_number clone, const number_list &list,
                                                 class_DB_of_clones &database);
  // Sum of minus ln f over the clone's bands, f the frequency of the band among clones. Bands of frequency 0 add
  // nothing.
  static double weighted_number_of_bands_in_clone(clone_number clone, const class_DB_of_clones &database);
  // Name, tab, count, tab, "Gel"; the bands one a line; "-1"; an empty line.
  static void add_clone_to_file_with_bands(clone_number clone, result_file &file, const class_DB_of_clones &database);

  // Clone name formats 0..8; `settings` holds the values of the automatic format 8.
  static constexpr std::int32_t n_clone_formats_get() { return 9; }
  static std::string clone_format_example_get(std::int32_t format);
  static constexpr std::int32_t n_file_format_caption_get() { return 2; }
  static std::string file_format_caption_get(std::int32_t index);
  // The name `text` of format `input` in format `output`. Parts that the text is too short for are empty.
  static std::string extract_clone_name(std::string_view text, std::int32_t input, std::int32_t output,
                                        const project_settings &settings);
  // Finds the common prefix and the number column of all names and keeps them in the settings.
  static void automatically_selecting_clone_name_format_start(const class_DB_of_clones &database,
                                                              project_settings &settings);

  // Chance that a clone of m bands shows a band of frequency f among bands, 1 - (1 - f)^m; 0 and 1 outside of 0..1.
  static double freq_band_among_clones_get(double f, double mean_bands);
  // The inverse: 1 - (1 - f)^(1/m); a frequency of 1 and more counts as 0.9999.
  static double freq_band_among_bands_get(double f, double mean_bands);
};

} // namespace orb
