#include "metrics/class_clone_dist_general.h"

#include <algorithm>
#include <array>

#include "metrics/band_frequencies.h"

namespace orb {

namespace {

struct metric_facts {
  const char *name;
  double standard_cutoff; // -1: none
  bool abundances;
};

constexpr std::array<metric_facts, 14> all_metrics{{{"k2mn", 4.5, false},
                                                    {"Nof", 35, false},
                                                    {"Lnn", 12, true},
                                                    {"KK2mn", -1, true},
                                                    {"Sulston_1988", 15, false},
                                                    {"Soderlund_1997", -1, false},
                                                    {"LnnMarkers", 12, true},
                                                    {"Special", -1, true},
                                                    {"LnnSulston", -1, true},
                                                    {"LnnCuted", -1, true},
                                                    {"k2mn_Markers", -1, false},
                                                    {"k", -1, false},
                                                    {"TagsSulston", 6, true},
                                                    {"SulstonFrec", 25, true}}};

const metric_facts *facts_of(std::int16_t index) {
  return index < 0 || index > class_clone_dist_general::number_distance_index_get()
             ? nullptr
             : &all_metrics[static_cast<std::size_t>(index)];
}

// Runs weighing code and ends the program when a band has no frequency.
template <class work> void ending_on_zero_frequency(process_frame &frame, work &&weigh) {
  try {
    weigh();
  } catch (const zero_frequency &failure) {
    frame.program_end_now(failure.what(), exit_status::run_failed);
  }
}

} // namespace

std::string class_clone_dist_general::name_of_cutoff_distance(std::int16_t index) {
  const metric_facts *facts = facts_of(index);
  return facts == nullptr ? std::string() : facts->name;
}

std::int16_t class_clone_dist_general::index_of_name(std::string_view name) {
  for (std::int16_t index = 0; index <= number_distance_index_get(); ++index)
    if (name == facts_of(index)->name)
      return index;
  return -1;
}

double class_clone_dist_general::standard_cutoff(std::int16_t index) {
  const metric_facts *facts = facts_of(index);
  return facts == nullptr ? -1 : facts->standard_cutoff;
}

bool class_clone_dist_general::need_take_band_abundances_into_account_get(std::int16_t index) {
  const metric_facts *facts = facts_of(index);
  return facts != nullptr && facts->abundances;
}

std::string class_clone_dist_general::why_only_zero(std::int16_t index, bool tables_are_loaded,
                                                    bool markers_are_loaded) {
  const std::string name = "Metric " + name_of_cutoff_distance(index) + " ";
  switch (index) {
  case DISTANCE_INDEX_Nof_get():
  case DISTANCE_INDEX_Lnn_get():
  case DISTANCE_INDEX_LnnCuted_get():
    return tables_are_loaded ? "" : name + "needs tables of simulated p-values, and none are loaded.";
  case DISTANCE_INDEX_LnnMarkers_get():
    return tables_are_loaded || markers_are_loaded
               ? ""
               : name + "needs tables of simulated p-values or markers, and neither are loaded.";
  case DISTANCE_INDEX_Special_get():
    return name + "has no value of its own: every pair scores 0.";
  case DISTANCE_INDEX_k_get():
    return name + "is only a count of common bands for tables: every pair scores 0.";
  case DISTANCE_INDEX_TagsSulston_get():
    return name + "needs sequence tags of clones, and none are loaded.";
  default:
    return "";
  }
}

bool class_clone_dist_general::bands_are_similar(process_frame &frame, band_value band_1, band_value band_2,
                                                 bool want_frequency, double &f, const class_DB_of_clones &database) {
  const std::int32_t t = list_tolerance(database);
  if (std::abs(band_1 - band_2) > t)
    return false;
  if (!want_frequency)
    return true;
  f = band_frequencies(database).of_pair(band_1, band_2);
  if (!(f > 0))
    frame.program_end_now(zero_frequency().what(), exit_status::run_failed);
  return true;
}

void class_clone_dist_general::number_of_overlaping_for_clones_ListOfBands(
    process_frame &frame, const number_list &list_1, const number_list &list_2, double &weight_1, double &weight_2,
    double &k, double &weighted_k, bool want_weights, const class_DB_of_clones &database) {
  const band_frequencies frequencies(database);
  ending_on_zero_frequency(frame, [&] {
    frequencies.weighted_common(list_1.members(), list_2.members(), k, weighted_k);
    if (!want_weights)
      return;
    weight_1 = frequencies.weight_of_list(list_1.members());
    weight_2 = frequencies.weight_of_list(list_2.members());
  });
}

void class_clone_dist_general::number_of_overlaping_for_clones_no_tollerance_ListOfBands(
    process_frame &frame, const number_list &list_1, const number_list &list_2, double &k, double &weighted_k,
    bool want_weights, const class_DB_of_clones &database) {
  const band_frequencies frequencies(database);
  k = weighted_k = 0;
  ending_on_zero_frequency(frame, [&] {
    merge_bands(list_1.members(), list_2.members(), 0, [&](band_value band, band_value) {
      k += 1;
      if (want_weights)
        weighted_k += band_frequencies::weight(frequencies.of_band(band));
    });
  });
}

double class_clone_dist_general::ListOfBands_length_frec_get(process_frame &frame, const number_list &list,
                                                             const class_DB_of_clones &database) {
  double sum = 0;
  ending_on_zero_frequency(frame, [&] { sum = band_frequencies(database).weight_of_list(list.members()); });
  return sum;
}

void class_clone_dist_general::update_overlaping(const number_list &list_1, const number_list &list_2,
                                                 std::vector<bool> &marks_1, std::int32_t &k,
                                                 const class_DB_of_clones &database) {
  const std::int32_t t = list_tolerance(database);
  marks_1.resize(std::max(marks_1.size(), static_cast<std::size_t>(list_1.count()) + 1));
  k = 0;
  for (std::int32_t i = 1, j = 1; i <= list_1.count() && j <= list_2.count();) {
    if (std::abs(list_1(i) - list_2(j)) <= t) {
      marks_1[static_cast<std::size_t>(i)] = true;
      ++k, ++i, ++j;
    } else if (list_1(i) > list_2(j)) {
      ++j;
    } else {
      ++i;
    }
  }
}

void class_clone_dist_general::create_overlaping_lists_of_bands(const number_list &list_1, const number_list &list_2,
                                                                number_list &common, number_list &only_1,
                                                                number_list &only_2,
                                                                const class_DB_of_clones &database) {
  const std::int32_t t = list_tolerance(database);
  common.clear();
  only_1.clear();
  only_2.clear();
  // When one list ends, what lies behind in the other one goes nowhere: deliberate.
  for (std::int32_t i = 1, j = 1; i <= list_1.count() && j <= list_2.count();) {
    if (std::abs(list_1(i) - list_2(j)) <= t) {
      common.add(list_2(j));
      ++i, ++j;
    } else if (list_1(i) > list_2(j)) {
      only_2.add(list_2(j++));
    } else {
      only_1.add(list_1(i++));
    }
  }
}

void class_clone_dist_general::create_monade_of_band(band_value band, number_list &list,
                                                     const class_DB_of_clones &database) {
  list.clear();
  const std::int32_t t = database.tollerance_get();
  if (t == 0 || database.taking_tollerance_into_account_index_get() == 0) {
    list.add(band);
    return;
  }
  const band_value last = std::min(band + t, database.total_number_of_different_bands_get());
  for (band_value near = std::max(band - t, 0); near <= last; ++near)
    list.add(near);
}

bool class_clone_dist_general::band_is_similar_to_one_of_list(band_value band, const number_list &list,
                                                              std::int32_t &position,
                                                              const class_DB_of_clones &database) {
  const std::int32_t t = list_tolerance(database);
  for (position = 1; position <= list.count(); ++position)
    if (std::abs(band - list(position)) <= t)
      return true;
  return false;
}

} // namespace orb
