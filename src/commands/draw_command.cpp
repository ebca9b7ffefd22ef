// The command draw: the net of a list of clones as a drawing, with lists marked in it.
#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "drawing/class_clone_net_draw.h"
#include "frame/failures.h"

namespace orb {

namespace fs = std::filesystem;

void draw_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_net_argument(list, options);
  add_list_argument(list, options);
  add_output_options(list, options, "FILE.net");
  list.add("--format", options.format, "net, graphml, or both").one_of({"net", "graphml", "both"});
  draw_wishes &wanted = options.draw;
  const char *marks = "Marks";
  list.add("--mark", wanted.mark_1, "list of clones to be drawn red").type("LIST").in_group(marks);
  list.add("--mark2", wanted.mark_2, "list of clones to be drawn as boxes; green when there is a third list")
      .type("LIST")
      .in_group(marks);
  list.add("--mark3", wanted.mark_3, "list of clones to be drawn as boxes").type("LIST").in_group(marks);
  list.add("--no-burial", wanted.no_burial, "no white border around buried clones").in_group(marks);
  list.add("--relations", wanted.relations, "an arc from each buried clone to the one that holds it").in_group(marks);
  const char *captions = "Captions and colours";
  list.add("--no-names", wanted.no_names, "labels without names").in_group(captions);
  list.add("--no-bands", wanted.no_bands, "labels without numbers of bands").in_group(captions);
  list.add("--numbers", wanted.numbers, "labels of marked clones with their place in the mark's list")
      .in_group(captions);
  list.add("--no-scores", wanted.no_scores, "overlaps without their scores").in_group(captions);
  list.add("--black", wanted.black, "overlaps without colours by score").in_group(captions);
  const char *series = "Several drawings; what tells them apart is put into their names";
  list.add("--cutoffs", wanted.series, "eleven, at rising cutoffs").in_group(series);
  list.add("--several-metrics", wanted.several_metrics, "one each by Sulston_1988, Nof, Lnn and LnnMarkers")
      .in_group(series);
  list.add("--compare-metrics", wanted.compare_metrics, "overlaps by TagsSulston beside those by Sulston_1988")
      .in_group(series);
  list.add("--table", wanted.table, "a table of the overlaps beside the drawing").in_group(series);
  add_library_options(list, options);
  add_metric_options(list, options);
  add_common_options(list, options);
}

static drawing_options drawing_of(const command_options &options) {
  const draw_wishes &wanted = options.draw;
  drawing_options drawing;
  drawing.file = options.out;
  set_drawing_format(options, drawing);
  drawing.caption_name = !wanted.no_names;
  drawing.caption_number = wanted.numbers;
  drawing.caption_n_bands = !wanted.no_bands;
  drawing.mark_buried = !wanted.no_burial;
  drawing.mark_relations = wanted.relations;
  drawing.nets_for_cutoffs = wanted.series;
  drawing.cutoff_by_color = !wanted.black;
  drawing.caption_cutoff = !wanted.no_scores;
  return drawing;
}

static exit_status draw_list(project_state &session, const command_options &options, const command_streams &streams) {
  const draw_wishes &wanted = options.draw;
  number_list list, marks[3];
  std::string name, ignored;
  if (!read_list(session, options.list, list, name))
    return stopped_or_failed(session);
  const fs::path *const files[] = {&wanted.mark_1, &wanted.mark_2, &wanted.mark_3};
  for (std::size_t k = 0; k < 3; ++k)
    if (!files[k]->empty() && !read_list(session, *files[k], marks[k], ignored))
      return stopped_or_failed(session);
  class_clone_net_draw draw(session.signif());
  draw.options_set(drawing_of(options));
  draw.mark_names_set({"mark 1", "mark 2", "mark 3"});
  const fs::path folder = options.out.parent_path().empty() ? fs::path(".") : options.out.parent_path();
  const double burying = session.settings().burying;
  const drawing_kind kind = wanted.compare_metrics ? drawing_kind::two_metrics : drawing_kind::overlaps;
  const bool drawn = wanted.mark_3.empty()
                         ? draw.quick_run_two_lists_of_marking(list, name, folder, burying, -1, marks[0], marks[1],
                                                               wanted.several_metrics, wanted.table, kind)
                         : draw.quick_run_three_lists_of_marking(list, name, folder, burying, -1, marks[0], marks[1],
                                                                 marks[2], wanted.several_metrics, wanted.table, kind);
  if (!drawn)
    return stopped_or_failed(session);
  for (const fs::path &file : draw.files_written())
    streams.results(file.string());
  return exit_status::done;
}

// Several drawings get longer names that begin as the file does: none of these may be there.
static void check_drawings(const command_options &options) {
  if (options.format == "both") // each form has its own extension then
    for (const char *extension : {".net", ".graphml"})
      check_output(fs::path(options.out).replace_extension(extension), options.force);
  if (options.force || !(options.draw.series || options.draw.several_metrics))
    return;
  const fs::path folder = options.out.parent_path().empty() ? fs::path(".") : options.out.parent_path();
  for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
    const fs::path extension = entry.path().extension();
    if ((extension == ".net" || extension == ".graphml") &&
        entry.path().stem().string().starts_with(options.out.stem().string()))
      check_output(entry.path(), false);
  }
}

exit_status draw_command(project_state &session, const command_options &options, const command_streams &streams) {
  check_drawings(options);
  run_record record = record_beside_file(session, options);
  exit_status status = library_and_metric(session, options, record, streams);
  if (status == exit_status::done) {
    for (const fs::path &file :
         {options.net, options.list, options.draw.mark_1, options.draw.mark_2, options.draw.mark_3})
      if (!file.empty())
        record.input_add(file);
    status = load_net(session, options.net, streams);
  }
  if (status != exit_status::done)
    return status;
  record.stage_start("draw");
  status = draw_list(session, options, streams);
  record.stage_end();
  return finish_record(record, status);
}

} // namespace orb
