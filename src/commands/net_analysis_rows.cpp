// What is asked of a net and its clusters: parts of it, clones around a list, the net of clusters.
#include <fmt/format.h>
#include <map>

#include "clustering/nets_and_clusters.h"
#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "contigs/net_of_clusters.h"
#include "drawing/plain_net_drawing.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "net/clone_net_questions.h"
#include "net/derived_nets.h"
#include "net/relevant_clones.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct list_and_output {
  fs::path list;
  output_wishes output;
};

void describe_disconnect(parameter_list &list, list_and_output &p) {
  list.add("list", p.list, "clones to disconnect, one a line").type("LIST").needed();
  describe_output(list, p.output, "NET.ORBns", false);
}

void check_disconnect(const project_state &project, const parts_there &, const list_and_output &p) {
  check_input(p.list);
  if (!p.output.out.empty())
    check_output(project, p.output.out, p.output.force);
}

command_result run_disconnect(project_state &project, const list_and_output &p) {
  number_list list;
  std::string name;
  fs::path written = p.output.out;
  if (!read_list(project, p.list, list, name) || !create_sub_net_list_disconnect(project.signif(), list, written))
    return stopped_or_failed(project);
  command_result result;
  result.inputs.push_back(p.list);
  result.file("net", written);
  return result;
}

struct unite_parameters {
  fs::path list, united, out;
};

void describe_unite(parameter_list &list, unite_parameters &p) {
  list.add("list", p.list, "all clones of the net; without it a dialog asks").type("LIST");
  list.add("united", p.united, "clones that become one vertex; without it a dialog asks").type("LIST");
  list.add("out", p.out, "folder of net_SuperClone.net").type("DIR");
}

void check_unite(const project_state &, const parts_there &, const unite_parameters &p) {
  check_input(p.list);
  check_input(p.united);
}

command_result run_unite(project_state &project, const unite_parameters &p) {
  work_in(project, p.out);
  fs::path written;
  if (!create_sub_net_list_into_one_vertex_run(project.signif(), project.rule(), {p.list, p.united}, written))
    return stopped_or_failed(project);
  command_result result;
  result.file("drawing", written);
  return result;
}

struct within_parameters {
  fs::path out;
  std::optional<double> max_size;
};

void describe_within(parameter_list &list, within_parameters &p) {
  list.add("out", p.out, "folder of signif_overlaps_clust.txt").type("DIR");
  list.add("max-size", p.max_size, "of a cluster that is looked into, in clones")
      .limits(2, 2000000000)
      .unset("asked, else all");
}

command_result run_within(project_state &project, const within_parameters &p) {
  work_in(project, p.out);
  net_within_clusters_summary found;
  if (!create_file_with_significant_connections_within_clusters_text(project.context(), *project.database().contigs(),
                                                                     project.rule(), {p.max_size}, found))
    return stopped_or_failed(project);
  command_result result;
  result.file("text_net", found.file);
  result.figure("clones", found.n_clones);
  result.figure("overlaps", found.n_overlaps);
  project.frame().note(fmt::format("Overlaps within clusters: {} of {} clones.",
                                   number_text_thousands(found.n_overlaps), number_text_thousands(found.n_clones)));
  return result;
}

struct connections_parameters {
  fs::path out;
  std::optional<double> cutoff;
};

void describe_connections(parameter_list &list, connections_parameters &p) {
  list.add("out", p.out, "folder of the list").type("DIR");
  list.add("connection-cutoff", p.cutoff, "least score of an overlap that counts")
      .limits(-1e300, 1e300)
      .asked_else("15");
}

command_result run_connections(project_state &project, const connections_parameters &p) {
  work_in(project, p.out);
  number_list list;
  fs::path file;
  if (!create_list_of_clones_with_connectionOutFromCluster(project.context(), project.signif().net(),
                                                           *project.database().contigs(), p.cutoff, list, file))
    return stopped_or_failed(project);
  command_result result;
  result.file("list", file);
  result.figure("clones", list.count());
  return result;
}

struct clusters_parameters {
  fs::path folder, out;
  std::string caption;
  std::int32_t min_size = -1;
};

void describe_clusters(parameter_list &list, clusters_parameters &p) {
  list.add("folder", p.folder, "folder of lists of clones, each a cluster; without it a dialog asks").type("DIR");
  list.add("out", p.out, "folder of the files").type("DIR");
  list.add("caption", p.caption, "begin of the names of the united clusters' files").unset("asked");
  list.add("min-size", p.min_size, "proposed for the lists of united clusters; below 0 the standard size")
      .limits(-1, 2000000000);
}

void check_clusters(const project_state &, const parts_there &, const clusters_parameters &p) {
  check_input(p.folder);
}

command_result run_clusters(project_state &project, const clusters_parameters &p) {
  work_in(project, p.out);
  net_of_clusters made;
  if (!create_net_of_clusters(project.signif(), project.rule(), {p.folder, p.caption, p.min_size}, made))
    return stopped_or_failed(project);
  command_result result;
  for (const fs::path &file : made.files_written)
    result.file(file.filename().string(), file);
  result.figure("clusters", made.names.size() - 1);
  result.figure("united", made.n_united);
  return result;
}

struct ranks_parameters {
  fs::path list, interesting, out;
};

void describe_ranks(parameter_list &list, ranks_parameters &p) {
  list.add("list", p.list, "clones of the contig; without it a dialog asks").type("LIST");
  list.add("interesting", p.interesting, "clones whose ranks are told; without it a dialog asks").type("LIST");
  list.add("out", p.out, "folder of the files").type("DIR");
}

void check_ranks(const project_state &, const parts_there &, const ranks_parameters &p) {
  check_input(p.list);
  check_input(p.interesting);
}

command_result run_ranks(project_state &project, const ranks_parameters &p) {
  work_in(project, p.out);
  ranks_of_interesting_clones found;
  if (!contig_test_Ranks_relative_to_start_of_diam_path_run(project.signif(), project.rule(), p.list, p.interesting,
                                                            found))
    return stopped_or_failed(project);
  command_result result;
  for (const fs::path &file : found.files_written)
    result.file(file.filename().string(), file);
  return result;
}

struct grow_parameters {
  fs::path list, out, candidates;
  std::optional<std::int32_t> rank, max_rank;
  std::optional<bool> compare;
  bool without_net = false;
  std::optional<double> cutoff;
};

void describe_grow(parameter_list &list, grow_parameters &p) {
  list.add("list", p.list, "clones to begin with").type("LIST").needed();
  list.add("out", p.out, "folder of the list").type("DIR");
  list.add("rank", p.rank, "steps from the list; below 0 without limit").limits(-1, 2000000000).asked_else("1");
  list.add("max-rank", p.max_rank, "only clones within so many steps are printed; below 0 all that were found")
      .limits(-1, 2000000000)
      .asked_else("-1");
  list.add("compare", p.compare, "tell the contigs of the clones that were found, where contigs are loaded")
      .asked_else("no");
  list.add("without-net", p.without_net, "compare clones anew, in place of the loaded net's overlaps");
  list.add("candidates", p.candidates, "only these clones may be added, with without-net").type("LIST");
  list.add("overlap-cutoff", p.cutoff, "in the net only overlaps of at least this score")
      .limits(-1e300, 1e300)
      .unset("all overlaps");
}

void check_grow(const project_state &, const parts_there &there, const grow_parameters &p) {
  check_input(p.list);
  check_input(p.candidates);
  if (!p.without_net && !there.has(project_part::net))
    throw usage_error("net.grow needs a net of overlaps, or without-net");
  if (!p.candidates.empty() && !p.without_net)
    throw usage_error("candidates belong to without-net");
}

struct found_clones {
  number_list list, ranks; // ranks(i): steps from the start to list(i)
};

// In the net: within so many steps; a limit that isn't there is more steps than there are clones.
void grow_in_net(project_state &project, const grow_parameters &p, std::int32_t rank, const number_list &start,
                 found_clones &found) {
  rank = rank < 0 ? project.database().total_number_of_clones_get() : rank;
  if (p.cutoff)
    create_relevant_clones_using_net2(project.context(), start, rank, *p.cutoff, false, project.signif().net(),
                                      found.list, found.ranks);
  else
    create_relevant_clones_using_net(project.context(), start, rank, false, project.signif().net(), found.list,
                                     found.ranks);
}

bool grow_by_comparing(project_state &project, const grow_parameters &p, std::int32_t rank, const number_list &start,
                       found_clones &found) {
  pumping_options wanted;
  wanted.start_list = start;
  wanted.n_rank_limit = rank;
  std::string ignored;
  if (!p.candidates.empty() && !read_list(project, p.candidates, wanted.candidates.emplace(), ignored))
    return false;
  if (project.has(project_part::contigs))
    project.database().contigs()->list_of_clones_black_list_get(wanted.black_list);
  pumping_result grown;
  nasos_clones(project.context(), project.rule(), wanted, grown);
  found = {grown.list, grown.step};
  return grown.completed;
}

// "n=12, n(0)=5, n(1)=7"
std::string text_of_ranks(const found_clones &found) {
  std::map<std::int32_t, std::int32_t> n_of_rank;
  for (const std::int32_t rank : found.ranks.members())
    ++n_of_rank[rank];
  std::string text = "n=" + std::to_string(found.list.count());
  for (const auto &[rank, n] : n_of_rank)
    text += ", n(" + std::to_string(rank) + ")=" + std::to_string(n);
  return text;
}

std::int32_t whole_number_asked(process_frame &frame, const input_box &asked, std::int32_t otherwise) {
  std::int32_t number = otherwise;
  whole_number_parse(frame.input(asked), number);
  return number;
}

// The list, as far as it is wanted, and the contigs of its clones.
void print_found(project_state &project, const grow_parameters &p, const found_clones &found, command_result &result) {
  process_frame &frame = project.frame();
  std::int32_t farthest = 0;
  for (const std::int32_t rank : found.ranks.members())
    farthest = std::max(farthest, rank);
  const std::int32_t asked =
      p.max_rank
          ? *p.max_rank
          : whole_number_asked(frame, {"Input max rank: ", "Print found clones", std::to_string(farthest)}, farthest);
  number_list printed;
  for (std::int32_t i = 1; i <= found.list.count(); ++i)
    if (asked < 0 || found.ranks(i) <= asked)
      printed.add(found.list(i));
  const fs::path file = frame.path_in_working_folder("\\result_clones.txt");
  class_list_of_clones(frame, project.settings()).print_list_of_clones(printed, file, project.database());
  result.file("list", file);
  result.lines.push_back(file.string());
  question compare;
  compare.text = "Compare with clusters?";
  compare.to_go_on = answer::no;
  if (!project.has(project_part::contigs) || printed.empty() || !(p.compare ? *p.compare : frame.yes(compare)))
    return;
  const fs::path contigs = frame.path_in_working_folder("\\result_clones_in_contigs.txt");
  project.database().contigs()->print_cluster_name_for_clones(printed, contigs);
  result.file("contigs", contigs);
}

command_result run_grow(project_state &project, const grow_parameters &p) {
  work_in(project, p.out);
  process_frame &frame = project.frame();
  number_list start;
  std::string name;
  if (!read_list(project, p.list, start, name))
    return stopped_or_failed(project);
  const std::int32_t rank =
      p.rank ? *p.rank
             : whole_number_asked(frame,
                                  {"Input maximal rank (-1 = Infinity):", "Searching for overlaping clones", "1"}, 1);
  frame.step_text_set("Fast searching for clones ...");
  found_clones found;
  if (p.without_net) {
    if (!grow_by_comparing(project, p, rank, start, found))
      return stopped_or_failed(project);
  } else {
    grow_in_net(project, p, rank, start, found);
  }
  frame.clones_text_set(text_of_ranks(found));
  command_result result;
  result.inputs.push_back(p.list);
  print_found(project, p, found, result);
  result.figure("clones", found.list.count());
  frame.note(text_of_ranks(found));
  frame.message("Searching is finished: " + std::to_string(found.list.count()) + " found");
  return result;
}

template <class Parameters>
command_maker<Parameters> row_of(const char *id, const char *caption, const char *purpose, const char *example,
                                 void (*describe)(parameter_list &, Parameters &),
                                 command_result (*run)(project_state &, const Parameters &)) {
  command_maker<Parameters> maker(id);
  maker.captioned(caption).purpose(purpose).example(example).parameters(describe).runs(run);
  return maker;
}

} // namespace

void add_net_analysis_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(row_of("net.disconnect", "Disconnect clones", "save the net without the overlaps of a list of clones",
                        "net.disconnect list=suspects.txt out=net1.ORBns", describe_disconnect, run_disconnect)
                     .needs({part::library, part::net})
                     .checked_by(check_disconnect)
                     .row());
  rows.push_back(row_of("net.unite_clones", "List into one vertex",
                        "draw the net of a list with some of its clones contracted to one",
                        "net.unite_clones list=contig.txt united=part.txt out=drawings", describe_unite, run_unite)
                     .needs({part::library})
                     .checked_by(check_unite)
                     .row());
  rows.push_back(row_of("net.within_clusters", "Net within clusters",
                        "compare the clones of each contig with each other",
                        "net.within_clusters out=tables max-size=1000", describe_within, run_within)
                     .needs({part::library, part::contigs})
                     .row());
  rows.push_back(row_of("net.connections_out", "Connections out of clusters",
                        "clones with overlaps out of their contig", "net.connections_out out=tables",
                        describe_connections, run_connections)
                     .needs({part::library, part::net, part::contigs})
                     .row());
  rows.push_back(row_of("net.of_clusters", "Net of clusters",
                        "the net whose vertices are the lists of a folder, drawn, and its chains united",
                        "net.of_clusters folder=lists out=clusters caption=c", describe_clusters, run_clusters)
                     .needs({part::library, part::net})
                     .checked_by(check_clusters)
                     .row());
  rows.push_back(row_of("net.ranks", "Ranks relative to start of diam path",
                        "how far clones lie from the start of a contig's longest path",
                        "net.ranks list=contig.txt interesting=some.txt out=tables", describe_ranks, run_ranks)
                     .needs({part::library})
                     .checked_by(check_ranks)
                     .row());
  rows.push_back(row_of("net.grow", "Search for overlaping clones", "more clones near a list",
                        "net.grow list=contig.txt rank=2 out=tables", describe_grow, run_grow)
                     .needs({part::library})
                     .checked_by(check_grow)
                     .row());
}

} // namespace orb
