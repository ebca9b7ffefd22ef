// Minimal tiling paths that the FPC program found, against the longest shortest paths of the contigs in the net.
#pragma once

#include <filesystem>

#include "clustering/class_FPCto_import.h"
#include "drawing/class_clone_net_draw.h"
#include "metrics/overlap_rule.h"
#include "net/class_clone_net_signif.h"

namespace orb {

struct MTP_test_summary {
  std::filesystem::path folder;
  std::int32_t n_tested = 0, n_unknown = 0, n_not_connected = 0;
  bool completed = false; // false: cancelled or stopped
};

// A file of lines "contig, blanks, clones"; lines that begin with "//" are its head. An empty name asks. Makes a folder
// in the working folder with report.txt, a row a contig; ajacent.txt, a row for each two neighbours of a path with
// their score; and a drawing of each contig with its path. In the report m_FPC and m_ORB are the clones of the path of
// the file and of the net; ranks: steps of the path's clones from the start of the net's path, in their order
// (-1: not of the contig); direction: 1 or -1 as ranks rise or fall more often; inversions: steps against it. Follows
// the stop flag between contigs. Throws file_error.
MTP_test_summary test_MTPs_from_FPC(class_clone_net_signif &signif, const overlap_rule &rule,
                                    const class_FPCto_import &registry, std::filesystem::path file,
                                    const drawing_options &drawing);

} // namespace orb
