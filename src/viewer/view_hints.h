// What is told of a node or an edge of an open net when somebody points at it.
#pragma once

#include <string>

#include "viewer/class_net_elng.h"

namespace orb {

// Lines: clone, bands, contig, overlaps in this net and in the loaded one, what the revision found. Empty when there is
// no such node.
std::string hint_of_node(const net_sources &sources, const class_net_elng &net, vertex_number node);
// Names of both ends and the score. Empty when there is no such edge.
std::string hint_of_edge(const class_net_elng &net, std::int32_t edge);

// The node that a text names: by caption, else the first one whose caption begins so, else holds it, capitals or not;
// -1: none.
vertex_number node_by_name(const class_net_elng &net, const std::string &text);

} // namespace orb
