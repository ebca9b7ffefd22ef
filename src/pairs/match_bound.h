// An upper bound of the common bands of a clone with each of 512 partners, found for all of them together. Why it is a
// bound, and how the counting works, is told in docs/pair-loop.md.
//
// The band axis is cut into bins. A block of partners has one row of 512 bits a bin: bit p is set when the stretch
// within the tolerance of one of partner p's bands reaches into the bin. The rows of a clone's bands, added up bit by
// bit, count for each partner how many of the clone's bands may have a match there: never fewer than the common bands.
#pragma once

#include <cstdint>

namespace orb {

constexpr std::int32_t partners_of_block = 512;
constexpr std::int32_t words_of_row = partners_of_block / 64;
constexpr std::int32_t rows_added_at_once = 8; // lists of rows are filled up to a multiple of it
constexpr std::int32_t most_rows_of_clone = 8000;

// How clones of one kind (of as many bands, and of one size) are scanned against a block.
struct scan_plan {
  bool out = false;        // no partner of the block can be significant
  std::int32_t n_rows = 0; // rows of a clone's bands, a multiple of 8
  std::int32_t least = 0;  // common bands needed, at least 1; 0: everyone passes
};

struct scan_task {
  const std::uint64_t *rows;         // of the block; row 0 is empty
  const std::uint16_t *word_of_band; // where the row of each band begins in `rows`, one clone after another
  const std::uint32_t *first_row;    // where those of a clone begin; a multiple of 8 each, filled up with 0
  const std::uint16_t *kind;         // of each clone
  const scan_plan *plan_of_kind;
  std::int32_t first, last; // the clones to scan, `last` included
};

struct scan_survivor {
  std::int32_t clone = 0;
  std::uint64_t partners[words_of_row] = {}; // bit p: partner p of the block may reach the least count
};

// Writes a survivor for each clone that has a partner left, and returns how many; there is room for all clones.
using scan_function = std::int32_t (*)(const scan_task &task, scan_survivor *survivors);

// One set of machine instructions; all give the same survivors.
struct scan_path {
  const char *name;
  scan_function scan;
  bool (*runs_here)(); // whether this processor has the instructions
};

std::int32_t scan_plain(const scan_task &task, scan_survivor *survivors);
std::int32_t scan_sse2(const scan_task &task, scan_survivor *survivors);
std::int32_t scan_avx2(const scan_task &task, scan_survivor *survivors);
std::int32_t scan_avx512(const scan_task &task, scan_survivor *survivors);

// All paths of this build, the best last. The first one, plain 64-bit words, runs everywhere.
struct scan_paths {
  const scan_path *begin() const { return first; }
  const scan_path *end() const { return first + count; }
  const scan_path *first;
  int count;
};
scan_paths all_scan_paths();
// The last path that runs on this processor.
const scan_path &best_scan_path();

} // namespace orb
