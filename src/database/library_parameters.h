// The parameters of a library: how bands are compared, and how many clones are provided for. Their defaults and the
// known kinds of laboratory data stand here and nowhere else.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace orb {

struct library_parameters {
  std::int16_t tolerance = 12;       // t, in band units
  std::int16_t tolerance_index = 1;  // 1: lengths compared within t; 0: numbers of bins of width 2t
  double gel_length = 60000;         // L, in band units
  std::int32_t n_bands = 2250;       // N_bands_Sulston
  std::int32_t max_n_clones = 80000; // provided for; a larger input raises it
};

// The kinds of data that laboratories are known to make, numbered from 1.
inline constexpr std::array<library_parameters, 5> known_kinds_of_data{
    {{7, 0, 3300, 236}, {5, 1, 19500, 1800}, {4, 1, 40000, 5000}, {12, 1, 60000, 2250}, {5, 1, 60000, 6000}}};

inline std::optional<library_parameters> parameters_of_kind(std::int32_t kind) {
  if (kind < 1 || kind > static_cast<std::int32_t>(known_kinds_of_data.size()))
    return std::nullopt;
  return known_kinds_of_data[static_cast<std::size_t>(kind) - 1];
}

} // namespace orb
