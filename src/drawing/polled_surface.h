// A surface in front of another one that hands long runs on in pieces and asks between them whether to go on: a picture
// of a stack of clones has half a million lines.
#pragma once

#include <functional>

#include "drawing/drawing_surface.h"

namespace orb {

// What is drawn is the same; lines and shapes of one piece may share a path, as those of one run do. Once `goes_on` has
// answered false nothing more is drawn.
drawing_surface polled_surface(const drawing_surface &on, std::function<bool()> goes_on);

} // namespace orb
