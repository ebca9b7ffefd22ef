// The state of a layout: which clones make a piece, where each lies, which are suspect, what holds pieces together.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "net/clone_test.h"
#include "net/scored_net.h"

namespace orb {

// How two ends were told to belong together.
enum class join_kind : std::uint8_t { end_stretch, edges, bridge };
// Whose bands carry a join of two end stretches: seen by several clones on both sides, on one, or by the two
// outermost clones alone.
enum class join_support : std::uint8_t { both_sides, one_side, two_clones };

struct layout_join {
  join_kind kind = join_kind::end_stretch;
  join_support support = join_support::both_sides;
  clone_number a = 0, b = 0;     // outermost clones of the two ends, or of an edge
  double overlap = 0;            // of the two contigs, in bands
  double score = 0;              // of the end stretches
  std::int32_t common = 0;       // bands of the end stretches, or agreeing edges
  std::int32_t n_a = 0, n_b = 0; // bands of the end stretches
  clone_number bridge = 0;
  std::vector<clone_number> witnesses; // outermost clones of a's side and of b's side
};

struct layout_spring { // between clones of two pieces that were joined
  clone_number a = 0, b = 0;
  double distance = 0; // of their centres
};

enum class suspect_reason : std::uint8_t { none, two_sides, misfit };

struct clone_layout {
  clone_layout(const clone_bands &of, const band_scale &by, scored_net &overlaps)
      : clones(of), scale(by), net(overlaps), linked_least(of, by, by.linked_cutoff()),
        centre(static_cast<std::size_t>(of.n) + 1, 0), piece_of(static_cast<std::size_t>(of.n) + 1, -1),
        suspect(static_cast<std::size_t>(of.n) + 1, suspect_reason::none),
        n_bands(static_cast<std::size_t>(of.n) + 1, 0) {
    for (clone_number c = 1; c <= of.n; ++c) {
      n_bands[static_cast<std::size_t>(c)] = of.count(c);
      most_bands = std::max(most_bands, n_of(c));
    }
  }

  const clone_bands &clones;
  const band_scale &scale;
  scored_net &net;
  least_common_table linked_least;
  std::vector<double> centre;                    // by clone, on the axis of its piece, in bands
  std::vector<std::int32_t> piece_of;            // by clone; -1: in none
  std::vector<std::vector<clone_number>> pieces; // ascending by centre; empty: given up to another
  std::vector<suspect_reason> suspect;           // by clone
  std::vector<std::int32_t> n_bands;             // by clone
  double most_bands = 0;                         // of a clone
  telling_suspects telling;                      // by which chimeras are counted
  std::vector<layout_spring> springs;
  std::vector<layout_join> joins;

  double n_of(clone_number c) const { return n_bands[static_cast<std::size_t>(c)]; }
  double left(clone_number c) const { return centre[static_cast<std::size_t>(c)] - n_of(c) / 2; }
  double right(clone_number c) const { return centre[static_cast<std::size_t>(c)] + n_of(c) / 2; }
  std::int32_t piece(clone_number c) const { return piece_of[static_cast<std::size_t>(c)]; }
  bool is_suspect(clone_number c) const { return suspect[static_cast<std::size_t>(c)] != suspect_reason::none; }
  // Of two clones of one piece; negative where a gap is between them.
  double overlap_laid(clone_number a, clone_number b) const {
    return std::min(right(a), right(b)) - std::max(left(a), left(b));
  }
  double fewer_bands(clone_number a, clone_number b) const { return std::min(n_of(a), n_of(b)); }
  bool is_overlap(const scored_edge &edge) const { // of the net proper
    return edge.end == edge_end::kept && edge.score >= scale.cutoff;
  }
  // Whether two clones share more than chance gives, by the net or by comparing them.
  bool linked(clone_number a, clone_number b) const;
  bool linked_by_bands(clone_number a, clone_number b) const; // the same for two that the net doesn't have
  // Whether the layout has two clones of one piece overlapping so far that they should be linked.
  bool should_be_linked(clone_number a, clone_number b) const {
    return overlap_laid(a, b) > sure_share * fewer_bands(a, b);
  }
  void sort_piece(std::int32_t piece);
  // How far a piece reaches to the right, or to the left as a negative: the outer end of `outer_end`'s farthest clone.
  double outer_end(clone_number c, bool at_right) const { return at_right ? right(c) : -left(c); }
  double reach_of(std::int32_t piece, bool at_right) const;
  // Calls `look(c)` for the clones of a sorted piece whose outer ends lie within `depth` of its reach at one side.
  template <class function> void for_end(std::int32_t piece, bool at_right, double depth, const function &look) const {
    const auto &members = pieces[static_cast<std::size_t>(piece)];
    const double least = reach_of(piece, at_right) - depth;
    for (std::size_t i = 0; i < members.size(); ++i) {
      const clone_number c = at_right ? members[members.size() - 1 - i] : members[i];
      const double x = centre[static_cast<std::size_t>(c)];
      if ((at_right ? x : -x) + most_bands / 2 < least)
        return;
      if (outer_end(c, at_right) >= least)
        look(c);
    }
  }

  // A clone with more overlaps is of a stack: a part of them speaks for all, and the run says how many such there are.
  static constexpr std::size_t most_overlaps = 500;
  bool is_of_stack(clone_number c) const { return net.of(c).size() > most_overlaps; }

  static constexpr double sure_share = 0.6;
};

using go_on_function = std::function<bool()>;

} // namespace orb
