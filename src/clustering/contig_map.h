// The contigs of the registry as one map of all clones, for writers of files that other programs read: where each clone
// lies, its place on the tiling path, the clone that it is buried in, and what the revision of the net found.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "graph/class_net.h"

namespace orb {

enum class burial {
  none,
  same_bands, // both clones have as many bands, and all of them are common
  in_larger,  // by the net's burial code
  by_another  // in a clone that is itself buried in the named one
};

enum class Q_verdict { unknown, kept, Q_clone };

struct mapped_clone {
  std::int32_t contig = 0;          // place in `contigs`, from 1; 0: alone
  std::int64_t left = 0, right = 0; // in bands, both included; only where the contig is placed
  std::int32_t place_on_path = 0;   // from 1; 0: not on it
  clone_number buried_in = 0;       // a clone of the contig that isn't buried; 0: not buried, or not known
  burial how = burial::none;
  Q_verdict verdict = Q_verdict::unknown;
};

struct mapped_contig {
  cluster_id id = 0;
  std::string name;
  bool is_placed = false;           // has coordinates
  std::int64_t left = 0, right = 0; // the extremes of its clones
  std::vector<clone_number> clones; // from left to right; not placed: by number
};

struct contig_map {
  std::vector<mapped_contig> contigs{1}; // from 1; those of `cluster_is_contig_get`, by id
  std::vector<mapped_clone> clones{1};   // by clone number
  std::vector<clone_number> alone;       // by number
};

// Whether the revision of a net removed this clone, as far as the net tells: one without a marked Q-clone doesn't.
// `n_Q`: how many it marks.
Q_verdict verdict_in_net(const class_net &net, std::int32_t n_Q, clone_number clone);

// `net`: of the library, with burial codes and marks of Q-clones; null: none is known. A net without a marked Q-clone
// tells no verdicts. False when stopped, or after a message: coordinates that can't be.
bool make_contig_map(process_frame &frame, const class_DB_of_clones &database, const class_FPCto_import &registry,
                     const class_net *net, contig_map &map);

} // namespace orb
