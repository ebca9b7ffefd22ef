// Nodes and edges that stand for clones and their overlaps, and the overlays that show what the loaded net knows of
// them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "viewer/net_records.h"
#include "viewer/net_sources.h"

namespace orb {

// Name, cluster and overlay of a clone; all else as a new node has it.
node_elng node_of_clone(const net_sources &sources, clone_number clone);
// The registry's cluster of a clone; -1 when no contigs are specified, 0 for a clone in none.
std::int32_t cluster_of_clone(const net_sources &sources, clone_number clone);
// An edge with the label and the colour of a score.
edge_elng edge_of_score(vertex_number from, vertex_number to, double value);

// The mark that the loaded net gave to the node's clone, as a shape under the node.
void vertex_overlay_set(const net_sources &sources, node_elng &node);
// The scores that the loaded net has for the clones of both ends, as a broad line under the edge. Ends that the net
// takes for Q-clones get none.
void edge_overlay_set(const net_sources &sources, const node_elng &from, const node_elng &to, edge_elng &edge);

// Calls `take(neighbour, value)` for each overlap of a clone in the loaded net from a cutoff on.
template <class take_function>
void walk_overlaps(const net_sources &sources, clone_number clone, double cutoff, take_function &&take) {
  for (const net_edge &edge : sources.signif.net().edges_of_vertex(clone))
    if (edge.value >= cutoff)
      take(edge.neighbour, edge.value);
}

// The gate set to score pairs by their bands.
class_clone_dist_my &gate_on_bands(const net_sources &sources, double cutoff);

// Names or captions in a text: one a line; tabs separate as well, and blanks around don't count.
std::vector<std::string> names_in_text(std::string_view text);
// The text of a file of names; an empty file is asked for. False when cancelled, or after a message for what is no
// text.
bool text_of_list_file(const net_sources &sources, std::filesystem::path file, std::string &text);

} // namespace orb
