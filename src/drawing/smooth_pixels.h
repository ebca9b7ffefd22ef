// Thin lines and small circles with smoothed edges straight into the pixels of an image: a net has hundreds of
// thousands of them, and a general path takes ten times as long.
#pragma once

#include <span>

#include "drawing/plain_pixels.h"

namespace orb {

// Solid lines, 0.1 to 1 pixel wide. Places may lie anywhere. Each step along the longer axis covers its pixels by what
// the line's width takes of them in its middle.
void draw_smooth_lines(const pixel_image &image, const surface_pen &pen, std::span<const surface_line> lines);

// Radius up to `largest_smooth_radius`, with a border one pixel wide; larger ones are left out.
inline constexpr float largest_smooth_radius = 32;
void draw_smooth_circles(const pixel_image &image, const surface_look &look, std::span<const surface_box> circles);

} // namespace orb
