// Clones of which a part belongs elsewhere: too small a part to have an overlap of its own.
#pragma once

#include <vector>

#include "contigs/layout_finish.h"

namespace orb {

// Clones of which far more bands than of the clones around stand in no column, though other clones cover them from end
// to end; ascending. Needs the doubts of the contig.
std::vector<clone_number> clones_of_loose_bands(const clone_bands &clones, const laid_contig &contig);

} // namespace orb
