// The upper half of a net while it is made: for each element its significant partners of higher number. Memory grows
// with the overlaps only.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "graph/class_net.h"
#include "pairs/overlap_rows.h"

namespace orb {

class half_net {
public:
  // Takes each unordered pair once from `rows`. `chunk_done(first, last)` runs on the calling thread when the rows of
  // some more elements are there, `go_on(pairs done)` some ten times a second; when either answers false the rest is
  // left. True when all was compared.
  bool compare(overlap_rows &rows, std::int32_t n, const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
               const overlap_rows::go_on_function &go_on);
  std::span<const pair_record> row(std::int32_t element) const {
    const auto e = static_cast<std::size_t>(element);
    return {records_.data() + first_[e], first_[e + 1] - first_[e]};
  }
  // The whole net with ascending runs; values pass through `stored`. False when it has more records than a net can
  // address.
  bool mirrored_into(class_net &net, const std::function<double(double)> &stored) const;

private:
  std::int32_t n_ = 0;
  std::vector<std::size_t> first_; // 1..n+1
  std::vector<pair_record> records_;
};

} // namespace orb
