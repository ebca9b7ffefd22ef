// A picture of a net for a file: the net as the viewer draws it, and what its colours mean.
#pragma once

#include <string>
#include <vector>

#include "viewer/net_painter.h"

namespace orb {

struct sheet_legend_entry {
  std::string text;
  colour_value fill = 0;
};

struct net_sheet {
  std::string title; // empty: none
  std::vector<sheet_legend_entry> legend;
  net_picture look;
};

// Title above, legend below, the net between them. `faults`: what couldn't be drawn.
paint_faults draw_net_sheet(const class_net_elng &net, const net_sheet &sheet, const drawing_surface &surface);

} // namespace orb
