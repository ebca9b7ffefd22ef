#include "database/class_clone_serv.h"

#include <algorithm>
#include <cmath>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/numbers.h"

namespace orb {

namespace {

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

} // namespace

void class_clone_serv::transform_ListOfBands_to_BandsPresentence(std::int32_t n_bands, const number_list &list,
                                                                 band_presence &presence) {
  presence.assign(place(n_bands) + 1, 0);
  for (const band_value band : list.members())
    if (band >= 1 && band <= n_bands)
      presence[place(band)] = 1;
}

void class_clone_serv::transform_BandsPresentence_to_ListOfBands(std::int32_t n_bands, const band_presence &presence,
                                                                 number_list &list) {
  list.clear();
  for (std::int32_t band = 1; band <= n_bands; ++band)
    if (presence[place(band)] != 0)
      list.add(band);
}

void class_clone_serv::sorting_list_of_bands(number_list &list, const class_DB_of_clones &database) {
  const std::int32_t n_bands = database.total_number_of_different_bands_get();
  band_presence presence;
  transform_ListOfBands_to_BandsPresentence(n_bands, list, presence);
  transform_BandsPresentence_to_ListOfBands(n_bands, presence, list);
}

std::string class_clone_serv::text_clone_BandsPresentence(std::int32_t n_bands, const band_presence &presence) {
  std::string text;
  for (std::int32_t band = 1; band <= n_bands; ++band) {
    text += presence[place(band)] != 0 ? '1' : '.';
    if (band % 10 == 0)
      text += ' ';
  }
  return text;
}

std::string class_clone_serv::text_list_of_bands(const number_list &list) {
  std::string text = std::to_string(list.count()) + ":";
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    text += ' ';
    text += std::to_string(list(i));
    if (i < list(i))
      text += ','; // position against value: deliberate
  }
  return text;
}

std::string class_clone_serv::text_list_of_bands_with_real_lengths(const number_list &list,
                                                                   const class_DB_of_clones &database) {
  std::string text = std::to_string(list.count()) + "\t:";
  for (const band_value band : list.members()) {
    text += '\t';
    text += number_text(database.BandLength_for_given_BandNumber(band), 1);
  }
  return text;
}

void class_clone_serv::read_ListOfBands_from_real_database(clone_number clone, std::int32_t &count, number_list &list,
                                                           const class_DB_of_clones &database,
                                                           const class_usable_values &usable_values) {
  database.ListOfBands_from_real_database_fast_all_bands_get(clone, count, list);
  if (!usable_values.JK_on_bands_get())
    return;
  std::int32_t kept = 0;
  for (std::int32_t i = 1; i <= count; ++i)
    if (usable_values.band_is_not_excluded_get(list(i)))
      list(++kept) = static_cast<const number_list &>(list)(i);
  count = kept;
  list.resize(count);
}

void class_clone_serv::print_ListOfBands_to_real_database(clone_number clone, const number_list &list,
                                                          class_DB_of_clones &database) {
  database.ListOfBands_from_real_database_fast_all_bands_set(clone, list.count(), list);
}

double class_clone_serv::weighted_number_of_bands_in_clone(clone_number clone, const class_DB_of_clones &database) {
  double sum = 0;
  for (const band_value band : database.bands_of_clone(clone)) {
    const double frequency = database.frecuency_of_band_in_clones_get(band);
    if (frequency > 0)
      sum -= std::log(frequency);
  }
  return sum;
}

void class_clone_serv::add_clone_to_file_with_bands(clone_number clone, result_file &file,
                                                    const class_DB_of_clones &database) {
  const std::span<const band_value> bands = database.bands_of_clone(clone);
  file.line(database.name_of_clone_get(clone) + "\t" + std::to_string(bands.size()) + "\tGel");
  for (const band_value band : bands)
    file.line(std::to_string(band));
  file.line("-1");
  file.line("");
}

std::string class_clone_serv::file_format_caption_get(std::int32_t index) {
  switch (index) {
  case 0:
    return "Next data seed in new line";
  case 1:
    return "Splitted by symbol with Asc()=10";
  default:
    return {};
  }
}

double class_clone_serv::freq_band_among_clones_get(double f, double mean_bands) {
  if (f <= 0)
    return 0;
  if (f >= 1)
    return 1;
  return 1 - std::pow(1 - f, mean_bands);
}

double class_clone_serv::freq_band_among_bands_get(double f, double mean_bands) {
  if (f <= 0)
    return 0;
  return 1 - std::pow(1 - (f >= 1 ? 0.9999 : f), 1 / mean_bands);
}

} // namespace orb
