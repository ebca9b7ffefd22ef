// Lines and circles straight into the pixels of an image, without smoothed edges, for what moves.
#pragma once

#include <cstdint>
#include <span>

#include "drawing/drawing_surface.h"

namespace orb {

// An image of 32 bits a pixel, red in bits 16 to 23, rows of `stride` pixels.
struct pixel_image {
  std::uint32_t *pixels = nullptr;
  int width = 0, height = 0, stride = 0;
};
// Lines one pixel wide. Places may lie anywhere.
void draw_plain_lines(const pixel_image &image, const surface_pen &pen, std::span<const surface_line> lines);
// Radius up to `largest_plain_radius`; larger ones are left out.
inline constexpr float largest_plain_radius = 2000;
void draw_plain_circles(const pixel_image &image, const surface_look &look, std::span<const surface_box> circles);

} // namespace orb
