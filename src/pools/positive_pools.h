// Which pools of a screening came out positive: as three lists of one case, or as marks of a probe of a table.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "frame/files.h"
#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

// The three dimensions of a scheme, in the order in which arrays of three hold them.
enum pool_dimension : std::size_t { pool_plates = 0, pool_rows = 1, pool_columns = 2 };
inline constexpr std::size_t n_pool_dimensions = 3;

// How many pools each dimension has; pools are numbered from 1, and rows are called by letters.
using pool_sizes = std::array<std::int32_t, n_pool_dimensions>;
inline constexpr pool_sizes standard_pool_sizes{17, 16, 24};
inline constexpr std::int32_t most_pool_rows = 26; // letters

// Plate, row and column of a well, from 1.
using pool_place = std::array<std::int32_t, n_pool_dimensions>;

// "A" to "Z" and "a" to "z" are 1 to 26, anything else is -1.
std::int32_t number_from_letter(char letter);
// The other way round; above 26 a message and an empty text.
std::string letter_from_number(process_frame &frame, std::int32_t number, bool upper);
// "P3", "B", "12".
std::string name_of_pool(std::size_t dimension, std::int32_t pool);

// Numbers of the positive plates, rows and columns; -1 in element 0 marks a list that could not be read.
using pool_lists = std::array<number_list, n_pool_dimensions>;

// A mark for each pool of a scheme.
class positive_pools {
public:
  explicit positive_pools(const pool_sizes &sizes);
  positive_pools(const pool_sizes &sizes, const pool_lists &lists);
  void clear();
  void set(std::size_t dimension, std::int32_t pool) { is_positive_[dimension][static_cast<std::size_t>(pool)] = 1; }
  bool has(std::size_t dimension, std::int32_t pool) const {
    return is_positive_[dimension][static_cast<std::size_t>(pool)] != 0;
  }
  // How many of the three pools of a well are positive.
  std::int32_t n_of(const pool_place &place) const {
    return has(pool_plates, place[0]) + has(pool_rows, place[1]) + has(pool_columns, place[2]);
  }
  std::int32_t count() const;

private:
  std::array<std::vector<std::uint8_t>, n_pool_dimensions> is_positive_; // pools from 1
};

// Reads a case: "Plates: " and a count from character 9 on, then so many lines with a plate from character 2 on ("P3");
// a heading of columns (begins "col", count from character 10 on) with so many numbers; a heading of rows (begins
// "row", count from character 7 on) with so many letters. Rows may stand before columns. What is no number, no letter
// or no pool of the scheme leaves its list and those behind it marked as unreadable, after a message with file and
// line: false. Throws file_error.
bool read_list_of_positive_pools(process_frame &frame, const std::filesystem::path &file, const pool_sizes &sizes,
                                 pool_lists &lists);

struct probe {
  std::string_view line; // as it stands in the table; until the next one is read
  std::string name;
  positive_pools positive;
  std::int32_t n_positive = 0;
};

// A table of probes: a line of heads, then a line a probe: its name and, behind tabs, a field for each plate, row and
// column of the scheme. A field that isn't empty marks its pool positive; fields that lack at the end are empty.
class probe_reader {
public:
  enum class piece { probe, end, refused };

  // Throws file_error.
  probe_reader(process_frame &frame, const std::filesystem::path &file, const pool_sizes &sizes);
  const std::string &heads() const { return heads_; }
  // Lines that are empty are passed over. Refused, after a message: no text, or more fields than pools.
  piece next(probe &read);
  std::int64_t position() const { return lines_.position(); }
  std::int64_t size() const { return lines_.size(); }

private:
  piece refused(const std::string &why);

  process_frame &frame_;
  line_reader lines_;
  pool_sizes sizes_;
  std::string heads_, wrong_heads_;
  std::vector<std::string_view> fields_;
};

} // namespace orb
