#include "drawing/polled_surface.h"

#include <algorithm>
#include <memory>

namespace orb {

namespace {

struct poll {
  std::function<bool()> goes_on;
  bool stopped = false;

  // Calls draw(first, n) for pieces of at most `most` of n_all; whole groups where shapes have several points.
  template <class Draw> void in_pieces(std::size_t n_all, std::size_t most, const Draw &draw) {
    for (std::size_t first = 0; first < n_all && !stopped; first += most) {
      stopped = !goes_on();
      if (!stopped)
        draw(first, std::min(most, n_all - first));
    }
  }
};

constexpr std::size_t most_shapes = 4096;

} // namespace

drawing_surface polled_surface(const drawing_surface &on, std::function<bool()> goes_on) {
  const auto asked = std::make_shared<poll>(poll{std::move(goes_on)});
  drawing_surface surface = on;
  surface.lines = [on, asked](const surface_pen &pen, std::span<const surface_line> lines) {
    asked->in_pieces(lines.size(), most_shapes,
                     [&](std::size_t first, std::size_t n) { on.lines(pen, lines.subspan(first, n)); });
  };
  surface.boxes = [on, asked](const surface_look &look, std::span<const surface_box> boxes) {
    asked->in_pieces(boxes.size(), most_shapes,
                     [&](std::size_t first, std::size_t n) { on.boxes(look, boxes.subspan(first, n)); });
  };
  surface.circles = [on, asked](const surface_look &look, std::span<const surface_box> circles) {
    asked->in_pieces(circles.size(), most_shapes,
                     [&](std::size_t first, std::size_t n) { on.circles(look, circles.subspan(first, n)); });
  };
  surface.polygons = [on, asked](const surface_look &look, int corners, std::span<const surface_point> points) {
    asked->in_pieces(points.size(), most_shapes * static_cast<std::size_t>(corners),
                     [&](std::size_t first, std::size_t n) { on.polygons(look, corners, points.subspan(first, n)); });
  };
  surface.texts = [on, asked](std::span<const surface_text> texts) {
    asked->in_pieces(texts.size(), most_shapes,
                     [&](std::size_t first, std::size_t n) { on.texts(texts.subspan(first, n)); });
  };
  return surface;
}

} // namespace orb
