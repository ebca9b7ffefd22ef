// The state of a view, its picture, its panels and its files; events and actions stand in the files beside this one.
#include "viewer/net_view.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <memory>

#include "frame/files.h"
#include "frame/numbers.h"
#include "viewer/net_file.h"
#include "viewer/net_view_menu.h"

namespace orb {

namespace {

constexpr const char *filter_to_open = "Net files |*.net|Txt files |*.txt|All files|*.*";
constexpr const char *filter_to_save = "Net files |*.net|All files|*.*";

} // namespace

net_view::net_view(const net_sources &sources, view_window window, int threads)
    : sources_(sources), window_(std::move(window)), threads_(threads) {
  sources_.cluster_table = &cluster_table_;
  first_size_ = window_.surface.size();
  geometry_.fit(first_size_, net().box());
}

void net_view::sources_set(const net_sources &sources) {
  std::destroy_at(&sources_);
  std::construct_at(&sources_, sources);
  sources_.cluster_table = &cluster_table_;
  history_.for_each([this](class_net_elng &net) { net.clones_of_library_set(sources_); });
  redraw_after_change();
}

void net_view::note_step(std::string step) {
  steps_.push_back(std::move(step));
}

void net_view::note_step(const char *word, std::initializer_list<float> numbers) {
  std::string step(word);
  for (const float number : numbers)
    step += (step.back() == '=' ? "" : ",") + number_text_shortest(number);
  note_step(std::move(step));
}

void net_view::step_value_set(const std::string &value) {
  if (step_in_hand_ < 1 || step_in_hand_ > steps_.size())
    return;
  std::string &step = steps_[step_in_hand_ - 1];
  step = step.substr(0, step.find('=')) + "=" + value;
}

std::string net_view::label_of_mode() const {
  const auto label = [this] {
    switch (mode_) {
    case selection_mode::group_by_link:
      return "Group by link";
    case selection_mode::cluster:
      return "Cluster";
    case selection_mode::all:
      return "All vertices of net";
    case selection_mode::group_by_rectangle:
    case selection_mode::rectangle_is_drawn:
      return "Group by rectangle";
    case selection_mode::set_center:
      return "Set Center";
    default:
      return "Vertex";
    }
  };
  return std::string("Selection = ") + label();
}

bool net_view::shows_nothing() const {
  return std::none_of(net().nodes().begin() + 1, net().nodes().end(),
                      [](const node_elng &node) { return node.is_coor_known; });
}

std::string net_view::text_of_selected() const {
  return "N_selected = " + std::to_string(net().Get_nOfSelectedNodes());
}

void net_view::tell(const std::string &text) {
  panels_.message = text;
  if (window_.panels_changed)
    window_.panels_changed();
}

// ---- the picture ---------------------------------------------------------------------------------------------------

void net_view::redraw_net() {
  const auto nodes = net().nodes();
  shown_selected_.resize(nodes.size());
  for (std::size_t n = 1; n < nodes.size(); ++n)
    shown_selected_[n] = nodes[n].is_selected ? 1 : 0;
  const paint_faults faults = painter_.redraw_net(net(), geometry_, picture_, &cluster_table_, window_.surface);
  if (is_rotating_ && rotate_center_x_ >= 0) {
    constexpr float arm = 8;
    const float x = rotate_center_x_, y = rotate_center_y_;
    const surface_line cross[]{{{x - arm, y}, {x + arm, y}}, {{x, y - arm}, {x, y + arm}}};
    window_.surface.lines({}, cross);
  }
  if (faults.n_vertices > 0)
    sources_.frame.alarm("Vertex #" + std::to_string(faults.first_vertex) + " was not drawn properly!" +
                         (faults.n_vertices > 1 ? fmt::format("\nand {} others", faults.n_vertices - 1) : ""));
  if (faults.n_edges > 0)
    sources_.frame.alarm("Edge #" + std::to_string(faults.first_edge) + " was not drawn properly!" +
                         (faults.n_edges > 1 ? fmt::format("\nand {} others", faults.n_edges - 1) : ""));
  if (window_.picture_changed)
    window_.picture_changed();
  else
    sources_.frame.yield();
}

void net_view::resized() {
  const surface_size size = window_.surface.size();
  open().coorLimitsUpdate();         // nodes may have been dragged out of the box
  if (!has_net_ && steps_.empty()) { // nothing has been done yet: it began with this size
    first_size_ = size;
    geometry_.fit(size, net().box());
  } else if (geometry_.resize(size, net().box()))
    note_step("size=", {size.width, size.height});
  redraw_net();
}

void net_view::resize_picture(const surface_size &size) {
  if (!window_.resize || !(size.width > 0) || !(size.height > 0))
    return;
  window_.resize(size);
  resized();
}

// Only nodes that came to the selection or left it, unless they are many.
void net_view::redraw_selection() {
  const auto nodes = net().nodes();
  std::vector<vertex_number> changed;
  for (std::size_t n = 1; n < nodes.size() && n < shown_selected_.size(); ++n)
    if ((shown_selected_[n] != 0) != nodes[n].is_selected)
      changed.push_back(static_cast<vertex_number>(n));
  if (shown_selected_.size() != nodes.size() || changed.size() > nodes.size() / 8 || is_rotating_) {
    redraw_net();
    return;
  }
  for (const vertex_number n : changed)
    shown_selected_[static_cast<std::size_t>(n)] ^= 1;
  painter_.redraw_nodes(net(), geometry_, picture_, &cluster_table_, window_.surface, changed);
  if (window_.picture_changed)
    window_.picture_changed();
}

void net_view::zoom_at(std::int32_t steps, float x, float y) {
  if (!geometry_.zoom_step_at(steps, x, y, net().box()))
    return;
  note_step("zoom=", {static_cast<float>(steps), x, y});
  redraw_net();
}

// Each distance counts from where the picture was taken, so that the way of the hand leaves no roundings behind.
void net_view::pan(float dx, float dy, bool goes_on) {
  if (!std::isfinite(dx) || !std::isfinite(dy))
    return;
  if (goes_on && !steps_.empty() && steps_.back().starts_with("pan="))
    steps_.pop_back();
  else
    held_ = geometry_;
  geometry_ = held_;
  geometry_.shift(dx, dy);
  note_step("pan=", {dx, dy});
  picture_.moves = goes_on;
  redraw_net();
  picture_.moves = false;
}

void net_view::bring_into_view(vertex_number node) {
  float x = 0, y = 0;
  if (!net().node_coor_get(node, x, y))
    return;
  const surface_size size = geometry_.picture;
  const float at_x = geometry_.coorOnPictX_get(x), at_y = geometry_.coorOnPictY_get(y);
  const float rim_x = size.width / 20, rim_y = size.height / 20;
  if (at_x < rim_x || at_y < rim_y || at_x > size.width - rim_x || at_y > size.height - rim_y)
    pan(std::round(size.width / 2 - at_x), std::round(size.height / 2 - at_y));
}

void net_view::tables_refresh() {
  std::vector<std::string> lines;
  net().textSelectedNodes_get(sources_, lines, false);
  panels_.TextSelVertices.clear();
  for (const std::string &line : lines)
    panels_.TextSelVertices += line + "\n";
  open().make_SelectedClusters();
  open().textClustersSort_get(panels_.TxtClustersCapture, panels_.TxtClusters);
  if (window_.panels_changed)
    window_.panels_changed();
}

void net_view::selection_changed() {
  history_.change_is_pending_set(false);
  tables_refresh();
  redraw_selection();
}

void net_view::snapshot() {
  history_.content_is_new();
  history_.store_net_snapshot();
  redraw_after_change();
}

void net_view::redraw_after_change() {
  geometry_.box_set(net().box());
  tables_refresh();
  redraw_net();
}

bool net_view::needs_selection(const char *words) {
  if (net().Get_nOfSelectedNodes() > 0)
    return true;
  sources_.frame.message(words);
  return false;
}

// ---- documents -----------------------------------------------------------------------------------------------------

void net_view::reset_for(const std::string &from) {
  has_net_ = true;
  mode_ = selection_mode::vertex;
  drag_ = drag_state::none;
  process_ = view_process::idle;
  is_rotating_ = false;
  rotate_center_x_ = rotate_center_y_ = -1;
  springs_ = {};
  panels_.txtFrom = from;
  geometry_.fit_at_zoom_1(window_.surface.size(), net().box());
}

bool net_view::ShowNetFile(const std::filesystem::path &file) {
  tell("Read file '" + file.string() + "'");
  bool all_or_none_have_coordinates = true;
  if (!open().ReadNetFile(sources_, file, true, all_or_none_have_coordinates))
    return false;
  open().make_cluster_info(sources_);
  reset_for(file.filename().string());
  tables_refresh();
  if (all_or_none_have_coordinates)
    redraw_net();
  else
    run_optimization();
  history_.begin_here();
  return true;
}

void net_view::show_net(class_net_elng net, const std::string &from) {
  history_.reset();
  open() = std::move(net);
  open().make_cluster_info(sources_);
  reset_for(from);
  tables_refresh();
  redraw_net();
  history_.begin_here();
}

void net_view::new_net() {
  question restart;
  restart.text = "New net drawing will be restarted without saving? ";
  restart.choice = answer_choice::ok_cancel;
  restart.by_default = restart.to_go_on = answer::yes;
  if (net().n_vertices_get() > 0 && !sources_.frame.yes(restart))
    return step_is_void();
  history_.reset();
  cluster_table_.start0();
  reset_for({});
  history_.clean_set();
  has_net_ = false;
  panels_ = {};
  redraw_after_change();
}

void net_view::open_file() {
  sources_.frame.file_filter_set(filter_to_open);
  const std::filesystem::path file = sources_.frame.open_file_dialog("Open net file...");
  if (file.empty())
    return step_is_void();
  step_value_set(file.string());
  ShowNetFile(file);
}

bool net_view::save(bool all_nodes, bool remove_saved, std::filesystem::path file) {
  process_frame &frame = sources_.frame;
  if (file.empty()) {
    const std::string name = (net().net_name_get().empty() ? "Net1" : net().net_name_get()) + ".net";
    file = frame.save_file_dialog_checked("Save net", (sources_.results_folder / name).string(), filter_to_save);
    if (file.empty()) {
      step_is_void();
      return false;
    }
    step_value_set(file.string());
  }
  if (window_.net_is_to_be_written)
    window_.net_is_to_be_written(file);
  net_saving wanted;
  wanted.net_name = net().net_name_get();
  wanted.all_nodes = all_nodes;
  wanted.edge_is_shown = [this](const edge_elng &edge) { return picture_.edges.shows(edge); };
  if (remove_saved)
    wanted.remove_saved = [this] { remove_selected(); };
  if (!net().SaveNet(frame, file, wanted))
    return false;
  panels_.txtTo = file.filename().string();
  if (all_nodes)
    history_.clean_set();
  if (window_.file_written)
    window_.file_written(all_nodes ? "mnuSave" : remove_saved ? "mnuSaveSubNetRm" : "mnuSaveSubNet", file);
  tell("File " + file.string() + " saved");
  return true;
}

bool net_view::save_clustering(std::filesystem::path file) {
  if (file.empty())
    file =
        sources_.frame.save_file_dialog_checked("Save clustering", "clustering.txt", "Txt files |*.txt|All files|*.*");
  if (file.empty())
    return false;
  const auto is_in_picture = [this](const node_elng &node) {
    const float x = geometry_.coorOnPictX_get(node.x), y = geometry_.coorOnPictY_get(node.y);
    return x >= 0 && y >= 0 && x <= geometry_.picture.width && y <= geometry_.picture.height;
  };
  class_net visible;
  std::vector<std::string> names;
  net().SaveNet__visible(
      is_in_picture, [this](const edge_elng &edge) { return picture_.edges.shows(edge); }, visible, names);
  result_file out(file);
  out.line("node_caption\tcluster_name");
  for (std::size_t n = 1; n < names.size(); ++n)
    out.line(names[n] + "\t" + cluster_table_.sClusterName_forNodeName_get(names[n]));
  out.commit();
  if (window_.file_written)
    window_.file_written("mnuSaveClustering", file);
  tell("File " + file.string() + " saved");
  return true;
}

bool net_view::close_requested() {
  question quit;
  quit.title = "Quit";
  quit.text = "Are you sure you want to quit?";
  quit.by_default = quit.to_go_on = answer::yes;
  const bool runs = is_at_work();
  if (runs)
    quit.text = "Optimization of nodes position is running!.\nAre you sure you want to stop it and quit?";
  if (!sources_.frame.yes(quit))
    return false;
  if (runs)
    process_ = view_process::stop_asked; // the loop sees it at the end of its step
  wants_to_close_ = true;
  return !runs;
}

// The document on which a snapshot was made stands in the ring twice: a step from the one to the other would show
// nothing, and one more is made.
static bool is_same(const class_net_elng &a, const class_net_elng &b) {
  return std::ranges::equal(a.nodes(), b.nodes()) && std::ranges::equal(a.edges(), b.edges());
}

void net_view::undo() {
  const bool was_pending = history_.is_change_pending();
  const class_net_elng *shown = &net();
  if (!history_.undo())
    return;
  if (!was_pending && is_same(*shown, net()))
    history_.undo();
  redraw_after_change();
}

void net_view::redo() {
  const class_net_elng *shown = &net();
  if (!history_.redo())
    return;
  if (is_same(*shown, net()))
    history_.redo();
  redraw_after_change();
}

// ---- controls ------------------------------------------------------------------------------------------------------

bool net_view::choose(std::string_view control, const std::string &value) {
  const view_menu_item *item = view_menu_item_by_control(control);
  if (item == nullptr || !is_enabled(*item, *this))
    return false;
  const std::size_t outer = step_in_hand_;
  const bool outer_counts = step_counts_;
  const auto end_step = [&] {
    if (!step_counts_ && step_in_hand_ > 0)
      steps_.erase(steps_.begin() + static_cast<std::ptrdiff_t>(step_in_hand_) - 1);
    step_in_hand_ = outer;
    step_counts_ = outer_counts;
  };
  step_in_hand_ = 0;
  if (!item->leaves_net && process_ != view_process::running) { // a press on "Stop process" has its own step
    note_step(std::string(control) + (value.empty() ? "" : "=" + value));
    step_in_hand_ = steps_.size();
  }
  step_counts_ = true;
  try {
    item->action(*this, value);
  } catch (...) { // what failed isn't to be done again
    step_is_void();
    end_step();
    throw;
  }
  end_step();
  return true;
}

void net_view::cluster_row_clicked(std::int32_t row) {
  if (is_at_work())
    return;
  const std::int32_t cluster = net().ClusterNumberInNetNonSorted(row);
  if (cluster < 1)
    return;
  note_step("row=" + std::to_string(row));
  const std::int32_t id = net().clusters()[static_cast<std::size_t>(cluster)].id;
  const auto nodes = net().nodes();
  bool now_selected = false;
  for (vertex_number n = 1; n <= net().n_vertices_get(); ++n)
    if (nodes[static_cast<std::size_t>(n)].cluster_id == id) {
      open().AddToSelectedAllClonesOfClusterContainingNode(n, true, now_selected);
      break;
    }
  selection_changed();
}

} // namespace orb
