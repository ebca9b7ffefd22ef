// A surface that keeps what is drawn on it as plain data, for those who look at a drawing without pixels.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "drawing/drawing_surface.h"

namespace orb {

struct drawn_lines {
  surface_pen pen;
  std::vector<surface_line> lines;
  bool smooth = true;
};
struct drawn_boxes {
  surface_look look;
  std::vector<surface_box> boxes;
  bool are_circles = false;
};
struct drawn_polygons {
  surface_look look;
  int corners = 3;
  std::vector<surface_point> points;
};
struct drawn_text {
  surface_point at;
  std::string text;
  float size = 10;
  colour_value colour = 0;
  text_anchor anchor = text_anchor::left;
};

struct surface_record {
  surface_size size;
  colour_value background = 0;
  // Since the last `clear`, in the order in which it was drawn; runs stay runs, texts stand alone.
  std::vector<std::variant<drawn_lines, drawn_boxes, drawn_polygons, drawn_text>> drawn;
};

// Draws into `record`, which must outlive the surface. A character is six tenths of a text's size wide.
drawing_surface recording_surface(surface_record &record);

} // namespace orb
