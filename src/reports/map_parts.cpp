#include "reports/map_parts.h"

#include <algorithm>
#include <utility>

namespace orb {

void draw_texts(const drawing_surface &surface, std::span<const placed_text> texts) {
  std::vector<surface_text> drawn;
  drawn.reserve(texts.size());
  for (const placed_text &text : texts)
    drawn.push_back({text.at, text.text, text.size, text.colour, text.anchor});
  surface.texts(drawn);
}

std::int64_t axis_step(double least) {
  for (std::int64_t power = 1;; power *= 10)
    for (const std::int64_t step : {power, 2 * power, 5 * power})
      if (static_cast<double>(step) >= least || power >= 1'000'000'000)
        return step;
}

std::vector<depth_step> depth_of(std::span<const std::int32_t> left, std::span<const std::int32_t> right) {
  std::vector<depth_step> steps; // changes of the depth first
  for (const std::int32_t at : left)
    steps.push_back({at, 1});
  for (const std::int32_t at : right)
    steps.push_back({at + 1, -1});
  std::sort(steps.begin(), steps.end(), [](const depth_step &a, const depth_step &b) { return a.from < b.from; });
  std::size_t n = 0;
  std::int32_t depth = 0;
  for (const depth_step &change : steps) {
    depth += change.depth;
    if (n == 0 || steps[n - 1].from != change.from)
      ++n;
    steps[n - 1] = {change.from, depth};
  }
  steps.resize(n);
  return steps;
}

std::int32_t largest_depth(std::span<const depth_step> steps) {
  std::int32_t largest = 0;
  for (const depth_step &step : steps)
    largest = std::max(largest, step.depth);
  return largest;
}

std::vector<surface_point> depth_outline(std::span<const depth_step> steps, const axis_stretch &axis, float base,
                                         float pixels_per_clone) {
  std::vector<surface_point> outline{{axis.x_of(axis.from), base}};
  for (std::size_t i = 0; i + 1 < steps.size(); ++i) {
    const double from = std::max<double>(steps[i].from, axis.from), to = std::min<double>(steps[i + 1].from, axis.to);
    if (from >= to)
      continue;
    const float y = base - static_cast<float>(steps[i].depth) * pixels_per_clone;
    outline.push_back({axis.x_of(from), y});
    outline.push_back({axis.x_of(to), y});
  }
  outline.push_back({axis.x_of(axis.to), base});
  return outline;
}

void draw_depth(const drawing_surface &surface, std::span<const surface_point> outline) {
  if (outline.size() < 4)
    return;
  surface.polygons({map_colour::depth, 0, true, false}, static_cast<int>(outline.size()), outline);
  std::vector<surface_line> edge;
  for (std::size_t i = 0; i + 1 < outline.size(); ++i)
    edge.push_back({outline[i], outline[i + 1]});
  surface.lines({map_colour::depth_line, 1, line_pattern::solid}, edge);
}

} // namespace orb
