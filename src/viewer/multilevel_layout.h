// The layout of pictures: long thin nets unfolded, component by component.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/process_frame.h"
#include "viewer/layout_graph.h"

namespace orb {

struct multilevel_options {
  double aspect = 4.0 / 3; // width of the page over its height, above 0
  std::uint64_t seed = 1;
  int threads = 0; // 0: all cores
  bool without_doubtful = false;
};

// Places all nodes anew; x and y become arrays of n + 1 entries, the box of the picture begins at (0, 0), and an edge
// is about 1 long. Each component lies by itself, so that distances in the picture are those along the edges, and flat;
// together they fill a page from the highest to the lowest. A band that alone would make the page wider than `aspect`
// asks for is bent to and fro. Arcs count as edges. `without_doubtful`: distances are those along edges that are
// probably right (doubtful_edges.h): lines come out as lines, and the false edges lie across the picture.
//
// Tells the frame how many nodes are placed, and polls it. When it is stopped, what was reached is kept and packed,
// and false is returned. The same seed gives the same picture on any number of threads.
bool multilevel_layout(const layout_graph &graph, const multilevel_options &options, process_frame &frame,
                       std::vector<float> &x, std::vector<float> &y);

} // namespace orb
