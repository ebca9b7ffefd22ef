#include "database/band_statistics.h"

#include <algorithm>
#include <cmath>

#include "frame/numbers.h"

namespace orb {

namespace {

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

constexpr std::int32_t most_bands = class_DB_of_clones::MAX_number_of_bands_in_clone_get();

} // namespace

std::string wrong_band_axis(const class_DB_of_clones &database) {
  const double length = database.max_band_length_get();
  const std::int32_t n_positions = database.total_number_of_different_bands_get();
  if (length >= 0 && length <= LARGEST_band_axis && n_positions >= 1 && n_positions <= LARGEST_band_axis + 1)
    return {};
  return "Gel length " + number_text_shortest(length) + " with " + std::to_string(n_positions) +
         " band positions can't be used: from 0 to " + number_text_shortest(LARGEST_band_axis) + " units are possible";
}

void prepare_band_statistics(class_DB_of_clones &database, band_statistics &statistics) {
  database.frecuency_of_band_in_clones_inicializate();
  statistics = band_statistics();
  statistics.histogram.assign(place(std::max(database.total_number_of_different_bands_get(), most_bands)) + 1, 0);
}

// The gel length as a whole number.
static std::int64_t gel_limit(const class_DB_of_clones &database) {
  return static_cast<std::int64_t>(std::nearbyint(std::min(database.max_band_length_get(), 4e9)));
}

// Bin numbers run to fewer positions than the gel length has units, and everything about bands is kept by position.
static std::int64_t position_limit(const class_DB_of_clones &database) {
  return std::min<std::int64_t>(gel_limit(database), database.total_number_of_different_bands_get());
}

bool bands_fit(std::span<const band_value> bands, const class_DB_of_clones &database) {
  return bands.empty() ||
         (bands.front() >= 0 && bands.back() <= position_limit(database) && std::is_sorted(bands.begin(), bands.end()));
}

wrong_bands check_bands_of_clone(std::span<const band_value> bands, clone_number clone, std::string_view name,
                                 const class_DB_of_clones &database) {
  if (bands_fit(bands, database))
    return {};
  const std::string in_clone = ") in clone " + std::to_string(clone) + " " + std::string(name);
  const auto text = [](std::int64_t number) { return std::to_string(number); };
  if (bands.front() < 0)
    return {"Wrong band 1(" + text(bands.front()) + "<0" + in_clone, 1};
  const auto count = static_cast<std::int32_t>(bands.size());
  for (std::int32_t i = 2; i <= count; ++i) {
    const band_value before = bands[place(i) - 2], band = bands[place(i) - 1];
    if (band < before)
      return {"Wrong ordered bands " + text(i - 1) + " and " + text(i) + "(" + text(before) + ">" + text(band) +
                  in_clone,
              i};
  }
  const std::int64_t gel = gel_limit(database);
  const std::int64_t largest = bands.back() > gel ? gel : position_limit(database);
  return {"Wrong band " + text(count) + "(" + text(bands.back()) + ">" + text(largest) + "=max" + in_clone, count};
}

std::string too_many_bands(std::int64_t count) {
  if (count <= most_bands)
    return {};
  return "DB_of_clones.MAX_number_of_bands_in_clone_get < n_different_bands_in_clone: _" + std::to_string(most_bands) +
         " < " + std::to_string(count);
}

void add_bands_to_frequencies(std::span<const band_value> bands, class_DB_of_clones &database) {
  std::vector<double> &frequency = database.frecuency_of_band_in_clones_array();
  // Element 0 holds the number of bands in all, not how often band 0 occurs; a band 0 is counted there too.
  for (const band_value band : bands)
    frequency[place(band)] += 1;
  frequency[0] += static_cast<double>(bands.size());
}

void note_number_of_bands(std::int32_t count, band_statistics &statistics) {
  ++statistics.n_records;
  if (statistics.n_records == 1 || count < statistics.min_n_different_bands_in_clone)
    statistics.min_n_different_bands_in_clone = count;
  ++statistics.histogram[place(count)];
}

// The window sums are taken over whole counts, which are exact, and divided by n afterwards: one rounding in place of
// many, and a window without bands is exactly 0.
static void sum_over_tolerance(std::vector<double> &frequency, std::int32_t n_positions, std::int32_t t) {
  std::vector<double> up_to(place(n_positions) + 1, 0); // counts of bands 1..b
  for (std::int32_t b = 1; b <= n_positions; ++b)
    up_to[place(b)] = up_to[place(b) - 1] + frequency[place(b)];
  for (std::int32_t b = 1; b <= n_positions; ++b)
    frequency[place(b)] = up_to[place(std::min(b + t, n_positions))] - up_to[place(std::max(b - t, 1)) - 1];
}

void normalise_band_frequencies(class_DB_of_clones &database) {
  std::vector<double> &frequency = database.frecuency_of_band_in_clones_array();
  const std::int32_t n = database.total_number_of_clones_get();
  const std::int32_t n_positions = database.total_number_of_different_bands_get();
  const std::int32_t t = std::max<std::int32_t>(database.tollerance_get(), 0);
  if (n > 0) {
    if (database.taking_tollerance_into_account_index_get() >= 1)
      sum_over_tolerance(frequency, n_positions, t);
    for (double &value : frequency)
      value /= n;
  }
  double sum = 0;
  std::int32_t count = 0;
  for (std::int32_t b = 1; b <= n_positions; b += std::max(t, 1)) {
    if (!(frequency[place(b)] > 0))
      continue;
    sum -= std::log(frequency[place(b)]);
    ++count;
  }
  database.mean_log_band_frequency_set(count > 0 ? sum / count : sum);
}

void find_most_frequent_number_of_bands(band_statistics &statistics) {
  std::vector<std::int32_t> &histogram = statistics.histogram;
  const auto most = std::max_element(histogram.begin() + 1, histogram.end()); // the first of equal ones
  histogram[0] = static_cast<std::int32_t>(most - histogram.begin());
}

bool make_band_statistics(process_frame &frame, class_DB_of_clones &database, class_usable_values &usable_values) {
  const auto refuse = [&frame](const std::string &text) { return frame.refuse(text); };
  if (const std::string wrong = wrong_band_axis(database); !wrong.empty())
    return refuse(wrong);
  band_statistics statistics;
  prepare_band_statistics(database, statistics);
  for (clone_number i = 1; i <= database.total_number_of_clones_get(); ++i) {
    const std::span<const band_value> bands = database.bands_of_clone(i);
    if (const wrong_bands wrong = check_bands_of_clone(bands, i, database.name_of_clone_get(i), database))
      return refuse(wrong.text);
    add_bands_to_frequencies(bands, database);
    note_number_of_bands(static_cast<std::int32_t>(bands.size()), statistics);
  }
  normalise_band_frequencies(database);
  find_most_frequent_number_of_bands(statistics);
  usable_values.min_n_different_bands_in_clone_set(statistics.min_n_different_bands_in_clone);
  usable_values.inicialize_buffer(database);
  return true;
}

} // namespace orb
