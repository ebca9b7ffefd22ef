// Counting bit by bit, for any width of a machine word. Included by one source file for each set of instructions, which
// brings its word type; that is why nothing here may be seen from outside, and why no other header is included: an
// inline function of the library, compiled here with wider instructions, could be the one that the linker keeps.
#pragma once

#include <cstdint>

#include "pairs/match_bound.h"

namespace orb {
namespace {

// Adds one-bit numbers, one a bit position and independent of all others. plane[i] holds bit i of every position's sum;
// the sums start at 2^n_planes - least, so that a position has reached `least` when its sum overflows.
template <class word, int n_planes> struct bit_counters {
  word plane[n_planes];
  word reached = word::zero();

  explicit bit_counters(std::int32_t least) {
    const std::uint32_t start = (1u << n_planes) - static_cast<std::uint32_t>(least);
    for (int i = 0; i < n_planes; ++i)
      plane[i] = (start >> i & 1) != 0 ? word::ones() : word::zero();
  }
  // Eight inputs: a tree of full adders (two bits of weight 1 and the sum so far give a carry of weight 2, and so on)
  // leaves one carry of weight 8, which then runs through the higher planes.
  template <class input_function> void add_eight(input_function &&input) {
    word twos[2], fours[2], carry;
    for (int half = 0; half < 2; ++half) {
      for (int quarter = 0; quarter < 2; ++quarter)
        twos[quarter] = word::full_add(plane[0], input(4 * half + 2 * quarter), input(4 * half + 2 * quarter + 1));
      fours[half] = word::full_add(plane[1], twos[0], twos[1]);
    }
    carry = word::full_add(plane[2], fours[0], fours[1]);
    for (int i = 3; i < n_planes; ++i) {
      const word next = plane[i] & carry;
      plane[i] = plane[i] ^ carry;
      carry = next;
    }
    reached = reached | carry;
  }
};

// Bits of the positions where at least `least` of the clone's rows are set.
template <class word, int n_planes>
word at_least(const std::uint64_t *rows, const std::uint16_t *row, std::int32_t n_rows, std::int32_t least) {
  bit_counters<word, n_planes> counters(least);
  for (const std::uint16_t *const end = row + n_rows; row != end; row += rows_added_at_once)
    counters.add_eight([rows, row](int i) { return word::load(rows + row[i]); });
  return counters.reached;
}

// With the narrowest counters that hold the sum.
template <class word>
word at_least_of_any(const std::uint64_t *rows, const std::uint16_t *row, std::int32_t n_rows, std::int32_t least) {
  if (n_rows < 1 << 6)
    return at_least<word, 6>(rows, row, n_rows, least);
  if (n_rows < 1 << 7)
    return at_least<word, 7>(rows, row, n_rows, least);
  if (n_rows < 1 << 8)
    return at_least<word, 8>(rows, row, n_rows, least);
  if (n_rows < 1 << 9)
    return at_least<word, 9>(rows, row, n_rows, least);
  return at_least<word, 13>(rows, row, n_rows, least);
}

template <class word> std::int32_t scan_clones(const scan_task &task, scan_survivor *survivors) {
  std::int32_t n_survivors = 0;
  for (std::int32_t clone = task.first; clone <= task.last; ++clone) {
    const scan_plan &plan = task.plan_of_kind[task.kind[clone]];
    if (plan.out)
      continue;
    const std::uint16_t *row = task.word_of_band + task.first_row[clone];
    scan_survivor &survivor = survivors[n_survivors];
    bool some = false;
    for (int at = 0; at < words_of_row; at += word::n_words) {
      const word left =
          plan.least > 0 ? at_least_of_any<word>(task.rows + at, row, plan.n_rows, plan.least) : word::ones();
      left.store(survivor.partners + at);
      some = some || left.any();
    }
    survivor.clone = clone;
    n_survivors += some ? 1 : 0;
  }
  return n_survivors;
}

} // namespace
} // namespace orb
