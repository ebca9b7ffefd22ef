// Press, move, release: selecting, dragging, the rubber band, the centre of rotation.
#include <algorithm>
#include <cmath>

#include "viewer/net_view.h"

namespace orb {

namespace {

constexpr float drag_threshold = 5;      // pixels, across and down together
constexpr std::int32_t linked_ranks = 5; // how far the neighbourhood follows a drag

float apart(float x1, float y1, float x2, float y2) {
  return std::abs(x1 - x2) + std::abs(y1 - y2);
}

} // namespace

// The square is one of pixels: where the picture stretches the net, it is stretched in the net.
vertex_number net_view::hit_test(float x, float y) const {
  const float side = view_geometry::size_in_pixel * 4 / geometry_.pixels_per_unit;
  return net().closest_vertex_from_square_manhettn_distance(geometry_.coorOnNetX_get(x), geometry_.coorOnNetY_get(y),
                                                            side, geometry_.scale_y / geometry_.scale_x);
}

// Beyond a few pixels nobody meant it.
std::int32_t net_view::edge_at(float x, float y) const {
  constexpr float farthest = 4; // pixels
  if (!has_net_)
    return -1;
  float least = farthest * farthest;
  std::int32_t found = -1;
  const auto nodes = net().nodes();
  const auto edges = net().edges();
  for (std::size_t e = 1; e < edges.size(); ++e) {
    const node_elng &from = nodes[static_cast<std::size_t>(edges[e].from)];
    const node_elng &to = nodes[static_cast<std::size_t>(edges[e].to)];
    if (!from.is_coor_known || !to.is_coor_known || !picture_.edges.shows(edges[e]))
      continue;
    const float x1 = geometry_.coorOnPictX_get(from.x) - x, y1 = geometry_.coorOnPictY_get(from.y) - y;
    const float dx = geometry_.coorOnPictX_get(to.x) - x - x1, dy = geometry_.coorOnPictY_get(to.y) - y - y1;
    const float length = dx * dx + dy * dy;
    const float share = length > 0 ? std::clamp(-(x1 * dx + y1 * dy) / length, 0.f, 1.f) : 0;
    const float across = x1 + share * dx, down = y1 + share * dy;
    if (const float away = across * across + down * down; away < least) {
      least = away;
      found = static_cast<std::int32_t>(e);
    }
  }
  return found;
}

void net_view::select_nodes(const std::vector<vertex_number> &nodes) {
  if (!has_net_ || is_at_work())
    return;
  std::string step = "select=";
  for (const vertex_number n : nodes)
    step += (step.back() == '=' ? "" : ",") + std::to_string(n);
  note_step(std::move(step));
  open().UnselectAll();
  for (const vertex_number n : nodes)
    open().AddSelectedNode(n);
  selection_changed();
}

bool net_view::press(button which, float x, float y, bool shift) {
  if (which == button::second)
    return false;
  if (!has_net_ || is_at_work())
    return true;
  note_step(shift ? "shift-press=" : "press=", {x, y});
  press_x_ = last_x_ = x;
  press_y_ = last_y_ = y;
  drag_ = drag_state::pressed;
  may_drag_ = false;
  if (is_rotating_) {
    rotate_center_x_ = x;
    rotate_center_y_ = y;
    drag_ = drag_state::none;
    tell("Use arrows to rotate selected vertices");
    redraw_net();
    return true;
  }
  switch (mode_) {
  case selection_mode::vertex:
    may_drag_ = press_vertex(hit_test(x, y), shift);
    break;
  case selection_mode::group_by_link:
    may_drag_ = press_group(hit_test(x, y), shift);
    break;
  case selection_mode::cluster:
    may_drag_ = press_cluster(hit_test(x, y), shift);
    break;
  case selection_mode::all:
    may_drag_ = net().Get_nOfSelectedNodes() > 0;
    break;
  case selection_mode::group_by_rectangle:
    mode_ = selection_mode::rectangle_is_drawn;
    break;
  default:
    break;
  }
  return true;
}

bool net_view::press_vertex(vertex_number hit, bool shift) {
  if (!shift)
    open().UnselectAll();
  if (hit > 0 && !open().AddSelectedNode(hit) && shift)
    open().unselect_vertex(hit);
  const bool any = net().Get_nOfSelectedNodes() > 0;
  if (any)
    tell("Drag and drop selected vertices");
  selection_changed();
  return any && hit > 0;
}

// A miss beside a selection drags it.
bool net_view::press_group(vertex_number hit, bool shift) {
  if (hit > 0) {
    if (!shift)
      open().UnselectAll();
    number_list group;
    net().make_idNodesLinkedWithNode(hit, group);
    for (const vertex_number n : group.members())
      open().AddSelectedNode(n);
    selection_changed();
  }
  const bool any = net().Get_nOfSelectedNodes() > 0;
  if (any)
    tell("Drag and drop selected nodes");
  return any;
}

bool net_view::press_cluster(vertex_number hit, bool shift) {
  if (hit < 1)
    return false;
  if (!shift)
    open().UnselectAll();
  bool now_selected = false;
  const bool has_cluster = open().AddToSelectedAllClonesOfClusterContainingNode(hit, shift, now_selected);
  selection_changed();
  if (!has_cluster)
    return false;
  panels_.row_of_clusters = net().ClusterNumberInNetSorted(net().Get_ClusterIdByNodeId(hit));
  tell("Drag and drop selected cluster");
  return true;
}

void net_view::move(float x, float y) {
  if (drag_ == drag_state::none)
    return;
  if (apart(x, y, press_x_, press_y_) >= drag_threshold)
    drag_ = drag_state::moved;
  if (drag_ != drag_state::moved || apart(x, y, last_x_, last_y_) < drag_threshold)
    return;
  note_step("move=", {x, y});
  if (mode_ == selection_mode::rectangle_is_drawn) {
    draw_rubber_band(x, y);
  } else if (mode_ != selection_mode::group_by_rectangle && may_drag_) {
    open().MoveSelectedNodes((x - last_x_) / geometry_.scale_x, (y - last_y_) / geometry_.scale_y);
    history_.change_is_pending_set();
    // All of the net is drawn anew, and fast: erasing what moved would leave holes in what lies below it.
    picture_.moves = true;
    redraw_net();
    picture_.moves = false;
  }
  last_x_ = x;
  last_y_ = y;
}

void net_view::draw_rubber_band(float x, float y) {
  picture_.moves = true;
  redraw_net();
  picture_.moves = false;
  const surface_box band{{std::min(x, press_x_), std::min(y, press_y_)},
                         {std::abs(x - press_x_), std::abs(y - press_y_)}};
  surface_look outline;
  outline.is_filled = false;
  window_.surface.boxes(outline, std::span(&band, 1));
  if (window_.picture_changed)
    window_.picture_changed();
}

void net_view::release(float x, float y) {
  if (drag_ == drag_state::none)
    return;
  note_step("release=", {x, y});
  const bool moved = drag_ == drag_state::moved;
  drag_ = drag_state::none;
  if (mode_ == selection_mode::rectangle_is_drawn) {
    mode_ = selection_mode::group_by_rectangle;
    if (moved)
      end_rectangle(x, y);
    else
      redraw_net();
    return;
  }
  const bool of_some =
      mode_ == selection_mode::vertex || mode_ == selection_mode::group_by_link || mode_ == selection_mode::cluster;
  if (moved && may_drag_ && of_some && move_linked_)
    open().MoveLinkedGroups((last_x_ - press_x_) / geometry_.scale_x, (last_y_ - press_y_) / geometry_.scale_y,
                            linked_ranks);
  redraw_net();
}

void net_view::end_rectangle(float x, float y) {
  const auto [x1, x2] = std::minmax({geometry_.coorOnNetX_get(x), geometry_.coorOnNetX_get(press_x_)});
  const auto [y1, y2] = std::minmax({geometry_.coorOnNetY_get(y), geometry_.coorOnNetY_get(press_y_)});
  const std::int32_t n = open().select_all_clones_from_rectangle(x1, y1, x2, y2);
  if (n > 0) {
    selection_changed();
    tell("Added " + std::to_string(n) + " selected clones.");
  } else {
    redraw_net();
    tell("No new selected clones found");
  }
}

} // namespace orb
