// The map of one contig: what stands where. Clones are bars on an axis counted in bands, in as few rows as can be: the
// tiling path in front, then the others, buried clones thinner beneath those that hold them. A long contig is folded
// onto several lines of the axis. Nothing here draws, so that a window can find the clone under the mouse, and a test
// can look at rows and names.
#pragma once

#include <string>
#include <vector>

#include "clustering/contig_map.h"
#include "reports/map_parts.h"

namespace orb {

struct contig_bar {
  clone_number clone = 0;
  std::int32_t left = 0, right = 0; // in bands, both included
  std::string name;
  std::int32_t place_on_path = 0; // from 1; 0: not on it
  clone_number buried_in = 0;     // 0: not buried
  bool is_far = false, is_Q = false;
};
struct contig_marker {
  std::string name;
  double at = 0; // in bands
};
struct contig_values {
  std::string name;
  std::vector<contig_bar> bars; // at least one
  std::vector<contig_marker> markers;
};
// `contig`: its place in the map; it must be placed. `far`: clones far from its tiling path, ascending. A marker lies
// in the middle of the first stretch that most of its clones cover.
contig_values contig_values_of(const class_DB_of_clones &database, const contig_map &map, std::size_t contig,
                               const std::vector<clone_number> &far);

enum class bar_kind : std::int8_t { path, plain, buried, far, Q };
inline constexpr std::size_t n_bar_kinds = 5;
struct bar_look {
  surface_look shape;
  colour_value text = map_colour::text;
  const char *caption = "";
};
const bar_look &look_of(bar_kind kind);

// What of a bar lies on one line of the axis.
struct bar_piece {
  std::int32_t bar = 0; // place in the values
  clone_number clone = 0;
  bar_kind kind = bar_kind::plain;
  surface_box box;
  bool goes_on_left = false, goes_on_right = false; // on the line before, on the line behind
};

inline constexpr float depth_curve_height = 34; // above the axis

// A line of the axis, in pixels of its page.
struct axis_line {
  axis_stretch axis;
  float top = 0, bottom = 0, axis_y = 0;
  std::vector<bar_piece> pieces; // in the order of the bars
  std::vector<placed_text> texts;
  std::vector<surface_point> depth;
  std::vector<float> ticks, markers; // x
};

struct legend_entry {
  placed_text caption;
  surface_box swatch;
  surface_look look;
};

struct map_page {
  surface_size size;
  std::vector<axis_line> lines;
  std::vector<placed_text> texts;
  std::vector<legend_entry> legend;
};

std::vector<map_page> lay_out_contig(const contig_values &values, const map_format &format,
                                     const text_measure &text_width);
// A stretch of the axis, in bands, on one line: what a window shows that was zoomed.
map_page lay_out_stretch(const contig_values &values, const map_format &format, double from, double to,
                         const text_measure &text_width);
// The clone whose bar is at a place; 0: none.
clone_number clone_at(const map_page &page, surface_point at);

void draw_map_page(const map_page &page, const drawing_surface &surface);

} // namespace orb
