// What the colours of a net's picture tell of its clones.
#pragma once

#include <string>

#include "clustering/contig_map.h"
#include "viewer/class_net_elng.h"
#include "viewer/net_sheet.h"

namespace orb {

// `wanted`: path, burial, verdict, cluster, or score (nodes as they are). Fills the legend; names stand at the clones
// of the tiling path.
void colour_nodes(class_net_elng &net, const contig_map &map, const std::string &wanted, net_sheet &sheet);

} // namespace orb
