#include "drawing/recording_surface.h"

#include <memory>
#include <utility>

#include "drawing/utf8_text.h"

namespace orb {

drawing_surface recording_surface(surface_record &record) {
  constexpr float width_of_character = 0.6f;
  drawing_surface surface;
  const auto smooth = std::make_shared<bool>(true);
  surface.size = [&record] { return record.size; };
  surface.clear = [&record](colour_value background) {
    record.background = background;
    record.drawn.clear();
  };
  surface.lines = [&record, smooth](const surface_pen &pen, std::span<const surface_line> lines) {
    drawn_lines run{pen, {}, *smooth};
    run.lines.assign(lines.begin(), lines.end());
    record.drawn.emplace_back(std::move(run));
  };
  const auto add_boxes = [&record](const surface_look &look, std::span<const surface_box> boxes, bool are_circles) {
    drawn_boxes run{look, {}, are_circles};
    run.boxes.assign(boxes.begin(), boxes.end());
    record.drawn.emplace_back(std::move(run));
  };
  surface.boxes = [add_boxes](const surface_look &look, std::span<const surface_box> boxes) {
    add_boxes(look, boxes, false);
  };
  surface.circles = [add_boxes](const surface_look &look, std::span<const surface_box> circles) {
    add_boxes(look, circles, true);
  };
  surface.polygons = [&record](const surface_look &look, int corners, std::span<const surface_point> points) {
    drawn_polygons run{look, corners, {}};
    run.points.assign(points.begin(), points.end());
    record.drawn.emplace_back(std::move(run));
  };
  surface.texts = [&record](std::span<const surface_text> texts) {
    for (const surface_text &text : texts)
      record.drawn.emplace_back(drawn_text{text.at, std::string(text.text), text.size, text.colour, text.anchor});
  };
  surface.text_width = [](std::string_view text, float size) {
    return static_cast<float>(utf8_count(text)) * size * width_of_character;
  };
  surface.smooth = [smooth](bool wanted) { *smooth = wanted; };
  return surface;
}

} // namespace orb
