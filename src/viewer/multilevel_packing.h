// The placed components side by side on one page.
#pragma once

#include <vector>

#include "viewer/multilevel_stress.h"

namespace orb {

// Turned so that it is as long as it gets along the x axis; its box begins at (0, 0). Node 0 lies in the left half.
void turn_flat(plane_points &points);

// Moves the flat components into rows of a page whose width is `aspect` times its height, the highest first. Long
// bands are bent only when the page would come out wider than that.
void pack_components(double aspect, std::vector<plane_points> &components);

} // namespace orb
