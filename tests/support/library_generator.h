// Random libraries of a given coverage: a genome is a row of restriction fragments, a clone a window of it.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "database/band_statistics.h"
#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"

namespace orb {

struct generated_library {
  std::int32_t n_clones = 1000;
  std::int32_t bands_in_clone = 100; // mean
  double spread = 0.5;               // a clone has up to this share more or fewer
  double coverage = 15;              // clones over a point of the genome
  bool skewed = false;               // short fragments are more frequent than long ones
  std::int16_t tolerance = 12;
  bool bin_numbers = false; // bands are numbers of bins of width 2t
  std::int32_t gel_length = 60000;
  std::int32_t measuring_error = 5; // largest, in band units
  std::uint64_t seed = 1;
  std::int32_t n_names = 0; // below n_clones: names repeat; 0: they are unique
  std::int32_t n_stack = 0; // clones besides, all of the same bands: one stack, as an organelle's clones make
  std::int32_t bands_in_stack = 60;
};

// Lengths of the fragments of a genome that the clones cover as often as asked.
inline std::vector<std::int32_t> fragments_of_genome(const generated_library &wanted, random_source &chance) {
  const double n = wanted.n_clones * static_cast<double>(wanted.bands_in_clone) / wanted.coverage;
  std::vector<std::int32_t> fragments(static_cast<std::size_t>(std::max(n, 2.0 * wanted.bands_in_clone)));
  for (std::int32_t &length : fragments) {
    const double u = wanted.skewed ? std::pow(chance.uniform(), 3) : chance.uniform();
    length = 20 + static_cast<std::int32_t>(u * (wanted.gel_length - 40));
  }
  return fragments;
}

// Clones of the same random bands, numbered from `first` on.
inline void add_stack(const generated_library &wanted, clone_number first, random_source &chance,
                      class_DB_of_clones &database) {
  std::vector<band_value> bands;
  for (std::int32_t k = 0; k < wanted.bands_in_stack; ++k)
    bands.push_back(19 + chance.number_up_to(wanted.gel_length - 40));
  std::sort(bands.begin(), bands.end());
  for (std::int32_t k = 0; k < wanted.n_stack; ++k) {
    database.name_of_clone_set(first + k, "S" + std::to_string(100000 + k));
    database.ListOfBands_from_real_database_fast_all_bands_set(first + k, bands);
  }
}

// Fills the database with clones in random order; `starts` (may be null) takes each clone's first fragment, from 0.
inline void generate_library(process_frame &frame, const generated_library &wanted, class_DB_of_clones &database,
                             class_usable_values &usable_values, std::vector<std::int32_t> *starts = nullptr) {
  random_source chance(wanted.seed);
  const std::vector<std::int32_t> fragments = fragments_of_genome(wanted, chance);
  const auto n_fragments = static_cast<std::int32_t>(fragments.size());
  database.tollerance_parameters_set(wanted.tolerance, wanted.bin_numbers ? 0 : 1);
  database.total_number_of_different_bands_set_by_eff_len(wanted.gel_length);
  const std::int32_t n_all = wanted.n_clones + wanted.n_stack;
  database.inicalise_database(frame, n_all, static_cast<std::int64_t>(n_all) * 500);
  if (starts != nullptr)
    starts->assign(1, -1);
  std::vector<band_value> bands;
  for (clone_number clone = 1; clone <= wanted.n_clones; ++clone) {
    const std::int32_t mean = std::min(wanted.bands_in_clone, 333);
    const auto least = static_cast<std::int32_t>(mean * (1 - wanted.spread));
    const std::int32_t n = std::min(least + chance.number_up_to(std::max(2 * (mean - least), 1)), n_fragments - 1);
    const std::int32_t start = chance.number_up_to(std::max(n_fragments - n, 1)) - 1;
    bands.clear();
    for (std::int32_t f = start; f < std::min(start + n, n_fragments); ++f) {
      const std::int32_t error = chance.number_up_to(2 * wanted.measuring_error + 1) - 1 - wanted.measuring_error;
      const std::int32_t length = std::clamp(fragments[static_cast<std::size_t>(f)] + error, 1, wanted.gel_length - 1);
      const std::int32_t bin = wanted.tolerance > 0 ? length / (2 * wanted.tolerance) + 1 : length;
      bands.push_back(wanted.bin_numbers ? bin : length);
    }
    std::sort(bands.begin(), bands.end());
    const std::int32_t name = wanted.n_names > 0 ? chance.number_up_to(wanted.n_names) : clone;
    database.name_of_clone_set(clone, "C" + std::to_string(100000 + name));
    database.ListOfBands_from_real_database_fast_all_bands_set(clone, bands);
    if (starts != nullptr)
      starts->push_back(start);
  }
  add_stack(wanted, wanted.n_clones + 1, chance, database);
  database.total_number_of_clones_set(n_all);
  database.sort_clones_by_name(frame);
  make_band_statistics(frame, database, usable_values);
}

} // namespace orb
