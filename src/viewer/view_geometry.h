// Where a net lies in a picture: pixels from net coordinates and back, fitting and zoom.
#pragma once

#include <cstdint>

#include "drawing/drawing_surface.h"
#include "viewer/class_net_elng.h"

namespace orb {

struct view_geometry {
  float zoom = 1.0f;
  std::int32_t zoom_index = 0;                    // place in the list of zooms
  float pixels_per_unit = 200;                    // across; of the hit square
  float left = 0, right = 0, top = 0, bottom = 0; // where the box of the net lies, in pixels
  float scale_x = 1, scale_y = 1;                 // pixels a unit of the net
  float x_min = 0, y_min = 0;                     // the corner of the net's box
  surface_size picture;                           // in pixels

  static constexpr std::int32_t n_zooms = 12; // of steps of 1.5
  static constexpr float margin = 0.05f;      // of the picture on each side at zoom 1
  static constexpr float size_in_pixel = 3;   // half the width of a node

  float coorOnPictX_get(float x) const { return (x - x_min) * scale_x + left; }
  float coorOnPictY_get(float y) const { return (y - y_min) * scale_y + top; }
  float coorOnNetX_get(float x_pict) const { return (x_pict - left) / scale_x + x_min; }
  float coorOnNetY_get(float y_pict) const { return (y_pict - top) / scale_y + y_min; }

  // The whole net in the picture, at the zoom that is set, from its upper left corner.
  void fit(const surface_size &size, const net_box &box);
  // Full picture: zoom 1.
  void fit_at_zoom_1(const surface_size &size, const net_box &box);
  // The box has changed, the place in the picture hasn't.
  void box_set(const net_box &box);
  // About the middle of the picture; changes of less than 10 pixels in width and height together are none. False then.
  bool resize(const surface_size &size, const net_box &box);
  void shift(float dx, float dy);
  // The next or previous zooms of the list, as far as it goes; the point in the middle of the picture stays there, or
  // the one that is given. False at the list's ends.
  bool zoom_step(std::int32_t steps, const net_box &box) {
    return zoom_step_at(steps, picture.width / 2, picture.height / 2, box);
  }
  bool zoom_step_at(std::int32_t steps, float x, float y, const net_box &box);
};

} // namespace orb
