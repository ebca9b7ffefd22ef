// The places of the band axis that lie within the tolerance of a clone's bands, a bit each.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "frame/lists.h"

namespace orb {

// The other side of the bound: of the bands of a partner, those that a clone meets are never fewer than the common
// bands either. The axis reaches from `lowest` to `highest`.
class met_places {
public:
  void mark(std::span<const band_value> bands, std::int32_t t, band_value lowest, band_value highest) {
    lowest_ = lowest;
    words_.assign(static_cast<std::size_t>(highest - lowest) / 64 + 1, 0);
    for (const band_value band : bands) {
      const auto from = static_cast<std::size_t>(std::max(band - t, lowest) - lowest);
      const auto to = static_cast<std::size_t>(std::min(band + t, highest) - lowest);
      const std::uint64_t first = ~std::uint64_t{0} << from % 64, last = ~std::uint64_t{0} >> (63 - to % 64);
      if (from / 64 == to / 64) {
        words_[from / 64] |= first & last;
        continue;
      }
      words_[from / 64] |= first;
      std::fill(words_.begin() + static_cast<std::ptrdiff_t>(from / 64 + 1),
                words_.begin() + static_cast<std::ptrdiff_t>(to / 64), ~std::uint64_t{0});
      words_[to / 64] |= last;
    }
  }
  // How many of these bands, which lie on the axis, are met.
  std::int32_t count(std::span<const band_value> bands) const {
    std::uint64_t n = 0;
    for (const band_value band : bands) {
      const auto at = static_cast<std::size_t>(band - lowest_);
      n += words_[at / 64] >> at % 64 & 1;
    }
    return static_cast<std::int32_t>(n);
  }

private:
  band_value lowest_ = 0;
  std::vector<std::uint64_t> words_;
};

} // namespace orb
