// "Input.dis": an instance of the tour solver as text.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "ordering/square_array.h"

namespace orb {

struct pair_distance {
  std::int32_t i = 0, j = 0, d = 0;
};

// One instance as read. Pairs that the file doesn't give stay at `no_distance`.
struct distance_instance {
  static constexpr std::int32_t no_distance = 10000000;
  std::int32_t n = 0;
  double time_limit = 0; // seconds
  std::int32_t neighbour_rank = 0;
  square_array<std::int32_t> dist; // 0..n, 0 on the diagonal
};

// Line 1: n, time limit, neighbour rank, separated by commas or blanks; records i, j, d to the end, one a line. The
// line of positions that `write_distance_file` puts second is passed over. False with what is wrong, and where, in
// `problem`; the instance is untouched then. Throws file_error.
bool read_distance_file(const std::filesystem::path &file, distance_instance &instance, std::string &problem);

// The text of an instance: n "," time limit "," rank; the positions joined by blanks; i, j, distance for each i < j.
// `distances`: row by row, those with j above i.
std::string distance_file_text(double time_limit, std::int32_t neighbour_rank, std::span<const std::int32_t> positions,
                               std::span<const std::int32_t> distances);
// The same with some pairs only.
std::string distance_file_text(double time_limit, std::int32_t neighbour_rank, std::span<const std::int32_t> positions,
                               std::span<const pair_distance> distances);

// The integer part of a distance; the small addition keeps whole numbers that came out a little too small.
std::int32_t whole_distance(double distance);

} // namespace orb
