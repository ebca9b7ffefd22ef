// What the pictures of contigs have in common: colours, placed texts, axes, depth of coverage.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "drawing/drawing_surface.h"

namespace orb {

// Width of a text in pixels, as a surface tells it.
using text_measure = std::function<float(std::string_view text, float size)>;

// What is to be drawn: `width` of the picture; `page_height`: what is higher goes to a further page, where the file has
// pages, else the picture grows.
struct map_format {
  float width = 1400, page_height = 990;
  bool has_pages = false;
};

// Of the colours that eyes of all kinds can tell apart (Okabe and Ito), and greys.
namespace map_colour {
constexpr colour_value rgb(std::int32_t value) {
  return (value & 0xFF) << 16 | (value & 0xFF00) | (value >> 16 & 0xFF);
}
inline constexpr colour_value paper = rgb(0xFFFFFF), text = rgb(0x333333), faint_text = rgb(0x6B6B6B),
                              axis = rgb(0x555555), grid = rgb(0xE9E9E9), depth = rgb(0xC6E3F5),
                              depth_line = rgb(0x56B4E9), marker = rgb(0x009E73);
} // namespace map_colour

struct placed_text {
  surface_point at; // of the base line
  std::string text;
  float size = 10, width = 0;
  colour_value colour = map_colour::text;
  text_anchor anchor = text_anchor::left;
};
void draw_texts(const drawing_surface &surface, std::span<const placed_text> texts);

// The step of an axis: 1, 2 or 5 by a power of ten, at least `least`.
std::int64_t axis_step(double least);

// How many clones cover each place of an axis. Steps ascend; each holds from its place to the next one's, and the last
// one has depth 0.
struct depth_step {
  std::int32_t from = 0, depth = 0;
};
std::vector<depth_step> depth_of(std::span<const std::int32_t> left, std::span<const std::int32_t> right);
std::int32_t largest_depth(std::span<const depth_step> steps);

// A stretch of an axis in pixels: band `from` begins at x `left`.
struct axis_stretch {
  double from = 0, to = 0, left = 0, pixels_per_band = 1; // up to `to`, not included
  float x_of(double band) const { return static_cast<float>(left + (band - from) * pixels_per_band); }
};
// The outline of the depth over a stretch, a polygon that begins and ends on the base line.
std::vector<surface_point> depth_outline(std::span<const depth_step> steps, const axis_stretch &axis, float base,
                                         float pixels_per_clone);
// Filled, with a line over it.
void draw_depth(const drawing_surface &surface, std::span<const surface_point> outline);

} // namespace orb
