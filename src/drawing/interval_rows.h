// Bars on an axis, packed into rows.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orb {

// The row of each interval in which it doesn't cover another one; rows from 1, the topmost free one is taken. Both ends
// are included. There are as few rows as can be: as many as intervals lie over each other at most. n log n.
std::vector<std::int32_t> rows_of_intervals(std::span<const std::int32_t> left, std::span<const std::int32_t> right);

} // namespace orb
