// The neighbours that checks of a layout look at again and again, with their places: gathered once for each clone.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "contigs/clone_layout.h"

namespace orb {

struct neighbour_place {
  double left = 0, right = 0, n = 0;
  clone_number clone = 0;
  // As clone_layout::should_be_linked has it.
  bool should_be_linked(const neighbour_place &other) const {
    return std::min(right, other.right) - std::max(left, other.left) > clone_layout::sure_share * std::min(n, other.n);
  }
};

class layout_neighbours {
public:
  static constexpr std::size_t most = 120; // of a stack of clones a part speaks for all

  explicit layout_neighbours(const clone_layout &layout)
      : layout_(layout), run_of_(static_cast<std::size_t>(layout.clones.n) + 1, -1), remembered_(n_remembered, 0) {}

  // Neighbours of a clone in its piece, ascending, at most so many, evenly from its overlaps. Valid until `forget`.
  std::span<const neighbour_place> of(clone_number clone);
  // Before the layout changes, or when what was gathered is no longer asked for.
  void forget();

  neighbour_place place_of(clone_number c) const { return {layout_.left(c), layout_.right(c), layout_.n_of(c), c}; }
  // As clone_layout::linked_by_bands, which it asks mostly once a pair.
  bool linked_by_bands(clone_number a, clone_number b);

private:
  static constexpr std::size_t n_remembered = std::size_t{1} << 14;

  const clone_layout &layout_;
  std::vector<std::int32_t> run_of_; // by clone; -1: not gathered
  std::vector<clone_number> gathered_;
  std::vector<std::vector<neighbour_place>> runs_; // those beyond gathered_ keep their room
  std::vector<std::uint64_t> remembered_;          // pair and answer, by a number of the pair
};

// Walks along the overlaps of a clone for ascending others, in steps that double while the one sought is far.
class ascending_overlaps {
public:
  explicit ascending_overlaps(std::span<const scored_edge> run) : run_(run) {}
  // Null when the clone has none with `to`, which isn't less than in the call before.
  const scored_edge *find(clone_number to) {
    std::size_t step = 1;
    while (at_ + step < run_.size() && run_[at_ + step].to <= to) {
      at_ += step;
      step *= 2;
    }
    for (; step > 0; step /= 2)
      if (at_ + step < run_.size() && run_[at_ + step].to <= to)
        at_ += step;
    return at_ < run_.size() && run_[at_].to == to ? &run_[at_] : nullptr;
  }

private:
  std::span<const scored_edge> run_;
  std::size_t at_ = 0; // the last that isn't beyond what was sought, or the first
};

} // namespace orb
