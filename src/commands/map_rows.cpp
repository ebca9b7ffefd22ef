// Pictures of contigs.
#include <fmt/format.h>

#include <algorithm>

#include "commands/command_table.h"
#include "commands/contig_choice.h"
#include "commands/contig_map_values.h"
#include "commands/picture_size.h"
#include "commands/row_steps.h"
#include "commands/verbs.h"
#include "contigs/run_folder.h"
#include "drawing/cairo_surface.h"
#include "reports/overview_picture.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct map_parameters {
  std::string contig;
  bool overview = false;
  std::string size = "1400x990"; // the shape of a landscape sheet of A4
  output_wishes output;
};

void describe_map(parameter_list &list, map_parameters &p) {
  list.add("contig", p.contig, "the contig to be drawn");
  list.add("overview", p.overview, "all contigs on one sheet, to scale");
  list.add("size", p.size, "width of the picture and height of a PDF's page, pixels; PNG and SVG are as high as needed")
      .type("WxH");
  describe_output(list, p.output, "FILE.png|.svg|.pdf");
}

// ---- checks ----

map_format format_of(const map_parameters &p) {
  const surface_size size = picture_size_of(p.size);
  return {size.width, size.height, picture_form_of(p.output.out) == picture_form::pdf};
}

[[noreturn]] void refuse_no_wish(const std::vector<std::string> &names) {
  throw usage_error("one of --contig NAME and --overview is needed. " + text_of_some_contigs(names));
}

void check_contig(const map_parameters &p, const class_FPCto_import &registry) {
  const std::vector<std::string> names = names_of_contigs(registry);
  if (p.contig.empty())
    refuse_no_wish(names);
  if (std::find(names.begin(), names.end(), p.contig) == names.end())
    refuse_contig(p.contig, names);
}

void check_map(const project_state &project, const parts_there &, const map_parameters &p) {
  if (!picture_form_of(p.output.out))
    throw usage_error("--out " + p.output.out.string() +
                      ": the ending tells the form of the picture: .png, .svg or .pdf");
  format_of(p);
  if (p.overview && !p.contig.empty())
    throw usage_error("--contig and --overview are two pictures: give one of them");
  if (!p.overview && project.has(project_part::contigs))
    check_contig(p, *project.database().contigs());
  check_output(project, p.output.out, p.output.force);
}

// ---- drawing ----

// Page by page into the file; false when stopped.
template <class Page>
bool draw_pages(process_frame &frame, picture_file &picture, const std::vector<Page> &pages,
                void (*draw)(const Page &, const drawing_surface &)) {
  for (std::size_t i = 0; i < pages.size(); ++i) {
    frame.progress(static_cast<std::int64_t>(i), static_cast<std::int64_t>(pages.size()));
    if (!frame.goes_on())
      return false;
    picture.start_page(pages[i].size);
    draw(pages[i], picture.surface());
  }
  picture.commit();
  return true;
}

command_result ended(project_state &project, const map_parameters &p, bool drawn, std::size_t n_pages) {
  if (!drawn)
    return stopped_or_failed(project);
  command_result result;
  result.parameter("size", p.size);
  result.file("map", p.output.out);
  result.figure("pages", n_pages);
  return result;
}

command_result draw_overview(project_state &project, const map_parameters &p, const contig_map &map) {
  process_frame &frame = project.frame();
  if (!frame.goes_on())
    return stopped_or_failed(project);
  const overview_values values = overview_values_of(map);
  if (!frame.goes_on())
    return stopped_or_failed(project);
  picture_file picture(p.output.out, [&frame] { frame.yield(); });
  const std::vector<overview_page> pages = lay_out_overview(values, format_of(p), picture.surface().text_width);
  command_result result = ended(project, p, draw_pages(frame, picture, pages, draw_overview_page), pages.size());
  result.figure("contigs", values.contigs.size());
  return result;
}

command_result draw_contig(project_state &project, const map_parameters &p, const contig_map &map) {
  const std::size_t c = place_in_map(map, p.contig);
  if (c == 0) // its clones lie in other ones too
    return command_result::ended(exit_status::run_failed, "Contig " + p.contig + " has no clones of its own.");
  const mapped_contig &contig = map.contigs[c];
  if (!contig.is_placed)
    return command_result::ended(exit_status::run_failed,
                                 "Contig " + contig.name + " has no coordinates: there is nothing to draw.");
  contig_values values;
  if (!contig_values_for(project, map, c, values))
    return stopped_or_failed(project);
  if (!project.has(project_part::net))
    project.frame().note("No net is known: nothing is said of buried clones and Q-clones.");
  picture_file picture(p.output.out, [&project] { project.frame().yield(); });
  const std::vector<map_page> pages = lay_out_contig(values, format_of(p), picture.surface().text_width);
  command_result result = ended(project, p, draw_pages(project.frame(), picture, pages, draw_map_page), pages.size());
  result.parameter("contig", p.contig);
  result.figure("clones", contig.clones.size());
  return result;
}

command_result run_map(project_state &project, const map_parameters &p) {
  contig_map map;
  if (!make_contig_map_of(project, map))
    return stopped_or_failed(project);
  return (p.overview ? draw_overview : draw_contig)(project, p, map);
}

} // namespace

// What is to be drawn is asked for before anything is loaded.
void prepare_map_verb(verb_run &call, project_state &project) {
  prepare_run_verb(call, project);
  if (call.is_given("contig") || call.flag("overview"))
    return;
  run_folder run;
  if (!read_run_folder(project.frame(), call.step("contigs.load")->parameters().find("folder")->text(), run))
    throw program_end("a damaged run", exit_status::run_failed); // told already
  std::vector<std::string> names;
  for (const cluster_row &cluster : run.clusters)
    if (cluster.n_clones > 1)
      names.push_back(cluster.name);
  refuse_no_wish(names);
}

void add_map_rows(command_rows &rows) {
  rows.push_back(command_maker<map_parameters>("contigs.draw_map")
                     .captioned("Draw contigs")
                     .purpose("a picture of a contig, or of all of them")
                     .example("contigs.draw_map contig=cl_3 out=cl_3.png")
                     .needs({project_part::library, project_part::contigs})
                     .parameters(describe_map)
                     .checked_by(check_map)
                     .runs(run_map)
                     .row());
}

} // namespace orb
