// Sizes of pictures as options give them.
#pragma once

#include <string>

#include "drawing/drawing_surface.h"

namespace orb {

// "1400x990" in pixels; throws usage_error for anything else, and for sides below 300 or above 20,000.
surface_size picture_size_of(const std::string &text);

} // namespace orb
