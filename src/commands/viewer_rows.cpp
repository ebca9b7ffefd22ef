// Open nets without a window: pictures of them, places for their nodes, and the viewer by its controls.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <optional>

#include "clustering/cluster_file_name.h"
#include "clustering/contig_map.h"
#include "commands/command_table.h"
#include "commands/picture_size.h"
#include "commands/row_steps.h"
#include "commands/verbs.h"
#include "drawing/cairo_surface.h"
#include "drawing/recording_surface.h"
#include "drawing/scaled_surface.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "project/input_kind.h"
#include "viewer/net_file.h"
#include "viewer/net_layout.h"
#include "viewer/net_sheet.h"
#include "viewer/net_view.h"
#include "viewer/net_view_menu.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// What the session lends to an open net, for as long as a command runs.
struct lent_sources {
  explicit lent_sources(project_state &project)
      : gate(project.context(), &project.signif().net()),
        chance(project.settings().seed), sources{project.frame(),         project.database(),
                                                 project.signif(),        gate,
                                                 project.rule(),          chance,
                                                 project.working_folder()} {}
  class_clone_dist_my gate;
  random_source chance;
  net_sources sources;
};

// ---- layouts -------------------------------------------------------------------------------------------------------

struct layout_parameters {
  std::string layout; // empty: places as they are, "multilevel" for nodes without
};

void describe_layout(parameter_list &list, layout_parameters &p) {
  list.add("layout", p.layout, "places of the nodes: own (growth, then springs), circle, clusters, multilevel")
      .one_of({"own", "circle", "clusters", "multilevel"})
      .unset("as in the file; multilevel where it has none");
}

// Growth from nothing and one run of the springs.
bool lay_out_own(class_net_elng &net, int threads, process_frame &frame) {
  for (node_elng &node : net.nodes_for_layout())
    node.is_coor_known = false;
  net.SelectAll();
  net.SelectedNodesCoorUnFroze();
  net.UnselectAll();
  if (!lay_out_by_growth(net, frame))
    return false;
  net.SelectAll(); // growth freezes what it has placed; the springs are to move it
  net.SelectedNodesCoorUnFroze();
  net.UnselectAll();
  spring_run springs(net, threads);
  spring_values values;
  for (std::int32_t i = 1; i <= most_steps_of_a_run && frame.goes_on(); ++i)
    if (const spring_step step = springs.step(false, values, frame); is_at_rest(i, step) || !step.go_on)
      break;
  springs.put_into(net);
  return !frame.stop_requested_get();
}

bool lay_out(class_net_elng &net, const layout_parameters &p, double aspect, project_state &project,
             random_source &chance) {
  const int threads = project.settings().threads;
  if (p.layout == "circle")
    lay_out_on_circle(net);
  else if (p.layout == "own")
    return lay_out_own(net, threads, project.frame());
  else if (p.layout == "clusters") {
    lay_out_on_circle(net); // nodes without a cluster stay on it
    lay_out_by_clusters(net, chance);
  } else if (p.layout == "multilevel" || !net.coor_are_known_get())
    return lay_out_multilevel(net, aspect, project.settings().seed, threads, project.frame());
  return true;
}

// False after messages: it can't be read.
bool read_net(const fs::path &file, const net_sources &sources, class_net_elng &net) {
  bool all_or_none = false;
  if (!net.ReadNetFile(sources, file, true, all_or_none))
    return false;
  net.make_cluster_info(sources);
  return true;
}

// A stopped layout leaves no file: half of its nodes may lie anywhere.
command_result ended_early(project_state &project) {
  return stopped_or_failed(project);
}

// ---- net.layout ----------------------------------------------------------------------------------------------------

struct net_layout_parameters {
  fs::path file;
  layout_parameters layout;
  output_wishes output;
};

void describe_net_layout(parameter_list &list, net_layout_parameters &p) {
  list.add("file", p.file, "a drawing of a net").type("FILE.net").needed();
  describe_layout(list, p.layout);
  describe_output(list, p.output, "FILE.net|.tsv");
}

void check_net_layout(const project_state &project, const parts_there &, const net_layout_parameters &p) {
  check_input(p.file);
  const std::string ending = p.output.out.extension().string();
  if (ending != ".net" && ending != ".tsv")
    throw usage_error("--out " + p.output.out.string() + ": the ending tells what is written: .net or .tsv");
  check_output(project, p.output.out, p.output.force);
}

void write_places(const class_net_elng &net, const fs::path &file) {
  result_file out(file);
  out.write("name\tx\ty\n");
  for (const node_elng &node : net.nodes().subspan(1))
    out.write(node.caption + "\t" + number_text(node.x, 3) + "\t" + number_text(node.y, 3) + "\n");
  out.commit();
}

command_result run_net_layout(project_state &project, const net_layout_parameters &p) {
  constexpr double aspect = 1.6;
  lent_sources lent(project);
  class_net_elng net;
  if (!read_net(p.file, lent.sources, net) || !lay_out(net, p.layout, aspect, project, lent.chance))
    return ended_early(project);
  if (p.output.out.extension() == ".tsv") {
    write_places(net, p.output.out);
  } else {
    net_saving wanted;
    wanted.net_name = net.net_name_get();
    net.SaveNet(project.frame(), p.output.out, wanted);
  }
  command_result result;
  result.inputs.push_back(p.file);
  result.file("net", p.output.out);
  result.figure("nodes", net.n_vertices_get());
  result.figure("edges", net.n_edges_get());
  return result;
}

// ---- pictures ------------------------------------------------------------------------------------------------------

struct picture_parameters {
  std::string size = "1600x1000";
  double scale = 1;
  layout_parameters layout;
  bool no_captions = false, edge_captions = false;
  std::optional<double> edges_above, edges_below;
  output_wishes output;
};

void describe_picture(parameter_list &list, picture_parameters &p) {
  describe_layout(list, p.layout);
  list.add("size", p.size, "width and height in pixels").type("WxH");
  list.add("scale", p.scale, "how much larger nodes, lines and letters are").limits(1, 20);
  list.add("no-captions", p.no_captions, "no names and scores");
  list.add("edge-captions", p.edge_captions, "scores beside the edges");
  list.add("edges-above", p.edges_above, "only edges of at least this score").limits(-1e9, 1e9);
  list.add("edges-below", p.edges_below, "only edges of at most this score").limits(-1e9, 1e9);
  describe_output(list, p.output, "FILE.png|.svg|.pdf");
}

void check_picture(const picture_parameters &p) {
  if (!picture_form_of(p.output.out))
    throw usage_error("--out " + p.output.out.string() +
                      ": the ending tells the form of the picture: .png, .svg or .pdf");
  picture_size_of(p.size);
}

net_picture look_of(const picture_parameters &p) {
  net_picture look;
  look.show_node_captions = true;
  look.no_captions = p.no_captions;
  look.show_edge_captions = p.edge_captions;
  look.captions_apart = true;
  edge_display &edges = look.edges;
  edges.all = !p.edges_above && !p.edges_below;
  edges.above = p.edges_above.has_value();
  edges.below = p.edges_below.has_value();
  if (p.edges_above)
    edges.caption_of_bigger = ">=" + number_text_shortest(*p.edges_above);
  if (p.edges_below)
    edges.caption_of_smaller = "<=" + number_text_shortest(*p.edges_below);
  return look;
}

void draw_picture(project_state &project, const class_net_elng &net, net_sheet sheet, const picture_parameters &p,
                  const fs::path &file) {
  constexpr std::int32_t many = 1500; // nodes that would hide each other
  if (net.n_vertices_get() > many)
    sheet.look.least_half_size = 1.5f;
  picture_file picture(file);
  picture.start_page(picture_size_of(p.size));
  const paint_faults faults =
      draw_net_sheet(net, sheet, scaled_surface(picture.surface(), static_cast<float>(p.scale)));
  picture.commit();
  if (faults.n_vertices > 0)
    project.frame().alarm("Vertex #" + std::to_string(faults.first_vertex) + " was not drawn properly!");
  if (faults.n_edges > 0)
    project.frame().alarm("Edge #" + std::to_string(faults.first_edge) + " was not drawn properly!");
}

double aspect_of(const picture_parameters &p) {
  const surface_size size = picture_size_of(p.size);
  return size.width / size.height;
}

struct net_picture_parameters {
  fs::path file;
  picture_parameters picture;
};

command_result run_net_picture(project_state &project, const net_picture_parameters &p) {
  lent_sources lent(project);
  class_net_elng net;
  if (!read_net(p.file, lent.sources, net) ||
      !lay_out(net, p.picture.layout, aspect_of(p.picture), project, lent.chance))
    return ended_early(project);
  net_sheet sheet;
  sheet.title = fmt::format("{}: {} nodes, {} edges", net.net_name_get(), net.n_vertices_get(), net.n_edges_get());
  sheet.look = look_of(p.picture);
  draw_picture(project, net, sheet, p.picture, p.picture.output.out);
  command_result result;
  result.inputs.push_back(p.file);
  result.file("picture", p.picture.output.out);
  result.figure("nodes", net.n_vertices_get());
  result.figure("edges", net.n_edges_get());
  return result;
}

// ---- contigs.picture -----------------------------------------------------------------------------------------------

struct contig_picture_parameters {
  std::string contig;
  bool all = false;
  fs::path list;
  std::string colours = "path";
  picture_parameters picture;
};

void describe_contig_picture(parameter_list &list, contig_picture_parameters &p) {
  list.add("contig", p.contig, "the contig to be drawn");
  list.add("all", p.all, "a picture of each contig; its name is put in before the ending of --out");
  list.add("list", p.list, "a picture of the clones of a list").type("LIST");
  list.add("colours", p.colours,
           "what colours tell: path (tiling path), burial, verdict (of the revision), cluster, "
           "or score (plain nodes)")
      .one_of({"path", "burial", "verdict", "cluster", "score"});
  describe_picture(list, p.picture);
}

void check_contig_picture(const project_state &project, const parts_there &, const contig_picture_parameters &p) {
  if ((p.contig.empty() ? 0 : 1) + (p.all ? 1 : 0) + (p.list.empty() ? 0 : 1) != 1)
    throw usage_error("one of --contig NAME, --all and --list LIST is needed");
  check_input(p.list);
  check_picture(p.picture);
  if (!p.all)
    check_output(project, p.picture.output.out, p.picture.output.force);
}

// Safe for eyes that don't tell red from green (Okabe and Ito 2008).
constexpr colour_value rgb(int red, int green, int blue) {
  return red + 256 * green + 65536 * blue;
}
constexpr colour_value sheet_blue = rgb(0, 114, 178), sheet_orange = rgb(213, 94, 0), sheet_grey = rgb(190, 198, 204),
                       sheet_white = rgb(255, 255, 255);
constexpr colour_value cluster_colours[]{rgb(0, 114, 178),  rgb(230, 159, 0), rgb(0, 158, 115),  rgb(204, 121, 167),
                                         rgb(86, 180, 233), rgb(213, 94, 0),  rgb(240, 228, 66), rgb(120, 120, 120)};
constexpr std::size_t n_cluster_colours = std::size(cluster_colours);

// The colour and the legend of what a clone is.
class clone_colours {
public:
  clone_colours(const contig_map &map, const std::string &wanted, const class_net_elng &net)
      : map_(map), wanted_(wanted), net_(net) {}

  std::optional<legend_entry> of(const node_elng &node) const {
    const mapped_clone &clone = map_.clones[static_cast<std::size_t>(node.clone_id)];
    if (wanted_ == "path")
      return clone.place_on_path > 0 ? legend_entry{"tiling path", sheet_blue} : legend_entry{"other", sheet_grey};
    if (wanted_ == "burial")
      return clone.buried_in > 0 ? legend_entry{"buried", sheet_white} : legend_entry{"not buried", sheet_blue};
    if (wanted_ == "verdict")
      return clone.verdict == Q_verdict::Q_clone ? legend_entry{"Q-clone", sheet_orange}
             : clone.verdict == Q_verdict::kept  ? legend_entry{"kept by the revision", sheet_grey}
                                                 : legend_entry{"not known", sheet_white};
    if (wanted_ == "score")
      return std::nullopt;
    const std::int32_t row = net_.Get_ClusterIdByNodeId(static_cast<vertex_number>(&node - net_.nodes().data()));
    if (row < 1)
      return legend_entry{"in no contig", sheet_white};
    const auto at = static_cast<std::size_t>(row);
    return legend_entry{at <= n_cluster_colours ? net_.clusters()[at].name : "further contigs",
                        cluster_colours[std::min(at, n_cluster_colours) - 1]};
  }

private:
  const contig_map &map_;
  const std::string &wanted_;
  const class_net_elng &net_;
};

// Overlaps step back behind what the colours tell.
void quiet_edges(class_net_elng &net) {
  constexpr colour_value light = rgb(206, 210, 214);
  for (std::int32_t e = 1; e <= net.n_edges_get(); ++e) {
    edge_elng edge = net.edges()[static_cast<std::size_t>(e)];
    edge.c = light;
    edge.is_marked = false;
    edge.mark_caption.clear();
    net.edge_set(e, edge);
  }
}

void colour_nodes(class_net_elng &net, const contig_map &map, const std::string &wanted, net_sheet &sheet) {
  constexpr std::int16_t half_size = 5;
  const clone_colours colours(map, wanted, net);
  for (vertex_number n = 1; n <= net.n_vertices_get(); ++n) {
    const node_elng &of = net.nodes()[static_cast<std::size_t>(n)];
    const auto entry = of.clone_id < 1 ? std::nullopt : colours.of(of);
    if (!entry)
      continue;
    node_elng node = of;
    node.is_marked = false;
    node.size = half_size;
    node.ic = entry->fill;
    node.show_caption = map.clones[static_cast<std::size_t>(node.clone_id)].place_on_path > 0; // above the others
    net.node_set(n, node);
    if (std::none_of(sheet.legend.begin(), sheet.legend.end(),
                     [&](const legend_entry &known) { return known.text == entry->text; }))
      sheet.legend.push_back(*entry);
  }
  if (wanted != "score")
    quiet_edges(net);
}

class contig_pictures {
public:
  contig_pictures(project_state &project, const contig_picture_parameters &p)
      : project_(project), p_(p), lent_(project) {}

  // False after a message.
  bool start() {
    const class_DB_of_clones &database = project_.database();
    const bool with_net = project_.has(project_part::net);
    if (!with_net)
      project_.frame().note("No net is known: edges are computed from bands; nothing is said of buried clones and "
                            "Q-clones.");
    return make_contig_map(project_.frame(), database, *database.contigs(),
                           with_net ? &project_.signif().net() : nullptr, map_);
  }

  bool draw(const std::string &name, const number_list &list, const fs::path &file) {
    class_net_elng net;
    bool connected = false;
    net.make_net_for_list_of_clones_run(lent_.sources, list, project_.rule().cutoff, true, name, connected);
    if (project_.frame().stop_requested_get() || net.n_vertices_get() == 0 ||
        !lay_out(net, p_.picture.layout, aspect_of(p_.picture), project_, lent_.chance))
      return false;
    net_sheet sheet;
    sheet.title = fmt::format("{}: {} clones, {} overlaps of at least {}", name, net.n_vertices_get(),
                              net.n_edges_get(), number_text_shortest(project_.rule().cutoff));
    sheet.look = look_of(p_.picture);
    colour_nodes(net, map_, p_.colours, sheet);
    draw_picture(project_, net, sheet, p_.picture, file);
    return true;
  }

  const mapped_contig *contig(const std::string &name) const {
    for (std::size_t c = 1; c < map_.contigs.size(); ++c)
      if (map_.contigs[c].name == name)
        return &map_.contigs[c];
    return nullptr;
  }
  const contig_map &map() const { return map_; }

private:
  project_state &project_;
  const contig_picture_parameters &p_;
  lent_sources lent_;
  contig_map map_;
};

[[noreturn]] void refuse_contig(const std::string &wanted, const contig_map &map) {
  std::vector<std::string> names;
  for (std::size_t c = 1; c < map.contigs.size(); ++c)
    names.push_back(map.contigs[c].name);
  const std::string near = nearest_word(wanted, names);
  throw usage_error("there is no contig " + wanted + (near.empty() ? "" : "; is " + near + " meant?"));
}

command_result run_contig_picture(project_state &project, const contig_picture_parameters &p) {
  contig_pictures pictures(project, p);
  if (!pictures.start())
    return stopped_or_failed(project);
  command_result result;
  const auto drawn = [&](const std::string &name, const number_list &list, const fs::path &file) {
    if (!pictures.draw(name, list, file))
      return false;
    result.file(name, file);
    return true;
  };
  bool well = true;
  if (!p.list.empty()) {
    number_list list;
    std::string name;
    well = read_list(project, p.list, list, name) && drawn(name, list, p.picture.output.out);
    result.inputs.push_back(p.list);
  } else if (p.all) {
    const auto contigs = std::span(pictures.map().contigs).subspan(1);
    for (std::size_t c = 0; well && c < contigs.size(); ++c) {
      fs::path file = p.picture.output.out;
      file.replace_filename(file.stem().string() + "_" + cluster_file_name(contigs[c].name) +
                            file.extension().string());
      check_output(project, file, p.picture.output.force);
      project.frame().progress(static_cast<std::int64_t>(c), static_cast<std::int64_t>(contigs.size()));
      well = drawn(contigs[c].name, number_list(contigs[c].clones), file);
    }
  } else {
    const mapped_contig *contig = pictures.contig(p.contig);
    if (contig == nullptr)
      refuse_contig(p.contig, pictures.map());
    well = drawn(contig->name, number_list(contig->clones), p.picture.output.out);
  }
  if (!well)
    return stopped_or_failed(project);
  result.figure("pictures", result.files.size());
  return result;
}

// ---- net.view ------------------------------------------------------------------------------------------------------

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

// A drawing is drawn as it is; a run is loaded first.
void prepare_picture_verb(verb_run &call, project_state &project) {
  if (std::error_code failed; !fs::is_directory(call.run_folder, failed)) {
    check_input(call.run_folder);
    if (const std::string words = words_of_other_kind(call.run_folder, {input_kind::pajek_net}); !words.empty())
      throw usage_error(words + " A picture is made of a .net file or of a run.");
    for (const char *of_run : {"contig", "all", "list", "colours", "library", "net", "markers"})
      if (call.is_given(of_run))
        throw usage_error(fmt::format("--{} belongs to pictures of a run", of_run));
    call.step("net.picture")->set("file", call.run_folder.string());
    return;
  }
  prepare_run_verb(call, project);
  call.set("library", call.step("library.load")->parameters().find("file")->text()); // the steps run when it is given
}

void add_viewer_rows(command_rows &rows) {
  rows.push_back(
      command_maker<net_picture_parameters>("net.picture")
          .captioned("Picture of a net")
          .purpose("a picture of a drawn net")
          .example("net.picture file=contig.net out=contig.png")
          .parameters([](parameter_list &list, net_picture_parameters &p) {
            list.add("file", p.file, "a drawing of a net").type("FILE.net").needed();
            describe_picture(list, p.picture);
          })
          .checked_by([](const project_state &project, const parts_there &, const net_picture_parameters &p) {
            check_input(p.file);
            check_picture(p.picture);
            check_output(project, p.picture.output.out, p.picture.output.force);
          })
          .runs(run_net_picture)
          .row());
  rows.push_back(command_maker<contig_picture_parameters>("contigs.picture")
                     .captioned("Pictures of nets")
                     .purpose("a picture of the net of a contig, of each contig, or of a list of clones")
                     .example("contigs.picture contig=cl_3 out=cl_3.png")
                     .needs({project_part::library, project_part::contigs})
                     .parameters(describe_contig_picture)
                     .checked_by(check_contig_picture)
                     .runs(run_contig_picture)
                     .row());
  rows.push_back(command_maker<net_layout_parameters>("net.layout")
                     .captioned("Lay out a net")
                     .purpose("places for the nodes of a drawn net")
                     .example("net.layout file=contig.net out=places.tsv layout=multilevel")
                     .parameters(describe_net_layout)
                     .checked_by(check_net_layout)
                     .runs(run_net_layout)
                     .row());
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
