// The .net dialect as the viewer reads and writes it, one record a line:
//   *Network NAME
//   *Vertices N
//   1 "caption" 0.500 0.250 sh ellipse x_fact 1 y_fact 1 ic gray bc black
//   *Arcs N
//   *Edges N
//   1 2 17.3 w 1 c Green p Solid l "17.30"
// The batch writers of drawing/ produce the same lines.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "frame/process_frame.h"
#include "viewer/class_net_elng.h"

namespace orb {

// What a file holds, not yet seen against any library; nodes and edges from element 1.
struct net_file_contents {
  std::string net_name;
  std::vector<node_elng> nodes{1};
  std::vector<edge_elng> edges{1};
};

// False after a message, with `contents` as they were. Memory follows the file, not the numbers that it declares.
// Throws file_error when the file can't be opened.
bool read_net_file(process_frame &frame, const std::filesystem::path &file, net_file_contents &contents);

struct net_saving {
  std::string net_name;
  bool all_nodes = true;                     // false: the selected ones
  class_net_elng::edge_filter edge_is_shown; // empty: all
  std::function<void()> remove_saved;        // the window's command, called when a selection was saved
};

} // namespace orb
