// The path for every processor: 64 partners at once in a plain word.
#include "pairs/match_bound_words.h"

namespace orb {

namespace {

struct plain_word {
  static constexpr int n_words = 1;
  std::uint64_t bits;

  static plain_word zero() { return {0}; }
  static plain_word ones() { return {~std::uint64_t{0}}; }
  static plain_word load(const std::uint64_t *from) { return {*from}; }
  void store(std::uint64_t *to) const { *to = bits; }
  bool any() const { return bits != 0; }
  friend plain_word operator|(plain_word a, plain_word b) { return {a.bits | b.bits}; }
  friend plain_word operator&(plain_word a, plain_word b) { return {a.bits & b.bits}; }
  friend plain_word operator^(plain_word a, plain_word b) { return {a.bits ^ b.bits}; }
  // `sum` becomes the odd part of sum + a + b; returns the carry.
  static plain_word full_add(plain_word &sum, plain_word a, plain_word b) {
    const std::uint64_t half = a.bits ^ b.bits, carry = (a.bits & b.bits) | (half & sum.bits);
    sum.bits ^= half;
    return {carry};
  }
};

} // namespace

std::int32_t scan_plain(const scan_task &task, scan_survivor *survivors) {
  return scan_clones<plain_word>(task, survivors);
}

} // namespace orb
