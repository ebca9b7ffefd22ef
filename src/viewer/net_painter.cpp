#include "viewer/net_painter.h"

#include <algorithm>
#include <cmath>

#include "viewer/class_net_elng_clust.h"

namespace orb {

namespace {

constexpr float least_half_size = 3, half_size_of_others = 4;
constexpr float width_of_overlay = 5;
constexpr float caption_size = 10;
constexpr colour_value blue = 255 * 65536, black = 0;

bool is_place(const surface_point &point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

} // namespace

void net_painter::find_places(const class_net_elng &net, const view_geometry &geometry) {
  const auto nodes = net.nodes();
  places_.resize(nodes.size());
  is_drawn_.resize(nodes.size());
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    places_[n] = {geometry.coorOnPictX_get(nodes[n].x), geometry.coorOnPictY_get(nodes[n].y)};
    is_drawn_[n] = nodes[n].is_coor_known && is_place(places_[n]) ? 1 : 0;
  }
}

std::vector<surface_line> &net_painter::lines_of(const surface_pen &pen) {
  for (std::size_t k = 0; k < n_lines_; ++k)
    if (lines_[k].pen == pen)
      return lines_[k].lines;
  if (n_lines_ == lines_.size())
    lines_.emplace_back();
  lines_[n_lines_].pen = pen;
  lines_[n_lines_].lines.clear();
  return lines_[n_lines_++].lines;
}

net_painter::shape_run &net_painter::shapes_of(const surface_look &look, int corners) {
  for (std::size_t k = 0; k < n_shapes_; ++k)
    if (shapes_[k].look == look && shapes_[k].corners == corners)
      return shapes_[k];
  if (n_shapes_ == shapes_.size())
    shapes_.emplace_back();
  shape_run &run = shapes_[n_shapes_++];
  run.look = look;
  run.corners = corners;
  run.boxes.clear();
  run.points.clear();
  return run;
}

// Shapes 2 and up have one size. A cross has one stroke in the border's colour and one in black; "empty" is nothing.
void net_painter::add_marker(const marker &drawn) {
  const std::int32_t shape = drawn.shape < 0 || drawn.shape >= n_shapes ? 0 : drawn.shape;
  const float s = shape >= 2 ? half_size_of_others : drawn.s;
  const auto [x, y] = drawn.at;
  const surface_look look{drawn.fill, drawn.border};
  const auto polygon = [&](std::initializer_list<surface_point> corners) {
    auto &points = shapes_of(look, static_cast<int>(corners.size())).points;
    points.insert(points.end(), corners);
  };
  switch (shape) {
  case 0:
    shapes_of(look, 0).boxes.push_back({drawn.at, {std::trunc(s), std::trunc(s)}});
    break;
  case 1:
    shapes_of(look, 1).boxes.push_back({{x - s, y - s}, {2 * s, 2 * s}});
    break;
  case 2:
    polygon({{x, y - s}, {x + s, y}, {x, y + s}, {x - s, y}});
    break;
  case 3:
    lines_of({drawn.border}).push_back({{x - s, y - s}, {x + s, y + s}});
    lines_of({black}).push_back({{x - s, y + s}, {x + s, y - s}});
    break;
  case 5:
    polygon({{x, y - s}, {x + s, y + s}, {x - s, y + s}});
    break;
  case 6:
    polygon({{x, y + s}, {x + s, y - s}, {x - s, y - s}});
    break;
  default:
    break;
  }
}

void net_painter::add_caption(std::string text, surface_point at, colour_value colour, text_anchor anchor) {
  if (text.empty())
    return;
  captions_.push_back(std::move(text));
  texts_.push_back({at, {}, caption_size, colour, anchor}); // its text follows when all are there
}

bool net_painter::add_edge(const edge_elng &edge, const net_picture &picture) {
  const auto from = static_cast<std::size_t>(edge.from), to = static_cast<std::size_t>(edge.to);
  if (!picture.edges.shows(edge))
    return true;
  if (is_drawn_[from] == 0 || is_drawn_[to] == 0)
    return false;
  const colour_value colour = edge.c < 0 ? black : edge.c;
  const float width = picture.moves ? 1.0f : static_cast<float>(std::max<int>(edge.width, 1));
  const auto pattern = static_cast<line_pattern>(edge.pattern < 0 || edge.pattern > 2 ? 0 : edge.pattern);
  lines_of({colour, width, picture.moves ? line_pattern::solid : pattern}).push_back({places_[from], places_[to]});
  if (picture.show_edge_captions || edge.show_caption)
    add_caption(edge.caption + (edge.mark_caption.empty() ? "" : " (" + edge.mark_caption + ")"),
                {(places_[from].x + places_[to].x) / 2, (places_[from].y + places_[to].y) / 2}, colour,
                text_anchor::left);
  return true;
}

void net_painter::add_overlay(const edge_elng &edge) {
  const auto from = static_cast<std::size_t>(edge.from), to = static_cast<std::size_t>(edge.to);
  if (!edge.is_marked || is_drawn_[from] == 0 || is_drawn_[to] == 0)
    return;
  const float width = edge.width >= 2 ? 3.0f * edge.width : width_of_overlay;
  lines_of({edge.mark_c < 0 ? black : edge.mark_c, width}).push_back({places_[from], places_[to]});
}

bool net_painter::add_node(const node_elng &node, vertex_number n, const net_picture &picture,
                           const class_net_elng_clust *table) {
  const auto at = static_cast<std::size_t>(n);
  if (is_drawn_[at] == 0)
    return !node.is_coor_known;
  const colour_value fill = node.ic < 0 ? blue : node.ic;
  const float s = std::max(static_cast<float>(node.size), least_half_size);
  add_marker({places_[at], s, node.shape, node.is_selected ? palette_colour(palette_selection_colour).value : fill,
              node.bc < 0 ? black : node.bc});
  if (picture.show_node_captions || node.show_caption) {
    const float right = node.shape >= 2 ? half_size_of_others : s;
    add_caption(table != nullptr && table->is_loaded() ? table->sCaptionForNode(node.caption) : node.caption,
                {places_[at].x + right, places_[at].y - right}, fill, text_anchor::left);
  }
  return true;
}

void net_painter::add_overlay(const node_elng &node, vertex_number n) {
  const auto at = static_cast<std::size_t>(n);
  if (!node.is_marked || is_drawn_[at] == 0)
    return;
  const float s = std::max(static_cast<float>(node.mark_size), least_half_size);
  add_marker({places_[at], s, node.mark_shape, node.mark_ic < 0 ? blue : node.mark_ic,
              node.mark_bc < 0 ? black : node.mark_bc});
  add_caption(node.mark_caption, {places_[at].x + s, places_[at].y - s}, node.mark_ic, text_anchor::left);
}

void net_painter::flush_lines(const drawing_surface &surface) {
  for (std::size_t k = 0; k < n_lines_; ++k)
    surface.lines(lines_[k].pen, lines_[k].lines);
  n_lines_ = 0;
}

void net_painter::flush_shapes(const drawing_surface &surface) {
  for (std::size_t k = 0; k < n_shapes_; ++k) {
    const shape_run &run = shapes_[k];
    if (run.corners == 0)
      surface.circles(run.look, run.boxes);
    else if (run.corners == 1)
      surface.boxes(run.look, run.boxes);
    else
      surface.polygons(run.look, run.corners, run.points);
  }
  n_shapes_ = 0;
  flush_lines(surface); // of crosses
}

// The first of several stays. What is taken up is noted by cells of a grid.
void net_painter::leave_out_covering(const drawing_surface &surface) {
  constexpr float cell = 4;
  const surface_size size = surface.size();
  const auto columns = static_cast<std::int64_t>(size.width / cell) + 1,
             rows = static_cast<std::int64_t>(size.height / cell) + 1;
  std::vector<bool> taken(static_cast<std::size_t>(columns * rows), false);
  const auto place = [](float at, std::int64_t n) {
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(std::clamp(at, -1e6f, 1e6f) / cell), 0, n - 1);
  };
  std::size_t kept = 0;
  for (const surface_text &text : texts_) {
    const auto x1 = place(text.at.x, columns), y1 = place(text.at.y - text.size, rows), y2 = place(text.at.y, rows),
               x2 = place(text.at.x + surface.text_width(text.text, text.size) + cell, columns);
    bool is_free = true;
    for (auto y = y1; y <= y2; ++y)
      for (auto x = x1; x <= x2; ++x)
        is_free = is_free && !taken[static_cast<std::size_t>(y * columns + x)];
    if (!is_free)
      continue;
    for (auto y = y1; y <= y2; ++y)
      for (auto x = x1; x <= x2; ++x)
        taken[static_cast<std::size_t>(y * columns + x)] = true;
    texts_[kept++] = text;
  }
  texts_.resize(kept);
}

void net_painter::flush_texts(const net_picture &picture, const drawing_surface &surface) {
  for (std::size_t k = 0; k < texts_.size(); ++k)
    texts_[k].text = captions_[k];
  if (picture.captions_apart)
    leave_out_covering(surface);
  if (!texts_.empty())
    surface.texts(texts_);
  texts_.clear();
  captions_.clear();
}

paint_faults net_painter::redraw_net(const class_net_elng &net, const view_geometry &geometry,
                                     const net_picture &picture, const class_net_elng_clust *table,
                                     const drawing_surface &surface) {
  paint_faults faults;
  surface.smooth(!picture.moves);
  surface.clear(picture.background);
  find_places(net, geometry);
  const auto nodes = net.nodes();
  const auto edges = net.edges();
  if (!picture.moves)
    for (std::size_t e = 1; e < edges.size(); ++e)
      add_overlay(edges[e]);
  flush_lines(surface);
  for (std::size_t e = 1; e < edges.size(); ++e) {
    // an edge to a node that isn't drawn for having no place is no fault
    const bool has_places = nodes[static_cast<std::size_t>(edges[e].from)].is_coor_known &&
                            nodes[static_cast<std::size_t>(edges[e].to)].is_coor_known;
    if (!add_edge(edges[e], picture) && has_places && faults.n_edges++ == 0)
      faults.first_edge = static_cast<std::int32_t>(e);
  }
  flush_lines(surface);
  flush_texts(picture, surface);
  for (std::size_t n = 1; n < nodes.size(); ++n)
    add_overlay(nodes[n], static_cast<vertex_number>(n));
  flush_shapes(surface);
  for (std::size_t n = 1; n < nodes.size(); ++n)
    if (!add_node(nodes[n], static_cast<vertex_number>(n), picture, table) && faults.n_vertices++ == 0)
      faults.first_vertex = static_cast<std::int32_t>(n);
  flush_shapes(surface);
  flush_texts(picture, surface);
  return faults;
}

} // namespace orb
