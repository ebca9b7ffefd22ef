// What pictures are drawn on: a plain struct of functions, so that a surface is a value and whoever draws knows neither
// windows nor files. Places are in pixels from the upper left corner, y downwards. Everything comes in runs with one
// look, so that hundreds of thousands of lines cost a few calls.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "drawing/palette.h"

namespace orb {

struct surface_point {
  float x = 0, y = 0;
};

struct surface_size {
  float width = 0, height = 0;
};

enum class line_pattern : std::int8_t { solid, dots, dashed }; // in the order of `line_pattern_name`

struct surface_pen {
  colour_value colour = 0;
  float width = 1;
  line_pattern pattern = line_pattern::solid;
  friend bool operator==(const surface_pen &, const surface_pen &) = default;
};

struct surface_line {
  surface_point from, to;
};

// A box from `corner` to `corner + size`; as a circle: centre `corner`, radius size.width.
struct surface_box {
  surface_point corner;
  surface_size size;
};

// How closed shapes look: filled, outlined with a pen of width 1, or both.
struct surface_look {
  colour_value fill = 0, border = 0;
  bool is_filled = true, is_outlined = true;
  friend bool operator==(const surface_look &, const surface_look &) = default;
};

enum class text_anchor : std::int8_t { left, middle, right };

struct surface_text {
  surface_point at;      // of the base line
  std::string_view text; // UTF-8
  float size = 10;       // height of the letters' box in pixels
  colour_value colour = 0;
  text_anchor anchor = text_anchor::left;
};

struct drawing_surface {
  std::function<surface_size()> size;
  std::function<void(colour_value background)> clear;
  std::function<void(const surface_pen &, std::span<const surface_line>)> lines;
  std::function<void(const surface_look &, std::span<const surface_box>)> boxes;
  std::function<void(const surface_look &, std::span<const surface_box>)> circles;
  // Corners of all polygons one after the other, `corners` (3 or more) of each.
  std::function<void(const surface_look &, int corners, std::span<const surface_point>)> polygons;
  std::function<void(std::span<const surface_text>)> texts;
  std::function<float(std::string_view text, float size)> text_width; // in pixels
  // Off while something moves: lines of width 1 without smoothed edges, as fast as can be.
  std::function<void(bool)> smooth;
};

} // namespace orb
