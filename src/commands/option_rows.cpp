#include "commands/option_rows.h"

namespace orb {

static constexpr double most = 2000000000;

void add_input_argument(option_list &list, command_options &options) {
  list.add("input", options.input, "folder of .sizes files, one such file, or a library file").type("INPUT").needed();
}

void add_library_argument(option_list &list, command_options &options) {
  list.add("input", options.input, "library file, folder of .sizes files, or one such file").type("LIB").needed();
}

void add_net_argument(option_list &list, command_options &options) {
  list.add("net", options.net, "native net").type("NET").needed();
}

void add_list_argument(option_list &list, command_options &options) {
  list.add("list", options.list, "names of clones, one a line").type("LIST").needed();
}

void add_output_options(option_list &list, command_options &options, const char *type) {
  list.add("--out", options.out, "where the result goes").type(type).needed();
  list.add("--force", options.force, "overwrite results that exist");
}

void add_library_options(option_list &list, command_options &options) {
  const char *group = "Reading";
  list.add("--plain-text", options.plain_text, "INPUT is one text file of clones, kept in its own order")
      .in_group(group);
  list.add("--capacity", options.capacity, "number of clones provided for").limits(1, most).in_group(group);
  list.add("--name-format-in", options.name_format_in, "clone name format of the input").limits(0, 8).in_group(group);
  list.add("--name-format-out", options.name_format_out, "clone name format of the library")
      .limits(0, 8)
      .in_group(group);
  add_parameter_options(list, options);
}

void add_parameter_options(option_list &list, command_options &options) {
  list.add("--tolerance", options.tolerance, "tolerance t, in band units").limits(0, 32000).shown_default("12");
  list.add("--tolerance-index", options.tolerance_index, "1 compares lengths within t, 0 compares bin numbers")
      .limits(0, 1)
      .shown_default("1");
  list.add("--gel-length", options.gel_length, "gel length L, in band units").limits(2, 1e7).shown_default("60000");
  list.add("--n-bands", options.n_bands, "N_bands_Sulston").limits(1, 10000000).shown_default("2250");
  list.add("--preset", options.preset, "tolerance, index, gel length and n-bands of a known kind of data")
      .limits(1, 5)
      .shown_default("none");
}

void add_metric_options(option_list &list, command_options &options) {
  const char *group = "Overlaps";
  list.add("--metric", options.metric, "name or index").shown_default("Sulston_1988").in_group(group);
  list.add("--cutoff", options.cutoff, "least score of an overlap")
      .limits(-1e300, 1e300)
      .shown_default("the metric's standard")
      .in_group(group);
  list.add("--burying", options.burying, "burying fraction").limits(0, 1).shown_default("0.9").in_group(group);
  list.add("--markers", options.markers, "markers of clones, or clones of markers").type("FILE").in_group(group);
  list.add("--pvalue-tables", options.pvalue_tables, "folder of tables of simulated p-values, for Nof and Lnn")
      .type("DIR")
      .in_group(group);
}

void add_revision_options(option_list &list, command_options &options) {
  const char *group = "Revision";
  list.add("--rank", options.rank, "radius of a neighbourhood, in steps").in_group(group);
  list.add("--additional-cutoff", options.additional_cutoff, "cutoff of the neighbourhoods of Q-clones")
      .type("X")
      .shown_default("cutoff + 10")
      .in_group(group);
  list.add("--no-overlaps", options.no_overlaps, "leave Q-overlaps in").in_group(group);
  list.add("--no-clones", options.no_clones, "leave Q-clones in").in_group(group);
}

void add_contig_options(option_list &list, command_options &options) {
  const char *group = "Contigs";
  list.add("--max-clones", options.max_clones, "a larger cluster is cut").limits(0, most).in_group(group);
  list.add("--min-size", options.min_size, "a smaller cluster is a heap").limits(0, most).in_group(group);
  list.add("--max-width", options.max_width, "a wider cluster is cut").limits(0, most).in_group(group);
  list.add("--step", options.step, "rise of the cutoff a level").limits(0, 1e6).in_group(group);
  list.add("--steps", options.steps, "levels above the base").limits(0, 10000).in_group(group);
  add_contig_file_options(list, options);
}

void add_contig_file_options(option_list &list, command_options &options) {
  const char *group = "Files of a contig";
  list.add("--no-ordering", options.no_ordering, "no ordering by jackknife").in_group(group);
  list.add("--no-pair-tables", options.no_pair_tables, "no tables of pairs").in_group(group);
  list.add("--no-drawings", options.no_drawings, "no drawings of nets").in_group(group);
  list.add("--drawing-format", options.format, "of drawings: net, graphml, or both")
      .one_of({"net", "graphml", "both"})
      .in_group(group);
  list.add("--table-format", options.table_format, "columns of pair tables, see orb table --help")
      .limits(0, 4)
      .shown_default("0")
      .in_group(group);
}

void add_ordering_options(option_list &list, command_options &options) {
  const char *group = "Order of the clones";
  list.add("--ordering-seconds", options.ordering_seconds, "limit of each search for an order")
      .limits(0, 1e6)
      .in_group(group);
  list.add("--ordering-steps", options.ordering_steps, "limit by steps in its place, the same on every machine")
      .limits(0, 1e12)
      .shown_default("none")
      .in_group(group);
  list.add("--jackknife", options.jackknife, "runs with bands left out by chance").limits(0, 10000).in_group(group);
  list.add("--jackknife-alpha", options.jackknife_alpha, "chance of leaving a band out").limits(0, 0.8).in_group(group);
}

void add_common_options(option_list &list, command_options &options) {
  const char *group = "General";
  list.add("-t,--threads", options.threads, "worker threads; the result is the same for any number")
      .limits(0, 4096)
      .shown_default("all")
      .in_group(group);
  list.add("--seed", options.seed, "of all chance").in_group(group);
  list.add("-q,--quiet", options.quiet, "messages only").in_group(group);
  list.add("-v,--verbose", options.verbose, "counters and log lines too").in_group(group);
  list.add("--log", options.log, "folder of ORB.log").type("DIR").in_group(group);
  list.add("--answers", options.answers, "file of answers to questions: prompt start, tab, answer")
      .type("FILE")
      .in_group(group);
  list.add("--yes", options.yes, "answer questions so that the work goes on").in_group(group);
}

} // namespace orb
