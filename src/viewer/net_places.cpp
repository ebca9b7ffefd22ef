// Places of nodes: the box, motions, rotation, what is frozen.
#include <algorithm>
#include <cmath>

#include "viewer/class_net_elng.h"

namespace orb {

namespace {

constexpr double pi = 3.14159; // as coarse as the rest of the viewer has it: pictures come out the same

struct rotation {
  double cx, cy, degrees, sx, sy;
  void turn(node_elng &node) const {
    const double dx = (node.x - cx) * sx, dy = (node.y - cy) * sy;
    const double r = std::sqrt(dx * dx + dy * dy);
    double angle = 0;
    if (dx == 0)
      angle = dy < 0 ? -pi / 2 : pi / 2;
    else
      angle = std::atan(dy / dx) + (dx < 0 ? pi : 0);
    angle += degrees * pi / 180;
    node.x = static_cast<float>(r * std::cos(angle) / sx + cx);
    node.y = static_cast<float>(r * std::sin(angle) / sy + cy);
  }
};

} // namespace

void class_net_elng::coorLimitsUpdate() {
  box_ = {};
  if (private_n_vertices_ == 0)
    return;
  box_ = {nodes_[1].x, nodes_[1].x, nodes_[1].y, nodes_[1].y};
  if (private_n_vertices_ == 1) {
    box_ = {box_.x_min - 10, box_.x_max + 10, box_.y_min - 10, box_.y_max + 10};
    return;
  }
  for (std::size_t n = 2; n < nodes_.size(); ++n) {
    box_.x_min = std::min(box_.x_min, nodes_[n].x);
    box_.x_max = std::max(box_.x_max, nodes_[n].x);
    box_.y_min = std::min(box_.y_min, nodes_[n].y);
    box_.y_max = std::max(box_.y_max, nodes_[n].y);
  }
}

void class_net_elng::CheckIsToRotate() {
  const float h = box_.height(), w = box_.width();
  if (!(h > 4 * w) && !(h < 0.25F * w))
    return;
  // an angle in radians, taken for degrees: the net turns by less than one degree, deliberately
  RotateNodes(number_list::range(1, private_n_vertices_), (box_.x_min + box_.x_max) / 2, (box_.y_min + box_.y_max) / 2,
              static_cast<float>(pi / 4), 1, 1);
}

void class_net_elng::RotateNodes(const number_list &list, float cx, float cy, float degrees, float sx, float sy) {
  const rotation turning{cx, cy, degrees, sx, sy};
  for (const vertex_number n : list.members())
    if (is_node(n) && nodes_[static_cast<std::size_t>(n)].is_coor_known)
      turning.turn(nodes_[static_cast<std::size_t>(n)]);
}

void class_net_elng::Rotate(float cx, float cy, float degrees, float sx, float sy) {
  const rotation turning{cx, cy, degrees, sx, sy};
  for (const vertex_number n : selected_.members())
    turning.turn(nodes_[static_cast<std::size_t>(n)]);
}

void class_net_elng::resize_real(float ratio) {
  for (node_elng &node : nodes_) {
    node.x *= ratio;
    node.y *= ratio;
    node.z *= ratio;
  }
  coorLimitsUpdate();
}

void class_net_elng::MoveSelectedNodes(float dx, float dy) {
  for (const vertex_number n : selected_.members()) {
    nodes_[static_cast<std::size_t>(n)].x += dx;
    nodes_[static_cast<std::size_t>(n)].y += dy;
  }
}

void class_net_elng::MoveLinkedGroups(float dx, float dy, std::int32_t n_ranks) {
  std::vector<rank_number> rank(nodes_.size(), -1);
  for (const vertex_number n : selected_.members())
    rank[static_cast<std::size_t>(n)] = 0;
  for (rank_number r = 1; r <= n_ranks; ++r) {
    const float share = 1 - static_cast<float>(r) / static_cast<float>(n_ranks + 1);
    bool is_empty = true;
    const auto reach = [&](vertex_number from, vertex_number to) {
      if (rank[static_cast<std::size_t>(from)] != r - 1 || rank[static_cast<std::size_t>(to)] != -1)
        return;
      rank[static_cast<std::size_t>(to)] = r;
      nodes_[static_cast<std::size_t>(to)].x += share * dx;
      nodes_[static_cast<std::size_t>(to)].y += share * dy;
      is_empty = false;
    };
    for (std::size_t e = 1; e < edges_.size(); ++e) {
      reach(edges_[e].from, edges_[e].to);
      reach(edges_[e].to, edges_[e].from);
    }
    if (is_empty)
      break;
  }
}

void class_net_elng::coor_of_selected_RandomChange_get(random_source &chance, float amplitude) {
  for (const vertex_number n : selected_.members()) {
    node_elng &node = nodes_[static_cast<std::size_t>(n)];
    node.x += static_cast<float>((2 * chance.uniform() - 1) * amplitude);
    node.y += static_cast<float>((2 * chance.uniform() - 1) * amplitude);
  }
}

void class_net_elng::coor_of_selected_center_get(float &x, float &y) const {
  if (selected_.empty()) {
    x = (box_.x_min + box_.x_max) / 2;
    y = (box_.y_min + box_.y_max) / 2;
    return;
  }
  double sum_x = 0, sum_y = 0;
  for (const vertex_number n : selected_.members()) {
    sum_x += nodes_[static_cast<std::size_t>(n)].x;
    sum_y += nodes_[static_cast<std::size_t>(n)].y;
  }
  x = static_cast<float>(sum_x / selected_.count());
  y = static_cast<float>(sum_y / selected_.count());
}

void class_net_elng::getDeltaXY(float &left, float &right, float &up, float &down) const {
  float x = 0, y = 0;
  coor_of_selected_center_get(x, y);
  left = x - box_.x_min;
  right = box_.x_max - x;
  up = y - box_.y_min;
  down = box_.y_max - y;
}

void class_net_elng::FrozeAllNodes() {
  for (node_elng &node : nodes_)
    node.is_frozen = true;
  unfrozen_make();
}

void class_net_elng::SelectedNodesCoorFroze() {
  for (const vertex_number n : selected_.members())
    nodes_[static_cast<std::size_t>(n)].is_frozen = true;
  unfrozen_make();
}

void class_net_elng::SelectedNodesCoorUnFroze() {
  for (const vertex_number n : selected_.members())
    nodes_[static_cast<std::size_t>(n)].is_frozen = false;
  unfrozen_make();
}

} // namespace orb
