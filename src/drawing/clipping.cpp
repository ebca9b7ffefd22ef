#include "drawing/clipping.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>

namespace orb {

namespace {

bool is_finite(const surface_point &point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

// Cuts the stretch [from, to] of a line down to where start + t * step >= limit (or <=, all signs turned).
bool cut(double start, double step, double limit, double &from, double &to) {
  if (step == 0)
    return start >= limit;
  const double t = (limit - start) / step;
  if (step > 0)
    from = std::max(from, t);
  else
    to = std::min(to, t);
  return from <= to;
}

} // namespace

bool clip_line(const clip_area &area, const surface_line &line, clipped_line &clipped) {
  if (!is_finite(line.from) || !is_finite(line.to))
    return false;
  const double x = line.from.x, y = line.from.y, dx = line.to.x - x, dy = line.to.y - y;
  double from = 0, to = 1;
  if (!cut(x, dx, area.left, from, to) || !cut(-x, -dx, -area.right, from, to) || !cut(y, dy, area.top, from, to) ||
      !cut(-y, -dy, -area.bottom, from, to))
    return false;
  const auto within_x = [&area](double at) { return std::clamp(at, area.left, area.right); };
  const auto within_y = [&area](double at) { return std::clamp(at, area.top, area.bottom); };
  clipped = {within_x(x + from * dx), within_y(y + from * dy), within_x(x + to * dx), within_y(y + to * dy)};
  return true;
}

bool clip_box(const clip_area &area, surface_box &box) {
  double left = box.corner.x, right = left + box.size.width, top = box.corner.y, bottom = top + box.size.height;
  if (std::isnan(left) || std::isnan(right) || std::isnan(top) || std::isnan(bottom))
    return false;
  std::tie(left, right) = std::minmax({left, right});
  std::tie(top, bottom) = std::minmax({top, bottom});
  left = std::max(left, area.left);
  top = std::max(top, area.top);
  right = std::min(right, area.right);
  bottom = std::min(bottom, area.bottom);
  if (left > right || top > bottom)
    return false;
  box.corner = {static_cast<float>(left), static_cast<float>(top)};
  box.size = {static_cast<float>(right - left), static_cast<float>(bottom - top)};
  return true;
}

// One side of the area after the other (Sutherland and Hodgman).
void clip_polygon(const clip_area &area, std::span<const surface_point> polygon, std::vector<surface_point> &clipped) {
  clipped.clear();
  if (!std::all_of(polygon.begin(), polygon.end(), is_finite))
    return;
  clipped.assign(polygon.begin(), polygon.end());
  std::vector<surface_point> before;
  const auto keep = [&](bool by_x, double sign, double limit) {
    before.swap(clipped);
    clipped.clear();
    const auto inside = [&](const surface_point &p) { return sign * ((by_x ? p.x : p.y) - limit); };
    for (std::size_t i = 0; i < before.size(); ++i) {
      const surface_point &a = before[i], &b = before[(i + 1) % before.size()];
      const double in_a = inside(a), in_b = inside(b);
      if (in_a >= 0)
        clipped.push_back(a);
      if ((in_a >= 0) == (in_b >= 0))
        continue;
      const double t = in_a / (in_a - in_b);
      const double x = a.x + t * (static_cast<double>(b.x) - a.x), y = a.y + t * (static_cast<double>(b.y) - a.y);
      clipped.push_back({static_cast<float>(by_x ? limit : x), static_cast<float>(by_x ? y : limit)});
    }
  };
  keep(true, 1, area.left);
  keep(true, -1, area.right);
  keep(false, 1, area.top);
  keep(false, -1, area.bottom);
  if (clipped.size() < 3)
    clipped.clear();
}

} // namespace orb
