#include "commands/contig_parameters.h"

namespace orb {

void describe_ordering(parameter_list &list, ordering_parameters &p) {
  const char *group = "Order of the clones";
  list.add("ordering-seconds", p.seconds, "limit of each search for an order").limits(0, 1e6).in_group(group);
  list.add("ordering-steps", p.steps, "limit by steps in its place, the same on every machine")
      .limits(0, 1e12)
      .unset("none")
      .in_group(group);
  list.add("jackknife", p.jackknife, "runs with bands left out by chance").limits(0, 10000).in_group(group);
  list.add("jackknife-alpha", p.jackknife_alpha, "chance of leaving a band out").limits(0, 0.8).in_group(group);
}

ordering_options ordering_of(const ordering_parameters &p) {
  ordering_options wanted;
  wanted.seconds = p.seconds;
  wanted.steps = p.steps;
  wanted.t_JK_N = p.jackknife;
  wanted.t_JK_alpha = p.jackknife_alpha;
  return wanted;
}

void put_ordering(const ordering_parameters &p, command_result &result) {
  if (p.steps > 0)
    result.parameter("ordering_steps", p.steps);
  else
    result.parameter("ordering_seconds", p.seconds);
  result.parameter("jackknife", p.jackknife);
  result.parameter("jackknife_alpha", p.jackknife_alpha);
}

void set_drawing_format(const std::string &format, drawing_options &drawing) {
  drawing.write_pajek = format != "graphml";
  drawing.write_graphml = format != "net";
}

void describe_contig_files(parameter_list &list, contig_file_parameters &p) {
  const char *group = "Files of a contig";
  list.add("no-ordering", p.no_ordering, "no ordering by jackknife").in_group(group);
  list.add("no-pair-tables", p.no_pair_tables, "no tables of pairs").in_group(group);
  list.add("from-net-only", p.from_net_only, "tables of pairs hold the pairs of the net only")
      .asked_else("no")
      .in_group(group);
  list.add("no-drawings", p.no_drawings, "no drawings of nets").in_group(group);
  list.add("drawing-format", p.drawing_format, "of drawings: net, graphml, or both")
      .one_of({"net", "graphml", "both"})
      .in_group(group);
  describe_drawing_panel(list, p.drawing);
  describe_ordering(list, p.ordering);
  describe_lengths(list, p.lengths);
}

contig_files files_of_contigs(process_frame &frame, const contig_file_parameters &p) {
  contig_files files;
  files.pair_tables = !p.no_pair_tables;
  files.drawings = !p.no_drawings;
  files.drawing = p.drawing;
  set_drawing_format(p.drawing_format, files.drawing);
  files.ordering = ordering_of(p.ordering);
  if (!files.pair_tables)
    return files;
  question asked;
  asked.text = "From the net only?";
  asked.by_default = asked.to_go_on = answer::no;
  files.pairs =
      (p.from_net_only ? *p.from_net_only : frame.yes(asked)) ? pairs_of_table::from_net_only : pairs_of_table::all;
  return files;
}

void put_contig_files(const contig_file_parameters &p, command_result &result) {
  result.parameter("ordering", !p.no_ordering);
  result.parameter("pair_tables", !p.no_pair_tables);
  result.parameter("drawings", !p.no_drawings);
  if (!p.no_drawings && p.drawing_format != "net")
    result.parameter("drawing_format", p.drawing_format);
  if (!p.no_ordering)
    put_ordering(p.ordering, result);
}

void put_figures(const contig_figures &figures, command_result &result) {
  result.figure("contigs", figures.contigs.size());
  result.figure("clones_in_contigs", figures.n_clones_in_contigs);
  result.figure("heaps", figures.n_heaps);
  result.figure("clones_in_heaps", figures.n_clones_in_heaps);
  result.figure("clones_alone", figures.n_clones_alone);
  result.figure("N50_bands", figures.N50_bands);
  result.figure("contigs_in_windows", figures.windows.n_contigs);
  result.figure("window_joins", figures.windows.n_joins);
  result.figure("weak_window_joins", figures.windows.n_weak_joins);
}

} // namespace orb
