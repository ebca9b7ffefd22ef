// The upper half of a net while it is made: for each element its significant partners of higher number. Memory grows
// with the overlaps only.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "graph/class_net.h"
#include "net/pair_kernel.h"

namespace orb {

class half_net {
public:
  // Compares each unordered pair once, on `threads` workers. Between blocks `between(first, last)` runs on the calling
  // thread for the rows done since it ran last; when it answers false the rest is left. True when all was compared.
  bool compare(pair_kernel &kernel, const pair_elements &elements, int threads,
               const std::function<bool(std::int32_t, std::int32_t)> &between);
  const std::vector<pair_record> &row(std::int32_t element) const { return rows_[static_cast<std::size_t>(element)]; }
  // The whole net with ascending runs; values pass through `stored`. False when it has more records than a net can
  // address.
  bool mirrored_into(class_net &net, const std::function<double(double)> &stored) const;

private:
  std::vector<std::vector<pair_record>> rows_;
};

// Rows whose comparison takes some hundredths of a second, for stop requests to take effect soon.
std::int64_t rows_in_block(std::int64_t partners_of_row, int threads);

} // namespace orb
