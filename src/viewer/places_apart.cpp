#include "viewer/places_apart.h"

#include <algorithm>
#include <cmath>

namespace orb {

namespace {

constexpr double step = 15;

} // namespace

void places_apart::clear() {
  *this = places_apart();
}

places_apart::cell places_apart::cell_of(double x, double y) {
  constexpr double far = 4e18; // within 64 bits; what lies beyond shares cells
  return {static_cast<std::int64_t>(std::clamp(std::floor(x / step), -far, far)),
          static_cast<std::int64_t>(std::clamp(std::floor(y / step), -far, far))};
}

void places_apart::add(float x, float y) {
  x_min_ = std::min(x_min_, x);
  x_max_ = std::max(x_max_, x);
  y_min_ = std::min(y_min_, y);
  y_max_ = std::max(y_max_, y);
  std::int64_t &last = last_in_cell_.try_emplace(cell_of(x, y), -1).first->second;
  points_.push_back({x, y, last});
  last = static_cast<std::int64_t>(points_.size()) - 1;
}

// Whoever is nearer than a step lies in the same cell or in one beside it.
bool places_apart::is_apart(double x, double y) const {
  const cell middle = cell_of(x, y);
  for (std::int64_t i = middle.x - 1; i <= middle.x + 1; ++i)
    for (std::int64_t j = middle.y - 1; j <= middle.y + 1; ++j) {
      const auto found = last_in_cell_.find({i, j});
      for (std::int64_t p = found == last_in_cell_.end() ? -1 : found->second; p >= 0;
           p = points_[static_cast<std::size_t>(p)].next_in_cell) {
        const double dx = x - points_[static_cast<std::size_t>(p)].x, dy = y - points_[static_cast<std::size_t>(p)].y;
        if (dx * dx + dy * dy < step * step)
          return false;
      }
    }
  return true;
}

std::pair<float, float> places_apart::next() const {
  const double width = static_cast<double>(x_max_) - x_min_, height = static_cast<double>(y_max_) - y_min_;
  if (width == 0)
    return {static_cast<float>(x_min_ + step), y_min_};
  if (height == 0)
    return {x_min_, static_cast<float>(y_min_ + step)};
  // a point is in the way of fewer than nine places of the grid; where places are so far out that they coincide, the
  // search ends here
  auto tries_left = 9 * (static_cast<std::int64_t>(points_.size()) + 1);
  for (double i = 1; i <= std::floor(width / step) && tries_left > 0; ++i)
    for (double j = 1; j <= std::floor(height / step) && tries_left > 0; ++j, --tries_left) {
      const auto x = static_cast<float>(x_min_ + step * i), y = static_cast<float>(y_min_ + step * j);
      if (is_apart(x, y))
        return {x, y};
    }
  if (width > height)
    return {x_min_, static_cast<float>(y_max_ + step)};
  return {static_cast<float>(x_max_ + step), y_min_};
}

} // namespace orb
