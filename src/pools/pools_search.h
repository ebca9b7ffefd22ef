// One case of a screening: which clones lie in the positive pools, and which of them belong together.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "net/class_clone_net_signif.h"
#include "pools/class_pools3D.h"

namespace orb {

struct pools_search_wishes {
  std::filesystem::path file;       // positive pools; empty: asks
  std::optional<bool> subdivide;    // into linked groups; unset: asks
  std::optional<std::int32_t> rank; // of clones that are added before; unset: asks
};

struct pools_search_result {
  number_list clones;
  std::string answer; // what was found, in words
  std::int32_t n_groups = 0;
  std::vector<std::filesystem::path> files;
};

// Reads the lists of positive pools and looks for the clones in their intersections: clones_PxPxP.txt and in pools.txt
// of the working folder, and an answer in a message box. Two clones or more may be subdivided then. False when it was
// cancelled or stopped or the file can't be read; the messages were shown.
bool work_with_list_of_positive_pools_run(const class_pools3D &pools, class_clone_net_signif &signif,
                                          const overlap_rule &rule, const pools_search_wishes &wishes,
                                          pools_search_result &result);

// The found clones with those that overlaps join to them within `rank` steps, as linked groups: in pools_.txt, in
// pools__.txt (group by group), for each group of two clones or more a table and a drawing of its net (red: clones of
// the scheme), and clustering_report.txt with a line a group: "+" when it explains all positive pools, else "-" and
// what it doesn't explain. False after a stop request.
bool subdivide_found_clones_into_groups(const class_pools3D &pools, class_clone_net_signif &signif,
                                        const overlap_rule &rule, const pool_lists &lists, std::int32_t rank,
                                        pools_search_result &result);

} // namespace orb
