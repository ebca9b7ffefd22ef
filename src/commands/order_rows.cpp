// Orders of the clones of a list, tables of the scores of its pairs, and their bands in other forms.
#include <algorithm>
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/contig_parameters.h"
#include "commands/row_steps.h"
#include "contigs/list_axis.h"
#include "database/class_clone_serv.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"
#include "ordering/class_clone_ord_and_verif.h"
#include "ordering/distance_file.h"
#include "ordering/spanning_tree_tourer.h"
#include "ordering/tour_solver.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// ---- order.list ----

struct order_parameters {
  fs::path list, out;
  ordering_parameters ordering;
};

void describe_order(parameter_list &list, order_parameters &p) {
  list.add("list", p.list, "names of clones, one a line").type("LIST").needed();
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
  describe_ordering(list, p.ordering);
}

void check_order(const project_state &, const parts_there &, const order_parameters &p) {
  check_input(p.list);
}

std::string text_of_order(const ordering_work &work) {
  const std::int32_t n_list = work.task.list.count();
  std::string text =
      fmt::format("{} of {} clones ordered, {} are buried in others. ", work.n_used(), n_list, n_list - work.n_used());
  if (work.in_windows())
    return text + fmt::format("In {} windows; in {} of them no order has shorter steps. Weak joins: {} of {}.",
                              work.windows.size(), work.n_windows_proven(), work.n_weak_joins(),
                              work.windows.size() - 1);
  return text +
         (work.proven() ? "No order has shorter steps." : "The search ended at its limit; a better order may exist.");
}

command_result run_order(project_state &project, const order_parameters &p) {
  work_in(project, p.out);
  number_list list;
  ordering_task task;
  if (!read_list(project, p.list, list, task.name))
    return stopped_or_failed(project);
  const class_net *net = project.has(project_part::net) ? &project.signif().net() : nullptr;
  class_clone_ord_and_verif orderer(project.context(), net, ordering_of(p.ordering));
  task.list = list;
  task.rule = project.rule();
  task.flag = false; // the consensus and solution files
  task.folder = project.frame().working_folder_get();
  if (!find_axis(project.signif(), task))
    return stopped_or_failed(project);
  std::vector<ordering_work> works;
  if (!orderer.compute_all(std::span(&task, 1), works))
    return stopped_or_failed(project);
  fs::path file_order;
  orderer.write(works.front(), file_order);
  project.frame().note(text_of_order(works.front()));
  command_result result;
  result.inputs.push_back(p.list);
  put_ordering(p.ordering, result);
  result.file("order", file_order);
  result.lines.push_back(file_order.string());
  return result;
}

// ---- order.tour ----

struct tour_parameters {
  fs::path file;
  std::optional<std::int32_t> steps;
  bool fixed_ends = false, tree = false;
};

void describe_tour(parameter_list &list, tour_parameters &p) {
  list.add("file", p.file, "n, seconds and neighbour rank, then a line a pair: i, j, distance")
      .type("Input.dis")
      .unset("that of the program's folder");
  list.add("steps", p.steps, "limit of the search in place of the seconds").limits(1, 2e9).unset("by the file");
  list.add("fixed-ends", p.fixed_ends, "the first and the last vertex are the ends of the path");
  list.add("tree", p.tree, "the longest path of the minimum spanning tree in place of a tour");
}

void check_tour(const project_state &, const parts_there &, const tour_parameters &p) {
  check_input(p.file);
  if (p.tree && (p.fixed_ends || p.steps))
    throw usage_error("steps and fixed-ends belong to a tour, not to a tree");
}

bool path_of_tree(project_state &project, const fs::path &file, number_list &path) {
  distance_instance read;
  std::string problem;
  if (!read_distance_file(file, read, problem))
    return project.frame().refuse(problem);
  std::int32_t n_path = 0;
  bool connected = false;
  class_MSTTourer(project.frame()).callMST(read.dist, read.n, path, n_path, distance_instance::no_distance, connected);
  if (!connected)
    project.frame().warn("The distances don't join all vertices.");
  return true;
}

bool order_of_tour(project_state &project, const tour_parameters &p, const fs::path &file, number_list &order,
                   command_result &result) {
  random_source chance(project.settings().seed);
  tour_control control;
  control.steps = p.steps.value_or(0);
  control.stop = [&project] { return !project.frame().goes_on(); };
  std::string text;
  std::int64_t cost = 0;
  const tour_report report =
      class_math_TSP(chance, control).Run_Tourer(true, 0, 0, 0, {}, text, order, cost, p.fixed_ends, file);
  if (!report.message.empty())
    return project.frame().refuse(report.message);
  if (p.steps)
    result.parameter("steps", *p.steps);
  result.figure("cost", cost);
  project.frame().note(
      fmt::format("Length: {}. {}", cost, report.proven ? "No order is shorter." : "The search ended at its limit."));
  return !report.stopped;
}

command_result run_tour(project_state &project, const tour_parameters &p) {
  const fs::path file = p.file.empty() ? project.frame().program_folder_get() / "Input.dis" : p.file;
  number_list order;
  command_result result;
  if (!(p.tree ? path_of_tree(project, file, order) : order_of_tour(project, p, file, order, result)))
    return stopped_or_failed(project);
  result.inputs.push_back(file);
  std::string text;
  for (const std::int32_t vertex : order.members())
    text += (text.empty() ? "" : " ") + std::to_string(vertex);
  result.lines.push_back(text);
  return result;
}

// ---- table.pairs ----

struct table_parameters {
  fs::path list, out;
  bool only_consecutive = false, only_all_pairs = false, from_net = false;
};

void describe_table(parameter_list &list, table_parameters &p) {
  list.add("list", p.list, "names of clones, one a line").type("LIST").needed();
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
  list.add("consecutive", p.only_consecutive, "only the table of each clone with the one before it");
  list.add("all-pairs", p.only_all_pairs, "only the table of all pairs");
  list.add("from-net", p.from_net, "of all pairs only those that the loaded net joins");
}

void check_table(const project_state &, const parts_there &there, const table_parameters &p) {
  check_input(p.list);
  if (p.from_net && !there.has(project_part::net))
    throw usage_error("from-net needs a net of overlaps, and there is none");
}

command_result run_table(project_state &project, const table_parameters &p) {
  work_in(project, p.out);
  const fs::path folder = project.frame().working_folder_get();
  number_list list;
  std::string name;
  if (!read_list(project, p.list, list, name))
    return stopped_or_failed(project);
  command_result result;
  result.inputs.push_back(p.list);
  class_list_of_clones tables(project.frame(), project.settings());
  const bool both = p.only_consecutive == p.only_all_pairs;
  const auto made = [&](const char *key, const fs::path &file) {
    result.file(key, file);
    result.lines.push_back(file.string());
  };
  if (both || p.only_consecutive) {
    const fs::path file = folder / ("Consec_dist_" + name + ".txt");
    std::vector<std::int32_t> gaps;
    if (!tables.print_consecuent_dist(list.count(), list, name, file, gaps, true, project.rule(), project.context()))
      return stopped_or_failed(project);
    const std::int32_t weak = gaps[static_cast<std::size_t>(project.rule().distance_index)];
    project.frame().note(fmt::format("Steps below the cutoff: {} of {}.", weak, std::max(list.count() - 1, 0)));
    result.figure("weak_steps", weak);
    made("consecutive", file);
  }
  if (both || p.only_all_pairs) {
    const fs::path file = folder / ("All_dist_" + name + ".txt");
    if (!tables.print_all_dist(list, name, file, project.rule(), project.context(), &project.signif().net(),
                               p.from_net ? pairs_of_table::from_net_only : pairs_of_table::all))
      return stopped_or_failed(project);
    made("all_pairs", file);
  }
  return result;
}

// ---- list.bands ----

struct bands_parameters {
  fs::path list;
  output_wishes output;
  std::string order = "library", form = "record";
};

void describe_bands(parameter_list &list, bands_parameters &p) {
  list.add("list", p.list, "names of clones, one a line").type("LIST").needed();
  describe_output(list, p.output, "FILE");
  list.add("order", p.order, "of the clones: as in the list, or as in the library").one_of({"list", "library"});
  list.add("form", p.form,
           "of the bands: fingerprint records; numbers; lengths; or presence, a sign for each band of the library")
      .one_of({"record", "numbers", "lengths", "presence"});
}

void check_bands(const project_state &project, const parts_there &, const bands_parameters &p) {
  check_input(p.list);
  check_output(project, p.output.out, p.output.force);
}

std::string text_of_bands(const class_DB_of_clones &database, const number_list &bands, const std::string &form) {
  if (form == "numbers")
    return class_clone_serv::text_list_of_bands(bands);
  if (form == "lengths")
    return class_clone_serv::text_list_of_bands_with_real_lengths(bands, database);
  class_clone_serv::band_presence presence;
  const std::int32_t n = database.total_number_of_different_bands_get();
  class_clone_serv::transform_ListOfBands_to_BandsPresentence(n, bands, presence);
  return class_clone_serv::text_clone_BandsPresentence(n, presence);
}

command_result run_bands(project_state &project, const bands_parameters &p) {
  const class_DB_of_clones &database = project.database();
  class_list_of_clones lists(project.frame(), project.settings());
  number_list list;
  std::string name;
  if (!read_list(project, p.list, list, name))
    return stopped_or_failed(project);
  if (p.order == "library")
    lists.sort_list_of_clones_and_delete_repeats(list);
  result_file file(p.output.out);
  for (const clone_number clone : list.members()) {
    if (p.form == "record") {
      class_clone_serv::add_clone_to_file_with_bands(clone, file, database);
      continue;
    }
    number_list bands;
    for (const band_value band : database.bands_of_clone(clone))
      bands.add(band);
    file.line(database.name_of_clone_get(clone) + "\t" + text_of_bands(database, bands, p.form));
  }
  file.commit();
  command_result result;
  result.inputs.push_back(p.list);
  result.file("bands", p.output.out);
  result.lines.push_back(p.output.out.string());
  return result;
}

} // namespace

void add_order_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<order_parameters>("order.list")
                     .captioned("Ordering of clones (with JK on bands)")
                     .purpose("put the clones of a list into the order with the shortest steps")
                     .example("order.list list=contig.txt out=ordered jackknife=20")
                     .needs({part::library})
                     .parameters(describe_order)
                     .checked_by(check_order)
                     .runs(run_order)
                     .row());
  rows.push_back(command_maker<tour_parameters>("order.tour")
                     .captioned("Tour from a file")
                     .purpose("a short path through the vertices of a file of distances")
                     .example("order.tour file=Input.dis steps=10000")
                     .parameters(describe_tour)
                     .checked_by(check_tour)
                     .runs(run_tour)
                     .row());
  rows.push_back(command_maker<table_parameters>("table.pairs")
                     .captioned("Tables of distances")
                     .purpose("tables of the scores of a list of clones: consecutive clones, all pairs")
                     .example("table.pairs list=contig.txt out=tables")
                     .needs({part::library})
                     .parameters(describe_table)
                     .checked_by(check_table)
                     .runs(run_table)
                     .row());
  rows.push_back(command_maker<bands_parameters>("list.bands")
                     .captioned("Lists of bands, ordered as the library")
                     .purpose("the bands of the clones of a list, in one of four forms")
                     .example("list.bands list=contig.txt form=lengths out=bands.txt")
                     .needs({part::library})
                     .parameters(describe_bands)
                     .checked_by(check_bands)
                     .runs(run_bands)
                     .row());
}

} // namespace orb
