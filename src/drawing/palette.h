// Colours, shapes and line patterns of drawn nets: the names that files hold, and the scales that turn a value into a
// colour. Every writer and reader of drawings uses these tables.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/random_source.h"

namespace orb {

using colour_value = std::int32_t; // red in the low byte, then green, then blue

struct palette_entry {
  std::string_view name; // upper case
  colour_value value;
};

constexpr std::int32_t n_palette_colours = 16;
constexpr std::int32_t palette_selection_colour = 13; // YELLOW marks what is selected
constexpr std::int32_t n_scale_colours = 11;
constexpr std::int32_t n_shapes = 7;
constexpr std::int32_t n_line_patterns = 3;

// Entry 1..16. PINK equals MAGENTA and LIGHT_RED equals RED: deliberate.
const palette_entry &palette_colour(std::int32_t entry);
// The value of a colour name in any case; black for a name that is in no entry.
colour_value color_from_name(std::string_view name);
// The same, or nothing for a name that no entry has.
std::optional<colour_value> colour_of_name(std::string_view name);
// The entry (1..16) whose value is nearest as a number, not as a colour; the lower entry of equally near ones.
std::int32_t nearest_palette_color(colour_value value);
// A random entry, 1..16, but not `exclude` (0: none), nor WHITE or the colour of selection unless allowed.
std::int32_t random_color(random_source &chance, bool allow_white, bool allow_selection_color, std::int32_t exclude);
// A random shape, 0..6.
std::int16_t random_shape(random_source &chance);

// Shapes 0..6 by name; the first one stands for unknown names and indexes.
std::string_view shape_name(std::int32_t shape);
std::int16_t shape_from_name(std::string_view name);

// Colours 0..10 of the scales, "White" to "Black", as files spell them. False for another index; `name` is then
// "Black", as unknown names are black.
bool color_name_of_scale(std::int32_t index, std::string_view &name);
// "Solid", "Dots", "Dashed" for 0..2. False for another number; `name` is then "Solid".
bool line_pattern_name(std::int32_t pattern, std::string_view &name);
// The guards' texts: "Unknown color 12!", "Unknown pattern 5!".
std::string unknown_color_text(std::int32_t index);
std::string unknown_pattern_text(std::int32_t pattern);

// Index 0..10 of the scale colours for a value. `scale` divides the value first; 0 and below mean 50. `set` chooses one
// of the scales 0..7; a negative set means 5, and sets above 7 have one colour, as set 0. Scale 50 with set 5 is the
// one for scores of overlaps: bands of width 5, with Green in two of them.
std::int16_t color_for_value(double value, double scale, std::int32_t set);

} // namespace orb
