#include "drawing/smooth_pixels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>

#include "drawing/clipping.h"

namespace orb {

namespace {

constexpr int whole = 256; // full cover

class ink {
public:
  explicit ink(colour_value colour) {
    const auto value = static_cast<std::uint32_t>(colour);
    red_and_blue_ = (value & 0xFFU) << 16U | (value >> 16U & 0xFFU);
    green_ = value & 0xFF00U;
  }
  // `cover`: 0 to `whole`.
  void mix(std::uint32_t &pixel, std::uint32_t cover) const {
    const std::uint32_t rest = whole - cover;
    const std::uint32_t red_and_blue = ((pixel & 0xFF00FFU) * rest + red_and_blue_ * cover) >> 8U & 0xFF00FFU;
    const std::uint32_t green = ((pixel & 0xFF00U) * rest + green_ * cover) >> 8U & 0xFF00U;
    pixel = 0xFF000000U | red_and_blue | green;
  }

private:
  std::uint32_t red_and_blue_ = 0, green_ = 0;
};

// The image seen along the longer axis of a line.
struct long_view {
  std::uint32_t *pixels;
  std::ptrdiff_t along, aside; // from a pixel to the next
  int length, breadth;
};

constexpr int fraction_bits = 24;
constexpr std::int64_t one = 1 << fraction_bits;

std::int64_t fixed(double value) {
  return static_cast<std::int64_t>(std::floor(value * one));
}

// What lies between `low` and `high`, in pixels aside, of one step along; `share` of the step is covered, of `whole`.
void cover_step(const long_view &view, std::uint32_t *column, std::int64_t low, std::int64_t high, std::int64_t share,
                const ink &colour) {
  for (std::int64_t at = low >> fraction_bits; low < high; ++at) {
    const std::int64_t end = std::min(high, (at + 1) * one);
    if (at >= 0 && at < view.breadth)
      colour.mix(column[at * view.aside], static_cast<std::uint32_t>((end - low) * share >> fraction_bits));
    low = end;
  }
}

// From (u1, v1) to (u2, v2), u along; u1 < u2, and all within a few pixels of the image.
void draw_line(const long_view &view, double u1, double v1, double u2, double v2, double width, const ink &colour) {
  const double slope = (v2 - v1) / (u2 - u1), half = 0.5 * width * std::sqrt(1 + slope * slope);
  const int first = std::max(static_cast<int>(std::floor(u1)), 0);
  const int last = std::min(static_cast<int>(std::ceil(u2)), view.length) - 1;
  const std::int64_t thickness = fixed(2 * half), step = fixed(slope);
  std::int64_t low = fixed(v1 + slope * (first + 0.5 - u1) - half);
  std::uint32_t *column = view.pixels + first * view.along;
  for (int u = first; u <= last; ++u, column += view.along, low += step) {
    std::int64_t share = whole;
    if (u < u1 || u + 1 > u2)
      share = static_cast<std::int64_t>(whole * (std::min(u + 1.0, u2) - std::max<double>(u, u1)));
    cover_step(view, column, low, low + thickness, share, colour);
  }
}

// A thin upright or level line lies on whole pixels, so that it is crisp.
double crisp(double at) {
  return std::floor(at) + 0.5;
}

} // namespace

void draw_smooth_lines(const pixel_image &image, const surface_pen &pen, std::span<const surface_line> lines) {
  constexpr double beyond = 2;
  const clip_area area{-beyond, -beyond, image.width + beyond, image.height + beyond};
  const long_view flat{image.pixels, 1, image.stride, image.width, image.height};
  const long_view steep{image.pixels, image.stride, 1, image.height, image.width};
  const double width = std::clamp<double>(pen.width, 0.1, 1);
  const ink colour(pen.colour);
  clipped_line line;
  for (const surface_line &given : lines) {
    if (!clip_line(area, given, line))
      continue;
    if (line.x1 == line.x2)
      line.x1 = line.x2 = crisp(line.x1);
    if (line.y1 == line.y2)
      line.y1 = line.y2 = crisp(line.y1);
    const bool is_flat = std::abs(line.x2 - line.x1) >= std::abs(line.y2 - line.y1);
    if (!is_flat) {
      std::swap(line.x1, line.y1);
      std::swap(line.x2, line.y2);
    }
    if (line.x1 > line.x2) {
      std::swap(line.x1, line.x2);
      std::swap(line.y1, line.y2);
    }
    if (line.x1 < line.x2)
      draw_line(is_flat ? flat : steep, line.x1, line.y1, line.x2, line.y2, width, colour);
  }
}

// ---- circles -------------------------------------------------------------------------------------------------------

namespace {

// The share of a pixel at `distance` from the middle that a disc covers, or a ring one pixel wide on its edge.
float cover_of_disc(float radius, float distance) {
  return std::clamp(radius + 0.5f - distance, 0.0f, 1.0f);
}
float cover_of_ring(float radius, float distance) {
  return std::max(0.0f, 1.0f - std::abs(distance - radius));
}

void draw_circle(const pixel_image &image, const surface_look &look, float x, float y, float radius, const ink &fill,
                 const ink &border) {
  const float least = std::min(1.0f, std::numbers::pi_v<float> * radius * radius); // of a disc smaller than a pixel
  const int left = std::max(static_cast<int>(std::floor(x - radius - 1)), 0);
  const int right = std::min(static_cast<int>(std::ceil(x + radius + 1)), image.width);
  const int top = std::max(static_cast<int>(std::floor(y - radius - 1)), 0);
  const int bottom = std::min(static_cast<int>(std::ceil(y + radius + 1)), image.height);
  for (int row = top; row < bottom; ++row) {
    std::uint32_t *const pixels = image.pixels + static_cast<std::ptrdiff_t>(row) * image.stride;
    const float dy = static_cast<float>(row) + 0.5f - y;
    for (int at = left; at < right; ++at) {
      const float dx = static_cast<float>(at) + 0.5f - x, distance = std::sqrt(dx * dx + dy * dy);
      if (look.is_filled)
        fill.mix(pixels[at], static_cast<std::uint32_t>(whole * least * cover_of_disc(radius, distance)));
      if (look.is_outlined)
        border.mix(pixels[at], static_cast<std::uint32_t>(whole * cover_of_ring(radius, distance)));
    }
  }
}

} // namespace

void draw_smooth_circles(const pixel_image &image, const surface_look &look, std::span<const surface_box> circles) {
  const ink fill(look.fill), border(look.border);
  for (const surface_box &circle : circles) {
    const float radius = std::abs(circle.size.width), x = circle.corner.x, y = circle.corner.y;
    if (radius <= largest_smooth_radius && x + radius >= -1 && y + radius >= -1 &&
        x - radius <= static_cast<float>(image.width + 1) && y - radius <= static_cast<float>(image.height + 1))
      draw_circle(image, look, x, y, radius, fill, border); // what is no number isn't drawn
  }
}

} // namespace orb
