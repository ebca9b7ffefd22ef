// Edges of a net of overlaps that are probably false.
#pragma once

#include "viewer/multilevel_graph.h"

namespace orb {

// Two clones that really overlap nearly always have a third that overlaps both; two that a false edge joins hardly ever
// do. Edges with a common neighbour hold the pieces of the net together. One without is doubtful when it leads from a
// piece to itself; and when pieces are joined already by others that lie nearer to their ends: where clones are sparse,
// a line of them breaks into pieces that meet end to end. What is needed to hold a component together is never
// doubtful, nor is an edge of a node that has no other kind: paths, rings, trees and grids have none.
//
// Takes them out; `graph.node` isn't looked at. Edges * lesser degree * log of the greater.
void drop_doubtful_edges(component_graph &graph);

} // namespace orb
