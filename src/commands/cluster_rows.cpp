// Partitions of clones besides adaptive clustering: at one cutoff, down a ladder of cutoffs, small clusters joined.
#include <fmt/format.h>

#include "clustering/class_clust_Linker_nenado.h"
#include "clustering/class_clustering.h"
#include "clustering/class_tree.h"
#include "clustering/cluster_file_name.h"
#include "commands/cluster_printing.h"
#include "commands/command_table.h"
#include "commands/row_steps.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// The clones of a list, or all; `name` of the list, or of all.
bool clones_wanted(project_state &project, const fs::path &file, number_list &list, std::string &name) {
  if (!file.empty())
    return read_list(project, file, list, name);
  list = number_list::range(1, project.database().total_number_of_clones_get());
  name = "All_DataBase";
  return true;
}

// ---- clusters.make ----

struct make_parameters {
  fs::path list, out;
  bool choose = false, slow = false, test = false, data = false;
  print_wishes print;
};

void describe_make(parameter_list &list, make_parameters &p) {
  list.add("list", p.list, "only these clones").type("LIST").unset("all clones");
  list.add("choose", p.choose, "only the clones of a list that a dialog asks for");
  list.add("out", p.out, "folder in which the folder of the lists is made; without it the working folder").type("DIR");
  list.add("slow", p.slow, "test pairs of clones one by one, where they aren't joined yet");
  list.add("test", p.test, "the same, with every joining in test_clustering.txt");
  list.add("data", p.data, "fingerprints of the clones beside each list");
  describe_caption(list, p.print);
  describe_min_size(list, p.print);
}

void check_make(const project_state &, const parts_there &, const make_parameters &p) {
  check_input(p.list);
  if (p.test && p.data)
    throw usage_error("test prints the lists by itself, without data");
}

command_result run_make(project_state &project, const make_parameters &p) {
  work_in(project, p.out);
  process_frame &frame = project.frame();
  fs::path file = p.list;
  if (p.choose && file.empty())
    file = frame.open_file_dialog("Open file with list of clones");
  number_list list;
  std::string name;
  if ((p.choose && file.empty()) || !clones_wanted(project, file, list, name))
    return stopped_or_failed(project);
  answer_printing_ahead(project, p.print);
  frame.process_start("Clustering");
  class_clustering clustering(frame, project.settings(), &project.database());
  const overlap_rule &rule = project.rule();
  clustering.clustering_start(list.count(), list, name, rule.distance_index, rule.cutoff, rule.burying);
  command_result result;
  if (p.slow || p.test) {
    class_clone_dist_my metric(project.context(), &project.signif().net());
    metric.net_private_parameters_set_interface(rule);
    clustering.clusterization_slow(p.test, metric);
  } else {
    clustering.run_clusterization_fast(project.signif());
  }
  if (frame.stop_requested_get())
    return stopped_or_failed(project);
  if (p.test) {
    result.file("test", frame.path_in_working_folder("\\test_clustering.txt"));
  } else {
    fs::path folder;
    std::string caption = p.print.caption;
    std::int32_t min_size = p.print.min_size.value_or(-1);
    clustering.print_clusters(min_size, p.data, "", true, true, folder, caption);
    result.file("folder", folder);
    result.lines.push_back(folder.string());
  }
  frame.process_done();
  if (!file.empty())
    result.inputs.push_back(file);
  result.summary = fmt::format("{} clusters of {} clones", number_text_thousands(clustering.number_of_clusters_get()),
                               number_text_thousands(list.count()));
  result.figure("clusters", clustering.number_of_clusters_get());
  result.figure("clones", list.count());
  return result;
}

// ---- clusters.read ----

struct read_parameters {
  fs::path file, list;
  std::string caption = "cluster";
};

void describe_read(parameter_list &list, read_parameters &p) {
  list.add("file", p.file, "cluster numbers, one a line (clusterization.txt); without it a dialog asks").type("FILE");
  list.add("list", p.list, "the clones of the lines").type("LIST").unset("all clones");
  list.add("caption", p.caption, "begin of the names of the clusters");
}

void check_read(const project_state &, const parts_there &, const read_parameters &p) {
  check_input(p.file);
  check_input(p.list);
}

// Each cluster enters the registry, which is new.
void put_into_registry(project_state &project, const class_clustering &clustering, const std::string &caption) {
  const std::shared_ptr<class_FPCto_import> registry = project.registry_for_reading();
  number_list part, clones;
  for (std::int32_t c = 1; c <= clustering.number_of_clusters_get(); ++c) {
    clustering.read_from_arrays_for_clusters(c, part);
    clones.clear();
    for (const std::int32_t element : part.members())
      clones.add(clustering.get_actual_clone_number(element));
    registry->add_new_cluster(clones, class_clustering::auto_cluster_name(caption, c, clones.count()), "", false);
  }
  registry->add_new_cluster_finish();
  project.database().contigs_set(registry);
}

command_result run_read(project_state &project, const read_parameters &p) {
  number_list list;
  std::string name;
  if (!clones_wanted(project, p.list, list, name))
    return stopped_or_failed(project);
  class_clustering clustering(project.frame(), project.settings(), &project.database());
  clustering.clustering_start_no_metric(name, list.count(), list);
  if (!(p.file.empty() ? clustering.read_clusterization() : clustering.read_clusterization(p.file)))
    return stopped_or_failed(project);
  clustering.create_arrays_for_clusters(true, true);
  put_into_registry(project, clustering, p.caption);
  project.loaded(project_part::contigs, {p.file, "clusters.read"});
  command_result result;
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  result.summary = fmt::format("{} clusters of {} clones", number_text_thousands(clustering.number_of_clusters_get()),
                               number_text_thousands(list.count()));
  result.figure("clusters", clustering.number_of_clusters_get());
  return result;
}

// ---- clusters.tree ----

struct tree_parameters {
  std::string cutoffs;
  fs::path out;
  bool keep_nets = false, force = false;
  std::int32_t min_size = class_tree::standard_min_rs, max_size = class_tree::standard_max_rs;
};

void describe_tree(parameter_list &list, tree_parameters &p) {
  list.add("cutoffs", p.cutoffs, "rising cutoffs of the ladder, with commas between them").type("A,B,...").needed();
  list.add("out", p.out, "folder of the files; without it the working folder").type("DIR");
  list.add("min-size", p.min_size, "a smaller leaf gets no list").limits(1, 2000000000);
  list.add("max-size", p.max_size, "a larger leaf is refined at the next cutoff").limits(1, 2000000000);
  list.add("keep-nets", p.keep_nets, "leave the nets of the ladder in the folder");
  list.add("force", p.force, "overwrite results that exist");
}

// From 1.
std::vector<double> cutoffs_of(const std::string &text) {
  std::vector<double> cutoffs{0};
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(',', at), text.size());
    double cutoff = 0;
    if (!number_parse(std::string_view(text).substr(at, end - at), cutoff))
      throw usage_error("--cutoffs: numbers with commas between them are wanted, as 15,20,25");
    if (cutoffs.size() > 1 && cutoff <= cutoffs.back())
      throw usage_error("--cutoffs: each cutoff has to be above the one before it");
    cutoffs.push_back(cutoff);
    at = end + 1;
  }
  return cutoffs;
}

void check_tree(const project_state &project, const parts_there &, const tree_parameters &p) {
  cutoffs_of(p.cutoffs);
  for (const char *name : {"tree_report.txt", "tree.tsv", "clones_in_tree.tsv"})
    if (!p.out.empty())
      check_output(project, p.out / name, p.force);
}

// The net at each cutoff, in the order of the ladder; nets(0) is the report. False after a stop request.
bool save_ladder(project_state &project, const std::vector<double> &cutoffs, std::vector<fs::path> &files) {
  process_frame &frame = project.frame();
  files.assign(1, frame.path_in_working_folder("\\tree_report.txt"));
  for (std::size_t i = 1; i < cutoffs.size(); ++i) {
    frame.step_text_set("Net of cutoff " + number_text(cutoffs[i], 2));
    class_net net;
    project.signif().net().create_sub_net_without_edges_small_or_large_value(cutoffs[i], net, true);
    files.push_back(frame.path_in_working_folder("\\tree_net_" + number_text(cutoffs[i], 2) + ".ORBns"));
    if (!net.save_net_type(frame, files.back()))
      return false;
  }
  return true;
}

void write_leaves(const class_tree &tree, const fs::path &folder, std::int32_t min_size) {
  result_file table(folder / "tree.tsv"), clones(folder / "clones_in_tree.tsv");
  table.line("leaf\tname\tparent\tdepth\tcutoff\tn_clones\tn_sub_leafs");
  clones.line("clone\tleaf\tdepth");
  create_folder(folder / "leaves");
  number_list atoms;
  for (std::int32_t leaf = tree.n_atoms_get() + 1; leaf <= tree.current_number_of_leafs_get(); ++leaf) {
    const std::int32_t parent = tree.leaf_adres_of_root_get(leaf);
    tree.make_list_of_atoms(leaf, atoms);
    const bool is_last = tree.leaf_adres_of_root_get(atoms(1)) == leaf; // its clones stand in no deeper one
    table.line(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}", leaf, tree.leaf_name_get(leaf),
                           parent == 0 ? "" : tree.leaf_name_get(parent), tree.leaf_h_for_zero_get(leaf),
                           number_text(tree.leaf_cutoff_get(leaf), 2), tree.leaf_number_of_atoms_get(leaf),
                           is_last ? 0 : tree.leaf_number_of_sub_leafs_get(leaf)));
    if (!is_last)
      continue;
    for (const std::int32_t atom : atoms.members())
      clones.line(tree.leaf_name_get(atom) + '\t' + tree.leaf_name_get(leaf) + '\t' +
                  std::to_string(tree.leaf_h_for_zero_get(leaf)));
    if (atoms.count() < min_size)
      continue;
    result_file list(folder / "leaves" / (tree.leaf_name_get(leaf) + ".txt"));
    tree.print_atoms_of_leaf_into_file(list, leaf);
    list.commit();
  }
  clones.commit();
  table.commit();
}

command_result run_tree(project_state &project, const tree_parameters &p) {
  work_in(project, p.out);
  process_frame &frame = project.frame();
  const std::vector<double> cutoffs = cutoffs_of(p.cutoffs);
  std::vector<fs::path> files;
  frame.process_start("Cutoff tree");
  const bool saved = save_ladder(project, cutoffs, files);
  std::vector<std::unique_ptr<passing_file>> passing;
  for (std::size_t i = 1; i < files.size() && !p.keep_nets; ++i)
    passing.push_back(std::make_unique<passing_file>(files[i]));
  class_tree tree(frame);
  const class_DB_of_clones &database = project.database();
  const std::int32_t n = database.total_number_of_clones_get();
  tree.inicializate_tree(n, database.create_list_of_all_clone_names(), 2 * n);
  if (!saved ||
      !tree.adaptive_clustering(files, cutoffs, static_cast<std::int32_t>(cutoffs.size()) - 1, p.min_size, p.max_size))
    return stopped_or_failed(project);
  write_leaves(tree, frame.working_folder_get(), p.min_size);
  frame.process_done();
  command_result result;
  result.file("report", files[0]);
  for (const char *name : {"tree.tsv", "clones_in_tree.tsv", "leaves"})
    result.file(name, frame.path_in_working_folder(name));
  for (std::size_t i = 1; i < files.size() && p.keep_nets; ++i)
    result.file(files[i].filename().string(), files[i]);
  result.summary = fmt::format("{} leaves", number_text_thousands(tree.current_number_of_leafs_get() - n));
  result.figure("leaves", tree.current_number_of_leafs_get() - n);
  return result;
}

// ---- clusters.group ----

struct group_parameters {
  fs::path out;
  bool without_net = false;
  print_wishes print;
};

void describe_group(parameter_list &list, group_parameters &p) {
  list.add("out", p.out, "folder in which the folder of the groups is made; without it the working folder").type("DIR");
  list.add("without-net", p.without_net, "compare clones anew, in place of the loaded net's overlaps");
  describe_min_size(list, p.print);
}

void check_group(const project_state &, const parts_there &there, const group_parameters &p) {
  if (!p.without_net && !there.has(project_part::net))
    throw usage_error("clusters.group needs a net of overlaps, or without-net");
}

command_result run_group(project_state &project, const group_parameters &p) {
  work_in(project, p.out);
  const class_FPCto_import &registry = *project.database().contigs();
  number_list list, numbers;
  std::int32_t n_clusters = 0;
  for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members()) {
    ++n_clusters;
    for (const clone_number clone : registry.clones_of_cluster(id))
      if (registry.clone_in_cluster_get(clone) == id) { // a clone of two lists belongs to the later one
        list.add(clone);
        numbers.add(n_clusters);
      }
  }
  answer_printing_ahead(project, p.print);
  project.frame().process_start("Grouping of clusters");
  class_clustering clustering(project.frame(), project.settings(), &project.database());
  class_clust_Linker_nenado linker(project.signif(), project.rule(), !p.without_net);
  fs::path folder;
  std::int32_t min_size = p.print.min_size.value_or(-1);
  if (!linker.grouping_of_clusters(numbers, list.count(), list, n_clusters, clustering, folder, min_size))
    return stopped_or_failed(project);
  project.frame().process_done();
  command_result result;
  result.file("folder", folder);
  result.lines.push_back(folder.string());
  result.summary = fmt::format("{} clusters of {} after {} joinings", clustering.number_of_clusters_get(), n_clusters,
                               linker.n_merges_get());
  result.figure("clusters_before", n_clusters);
  result.figure("clusters", clustering.number_of_clusters_get());
  result.figure("joinings", linker.n_merges_get());
  return result;
}

} // namespace

void add_cluster_rows(command_rows &rows) {
  using part = project_part;
  rows.push_back(command_maker<make_parameters>("clusters.make")
                     .captioned("Clustering")
                     .purpose("clusters of all clones, or of a list, by single linkage at the cutoff, as lists")
                     .example("clusters.make list=contig.txt caption=c min-size=2 out=clusters")
                     .needs({part::library})
                     .parameters(describe_make)
                     .checked_by(check_make)
                     .runs(run_make)
                     .row());
  rows.push_back(command_maker<read_parameters>("clusters.read")
                     .captioned("Read a clustering back")
                     .purpose("the clusters of a file of cluster numbers as contigs")
                     .example("clusters.read file=clusters/clusterization.txt")
                     .needs({part::library})
                     .makes({part::contigs})
                     .parameters(describe_read)
                     .checked_by(check_read)
                     .runs(run_read)
                     .row());
  rows.push_back(command_maker<tree_parameters>("clusters.tree")
                     .captioned("Cutoff tree")
                     .purpose("refine clusters down a ladder of rising cutoffs, where they are too large")
                     .example("clusters.tree cutoffs=15,20,25 out=tree")
                     .needs({part::library, part::net})
                     .parameters(describe_tree)
                     .checked_by(check_tree)
                     .runs(run_tree)
                     .row());
  rows.push_back(command_maker<group_parameters>("clusters.group")
                     .captioned("Group clusters")
                     .purpose("join small clusters into larger ones by their strongest overlaps")
                     .example("clusters.group min-size=6 out=groups")
                     .needs({part::library, part::contigs})
                     .parameters(describe_group)
                     .checked_by(check_group)
                     .runs(run_group)
                     .row());
}

} // namespace orb
