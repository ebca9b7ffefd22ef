#include "viewer/net_layout.h"

#include "viewer/growth_layout.h"
#include "viewer/initial_position.h"

namespace orb {

namespace {

std::vector<layout_edge> edges_of(const class_net_elng &net) {
  std::vector<layout_edge> edges;
  edges.reserve(net.edges().size());
  for (const edge_elng &edge : net.edges().subspan(1))
    edges.push_back({edge.from, edge.to, edge.stiffness, edge.is_arc});
  return edges;
}

placed_nodes places_of(const class_net_elng &net) {
  placed_nodes nodes;
  for (const node_elng &node : net.nodes()) {
    nodes.x.push_back(node.x);
    nodes.y.push_back(node.y);
    nodes.is_coor_known.push_back(node.is_coor_known ? 1 : 0);
  }
  return nodes;
}

void take_places(const placed_nodes &found, class_net_elng &net) {
  const auto nodes = net.nodes_for_layout();
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    nodes[n].x = found.x[n];
    nodes[n].y = found.y[n];
    nodes[n].is_coor_known = found.is_coor_known[n] != 0;
  }
}

spring_nodes spring_nodes_of(const class_net_elng &net) {
  spring_nodes values;
  values.resize(net.n_vertices_get());
  const auto nodes = net.nodes();
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    values.x[n] = nodes[n].x;
    values.y[n] = nodes[n].y;
    values.vx[n] = nodes[n].vx;
    values.vy[n] = nodes[n].vy;
  }
  return values;
}

void places_are_known(class_net_elng &net) {
  net.coor_are_known_set(true);
  net.coorLimitsUpdate();
}

} // namespace

void lay_out_on_circle(class_net_elng &net) {
  placed_nodes nodes = places_of(net);
  place_on_circle(net.n_vertices_get(), nodes);
  take_places(nodes, net);
  places_are_known(net);
}

// Nodes without a cluster stay where they are.
void lay_out_by_clusters(class_net_elng &net, random_source &chance) {
  std::vector<std::int32_t> cluster_of_node(net.nodes().size(), 0);
  for (std::size_t n = 1; n < cluster_of_node.size(); ++n)
    cluster_of_node[n] = net.Get_ClusterIdByNodeId(static_cast<vertex_number>(n));
  placed_nodes nodes = places_of(net);
  place_on_circle_by_clusters(cluster_of_node, std::max(net.n_clusters_get(), 0), chance, nodes);
  take_places(nodes, net);
  places_are_known(net);
}

bool lay_out_by_growth(class_net_elng &net, process_frame &frame) {
  class_net_elngKK growth;
  growth.KK_inicializate(net.n_vertices_get(), net.n_edges_get());
  for (const node_elng &node : net.nodes().subspan(1))
    growth.add_node({node.x, node.y, node.is_frozen, node.is_coor_known}, false);
  for (const layout_edge &edge : edges_of(net))
    growth.add_edge(edge, false);
  const bool whole = growth.startKK(frame);
  const auto nodes = net.nodes_for_layout();
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    const auto i = static_cast<std::int32_t>(n);
    if (!growth.is_placed_get(i))
      continue;
    nodes[n].x = growth.node_Xcoor_get(i);
    nodes[n].y = growth.node_Ycoor_get(i);
    nodes[n].is_coor_known = true;
  }
  net.coorLimitsUpdate();
  if (whole)
    net.coor_are_known_set(true);
  return whole;
}

bool lay_out_multilevel(class_net_elng &net, const multilevel_options &options, process_frame &frame) {
  const std::vector<layout_edge> edges = edges_of(net);
  placed_nodes nodes = places_of(net);
  const bool whole = multilevel_layout({net.n_vertices_get(), edges}, options, frame, nodes.x, nodes.y);
  nodes.is_coor_known.assign(nodes.x.size(), 1);
  take_places(nodes, net);
  places_are_known(net);
  return whole;
}

spring_run::spring_run(const class_net_elng &net, int threads)
    : edges_(edges_of(net)), springs_(threads), nodes_(spring_nodes_of(net)) {
  std::vector<std::uint8_t> frozen;
  for (const node_elng &node : net.nodes())
    frozen.push_back(node.is_frozen ? 1 : 0);
  springs_.make_KamadaKawaii_Arrays({net.n_vertices_get(), edges_}, frozen);
}

spring_step spring_run::step(bool use_exp, spring_values &values, process_frame &frame) {
  return springs_.CalcPositionsNodes_KamadaKawaii_step(use_exp, values, nodes_, warned_, frame);
}

void spring_run::put_into(class_net_elng &net) const {
  const auto nodes = net.nodes_for_layout();
  for (std::size_t n = 1; n < nodes.size(); ++n) {
    nodes[n].x = nodes_.x[n];
    nodes[n].y = nodes_.y[n];
    nodes[n].vx = nodes_.vx[n];
    nodes[n].vy = nodes_.vy[n];
    nodes[n].fx = nodes_.fx[n];
    nodes[n].fy = nodes_.fy[n];
  }
  net.coorLimitsUpdate();
}

bool is_at_rest(std::int32_t steps_done, const spring_step &step) {
  constexpr std::int32_t steps_before_rest = 10;
  constexpr double energy_of_rest = 0.02;
  return steps_done >= steps_before_rest && step.energy < energy_of_rest;
}

} // namespace orb
