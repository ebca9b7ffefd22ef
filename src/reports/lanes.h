// Fingerprints as lanes: the bands of clones on one axis of sizes, common bands of lanes that lie next to each other
// joined, bands that no overlapping clone explains marked. So a mapper judges an overlap. Values, what stands where,
// and drawing are three steps, as for maps of contigs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "reports/map_parts.h"

namespace orb {

struct lane_band {
  band_value size = 0;
  bool is_explained = false; // common with a clone of the lanes that overlaps this one
};
struct lane {
  clone_number clone = 0;
  std::string name;
  std::vector<lane_band> bands; // ascending
  bool has_neighbours = false;  // without one nothing is to be explained
};
// A band of a lane and the common one of the next lane.
struct lane_join {
  std::int32_t lane = 0; // place in the lanes
  std::int32_t band = 0, band_of_next = 0;
};
struct lane_values {
  std::vector<lane> lanes;
  std::vector<lane_join> joins;
  band_value largest = 0;
};

// Clones in the order in which lanes show them: contig by contig from left to right, then those without places.
// `registry` may be null.
std::vector<clone_number> order_of_lanes(std::vector<clone_number> clones, const class_FPCto_import *registry);
// Pairs for which `overlap` holds explain each other's bands; it is asked once a pair.
lane_values lane_values_of(const class_DB_of_clones &database, const std::vector<clone_number> &clones,
                           const std::function<bool(clone_number, clone_number)> &overlap);

// `from` and `to`: sizes at the ends of the axis.
struct lanes_format {
  float width = 900;
  double from = 0, to = 1;
};
struct lane_row {
  std::int32_t lane = 0;
  surface_box strip;
  std::vector<float> x; // of the bands; those outside lie outside
};
struct lanes_page {
  surface_size size;
  axis_stretch axis;
  float axis_y = 0;
  std::vector<float> ticks; // x
  std::vector<lane_row> rows;
  std::vector<surface_line> joins, explained, unexplained;
  std::vector<surface_point> marks; // triangles over unexplained bands
  std::vector<placed_text> texts;
};
lanes_page lay_out_lanes(const lane_values &values, const lanes_format &format, const text_measure &text_width);
void draw_lanes(const lanes_page &page, const drawing_surface &surface);

struct found_band {
  std::int32_t lane = -1, band = -1; // -1: none
};
// What is at a place, within a few pixels.
found_band band_at(const lanes_page &page, float x, float y);

} // namespace orb
