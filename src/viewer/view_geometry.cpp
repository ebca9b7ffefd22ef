#include "viewer/view_geometry.h"

#include <algorithm>
#include <cmath>

namespace orb {

// A box without width or height is drawn as if it were one unit wide, with its nodes in the middle.
void view_geometry::box_set(const net_box &box) {
  const bool is_narrow = !(box.width() > 0), is_flat = !(box.height() > 0);
  x_min = is_narrow ? box.x_min - 0.5f : box.x_min;
  y_min = is_flat ? box.y_min - 0.5f : box.y_min;
  scale_x = (right - left) / (is_narrow ? 1.0f : box.width());
  scale_y = (bottom - top) / (is_flat ? 1.0f : box.height());
  // a picture without a size, or a box without an end, still has an inverse
  for (float *scale : {&scale_x, &scale_y})
    if (!std::isfinite(*scale) || *scale <= 0)
      *scale = 1;
  pixels_per_unit = scale_x;
}

void view_geometry::fit(const surface_size &size, const net_box &box) {
  picture = size;
  left = size.width * margin * zoom;
  right = size.width * (1 - margin) * zoom;
  top = size.height * margin * zoom;
  bottom = size.height * (1 - margin) * zoom;
  box_set(box);
}

void view_geometry::fit_at_zoom_1(const surface_size &size, const net_box &box) {
  zoom = 1;
  zoom_index = 0;
  fit(size, box);
}

bool view_geometry::resize(const surface_size &size, const net_box &box) {
  constexpr float least_change = 10;
  if (std::abs(size.width - picture.width) + std::abs(size.height - picture.height) < least_change)
    return false;
  if (picture.width <= 0 || picture.height <= 0) {
    fit(size, box);
    return true;
  }
  const float wider = size.width / picture.width, higher = size.height / picture.height;
  left *= wider; // the middle of the picture moves to the middle
  right *= wider;
  top *= higher;
  bottom *= higher;
  picture = size;
  box_set(box);
  return true;
}

void view_geometry::shift(float dx, float dy) {
  left += dx;
  right += dx;
  top += dy;
  bottom += dy;
}

bool view_geometry::zoom_step_at(std::int32_t steps, float x, float y, const net_box &box) {
  constexpr float factor = 1.5f;
  const std::int32_t wanted = std::clamp(zoom_index + std::clamp(steps, -n_zooms, n_zooms), 0, n_zooms - 1);
  if (wanted == zoom_index)
    return false;
  const float ratio = std::pow(factor, static_cast<float>(wanted - zoom_index));
  zoom_index = wanted;
  zoom = std::pow(factor, static_cast<float>(zoom_index));
  left = x + (left - x) * ratio;
  right = x + (right - x) * ratio;
  top = y + (top - y) * ratio;
  bottom = y + (bottom - y) * ratio;
  box_set(box);
  return true;
}

} // namespace orb
