// The viewer without its window: what a press, a drag, a menu entry or a button does to the open net and to its
// picture. A window forwards its events and lends a surface; texts, questions and files go through the frame.
//
// Controls are known by name (net_view_menu.h). Pixels count from the upper left corner of the picture.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "viewer/class_net_elng_clust.h"
#include "viewer/elongation_form.h"
#include "viewer/net_elongation.h"
#include "viewer/net_history.h"
#include "viewer/net_layout.h"
#include "viewer/net_painter.h"
#include "viewer/spring_layout.h"

namespace orb {

enum class selection_mode : std::int16_t {
  vertex = 0,
  group_by_link = 1,
  cluster = 2,
  all = 3,
  group_by_rectangle = 4,
  rectangle_is_drawn = 5,
  set_center = 10
};

enum class drag_state : std::uint8_t { none = 0, pressed = 1, moved = 2 };
enum class view_process : std::int16_t { idle = 0, running = 1, paused = 2 + 1, stop_asked = 4 };

// What the window shows beside the picture.
struct view_panels {
  std::string message;            // the free panel of the status bar
  std::string txtFrom, txtTo;     // names of source and target
  std::string TextSelVertices;    // names of the selected nodes, one a line; the user may edit it
  std::string TxtClustersCapture; // heading of the table of clusters
  std::vector<cluster_line> TxtClusters;
  std::int32_t row_of_clusters = 0; // which row is scrolled to, from 1; 0: none
  std::string TxtAngle = "10 ";     // of rotation
};

// What a window lends. Each may be empty: then the frame asks in its place.
struct view_window {
  drawing_surface surface;
  std::function<bool(form_netElng &)> elongation_dialog; // false: cancelled
  std::function<std::optional<colour_value>(colour_value now)> colour_dialog;
  std::function<void()> panels_changed;
  std::function<void()> picture_changed; // something was drawn; serves events in place of the frame
  std::function<void(const std::filesystem::path &file)> net_is_to_be_written; // what it throws ends the saving
  // A net or a clustering was written, as this control does.
  std::function<void(const std::string &control, const std::filesystem::path &file)> file_written;
  std::function<void(surface_size)> resize; // gives the surface another size, when a step wants it
};

class net_view {
public:
  // `chance` and all that `sources` names outlive the view; the table of clusters is the view's own. `threads`: of the
  // layout, 0 is all cores.
  net_view(const net_sources &sources, view_window window, int threads = 0);
  net_view(const net_view &) = delete;
  net_view &operator=(const net_view &) = delete;

  const class_net_elng &net() const { return history_.open(); }
  const net_history &history() const { return history_; }
  const view_geometry &geometry() const { return geometry_; }
  const net_picture &picture() const { return picture_; }
  const view_panels &panels() const { return panels_; }
  const class_net_elng_clust &cluster_table() const { return cluster_table_; }
  selection_mode mode() const { return mode_; }
  view_process process_state() const { return process_; }
  // The layout runs, or is about to stop.
  bool is_at_work() const { return process_ == view_process::running || process_ == view_process::stop_asked; }
  bool move_linked() const { return move_linked_; }
  bool use_exp() const { return use_exp_; }
  bool is_rotating() const { return is_rotating_; }
  bool has_net() const { return has_net_; } // without one only File and Exit work
  bool shows_nothing() const;               // no node has a place
  std::string label_of_mode() const;        // "Selection = Vertex"
  std::string text_of_selected() const;     // "N_selected = 3"
  bool wants_to_close() const { return wants_to_close_; }
  // Whether the net is as it was opened, made or saved.
  bool is_clean() const { return history().is_clean(); }
  // What was done so far, in turn, as `do_view_step` takes it (view_steps.h): these steps lead to the same net in a
  // view that begins with a picture of `first_size`.
  const std::vector<std::string> &steps() const { return steps_; }
  const surface_size &first_size() const { return first_size_; }
  // The session's parts are other ones: scores, names and clusters come from these now, and nodes are clones of this
  // library by their captions.
  void sources_set(const net_sources &sources);

  // ---- the picture ----
  // Tells of what couldn't be drawn, once; yields.
  void redraw_net();
  // The window has another size.
  void resized();
  // Gives the picture another size, where it has none of a window.
  void resize_picture(const surface_size &size);
  // The wheel: the point under the mouse stays there.
  void zoom_at(std::int32_t steps, float x, float y);
  // The picture under a hand: how far it is from where it was taken. `goes_on`: it is still held since the last call.
  void pan(float dx, float dy, bool goes_on = false);
  // -1: none there.
  vertex_number node_at(float x, float y) const { return has_net_ ? hit_test(x, y) : -1; }
  std::int32_t edge_at(float x, float y) const;
  // Moves the picture so that a node that is outside, or at its rim, lies in the middle.
  void bring_into_view(vertex_number node);

  // ---- the mouse ----
  enum class button : std::int8_t { first = 1, second = 2 };
  // False for the second button: the Selection menu is to open there.
  bool press(button which, float x, float y, bool shift);
  void move(float x, float y);
  void release(float x, float y);
  // The selection becomes these nodes, as far as there are such.
  void select_nodes(const std::vector<vertex_number> &nodes);
  // The next run of the springs ends after so many steps.
  void stop_after(std::int32_t steps);

  // ---- menus, buttons, texts ----
  // False, after a message where the entry has one, when there is no such control or it is disabled. `value`: what is
  // chosen below an entry, or put into a text.
  bool choose(std::string_view control, const std::string &value = {});
  // A click on a row of the table of clusters, from 1: the cluster is selected, or not any more.
  void cluster_row_clicked(std::int32_t row);

  // ---- files ----
  bool ShowNetFile(const std::filesystem::path &file);
  // The visible part as clusters: a line a node, its name and that of its cluster. Asks for the file when it is empty.
  bool save_clustering(std::filesystem::path file = {});
  bool save(bool all_nodes, bool remove_saved, std::filesystem::path file = {});
  // A net that something else made; it is drawn, or laid out first.
  void show_net(class_net_elng net, const std::string &from);

  // The close request: asks; true when the window may close. While the layout runs a yes asks it to stop.
  bool close_requested();

private:
  friend struct view_menu_maker;
  class_net_elng &open() { return history_.open(); }
  net_sources sources() { return sources_; }
  void tell(const std::string &text);
  void note_step(std::string step);
  void note_step(const char *word, std::initializer_list<float> numbers);
  // What a dialog gave to the control in hand, so that its step needs no dialog.
  void step_value_set(const std::string &value);
  void step_is_void() { step_counts_ = false; } // nothing was done: the user cancelled
  void selection_changed();
  void redraw_selection();
  void tables_refresh();
  void snapshot(); // stores, draws, refreshes
  bool needs_selection(const char *words = "No selected nodes!");
  void reset_for(const std::string &from);
  void redraw_after_change();

  // net_view_mouse.cpp
  bool press_vertex(vertex_number hit, bool shift);
  bool press_group(vertex_number hit, bool shift);
  bool press_cluster(vertex_number hit, bool shift);
  vertex_number hit_test(float x, float y) const;
  void draw_rubber_band(float x, float y);
  void end_rectangle(float x, float y);

  // net_view_actions.cpp
  void mode_set(selection_mode mode);
  void select_all();
  void select_names(bool only, const std::string &text);
  void select_file(bool only);
  void show_captions(bool of_edges, bool only);
  void colour_of_selected(bool is_border, const std::string &value);
  void shape_of_selected(const std::string &value);
  void background_set(const std::string &value);
  std::optional<colour_value> colour_asked(const std::string &value, colour_value now);
  void bound_set(bool upper, const std::string &value);
  void real_resize(const std::string &value);
  void set_stiffness(const std::string &value);
  void remove_selected();
  void random_shifts();
  void freeze_others_and_run();
  void rotate(float sign);
  void rotation_activate();
  void rotation_cancel();
  void picture_move(std::int32_t button);
  void undo();
  void redo();
  void new_net();
  void open_file();
  void open_cluster_table();
  void cluster_column_set(const std::string &value);
  void caption_column_toggle(const std::string &value);
  // net_view_growth.cpp
  bool elongation_form_ok(form_netElng &form, const std::string &value);
  bool ask_elongation_form(form_netElng &form);
  void make_net(elongation_mode mode, const std::string &value);
  void add_edges(bool redo, const std::string &value);
  void elongate(const std::string &value);
  void fill_clusters(const std::string &value);
  // net_view_run.cpp
  void process_pressed();
  void run_optimization();
  void layout_multilevel();
  bool place_first();
  void steps_run();

  net_sources sources_;
  view_window window_;
  int threads_;
  net_history history_;
  class_net_elng_clust cluster_table_;
  view_geometry geometry_;
  net_picture picture_;
  net_painter painter_;
  view_panels panels_;
  spring_values springs_;
  selection_mode mode_ = selection_mode::vertex;
  drag_state drag_ = drag_state::none;
  bool may_drag_ = false; // this press took something
  view_process process_ = view_process::idle;
  bool move_linked_ = false, use_exp_ = false, is_rotating_ = false, has_net_ = false, wants_to_close_ = false;
  float rotate_center_x_ = -1, rotate_center_y_ = -1; // pixels; below 0: not set
  float last_x_ = 0, last_y_ = 0, press_x_ = 0, press_y_ = 0;
  view_geometry held_; // where the picture was when a hand took it
  std::vector<std::string> steps_;
  surface_size first_size_;
  std::size_t step_in_hand_ = 0; // of the control that is chosen
  bool step_counts_ = true;
  std::int32_t most_steps_ = most_steps_of_a_run; // of the next run
  std::vector<char> shown_selected_;              // by node, as it was drawn last
};

} // namespace orb
