// The contig registry: its reset, its names, its tables.
#include <fmt/format.h>

#include "clustering/class_FPCto_import.h"
#include "commands/command_table.h"
#include "commands/length_parameters.h"
#include "commands/row_steps.h"
#include "database/class_markers.h"
#include "fpc/fpc_writing.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

class_FPCto_import &registry_of(project_state &project) {
  return *project.database().contigs();
}

// Tables in the working folder are made anew; those in a folder that is named only when this is asked for.
struct folder_wishes {
  fs::path out;
  bool force = false;
};

void describe_new_folder(parameter_list &list, folder_wishes &p) {
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
}

void describe_folder(parameter_list &list, folder_wishes &p) {
  describe_new_folder(list, p);
  list.add("force", p.force, "overwrite results that exist");
}

void check_tables(const project_state &project, const folder_wishes &p, std::initializer_list<const char *> names) {
  for (const char *name : names)
    if (!p.out.empty())
      check_output(project, p.out / name, p.force);
}

command_result done_in(project_state &project, const char *key, const std::string &name) {
  command_result result = result_of(project, !project.frame().stop_requested_get());
  result.file(key, project.frame().path_in_working_folder(name));
  return result;
}

command_result run_reset(project_state &project, const no_parameters &) {
  project.reset_registry();
  return {};
}

struct statistics_wishes {
  folder_wishes folder;
  length_parameters lengths;
};

void describe_statistics(parameter_list &list, statistics_wishes &p) {
  describe_folder(list, p.folder);
  describe_lengths(list, p.lengths);
}

// The length of a band, which may be an estimate, is in the name.
void check_statistics(const project_state &project, const parts_there &, const statistics_wishes &p) {
  check_lengths(p.lengths);
  std::error_code failed;
  if (p.folder.out.empty() || p.folder.force || !fs::is_directory(p.folder.out, failed))
    return;
  for (const fs::directory_entry &entry : fs::directory_iterator(p.folder.out))
    if (entry.path().filename().string().starts_with("contig_statistics_"))
      check_output(project, entry.path(), false);
}

command_result run_statistics(project_state &project, const statistics_wishes &p) {
  work_in(project, p.folder.out);
  const auto band_length = answer_band_lengths_ahead(project, p.lengths);
  command_result result;
  result.file("statistics", registry_of(project).print_N50_statistics());
  result.findings = *band_length;
  return result;
}

struct list_wishes {
  folder_wishes folder;
  fs::path list;
};

void describe_list(parameter_list &list, list_wishes &p) {
  describe_folder(list, p.folder);
  list.add("list", p.list, "only these clones").type("LIST").unset("all clones");
}

void check_coordinates(const project_state &project, const parts_there &, const list_wishes &p) {
  check_input(p.list);
  check_tables(project, p.folder, {"coordinates_of_clones.txt"});
}

void check_names(const project_state &project, const parts_there &, const list_wishes &p) {
  check_input(p.list);
  check_tables(project, p.folder, {"clones_in_contogs.txt"});
}

// The clones of a table by clone: those of the list, else all.
bool list_of_table(project_state &project, const fs::path &file, number_list &list) {
  if (file.empty()) {
    list = number_list::range(1, project.database().total_number_of_clones_get());
    return true;
  }
  std::string name;
  return read_list(project, file, list, name);
}

command_result run_coordinates(project_state &project, const list_wishes &p) {
  work_in(project, p.folder.out);
  number_list list;
  if (!list_of_table(project, p.list, list))
    return stopped_or_failed(project);
  const fs::path file = project.frame().path_in_working_folder("\\coordinates_of_clones.txt");
  registry_of(project).print_coordinates_of_clones(list, file);
  return done_in(project, "coordinates", "\\coordinates_of_clones.txt");
}

command_result run_names(project_state &project, const list_wishes &p) {
  work_in(project, p.folder.out);
  number_list list;
  if (!list_of_table(project, p.list, list))
    return stopped_or_failed(project);
  registry_of(project).print_cluster_name_for_clones(list);
  return done_in(project, "names", "\\clones_in_contogs.txt");
}

command_result run_lists(project_state &project, const folder_wishes &p) {
  work_in(project, p.out);
  const fs::path folder = registry_of(project).print_FPC_clusters();
  command_result result = result_of(project, !project.frame().stop_requested_get());
  result.file("lists", folder);
  return result;
}

struct fpc_wishes {
  statistics_wishes statistics;
  std::optional<bool> browse;
  fs::path list;
  bool choose = false, long_names = false;
};

void describe_fpc(parameter_list &list, fpc_wishes &p) {
  describe_statistics(list, p.statistics);
  describe_browse(list, p.browse);
  list.add("list", p.list, "only these clones").type("LIST").unset("all clones");
  list.add("choose", p.choose, "only the clones of a list that a dialog asks for");
  list.add("long-names", p.long_names, "the long names of clusters in place of the short ones in the plain file");
}

void check_fpc(const project_state &project, const parts_there &, const fpc_wishes &p) {
  check_input(p.list);
  check_lengths(p.statistics.lengths);
  check_tables(project, p.statistics.folder, {"FPC_like.fpc", "FPC_like_pp.fpc", "rename_for_FPC.tsv"});
}

command_result run_fpc(project_state &project, const fpc_wishes &p) {
  work_in(project, p.statistics.folder.out);
  answer_browse_ahead(project, p.browse);
  answer_band_lengths_ahead(project, p.statistics.lengths);
  process_frame &frame = project.frame();
  const fs::path plain = frame.path_in_working_folder("\\FPC_like.fpc"),
                 pp = frame.path_in_working_folder("\\FPC_like_pp.fpc");
  print_FPC_like_file_run(frame, project.settings(), project.database(), registry_of(project), plain, pp,
                          frame.working_folder_get(), p.list.empty() && !p.choose, {p.list, p.long_names});
  if (!p.list.empty() && !fs::exists(plain))
    return stopped_or_failed(project);
  command_result result = result_of(project, !frame.stop_requested_get());
  result.file("fpc", plain);
  result.file("fpc_pp", pp);
  return result;
}

command_result run_remarks(project_state &project, const no_parameters &) {
  registry_of(project).contig_user_remark_make_based_on_information_for_clones();
  return {};
}

struct markers_wishes {
  folder_wishes folder;
  std::optional<bool> spaces;
};

struct positions_wishes {
  folder_wishes folder;
  std::optional<bool> from_lists, final_only;
  fs::path lists;
};

void describe_positions(parameter_list &list, positions_wishes &p) {
  describe_folder(list, p.folder);
  list.add("from-lists", p.from_lists, "of the clones that a table of lists names, in place of all markers")
      .asked_else("no");
  list.add("lists", p.lists, "that table: lines of clones with commas between them").type("FILE");
  list.add("final-only", p.final_only, "in final clusters only").asked_else("yes");
}

void check_marker_positions(const project_state &project, const parts_there &there, const positions_wishes &p) {
  check_input(p.lists);
  if (p.lists.empty() && !p.from_lists.value_or(false) && !there.has(project_part::markers))
    throw usage_error("contigs.marker_positions needs markers, or lists");
  check_tables(project, p.folder, {"mmm.txt", "contigs_with_n_markers.txt"});
}

command_result run_marker_positions(project_state &project, const positions_wishes &p) {
  work_in(project, p.folder.out);
  if (p.from_lists)
    answer_ahead(project, "From table of lists of clones", *p.from_lists);
  if (p.final_only)
    answer_ahead(project, "Final clusters only?", *p.final_only);
  if (!registry_of(project).print_positon_of_markers(p.lists))
    return stopped_or_failed(project);
  return done_in(project, "positions", "\\mmm.txt");
}

void describe_marker_clones(parameter_list &list, markers_wishes &p) {
  describe_folder(list, p.folder);
  list.add("spaces", p.spaces, "blanks in place of commas between the clones of a marker").asked_else("no");
}

void check_marker_clones(const project_state &project, const parts_there &, const markers_wishes &p) {
  check_tables(project, p.folder, {"clones_for_each_marker.txt"});
}

command_result run_marker_clones(project_state &project, const markers_wishes &p) {
  work_in(project, p.folder.out);
  registry_of(project).PrintClonesForMarkers(!p.spaces   ? marker_separator::ask
                                             : *p.spaces ? marker_separator::blank
                                                         : marker_separator::comma);
  return done_in(project, "clones", "\\clones_for_each_marker.txt");
}

struct rename_wishes {
  fs::path file;
};

void describe_rename(parameter_list &list, rename_wishes &p) {
  list.add("file", p.file, "new names of contigs: name, tab, new name").type("FILE").needed();
}

void check_rename(const project_state &, const parts_there &, const rename_wishes &p) {
  check_input(p.file);
}

command_result run_rename(project_state &project, const rename_wishes &p) {
  if (!registry_of(project).rename_contigs(p.file))
    return stopped_or_failed(project);
  project.loaded(project_part::contigs, project.origin(project_part::contigs));
  command_result result;
  result.inputs.push_back(p.file);
  return result;
}

// ---- clusters one by one ----

struct off_wishes {
  std::string name;
};

void describe_off(parameter_list &list, off_wishes &p) {
  list.add("contig", p.name, "the contig that is switched off").needed();
}

command_result run_off(project_state &project, const off_wishes &p) {
  class_FPCto_import &registry = registry_of(project);
  const std::int32_t before = registry.current_list_of_clusters_in_use_get().count();
  registry.cluster_off_clusterName(p.name);
  if (registry.current_list_of_clusters_in_use_get().count() == before)
    return command_result::ended(exit_status::run_failed);
  project.loaded(project_part::contigs, project.origin(project_part::contigs));
  return {};
}

struct add_wishes {
  fs::path list;
  std::string name, long_name;
  bool shared = false;
};

void describe_add(parameter_list &list, add_wishes &p) {
  list.add("list", p.list, "clones of the cluster, one a line").type("LIST").needed();
  list.add("name", p.name, "of the cluster").unset("the name of the list");
  list.add("long-name", p.long_name, "its long name").unset("none");
  list.add("shared", p.shared, "also when a clone lies in a cluster that is in use; it then belongs to the new one");
}

void check_add(const project_state &, const parts_there &, const add_wishes &p) {
  check_input(p.list);
}

command_result run_add(project_state &project, const add_wishes &p) {
  number_list list;
  std::string name;
  if (!read_list(project, p.list, list, name))
    return stopped_or_failed(project);
  class_FPCto_import &registry = registry_of(project);
  if (!registry.add_new_cluster(list, p.name.empty() ? name : p.name, p.long_name, !p.shared))
    return command_result::ended(exit_status::run_failed);
  registry.add_new_cluster_finish();
  const bool first = !project.has(project_part::contigs);
  project.loaded(project_part::contigs,
                 first ? part_origin{p.list, "contigs.add_list"} : project.origin(project_part::contigs));
  command_result result;
  result.inputs.push_back(p.list);
  result.figure("clones", list.count());
  return result;
}

struct bar_wishes {
  fs::path list;
};

void describe_bar(parameter_list &list, bar_wishes &p) {
  list.add("list", p.list, "clones that are never added to a list that grows, one a line").type("LIST").needed();
}

void check_bar(const project_state &, const parts_there &, const bar_wishes &p) {
  check_input(p.list);
}

command_result run_bar(project_state &project, const bar_wishes &p) {
  number_list list, all;
  std::string name;
  if (!read_list(project, p.list, list, name))
    return stopped_or_failed(project);
  registry_of(project).list_of_clones_add_to_black_list(list);
  registry_of(project).list_of_clones_black_list_get(all);
  command_result result;
  result.inputs.push_back(p.list);
  result.figure("barred_clones", all.count());
  return result;
}

void check_barred(const project_state &project, const parts_there &, const folder_wishes &p) {
  check_tables(project, p, {"black_list.txt"});
}

command_result run_barred(project_state &project, const folder_wishes &p) {
  work_in(project, p.out);
  number_list all;
  registry_of(project).list_of_clones_black_list_get(all);
  class_list_of_clones(project.frame(), project.settings())
      .print_list_of_clones(all, project.frame().path_in_working_folder("\\black_list.txt"), project.database());
  return done_in(project, "black_list", "\\black_list.txt");
}

void check_clusters_of(const project_state &project, const parts_there &, const list_wishes &p) {
  check_input(p.list);
  check_tables(project, p.folder, {"clusters_of_clones.txt"});
}

command_result run_clusters_of(project_state &project, const list_wishes &p) {
  work_in(project, p.folder.out);
  number_list list;
  if (!list_of_table(project, p.list, list))
    return stopped_or_failed(project);
  registry_of(project).print_clusters_of_clones(list);
  return done_in(project, "clusters", "\\clusters_of_clones.txt");
}

template <class Parameters>
void add_table(command_rows &rows, const char *id, const char *caption, const char *purpose,
               void (*describe)(parameter_list &, Parameters &),
               void (*check)(const project_state &, const parts_there &, const Parameters &),
               command_result (*run)(project_state &, const Parameters &), bool markers = false) {
  command_maker<Parameters> maker(id);
  maker.captioned(caption).purpose(purpose).example(std::string(id) + " out=tables").parameters(describe).runs(run);
  std::vector<project_part> needs{project_part::library, project_part::contigs};
  if (markers)
    needs.push_back(project_part::markers);
  maker.needs(std::move(needs));
  if (check)
    maker.checked_by(check);
  rows.push_back(maker.row());
}

} // namespace

void add_registry_rows(command_rows &rows) {
  rows.push_back(command_maker<no_parameters>("contigs.reset")
                     .captioned("Reset contigs")
                     .purpose("an empty registry of contigs")
                     .example("contigs.reset")
                     .needs({project_part::library})
                     .runs(run_reset)
                     .row());
  rows.push_back(command_maker<rename_wishes>("contigs.rename")
                     .captioned("Rename contigs")
                     .purpose("give contigs new names from a file; all or none")
                     .example("contigs.rename file=names.txt")
                     .needs({project_part::library, project_part::contigs})
                     .parameters(describe_rename)
                     .checked_by(check_rename)
                     .runs(run_rename)
                     .row());
  rows.push_back(command_maker<no_parameters>("contigs.remarks")
                     .captioned("User remarks from markers")
                     .purpose("the zones of its markers as each contig's remark")
                     .example("contigs.remarks")
                     .needs({project_part::library, project_part::contigs, project_part::markers})
                     .runs(run_remarks)
                     .row());
  rows.push_back(command_maker<off_wishes>("contigs.off")
                     .captioned("Switch a contig off")
                     .purpose("take a contig out of use; its clones and its name stay known")
                     .example("contigs.off contig=cl_12")
                     .needs({project_part::library, project_part::contigs})
                     .parameters(describe_off)
                     .runs(run_off)
                     .row());
  rows.push_back(command_maker<add_wishes>("contigs.add_list")
                     .captioned("List of clones as a cluster")
                     .purpose("a list of clones as one more cluster of the registry")
                     .example("contigs.add_list list=contig.txt name=mine")
                     .needs({project_part::library})
                     .makes({project_part::contigs})
                     .parameters(describe_add)
                     .checked_by(check_add)
                     .runs(run_add)
                     .row());
  rows.push_back(command_maker<bar_wishes>("contigs.bar")
                     .captioned("Bar clones from use")
                     .purpose("put clones into the black list: searches for more clones leave them out")
                     .example("contigs.bar list=suspects.txt")
                     .needs({project_part::library, project_part::contigs})
                     .parameters(describe_bar)
                     .checked_by(check_bar)
                     .runs(run_bar)
                     .row());
  add_table<folder_wishes>(rows, "contigs.black_list", "Print barred clones", "the clones of the black list",
                           describe_folder, check_barred, run_barred);
  add_table(rows, "contigs.clusters_of", "Clusters of clones", "all clusters that hold a clone, in use or not",
            describe_list, check_clusters_of, run_clusters_of);
  add_table(rows, "contigs.statistics", "N50 statistics", "how long contigs are", describe_statistics, check_statistics,
            run_statistics);
  add_table(rows, "contigs.coordinates", "Coordinates of clones", "where each clone lies in its contig", describe_list,
            check_coordinates, run_coordinates);
  add_table(rows, "contigs.names", "Contigs of clones", "which contig each clone lies in", describe_list, check_names,
            run_names);
  add_table<folder_wishes>(rows, "contigs.lists", "Print contigs",
                           "the clones of each contig from left to right, a file a contig", describe_new_folder,
                           nullptr, run_lists);
  add_table(rows, "contigs.fpc", "Print .fpc files", "the contigs as .fpc files, in two flavours", describe_fpc,
            check_fpc, run_fpc);
  add_table(rows, "contigs.marker_positions", "Positions of markers", "where markers lie in contigs",
            describe_positions, check_marker_positions, run_marker_positions);
  add_table(rows, "contigs.marker_clones", "Clones for markers", "the clones of each marker", describe_marker_clones,
            check_marker_clones, run_marker_clones, true);
}

} // namespace orb
