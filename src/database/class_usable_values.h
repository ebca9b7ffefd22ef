// What the comparison of a band depends on besides the bands: excluded bands of a jackknife run, the fast flag, the
// class frequencies of the score on classes, and the record of which list each clone lies in.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "frame/settings.h"

namespace orb {

class class_DB_of_clones;

class class_usable_values {
public:
  std::int32_t min_n_different_bands_in_clone_get() const { return min_n_different_bands_in_clone_; }
  void min_n_different_bands_in_clone_set(std::int32_t n) { min_n_different_bands_in_clone_ = n; }
  bool for_FPC_fast_indicator_get() const { return for_FPC_fast_indicator_; }
  void for_FPC_fast_indicator_set(bool fast) { for_FPC_fast_indicator_ = fast; }
  bool JK_on_bands_get() const { return JK_on_bands_; }
  void JK_on_bands_set(bool on) { JK_on_bands_ = on; }

  bool band_is_not_excluded_get(std::int32_t band) const {
    return band_is_not_excluded_[static_cast<std::size_t>(band)] != 0;
  }
  // Excludes `fraction` of the band numbers by chance, among those that occur; switches JK_on_bands on.
  void create_band_is_not_excluded(process_frame &frame, double fraction, const class_DB_of_clones &database,
                                   random_source &random);
  // Frequency classes of all bands; follows each load.
  void inicialize_buffer(const class_DB_of_clones &database);
  // Swaps the database's frequencies with the class frequencies; twice restores them.
  void switch_frecuency_of_band_in_clones_and_band_frec_buffer(class_DB_of_clones &database);
  // Class frequency of a band, for readers that must not swap.
  double band_frec_buffer_get(std::int32_t band) const { return band_frec_buffer_[static_cast<std::size_t>(band)]; }
  // Log terms of the score on classes, from index x on; `upper` is the last index used. See the .cpp for the sum.
  void calculate_all_ln_T_LnnSulston(std::int32_t x, std::int32_t n_max, std::int32_t n_min, std::int32_t &upper,
                                     std::vector<double> &terms) const;

  // Which list each clone lies in. The readers go through the name formats of the settings; unknown names are reported
  // and passed over. Throw file_error.
  void clone_in_lists_clear(process_frame &frame, class_DB_of_clones &database);
  // Empty file names ask. Of a folder all lists with the extension .txt; a file stands for its folder.
  void clone_in_lists_add_list_run(process_frame &frame, const project_settings &settings, class_DB_of_clones &database,
                                   std::filesystem::path file = {});
  void clone_in_lists_add_folder_of_lists(process_frame &frame, const project_settings &settings,
                                          class_DB_of_clones &database, std::filesystem::path file = {});
  // A file of addresses: one list file a line, and behind a tab, when it is there, the number of its clones.
  void clone_in_lists_read(process_frame &frame, const project_settings &settings, class_DB_of_clones &database,
                           std::filesystem::path adresses = {});
  // clone_in_lists.txt of the working folder; nothing unless the record was made for the present clones.
  void clone_in_lists_print(process_frame &frame, const class_DB_of_clones &database) const;
  const std::string &clone_in_lists_get(std::int32_t clone) const { // empty: in none
    static const std::string none;
    return static_cast<std::size_t>(clone) < clone_in_lists_.size() ? clone_in_lists_[static_cast<std::size_t>(clone)]
                                                                    : none;
  }

private:
  std::int32_t clone_in_lists_add_file(process_frame &frame, const project_settings &settings,
                                       const std::filesystem::path &file, class_DB_of_clones &database);

  std::int32_t min_n_different_bands_in_clone_ = 0;
  bool for_FPC_fast_indicator_ = true;
  std::vector<std::uint8_t> band_is_not_excluded_;
  bool JK_on_bands_ = false;
  static constexpr int n_classes_ = 3;
  std::array<double, 4> class_value_{0, 0.1, 0.01, 0.001};
  std::array<std::int32_t, 4> bands_per_class_{};
  std::vector<std::int8_t> class_of_band_;
  std::vector<double> band_frec_buffer_;
  std::vector<std::string> clone_in_lists_;
};

} // namespace orb
