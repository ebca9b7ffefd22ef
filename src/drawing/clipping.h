// What of a shape lies within a rectangle, so that places far outside, and places that are no numbers, do no harm.
#pragma once

#include <span>
#include <vector>

#include "drawing/drawing_surface.h"

namespace orb {

struct clip_area {
  double left = 0, top = 0, right = 0, bottom = 0;
};

struct clipped_line {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};

// False when nothing of it is left, or an end is no finite number.
bool clip_line(const clip_area &area, const surface_line &line, clipped_line &clipped);
// False when nothing is left. Sides may be negative; `box` gets a corner within the area and sides of 0 and more.
bool clip_box(const clip_area &area, surface_box &box);
// The part of a polygon within the area; fewer than 3 corners: nothing. Edges along the area's border are added.
void clip_polygon(const clip_area &area, std::span<const surface_point> polygon, std::vector<surface_point> &clipped);

} // namespace orb
