// Open nets made by chance, and what they are filled from.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "support/contig_test_library.h"
#include "viewer/class_net_elng.h"
#include "viewer/class_net_elng_clust.h"
#include "viewer/net_elongation.h"
#include "viewer/net_file.h"

namespace orb_test {

// A library of clones along an axis, with its net; overlaps are counts of common bands.
struct viewer_session : contig_session {
  class_clone_dist_my gate{context, &signif.net()};
  random_source chance{7};
  class_net_elng_clust table;
  net_sources sources{frame, database, signif, gate, rule, chance, folder, &table};

  explicit viewer_session(std::uint64_t seed = 1, int n_clones = 60, double cutoff = 6)
      : contig_session(random_library(seed, n_clones, 300, 0), cutoff) {
    sources.rule = rule;
  }
  std::string name(clone_number clone) const { return database.name_of_clone_get(clone); }
};

inline std::vector<node_elng> copy_of(std::span<const node_elng> nodes) {
  return {nodes.begin(), nodes.end()};
}
inline std::vector<edge_elng> copy_of(std::span<const edge_elng> edges) {
  return {edges.begin(), edges.end()};
}
inline std::vector<std::int32_t> copy_of(const number_list &list) {
  return {list.members().begin(), list.members().end()};
}

// As a file can hold it: places in steps of 1/8, sizes 1, everything frozen.
inline void fill_by_chance(class_net_elng &net, random_source &chance, int n_nodes, int n_edges) {
  const auto text = [&chance] {
    static const std::vector<std::string> pieces{"a", " ", "B7", "[", "ö", "#", ","};
    std::string made;
    for (std::int32_t n = chance.number_up_to(5); n > 1; --n)
      made += pieces[static_cast<std::size_t>(chance.number_up_to(7)) - 1];
    return made;
  };
  const auto place = [&chance] { return static_cast<float>(chance.number_up_to(800) - 400) / 8; };
  const std::vector<std::string> colours{"gray", "Green", "DARK_BLUE", "noColour"};
  const auto colour = [&] { return colours[static_cast<std::size_t>(chance.number_up_to(4)) - 1]; };
  std::vector<node_elng> nodes(1);
  for (int n = 1; n <= n_nodes; ++n) {
    node_elng node;
    node.caption = text();
    node.shape = random_shape(chance);
    node.size = 1;
    node.ic_name = colour();
    node.ic = color_from_name(node.ic_name);
    node.bc_name = colour();
    node.bc = color_from_name(node.bc_name);
    node.x = place();
    node.y = place();
    node.is_coor_known = node.is_frozen = true;
    nodes.push_back(node);
  }
  std::vector<edge_elng> arcs(1), edges;
  for (int e = 1; e <= n_edges; ++e) {
    edge_elng edge;
    edge.from = chance.number_up_to(n_nodes);
    edge.to = chance.number_up_to(n_nodes);
    edge.value = chance.uniform() * 100 + 1e-7;
    edge.caption = text();
    if (chance.number_up_to(4) > 1) {
      edge.c_name = colour();
      edge.c = color_from_name(edge.c_name);
    }
    edge.width = static_cast<std::int16_t>(chance.number_up_to(9));
    edge.pattern = static_cast<std::int16_t>(chance.number_up_to(3) - 1);
    edge.is_arc = chance.number_up_to(3) == 1;
    (edge.is_arc ? arcs : edges).push_back(edge);
  }
  arcs.insert(arcs.end(), edges.begin(), edges.end());
  net.contents_set("net " + text(), nodes, arcs, true);
}

} // namespace orb_test
