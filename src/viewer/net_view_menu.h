// The menu entries and buttons of the viewer, as a table: a window makes its menus of it, a command line and tests
// choose by control name.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orb {

class net_view;

enum class view_menu { file, selection, options, undo, view, process, button };

struct view_menu_item {
  std::string control;
  view_menu menu = view_menu::file;
  std::string path;    // captions of the menus above it, separated by "/"
  std::string caption; // as shown
  // How its value is given below the entry: names of shapes, numbers of columns, a text; empty: it takes none.
  std::string value;
  std::function<void(net_view &, const std::string &value)> action;
  std::function<bool(const net_view &)> is_checked; // empty: it has no mark
  std::function<bool(const net_view &)> is_shown;   // empty: always
  bool leaves_net = false;                          // it writes or asks: no step of what was done to the net
};

const std::vector<view_menu_item> &table_of_view_menu();
// Null when there is none.
const view_menu_item *view_menu_item_by_control(std::string_view control);
// Grey entries: without a net all but File's, while the layout runs those that would change the net, and Undo, Redo and
// Do by what they have.
bool is_enabled(const view_menu_item &item, const net_view &view);

} // namespace orb
