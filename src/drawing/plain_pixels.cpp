#include "drawing/plain_pixels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "drawing/clipping.h"

namespace orb {

namespace {

std::uint32_t pixel_of(colour_value colour) {
  const auto value = static_cast<std::uint32_t>(colour);
  return 0xFF000000U | (value & 0xFFU) << 16U | (value & 0xFF00U) | (value >> 16U & 0xFFU);
}

// Bit i is set when the i-th pixel along a line is drawn, over and over.
constexpr std::uint32_t bits_of(line_pattern pattern) {
  switch (pattern) {
  case line_pattern::dots:
    return 0x11111111U;
  case line_pattern::dashed:
    return 0x3F3F3F3FU;
  case line_pattern::solid:
    break;
  }
  return 0xFFFFFFFFU;
}

// `n` pixels after the first; `along` leads to the next one on the long axis, `aside` besides when the fraction, in
// units of 2^-32, runs over. Without a jump, which nobody could foresee.
template <bool is_solid>
void draw_steps(std::uint32_t *pixel, std::ptrdiff_t along, std::ptrdiff_t aside, std::uint32_t fraction,
                std::uint32_t slope, int n, std::uint32_t colour, std::uint32_t bits) {
  for (int i = 0;; ++i) {
    if (is_solid || ((bits >> (i & 31)) & 1U) != 0)
      *pixel = colour;
    if (i == n)
      return;
    const std::uint32_t next = fraction + slope;
    pixel += along + (next < fraction ? aside : 0);
    fraction = next;
  }
}

void draw_plain_line(const pixel_image &image, const clipped_line &line, std::uint32_t colour, std::uint32_t bits) {
  const auto x = static_cast<int>(line.x1), y = static_cast<int>(line.y1);
  const int dx = static_cast<int>(line.x2) - x, dy = static_cast<int>(line.y2) - y;
  const bool is_flat = std::abs(dx) >= std::abs(dy);
  const std::ptrdiff_t step_x = dx < 0 ? -1 : 1, step_y = dy < 0 ? -image.stride : image.stride;
  const int n = std::max(std::abs(dx), std::abs(dy)), rise = std::min(std::abs(dx), std::abs(dy));
  // The slope is rounded down, so that the last pixel is the line's own or the one before it aside, never one beyond;
  // a diagonal, of slope 1, steps aside each time.
  const std::ptrdiff_t along = is_flat ? step_x : step_y, aside = is_flat ? step_y : step_x;
  std::uint32_t *const first = image.pixels + static_cast<std::ptrdiff_t>(y) * image.stride + x;
  const bool is_diagonal = n == rise;
  const auto slope =
      is_diagonal ? 0U
                  : static_cast<std::uint32_t>((static_cast<std::uint64_t>(rise) << 32U) / static_cast<unsigned>(n));
  (bits == 0xFFFFFFFFU ? draw_steps<true> : draw_steps<false>)(first, is_diagonal ? along + aside : along, aside,
                                                               0x80000000U, slope, n, colour, bits);
}

} // namespace

void draw_plain_lines(const pixel_image &image, const surface_pen &pen, std::span<const surface_line> lines) {
  if (image.width < 1 || image.height < 1)
    return;
  const std::uint32_t colour = pixel_of(pen.colour);
  const clip_area area{0, 0, image.width - 0.001, image.height - 0.001}; // whole parts are pixels of the image
  clipped_line clipped;
  for (const surface_line &line : lines)
    if (clip_line(area, line, clipped))
      draw_plain_line(image, clipped, colour, bits_of(pen.pattern));
}

// ---- circles -------------------------------------------------------------------------------------------------------

namespace {

// Half widths of a disc's rows, from the middle row on.
void rows_of_disc(float radius, std::vector<int> &half) {
  half.clear();
  for (int dy = 0; static_cast<float>(dy) <= radius; ++dy)
    half.push_back(static_cast<int>(std::sqrt(radius * radius - static_cast<float>(dy * dy))));
}

void fill_rows(const pixel_image &image, int x, int y, const std::vector<int> &half, std::uint32_t colour) {
  const int n = static_cast<int>(half.size()) - 1;
  for (int dy = std::max(-n, -y); dy <= std::min(n, image.height - 1 - y); ++dy) {
    const int width = half[static_cast<std::size_t>(std::abs(dy))];
    const int from = std::max(x - width, 0), to = std::min(x + width, image.width - 1);
    if (from <= to)
      std::fill_n(image.pixels + static_cast<std::ptrdiff_t>(y + dy) * image.stride + from, to - from + 1, colour);
  }
}

// The part of a disc that another one, a pixel smaller, leaves free.
void fill_rim(const pixel_image &image, int x, int y, const std::vector<int> &half, const std::vector<int> &inner,
              std::uint32_t colour) {
  const int n = static_cast<int>(half.size()) - 1;
  for (int dy = std::max(-n, -y); dy <= std::min(n, image.height - 1 - y); ++dy) {
    const auto row = static_cast<std::size_t>(std::abs(dy));
    const int width = half[row], hole = row < inner.size() ? inner[row] : -1;
    std::uint32_t *const pixels = image.pixels + static_cast<std::ptrdiff_t>(y + dy) * image.stride;
    for (int dx = hole + 1; dx <= width; ++dx)
      for (const int at : {x - dx, x + dx})
        if (at >= 0 && at < image.width)
          pixels[at] = colour;
  }
}

} // namespace

void draw_plain_circles(const pixel_image &image, const surface_look &look, std::span<const surface_box> circles) {
  std::vector<int> half, inner; // of the radius before, as most have the same
  float radius = -1;
  for (const surface_box &circle : circles) {
    const float wanted = std::abs(circle.size.width), x = circle.corner.x, y = circle.corner.y;
    if (!(wanted <= largest_plain_radius) || !(x + wanted >= 0) || !(y + wanted >= 0) ||
        !(x - wanted < static_cast<float>(image.width)) || !(y - wanted < static_cast<float>(image.height)))
      continue; // nor what is no number
    if (wanted != radius) {
      radius = wanted;
      rows_of_disc(radius, half);
      rows_of_disc(radius - 1, inner);
    }
    const int at_x = static_cast<int>(std::floor(x)), at_y = static_cast<int>(std::floor(y));
    if (look.is_filled)
      fill_rows(image, at_x, at_y, half, pixel_of(look.fill));
    if (look.is_outlined)
      fill_rim(image, at_x, at_y, half, inner, pixel_of(look.border));
  }
}

} // namespace orb
