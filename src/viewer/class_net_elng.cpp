// The document as a whole, and its records.
#include "viewer/class_net_elng.h"

#include <utility>

#include "viewer/class_net_elng_clust.h"

namespace orb {

void class_net_elng::copy_parameters_from(const class_net_elng &other) {
  net_name_ = other.net_name_;
  box_ = other.box_;
}

void class_net_elng::copy_all_from(const class_net_elng &other) {
  copy_parameters_from(other);
  private_n_vertices_ = other.private_n_vertices_;
  coor_are_known_ = other.coor_are_known_;
  n_edges_ = other.n_edges_;
  net_ = other.net_;
  n_clusters_ = other.n_clusters_;
  nodes_ = other.nodes_;
  selected_ = other.selected_;
  unfrozen_ = other.unfrozen_;
  edges_ = other.edges_;
  clusters_ = other.clusters_;
}

void class_net_elng::contents_set(std::string name, std::vector<node_elng> nodes, std::vector<edge_elng> edges,
                                  bool coor_are_known) {
  net_name_ = std::move(name);
  nodes_ = std::move(nodes);
  edges_ = std::move(edges);
  private_n_vertices_ = static_cast<std::int32_t>(nodes_.size()) - 1;
  n_edges_ = static_cast<std::int32_t>(edges_.size()) - 1;
  coor_are_known_ = coor_are_known;
  clusters_.resize(1);
  n_clusters_ = -1;
  lists_make();
  coorLimitsUpdate();
}

void class_net_elng::lists_make() {
  selected_.clear();
  for (vertex_number n = 1; n <= private_n_vertices_; ++n)
    if (nodes_[static_cast<std::size_t>(n)].is_selected)
      selected_.add(n);
  unfrozen_make();
  make_SelectedClusters();
}

void class_net_elng::unfrozen_make() {
  unfrozen_.clear();
  for (vertex_number n = 1; n <= private_n_vertices_; ++n)
    if (!nodes_[static_cast<std::size_t>(n)].is_frozen)
      unfrozen_.add(n);
}

bool class_net_elng::node_get(vertex_number n, node_elng &record) const {
  if (!is_node(n))
    return false;
  record = nodes_[static_cast<std::size_t>(n)];
  return true;
}

bool class_net_elng::node_set(vertex_number n, const node_elng &record) {
  if (!is_node(n))
    return false;
  node_elng &node = nodes_[static_cast<std::size_t>(n)];
  const bool lists_change = node.is_selected != record.is_selected || node.is_frozen != record.is_frozen;
  node = record;
  if (lists_change)
    lists_make();
  return true;
}

bool class_net_elng::edge_get(std::int32_t n, edge_elng &record) const {
  if (!is_edge(n))
    return false;
  record = edges_[static_cast<std::size_t>(n)];
  return true;
}

bool class_net_elng::edge_set(std::int32_t n, const edge_elng &record) {
  if (!is_edge(n) || !is_node(record.from) || !is_node(record.to))
    return false;
  edges_[static_cast<std::size_t>(n)] = record;
  return true;
}

bool class_net_elng::NodeDraw_get(vertex_number n, node_drawing &drawing, const class_net_elng_clust *table) const {
  if (!is_node(n) || !nodes_[static_cast<std::size_t>(n)].is_coor_known)
    return false;
  const node_elng &node = nodes_[static_cast<std::size_t>(n)];
  drawing.clone_id = node.clone_id;
  if (table != nullptr && table->is_loaded())
    drawing.caption = table->sCaptionForNode(node.caption);
  else
    drawing.caption = node.caption;
  drawing.shape = node.shape;
  drawing.size = node.size;
  drawing.x = node.x;
  drawing.y = node.y;
  drawing.ic = node.ic;
  drawing.bc = node.bc;
  drawing.is_selected = node.is_selected;
  drawing.node_spare_flag = node.node_spare_flag;
  drawing.show_caption = node.show_caption;
  return true;
}

bool class_net_elng::NodeDrawMark_get(vertex_number n, node_drawing &drawing) const {
  if (!is_node(n))
    return false;
  const node_elng &node = nodes_[static_cast<std::size_t>(n)];
  if (!node.is_coor_known || !node.is_marked)
    return false;
  drawing = {node.clone_id, node.mark_caption, node.mark_shape,  node.mark_size,       node.x,           node.y,
             node.mark_ic,  node.mark_bc,      node.is_selected, node.node_spare_flag, node.show_caption};
  return true;
}

bool class_net_elng::EdgeDraw_get(std::int32_t n, edge_drawing &drawing) const {
  if (!is_edge(n))
    return false;
  const edge_elng &edge = edges_[static_cast<std::size_t>(n)];
  drawing = {edge.from,  edge.to,      edge.value,           edge.caption, edge.c,
             edge.width, edge.pattern, edge.edge_spare_flag, edge.is_arc,  edge.show_caption};
  return true;
}

bool class_net_elng::EdgeDrawMark_get(std::int32_t n, edge_drawing &drawing) const {
  if (!EdgeDraw_get(n, drawing) || !edges_[static_cast<std::size_t>(n)].is_marked)
    return false;
  drawing.caption = edges_[static_cast<std::size_t>(n)].mark_caption;
  drawing.c = edges_[static_cast<std::size_t>(n)].mark_c;
  return true;
}

std::string class_net_elng::EdgeCaptionMark_get(std::int32_t n) const {
  return is_edge(n) && edges_[static_cast<std::size_t>(n)].is_marked ? edges_[static_cast<std::size_t>(n)].mark_caption
                                                                     : std::string();
}

bool class_net_elng::node_coor_get(vertex_number n, float &x, float &y) const {
  if (!is_node(n) || !nodes_[static_cast<std::size_t>(n)].is_coor_known)
    return false;
  x = nodes_[static_cast<std::size_t>(n)].x;
  y = nodes_[static_cast<std::size_t>(n)].y;
  return true;
}

void class_net_elng::Nodes_isShowCaptionWhenAllAreNotShown_AllFalse() {
  for (node_elng &node : nodes_)
    node.show_caption = false;
}

void class_net_elng::Nodes_isShowCaptionWhenAllAreNotShown_SelectedTrue() {
  for (const vertex_number n : selected_.members())
    nodes_[static_cast<std::size_t>(n)].show_caption = true;
}

void class_net_elng::Edges_isShowCaptionWhenAllAreNotShown_AllFalse() {
  for (edge_elng &edge : edges_)
    edge.show_caption = false;
}

void class_net_elng::Edges_isShowCaptionWhenAllAreNotShown_SelectedTrue() {
  for (std::size_t e = 1; e < edges_.size(); ++e)
    edges_[e].show_caption = edges_[e].show_caption || edge_is_between_selected(edges_[e]);
}

} // namespace orb
