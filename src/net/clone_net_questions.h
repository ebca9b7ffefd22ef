// What a user asks about single clones in the net: into how many pieces a clone's surroundings fall without it, and how
// far clones lie from the start of a contig's path.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "net/class_clone_net_signif.h"

namespace orb {

struct clone_net_characteristics {
  std::vector<std::int32_t> n_in_rank; // 0..n_rank: clones of each rank
  std::int32_t n_clusters = 0;
};

// Of the clones within n_rank steps of a clone of the current net, and shows "N_clusters = ". False, and nothing shown,
// when the clone is no vertex of the net.
bool clone_net_characteristics_run(class_clone_net_signif &signif, clone_number clone, std::int32_t n_rank,
                                   clone_net_characteristics &result);

struct ranks_of_interesting_clones {
  number_list clones, ranks; // ranks(i) of clones(i) from the start of the diametric path; -1: not reached
  contig_shape shape;
  std::vector<std::filesystem::path> files_written;
};

// Ranks of the clones of the second list in the contig of the first, ranks_of_interesting_clones.txt, and the table of
// steps along the diametric path, Consec_dist_MTP_new.txt. Empty files are asked for. False when cancelled or stopped.
bool contig_test_Ranks_relative_to_start_of_diam_path_run(class_clone_net_signif &signif, const overlap_rule &rule,
                                                          std::filesystem::path file_of_contig,
                                                          const std::filesystem::path &file_of_interesting,
                                                          ranks_of_interesting_clones &result);

} // namespace orb
