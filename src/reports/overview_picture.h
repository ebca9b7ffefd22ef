// All contigs on one sheet, to one scale, longest first: how many there are, how long, how densely covered.
#pragma once

#include <string>
#include <vector>

#include "clustering/contig_map.h"
#include "reports/map_parts.h"

namespace orb {

struct overview_contig {
  std::string name;
  std::int32_t n_clones = 0, n_on_path = 0;
  std::vector<depth_step> depth; // of all its clones
  double length() const { return depth.empty() ? 0 : static_cast<double>(depth.back().from) - depth.front().from; }
};
struct overview_values {
  std::vector<overview_contig> contigs; // longest first
  std::int32_t n_without_places = 0, n_clones_without_places = 0, n_clones_alone = 0;
};
overview_values overview_values_of(const contig_map &map);

struct overview_cell {
  std::int32_t contig = 0; // place in the values
  surface_box bar;         // the contig from end to end
  std::vector<surface_point> depth;
  placed_text name, counts;
};
struct overview_page {
  surface_size size;
  std::vector<overview_cell> cells;
  std::vector<placed_text> texts;
  std::vector<float> ticks; // x, from the axis on the top
  float axis_y = 0;
};
std::vector<overview_page> lay_out_overview(const overview_values &values, const map_format &format,
                                            const text_measure &text_width);
void draw_overview_page(const overview_page &page, const drawing_surface &surface);

} // namespace orb
