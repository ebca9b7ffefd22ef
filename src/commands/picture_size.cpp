#include "commands/picture_size.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>

#include "frame/failures.h"

namespace orb {

surface_size picture_size_of(const std::string &text) {
  constexpr int least = 300, most = 20000;
  int width = 0, height = 0;
  const char *const end = text.data() + text.size();
  const auto [x, no_width] = std::from_chars(text.data(), end, width);
  const bool has_x = no_width == std::errc() && x != end && *x == 'x';
  const auto [rest, no_height] = std::from_chars(has_x ? x + 1 : end, end, height);
  if (!has_x || no_height != std::errc() || rest != end || std::min(width, height) < least ||
      std::max(width, height) > most)
    throw usage_error(fmt::format("--size {}: wanted are two whole numbers from {} to {} with an x between them, "
                                  "such as 1400x990",
                                  text, least, most));
  return {static_cast<float>(width), static_cast<float>(height)};
}

} // namespace orb
