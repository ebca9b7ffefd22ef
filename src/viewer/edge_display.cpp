#include "viewer/edge_display.h"

#include "frame/numbers.h"

namespace orb {

bool edge_display::isNeedToDrewEdgeWithCaption(std::string_view caption) const {
  double value = 0, bound = 0;
  if (all || !number_parse(caption, value))
    return true;
  if (none)
    return false;
  const auto bound_of = [&bound](const std::string &text) { return number_parse(text.substr(2), bound); };
  if (above && bound_of(caption_of_bigger) && value < bound)
    return false;
  return !(below && bound_of(caption_of_smaller) && value > bound);
}

} // namespace orb
