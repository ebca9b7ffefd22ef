// The contigs of two assemblies of one library against each other: which are joined, split or lacking in the other, and
// by which clones and overlaps.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"

namespace orb {

struct contig_counts {
  std::int32_t n = 0, n_same = 0, n_changed = 0, n_split = 0, n_joined = 0, n_lacking = 0;
};

struct fpc_comparison {
  contig_counts of_file, of_run; // a contig may be split and joined
  std::int32_t n_moved = 0;      // clones of contigs that aren't the same
  bool completed = false;        // false after a stop request: then nothing was written
  std::vector<std::filesystem::path> files;
};

// Only contigs in use with more than one clone count. Written into `folder`, fields between tabs:
// - contigs_of_file.txt, contigs_of_run.txt: contig, number of clones, verdict, clones that are in no contig of the
//   other, and the contigs of the other with the number of clones of each;
// - links_of_file.txt, links_of_run.txt: for a contig that is split, its parts by two with the number of overlaps
//   between them in the net, and the strongest one with its clones; for a part without any the pair of clones that
//   comes nearest to one by the rule's metric, unless there are too many pairs;
// - moved_clones.txt: the clones of all contigs that aren't the same, with both contigs.
// Cost: the clones and the overlaps of their contigs, and for each contig at most two million pairs of clones. Throws
// file_error.
fpc_comparison compare_assemblies(const class_clone_net_signif &signif, const overlap_rule &rule,
                                  const class_FPCto_import &of_file, const class_FPCto_import &of_run,
                                  const std::filesystem::path &folder);

} // namespace orb
