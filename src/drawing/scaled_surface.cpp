#include "drawing/scaled_surface.h"

#include <vector>

namespace orb {

drawing_surface scaled_surface(const drawing_surface &on, float scale) {
  const auto point = [scale](const surface_point &p) { return surface_point{p.x * scale, p.y * scale}; };
  const auto scaled_boxes = [scale, point](std::span<const surface_box> boxes) {
    std::vector<surface_box> larger;
    for (const surface_box &box : boxes)
      larger.push_back({point(box.corner), {box.size.width * scale, box.size.height * scale}});
    return larger;
  };
  drawing_surface surface = on;
  surface.size = [on, scale] {
    const surface_size size = on.size();
    return surface_size{size.width / scale, size.height / scale};
  };
  surface.lines = [on, scale, point](const surface_pen &pen, std::span<const surface_line> lines) {
    std::vector<surface_line> longer;
    for (const surface_line &line : lines)
      longer.push_back({point(line.from), point(line.to)});
    on.lines({pen.colour, pen.width * scale, pen.pattern}, longer);
  };
  surface.boxes = [on, scaled_boxes](const surface_look &look, std::span<const surface_box> boxes) {
    on.boxes(look, scaled_boxes(boxes));
  };
  surface.circles = [on, scaled_boxes](const surface_look &look, std::span<const surface_box> circles) {
    on.circles(look, scaled_boxes(circles));
  };
  surface.polygons = [on, point](const surface_look &look, int corners, std::span<const surface_point> points) {
    std::vector<surface_point> apart;
    for (const surface_point &p : points)
      apart.push_back(point(p));
    on.polygons(look, corners, apart);
  };
  surface.texts = [on, scale, point](std::span<const surface_text> texts) {
    std::vector<surface_text> larger(texts.begin(), texts.end());
    for (surface_text &text : larger) {
      text.at = point(text.at);
      text.size *= scale;
    }
    on.texts(larger);
  };
  surface.text_width = [on, scale](std::string_view text, float size) {
    return on.text_width(text, size * scale) / scale;
  };
  return surface;
}

} // namespace orb
