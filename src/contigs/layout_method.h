// Contigs by layout: the clones of a library are laid on axes by all their overlaps at once, what contradicts the
// layout is left out, and the ends of what hangs together are joined by their end stretches. In place of a cutoff that
// rises until clusters are nearly paths.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "contigs/clone_layout.h"
#include "contigs/layout_checks.h"
#include "contigs/layout_finish.h"

namespace orb {

struct layout_result {
  band_scale scale;
  std::vector<laid_contig> contigs; // the one with most clones first
  std::vector<clone_suspect> suspects;
  std::vector<clone_number> misfits;
  std::vector<dropped_edge> dropped;
  std::vector<layout_join> joins;
  std::vector<clone_number> alone;                   // ascending; clones in no contig
  std::int64_t n_overlaps = 0, n_overlaps_below = 0; // of the net, at the scale's cutoff and below it
  std::int32_t n_of_stacks = 0;
  bool completed = false;
};

struct layout_options {
  std::uint64_t seed = 1;
  int threads = 0;
};

// What is shown while it works: a step's name, and the share of it that is done. False: stop.
struct layout_progress {
  std::function<void(const std::string &)> step;
  std::function<bool(double)> go_on;
};

// Vertex i of `net` is clone i. Equal for any number of threads.
layout_result lay_contigs(const clone_bands &clones, const class_net &net, const layout_options &options,
                          const layout_progress &progress);

} // namespace orb
