// Drawings of the nets of lists of clones.
#include "commands/command_table.h"
#include "commands/contig_parameters.h"
#include "commands/row_steps.h"
#include "drawing/class_clone_net_draw.h"
#include "drawing/mark_vertices.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace fs = std::filesystem;

// ---- the control panel ----

// The switches of every drawing.
static void describe_labels(parameter_list &list, drawing_options &p, const char *group) {
  list.add("drawing-names", p.caption_name, "labels with names").captioned("clone name").in_group(group);
  list.add("drawing-numbers", p.caption_number, "labels of marked clones with their place in the mark's list")
      .captioned("local clone number")
      .in_group(group);
  list.add("drawing-bands", p.caption_n_bands, "labels with numbers of bands")
      .captioned("#bands in clone")
      .in_group(group);
  list.add("drawing-burial", p.mark_buried, "a white border around buried clones")
      .captioned("Mark buried clones")
      .in_group(group);
  list.add("drawing-relations", p.mark_relations, "an arc from each buried clone to the one that holds it")
      .captioned("Mark relations")
      .in_group(group);
  list.add("drawing-scores", p.caption_cutoff, "overlaps with their scores")
      .captioned("Cutoff by caption")
      .in_group(group);
}

void describe_drawing_panel(parameter_list &list, drawing_options &p) {
  const char *group = "Drawings";
  describe_labels(list, p, group);
  list.add("drawing-cutoffs", p.nets_for_cutoffs, "eleven drawings, at rising cutoffs")
      .captioned("Net structure visualization ")
      .in_group(group);
  list.add("drawing-colours", p.cutoff_by_color, "overlaps in colours by score")
      .captioned("Cutoff by color")
      .in_group(group);
}

namespace {

// ---- draw.list ----

struct draw_parameters {
  fs::path list, out;
  bool force = false;
  std::string format;              // "net", "graphml" or "both"; empty: by the ending of the file
  fs::path mark_1, mark_2, mark_3; // lists of clones
  std::int32_t kind = 3;           // what mark sets, when the list marks in another way than usual
  std::int32_t value = 7;
  std::string prefix;
  bool no_names = false, numbers = false, no_bands = false;
  bool no_burial = false, relations = false;
  bool black = false, no_scores = false;
  bool series = false, several_metrics = false, compare_metrics = false, table = false;
};

void describe_draw(parameter_list &list, draw_parameters &p) {
  list.add("list", p.list, "names of clones, one a line").type("LIST").needed();
  list.add("out", p.out, "where the result goes").type("FILE.net").needed();
  list.add("force", p.force, "overwrite results that exist");
  list.add("format", p.format, "net, graphml, or both")
      .one_of({"net", "graphml", "both"})
      .unset("by the ending of the file");
  const char *marks = "Marks";
  list.add("mark", p.mark_1, "list of clones to be drawn red").type("LIST").in_group(marks);
  list.add("mark2", p.mark_2, "list of clones to be drawn as boxes; green when there is a third list")
      .type("LIST")
      .in_group(marks);
  list.add("mark3", p.mark_3, "list of clones to be drawn as boxes").type("LIST").in_group(marks);
  list.add(
          "mark-kind", p.kind,
          "what mark sets in place of red: 1 colour of the border, 2 size, 3 colour of the inside, 4 shape, 5 nothing, "
          "6 the caption: the clone's name, and no other clone has one")
      .limits(1, 6)
      .in_group(marks);
  list.add("mark-value", p.value, "the colour, size or shape that mark-kind sets").limits(0, 32767).in_group(marks);
  list.add("mark-prefix", p.prefix, "text behind the captions of the clones that mark names").in_group(marks);
  list.add("no-burial", p.no_burial, "no white border around buried clones").in_group(marks);
  list.add("relations", p.relations, "an arc from each buried clone to the one that holds it").in_group(marks);
  const char *captions = "Captions and colours";
  list.add("no-names", p.no_names, "labels without names").in_group(captions);
  list.add("no-bands", p.no_bands, "labels without numbers of bands").in_group(captions);
  list.add("numbers", p.numbers, "labels of marked clones with their place in the mark's list").in_group(captions);
  list.add("no-scores", p.no_scores, "overlaps without their scores").in_group(captions);
  list.add("black", p.black, "overlaps without colours by score").in_group(captions);
  const char *series = "Several drawings; what tells them apart is put into their names";
  list.add("cutoffs", p.series, "eleven, at rising cutoffs").in_group(series);
  list.add("several-metrics", p.several_metrics, "one each by Sulston_1988, Nof, Lnn and LnnMarkers").in_group(series);
  list.add("compare-metrics", p.compare_metrics, "overlaps by TagsSulston beside those by Sulston_1988")
      .in_group(series);
  list.add("table", p.table, "a table of the overlaps beside the drawing").in_group(series);
}

// Throws usage_error for an ending that names no form.
std::string format_of(const draw_parameters &p) {
  if (!p.format.empty())
    return p.format;
  const std::string ending = p.out.extension().string();
  if (ending != ".net" && ending != ".graphml")
    throw usage_error("--out: " + (ending.empty() ? "no ending" : "the ending " + ending) +
                      " names no form of drawings; .net and .graphml do, or --format says it");
  return ending.substr(1);
}

bool has_usual_marks(const draw_parameters &p) {
  const draw_parameters standard;
  return p.kind == standard.kind && p.value == standard.value && p.prefix.empty();
}

// Several drawings get longer names that begin as the file does: none of these may be there.
void check_drawings(const project_state &project, const draw_parameters &p) {
  if (format_of(p) == "both") { // each form has its own extension then
    for (const char *extension : {".net", ".graphml"})
      check_output(project, fs::path(p.out).replace_extension(extension), p.force);
  }
  check_output(project, p.out, p.force);
  if (p.force || !(p.series || p.several_metrics))
    return;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder_of(p.out))) {
    const fs::path extension = entry.path().extension();
    if ((extension == ".net" || extension == ".graphml") &&
        entry.path().stem().string().starts_with(p.out.stem().string()))
      check_output(project, entry.path(), false);
  }
}

void check_draw(const project_state &project, const parts_there &there, const draw_parameters &p) {
  if (p.several_metrics && !there.has(project_part::pvalue_tables))
    throw usage_error("--several-metrics needs tables of p-values: without them Nof, Lnn and LnnMarkers are 0; "
                      "--pvalue-tables loads them");
  for (const fs::path &file : {p.list, p.mark_1, p.mark_2, p.mark_3})
    check_input(file);
  if (!has_usual_marks(p) && (p.mark_1.empty() || !p.mark_2.empty() || !p.mark_3.empty()))
    throw usage_error("--mark-kind, --mark-value and --mark-prefix belong to --mark alone");
  check_drawings(project, p);
}

drawing_options drawing_of(const draw_parameters &p) {
  drawing_options drawing;
  drawing.file = p.out;
  set_drawing_format(format_of(p), drawing);
  drawing.caption_name = !p.no_names;
  drawing.caption_number = p.numbers;
  drawing.caption_n_bands = !p.no_bands;
  drawing.mark_buried = !p.no_burial;
  drawing.mark_relations = p.relations;
  drawing.nets_for_cutoffs = p.series;
  drawing.cutoff_by_color = !p.black;
  drawing.caption_cutoff = !p.no_scores;
  return drawing;
}

// A mark of another kind than the quick runs know.
bool draw_with_mark(project_state &project, const draw_parameters &p, class_clone_net_draw &draw,
                    const number_list &list, const std::string &name, const number_list &mark, drawing_kind kind) {
  draw.start_nets_of_clones_draw(list.count(), list, name, folder_of(p.out));
  draw.run_create_caption_for_vertex_corresponding_to_clone(project.database());
  draw.mark_clones(mark, static_cast<mark_kind>(p.kind), p.value, p.prefix, p.numbers, "mark 1");
  return draw.print_files_for_drawing_net(project.rule().burying, p.several_metrics, -1, p.table, kind,
                                          project.database());
}

bool draw_list(project_state &project, const draw_parameters &p, class_clone_net_draw &draw, const number_list &list,
               const std::string &name, const std::array<number_list, 3> &marks) {
  const drawing_kind kind = p.compare_metrics ? drawing_kind::two_metrics : drawing_kind::overlaps;
  const fs::path folder = folder_of(p.out);
  const double burying = project.rule().burying;
  if (!has_usual_marks(p))
    return draw_with_mark(project, p, draw, list, name, marks[0], kind);
  return p.mark_3.empty() ? draw.quick_run_two_lists_of_marking(list, name, folder, burying, -1, marks[0], marks[1],
                                                                p.several_metrics, p.table, kind)
                          : draw.quick_run_three_lists_of_marking(list, name, folder, burying, -1, marks[0], marks[1],
                                                                  marks[2], p.several_metrics, p.table, kind);
}

command_result result_of_drawing(project_state &project, const std::vector<fs::path> &files, bool drawn) {
  command_result result = result_of(project, drawn);
  for (const fs::path &file : files) {
    result.file(file.filename().string(), file);
    result.lines.push_back(file.string());
  }
  return result;
}

command_result run_draw(project_state &project, const draw_parameters &p) {
  work_in(project, folder_of(p.out));
  number_list list;
  std::array<number_list, 3> marks;
  std::string name, ignored;
  if (!read_list(project, p.list, list, name))
    return stopped_or_failed(project);
  const fs::path *const files[] = {&p.mark_1, &p.mark_2, &p.mark_3};
  for (std::size_t k = 0; k < marks.size(); ++k)
    if (!files[k]->empty() && !read_list(project, *files[k], marks[k], ignored))
      return stopped_or_failed(project);
  class_clone_net_draw draw(project.signif(), project.rule());
  draw.options_set(drawing_of(p));
  draw.mark_names_set({"mark 1", "mark 2", "mark 3"});
  const bool drawn = draw_list(project, p, draw, list, name, marks);
  command_result result = result_of_drawing(project, draw.files_written(), drawn);
  for (const fs::path &file : {p.list, p.mark_1, p.mark_2, p.mark_3})
    if (!file.empty())
      result.inputs.push_back(file);
  return result;
}

// ---- the runs that ask for their files ----

struct runs_parameters {
  fs::path list, mark_1, mark_2, out, folder;
  drawing_options panel;
};

void describe_list_and_folder(parameter_list &list, runs_parameters &p) {
  list.add("list", p.list, "clones of the net, one a line; without it a dialog asks").type("LIST");
  list.add("out", p.out, "folder of the drawings").type("DIR");
}

void describe_runs(parameter_list &list, runs_parameters &p) {
  describe_list_and_folder(list, p);
  describe_drawing_panel(list, p.panel);
}

void describe_marked(parameter_list &list, runs_parameters &p) {
  describe_runs(list, p);
  list.add("mark", p.mark_1, "list of clones to be drawn red").type("LIST");
  list.add("mark2", p.mark_2, "list of clones to be drawn as boxes").type("LIST");
  list.add("mark-list", p.panel.mark_MTP, "ask for a list of clones to mark").captioned("Mark list of clones");
  list.add("mark-two-lists", p.panel.mark_two_lists, "ask for two lists of clones to mark").captioned("Mark two lists");
}

// Its cutoffs are its own, and colours tell the metrics apart.
void describe_compare(parameter_list &list, runs_parameters &p) {
  describe_list_and_folder(list, p);
  describe_labels(list, p.panel, "Drawings");
  list.add("mark", p.mark_1, "list of clones to be drawn red; without it a question comes").type("LIST");
}

void describe_folder(parameter_list &list, runs_parameters &p) {
  describe_runs(list, p);
  list.add("folder", p.folder, "folder of lists, each marked in a drawing of its own; without it a dialog asks")
      .type("DIR");
}

void check_runs(const project_state &, const parts_there &, const runs_parameters &p) {
  for (const fs::path &file : {p.list, p.mark_1, p.mark_2, p.folder})
    check_input(file);
}

template <class Work> command_result with_drawing(project_state &project, const runs_parameters &p, const Work &work) {
  work_in(project, p.out);
  class_clone_net_draw draw(project.signif(), project.rule());
  drawing_options panel = p.panel;
  panel.mark_two_lists = panel.mark_two_lists || !p.mark_2.empty();
  panel.mark_MTP = panel.mark_MTP || !p.mark_1.empty();
  panel.nets_for_cutoffs = panel.nets_for_cutoffs || project.settings().several_metrics_and_cutoffs;
  draw.options_set(panel);
  const bool drawn = work(draw);
  return result_of_drawing(project, draw.files_written(), drawn);
}

command_result run_marked(project_state &project, const runs_parameters &p) {
  return with_drawing(project, p, [&](class_clone_net_draw &draw) {
    return draw.list_with_marking_quick_run(p.list, p.mark_1, p.mark_2, project.frame().working_folder_get(),
                                            project.rule().burying, -1, project.database());
  });
}

command_result run_compare(project_state &project, const runs_parameters &p) {
  return with_drawing(project, p, [&](class_clone_net_draw &draw) {
    return draw.compare_nets_for_two_metrics_quick_run(p.list, p.mark_1, project.frame().working_folder_get(),
                                                       project.database());
  });
}

// A folder stands for any of its files.
fs::path any_file_of(const fs::path &folder) {
  std::error_code failed;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder, failed))
    if (entry.is_regular_file())
      return entry.path();
  return folder;
}

command_result run_each_list(project_state &project, const runs_parameters &p) {
  return with_drawing(project, p, [&](class_clone_net_draw &draw) {
    return draw.nets_with_shown_list_of_clones(p.list, p.folder.empty() ? fs::path() : any_file_of(p.folder),
                                               project.database());
  });
}

// ---- draw.vertices ----

struct vertices_parameters {
  fs::path list, out;
  std::vector<fs::path> marks; // texts of vertex_mark
  std::optional<double> cutoff;
  bool force = false;
};

void describe_vertices(parameter_list &list, vertices_parameters &p) {
  list.add("list", p.list, "clones of the net, one a line; without it a dialog asks").type("LIST");
  list.add("mark", p.marks,
           "how the clones of a list are marked: color=Red=LIST, border=Red=LIST, size=3=LIST, shape=box=LIST, "
           "caption=TEXT=LIST, or name==LIST, which leaves the other clones without names; several are done in turn")
      .type("MARK");
  list.add("cutoff", p.cutoff, "of the overlaps that are drawn").limits(0, 1e6).unset("that of the session");
  list.add("out", p.out, "the drawing").type("FILE.net").unset("a new folder in the working folder");
  list.add("force", p.force, "overwrite results that exist");
}

void check_vertices(const project_state &project, const parts_there &, const vertices_parameters &p) {
  check_input(p.list);
  for (const fs::path &text : p.marks) {
    const std::optional<vertex_mark> mark = vertex_mark::of(text.string());
    if (!mark)
      throw usage_error("--mark " + text.string() +
                        ": wanted is KIND=VALUE=LIST with the kind color, border, size, shape, caption or name, and a "
                        "colour, size or shape that there is");
    check_input(mark->file);
    project.files().reads(mark->file);
  }
  if (!p.out.empty())
    check_output(project, p.out, p.force);
}

command_result run_vertices(project_state &project, const vertices_parameters &p) {
  if (!p.out.empty())
    work_in(project, folder_of(p.out));
  form_mark_vertices form(project.signif(), project.rule());
  if (p.cutoff)
    form.t_cutoff = number_text_shortest(*p.cutoff);
  if (!form.start(p.list))
    return stopped_or_failed(project);
  for (const fs::path &mark : p.marks)
    if (!form.mark(*vertex_mark::of(mark.string())))
      return stopped_or_failed(project);
  const bool drawn = form.ok(p.out);
  command_result result = result_of_drawing(project, form.files_written(), drawn);
  result.inputs.push_back(form.list_file());
  for (const vertex_mark &mark : form.marks())
    result.inputs.push_back(mark.file);
  return result;
}

} // namespace

void add_drawing_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<draw_parameters>("draw.list")
                     .captioned("Net of a list of clones")
                     .purpose("draw the net of a list of clones, with lists marked in it")
                     .example("draw.list list=contig.txt out=contig.net mark=tiling_path.txt")
                     .needs({part::library})
                     .parameters(describe_draw)
                     .checked_by(check_draw)
                     .runs(run_draw)
                     .row());
  rows.push_back(command_maker<runs_parameters>("draw.marked")
                     .captioned("Net of a set of clones")
                     .purpose("draw a list under the standard names, with one or two lists marked")
                     .example("draw.marked list=contig.txt mark=tiling_path.txt out=drawings")
                     .needs({part::library})
                     .parameters(describe_marked)
                     .checked_by(check_runs)
                     .runs(run_marked)
                     .row());
  rows.push_back(command_maker<runs_parameters>("draw.two_metrics")
                     .captioned("Comparison of nets for two metrics")
                     .purpose("overlaps by TagsSulston beside those by Sulston_1988")
                     .example("draw.two_metrics list=contig.txt out=drawings")
                     .needs({part::library})
                     .parameters(describe_compare)
                     .checked_by(check_runs)
                     .runs(run_compare)
                     .row());
  rows.push_back(command_maker<runs_parameters>("draw.folder")
                     .captioned("Nets with shown lists of clones")
                     .purpose("draw a list once for each list of a folder, which is marked")
                     .example("draw.folder list=contig.txt folder=lists out=drawings")
                     .needs({part::library})
                     .parameters(describe_folder)
                     .checked_by(check_runs)
                     .runs(run_each_list)
                     .row());
  rows.push_back(
      command_maker<vertices_parameters>("draw.vertices")
          .captioned("Mark vertices")
          .purpose("draw the net of a list with any number of lists marked in it, each in its way")
          .example("draw.vertices list=contig.txt mark=color=Red=tiling_path.txt mark=shape=box=doubtful.txt")
          .needs({part::library})
          .parameters(describe_vertices)
          .checked_by(check_vertices)
          .runs(run_vertices)
          .row());
}

} // namespace orb
