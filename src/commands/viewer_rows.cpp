// The viewer without a window, by its controls.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/open_nets.h"
#include "commands/picture_size.h"
#include "commands/row_steps.h"
#include "drawing/cairo_surface.h"
#include "drawing/recording_surface.h"
#include "frame/numbers.h"
#include "viewer/net_view.h"
#include "viewer/net_view_menu.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct view_parameters {
  fs::path file;
  std::vector<fs::path> actions; // CONTROL or CONTROL=VALUE
  std::string size = "1600x1000";
  fs::path out, picture;
  bool force = false;
};

void describe_view(parameter_list &list, view_parameters &p) {
  list.add("file", p.file, "a drawing of a net").type("FILE.net").needed();
  list.add("do", p.actions,
           "control of the viewer, with =VALUE where it takes one; press, shift-press, move, release and drag take "
           "pixels, row a row of the clusters; several are done in turn")
      .type("CONTROL");
  list.add("size", p.size, "width and height of the picture in pixels").type("WxH");
  list.add("out", p.out, "where the net is saved at the end").type("FILE.net");
  list.add("picture", p.picture, "what is in view at the end").type("FILE.png|.svg|.pdf");
  list.add("force", p.force, "overwrite results that exist");
}

const std::vector<std::string> mouse_words{"press", "shift-press", "move", "release", "drag", "row"};

std::pair<std::string, std::string> split_action(const std::string &action) {
  const std::size_t at = action.find('=');
  return {action.substr(0, at), at == std::string::npos ? "" : action.substr(at + 1)};
}

void check_view(const project_state &project, const parts_there &, const view_parameters &p) {
  check_input(p.file);
  picture_size_of(p.size);
  std::vector<std::string> known = mouse_words;
  for (const view_menu_item &item : table_of_view_menu())
    known.push_back(item.control);
  for (const fs::path &action : p.actions) {
    const std::string control = split_action(action.string()).first;
    if (std::find(known.begin(), known.end(), control) != known.end())
      continue;
    const std::string near = nearest_word(control, known);
    throw usage_error("the viewer has no control " + control + (near.empty() ? "" : "; is " + near + " meant?"));
  }
  if (!p.picture.empty() && !picture_form_of(p.picture))
    throw usage_error("--picture " + p.picture.string() +
                      ": the ending tells the form of the picture: .png, .svg or .pdf");
  for (const fs::path &file : {p.out, p.picture})
    if (!file.empty())
      check_output(project, file, p.force);
}

// Numbers between commas; as many as are wanted, or the action is wrong.
std::vector<float> pixels_of(const std::string &action, const std::string &text, std::size_t n_wanted) {
  std::vector<float> found;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    double value = 0;
    if (!number_parse(text.substr(begin, end - begin), value) || !std::isfinite(value))
      break;
    found.push_back(static_cast<float>(value));
    begin = end + 1;
  }
  if (found.size() != n_wanted)
    throw usage_error(fmt::format("{}={}: wanted are {} numbers with commas between them", action, text, n_wanted));
  return found;
}

// False: the control is grey now.
bool act(net_view &view, const std::string &control, const std::string &value) {
  const auto first = net_view::button::first;
  if (control == "press" || control == "shift-press") {
    const auto at = pixels_of(control, value, 2);
    view.press(first, at[0], at[1], control != "press");
  } else if (control == "move") {
    const auto at = pixels_of(control, value, 2);
    view.move(at[0], at[1]);
  } else if (control == "release") {
    const auto at = pixels_of(control, value, 2);
    view.release(at[0], at[1]);
  } else if (control == "drag") {
    const auto at = pixels_of(control, value, 4);
    view.press(first, at[0], at[1], false);
    view.move((at[0] + at[2]) / 2, (at[1] + at[3]) / 2);
    view.move(at[2], at[3]);
    view.release(at[2], at[3]);
  } else if (control == "row") {
    view.cluster_row_clicked(static_cast<std::int32_t>(pixels_of(control, value, 1)[0]));
  } else {
    return view.choose(control, value);
  }
  return true;
}

void put_picture(const net_view &view, const view_parameters &p) {
  picture_file picture(p.picture);
  picture.start_page(picture_size_of(p.size));
  net_picture look = view.picture();
  look.moves = false;
  net_painter().redraw_net(view.net(), view.geometry(), look, &view.cluster_table(), picture.surface());
  picture.commit();
}

command_result run_view(project_state &project, const view_parameters &p) {
  lent_sources lent(project);
  surface_record shown{picture_size_of(p.size), 0, {}};
  view_window window;
  window.surface = recording_surface(shown);
  net_view view(lent.sources, std::move(window), project.settings().threads);
  if (!view.ShowNetFile(p.file))
    return stopped_or_failed(project);
  command_result result;
  result.inputs.push_back(p.file);
  for (const fs::path &action : p.actions) {
    const auto [control, value] = split_action(action.string());
    if (!act(view, control, value))
      return command_result::ended(exit_status::run_failed, control + " is grey: it needs what isn't there now");
    if (!view.panels().message.empty())
      project.frame().note(control + ": " + view.panels().message);
    if (project.frame().stop_requested_get())
      return stopped_or_failed(project);
  }
  if (!p.out.empty() && view.save(true, false, p.out))
    result.file("net", p.out);
  if (!p.picture.empty()) {
    put_picture(view, p);
    result.file("picture", p.picture);
  }
  result.figure("nodes", view.net().n_vertices_get());
  result.figure("edges", view.net().n_edges_get());
  result.figure("selected", view.net().Get_nOfSelectedNodes());
  return result;
}

} // namespace

void add_viewer_rows(command_rows &rows) {
  rows.push_back(
      command_maker<view_parameters>("net.view")
          .captioned("View a net")
          .purpose("the viewer without a window: its controls by name")
          .example("net.view file=contig.net do=mnuSelectAll do=mnuSelect_UnFroze do=mnuProcess out=moved.net")
          .parameters(describe_view)
          .checked_by(check_view)
          .runs(run_view)
          .row());
}

} // namespace orb
