// The upper half of a net while it is made: for each element its significant partners of higher number. Memory grows
// with the overlaps only, also while the half becomes the whole.
#pragma once

#include <algorithm>
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
    const auto behind = std::upper_bound(parts_.begin(), parts_.end(), element,
                                         [](std::int32_t e, const part &one) { return e < one.first; });
    return behind == parts_.begin() ? std::span<const pair_record>() : (behind - 1)->row(element);
  }
  enum class mirror_end { done, too_large, stopped };
  // Turns into the whole net with ascending runs; values pass through `stored`. Each part goes as soon as its records
  // stand in the net, whose memory is taken once. The half stays when it has more records than a net can address. When
  // `go_on` answers false, net and half are empty.
  mirror_end mirrored_into(class_net &net, const std::function<double(double)> &stored,
                           const std::function<bool()> &go_on);

private:
  // Rows of some elements on end: what comes at once is kept as it comes, and never moved.
  struct part {
    std::int32_t first;
    std::vector<std::size_t> begin; // of the rows of first, first + 1 .., and behind the last
    std::vector<pair_record> records;
    std::int32_t n_rows() const { return static_cast<std::int32_t>(begin.size()) - 1; }
    std::span<const pair_record> row(std::int32_t element) const {
      const auto at = static_cast<std::size_t>(element - first);
      if (at + 1 >= begin.size())
        return {};
      return {records.data() + begin[at], begin[at + 1] - begin[at]};
    }
  };
  std::int32_t n_ = 0;
  std::vector<part> parts_;
};

} // namespace orb
