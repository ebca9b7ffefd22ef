// What is selected, and what is done with it.
#include <cmath>
#include <limits>

#include "viewer/class_net_elng.h"

namespace orb {

bool class_net_elng::edge_is_between_selected(const edge_elng &edge) const {
  return nodes_[static_cast<std::size_t>(edge.from)].is_selected &&
         nodes_[static_cast<std::size_t>(edge.to)].is_selected;
}

bool class_net_elng::GetNodeBySelectedIndex(std::int32_t i, vertex_number &n) const {
  if (i < 1 || i > selected_.count())
    return false;
  n = selected_(i);
  return true;
}

bool class_net_elng::AddSelectedNode(vertex_number n) {
  if (!is_node(n) || nodes_[static_cast<std::size_t>(n)].is_selected)
    return false;
  nodes_[static_cast<std::size_t>(n)].is_selected = true;
  selected_.add(n);
  if (const std::int32_t cluster = Get_ClusterIdByNodeId(n); cluster > 0)
    clusters_[static_cast<std::size_t>(cluster)].is_selected = true;
  return true;
}

int class_net_elng::unselect_vertex(vertex_number n) {
  if (selected_.empty())
    return 2;
  if (!is_node(n) || !nodes_[static_cast<std::size_t>(n)].is_selected)
    return 3;
  nodes_[static_cast<std::size_t>(n)].is_selected = false;
  number_list rest;
  rest.reserve(selected_.count());
  for (const vertex_number other : selected_.members())
    if (other != n)
      rest.add(other);
  selected_ = std::move(rest);
  make_SelectedClusters();
  return 0;
}

void class_net_elng::UnselectAll() {
  for (node_elng &node : nodes_)
    node.is_selected = false;
  selected_.clear();
  make_SelectedClusters();
}

void class_net_elng::SelectAll() {
  for (std::size_t n = 1; n < nodes_.size(); ++n)
    nodes_[n].is_selected = true;
  lists_make();
}

std::int32_t class_net_elng::select_all_clones_from_rectangle(float x1, float y1, float x2, float y2) {
  std::int32_t n_added = 0;
  for (vertex_number n = 1; n <= private_n_vertices_; ++n) {
    const node_elng &node = nodes_[static_cast<std::size_t>(n)];
    if (x1 < node.x && node.x < x2 && y1 < node.y && node.y < y2)
      n_added += AddSelectedNode(n) ? 1 : 0;
  }
  return n_added;
}

vertex_number class_net_elng::closest_vertex_from_square_manhettn_distance(float x, float y, float side,
                                                                           float y_scale) const {
  vertex_number closest = -1;
  float smallest = std::numeric_limits<float>::infinity();
  for (vertex_number n = 1; n <= private_n_vertices_; ++n) {
    const node_elng &node = nodes_[static_cast<std::size_t>(n)];
    const float across = std::abs(node.x - x), down = std::abs(node.y - y) * y_scale;
    if (!(across <= side / 2 && down <= side / 2))
      continue;
    const float distance = across + down;
    if (distance < smallest) {
      smallest = distance;
      closest = n;
    }
  }
  return closest;
}

void class_net_elng::make_idNodesLinkedWithNode(vertex_number n, number_list &list) const {
  list.clear();
  if (!is_node(n))
    return;
  // neighbours of all nodes in one array, in the order of the edges
  std::vector<std::size_t> start(nodes_.size() + 2, 0);
  for (std::size_t e = 1; e < edges_.size(); ++e) {
    ++start[static_cast<std::size_t>(edges_[e].from) + 2];
    ++start[static_cast<std::size_t>(edges_[e].to) + 2];
  }
  for (std::size_t i = 1; i < start.size(); ++i)
    start[i] += start[i - 1];
  std::vector<vertex_number> neighbours(start.back());
  for (std::size_t e = 1; e < edges_.size(); ++e) {
    neighbours[start[static_cast<std::size_t>(edges_[e].from) + 1]++] = edges_[e].to;
    neighbours[start[static_cast<std::size_t>(edges_[e].to) + 1]++] = edges_[e].from;
  }
  std::vector<bool> reached(nodes_.size(), false);
  reached[static_cast<std::size_t>(n)] = true;
  list.add(n);
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    const auto at = static_cast<std::size_t>(list(i));
    for (std::size_t k = start[at]; k < start[at + 1]; ++k) {
      if (reached[static_cast<std::size_t>(neighbours[k])])
        continue;
      reached[static_cast<std::size_t>(neighbours[k])] = true;
      list.add(neighbours[k]);
    }
  }
}

void class_net_elng::SetColorSelectedNodes(process_frame &frame, colour_value color, bool is_border) {
  const palette_entry &nearest = palette_colour(nearest_palette_color(color));
  if (nearest.value != color) {
    question standard;
    standard.text =
        "Selected color is not standard for Pajek format!\r\nUse color <" + std::string(nearest.name) + ">?";
    standard.by_default = answer::yes;
    standard.explanation = "A file holds names of colours only. Yes takes the colour of that name; no keeps the chosen "
                           "one as long as the net is open.";
    if (frame.yes(standard))
      color = nearest.value;
  }
  for (const vertex_number n : selected_.members()) {
    node_elng &node = nodes_[static_cast<std::size_t>(n)];
    (is_border ? node.bc : node.ic) = color;
    (is_border ? node.bc_name : node.ic_name) = nearest.name;
  }
}

void class_net_elng::SetShapeSelectedNodes(std::int16_t shape) {
  for (const vertex_number n : selected_.members())
    nodes_[static_cast<std::size_t>(n)].shape = shape;
}

bool class_net_elng::DeleteSelectedNodes(const net_sources &sources) {
  if (selected_.empty() || selected_.count() == private_n_vertices_)
    return false;
  std::vector<vertex_number> new_number(nodes_.size(), -1);
  std::size_t kept = 1;
  for (std::size_t n = 1; n < nodes_.size(); ++n) {
    if (nodes_[n].is_selected)
      continue;
    new_number[n] = static_cast<vertex_number>(kept);
    if (kept != n)
      nodes_[kept] = std::move(nodes_[n]);
    ++kept;
  }
  nodes_.resize(kept);
  private_n_vertices_ = static_cast<std::int32_t>(kept) - 1;
  kept = 1;
  for (std::size_t e = 1; e < edges_.size(); ++e) {
    const vertex_number from = new_number[static_cast<std::size_t>(edges_[e].from)];
    const vertex_number to = new_number[static_cast<std::size_t>(edges_[e].to)];
    if (from < 0 || to < 0)
      continue;
    if (kept != e)
      edges_[kept] = std::move(edges_[e]);
    edges_[kept].from = from;
    edges_[kept].to = to;
    ++kept;
  }
  edges_.resize(kept);
  n_edges_ = static_cast<std::int32_t>(kept) - 1;
  lists_make();
  make_cluster_info(sources);
  return true;
}

std::int32_t class_net_elng::DeleteEdgesBetweenSelectedNodes() {
  std::size_t kept = 1;
  for (std::size_t e = 1; e < edges_.size(); ++e) {
    if (edge_is_between_selected(edges_[e]))
      continue;
    if (kept != e)
      edges_[kept] = std::move(edges_[e]);
    ++kept;
  }
  const auto n_gone = static_cast<std::int32_t>(edges_.size() - kept);
  edges_.resize(kept);
  n_edges_ -= n_gone;
  return n_gone;
}

} // namespace orb
