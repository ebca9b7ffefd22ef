// What a layout says against overlaps and clones: those by which it contradicts the fingerprints.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "contigs/band_columns.h"
#include "contigs/clone_layout.h"
#include "contigs/layout_neighbours.h"

namespace orb {

struct dropped_edge {
  clone_number a = 0, b = 0; // a < b
  edge_end why = edge_end::kept;
  std::int32_t n_for = 0, n_against = 0; // third clones
  double overlap = 0, overlap_laid = 0;  // in bands, when it was dropped
};

struct layout_verdict {
  std::vector<dropped_edge> edges;
  std::vector<clone_number> misfits; // clones whose neighbours should overlap each other and don't
};

// Third clones that speak for an overlap of the piece and against it: neighbours of one end that the layout has
// overlapping the other end by more than 0.6 of the shorter, linked to it or not.
void count_third_clones(const clone_layout &layout, layout_neighbours &around, clone_number a, clone_number b,
                        std::int32_t &n_for, std::int32_t &n_against);
// Of the pairs of a clone's neighbours that should be linked, how many are there, and how many aren't.
void count_neighbour_pairs(const clone_layout &layout, layout_neighbours &around, clone_number clone,
                           std::int32_t &n_pairs, std::int32_t &n_not_linked);
// Clones by which alone two parts of a piece hang together, while the layout has clones of both lying over each other
// that share nothing: a chimera's two places go on beyond its arms. Ascending.
std::vector<clone_number> forking_clones(const clone_layout &layout, std::int32_t piece);
// How the bands of two sets of clones speak against these lying over each other as they do: the natural logarithm of
// how much likelier their common bands are by chance. Places may be off by a few bands. 0: they touch too little to
// tell.
double evidence_apart(const clone_layout &layout, std::span<const laid_clone> first,
                      std::span<const laid_clone> second);
// From here on it is believed: chimeras are rarer than good clones.
inline constexpr double most_evidence_apart = 3;
inline constexpr double sure_bridge = -5; // of ends that one clone lays over each other: they belong together

// A clone by which alone two parts of a piece hang together, with the clones of either near it, ascending by centre.
struct lone_bridge {
  clone_number clone = 0;
  std::vector<clone_number> left, right;
};
// Ascending.
std::vector<lone_bridge> lone_bridges(const clone_layout &layout, std::int32_t piece);
// Whether the bands of both sides let a bridge be true. `n_false`: bridges that are false, expected by chance: where
// they are several, a bridge must have what lies over each other for it, not only nothing against it.
bool is_believed(const clone_layout &layout, const lone_bridge &bridge, double n_false);
// Reads the layout of one piece, its clones from..to-1; changes nothing but their shares of neighbour pairs that aren't
// linked, by clone (-1: too few pairs to tell). Finds overlaps, no clones.
layout_verdict check_clones(const clone_layout &layout, std::int32_t piece, std::size_t from, std::size_t to,
                            layout_neighbours &around, std::vector<float> &share_not_linked,
                            const std::atomic<bool> &stopped);
// Of those shares the large ones that none of a clone's neighbours exceeds, and clones that fork.
std::vector<clone_number> misfits_of(const clone_layout &layout, std::int32_t piece,
                                     const std::vector<float> &share_not_linked);

} // namespace orb
