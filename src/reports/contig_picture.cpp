// Draws what the layout of a contig's map holds.
#include "reports/contig_layout.h"

namespace orb {

using map_colour::rgb;

const bar_look &look_of(bar_kind kind) {
  static const bar_look looks[n_bar_kinds]{
      {{rgb(0x0072B2), rgb(0x00456C), true, true}, rgb(0xFFFFFF), "tiling path"},
      {{rgb(0xDCE1E6), rgb(0x7D858C), true, true}, map_colour::text, "other clones"},
      {{rgb(0xF4F4F4), rgb(0xABABAB), true, true}, map_colour::text, "buried clones"},
      {{rgb(0xE69F00), rgb(0x7A5400), true, true}, rgb(0x000000), "far from the path"},
      {{rgb(0xCC79A7), rgb(0x7F3F63), true, true}, rgb(0x000000), "Q-clones"}};
  return looks[static_cast<std::size_t>(kind)];
}

namespace {

void draw_axis(const axis_line &line, const drawing_surface &surface) {
  const float left = line.axis.x_of(line.axis.from), right = line.axis.x_of(line.axis.to), y = line.axis_y;
  std::vector<surface_line> grid, ticks{{{left, y}, {right, y}}}, markers;
  for (const float x : line.ticks) {
    grid.push_back({{x, y}, {x, line.bottom}});
    ticks.push_back({{x, y}, {x, y + 4}});
  }
  for (const float x : line.markers)
    markers.push_back({{x, y - depth_curve_height}, {x, line.bottom}});
  surface.lines({map_colour::grid, 1, line_pattern::solid}, grid);
  surface.lines({rgb(0xB5DFD0), 1, line_pattern::solid}, markers);
  draw_depth(surface, line.depth);
  surface.lines({map_colour::axis, 1, line_pattern::solid}, ticks);
}

// A bar that goes on over the end of its line ends in a point.
void add_point(const bar_piece &piece, bool on_left, std::vector<surface_point> &corners) {
  constexpr float length = 5;
  const float x = piece.box.corner.x + (on_left ? 0 : piece.box.size.width), top = piece.box.corner.y;
  const float bottom = top + piece.box.size.height;
  corners.insert(corners.end(), {{x, top}, {x + (on_left ? -length : length), (top + bottom) / 2}, {x, bottom}});
}

void draw_bars(const axis_line &line, const drawing_surface &surface) {
  for (std::size_t kind = 0; kind < n_bar_kinds; ++kind) {
    std::vector<surface_box> boxes;
    std::vector<surface_point> points;
    for (const bar_piece &piece : line.pieces) {
      if (piece.kind != static_cast<bar_kind>(kind))
        continue;
      boxes.push_back(piece.box);
      if (piece.goes_on_left)
        add_point(piece, true, points);
      if (piece.goes_on_right)
        add_point(piece, false, points);
    }
    const surface_look &look = look_of(static_cast<bar_kind>(kind)).shape;
    if (!boxes.empty())
      surface.boxes(look, boxes);
    if (!points.empty())
      surface.polygons({look.border, 0, true, false}, 3, points);
  }
}

} // namespace

void draw_map_page(const map_page &page, const drawing_surface &surface) {
  surface.clear(map_colour::paper);
  draw_texts(surface, page.texts);
  for (const legend_entry &entry : page.legend) {
    surface.boxes(entry.look, std::span(&entry.swatch, 1));
    draw_texts(surface, std::span(&entry.caption, 1));
  }
  for (const axis_line &line : page.lines) {
    draw_axis(line, surface);
    draw_bars(line, surface);
    draw_texts(surface, line.texts);
  }
}

} // namespace orb
