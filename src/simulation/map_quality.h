// How good the contigs of a run are where the true places of the clones are known: the measures by which physical maps
// are judged, with the clones and steps that do the damage.
//
// Words. A stretch is one part of a clone on the genome; a clone of several stretches is chimeric. A place is a
// connected union of stretches that overlap by at least a base. The main place of a contig is, of the places of its
// clones' stretches, the one with most clones (of equals the longer one, then the left one). A clone sits rightly when
// any of its stretches lies in the main place, otherwise wrongly. Clones that the truth doesn't know, or whose
// stretches are empty, are counted as unknown and take no part in anything else. Only contigs are judged; heaps (the
// smaller clusters of a run) are counted.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "contigs/run_folder.h"
#include "simulation/evaluation_files.h"
#include "simulation/order_quality.h"
#include "simulation/path_quality.h"
#include "simulation/true_map.h"
#include "simulation/whole_quality.h"

namespace orb {

struct contig_quality {
  std::string name;
  std::int32_t width = -1; // as the run has it; -1: not measured
  std::int32_t n_clones = 0, n_unknown = 0;
  std::int32_t n_chimeric = 0; // clones of several stretches that are in the contig
  std::int32_t n_wrong = 0;    // clones that sit wrongly
  // The main place and the others that hold a clone that sits wrongly; 0 when no clone is known. The further stretches
  // of chimeric clones that sit rightly make no place.
  std::int32_t n_places = 0;
  true_place main;
  std::optional<double> length_bands;       // largest right coordinate - smallest left one + 1
  std::optional<double> bands_a_kb() const; // length in bands / kilobases of the main place
  std::optional<order_quality> coordinates; // of the order by middles of coordinates
  std::optional<order_quality> ordering;    // of the order of the unburied clones found by the ordering
  std::optional<path_quality> path;         // of the tiling path
  whole_quality whole;                      // of all its clones, whatever the main place
};

// A clone that sits wrongly. `distance`: base pairs to the main place; -1: it lies on other chromosomes.
struct misplaced_clone {
  std::int32_t contig = 0; // from 0, in `map_quality::contigs`
  true_clone clone = -1;
  std::int64_t distance = 0;
};
// A chimeric clone with stretches in two counted places of a contig: what may have joined them.
struct joining_clone {
  std::int32_t contig = 0;
  true_clone clone = -1;
};
// A chimeric clone with stretches apart from each other within one counted place: it may fold a contig that holds all
// between them, which shows in the order only. `distance`: the widest gap between its neighbouring stretches there,
// base pairs.
struct folding_clone {
  std::int32_t contig = 0;
  true_clone clone = -1;
  std::int64_t distance = 0;
};
// Two clones that follow each other in a contig's tiling path or order. `distance`: base pairs between their stretches;
// -1: on different chromosomes. `place`: of the first one in path or order, from 1.
struct damaging_step {
  std::int32_t contig = 0, place = 0;
  true_clone first = -1, second = -1;
  std::int64_t distance = 0;
};
// Two contigs whose main places follow each other in one island of coverage. `gap`: base pairs between them, negative
// for the bases that they share.
struct broken_island {
  std::int32_t left = 0, right = 0; // contigs, from 0
  std::int64_t gap = 0;
};

// Lengths of contigs: N50 is the length of the contig at which the sum from the longest reaches half of the total, L50
// the number of contigs up to that one.
struct length_quality {
  std::int32_t n_contigs = 0; // whose length is known
  double total = 0, N50 = 0;
  std::int32_t L50 = 0;
};

// Bands a kilobase: sum of lengths in bands over the sum of main places in kilobases, of contigs where both are known;
// standard deviation over these contigs, each counting the same (0 for a single one).
struct band_density {
  std::int32_t n_contigs = 0;
  double mean = 0, deviation = 0, least = 0, most = 0;
};

struct Q_clone_quality {
  std::int32_t n_listed = 0, n_unknown = 0; // names of the list; those that the truth lacks
  std::int32_t n_chimeric_found = 0;
  std::int32_t n_good_lost = 0; // listed, but of one stretch
  std::vector<true_clone> missed, lost;
};

struct map_quality {
  std::vector<contig_quality> contigs; // in order of the run

  std::int32_t n_clones_true = 0;   // of the truth, with a place
  std::int32_t n_chimeric_true = 0; // of those, of several stretches
  std::int32_t n_clones_in_contigs = 0, n_heaps = 0, n_clones_in_heaps = 0;
  std::int32_t n_alone = 0;   // clones of the truth in no contig and no heap
  std::int32_t n_unknown = 0; // clones of contigs and heaps that the truth lacks
  std::int32_t n_chimeric_in_contigs = 0;

  std::int32_t n_joining = 0; // contigs with at least one clone that sits wrongly
  std::int32_t n_wrong = 0;   // clones that sit wrongly

  std::int64_t genome_length = 0; // as given, or the sum of the largest ends of all chromosomes
  bool genome_length_given = false;
  std::int64_t length_of_clones =
      0; // sum over all clones of the truth: its part by the genome's length is the coverage
  // Base pairs in at least one counted place of a contig (see `contig_quality::n_places`).
  std::int64_t length_in_contigs = 0;
  std::int32_t n_islands = 0; // unions of overlapping stretches of all clones of the truth
  std::int64_t length_of_islands = 0;
  std::int32_t n_islands_with_contig = 0; // that hold the main place of a contig
  std::int32_t n_placed_contigs = 0;      // with a main place
  std::int32_t most_contigs_an_island = 0;

  std::optional<length_quality> bands, base_pairs; // the latter of main places
  std::optional<order_quality> coordinates, ordering;
  std::optional<band_density> density;
  std::optional<path_quality> path;
  whole_quality whole;
  std::optional<Q_clone_quality> Q_clones;

  std::vector<misplaced_clone> misplaced;
  std::vector<joining_clone> joining;
  std::vector<folding_clone> folding;
  std::vector<broken_island> breaks;
  std::vector<damaging_step> false_path_steps;
  std::vector<damaging_step> apart_by_coordinates, apart_by_ordering; // neighbours that don't truly overlap
};

struct evaluation_input {
  const run_folder *run = nullptr;
  std::span<const clone_order> orders;                // of each cluster; may be empty
  const std::vector<std::string> *Q_clones = nullptr; // null: not known
  std::int64_t genome_length = 0;                     // 0: by the largest ends
};

// n log n over clones and stretches.
map_quality map_quality_of(const evaluation_input &input, const true_map &truth);

} // namespace orb
