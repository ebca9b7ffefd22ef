// Breadth-first walks from many starts at once, step by step: bit s of a word belongs to walk s. A record is looked at
// once for all walks that come by, and none is when all walks have been everywhere: walks from the thousands of
// vertices of a dense heap cost little more than a few.
#pragma once

#include <bit>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "graph/class_net.h"

namespace orb {

using walk_bits = std::uint64_t;
inline constexpr std::size_t walks_at_once = 64;

// Calls `call(walk)` for each walk of the bits.
template <class function> void for_each_walk(walk_bits bits, const function &call) {
  for (; bits != 0; bits &= bits - 1)
    call(static_cast<std::size_t>(std::countr_zero(bits)));
}

class many_walks {
public:
  // `go_on` is asked some ten times a second; when it answers false every step finds nothing from then on.
  many_walks(const class_net &net, const std::function<bool()> &go_on);

  // Forgets all walks; `n_walks` new ones have no starts yet.
  void start(std::int32_t n_walks);
  void add_start(vertex_number v, walk_bits walks);
  // Moves all walks on. The walks that reached vertices for the first time; 0: nothing more is to be found.
  walk_bits step();

  // What the last step (or the starts) reached, in no set order, and by which walks.
  std::span<const vertex_number> layer() const { return layer_; }
  walk_bits reached_now(vertex_number v) const { return here_[static_cast<std::size_t>(v)]; }
  walk_bits reached(vertex_number v) const { return seen_[static_cast<std::size_t>(v)]; }
  bool stopped() const { return stopped_; }

private:
  walk_bits reach_neighbours(vertex_number v, walk_bits walks);

  const class_net *net_;
  const std::function<bool()> &go_on_;
  std::vector<walk_bits> here_, next_, seen_; // by vertex
  std::vector<vertex_number> layer_, next_layer_;
  std::int64_t n_open_ = 0; // pairs of a walk and a vertex that it hasn't reached
  std::int64_t n_records_ = 0;
  bool stopped_ = false;
};

} // namespace orb
