// Checks of a clone's bands at load, and the statistics of all bands that the metrics use.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"

namespace orb {

// What a load gathers beside the clones; goes to the user's objects only when the load succeeds.
struct band_statistics {
  std::vector<std::int32_t> histogram; // (c): records of c bands, c from 1; (0): see below
  std::int32_t min_n_different_bands_in_clone = 0;
  std::int32_t n_records = 0;
};

// A wrong band: the text of the message, and which band of the list it is about (from 1).
struct wrong_bands {
  std::string text;
  std::int32_t position = 0;
  explicit operator bool() const { return !text.empty(); }
};

// Gel lengths and numbers of band positions above this are refused: arrays of that length are held.
inline constexpr double LARGEST_band_axis = 1e7;

// Why the database's gel length or number of band positions can't be used; empty when they can.
std::string wrong_band_axis(const class_DB_of_clones &database);
// All frequencies 0, an empty histogram. The band axis was tested by `wrong_band_axis`.
void prepare_band_statistics(class_DB_of_clones &database, band_statistics &statistics);
// First band below 0, order, last band beyond the gel length (or beyond the number of band positions, which can only
// be smaller for bin numbers): the first of these that fails, or an empty text. A clone has at most 500 bands here.
wrong_bands check_bands_of_clone(std::span<const band_value> bands, clone_number clone, std::string_view name,
                                 const class_DB_of_clones &database);
// Whether `check_bands_of_clone` would find nothing wrong; makes no texts.
bool bands_fit(std::span<const band_value> bands, const class_DB_of_clones &database);
// The text when a clone has more than 500 bands, else empty.
std::string too_many_bands(std::int64_t count);
// freq(b) + 1 for each band, freq(0) + count.
void add_bands_to_frequencies(std::span<const band_value> bands, class_DB_of_clones &database);
// Smallest count and histogram; the count was tested by `too_many_bands`.
void note_number_of_bands(std::int32_t count, band_statistics &statistics);
// Counts become fractions of the n clones, summed over the tolerance around each band; mean_log_band_frequency.
void normalise_band_frequencies(class_DB_of_clones &database);
// Writes to histogram(0) the count that most clones have; the smallest wins a tie.
void find_most_frequent_number_of_bands(band_statistics &statistics);

// All of the above over the clones of a filled database, after its parameters were changed. False when a band doesn't
// fit the parameters or the parameters can't be used; the message was shown.
bool make_band_statistics(process_frame &frame, class_DB_of_clones &database, class_usable_values &usable_values);

} // namespace orb
