// A drawing of a net: vertices, edges and arcs with their looks, and the writer of the file that the Pajek program
// opens. It knows nothing of clones; class_clone_net_draw fills it.
//
// The file holds one record a line, lines ending with CR LF:
//   *Network TITLE
//   *Vertices N
//   1 "caption" sh ellipse x_fact 1 y_fact 1 ic Blue bc Black
//   *Arcs N
//   1 2 1 w 3 c White p Solid l ""
//   *Edges N
//   1 2 1 w 1 c Green p Solid l "17.3"
// The third number of an edge is 1 for all; the true value stands in the label. Captions and titles can hold any
// bytes: a double quote is written as a single one and a control character as a blank, all else stays as it is.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "frame/process_frame.h"

namespace orb {

struct draw_vertex {
  std::string caption;
  std::int16_t shape = 0; // index of the table of shapes
  std::int16_t size = 1;
  std::int16_t ic = 5, bc = 10; // inside and border: indexes of the scale colours
};

// An edge, or an arc from i to j.
struct draw_edge {
  std::int32_t i = 0, j = 0; // vertices
  double value = 0;          // the writer leaves out what is below its threshold
  std::size_t label_begin = 0;
  std::uint32_t label_length = 0; // the label's place in the text of all labels
  std::int16_t c = 0;             // index of the scale colours
  std::int16_t w = 1;             // width
  std::int16_t p = 0;             // index of the line patterns
  std::int16_t burial = 0;        // of the overlap as seen from i; only the GraphML form holds it
};

// Edges or arcs, with all their labels in one text.
struct draw_edges {
  std::vector<draw_edge> items;
  std::string labels;
  std::string_view label(const draw_edge &edge) const {
    return std::string_view(labels).substr(edge.label_begin, edge.label_length);
  }
};

class class_net_draw {
public:
  explicit class_net_draw(process_frame &frame) : frame_(&frame) {}

  static constexpr std::int32_t Const_MAX_n_vertices_get() { return 100100; }
  static constexpr std::int32_t Const_MAX_n_edges_get() { return 5000000; }

  // Empties the drawing and sets what it can hold: min(n, 100100) vertices, and of edges and arcs n * n each, 5000000
  // from n = 2235 on. More vertices than that are told at once. Room is taken as things come.
  void inicialisate_net(std::int32_t n);
  // What exceeds the room is told once and then dropped without a word.
  void add_vertex(std::string caption, std::int16_t shape, std::int16_t size, std::int16_t ic, std::int16_t bc);
  void add_edge(std::int32_t i, std::int32_t j, double value, std::string_view label, std::int16_t c, std::int16_t w,
                std::int16_t p, bool is_vector, std::int16_t burial = 0);
  void vertex_border_set(std::int32_t i, std::int16_t bc) { vertices_[static_cast<std::size_t>(i)].bc = bc; }

  std::int32_t n_vertices_get() const { return private_n_vertices_; }
  std::int32_t n_edges_get() const { return static_cast<std::int32_t>(edges_.items.size()); }
  std::int32_t n_vectors_get() const { return static_cast<std::int32_t>(vectors_.items.size()); }
  std::int32_t max_n_vertices_get() const { return max_n_vertices_; }
  std::int32_t max_n_edges_get() const { return max_n_edges_; }
  const draw_vertex &vertex(std::int32_t i) const { return vertices_[static_cast<std::size_t>(i)]; } // from 1
  const draw_edges &edges() const { return edges_; }
  const draw_edges &vectors() const { return vectors_; }
  // Is the edge in a file of this threshold? Edges of vertices that found no room never are.
  bool is_shown(const draw_edge &edge, double threshold) const {
    return edge.value >= threshold && edge.i >= 1 && edge.j >= 1 && edge.i <= private_n_vertices_ &&
           edge.j <= private_n_vertices_;
  }
  // Asked behind each edge that is written; looks at the stop flag now and then.
  bool goes_on_behind(std::size_t n_edges) const { return n_edges % 50000 != 0 || frame_->goes_on(); }
  std::int32_t n_shown(const draw_edges &edges, double threshold) const;

  // The file of the head of this header. Edges and arcs below the threshold are left out; -1 keeps all. An unknown
  // colour or pattern is told once a file and written as Black or Solid. Throws file_error. False, and no file, after a
  // stop request.
  bool print_net_pajek(const std::filesystem::path &file, double threshold, std::string_view title) const;
  // All edges (no arcs) as a table: edge, i, name, j, name, val ("0.0"), label.
  void print_all_edges_values(const std::filesystem::path &file) const;

private:
  process_frame *frame_;
  std::vector<draw_vertex> vertices_{1}; // from 1
  std::int32_t private_n_vertices_ = 0;
  draw_edges edges_, vectors_;
  bool overflow_reported_ = false;
  std::int32_t max_n_vertices_ = 0, max_n_edges_ = 0;
};

// A caption, label or title as it can stand between double quotes on one line.
std::string text_in_quotes(std::string_view text);

} // namespace orb
