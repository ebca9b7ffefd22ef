// 512 partners at once, with AVX-512, which has a full adder of two instructions. This file alone is compiled for such
// processors.
#include "pairs/match_bound_words.h"

#if defined(__AVX512F__)

#include <immintrin.h>

namespace orb {

namespace {

struct avx512_word {
  static constexpr int n_words = 8;
  __m512i bits;

  static avx512_word zero() { return {_mm512_setzero_si512()}; }
  static avx512_word ones() { return {_mm512_set1_epi32(-1)}; }
  static avx512_word load(const std::uint64_t *from) { return {_mm512_load_si512(from)}; }
  void store(std::uint64_t *to) const { _mm512_storeu_si512(to, bits); }
  bool any() const { return _mm512_test_epi64_mask(bits, bits) != 0; }
  friend avx512_word operator|(avx512_word a, avx512_word b) { return {_mm512_or_si512(a.bits, b.bits)}; }
  friend avx512_word operator&(avx512_word a, avx512_word b) { return {_mm512_and_si512(a.bits, b.bits)}; }
  friend avx512_word operator^(avx512_word a, avx512_word b) { return {_mm512_xor_si512(a.bits, b.bits)}; }
  // `sum` becomes the odd part of sum + a + b; returns the carry.
  static avx512_word full_add(avx512_word &sum, avx512_word a, avx512_word b) {
    // 0x96: exclusive or of three; 0xe8: majority of three
    const __m512i carry = _mm512_ternarylogic_epi64(sum.bits, a.bits, b.bits, 0xe8);
    sum.bits = _mm512_ternarylogic_epi64(sum.bits, a.bits, b.bits, 0x96);
    return {carry};
  }
};

} // namespace

std::int32_t scan_avx512(const scan_task &task, scan_survivor *survivors) {
  return scan_clones<avx512_word>(task, survivors);
}

} // namespace orb

#endif
