// What of the lanes stands where, and drawing it.
#include <algorithm>
#include <cmath>

#include "frame/numbers.h"
#include "reports/lanes.h"

namespace orb {

namespace {

using map_colour::rgb;

constexpr float margin_right = 20, margin_top = 12, legend_height = 22, axis_height = 26, strip_height = 18,
                between = 22, margin_bottom = 14, name_size = 11, small = 9, mark = 3.5f;
constexpr colour_value lane_paper = rgb(0xF3F5F7), known = rgb(0x1D3A54), unknown = rgb(0xD55E00), join = rgb(0x56B4E9);

void put_text(lanes_page &page, surface_point at, const std::string &text, float size, colour_value colour,
              text_anchor anchor, const text_measure &text_width) {
  page.texts.push_back({at, text, size, text_width(text, size), colour, anchor});
}

void put_axis(lanes_page &page, const text_measure &text_width) {
  constexpr double least_distance = 70;
  const std::int64_t step = axis_step(least_distance / page.axis.pixels_per_band);
  const auto first = static_cast<std::int64_t>(std::ceil(page.axis.from / static_cast<double>(step)));
  for (std::int64_t at = first * step; static_cast<double>(at) <= page.axis.to; at += step) {
    const float x = page.axis.x_of(static_cast<double>(at));
    page.ticks.push_back(x);
    put_text(page, {x, page.axis_y - 7}, number_text_thousands(at), small, map_colour::faint_text, text_anchor::middle,
             text_width);
  }
}

void put_bands(const lane &of, lane_row &row, lanes_page &page) {
  const float top = row.strip.corner.y, bottom = top + row.strip.size.height;
  const float left = row.strip.corner.x, right = left + row.strip.size.width;
  for (const lane_band &band : of.bands) {
    const float x = page.axis.x_of(band.size);
    row.x.push_back(x);
    if (x < left || x > right)
      continue;
    const bool is_known = band.is_explained || !of.has_neighbours;
    (is_known ? page.explained : page.unexplained).push_back({{x, top}, {x, bottom}});
    if (!is_known) // shape tells it too
      page.marks.insert(page.marks.end(), {{x, top - 1}, {x - mark, top - 2 * mark}, {x + mark, top - 2 * mark}});
  }
}

void put_joins(const lane_values &values, lanes_page &page) {
  for (const lane_join &joined : values.joins) {
    const lane_row &row = page.rows[static_cast<std::size_t>(joined.lane)];
    const lane_row &next = page.rows[static_cast<std::size_t>(joined.lane) + 1];
    const float x1 = row.x[static_cast<std::size_t>(joined.band)],
                x2 = next.x[static_cast<std::size_t>(joined.band_of_next)];
    const float left = row.strip.corner.x, right = left + row.strip.size.width;
    if (std::max(x1, x2) >= left && std::min(x1, x2) <= right)
      page.joins.push_back({{std::clamp(x1, left, right), row.strip.corner.y + row.strip.size.height},
                            {std::clamp(x2, left, right), next.strip.corner.y}});
  }
}

void put_legend(lanes_page &page, const text_measure &text_width) {
  const std::pair<const char *, colour_value> entries[]{{"band", known},
                                                        {"band that no overlapping clone explains", unknown},
                                                        {"common bands of neighbouring lanes", join}};
  float x = page.rows.empty() ? 10 : page.rows.front().strip.corner.x;
  const float y = margin_top + 8;
  for (const auto &[text, colour] : entries) {
    if (colour == join)
      page.joins.push_back({{x, y + 1}, {x + 8, y - 9}});
    else
      (colour == known ? page.explained : page.unexplained).push_back({{x + 4, y - 9}, {x + 4, y + 1}});
    if (colour == unknown)
      page.marks.insert(page.marks.end(),
                        {{x + 4, y - 9}, {x + 4 - mark, y - 9 - 2 * mark}, {x + 4 + mark, y - 9 - 2 * mark}});
    put_text(page, {x + 13, y}, text, small, map_colour::text, text_anchor::left, text_width);
    x += 13 + page.texts.back().width + 18;
  }
}

} // namespace

lanes_page lay_out_lanes(const lane_values &values, const lanes_format &format, const text_measure &text_width) {
  lanes_page page;
  float names = 40;
  for (const lane &of : values.lanes)
    names = std::max(names, text_width(of.name, name_size));
  const float left = std::min(names + 20, format.width / 2), right = std::max(format.width - margin_right, left + 1);
  const double span = std::max(format.to - format.from, 1.0);
  page.axis = {format.from, format.from + span, left, (right - left) / span};
  page.axis_y = margin_top + legend_height + axis_height;
  put_axis(page, text_width);
  float y = page.axis_y + 14;
  for (std::size_t i = 0; i < values.lanes.size(); ++i) {
    const lane &of = values.lanes[i];
    lane_row &row = page.rows.emplace_back();
    row.lane = static_cast<std::int32_t>(i);
    row.strip = {{left, y}, {right - left, strip_height}};
    put_bands(of, row, page);
    put_text(page, {left - 8, y + 8}, of.name, name_size, map_colour::text, text_anchor::right, text_width);
    put_text(page, {left - 8, y + 19}, std::to_string(of.bands.size()) + " bands", small, map_colour::faint_text,
             text_anchor::right, text_width);
    y += strip_height + between;
  }
  put_joins(values, page);
  put_legend(page, text_width);
  page.size = {format.width, y - between + margin_bottom};
  return page;
}

void draw_lanes(const lanes_page &page, const drawing_surface &surface) {
  surface.clear(map_colour::paper);
  std::vector<surface_box> strips;
  for (const lane_row &row : page.rows)
    strips.push_back(row.strip);
  surface.boxes({lane_paper, 0, true, false}, strips);
  const float left = page.axis.x_of(page.axis.from), right = page.axis.x_of(page.axis.to);
  std::vector<surface_line> axis{{{left, page.axis_y}, {right, page.axis_y}}};
  for (const float x : page.ticks)
    axis.push_back({{x, page.axis_y - 4}, {x, page.axis_y}});
  surface.lines({map_colour::axis, 1, line_pattern::solid}, axis);
  surface.lines({join, 1, line_pattern::solid}, page.joins);
  surface.lines({known, 1, line_pattern::solid}, page.explained);
  surface.lines({unknown, 2, line_pattern::solid}, page.unexplained);
  surface.polygons({unknown, 0, true, false}, 3, page.marks);
  draw_texts(surface, page.texts);
}

found_band band_at(const lanes_page &page, float x, float y) {
  constexpr float farthest = 4;
  for (const lane_row &row : page.rows) {
    if (y < row.strip.corner.y - 2 * mark || y > row.strip.corner.y + row.strip.size.height)
      continue;
    found_band found{row.lane, -1};
    float least = farthest;
    for (std::size_t i = 0; i < row.x.size(); ++i)
      if (const float away = std::abs(row.x[i] - x); away < least) {
        least = away;
        found.band = static_cast<std::int32_t>(i);
      }
    return found;
  }
  return {};
}

} // namespace orb
