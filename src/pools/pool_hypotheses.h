// Which clones most likely stand behind a probe: sets of clones as hypotheses, ranked.
//
// A probe lies at one or a few places of the genome, and just the clones that cover a place are positive there. A
// hypothesis is a set of such places: each a clone alone, or clones that overlaps hold together; several places at once
// are tried as long as they explain more. What a hypothesis costs is the score of
// `putatively_positive_clones_based_on_likelyhood` and what its places cost by themselves: each the logarithm of the
// number of clones (it might lie anywhere), each member and each neighbour that is no member by how many of the members
// it overlaps. So a clone whose neighbours all fail to show is dear, and so is one that overlaps few of the others.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "net/class_clone_net_signif.h"
#include "pools/class_pools3D.h"

namespace orb {

struct hypothesis_options {
  double missing_rate = 0.05;  // a clone in a pool fails to show
  double false_rate = 0.002;   // a pool turns positive by a clone of the hypothesis outside of it
  std::int32_t max_places = 2; // of a hypothesis
  std::int32_t best = 3;       // that are kept of a probe
};

struct pool_hypothesis {
  std::vector<std::vector<clone_number>> places; // clones ascending, places by their first clone
  double score = 0;                              // of all its clones
  double cost = 0;                               // with its places; lower is better
  double share = 0;                              // of the likelihood of those that were kept
  bool exact = false, all_explained = false;
  std::vector<clone_number> clones() const;
};

// The scheme with the net of its clones.
class pool_hypotheses {
public:
  // Makes the net of all clones of the scheme by the rule.
  pool_hypotheses(const class_pools3D &pools, class_clone_net_signif &signif, const overlap_rule &rule,
                  const hypothesis_options &options);

  // The best first; none when no pool is positive. Reads only: any number of threads may ask at once.
  std::vector<pool_hypothesis> ranked(const positive_pools &positive) const;
  // What clones of the scheme at these places would cost; clones ascending.
  double cost_of(const positive_pools &positive, const std::vector<std::vector<clone_number>> &places) const;

private:
  friend class hypothesis_search;
  static constexpr std::int32_t most_clones = 48; // of a hypothesis

  void number_the_pools();
  void make_costs();

  class_pools3D pools_; // with the error rates of the options
  hypothesis_options options_;
  class_net net_;                                     // vertex v: the v-th coded clone
  std::vector<pool_place> place_;                     // by vertex
  std::size_t n_pools_ = 0;                           // of all dimensions
  std::vector<std::array<std::int32_t, 3>> pools_of_; // by vertex: pools counted through all dimensions, from 0
  // What a pool adds to the score: positive or not, with c of n clones in it.
  std::array<std::array<std::array<double, most_clones + 1>, most_clones + 1>, 2> cost_of_pool_;
};

struct hypotheses_summary {
  std::int64_t n_probes = 0, n_with_hypotheses = 0;
  std::filesystem::path file;
};

// The hypotheses of all probes of a table as a table, likelihood.txt of the folder: a line a hypothesis. False, and no
// file, after a stop request or when the table can't be read.
bool rank_hypotheses_of_probes(const pool_hypotheses &hypotheses, const class_pools3D &pools,
                               const metric_context &context, const std::filesystem::path &table,
                               const std::filesystem::path &folder, hypotheses_summary &summary);

} // namespace orb
