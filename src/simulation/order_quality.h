// How well an order of clones agrees with their true order.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orb {

// A clone on the map and on the genome; both in any unit.
struct order_point {
  double map = 0;
  std::int64_t truth = 0;
};

// Pairs of points: concordant when map and truth ascend together, discordant when one ascends and the other descends;
// a pair that is tied on either side is neither. O(n log n) by counting the exchanges of a merge sort (Knight 1966,
// J. Am. Stat. Assoc. 61:436).
struct rank_pairs {
  std::int64_t concordant = 0, discordant = 0;
  std::int64_t untied_map = 0, untied_truth = 0; // pairs that aren't tied on that side
  // Kendall's rank correlation (Kendall 1938, Biometrika 30:81) with the correction for ties (tau b, Kendall 1945,
  // Biometrika 33:239): (concordant - discordant) / sqrt(untied_map * untied_truth). 0 when there are no such pairs.
  double tau() const;
};
rank_pairs rank_pairs_of(std::vector<order_point> points);

// The order of a contig's clones, or of several contigs. A contig has no orientation: the better of both directions
// counts, that is the one with more concordant than discordant pairs (of equals the one with fewer neighbours out of
// order). Chimeric clones and those that sit wrongly take no part; the others stand by the middles of their stretches.
struct order_quality {
  std::int32_t n_clones = 0;
  std::int32_t n_neighbours = 0;   // pairs next to each other in the order, both sides untied
  std::int32_t n_out_of_order = 0; // of those, against the direction of the contig
  std::int32_t n_apart = 0;        // pairs next to each other that don't truly overlap
  std::int64_t shift = 0;          // base pairs between the middles of neighbours out of order, sum
  std::int64_t concordant = 0, discordant = 0;
  double untied = 0;                 // sum over contigs of sqrt(untied_map * untied_truth)
  std::optional<double> tau() const; // nothing without pairs
  void add(const order_quality &other);
};

// One contig. `points` in the order of the list; those of equal map values keep it.
order_quality order_quality_of(std::vector<order_point> points);

} // namespace orb
