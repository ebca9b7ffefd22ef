// The index by which a revised net marks Q-overlaps and Q-clones.
#pragma once

#include <cstdint>

namespace orb {

inline constexpr std::int16_t q_mark = -1;

} // namespace orb
