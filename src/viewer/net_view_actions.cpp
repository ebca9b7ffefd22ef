// What the entries of the Selection, Options and View menus and the buttons do.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "frame/files.h"
#include "frame/numbers.h"
#include "viewer/net_view.h"

namespace orb {

namespace {

std::optional<colour_value> colour_of_text(std::string_view text) {
  if (const auto named = colour_of_name(text))
    return named;
  colour_value colour = 0;
  for (int part = 0, weight = 1; part < 3; ++part, weight *= 256) {
    const std::size_t end = part < 2 ? text.find(',') : text.size();
    std::int32_t value = 0;
    if (end == std::string_view::npos || !whole_number_parse(text.substr(0, end), value) || value < 0 || value > 255)
      return std::nullopt;
    colour += value * weight;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return colour;
}

std::string colour_text(colour_value colour) {
  return std::to_string(colour & 0xFF) + "," + std::to_string(colour >> 8 & 0xFF) + "," +
         std::to_string(colour >> 16 & 0xFF);
}

} // namespace

// ---- selection -----------------------------------------------------------------------------------------------------

void net_view::mode_set(selection_mode mode) {
  mode_ = mode;
  is_rotating_ = false;
  tell({});
}

void net_view::select_all() {
  mode_set(selection_mode::all);
  open().SelectAll();
  selection_changed();
}

void net_view::select_names(bool only, const std::string &text) {
  const std::string names = text.empty() ? panels_.TextSelVertices : text;
  if (only)
    open().UnselectAll();
  open().AddToSelectedNodes_list_of_clones_from_text(sources_, names);
  selection_changed();
}

void net_view::select_file(bool only) {
  if (only)
    open().UnselectAll();
  open().AddToSelectedNodes_list_of_clones_from_file(sources_);
  selection_changed();
}

void net_view::show_captions(bool of_edges, bool only) {
  history_.store_pending();
  if (only && of_edges)
    open().Edges_isShowCaptionWhenAllAreNotShown_AllFalse();
  if (only && !of_edges)
    open().Nodes_isShowCaptionWhenAllAreNotShown_AllFalse();
  if (of_edges)
    open().Edges_isShowCaptionWhenAllAreNotShown_SelectedTrue();
  else
    open().Nodes_isShowCaptionWhenAllAreNotShown_SelectedTrue();
  snapshot();
}

void net_view::random_shifts() {
  constexpr float amplitude = 10;
  if (!needs_selection())
    return;
  history_.store_pending();
  open().coor_of_selected_RandomChange_get(sources_.chance, amplitude);
  open().coorLimitsUpdate();
  snapshot();
}

void net_view::freeze_others_and_run() {
  if (!needs_selection())
    return;
  history_.store_pending();
  open().FrozeAllNodes();
  open().SelectedNodesCoorUnFroze();
  run_optimization();
}

void net_view::remove_selected() {
  const std::int32_t n = net().Get_nOfSelectedNodes(), n_nodes = net().n_vertices_get();
  const char *refusal = n_nodes == 0   ? "No nodes!"
                        : n == 0       ? "No selected nodes!"
                        : n > n_nodes  ? "Problem with selected nodes!"
                        : n == n_nodes ? "Can't delete all nodes!"
                                       : nullptr;
  if (refusal != nullptr) {
    sources_.frame.message(refusal);
    return;
  }
  history_.store_pending();
  open().DeleteSelectedNodes(sources_);
  open().coorLimitsUpdate();
  snapshot();
  tell(std::to_string(n) + " nodes deleted.");
}

// ---- options -------------------------------------------------------------------------------------------------------

// Without a dialog of a window the frame asks for a name of the palette, or red,green,blue.
std::optional<colour_value> net_view::colour_asked(const std::string &value, colour_value now) {
  if (value.empty() && window_.colour_dialog) {
    const std::optional<colour_value> chosen = window_.colour_dialog(now);
    if (chosen)
      step_value_set(colour_text(*chosen));
    else
      step_is_void();
    return chosen;
  }
  const std::string text =
      !value.empty() ? value : sources_.frame.input({"Color (a name, or red,green,blue)", "Color", {}});
  step_value_set(text);
  const std::optional<colour_value> colour = colour_of_text(text);
  if (!colour && !text.empty())
    sources_.frame.message("No such color: " + text);
  return colour;
}

void net_view::background_set(const std::string &value) {
  if (const auto colour = colour_asked(value, picture_.background)) {
    picture_.background = *colour;
    redraw_net();
  }
}

void net_view::colour_of_selected(bool is_border, const std::string &value) {
  if (!needs_selection("No nodes were selected!"))
    return;
  vertex_number first = 0;
  net().GetNodeBySelectedIndex(1, first);
  const node_elng &node = net().nodes()[static_cast<std::size_t>(first)];
  const auto colour = colour_asked(value, is_border ? node.bc : node.ic);
  if (!colour)
    return;
  history_.store_pending();
  open().SetColorSelectedNodes(sources_.frame, *colour, is_border);
  snapshot();
}

void net_view::shape_of_selected(const std::string &value) {
  if (!needs_selection("No clones were selected!"))
    return;
  history_.store_pending();
  open().SetShapeSelectedNodes(shape_from_name(value));
  snapshot();
}

void net_view::set_stiffness(const std::string &value) {
  step_value_set(ask_for_stiffness(sources_.frame, springs_, value));
}

void net_view::real_resize(const std::string &value) {
  process_frame &frame = sources_.frame;
  double ratio = 0;
  const std::string text = value.empty() ? frame.input({"Scaling ratio:", "", "1.0"}) : value;
  if (text.empty())
    return step_is_void();
  step_value_set(text);
  if (!number_parse(text, ratio) || !std::isfinite(ratio)) {
    frame.message("Scaling ratio should be numerical!");
    return;
  }
  if (ratio <= 0) {
    frame.message("Scaling ratio should be > 0");
    return;
  }
  history_.store_pending();
  open().resize_real(static_cast<float>(ratio));
  snapshot();
}

void net_view::bound_set(bool upper, const std::string &value) {
  std::string &caption = upper ? picture_.edges.caption_of_smaller : picture_.edges.caption_of_bigger;
  bool &is_active = upper ? picture_.edges.below : picture_.edges.above;
  const std::string text =
      !value.empty()
          ? value
          : sources_.frame.input({upper ? "Upper border" : "Lower border", upper ? "<=" : "=>", caption.substr(2)});
  double bound = 0;
  if (!number_parse(text, bound)) { // cancelled: the bound is off
    is_active = false;
    step_value_set("off");
  } else {
    step_value_set(text);
    caption = caption.substr(0, 2) + text;
    is_active = true;
    picture_.edges.all = picture_.edges.none = false;
  }
  redraw_net();
}

// ---- clusters of a table -------------------------------------------------------------------------------------------

void net_view::open_cluster_table() {
  if (!cluster_table_.readClusteringFile(sources_.frame, sources_.chance))
    return;
  open().cluster_looks_from_table(sources_);
  redraw_after_change();
}

void net_view::cluster_column_set(const std::string &value) {
  std::int32_t column = 0;
  if (!whole_number_parse(value, column) ||
      !cluster_table_.readClusteringFile_newColSelected(sources_.frame, column, sources_.chance))
    return;
  open().cluster_looks_from_table(sources_);
  redraw_after_change();
}

void net_view::caption_column_toggle(const std::string &value) {
  std::int32_t column = 0;
  if (!whole_number_parse(value, column) || column < 1 || column > cluster_table_.n_columns_get())
    return;
  cluster_table_.column_is_shown_set(column, !cluster_table_.column_is_shown_get(column));
  redraw_net();
}

// ---- the picture and rotation --------------------------------------------------------------------------------------

void net_view::picture_move(std::int32_t which) {
  constexpr float step = 100;
  switch (which) {
  case 0:
    open().coorLimitsUpdate(); // nodes may have been dragged out of the box
    geometry_.fit_at_zoom_1(window_.surface.size(), net().box());
    break;
  case 1:
    geometry_.shift(-step, 0);
    break;
  case 2:
    geometry_.shift(0, step);
    break;
  case 3:
    geometry_.shift(step, 0);
    break;
  case 4:
    geometry_.shift(0, -step);
    break;
  default:
    geometry_.zoom_step(which == 5 ? 1 : -1, net().box());
  }
  redraw_net();
}

void net_view::rotation_activate() {
  constexpr float share_of_picture = 1.0f / 30;
  if (net().Get_nOfSelectedNodes() == 0) {
    tell("Select vertices to rotate");
    return;
  }
  is_rotating_ = true;
  mode_ = selection_mode::set_center;
  rotate_center_x_ = geometry_.picture.width * share_of_picture;
  rotate_center_y_ = geometry_.picture.height * share_of_picture;
  tell("Select center of rotation and rotate selected vertices by arrows");
  redraw_net();
}

void net_view::rotation_cancel() {
  is_rotating_ = false;
  rotate_center_x_ = rotate_center_y_ = -1;
  mode_set(selection_mode::vertex);
  redraw_net();
}

void net_view::rotate(float sign) {
  double degrees = 0;
  if (!is_rotating_ || rotate_center_x_ < 0 || !number_parse(panels_.TxtAngle, degrees) || !std::isfinite(degrees))
    return;
  open().Rotate(geometry_.coorOnNetX_get(rotate_center_x_), geometry_.coorOnNetY_get(rotate_center_y_),
                sign * static_cast<float>(degrees), geometry_.scale_x, geometry_.scale_y);
  history_.change_is_pending_set();
  redraw_net();
}

} // namespace orb
