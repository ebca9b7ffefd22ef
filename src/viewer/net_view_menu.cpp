#include "viewer/net_view_menu.h"

#include "viewer/net_view.h"

namespace orb {

namespace {

using action = std::function<void(net_view &, const std::string &)>;
using state = std::function<bool(const net_view &)>;

} // namespace

// The zooms of 100% to 500% below "Zoom" have no action and aren't here: the buttons zoom.
struct view_menu_maker {
  std::vector<view_menu_item> items;

  void add(const char *control, view_menu menu, const char *path, const char *caption, action does, state checked = {},
           state shown = {}, const char *value = "") {
    items.push_back(
        {control, menu, path, caption, value, std::move(does), std::move(checked), std::move(shown), false});
  }
  void file_entries();
  void selection_modes();
  void selection_entries();
  void look_entries();
  void option_entries();
  void undo_and_buttons();
};

void view_menu_maker::file_entries() {
  const auto file = view_menu::file;
  const state with_table = [](const net_view &v) { return v.cluster_table().is_loaded(); };
  add("mnuFileNew", file, "File", "New", [](net_view &v, auto &) { v.new_net(); });
  add(
      "mnuFileNewNetFile", file, "File", "Open net file...",
      [](net_view &v, auto &name) { name.empty() ? v.open_file() : void(v.ShowNetFile(name)); }, {}, {}, "FILE");
  add("mnuFileClusters", file, "File", "Open table of clusters for nodes...",
      [](net_view &v, auto &) { v.open_cluster_table(); });
  add("mnuFileMakeNetFileForTxt", file, "File/Create net for clones", "from file...",
      [](net_view &v, auto &form) { v.make_net(elongation_mode::net_from_file, form); });
  items.back().value = "FORM";
  add("mnuFileMakeNetFromList", file, "File/Create net for clones", "from list",
      [](net_view &v, auto &form) { v.make_net(elongation_mode::net_from_list, form); });
  items.back().value = "FORM";
  add(
      "mnuSave", file, "File", "Save", [](net_view &v, auto &name) { v.save(true, false, name); }, {}, {}, "FILE");
  items.back().leaves_net = true;
  add(
      "mnuSaveSubNet", file, "File", "Save subnet of selected vertices",
      [](net_view &v, auto &name) { v.save(false, false, name); }, {}, {}, "FILE");
  items.back().leaves_net = true;
  add(
      "mnuSaveSubNetRm", file, "File", "Save subnet of selected vertices and Remove",
      [](net_view &v, auto &name) { v.save(false, true, name); }, {}, {}, "FILE");
  add(
      "mnuSaveClustering", file, "File", "Save clustering", [](net_view &v, auto &name) { v.save_clustering(name); },
      {}, with_table, "FILE");
  items.back().leaves_net = true;
  add("mnuExit", file, "File", "Exit", [](net_view &v, auto &) { v.close_requested(); });
  items.back().leaves_net = true;
}

void view_menu_maker::selection_modes() {
  const auto mode = [this](const char *control, const char *caption, selection_mode wanted) {
    add(
        control, view_menu::selection, "Selection", caption, [wanted](net_view &v, auto &) { v.mode_set(wanted); },
        [wanted](const net_view &v) { return v.mode() == wanted; });
  };
  mode("mnuSelectVertex", "Vertex", selection_mode::vertex);
  mode("mnuSelectGroup", "Group by rectangle", selection_mode::group_by_rectangle);
  mode("mnuSelectGroupByLinks", "Group by links", selection_mode::group_by_link);
  mode("mnuSelectCluster", "Cluster", selection_mode::cluster);
  add(
      "mnuSelectAll", view_menu::selection, "Selection", "All", [](net_view &v, auto &) { v.select_all(); },
      [](const net_view &v) { return v.mode() == selection_mode::all; });
  add(
      "mnuSelectGroup_move_connected_groups", view_menu::selection, "Selection", "Allow moving of linked vertices",
      [](net_view &v, auto &) { v.move_linked_ = !v.move_linked_; }, [](const net_view &v) { return v.move_linked(); });
}

void view_menu_maker::selection_entries() {
  const auto entry = [this](const char *control, const char *path, const char *caption, action does) {
    add(control, view_menu::selection, path, caption, std::move(does));
  };
  entry("mnuSelec_fromListOnly", "Selection", "From list only",
        [](net_view &v, auto &names) { v.select_names(true, names); });
  items.back().value = "NAMES";
  entry("mnuSelec_fromFileOnly", "Selection", "From file only...", [](net_view &v, auto &) { v.select_file(true); });
  const char *show = "Selection/Show";
  entry("mnuSelectShow_NodeCaptonsSelected", show, "Vertices captions for selected",
        [](net_view &v, auto &) { v.show_captions(false, false); });
  entry("mnuSelectShow_NodeCaptonsSelectedOnly", show, "Vertices captions for selected only",
        [](net_view &v, auto &) { v.show_captions(false, true); });
  entry("mnuSelectShow_EdgeCaptonsSelected", show, "Edges captions for selected",
        [](net_view &v, auto &) { v.show_captions(true, false); });
  entry("mnuSelectShow_EdgeCaptonsSelectedOnly", show, "Edges captions for selected only",
        [](net_view &v, auto &) { v.show_captions(true, true); });
  entry("mnuUnselectAll", "Selection", "Unselect All", [](net_view &v, auto &) {
    v.open().UnselectAll();
    v.selection_changed();
  });
  entry("mnuSelect_Froze", "Selection", "Froze position of selected vertices ", [](net_view &v, auto &) {
    v.open().SelectedNodesCoorFroze();
    v.snapshot();
  });
  entry("mnuSelect_UnFroze", "Selection", "Unfroze position of selected vertices", [](net_view &v, auto &) {
    v.open().SelectedNodesCoorUnFroze();
    v.snapshot();
  });
  entry("mnuSelect_RndShiftsOfSelected", "Selection", "Random shifts of selected nodes",
        [](net_view &v, auto &) { v.random_shifts(); });
  entry("mnuSelect_FrozeAllUnFrozeSlctdRunKK", "Selection", "Froze all excluding selected and run",
        [](net_view &v, auto &) { v.freeze_others_and_run(); });
  entry("mnuSelectAddEdges", "Selection", "Add edges", [](net_view &v, auto &form) { v.add_edges(false, form); });
  items.back().value = "FORM";
  entry("mnuSelectRedoEdges", "Selection", "Redo edges", [](net_view &v, auto &form) { v.add_edges(true, form); });
  items.back().value = "FORM";
  entry("mnuSelectElongate", "Selection", "Elongate", [](net_view &v, auto &form) { v.elongate(form); });
  items.back().value = "FORM";
  entry("mnuSelectFillClusters", "Selection", "Fill clusters", [](net_view &v, auto &form) { v.fill_clusters(form); });
  items.back().value = "FORM";
  entry("mnuSelect_Delete", "Selection", "Remove selected vertices", [](net_view &v, auto &) { v.remove_selected(); });
}

void view_menu_maker::look_entries() {
  const auto options = view_menu::options;
  const char *of_selected = "Options/Selected vertices";
  add(
      "mnuChangeBkgColor", options, "Options", "Background color",
      [](net_view &v, auto &colour) { v.background_set(colour); }, {}, {}, "COLOUR");
  add(
      "mnuOptionsSelectedVertices_ForeColor", options, of_selected, "Color",
      [](net_view &v, auto &colour) { v.colour_of_selected(false, colour); }, {}, {}, "COLOUR");
  add(
      "mnuOptionsSelectedVertices_BorderColor", options, of_selected, "Color of border",
      [](net_view &v, auto &colour) { v.colour_of_selected(true, colour); }, {}, {}, "COLOUR");
  add(
      "mnuOptionsSelectedVertices_shape", options, of_selected, "Shape",
      [](net_view &v, auto &shape) { v.shape_of_selected(shape); }, {}, {}, "SHAPE");
  add(
      "mnuOptionsShowNodeCaptons", options, "Options/Show", "Vertices caption",
      [](net_view &v, auto &) {
        v.picture_.show_node_captions = !v.picture_.show_node_captions;
        v.redraw_net();
      },
      [](const net_view &v) { return v.picture().show_node_captions; });
  add(
      "mnuOptionsShowEdgeCaptons", options, "Options/Show", "Edge captions",
      [](net_view &v, auto &) {
        v.picture_.show_edge_captions = !v.picture_.show_edge_captions;
        v.redraw_net();
      },
      [](const net_view &v) { return v.picture().show_edge_captions; });
  add(
      "mnuOptionsShowNodesFromList", options, "Options/Show", "Vertices from list...",
      [](net_view &v, auto &names) { v.select_names(false, names); }, {}, {}, "NAMES");
  add("mnuOptionsShowNodesFromFile", options, "Options/Show", "Vertices from file...",
      [](net_view &v, auto &) { v.select_file(false); });
}

void view_menu_maker::option_entries() {
  const auto options = view_menu::options;
  const state with_table = [](const net_view &v) { return v.cluster_table().is_loaded(); };
  add(
      "mnuOptions_RealResize", options, "Options", "Resize net", [](net_view &v, auto &ratio) { v.real_resize(ratio); },
      {}, {}, "NUMBER");
  add(
      "mnuOptinsSetK", options, "Options", "Set stiffness of springs ",
      [](net_view &v, auto &k) { v.set_stiffness(k); }, {}, {}, "NUMBER");
  add(
      "mnuOptions_ExpPotential", options, "Options", "Use exp{} in potential",
      [](net_view &v, auto &) { v.use_exp_ = !v.use_exp_; }, [](const net_view &v) { return v.use_exp(); });
  add("mnuOptions_Multilevel", options, "Options", "Unfold net", [](net_view &v, auto &) { v.layout_multilevel(); });
  add(
      "mnuOptionsEdgesAll", options, "Options/Edges", "All",
      [](net_view &v, auto &) {
        v.picture_.edges.all = !v.picture_.edges.all;
        v.redraw_net();
      },
      [](const net_view &v) { return v.picture().edges.all; });
  add(
      "mnuOptionsEdgesNo", options, "Options/Edges", "No",
      [](net_view &v, auto &) {
        v.picture_.edges.none = !v.picture_.edges.none;
        v.picture_.edges.all = v.picture_.edges.all && !v.picture_.edges.none;
        v.redraw_net();
      },
      [](const net_view &v) { return v.picture().edges.none; });
  add(
      "mnuOptionsEdgesBigger", options, "Options/Edges", ">=0",
      [](net_view &v, auto &bound) { v.bound_set(false, bound); },
      [](const net_view &v) { return v.picture().edges.above; }, {}, "NUMBER");
  add(
      "mnuOptionsEdgesSmaller", options, "Options/Edges", "<=100000",
      [](net_view &v, auto &bound) { v.bound_set(true, bound); },
      [](const net_view &v) { return v.picture().edges.below; }, {}, "NUMBER");
  add(
      "mnuOptionsVerticesCol", options, "Options/Show in caption for vertices", "column",
      [](net_view &v, auto &column) { v.caption_column_toggle(column); }, {}, with_table, "COLUMN");
  add(
      "mnuOptionsClustersCol", options, "Options/Select column indicating cluster", "column",
      [](net_view &v, auto &column) { v.cluster_column_set(column); }, {}, with_table, "COLUMN");
}

void view_menu_maker::undo_and_buttons() {
  add("mnuDo", view_menu::undo, "Do", "Do", [](net_view &v, auto &) {
    if (v.history_.store_pending())
      v.redraw_after_change();
  });
  add("mnuUndo", view_menu::undo, "Do", "Undo", [](net_view &v, auto &) { v.undo(); });
  add("mnuRedo", view_menu::undo, "Do", "Redo", [](net_view &v, auto &) { v.redo(); });
  add("mnuProcess", view_menu::process, "", "Run process", [](net_view &v, auto &) { v.process_pressed(); });
  const char *captions[]{"Resize full picture ", "Move picture left", "Move picture down", "Move picture right",
                         "Move picture up",      "Zoom in",           "Zoom out"};
  for (std::int32_t i = 0; i < 7; ++i)
    add(("CmdMove(" + std::to_string(i) + ")").c_str(), view_menu::button, "", captions[i],
        [i](net_view &v, auto &) { v.picture_move(i); });
  add("CmdActivateRotate", view_menu::button, "", "Activate rotate option",
      [](net_view &v, auto &) { v.rotation_activate(); });
  add("CmdCancelRotate", view_menu::button, "", "Cancel rotate option",
      [](net_view &v, auto &) { v.rotation_cancel(); });
  // y grows downwards in the picture, so that a growing angle turns clockwise
  add("CmdClockwise", view_menu::button, "", "Rotate left", [](net_view &v, auto &) { v.rotate(1); });
  add("CmdCounterClockwise", view_menu::button, "", "Rotate right", [](net_view &v, auto &) { v.rotate(-1); });
  add(
      "TxtAngle", view_menu::button, "", "Angle", [](net_view &v, auto &text) { v.panels_.TxtAngle = text; }, {}, {},
      "NUMBER");
  add(
      "TextSelVertices", view_menu::button, "", "Selected vertices",
      [](net_view &v, auto &text) { v.panels_.TextSelVertices = text; }, {}, {}, "NAMES");
}

const std::vector<view_menu_item> &table_of_view_menu() {
  static const std::vector<view_menu_item> table = [] {
    view_menu_maker maker;
    maker.file_entries();
    maker.selection_modes();
    maker.selection_entries();
    maker.look_entries();
    maker.option_entries();
    maker.undo_and_buttons();
    return std::move(maker.items);
  }();
  return table;
}

const view_menu_item *view_menu_item_by_control(std::string_view control) {
  for (const view_menu_item &item : table_of_view_menu())
    if (item.control == control)
      return &item;
  return nullptr;
}

bool is_enabled(const view_menu_item &item, const net_view &view) {
  if (item.is_shown && !item.is_shown(view))
    return false;
  if (view.is_at_work()) // a stop that was asked for needs no second press
    return item.control == "mnuExit" || (item.control == "mnuProcess" && view.process_state() == view_process::running);
  if (item.control == "mnuDo")
    return view.history().do_is_enabled();
  if (item.control == "mnuUndo")
    return view.history().undo_is_enabled();
  if (item.control == "mnuRedo")
    return view.history().redo_is_enabled();
  const bool makes_a_net = item.menu == view_menu::file && item.control.rfind("mnuSave", 0) != 0;
  return view.has_net() || makes_a_net || item.control == "TextSelVertices";
}

} // namespace orb
