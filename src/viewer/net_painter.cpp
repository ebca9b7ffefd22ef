#include "viewer/net_painter.h"

#include <algorithm>
#include <cmath>

#include "viewer/class_net_elng_clust.h"

namespace orb {

namespace {

constexpr float half_size_of_others = 4;
constexpr float width_of_overlay = 5;
constexpr float caption_size = 10;
constexpr colour_value blue = 255 * 65536, black = 0;

// Crowded pictures have smaller nodes, never larger ones.
float half_size_of(std::int16_t size, const net_picture &picture) {
  return picture.least_half_size < 3 ? picture.least_half_size
                                     : std::max(static_cast<float>(size), picture.least_half_size);
}

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
  const float s = shape >= 2 ? half_size_of_others : drawn.s < 3 ? drawn.s : std::trunc(drawn.s);
  const auto [x, y] = drawn.at;
  const bool is_small = drawn.s < 3; // its border would be all that is seen of it
  const surface_look look{drawn.fill, drawn.border, true, !is_small};
  const auto polygon = [&](std::initializer_list<surface_point> corners) {
    auto &points = shapes_of(look, static_cast<int>(corners.size())).points;
    points.insert(points.end(), corners);
  };
  switch (shape) {
  case 0:
    shapes_of(look, 0).boxes.push_back({drawn.at, {s, s}});
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

void net_painter::add_caption(std::string text, surface_point at, colour_value colour, bool comes_first) {
  if (text.empty())
    return;
  captions_.push_back(std::move(text));
  comes_first_.push_back(comes_first ? 1 : 0);
  texts_.push_back({at, {}, caption_size, colour, text_anchor::left}); // its text follows when all are there
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
                edge.show_caption);
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
  const float s = half_size_of(node.size, picture);
  add_marker({places_[at], s, node.shape, node.is_selected ? palette_colour(palette_selection_colour).value : fill,
              node.bc < 0 ? black : node.bc});
  if (picture.show_node_captions || node.show_caption) {
    const float right = node.shape >= 2 ? half_size_of_others : s;
    add_caption(table != nullptr && table->is_loaded() ? table->sCaptionForNode(node.caption) : node.caption,
                {places_[at].x + right, places_[at].y - right}, fill, node.show_caption);
  }
  return true;
}

void net_painter::add_overlay(const node_elng &node, vertex_number n, const net_picture &picture) {
  const auto at = static_cast<std::size_t>(n);
  if (!node.is_marked || is_drawn_[at] == 0)
    return;
  const float s = half_size_of(node.mark_size, picture);
  add_marker({places_[at], s, node.mark_shape, node.mark_ic < 0 ? blue : node.mark_ic,
              node.mark_bc < 0 ? black : node.mark_bc});
  add_caption(node.mark_caption, {places_[at].x + s, places_[at].y - s}, node.mark_ic, true);
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

namespace {

// What texts take up of a picture, by cells of a grid.
class taken_cells {
public:
  explicit taken_cells(const surface_size &size)
      : columns_(static_cast<std::int64_t>(size.width / cell) + 1),
        rows_(static_cast<std::int64_t>(size.height / cell) + 1),
        taken_(static_cast<std::size_t>(columns_ * rows_), false) {}

  // False, and nothing is taken, when another text is there.
  bool take(const surface_text &text, float width) {
    const auto x1 = place(text.at.x, columns_), x2 = place(text.at.x + width + cell, columns_),
               y1 = place(text.at.y - text.size, rows_), y2 = place(text.at.y, rows_);
    for (auto y = y1; y <= y2; ++y)
      for (auto x = x1; x <= x2; ++x)
        if (taken_[static_cast<std::size_t>(y * columns_ + x)])
          return false;
    for (auto y = y1; y <= y2; ++y)
      for (auto x = x1; x <= x2; ++x)
        taken_[static_cast<std::size_t>(y * columns_ + x)] = true;
    return true;
  }

private:
  static constexpr float cell = 4; // pixels
  static std::int64_t place(float at, std::int64_t n) {
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(std::clamp(at, -1e6f, 1e6f) / cell), 0, n - 1);
  }
  std::int64_t columns_, rows_;
  std::vector<bool> taken_;
};

} // namespace

void net_painter::leave_out_covering(const drawing_surface &surface) {
  constexpr colour_value dark = 0x333333;
  taken_cells taken(surface.size());
  std::vector<surface_text> kept;
  for (const int first : {1, 0})
    for (std::size_t k = 0; k < texts_.size(); ++k)
      if (comes_first_[k] == first && taken.take(texts_[k], surface.text_width(texts_[k].text, texts_[k].size))) {
        kept.push_back(texts_[k]);
        kept.back().colour = dark;
      }
  texts_ = std::move(kept);
}

void net_painter::flush_texts(const net_picture &picture, const drawing_surface &surface) {
  for (std::size_t k = 0; k < texts_.size(); ++k)
    texts_[k].text = captions_[k];
  if (picture.no_captions)
    texts_.clear();
  else if (picture.captions_apart)
    leave_out_covering(surface);
  if (!texts_.empty())
    surface.texts(texts_);
  texts_.clear();
  captions_.clear();
  comes_first_.clear();
}

paint_faults net_painter::add_nodes(const class_net_elng &net, const net_picture &picture,
                                    const class_net_elng_clust *table, const drawing_surface &surface) {
  paint_faults faults;
  const auto nodes = net.nodes();
  for (std::size_t n = 1; n < nodes.size(); ++n)
    add_overlay(nodes[n], static_cast<vertex_number>(n), picture);
  flush_shapes(surface);
  for (const bool above : {false, true}) {
    for (std::size_t n = 1; n < nodes.size(); ++n)
      if ((picture.captions_apart && nodes[n].show_caption) == above &&
          !add_node(nodes[n], static_cast<vertex_number>(n), picture, table) && faults.n_vertices++ == 0)
        faults.first_vertex = static_cast<std::int32_t>(n);
    flush_shapes(surface);
  }
  return faults;
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
  const paint_faults of_nodes = add_nodes(net, picture, table, surface);
  faults.n_vertices = of_nodes.n_vertices;
  faults.first_vertex = of_nodes.first_vertex;
  flush_texts(picture, surface);
  return faults;
}

void net_painter::redraw_nodes(const class_net_elng &net, const view_geometry &geometry, const net_picture &picture,
                               const class_net_elng_clust *table, const drawing_surface &surface,
                               const std::vector<vertex_number> &changed) {
  surface.smooth(!picture.moves);
  find_places(net, geometry);
  for (const vertex_number n : changed)
    add_node(net.nodes()[static_cast<std::size_t>(n)], n, picture, table);
  flush_shapes(surface);
  flush_texts(picture, surface);
}

} // namespace orb
