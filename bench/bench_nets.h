// Large drawn nets for benchmarks of the viewer.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/layout_nets.h"
#include "viewer/class_net_elng.h"
#include "viewer/net_layout.h"

namespace orb {

// Unfolded nets of intervals with 5 edges a node.
inline const class_net_elng &net_of(std::int64_t n) {
  static std::map<std::int64_t, class_net_elng> made;
  const auto found = made.find(n);
  if (found != made.end())
    return found->second;
  class_net_elng &net = made[n];
  std::vector<node_elng> nodes(static_cast<std::size_t>(n) + 1);
  std::vector<edge_elng> edges(1);
  for (std::size_t i = 1; i < nodes.size(); ++i)
    nodes[i].caption = "clone" + std::to_string(i);
  for (const layout_edge &drawn : interval_net(static_cast<std::int32_t>(n), 10, 0.0003, 1)) {
    edge_elng edge;
    edge.from = drawn.from;
    edge.to = drawn.to;
    edge.caption = "20.00";
    edge.c_name = edge.from % 3 == 0 ? "Green" : "Red";
    edge.c = color_from_name(edge.c_name);
    edges.push_back(edge);
  }
  net.contents_set("net", std::move(nodes), std::move(edges), false);
  process_frame frame;
  lay_out_multilevel(net, {1.6, 1, 0}, frame);
  return net;
}

} // namespace orb
