// What an open net is filled from: lent at each call by the session, which owns all of it.
#pragma once

#include <cstdint>
#include <filesystem>

#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "metrics/class_clone_dist_my.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"

namespace orb {

class class_net_elng_clust;

// Where the value of a pair and the neighbours of a clone come from. Evidence from a sequence or from a linkage map
// would be two more sources; this system holds no such data.
enum class value_source : std::int8_t {
  bands = 0, // the metric on the bands of both clones; no lists of neighbours
  net = 1,   // the loaded net of significant overlaps
};

struct net_sources {
  process_frame &frame;
  class_DB_of_clones &database;   // with the registry of contigs, when contigs are specified
  class_clone_net_signif &signif; // holds the loaded net; one without vertices: none is loaded
  class_clone_dist_my &gate;      // scores pairs; operations set its rule
  overlap_rule rule;              // metric and burying; each operation has its own cutoff
  random_source &chance;
  std::filesystem::path results_folder;          // lists that operations write
  class_net_elng_clust *cluster_table = nullptr; // overrides the clusters of the registry when a table is loaded

  bool clones_exist() const { return database.total_number_of_clones_get() > 0; }
  // A net of another library isn't asked.
  bool net_is_loaded() const {
    return clones_exist() && signif.net().number_of_vertices_get() == database.total_number_of_clones_get();
  }
  value_source value_source_get(bool use_net) const {
    return use_net && net_is_loaded() ? value_source::net : value_source::bands;
  }
};

} // namespace orb
