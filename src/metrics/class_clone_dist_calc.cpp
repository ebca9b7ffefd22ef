#include "metrics/class_clone_dist_calc.h"

#include <algorithm>
#include <utility>

#include "database/class_clone_serv.h"
#include "database/class_markers.h"
#include "metrics/band_frequencies.h"

namespace orb {

void class_clone_dist_calc::start_of_distance_calculation(clone_number clone_1, clone_number clone_2) {
  start_of_distance_calculation_alternative_tollerance(clone_1, clone_2, false, 0);
}

void class_clone_dist_calc::start_of_distance_calculation_alternative_tollerance(clone_number clone_1,
                                                                                 clone_number clone_2, bool alternative,
                                                                                 std::int16_t alternative_t) {
  const class_DB_of_clones &database = context_->database;
  clone_1_ = clone_1;
  clone_2_ = clone_2;
  const std::int16_t index = database.taking_tollerance_into_account_index_get();
  const bool bins = database.index_of_band_type_get() != 0;
  if (!alternative)
    count_common_bands({database.tollerance_get(), index, bins}, weights_, false);
  else // the other tolerance is as if it were set in the database, where the index says what bands hold
    count_common_bands({alternative_t, index, index == 0 || (index != 1 && bins)}, weights_, false);
}

void class_clone_dist_calc::count_common_bands(const band_comparison &how, bool weights, bool class_frequencies) {
  const class_DB_of_clones &database = context_->database;
  counts_.weight1 = counts_.weight2 = 0;
  if (weights) {
    count_with_weights(how, class_frequencies);
  } else {
    if (how.index <= 0)
      database.number_of_band_overlaps_fast_index0(clone_1_, clone_2_, counts_.n1, counts_.n2, counts_.x_iid);
    else if (context_->usable_values.JK_on_bands_get())
      database.number_of_band_overlaps_fast_tolr_index1_JK(clone_1_, clone_2_, counts_.n1, counts_.n2, counts_.x_iid,
                                                           how.tolerance, context_->usable_values);
    else
      database.number_of_band_overlaps_fast_tolr_index1(clone_1_, clone_2_, counts_.n1, counts_.n2, counts_.x_iid,
                                                        how.tolerance);
    counts_.x_fr = counts_.x_iid;
  }
  const double most = database.total_number_of_different_bands_get();
  counts_.x_iid = std::min(counts_.x_iid, most);
  counts_.x_fr = std::min(counts_.x_fr, most);
}

void class_clone_dist_calc::count_with_weights(const band_comparison &how, bool class_frequencies) {
  const class_DB_of_clones &database = context_->database;
  class_clone_serv::read_ListOfBands_from_real_database(clone_1_, counts_.n1, list_1_, database,
                                                        context_->usable_values);
  class_clone_serv::read_ListOfBands_from_real_database(clone_2_, counts_.n2, list_2_, database,
                                                        context_->usable_values);
  const auto bands_1 = std::span(std::as_const(list_1_).members()).first(static_cast<std::size_t>(counts_.n1));
  const auto bands_2 = std::span(std::as_const(list_2_).members()).first(static_cast<std::size_t>(counts_.n2));
  const band_frequencies frequencies(database, class_frequencies ? &context_->usable_values : nullptr, how.tolerance,
                                     how.bins);
  try {
    frequencies.weighted_common(bands_1, bands_2, counts_.x_iid, counts_.x_fr);
    counts_.weight1 = frequencies.weight_of_list(bands_1);
    counts_.weight2 = frequencies.weight_of_list(bands_2);
  } catch (const zero_frequency &failure) {
    context_->frame.program_end_now(failure.what(), exit_status::run_failed);
  }
}

void class_clone_dist_calc::start_indirect_without_clones(std::int32_t n1, std::int32_t n2, double x_iid, double x_fr) {
  counts_ = {n1, n2, x_iid, x_fr, 0, 0};
}

std::int16_t class_clone_dist_calc::burring_index_get(double border) const {
  return burying_code_of_counts(counts_, border);
}

double class_clone_dist_calc::value_k2mn_get() const {
  return share_of_common(counts_.x_iid, counts_.n1, counts_.n2);
}

double class_clone_dist_calc::value_kk2mn_get() const {
  return share_of_common(counts_.x_fr, counts_.n1, counts_.n2);
}

double class_clone_dist_calc::minus_log10_p_value_iid_get() const {
  return context_->table.minus_log10_p_value_get(counts_.x_iid, counts_.n1, counts_.n2, 0);
}

double class_clone_dist_calc::minus_log10_p_value_fr_get() const {
  return context_->table.minus_log10_p_value_get(counts_.x_fr, counts_.n1, counts_.n2, 1);
}

double class_clone_dist_calc::minus_log10_p_value_of_clone_overlapping(clone_number clone_1, clone_number clone_2,
                                                                       std::int16_t distance_index) {
  using family = class_clone_dist_general;
  const class_DB_of_clones &database = context_->database;
  std::int32_t n_common_markers = 0;
  if (distance_index == family::DISTANCE_INDEX_LnnMarkers_get() ||
      distance_index == family::DISTANCE_INDEX_k2_frac_mn_Markers_get())
    database.markers().number_of_common_markers(clone_1, clone_2, n_common_markers);
  clone_1_ = clone_1;
  clone_2_ = clone_2;
  // These two count with the class frequencies, which are read where they stand instead of being swapped in and out.
  const bool class_frequencies = distance_index == family::DISTANCE_INDEX_LnnSulston_get() ||
                                 distance_index == family::DISTANCE_INDEX_LnnCuted_get();
  count_common_bands({database.tollerance_get(), database.taking_tollerance_into_account_index_get(),
                      database.index_of_band_type_get() != 0},
                     weights_ || family::need_take_band_abundances_into_account_get(distance_index), class_frequencies);
  return minus_log10_p_value_of_clone_overlapping_no_clones(n_common_markers, distance_index);
}

double class_clone_dist_calc::minus_log10_p_value_of_clone_overlapping_no_clones(std::int32_t n_common_markers,
                                                                                 std::int16_t distance_index) {
  return score_of_counts(counts_, n_common_markers, distance_index, context_->database, context_->usable_values,
                         context_->table, FPC_table_defined_ ? FPC_.get() : nullptr);
}

} // namespace orb
