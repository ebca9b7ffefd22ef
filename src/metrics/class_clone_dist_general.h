// The fourteen metrics by name, and the band-level comparisons on explicit lists.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

class class_clone_dist_general {
public:
  static constexpr std::int16_t number_distance_index_get() { return 13; } // the highest index
  static constexpr std::int16_t DISTANCE_INDEX_k2_frac_mn_get() { return 0; }
  static constexpr std::int16_t DISTANCE_INDEX_Nof_get() { return 1; }
  static constexpr std::int16_t DISTANCE_INDEX_Lnn_get() { return 2; }
  static constexpr std::int16_t DISTANCE_INDEX_KK2_frac_mn_get() { return 3; }
  static constexpr std::int16_t DISTANCE_INDEX_Sulston_1988_get() { return 4; }
  static constexpr std::int16_t DISTANCE_INDEX_Soderlund_1997_get() { return 5; }
  static constexpr std::int16_t DISTANCE_INDEX_LnnMarkers_get() { return 6; }
  static constexpr std::int16_t DISTANCE_INDEX_Special_get() { return 7; }
  static constexpr std::int16_t DISTANCE_INDEX_LnnSulston_get() { return 8; }
  static constexpr std::int16_t DISTANCE_INDEX_LnnCuted_get() { return 9; }
  static constexpr std::int16_t DISTANCE_INDEX_k2_frac_mn_Markers_get() { return 10; }
  static constexpr std::int16_t DISTANCE_INDEX_k_get() { return 11; }
  static constexpr std::int16_t DISTANCE_INDEX_TagsSulston_get() { return 12; }
  static constexpr std::int16_t DISTANCE_INDEX_Sulston_1988_frec_get() { return 13; }

  static std::string name_of_cutoff_distance(std::int16_t index);
  // -1 when there is no metric of that name.
  static std::int16_t index_of_name(std::string_view name);
  static double standard_cutoff(std::int16_t index); // -1: none
  static bool need_take_band_abundances_into_account_get(std::int16_t index);
  // Empty, or why the metric can only give 0 with what is loaded.
  static std::string why_only_zero(std::int16_t index, bool tables_are_loaded, bool markers_are_loaded);

  // `frecency` functions end the program with "Error!: f=0" on similar bands without a frequency.
  static bool bands_are_similar(process_frame &frame, band_value band_1, band_value band_2, bool want_frequency,
                                double &f, const class_DB_of_clones &database);
  static void number_of_overlaping_for_clones_ListOfBands(process_frame &frame, const number_list &list_1,
                                                          const number_list &list_2, double &weight_1, double &weight_2,
                                                          double &k, double &weighted_k, bool want_weights,
                                                          const class_DB_of_clones &database);
  static void number_of_overlaping_for_clones_no_tollerance_ListOfBands(process_frame &frame, const number_list &list_1,
                                                                        const number_list &list_2, double &k,
                                                                        double &weighted_k, bool want_weights,
                                                                        const class_DB_of_clones &database);
  static double ListOfBands_length_frec_get(process_frame &frame, const number_list &list,
                                            const class_DB_of_clones &database);
  static void update_overlaping(const number_list &list_1, const number_list &list_2, std::vector<bool> &marks_1,
                                std::int32_t &k, const class_DB_of_clones &database);
  // What lies behind in the longer list goes to no output list: deliberate.
  static void create_overlaping_lists_of_bands(const number_list &list_1, const number_list &list_2,
                                               number_list &common, number_list &only_1, number_list &only_2,
                                               const class_DB_of_clones &database);
  static void create_monade_of_band(band_value band, number_list &list, const class_DB_of_clones &database);
  static bool band_is_similar_to_one_of_list(band_value band, const number_list &list, std::int32_t &position,
                                             const class_DB_of_clones &database);
};

} // namespace orb
