// Draws an open net on a surface: overlays of edges, edges, overlays of nodes, nodes. What has one look goes to the
// surface in one run, so that a large net costs few calls.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "drawing/drawing_surface.h"
#include "viewer/class_net_elng.h"
#include "viewer/edge_display.h"
#include "viewer/view_geometry.h"

namespace orb {

struct net_picture {
  colour_value background = 256 * 256 * 255 + 256 * 255 + 255;
  bool show_node_captions = false, show_edge_captions = false;
  edge_display edges;
  bool moves = false; // draw fast: thin lines, no smoothed edges
  // For a picture that nobody can zoom: nodes that show their captions anyway lie above the others; a caption that
  // would cover another one is left out, theirs come first, and all are dark.
  bool captions_apart = false, no_captions = false;
  float least_half_size = 3; // of nodes
};

// Numbers of what couldn't be drawn: a place that is no number.
struct paint_faults {
  std::int32_t n_vertices = 0, first_vertex = 0, n_edges = 0, first_edge = 0;
};

class net_painter {
public:
  // `table`: captions of nodes, when one is loaded. n + e.
  paint_faults redraw_net(const class_net_elng &net, const view_geometry &geometry, const net_picture &picture,
                          const class_net_elng_clust *table, const drawing_surface &surface);
  // These nodes once more over the picture as it is: only their fill has changed.
  void redraw_nodes(const class_net_elng &net, const view_geometry &geometry, const net_picture &picture,
                    const class_net_elng_clust *table, const drawing_surface &surface,
                    const std::vector<vertex_number> &changed);

private:
  // Shapes and the corners of their outlines, by look; the runs come out in the order in which looks were met.
  struct shape_run {
    surface_look look;
    int corners = 0; // 0: a circle, 1: a box
    std::vector<surface_box> boxes;
    std::vector<surface_point> points;
  };
  struct line_run {
    surface_pen pen;
    std::vector<surface_line> lines;
  };
  struct marker {
    surface_point at;
    float s = 3; // half of its size
    std::int32_t shape = 0;
    colour_value fill = 0, border = 0;
  };

  void find_places(const class_net_elng &net, const view_geometry &geometry);
  std::vector<surface_line> &lines_of(const surface_pen &pen);
  shape_run &shapes_of(const surface_look &look, int corners);
  void add_marker(const marker &drawn);
  paint_faults add_nodes(const class_net_elng &net, const net_picture &picture, const class_net_elng_clust *table,
                         const drawing_surface &surface);
  void add_caption(std::string text, surface_point at, colour_value colour, bool comes_first);
  bool add_edge(const edge_elng &edge, const net_picture &picture);
  void add_overlay(const edge_elng &edge);
  bool add_node(const node_elng &node, vertex_number n, const net_picture &picture, const class_net_elng_clust *table);
  void add_overlay(const node_elng &node, vertex_number n, const net_picture &picture);
  void flush_lines(const drawing_surface &surface);
  void flush_shapes(const drawing_surface &surface);
  void flush_texts(const net_picture &picture, const drawing_surface &surface);
  void leave_out_covering(const drawing_surface &surface);

  // By node, from 1; scratch that keeps its memory from one redraw to the next.
  std::vector<surface_point> places_;
  std::vector<char> is_drawn_;
  std::vector<line_run> lines_;
  std::vector<shape_run> shapes_;
  std::size_t n_lines_ = 0, n_shapes_ = 0; // runs in use
  std::vector<surface_text> texts_;
  std::vector<std::string> captions_;
  std::vector<char> comes_first_; // of these
};

} // namespace orb
