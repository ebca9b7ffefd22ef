// A drawing as GraphML, the form that igraph, networkx, Gephi, Cytoscape and yEd read.
//
// The graph is undirected, since those readers refuse or lose a mixture: an arc is an edge with `is_arc` true, from its
// `first` vertex to its `second`. These two hold ids of nodes, because a reader of an undirected graph may swap source
// and target. All attributes are declared:
//   graph    title, metric, cutoff
//   node     label, shape_name, size_factor, color ("#rrggbb"), color_name, border_color, border_color_name, r, g, b;
//            with clones: name, clone, n_bands, buried, marks; where a position is known: x, y
//   edge     label, value, color, color_name, width, pattern, first, second, burial (0 none, 1 the first is buried in
//            the second, 2 the second in the first, 3 both), is_arc
// Shape and size don't bear the plain names that igraph takes for its own shapes and for sizes in pixels.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/class_net_draw.h"

namespace orb {

// What is known of a vertex beside its look.
struct graphml_vertex {
  std::string name;       // of the clone
  std::int32_t clone = 0; // number in the database
  std::int32_t n_bands = 0;
  bool buried = false; // in a clone that it overlaps
  std::string marks;   // names of the marking lists that hold it, separated by ";"
  bool position_known = false;
  double x = 0, y = 0;
};

struct graphml_details {
  std::string metric;                   // empty: not written
  double cutoff = 0;                    // written with the metric
  std::vector<graphml_vertex> vertices; // from 1; empty: none
};

// Edges and arcs below the threshold are left out; -1 keeps all. Throws file_error. False, and no file, after a stop.
bool print_net_graphml(const class_net_draw &drawing, const std::filesystem::path &file, double threshold,
                       std::string_view title, const graphml_details &details = {});

// The text as the content of an XML element: markup characters, tabs and line ends escaped; characters that XML can't
// hold become blanks; bytes that are no UTF-8 are taken for Latin-1.
void xml_text_append(std::string &to, std::string_view text);

} // namespace orb
