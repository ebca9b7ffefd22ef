#include "drawing/palette.h"

#include <array>
#include <cmath>

namespace orb {

namespace {

constexpr colour_value rgb(std::int32_t red, std::int32_t green, std::int32_t blue) {
  return red + 256 * green + 65536 * blue;
}

constexpr std::array<palette_entry, n_palette_colours> palette{{
    {"BLACK", rgb(0, 0, 0)},
    {"BLUE", rgb(0, 0, 255)},
    {"BROWN", rgb(128, 64, 0)},
    {"CYAN", rgb(0, 255, 255)},
    {"GRAY", rgb(191, 191, 191)},
    {"MAGENTA", rgb(255, 0, 255)},
    {"GREEN", rgb(0, 255, 0)},
    {"ORANGE", rgb(255, 128, 0)},
    {"PINK", rgb(255, 0, 255)},
    {"RED", rgb(255, 0, 0)},
    {"VIOLET", rgb(128, 0, 128)},
    {"WHITE", rgb(255, 255, 255)},
    {"YELLOW", rgb(255, 255, 0)},
    {"LIGHT_RED", rgb(255, 0, 0)},
    {"DARK_BLUE", rgb(0, 0, 128)},
    {"DARK_GREEN", rgb(0, 128, 0)},
}};
constexpr std::int32_t palette_white = 12;

constexpr std::array<std::string_view, n_scale_colours> scale_names{
    "White", "Yellow", "Pink", "Gray", "Green", "Blue", "Orange", "Red", "Violet", "Brown", "Black"};
constexpr std::array<std::string_view, n_shapes> shape_names{"ellipse", "box",      "diamond",      "cross",
                                                             "empty",   "triangle", "triangle_Down"};
constexpr std::array<std::string_view, n_line_patterns> pattern_names{"Solid", "Dots", "Dashed"};

constexpr std::int16_t black = 10;

bool equal_in_upper_case(std::string_view text, std::string_view upper) {
  if (text.size() != upper.size())
    return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != upper[i])
      return false;
  }
  return true;
}

// Scales by key, the keys from 0; a key behind the table takes `beyond`.
constexpr std::array<std::int16_t, 6> colours_of_set_1{10, 5, 7, 4, 1, 0};
constexpr std::array<std::int16_t, 15> colours_of_set_2{0, 0, 0, 0, 1, 1, 4, 4, 7, 7, 5, 5, 9, 9, 9};
constexpr std::array<std::int16_t, 10> colours_of_set_3{0, 0, 3, 1, 6, 2, 4, 7, 5, 9};
constexpr std::array<std::int16_t, 10> colours_of_set_5{0, 4, 1, 6, 2, 4, 7, 5, 8, 9}; // 4 twice: deliberate
constexpr std::array<std::int16_t, 10> colours_of_set_6{0, 3, 1, 6, 2, 4, 7, 5, 8, 9};

template <std::size_t n>
std::int16_t by_key(const std::array<std::int16_t, n> &colours, double key, std::int16_t beyond) {
  const double whole = std::floor(key);
  if (!(whole >= 0))
    return 0; // also what is no number
  return whole < static_cast<double>(n) ? colours[static_cast<std::size_t>(whole)] : beyond;
}

std::int16_t colour_of_power_of_ten(double v) {
  const double whole = std::floor(v);
  return whole == 10    ? std::int16_t{0}
         : whole == 100 ? std::int16_t{5}
         : whole == 200 ? std::int16_t{7}
         : whole == 300 ? std::int16_t{10}
                        : std::int16_t{0};
}

} // namespace

const palette_entry &palette_colour(std::int32_t entry) {
  return palette.at(static_cast<std::size_t>(entry) - 1);
}

std::optional<colour_value> colour_of_name(std::string_view name) {
  for (const palette_entry &entry : palette)
    if (equal_in_upper_case(name, entry.name))
      return entry.value;
  return std::nullopt;
}

colour_value color_from_name(std::string_view name) {
  return colour_of_name(name).value_or(palette[0].value);
}

std::int32_t nearest_palette_color(colour_value value) {
  std::int32_t nearest = 1;
  std::int64_t smallest = INT64_MAX;
  for (std::int32_t entry = 1; entry <= n_palette_colours; ++entry) {
    const std::int64_t distance = std::abs(std::int64_t{value} - palette_colour(entry).value);
    if (distance < smallest) {
      smallest = distance;
      nearest = entry;
    }
  }
  return nearest;
}

std::int32_t random_color(random_source &chance, bool allow_white, bool allow_selection_color, std::int32_t exclude) {
  for (;;) {
    const std::int32_t entry = chance.number_up_to(n_palette_colours);
    if ((entry == palette_white && !allow_white) || (entry == palette_selection_colour && !allow_selection_color) ||
        entry == exclude)
      continue;
    return entry;
  }
}

std::int16_t random_shape(random_source &chance) {
  return static_cast<std::int16_t>(chance.number_up_to(n_shapes) - 1);
}

std::string_view shape_name(std::int32_t shape) {
  return shape >= 0 && shape < n_shapes ? shape_names[static_cast<std::size_t>(shape)] : shape_names[0];
}

std::int16_t shape_from_name(std::string_view name) {
  for (std::int32_t shape = 0; shape < n_shapes; ++shape)
    if (shape_names[static_cast<std::size_t>(shape)] == name)
      return static_cast<std::int16_t>(shape);
  return 0;
}

bool color_name_of_scale(std::int32_t index, std::string_view &name) {
  const bool known = index >= 0 && index < n_scale_colours;
  name = scale_names[static_cast<std::size_t>(known ? index : black)];
  return known;
}

bool line_pattern_name(std::int32_t pattern, std::string_view &name) {
  const bool known = pattern >= 0 && pattern < n_line_patterns;
  name = pattern_names[static_cast<std::size_t>(known ? pattern : 0)];
  return known;
}

std::string unknown_color_text(std::int32_t index) {
  return "Unknown color " + std::to_string(index) + "!";
}
std::string unknown_pattern_text(std::int32_t pattern) {
  return "Unknown pattern " + std::to_string(pattern) + "!";
}

std::int16_t color_for_value(double value, double scale, std::int32_t set) {
  const double v = value / (scale > 0 ? scale : 50);
  switch (set < 0 ? 5 : set) {
  case 1:
    return by_key(colours_of_set_1, v * 100 / 20, 0);
  case 2:
    return by_key(colours_of_set_2, v * 100, black);
  case 3:
    return by_key(colours_of_set_3, v / 5, black);
  case 4:
    return by_key(colours_of_set_3, v / 3, black);
  case 5:
    return by_key(colours_of_set_5, v * 10, black);
  case 6:
    return by_key(colours_of_set_6, v * 10, black);
  case 7:
    return colour_of_power_of_ten(v);
  default:
    return black;
  }
}

} // namespace orb
