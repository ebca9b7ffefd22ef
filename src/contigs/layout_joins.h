// From pieces to contigs: single clones are attached, ends are joined by what their end stretches share, by overlaps
// between them, and by clones in thin places that the clone test took for two.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "contigs/clone_layout.h"
#include "contigs/layout_ends.h"

namespace orb {

// Chimeras that match two ends by chance, as expected: with more, one clone is never enough.
inline constexpr double most_false_ends = 0.25;

class layout_joiner {
public:
  // `careful`: chimeras are many, so that less is believed.
  layout_joiner(clone_layout &layout, int threads, const go_on_function &go_on);

  // Clones that lie in no piece go to that of their neighbours where these agree. How many did.
  std::int32_t attach_clones();
  // At first only what several clones tell counts: end stretches of both sides, bridges that another seconds.
  void believe_one_clone(bool yes) { one_clone_counts_ = yes; }
  // One round each: how many joins. Pieces given up become empty; `touched` names those that grew. False ends: stopped.
  std::int32_t join_end_stretches();
  std::int32_t join_by_edges();
  std::int32_t join_by_bridges();

  // How many chimeras may hold two contigs together that both end at their arms: by chance, as many as there are.
  double chance_of_false_bridges();

  const std::vector<std::int32_t> &touched() const { return touched_; }
  void forget_touched();

private:
  // A clone put where most of its overlaps want it.
  struct wanted_place {
    double centre = 0;
    std::int32_t n_edges = 0, n_consistent = 0, n_not_linked = 0;
    double covered = 0; // of the clone's length
  };
  struct end_candidate {
    std::int64_t p = 0, q = 0; // ids of ends
    end_match match;
    bool flush = false;
    bool good = false; // as believed in this round: contigs grow fewer, and so what chance gives
    join_support support = join_support::both_sides;
  };
  struct edge_pair { // an overlap between two ends
    clone_number u = 0, v = 0;
    double implied = 0; // overlap of the two contigs
    double overlap = 0, score = 0;
  };
  struct side { // an end: of a piece, or a single clone
    std::int32_t piece = -1;
    clone_number single = 0;
    bool right = false;
    bool operator==(const side &) const = default;
    bool operator<(const side &o) const {
      return piece != o.piece ? piece < o.piece : single != o.single ? single < o.single : right < o.right;
    }
    bool same_contig(const side &o) const { return piece == o.piece && single == o.single; }
  };
  struct edge_candidate {
    side p, q;
    double overlap = 0, weight = 0;
    std::int32_t n_agreeing = 0;
    clone_number u = 0, v = 0;
    bool good = false;
  };
  struct bridge_candidate {
    clone_number clone = 0;
    side p, q;
    double overlap_p = 0, overlap_q = 0, weight = 0;
    bool good = false; // otherwise it only rules out others
  };
  struct bridge_arm {
    side at;
    double overlap = 0, off = 0; // as its overlaps imply, and how far its bands say otherwise
    std::int32_t n = 0;          // overlaps that agree
  };

  struct attached_clone {
    clone_number clone = 0; // 0: it stays alone
    std::int32_t piece = -1;
    double centre = 0;
  };

  struct wish { // a place for a clone, and the overlaps that can live with it
    double centre = 0, error = 0;
    std::int32_t consistent = 0;
  };

  std::vector<clone_number> clones_to_attach();
  attached_clone place_among_neighbours(clone_number clone) const;
  bool place_clone(clone_number clone, std::int32_t piece, wanted_place &place) const;
  double overlap_at(clone_number clone, double centre, clone_number other) const;
  std::vector<wish> wishes_of(clone_number clone, std::span<const scored_edge *const> edges) const;
  std::int32_t not_linked_at(clone_number clone, std::int32_t piece, double centre) const;
  void choose_place(clone_number clone, std::int32_t piece, std::span<const wish> wishes, wanted_place &place) const;
  bool may_attach(clone_number clone, std::int32_t piece, const wanted_place &place) const;

  void refresh_ends();
  void match_new_ends();
  end_candidate judge(const contig_end &p, const contig_end &q, double need) const;
  void judge_candidates(double need);
  bool carried_by_good_clones(const contig_end &p, const contig_end &q, const end_candidate &found, double need) const;
  void judge_new(std::int64_t a, std::int64_t b, double need, std::vector<end_candidate> &found) const;
  bool share_an_overlap(const contig_end &a, const contig_end &b) const;
  bool is_rivalled(const end_candidate &candidate, std::int64_t end, std::int64_t mate) const;
  bool fits_other_end(const end_candidate &of, std::int64_t end, std::int64_t rival) const;
  const contig_end &end(std::int64_t id) const { return ends_[static_cast<std::size_t>(id)]; }

  double beyond(const side &at, clone_number c) const; // bands of the contig beyond a clone, towards its end
  double edge_of(const side &at) const;
  void measure_pieces();
  double footprint(clone_number clone, const side &at) const;
  void gather_edge_pairs(std::vector<std::pair<std::pair<side, side>, edge_pair>> &pairs);
  edge_candidate judge_edges(const side &p, const side &q,
                             std::span<const std::pair<std::pair<side, side>, edge_pair>> of) const;
  // Clones of two ends on an axis on which p ends at 0 and q begins at -overlap.
  struct laid_ends {
    std::vector<laid_clone> p, q;
  };
  laid_ends lay_ends(const side &p, const side &q, double overlap) const;
  std::int32_t predicted_not_linked(const laid_ends &ends) const;
  bool bridge_to(clone_number clone, bridge_candidate &found) const;
  bool is_rivalled(const bridge_candidate &one, std::span<const bridge_candidate> candidates) const;
  bool leads_elsewhere(const side &at, const side &mate) const;
  static bool is_seconded(const bridge_candidate &one, std::span<const bridge_candidate> candidates);
  bool shows_both_ends(const bridge_candidate &one) const;
  bool is_believed(const bridge_candidate &one, std::span<const bridge_candidate> candidates, double chance) const;
  void join_over(const bridge_candidate &one);
  bool ends_meet(const side &p, const side &q) const;
  bridge_arm arm_in(clone_number clone, std::int32_t piece) const;
  double bridge_off(double n) const;
  double chimeras_expected() const; // in the whole library, found or not
  double chance_of_two_ends(double within) const;
  // Whether what one clone tells is too little to join two contigs, with so many false ones expected among all.
  bool one_is_too_few(double n_false, double most, std::int32_t p, std::int32_t q) const;

  std::int32_t piece_of_side(const side &at);
  void outermost(std::int32_t piece, bool right, std::vector<clone_number> &clones) const;
  void flip(std::int32_t piece);
  // `overlap`: of the two contigs, in bands.
  void join(const side &p, const side &q, double overlap, layout_join told);

  clone_layout &layout_;
  int threads_;
  const go_on_function &go_on_;
  bool one_clone_counts_ = true;
  bool careful_ = false;
  double false_ends_ = 0; // chimeras at ends, expected to match another end by chance
  end_matcher matcher_;
  std::vector<contig_end> ends_; // by id; those given up have no bands
  std::vector<char> end_lives_;
  std::vector<std::int64_t> new_ends_;
  std::vector<end_candidate> candidates_;    // of ends that live
  std::vector<std::array<double, 2>> reach_; // by piece: to the left, as a negative, and to the right
  std::vector<std::pair<std::int32_t, std::int32_t>> contacts_; // overlaps of two pieces, or of a piece and a clone (-)
  std::vector<std::int32_t> touched_;
  std::vector<char> changed_;      // by piece: since clones were attached
  std::vector<char> ends_known_;   // by piece
  std::vector<char> single_known_; // by clone
};

} // namespace orb
