// 512 partners at once in two registers, with AVX2. This file alone is compiled for such processors.
#include "pairs/match_bound_words.h"

#if defined(__AVX2__)

#include <immintrin.h>

namespace orb {

namespace {

// Two registers, so that each line of memory is fetched once and worked on while the next ones come.
struct avx2_word {
  static constexpr int n_words = 8;
  __m256i low, high;

  static avx2_word both(__m256i half) { return {half, half}; }
  static avx2_word zero() { return both(_mm256_setzero_si256()); }
  static avx2_word ones() { return both(_mm256_set1_epi32(-1)); }
  static avx2_word load(const std::uint64_t *from) {
    const auto *halves = reinterpret_cast<const __m256i *>(from);
    return {_mm256_load_si256(halves), _mm256_load_si256(halves + 1)};
  }
  void store(std::uint64_t *to) const {
    auto *halves = reinterpret_cast<__m256i *>(to);
    _mm256_storeu_si256(halves, low);
    _mm256_storeu_si256(halves + 1, high);
  }
  bool any() const {
    const __m256i some = _mm256_or_si256(low, high);
    return _mm256_testz_si256(some, some) == 0;
  }
  friend avx2_word operator|(avx2_word a, avx2_word b) {
    return {_mm256_or_si256(a.low, b.low), _mm256_or_si256(a.high, b.high)};
  }
  friend avx2_word operator&(avx2_word a, avx2_word b) {
    return {_mm256_and_si256(a.low, b.low), _mm256_and_si256(a.high, b.high)};
  }
  friend avx2_word operator^(avx2_word a, avx2_word b) {
    return {_mm256_xor_si256(a.low, b.low), _mm256_xor_si256(a.high, b.high)};
  }
  // `sum` becomes the odd part of sum + a + b; returns the carry.
  static avx2_word full_add(avx2_word &sum, avx2_word a, avx2_word b) {
    const avx2_word half = a ^ b;
    const avx2_word carry = (a & b) | (half & sum);
    sum = sum ^ half;
    return carry;
  }
};

} // namespace

std::int32_t scan_avx2(const scan_task &task, scan_survivor *survivors) {
  return scan_clones<avx2_word>(task, survivors);
}

} // namespace orb

#endif
