#include "viewer/supercontigs.h"

#include <algorithm>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "viewer/class_net_elng.h"

namespace orb {

namespace {

struct new_overlap {
  clone_number first, second; // the lower number first
  double value;
};

class supercontig_work {
public:
  explicit supercontig_work(const net_sources &sources)
      : sources_(sources),
        supercontig_of_(static_cast<std::size_t>(sources.database.total_number_of_clones_get()) + 1, 0) {}

  bool read(const std::filesystem::path &folder, const std::vector<std::string> &files);
  // Does each contig lie in supercontigs with all of its clones or with none?
  bool check_contigs_against_supercontigs();
  void write_lists(supercontig_result &result) const;
  void change_net() const;
  bool change_contigs() const; // false after a message: a name is taken
  std::int32_t n_clones() const;

private:
  struct supercontig {
    std::string file, name;
    number_list clones; // ascending
  };

  bool read_one(const std::filesystem::path &file, const std::string &file_name);
  bool take_clones(const class_net_elng &net);
  void take_edges(const class_net_elng &net);
  bool refuse(const std::string &text) const { return sources_.frame.refuse(text + "\rOperation will stop."); }
  const std::string &name_of(clone_number clone) const { return sources_.database.name_of_clone_get(clone); }
  class_FPCto_import *contigs() const {
    return sources_.database.contigs_are_specified_get() ? sources_.database.contigs().get() : nullptr;
  }

  const net_sources &sources_;
  std::vector<supercontig> supercontigs_;
  std::vector<std::int32_t> supercontig_of_; // by clone, from 1; 0: none
  std::vector<new_overlap> overlaps_;
  std::vector<cluster_id> contigs_touched_;
};

bool supercontig_work::read(const std::filesystem::path &folder, const std::vector<std::string> &files) {
  for (const std::string &file : files) {
    sources_.frame.local_process_text_set(file);
    if (sources_.frame.stop_requested_get() || !read_one(folder / file, file))
      return false;
  }
  std::stable_sort(overlaps_.begin(), overlaps_.end(), [](const new_overlap &a, const new_overlap &b) {
    return a.first != b.first ? a.first < b.first : a.second < b.second;
  });
  overlaps_.erase(std::unique(overlaps_.begin(), overlaps_.end(),
                              [](const new_overlap &a, const new_overlap &b) {
                                return a.first == b.first && a.second == b.second;
                              }),
                  overlaps_.end());
  return true;
}

bool supercontig_work::read_one(const std::filesystem::path &file, const std::string &file_name) {
  class_net_elng net;
  bool all_or_none = false;
  if (!net.ReadNetFile(sources_, file, true, all_or_none))
    return !sources_.frame.stop_requested_get() && sources_.frame.refuse("Problem with file!: " + file.string());
  supercontigs_.push_back({file_name, class_serv_raznoe::extract_pure_file_name(file_name), {}});
  if (!take_clones(net))
    return false;
  take_edges(net);
  return true;
}

bool supercontig_work::take_clones(const class_net_elng &net) {
  supercontig &own = supercontigs_.back();
  const auto number = static_cast<std::int32_t>(supercontigs_.size());
  for (const node_elng &node : net.nodes().subspan(1)) {
    if (node.clone_id < 1)
      return refuse("Vertex " + node.caption + " of SuperCtg " + own.file + " is no clone of the library.");
    std::int32_t &place = supercontig_of_[static_cast<std::size_t>(node.clone_id)];
    if (place == number)
      return refuse("Clone " + name_of(node.clone_id) + " is presented at least twice in SuperCtg " + own.file + " ?!");
    if (place != 0) {
      const class_FPCto_import *registry = contigs();
      const cluster_id contig = registry != nullptr ? registry->clone_in_cluster_get(node.clone_id) : 0;
      return refuse("Clone " + name_of(node.clone_id) + " is presented at least in two different in SuperCtgs:\r" +
                    supercontigs_[static_cast<std::size_t>(place) - 1].name + " and " + own.name +
                    " ?!\r(Contig: " + (contig > 0 ? registry->name_of_cluster_get(contig) : std::string()) + ").");
    }
    place = number;
    own.clones.add(node.clone_id);
  }
  std::sort(own.clones.members().begin(), own.clones.members().end());
  return true;
}

// The score stands in the label: batch drawings have a 1 in the place of the value.
void supercontig_work::take_edges(const class_net_elng &net) {
  for (const edge_elng &edge : net.edges().subspan(1)) {
    if (edge.from == edge.to)
      continue;
    double value = edge.value;
    number_parse(edge.caption, value);
    const auto [first, second] = std::minmax({net.nodes()[static_cast<std::size_t>(edge.from)].clone_id,
                                              net.nodes()[static_cast<std::size_t>(edge.to)].clone_id});
    overlaps_.push_back({first, second, value});
  }
}

std::int32_t supercontig_work::n_clones() const {
  std::int32_t n = 0;
  for (const supercontig &one : supercontigs_)
    n += one.clones.count();
  return n;
}

bool supercontig_work::check_contigs_against_supercontigs() {
  const class_FPCto_import *registry = contigs();
  if (registry == nullptr)
    return true;
  for (const cluster_id id : registry->current_list_of_clusters_in_use_get().members()) {
    if (!registry->cluster_is_contig_get(id))
      continue;
    std::int32_t number = 0;
    clone_number left_out = 0;
    for (const clone_number clone : registry->clones_of_cluster(id)) {
      const std::int32_t place = supercontig_of_[static_cast<std::size_t>(clone)];
      if (place == 0)
        left_out = left_out == 0 ? clone : left_out;
      else
        number = place;
    }
    if (number == 0)
      continue;
    if (left_out != 0)
      return refuse("Clone " + name_of(left_out) + " is not found in supercontigs,\rbut it is presented in contig " +
                    registry->name_of_cluster_get(id) + "\roverlapping with supercontig " +
                    supercontigs_[static_cast<std::size_t>(number) - 1].name + ".");
    contigs_touched_.push_back(id);
  }
  return true;
}

void supercontig_work::write_lists(supercontig_result &result) const {
  process_frame &frame = sources_.frame;
  result.folder_of_lists =
      frame.path_in_working_folder("\\superctg_txt_" + class_serv_raznoe::date_and_time_string(frame));
  create_folder(result.folder_of_lists);
  for (const supercontig &one : supercontigs_) {
    std::vector<std::string> names(1);
    for (const clone_number clone : one.clones.members())
      names.push_back(name_of(clone));
    class_serv_raznoe::array_string_print_to_file(
        result.folder_of_lists / (one.name + "_" + std::to_string(one.clones.count()) + ".txt"), names);
  }
}

void supercontig_work::change_net() const {
  number_list list, first_ends, second_ends;
  std::vector<double> values{0}; // numbered as the ends are
  for (clone_number clone = 1; static_cast<std::size_t>(clone) < supercontig_of_.size(); ++clone)
    if (supercontig_of_[static_cast<std::size_t>(clone)] != 0)
      list.add(clone);
  for (const new_overlap &overlap : overlaps_) {
    first_ends.add(overlap.first);
    second_ends.add(overlap.second);
    values.push_back(overlap.value);
  }
  class_net changed;
  sources_.signif.net().create_net_with_disconnected_and_changed_part(sources_.frame, list, first_ends, second_ends,
                                                                      values, changed);
  changed.test_neighbours_sorted();
  sources_.signif.net() = std::move(changed);
  sources_.frame.message("NB! net of significant clone overlaps was changed!");
}

bool supercontig_work::change_contigs() const {
  class_FPCto_import &registry = *contigs();
  for (const supercontig &one : supercontigs_) {
    cluster_id id = 0;
    bool not_found = true;
    registry.search_for_cluster(one.name, id, not_found);
    if (!not_found)
      return refuse("There is a contig " + one.name + " already: SuperCtg " + one.file + " needs another name.");
  }
  for (const cluster_id id : contigs_touched_)
    registry.cluster_off_idCluster(id);
  for (const supercontig &one : supercontigs_)
    registry.add_new_cluster(one.clones, one.name, one.name, false);
  registry.add_new_cluster_finish();
  sources_.frame.message("NB! Clustering was changed!");
  return true;
}

// The files of the folder; empty after a message. The records that commands leave beside their drawings don't count.
std::vector<std::string> files_of_supercontigs(process_frame &frame, const std::filesystem::path &folder) {
  std::vector<std::string> files = class_serv_raznoe::create_ordered_list_of_files_in_folder(folder, "");
  std::erase_if(files, [](const std::string &file) { return file.ends_with(".run.json"); });
  for (const std::string &file : files)
    if (std::filesystem::path(file).extension() != ".net") {
      frame.refuse("File without extention .net found!: " + file);
      return {};
    }
  if (files.empty())
    frame.refuse("Folder is empty!");
  else
    frame.message(std::to_string(files.size()) + " files .net were found.");
  return files;
}

// False after a stop request: the net has no file then.
bool save_changed_net(const net_sources &sources, const supercontig_options &options, supercontig_result &result) {
  process_frame &frame = sources.frame;
  const std::string status = "Save resulted net of significant clone overlaps";
  frame.step_text_set(status);
  result.net_file = options.net_file;
  if (result.net_file.empty())
    result.net_file = frame.save_file_dialog_checked(status, "net_superctg.ORBns", "");
  class_net &net = sources.signif.net();
  if (!result.net_file.empty() && !net.save_net_type(frame, result.net_file))
    result.net_file.clear();
  net.FullFileNameSet(result.net_file.string());
  return !frame.stop_requested_get();
}

} // namespace

bool read_nets_for_supercontigs_and_create_new_net(const net_sources &sources, const supercontig_options &options,
                                                   supercontig_result &result) {
  process_frame &frame = sources.frame;
  frame.step_text_set("Reading nets for supercontigs.");
  std::filesystem::path folder = options.folder;
  if (folder.empty())
    folder = frame.open_file_dialog("Select any file with folder of .net files for all supercontigs...").parent_path();
  if (folder.empty())
    return false;
  const std::vector<std::string> files = files_of_supercontigs(frame, folder);
  supercontig_work work(sources);
  if (files.empty() || !work.read(folder, files) || !work.check_contigs_against_supercontigs())
    return false;
  result.n_supercontigs = static_cast<std::int32_t>(files.size());
  result.n_clones = work.n_clones();
  work.write_lists(result);
  work.change_net();
  if (!save_changed_net(sources, options, result))
    return false;
  if (!sources.database.contigs_are_specified_get() || sources.database.contigs() == nullptr)
    return true;
  frame.step_text_set("Changing of clustering");
  question change;
  change.text = "Need to change current clusering?";
  change.explanation = "Yes puts each supercontig into the place of the contigs whose clones it holds; no leaves the "
                       "contigs as they are.";
  if (frame.yes(change))
    result.contigs_changed = work.change_contigs();
  return true;
}

} // namespace orb
