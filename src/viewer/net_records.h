// The records of an open net: a node, an edge, a row of the table of clusters. Numbers of nodes, edges and clusters
// begin with 1; places are in net coordinates, whatever the window makes of them.
#pragma once

#include <cstdint>
#include <string>

#include "drawing/palette.h"
#include "frame/lists.h"

namespace orb {

inline constexpr colour_value node_gray = 191 + 256 * 191 + 65536 * 191; // the palette's GRAY and BLACK
inline constexpr colour_value node_black = 0;

struct node_elng {
  std::string caption;               // the label of the file; of a node of the library normally the clone's name
  std::int16_t shape = 0;            // of the table of shapes
  std::int16_t size = 3;             // half the width in pixels at zoom 1
  std::string ic_name = "gray";      // fill as it was spelled, kept for saving
  colour_value ic = node_gray;       // fill
  std::string bc_name = "black";     // border
  colour_value bc = node_black;      //
  float x = 0, y = 0, z = 0;         // z is read, never written and never used
  float x_fact = 1, y_fact = 1;      // scale factors of the file
  bool is_selected = false;          // mirrors `selected` of the document
  bool is_frozen = false;            // layout doesn't move it
  bool is_coor_known = false;        // it has a place and is drawn; without one it isn't
  clone_number clone_id = -1;        // -1 or 0: the caption is no clone's name
  std::int32_t cluster_id = -1;      // the clone's cluster, or the cluster of the loaded table; below 1: none
  bool node_spare_flag = false;      // handed to the window, never acted on
  float vx = 0, vy = 0;              // speed of the layout
  float fx = 0, fy = 0;              // force of the layout
  bool show_caption = false;         // also while captions are off
  std::string mark_caption;          // the overlay, drawn under the node
  std::int16_t mark_shape = 0;       //
  std::int16_t mark_size = 6;        //
  colour_value mark_ic = node_gray;  //
  colour_value mark_bc = node_black; //
  bool is_marked = false;            // the overlay is drawn
  friend bool operator==(const node_elng &, const node_elng &) = default;
};

struct edge_elng {
  vertex_number from = 0, to = 0;
  double value = 0;                 // of a pair of clones: the score of its overlap
  std::string caption;              // the label
  std::string c_name;               // colour as it was spelled
  colour_value c = -1;              // below 1: the default pen
  std::int16_t width = 1;           //
  std::int16_t pattern = 0;         // of `line_pattern_name`
  std::int16_t edge_spare_flag = 0; // not used
  bool is_arc = false;              // directed
  std::int32_t stiffness = 1;       // multiplies the spring
  bool show_caption = false;        // also while captions are off
  bool is_marked = false;           // the overlay is drawn
  std::string mark_caption;         //
  colour_value mark_c = -1;         //
  friend bool operator==(const edge_elng &, const edge_elng &) = default;
};

// A row of the table beside the picture.
struct cluster_elng {
  std::string name;
  std::int32_t id = 0;         // what `cluster_id` of nodes holds
  std::int32_t n_clones = 0;   // in the whole project
  std::int32_t n_shown = 0;    // nodes of this net
  colour_value color = 0;      // fill of its first node
  bool is_selected = false;    // at least one of its nodes is selected
  std::int32_t sorted_row = 0; // in the table sorted by name, from 1
  friend bool operator==(const cluster_elng &, const cluster_elng &) = default;
};

} // namespace orb
