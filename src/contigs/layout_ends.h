// The end stretches of contigs: bands that lie within some distance of an end, each seen by several clones. Where two
// clones share too little to tell, two such stretches do.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "contigs/band_columns.h"
#include "contigs/clone_layout.h"

namespace orb {

// Reaches at which ends are compared, in bands of clones of 110.
inline constexpr std::array<double, 9> end_reaches{5, 8, 12, 18, 26, 38, 55, 80, 115};
inline constexpr double end_profile_length = 143;

struct end_band {
  band_value value = 0;
  float distance = 0;      // from the end, in bands
  float near = 0, far = 0; // that it may have
  bool loose = false;      // of the outermost clone, in no column
};

// One end of a piece, or a clone that lies in none.
struct contig_end {
  std::int32_t piece = -1; // -1: a single clone
  bool right = false;
  clone_number outermost = 0;
  std::vector<end_band> bands; // ascending by value
  // Share of the bands just behind the outermost clone, of the others' last stretch, that it shows; -1: too few.
  double shown_behind = -1;
  bool is_single() const { return piece < 0; }
};

contig_end end_of_piece(const clone_layout &layout, std::int32_t piece, bool right);
// The same as if a clone weren't there (0: all are).
contig_end end_without(const clone_layout &layout, std::int32_t piece, bool right, clone_number left_out);
// Share of the bands next to an end that a clone shows which reaches so far into it, in bands; -1: too few to tell. A
// clone that goes on from the end shows nearly all; a chimera, of which a part lies further in, doesn't.
double share_shown(const clone_layout &layout, const contig_end &end, clone_number clone, double overlap);
contig_end end_of_single(const clone_layout &layout, clone_number clone);

// The score that two of so many ends must reach: some thousandth of a false match is expected among all.
double score_of_ends(double n_ends);

// How two ends match.
struct end_match {
  std::int32_t common = 0, n_1 = 0, n_2 = 0; // of the stretches within `reach`
  double reach = 0;                          // the best of some, in bands
  double score = 0;
  double overlap = 0;                              // of the two contigs, in bands
  double score_without_1 = 0, score_without_2 = 0; // without the loose bands of either
};

class end_matcher {
public:
  explicit end_matcher(const clone_layout &layout) : layout_(layout) {}
  // Score 0: too few common bands.
  end_match match(const contig_end &p, const contig_end &q) const;
  void score_without_loose(const contig_end &p, const contig_end &q, end_match &match) const;
  static constexpr double flush_share = 0.7;
  // Whether of what lies within the overlap (bands) of either end such a share is found in the other.
  bool flush(const contig_end &p, const contig_end &q, double overlap, double share = flush_share) const;

private:
  struct band_count {
    std::int32_t common = 0, n_1 = 0, n_2 = 0;
  };
  band_count count(const contig_end &p, const contig_end &q, double reach, bool loose_1, bool loose_2) const;
  bool flush_one_way(const contig_end &p, const contig_end &q, double overlap, double share) const;

  const clone_layout &layout_;
};

// Finds, by the bands themselves, the few ends that can match one at all: their number, not that of all ends, is what a
// search costs. The ends must outlive it.
class end_index {
public:
  end_index(const clone_layout &layout, std::span<const contig_end> ends, std::span<const std::int64_t> living);

  struct scratch {
    std::vector<std::array<std::int32_t, end_reaches.size()>> common; // by place in `living`
  };
  // Ids of the living ends that may reach the score `need` against `p`: all that do are among them. Ascending.
  void look_up(const contig_end &p, double need, scratch &place, std::vector<std::int64_t> &found) const;

private:
  using counts = std::array<std::int32_t, end_reaches.size()>; // bands within each reach
  struct entry {
    band_value value;
    std::int32_t place; // in `living_`
    std::uint8_t reach; // the first that holds it
  };
  std::size_t reach_of(const end_band &band) const;
  counts count_bands(const contig_end &end) const;
  double most_score(std::int32_t k, std::int32_t n_1, std::int32_t n_2) const;

  const clone_layout &layout_;
  std::vector<std::int64_t> living_;
  std::vector<entry> entries_; // ascending by value
  std::vector<counts> n_;      // by place in `living_`
  std::vector<double> log_factorial_, log_p_, log_q_;
};

} // namespace orb
