// Fingerprints of a session's clones as lanes.
#pragma once

#include <vector>

#include "project/project_state.h"
#include "reports/lanes.h"

namespace orb {

// At most 120 of them, which is as many as a picture can take, in the order of lanes. Those overlap that do by the
// session's rule, from the net when one is loaded. Numbers that are no clones are left out.
lane_values lanes_of_clones(project_state &project, const std::vector<clone_number> &clones);

} // namespace orb
