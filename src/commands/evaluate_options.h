// What `orb evaluate` is asked to do.
#pragma once

#include <cstdint>
#include <filesystem>

namespace orb {

struct evaluation_options {
  std::filesystem::path truth;    // table of true positions
  std::filesystem::path Q_clones; // report of Q-clones or list of names; empty: the one beside the run
  std::int64_t genome_length = 0; // base pairs; 0: the largest ends of the truth
};

} // namespace orb
