// The tiling path of a laid contig: fewest clones from end to end, each step over an overlap that fits the layout.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "contigs/band_columns.h"

namespace orb {

struct path_step_rule {
  const clone_bands &clones;
  const band_scale &scale;
  // Whether the second may follow the first, and what the step costs; both lie as given.
  bool may_follow(const laid_clone &u, const laid_clone &v, double &cost) const;
};

// `laid` ascending by left end; `is_usable` by place. Several paths where no step leads on: together they cover what
// can be covered.
std::vector<std::vector<clone_number>> tiling_paths(const path_step_rule &rule, std::span<const laid_clone> laid,
                                                    std::span<const char> is_usable);

} // namespace orb
