// Pictures of nets: of a drawing, of contigs, of a list of clones.
#include <algorithm>
#include <fmt/format.h>

#include "clustering/cluster_file_name.h"
#include "clustering/contig_map.h"
#include "commands/clone_colours.h"
#include "commands/command_table.h"
#include "commands/contig_choice.h"
#include "commands/open_nets.h"
#include "commands/picture_size.h"
#include "commands/row_steps.h"
#include "commands/verbs.h"
#include "drawing/cairo_surface.h"
#include "drawing/polled_surface.h"
#include "drawing/scaled_surface.h"
#include "frame/numbers.h"
#include "project/input_kind.h"
#include "viewer/net_sheet.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

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

// False when stopped: then there is no file.
bool draw_picture(project_state &project, const class_net_elng &net, net_sheet sheet, const picture_parameters &p,
                  const fs::path &file) {
  constexpr std::int32_t many = 1500; // nodes that would hide each other
  if (net.n_vertices_get() > many)
    sheet.look.least_half_size = 1.5f;
  picture_file picture(file, [&project] { project.frame().yield(); });
  picture.start_page(picture_size_of(p.size));
  const drawing_surface surface = polled_surface(picture.surface(), [&project] { return project.frame().goes_on(); });
  const paint_faults faults = draw_net_sheet(net, sheet, scaled_surface(surface, static_cast<float>(p.scale)));
  if (project.frame().stop_requested_get())
    return false;
  picture.commit();
  if (faults.n_vertices > 0)
    project.frame().alarm("Vertex #" + std::to_string(faults.first_vertex) + " was not drawn properly!");
  if (faults.n_edges > 0)
    project.frame().alarm("Edge #" + std::to_string(faults.first_edge) + " was not drawn properly!");
  return true;
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
    return stopped_or_failed(project);
  net_sheet sheet;
  sheet.title = fmt::format("{}: {} nodes, {} edges", net.net_name_get(), net.n_vertices_get(), net.n_edges_get());
  sheet.look = look_of(p.picture);
  if (!draw_picture(project, net, sheet, p.picture, p.picture.output.out))
    return stopped_or_failed(project);
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
    return draw_picture(project_, net, sheet, p_.picture, file);
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
      refuse_contig(p.contig, names_of_contigs(*project.database().contigs()));
    well = drawn(contig->name, number_list(contig->clones), p.picture.output.out);
  }
  if (!well)
    return stopped_or_failed(project);
  result.figure("pictures", result.files.size());
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

void add_picture_rows(command_rows &rows) {
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
}

} // namespace orb
