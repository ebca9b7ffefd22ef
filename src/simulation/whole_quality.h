// Measures of a contig's order and path that a folded or joined contig can't flatter: they look at all its clones,
// wherever most of them lie.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "simulation/true_map.h"

namespace orb {

// A clone of one stretch on the map and on the genome.
struct whole_point {
  double left = 0, right = 0; // bands
  true_position begin = 0, end = 0;
};

// Neighbours in an order of left ends, or of centres. Clones at one place of the map count as if in random order, as an
// expected number: no other rule between them is told by the map.
struct neighbour_order {
  double n = 0, out = 0;         // pairs of neighbours; those against the contig's direction
  double n_far = 0, out_far = 0; // of those 2 and more bands apart on the map
  double floor = 0;              // out, if the true places were known in whole bands and no better
  std::optional<double> out_share() const { return n > 0 ? std::optional(out / n) : std::nullopt; }
  std::optional<double> far_share() const { return n_far > 0 ? std::optional(out_far / n_far) : std::nullopt; }
  std::optional<double> floor_share() const { return n > 0 ? std::optional(floor / n) : std::nullopt; }
  void add(const neighbour_order &other);
};

struct whole_quality {
  std::int32_t n_clones = 0;       // of one stretch, with coordinates
  double clones_by_tau = 0;        // sum over contigs of clones * |tau| by centres
  std::int32_t n_clones_right = 0; // in contigs of |tau| >= 0.9
  std::int32_t n_turned = 0;       // runs of neighbours by centres against the direction: a block turned counts once
  neighbour_order lefts, centres;
  std::int32_t n_wrong = 0; // clones outside the main place, where places less than `gap_of_sequence` apart are one
  std::int32_t n_path = 0, n_fewest = 0; // clones of paths; the fewest of their contigs that cover the same
  std::int64_t length_of_paths = 0;      // base pairs in stretches of path clones
  std::optional<double> tau() const { return n_clones > 0 ? std::optional(clones_by_tau / n_clones) : std::nullopt; }
  std::optional<double> path_over_fewest() const {
    return n_fewest > 0 ? std::optional(static_cast<double>(n_path) / n_fewest) : std::nullopt;
  }
  void add(const whole_quality &other);
};

// One contig. Nothing of its order without points.
whole_quality whole_quality_of(const std::vector<whole_point> &points);
// Places that touch, or with a gap between them that a sequence may have, aren't told apart by any fingerprint.
inline constexpr std::int64_t gap_of_sequence = 100000;
// Clones of a contig (by all their stretches) with none in the place that most of them share.
std::int32_t clones_apart(std::vector<true_stretch> of_contig, const true_map &truth);
// Adds its path: all stretches of the path's clones, and of the contig's.
void add_path(std::vector<true_stretch> of_path, std::vector<true_stretch> of_contig, std::int32_t n_path,
              whole_quality &quality);

} // namespace orb
