// 128 partners at once, on every 64-bit x86 processor.
#include "pairs/match_bound_words.h"

#if defined(__SSE2__)

#include <emmintrin.h>

namespace orb {

namespace {

struct sse2_word {
  static constexpr int n_words = 2;
  __m128i bits;

  static sse2_word zero() { return {_mm_setzero_si128()}; }
  static sse2_word ones() { return {_mm_set1_epi32(-1)}; }
  static sse2_word load(const std::uint64_t *from) { return {_mm_load_si128(reinterpret_cast<const __m128i *>(from))}; }
  void store(std::uint64_t *to) const { _mm_storeu_si128(reinterpret_cast<__m128i *>(to), bits); }
  bool any() const { return _mm_movemask_epi8(_mm_cmpeq_epi8(bits, _mm_setzero_si128())) != 0xffff; }
  friend sse2_word operator|(sse2_word a, sse2_word b) { return {_mm_or_si128(a.bits, b.bits)}; }
  friend sse2_word operator&(sse2_word a, sse2_word b) { return {_mm_and_si128(a.bits, b.bits)}; }
  friend sse2_word operator^(sse2_word a, sse2_word b) { return {_mm_xor_si128(a.bits, b.bits)}; }
  // `sum` becomes the odd part of sum + a + b; returns the carry.
  static sse2_word full_add(sse2_word &sum, sse2_word a, sse2_word b) {
    const __m128i half = _mm_xor_si128(a.bits, b.bits);
    const __m128i carry = _mm_or_si128(_mm_and_si128(a.bits, b.bits), _mm_and_si128(half, sum.bits));
    sum.bits = _mm_xor_si128(sum.bits, half);
    return {carry};
  }
};

} // namespace

std::int32_t scan_sse2(const scan_task &task, scan_survivor *survivors) {
  return scan_clones<sse2_word>(task, survivors);
}

} // namespace orb

#endif
