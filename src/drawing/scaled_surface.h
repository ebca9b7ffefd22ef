// A surface whose pixels are larger or smaller than those of another one.
#pragma once

#include "drawing/drawing_surface.h"

namespace orb {

// What is drawn comes out `scale` times as large, lines and letters too. `on` is copied; what it draws on must outlive
// the surface.
drawing_surface scaled_surface(const drawing_surface &on, float scale);

} // namespace orb
