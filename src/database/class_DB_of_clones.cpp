#include "database/class_DB_of_clones.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "database/class_markers.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::int64_t large_number_of_bands = 70000000;
// Room taken at once by a number that was merely declared.
constexpr std::int64_t most_reserved = 1 << 16;

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

std::int32_t whole_in_32_bits(double value) {
  constexpr double largest = std::numeric_limits<std::int32_t>::max(),
                   smallest = std::numeric_limits<std::int32_t>::min();
  if (!(value > smallest))
    return std::numeric_limits<std::int32_t>::min(); // no number at all as well
  return value >= largest ? std::numeric_limits<std::int32_t>::max() : static_cast<std::int32_t>(value);
}

} // namespace

class_DB_of_clones::class_DB_of_clones()
    : name_of_clone_(2), band_index_or_length_Lng_(2, 0), first_band_adress_{0, 1, 1},
      markers_(std::make_unique<class_markers>()) {}
class_DB_of_clones::~class_DB_of_clones() = default;
class_DB_of_clones::class_DB_of_clones(class_DB_of_clones &&) noexcept = default;
class_DB_of_clones &class_DB_of_clones::operator=(class_DB_of_clones &&) noexcept = default;

void class_DB_of_clones::inicalise_database(process_frame &frame, std::int32_t clones, std::int64_t bands) {
  const std::int32_t capacity = clones > 0 ? clones : max_number_of_real_clones_;
  if (bands <= 0) {
    bands = static_cast<std::int64_t>(capacity) * MAX_number_of_bands_in_clone_get();
    const bool bands_are_held = index_of_band_type_ == 0 || index_of_band_type_ == 1;
    if (bands_are_held && bands > large_number_of_bands) {
      const std::string estimate = std::to_string(bands);
      const std::string reply =
          frame.input({"NB! Estimated number of bands in database is very large: " + estimate +
                           ". We recomed to set less number, say 70,000,000. Please input maximal number of bands in "
                           "BAC library:",
                       "Reading *.sizes", estimate});
      double number = 0;
      bands = number_parse(reply, number) && number >= 1 ? whole_in_32_bits(number) : large_number_of_bands;
    }
  }
  name_of_clone_.assign(2, {});
  first_band_adress_.assign({0, 1, 1});
  band_index_or_length_Lng_.assign(2, 0);
  room_for(static_cast<std::int32_t>(std::min<std::int64_t>(capacity, most_reserved)), std::min(bands, most_reserved));
  total_number_of_clones_ = 0;
  next_free_band_adress_ = 1;
  clone_name_sorted_is_created_ = false;
}

void class_DB_of_clones::room_for(std::int32_t clones, std::int64_t bands) {
  name_of_clone_.reserve(place(clones) + 2);
  first_band_adress_.reserve(place(clones) + 2);
  band_index_or_length_Lng_.reserve(static_cast<std::size_t>(bands) + 2);
}

// ---- names ---------------------------------------------------------------------------------------------------------

const std::string &class_DB_of_clones::name_of_clone_get(clone_number clone) const {
  static const std::string none;
  return clone > 0 && place(clone) < name_of_clone_.size() ? name_of_clone_[place(clone)] : none;
}

void class_DB_of_clones::name_of_clone_set(clone_number clone, std::string name) {
  if (place(clone) >= name_of_clone_.size())
    name_of_clone_.resize(place(clone) + 1);
  name_of_clone_[place(clone)] = std::move(name);
}

std::vector<std::string> class_DB_of_clones::create_list_of_all_clone_names() const {
  std::vector<std::string> names(place(total_number_of_clones_) + 1);
  for (clone_number i = 1; i <= total_number_of_clones_; ++i)
    names[place(i)] = name_of_clone_get(i);
  return names;
}

// ---- bands ---------------------------------------------------------------------------------------------------------

void class_DB_of_clones::number_of_bands_in_clone_set(clone_number clone, std::int32_t count) {
  if (first_band_adress_.size() < place(clone) + 2)
    first_band_adress_.resize(place(clone) + 2, next_free_band_adress_);
  next_free_band_adress_ = first_band_adress_[place(clone)] + count;
  first_band_adress_[place(clone) + 1] = next_free_band_adress_;
}

std::span<const band_value> class_DB_of_clones::bands_of_clone(clone_number clone) const {
  const std::size_t first = place(first_band_adress_get(clone));
  const std::size_t count = place(number_of_bands_in_clone_get(clone));
  if (first + count > band_index_or_length_Lng_.size())
    return {}; // the bands were given back
  return {band_index_or_length_Lng_.data() + first, count};
}

band_value class_DB_of_clones::band_index_or_length_Lng_for_band_of_clone_get(clone_number clone,
                                                                              std::int32_t position) const {
  return band_index_or_length_Lng_[place(first_band_adress_get(clone) + position - 1)];
}

// Makes sure that a spare element stands behind the last band.
void class_DB_of_clones::room_for_bands_in_use() {
  if (band_index_or_length_Lng_.size() < place(next_free_band_adress_) + 1)
    band_index_or_length_Lng_.resize(place(next_free_band_adress_) + 1, 0);
}

void class_DB_of_clones::band_index_or_length_Lng_for_band_of_clone_set(clone_number clone, std::int32_t position,
                                                                        band_value value) {
  room_for_bands_in_use();
  band_index_or_length_Lng_[place(first_band_adress_get(clone) + position - 1)] = value;
}

void class_DB_of_clones::ListOfBands_from_real_database_fast_all_bands_get(clone_number clone, std::int32_t &count,
                                                                           number_list &list) const {
  count = number_of_bands_in_clone_get(clone);
  if (list.count() != count)
    list.resize(count);
  const std::span<const band_value> bands = bands_of_clone(clone);
  if (index_of_band_type_ == 0 || index_of_band_type_ == 1)
    std::copy(bands.begin(), bands.end(), list.members().begin());
}

void class_DB_of_clones::ListOfBands_from_real_database_fast_all_bands_set(clone_number clone, std::int32_t count,
                                                                           const number_list &list) {
  ListOfBands_from_real_database_fast_all_bands_set(clone, list.members().first(place(count)));
}

void class_DB_of_clones::ListOfBands_from_real_database_fast_all_bands_set(clone_number clone,
                                                                           std::span<const band_value> bands) {
  number_of_bands_in_clone_set(clone, static_cast<std::int32_t>(bands.size()));
  room_for_bands_in_use();
  if (index_of_band_type_ == 0 || index_of_band_type_ == 1)
    std::copy(bands.begin(), bands.end(), band_index_or_length_Lng_.begin() + first_band_adress_get(clone));
}

void class_DB_of_clones::killbands() {
  band_index_or_length_Lng_ = std::vector<band_value>(1, 0);
}

// ---- parameters ----------------------------------------------------------------------------------------------------

void class_DB_of_clones::parameters_from(const class_DB_of_clones &other) {
  total_number_of_different_bands_ = other.total_number_of_different_bands_;
  max_number_of_real_clones_ = other.max_number_of_real_clones_;
  max_band_length_ = other.max_band_length_;
  tollerance_ = other.tollerance_;
  taking_tollerance_into_account_index_ = other.taking_tollerance_into_account_index_;
  total_number_of_different_bands_FPC_ = other.total_number_of_different_bands_FPC_;
  index_of_band_type_ = other.index_of_band_type_;
}

void class_DB_of_clones::tollerance_parameters_set(std::int16_t t, std::int16_t index) {
  tollerance_ = t;
  taking_tollerance_into_account_index_ = index;
  if (index == 0)
    index_of_band_type_ = 1;
  if (index == 1)
    index_of_band_type_ = 0;
}

void class_DB_of_clones::total_number_of_different_bands_set_by_eff_len(double length) {
  const bool bins = tollerance_ >= 1 && taking_tollerance_into_account_index_ == 0;
  total_number_of_different_bands_ = whole_in_32_bits(std::floor(bins ? length / (2.0 * tollerance_) : length) + 1);
  max_band_length_ = length;
}

std::int32_t class_DB_of_clones::BandNumber_for_given_BandLength(double length) const {
  if (taking_tollerance_into_account_index_ != 0)
    return whole_in_32_bits(std::floor(length));
  if (tollerance_ >= 1)
    return whole_in_32_bits(std::floor(length / (2.0 * tollerance_)) + 1);
  return whole_in_32_bits(std::floor(length) + 1);
}

double class_DB_of_clones::BandLength_for_given_BandNumber(std::int32_t number) const {
  if (taking_tollerance_into_account_index_ != 0)
    return number;
  if (tollerance_ >= 1)
    return (static_cast<double>(number) - 1) * tollerance_ * 2;
  return static_cast<double>(number) - 1;
}

// ---- frequencies ---------------------------------------------------------------------------------------------------

void class_DB_of_clones::frecuency_of_band_in_clones_inicializate() {
  frecuency_of_band_in_clones_.assign(place(std::max(total_number_of_different_bands_, 0)) + 6, 0);
}

// The axis is cut into four quarters, and a gap is taken off at the start of each. Bands in the gap of the first
// quarter get positions below 1.
std::int32_t class_DB_of_clones::band_number_FPC_get(process_frame &frame, std::int32_t band) const {
  const std::int32_t quarter = total_number_of_different_bands_ / 4;
  if (quarter <= 0)
    frame.program_end_now("There are too few band positions (" + std::to_string(total_number_of_different_bands_) +
                              ") to map bands to the positions of the FPC scores",
                          exit_status::broken_invariant);
  constexpr double gap_share = 50.0 / 500.0;
  const double n = total_number_of_different_bands_;
  const double a = std::nearbyint((1 - gap_share) * n); // nearbyint: half to even
  const double gap = std::nearbyint(n * gap_share / 4);
  const std::int32_t quarters_before = (band - 1) / quarter;
  const double m = band - gap * (quarters_before + 1);
  const double number = std::nearbyint(m / a * total_number_of_different_bands_FPC_ + 1);
  return whole_in_32_bits(std::min<double>(number, total_number_of_different_bands_FPC_));
}

std::vector<double> class_DB_of_clones::create_band_FPC_frequency_in_clones(process_frame &frame) const {
  std::vector<double> frequency(place(std::max(total_number_of_different_bands_FPC_, 0)) + 1, 0);
  for (band_adress i = 1; i < first_band_adress_get(total_number_of_clones_ + 1); ++i) {
    if (place(i) >= band_index_or_length_Lng_.size())
      break;
    const std::int32_t number = band_number_FPC_get(frame, band_index_or_length_Lng_[place(i)]);
    if (number >= 1)
      frequency[place(number)] += 1; // positions in the first gap have no place to be counted
  }
  if (total_number_of_clones_ > 0)
    for (double &value : frequency)
      value /= total_number_of_clones_;
  return frequency;
}

// ---- checksum ------------------------------------------------------------------------------------------------------

namespace {

// Numbers enter as 4 bytes each, low byte first on every machine.
class checksum_of_numbers {
public:
  void add(std::int32_t number) {
    const auto bits = static_cast<std::uint32_t>(number);
    for (int shift = 0; shift < 32; shift += 8)
      buffer_ += static_cast<char>(bits >> shift & 255U);
    if (buffer_.size() >= 65536)
      flush();
  }
  void add(std::string_view text) {
    add(static_cast<std::int32_t>(text.size()));
    buffer_ += text;
  }
  std::uint32_t result() {
    flush();
    return checksum_;
  }

private:
  void flush() {
    checksum_ = crc32_of(buffer_, checksum_);
    buffer_.clear();
  }
  std::string buffer_;
  std::uint32_t checksum_ = 0;
};

} // namespace

std::uint32_t library_checksum(const class_DB_of_clones &database) {
  const std::int32_t n = database.total_number_of_clones_get();
  checksum_of_numbers checksum;
  checksum.add(n);
  checksum.add(database.index_of_band_type_get());
  for (clone_number i = 1; i <= n; ++i)
    checksum.add(database.name_of_clone_get(i));
  for (clone_number i = 1; i <= n + 1; ++i)
    checksum.add(database.first_band_adress_get(i));
  for (clone_number i = 1; i <= n; ++i)
    for (const band_value band : database.bands_of_clone(i))
      checksum.add(band);
  return checksum.result();
}

} // namespace orb
