// The viewer without a window, by its controls.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/open_nets.h"
#include "commands/picture_size.h"
#include "commands/row_steps.h"
#include "drawing/cairo_surface.h"
#include "drawing/polled_surface.h"
#include "drawing/recording_surface.h"
#include "frame/numbers.h"
#include "viewer/net_view.h"
#include "viewer/view_steps.h"

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
  list.add("file", p.file, "a drawing of a net").type("FILE.net");
  list.add("do", p.actions,
           "control of the viewer, with =VALUE where it takes one; press, shift-press, move, release, drag, pan, zoom "
           "and size take pixels, row a row of the clusters, select numbers of nodes; several are done in turn")
      .type("CONTROL");
  list.add("size", p.size, "width and height of the picture in pixels").type("WxH");
  list.add("out", p.out, "where the net is saved at the end").type("FILE.net");
  list.add("picture", p.picture, "what is in view at the end").type("FILE.png|.svg|.pdf");
  list.add("force", p.force, "overwrite results that exist");
}

void check_view(const project_state &project, const parts_there &, const view_parameters &p) {
  check_input(p.file);
  picture_size_of(p.size);
  const std::vector<std::string> known = words_of_view_steps();
  for (const fs::path &action : p.actions) {
    const std::string control = control_of_step(action.string());
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

// False when stopped: then there is no file.
bool put_picture(process_frame &frame, const net_view &view, const view_parameters &p) {
  picture_file picture(p.picture, [&frame] { frame.yield(); });
  picture.start_page(picture_size_of(p.size));
  net_picture look = view.picture();
  look.moves = false;
  net_painter().redraw_net(view.net(), view.geometry(), look, &view.cluster_table(),
                           polled_surface(picture.surface(), [&frame] { return frame.goes_on(); }));
  if (frame.stop_requested_get())
    return false;
  picture.commit();
  return true;
}

command_result run_view(project_state &project, const view_parameters &p) {
  lent_sources lent(project);
  surface_record shown{picture_size_of(p.size), 0, {}};
  view_window window;
  window.surface = recording_surface(shown);
  window.resize = [&shown](surface_size size) { shown.size = size; };
  net_view view(lent.sources, std::move(window), project.settings().threads);
  if (!p.file.empty() && !view.ShowNetFile(p.file))
    return stopped_or_failed(project);
  command_result result;
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  for (const fs::path &action : p.actions) {
    const std::string control = control_of_step(action.string());
    if (!do_view_step(view, action.string()))
      return command_result::ended(exit_status::run_failed, control + " is grey: it needs what isn't there now");
    if (!view.panels().message.empty())
      project.frame().note(control + ": " + view.panels().message);
    if (project.frame().stop_requested_get())
      return stopped_or_failed(project);
  }
  if (!p.out.empty() && view.save(true, false, p.out))
    result.file("net", p.out);
  if (!p.picture.empty()) {
    if (!put_picture(project.frame(), view, p))
      return stopped_or_failed(project);
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
