// The overlaps of a net with what the layout asks of them: common bands, length of the overlap, score at the library's
// own scale. Flat: the run of a clone, then that of the next, each ascending.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "graph/class_net.h"
#include "net/band_scale.h"

namespace orb {

// Why an overlap takes no part in the layout.
enum class edge_end : std::uint8_t {
  kept,
  third_clones, // clones that overlap one of the two should overlap the other, and don't
  too_far       // the layout has the two far less overlapping than they do
};

struct scored_edge {
  clone_number to = 0;
  std::int16_t common = 0;
  edge_end end = edge_end::kept; // the same in both records
  float overlap = 0;             // in bands
  float score = 0;
};

class scored_net {
public:
  // Records of `net` that score at least `least` by the scale. Vertex i is clone i. Empty after `go_on` answered false.
  scored_net(const class_net &net, const clone_bands &clones, const band_scale &scale, double least, int threads,
             const std::function<bool()> &go_on);

  std::int32_t n() const { return static_cast<std::int32_t>(first_.size()) - 2; }
  std::size_t n_records() const { return edges_.size(); }
  std::int64_t n_left_out() const { return n_left_out_; } // records of the net below `least`
  std::span<const scored_edge> of(clone_number clone) const {
    const auto c = static_cast<std::size_t>(clone);
    return {edges_.data() + first_[c], first_[c + 1] - first_[c]};
  }
  std::span<scored_edge> of(clone_number clone) {
    const auto c = static_cast<std::size_t>(clone);
    return {edges_.data() + first_[c], first_[c + 1] - first_[c]};
  }
  // Null when the two have none.
  const scored_edge *find(clone_number a, clone_number b) const;
  void end_both(clone_number a, clone_number b, edge_end end);

private:
  std::vector<std::size_t> first_; // 1..n+1
  std::vector<scored_edge> edges_;
  std::int64_t n_left_out_ = 0;
};

} // namespace orb
