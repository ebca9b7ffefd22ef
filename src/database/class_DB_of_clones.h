// The one store of the fingerprint library: names and ordered bands of all clones, and the parameters with which
// bands are compared. Clones are addressed by number, 1 to total_number_of_clones, in load order.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/library_parameters.h"
#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

class class_FPCto_import; // the contig registry
class class_markers;
class class_usable_values;

class class_DB_of_clones {
public:
  class_DB_of_clones();
  ~class_DB_of_clones();
  class_DB_of_clones(class_DB_of_clones &&) noexcept;
  class_DB_of_clones &operator=(class_DB_of_clones &&) noexcept;

  static constexpr std::int32_t MAX_number_of_bands_in_clone_get() { return 500; }
  static constexpr double STANDARD_max_band_length_get() { return 20000.0; }

  // Names and lookup.
  std::int32_t total_number_of_clones_get() const { return total_number_of_clones_; }
  void total_number_of_clones_set(std::int32_t n) { total_number_of_clones_ = n; }
  // Empty for -1.
  const std::string &name_of_clone_get(clone_number clone) const;
  // Leaves the sorted index as it is: the caller sorts again.
  void name_of_clone_set(clone_number clone, std::string name);
  std::vector<std::string> create_list_of_all_clone_names() const; // 0..n, element 0 empty
  // -1 when there is none. Binary search once sorted (any one of equal names), else the first in order.
  clone_number clone_number_get(std::string_view name) const;
  // All clones of the name, in sorted order; count 0 when there is none. Needs the sorted index.
  number_list clone_number_get_with_repeats(std::string_view name) const;
  // 1 for a unique name; k > 1 at the one clone that speaks for a name that occurs k times; minus that clone's number
  // at the others.
  std::int32_t nRepeatsCloneName_get(clone_number clone) const;
  bool IsDBContainRepeatsCloneNames_get() const { return IsDBContainRepeatsCloneNames_; }
  const std::string &clone_name_sorted_get(std::int32_t position) const;
  clone_number clone_name_sorted_initial_adress_get(std::int32_t position) const;
  bool clone_name_sorted_is_created_get() const { return clone_name_sorted_is_created_; }
  void clone_name_sorted_is_created_set(bool created) { clone_name_sorted_is_created_ = created; }
  // Sorts, counts repeated names, reports them in a message and in repeats.txt of the working folder.
  void sort_clones_by_name(process_frame &frame);
  // Names separated by ",", ";" or blanks; a name is closed only when it has at least 2 characters.
  void list_of_clones_in_line_get(std::string_view text, number_list &clones, std::vector<std::string> &unknown_names,
                                  std::int32_t &n_unknown) const;

  // Bands.
  // Empties the store and makes room. clones 0: max_number_of_real_clones; bands 0: clones * 500, with a question when
  // that is very large. Room is taken as bands come, so a wrong estimate costs nothing.
  void inicalise_database(process_frame &frame, std::int32_t clones, std::int64_t bands);
  // Takes room at once for contents that are known to come.
  void room_for(std::int32_t clones, std::int64_t bands);
  band_adress first_band_adress_get(clone_number clone) const {
    return first_band_adress_[static_cast<std::size_t>(clone)];
  }
  std::int32_t number_of_bands_in_clone_get(clone_number clone) const {
    return first_band_adress_[static_cast<std::size_t>(clone) + 1] -
           first_band_adress_[static_cast<std::size_t>(clone)];
  }
  // Clones must be set in ascending order.
  void number_of_bands_in_clone_set(clone_number clone, std::int32_t count);
  band_value band_index_or_length_Lng_for_band_of_clone_get(clone_number clone, std::int32_t position) const;
  void band_index_or_length_Lng_for_band_of_clone_set(clone_number clone, std::int32_t position, band_value value);
  void ListOfBands_from_real_database_fast_all_bands_get(clone_number clone, std::int32_t &count,
                                                         number_list &list) const;
  void ListOfBands_from_real_database_fast_all_bands_set(clone_number clone, std::int32_t count,
                                                         const number_list &list);
  void ListOfBands_from_real_database_fast_all_bands_set(clone_number clone, std::span<const band_value> bands);
  void killbands();
  // False once `killbands` gave them back.
  bool bands_are_there() const {
    return band_index_or_length_Lng_.size() >
           static_cast<std::size_t>(first_band_adress_get(total_number_of_clones_ + 1));
  }
  // The bands of a clone in the flat array, ascending.
  std::span<const band_value> bands_of_clone(clone_number clone) const;
  // The flat arrays themselves, for the pair kernels: bands from address 1, and the first address of each clone
  // (1..n+1). One spare element stands behind the last band.
  const band_value *band_array() const { return band_index_or_length_Lng_.data(); }
  const band_adress *first_band_adress_array() const { return first_band_adress_.data(); }
  band_adress next_free_band_adress_get() const { return next_free_band_adress_; }
  void next_free_band_adress_set(band_adress next) { next_free_band_adress_ = next; }

  // Parameters.
  // Tolerance, gel length, numbers of band positions and capacity of another database, as a load keeps them.
  void parameters_from(const class_DB_of_clones &other);
  void tollerance_parameters_set(std::int16_t t, std::int16_t index);
  std::int16_t tollerance_get() const { return tollerance_; }
  std::int16_t taking_tollerance_into_account_index_get() const { return taking_tollerance_into_account_index_; }
  std::int16_t index_of_band_type_get() const { return index_of_band_type_; }
  void index_of_band_type_set(std::int16_t type) { index_of_band_type_ = type; }
  double max_band_length_get() const { return max_band_length_; }
  void max_band_length_set(double length) { max_band_length_ = length; }
  double eff_len_get() const { return max_band_length_; }
  void min_and_max_band_length_set_STANDARD() { max_band_length_ = STANDARD_max_band_length_get(); }
  std::int32_t total_number_of_different_bands_get() const { return total_number_of_different_bands_; }
  void total_number_of_different_bands_set(std::int32_t n) { total_number_of_different_bands_ = n; }
  std::int32_t total_number_of_different_bands_FPC_get() const { return total_number_of_different_bands_FPC_; }
  void total_number_of_different_bands_FPC_set(std::int32_t n) { total_number_of_different_bands_FPC_ = n; }
  void total_number_of_different_bands_set_by_eff_len(double length);
  std::int32_t max_number_of_real_clones_get() const { return max_number_of_real_clones_; }
  void max_number_of_real_clones_set(std::int32_t n) { max_number_of_real_clones_ = n; }
  bool contigs_are_specified_get() const { return contigs_are_specified_; }
  void contigs_are_specified_set(bool specified) { contigs_are_specified_ = specified; }
  const std::string &database_title_get() const { return database_title_; }
  void database_title_set(std::string title) { database_title_ = std::move(title); }
  std::int16_t database_spare_index_get() const { return database_spare_index_; }
  void database_spare_index_set(std::int16_t index) { database_spare_index_ = index; }
  std::int32_t BandNumber_for_given_BandLength(double length) const;
  double BandLength_for_given_BandNumber(std::int32_t number) const;

  // Frequencies, by band number 0..total_number_of_different_bands.
  void frecuency_of_band_in_clones_inicializate();
  double frecuency_of_band_in_clones_get(std::int32_t band) const {
    return frecuency_of_band_in_clones_[static_cast<std::size_t>(band)];
  }
  void frecuency_of_band_in_clones_set(std::int32_t band, double value) {
    frecuency_of_band_in_clones_[static_cast<std::size_t>(band)] = value;
  }
  std::vector<double> &frecuency_of_band_in_clones_array() { return frecuency_of_band_in_clones_; }
  const std::vector<double> &frecuency_of_band_in_clones_array() const { return frecuency_of_band_in_clones_; }
  double mean_log_band_frequency_get() const { return mean_log_band_frequency_; }
  void mean_log_band_frequency_set(double mean) { mean_log_band_frequency_ = mean; }
  std::int32_t band_number_FPC_get(process_frame &frame, std::int32_t band) const;
  std::vector<double> create_band_FPC_frequency_in_clones(process_frame &frame) const; // 1..N_FPC

  // Common bands of a pair (greedy merge of two ascending lists; each band is used once).
  void number_of_band_overlaps_fast_tolr_index1(clone_number clone_1, clone_number clone_2, std::int32_t &n_bands_1,
                                                std::int32_t &n_bands_2, double &common, std::int32_t t) const;
  void number_of_band_overlaps_fast_tolr_index1_JK(clone_number clone_1, clone_number clone_2, std::int32_t &n_bands_1,
                                                   std::int32_t &n_bands_2, double &common, std::int32_t t,
                                                   const class_usable_values &usable_values) const;
  // Bands of clone c that match a band of a or of b. The first two counts are both the number of bands of a, the third
  // that of b: deliberate.
  void number_of_band_overlaps_fast_tolr_index1_with_pair(clone_number c, clone_number a, clone_number b,
                                                          std::int32_t &count_1, std::int32_t &count_2,
                                                          std::int32_t &count_3, double &common, std::int32_t t) const;
  void number_of_band_overlaps_fast_index0(clone_number clone_1, clone_number clone_2, std::int32_t &n_bands_1,
                                           std::int32_t &n_bands_2, double &common) const;

  // Owned beside the clones. The registry is made by the session; the database only hands it out.
  class_markers &markers() { return *markers_; }
  const class_markers &markers() const { return *markers_; }
  const std::shared_ptr<class_FPCto_import> &contigs() const { return contigs_; }
  void contigs_set(std::shared_ptr<class_FPCto_import> registry) { contigs_ = std::move(registry); }

private:
  void room_for_bands_in_use();
  void note_repeated_names(process_frame &frame, std::span<const std::int32_t> runs);
  std::int32_t clone_name_sorted_find(std::string_view name) const; // -1 when there is none

  std::vector<double> frecuency_of_band_in_clones_;
  double mean_log_band_frequency_ = 0;
  std::int32_t total_number_of_different_bands_ = static_cast<std::int32_t>(library_parameters{}.gel_length);
  std::int32_t max_number_of_real_clones_ = library_parameters{}.max_n_clones;
  bool IsDBContainRepeatsCloneNames_ = false;
  std::vector<std::int32_t> nRepeatsCloneName_;
  std::string database_title_;
  std::int32_t total_number_of_clones_ = 0;
  std::int16_t database_spare_index_ = 0;
  double max_band_length_ = library_parameters{}.gel_length;
  std::int16_t tollerance_ = library_parameters{}.tolerance;
  std::int16_t taking_tollerance_into_account_index_ = library_parameters{}.tolerance_index;
  bool clone_name_sorted_is_created_ = false;
  band_adress next_free_band_adress_ = 0;
  std::int32_t total_number_of_different_bands_FPC_ = library_parameters{}.n_bands;
  std::int16_t index_of_band_type_ = 0;
  bool contigs_are_specified_ = false;
  std::vector<std::string> name_of_clone_;
  std::vector<std::string> clone_name_sorted_;
  std::vector<clone_number> clone_name_sorted_initial_adress_;
  std::vector<band_value> band_index_or_length_Lng_;
  std::vector<band_adress> first_band_adress_;
  std::unique_ptr<class_markers> markers_;
  std::shared_ptr<class_FPCto_import> contigs_;
};

// CRC-32 over the number of clones, names, band addresses, bands and the kind of bands: two libraries with the same
// checksum give the same nets. Title, gel length and number of bands on the gel don't enter.
std::uint32_t library_checksum(const class_DB_of_clones &database);

} // namespace orb
