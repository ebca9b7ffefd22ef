// The lesser tables over the contig registry: contigs as lists, clones and their contigs, markers and where they lie.
#include <algorithm>
#include <map>
#include <numeric>
#include <set>

#include "clustering/class_FPCto_import.h"
#include "clustering/cluster_file_name.h"
#include "database/class_markers.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t clusters_between_reports = 100;

std::string coordinate_text(double value) {
  return number_text(value, 3);
}

fs::path file_or_default(const process_frame &frame, const fs::path &file, const char *name) {
  return file.empty() ? frame.path_in_working_folder(name) : file;
}

} // namespace

void class_FPCto_import::print_cluster_name_for_clones(const number_list &list, const fs::path &file) {
  if (list.empty()) {
    frame_->alarm("list_of_clones(0)=0");
    return;
  }
  check_clone_numbers(list);
  result_file out(file_or_default(*frame_, file, "\\clones_in_contogs.txt"));
  out.line("clone\tcontig");
  for (const clone_number clone : list.members())
    out.line(database_->name_of_clone_get(clone) + '\t' + name_of_cluster_get(clone_in_cluster_get(clone)));
  out.commit();
}

void class_FPCto_import::print_clusters_of_clones(const number_list &list, const fs::path &file) {
  check_clone_numbers(list);
  result_file out(file_or_default(*frame_, file, "\\clusters_of_clones.txt"));
  out.line("clone\tclusters");
  number_list clusters;
  for (const clone_number clone : list.members()) {
    list_of_clusters_of_clone_get(clone, clusters);
    std::string row = database_->name_of_clone_get(clone) + '\t';
    for (std::int32_t i = 1; i <= clusters.count(); ++i)
      row += (i > 1 ? "," : "") + name_of_cluster_get(clusters(i));
    out.line(row);
  }
  out.commit();
}

// ---- contigs as lists ----------------------------------------------------------------------------------------------

namespace {

// The clones of a cluster from left to right; clones at the same place in the order of their numbers.
std::vector<clone_number> clones_from_left(const class_FPCto_import &registry, cluster_id id) {
  const auto clones = registry.clones_of_cluster(id);
  std::vector<clone_number> ordered(clones.begin(), clones.end());
  std::sort(ordered.begin(), ordered.end(), [&registry](clone_number a, clone_number b) {
    const clone_information &x = registry.clone_information_get(a), &y = registry.clone_information_get(b);
    return std::tuple(x.coor_left, x.coor_right, a) < std::tuple(y.coor_left, y.coor_right, b);
  });
  return ordered;
}

std::string names_of_markers(const class_DB_of_clones &database, clone_number clone) {
  std::string text;
  for (const std::int32_t marker : database.markers().markers_of_clone(clone))
    text += '\t' + database.markers().name_of_marker_get(marker);
  return text;
}

// The folders of the lists; names of clusters that give the same file name are told apart.
class ordered_contig_files {
public:
  explicit ordered_contig_files(const fs::path &folder)
      : names_(folder / "contigs_ordered"), coordinates_(folder / "contigs_ordered_coor"),
        markers_(folder / "contigs_ordered_coor_markers") {
    for (const fs::path &made : {names_, coordinates_, markers_})
      create_folder(made);
  }

  // The name under which the lists stand.
  std::string write(const class_FPCto_import &registry, const class_DB_of_clones &database, cluster_id id) {
    std::string name = cluster_file_name(registry.name_of_cluster_get(id));
    while (!used_.insert(name).second)
      name += "_rrr";
    result_file only_names(names_ / ("contig_" + name + ".txt"));
    result_file with_coordinates(coordinates_ / ("coor_contig_" + name + ".txt"));
    result_file with_markers(markers_ / ("coor_mark_contig_" + name + ".txt"));
    with_coordinates.line("clone\tLeft\tRight");
    with_markers.line("clone\tLeft\tRight");
    for (const clone_number clone : clones_from_left(registry, id)) {
      const std::string placed = database.name_of_clone_get(clone) + '\t' +
                                 coordinate_text(registry.clone_coor_left(clone)) + '\t' +
                                 coordinate_text(registry.clone_coor_right(clone));
      only_names.line(database.name_of_clone_get(clone));
      with_coordinates.line(placed);
      with_markers.line(placed + names_of_markers(database, clone));
    }
    only_names.commit();
    with_coordinates.commit();
    with_markers.commit();
    return name;
  }

private:
  fs::path names_, coordinates_, markers_;
  std::set<std::string> used_;
};

} // namespace

fs::path class_FPCto_import::print_FPC_clusters() {
  const fs::path folder =
      frame_->path_in_working_folder("\\clusters_FPC_ordered_" + frame_->clock().date_and_time_string());
  ordered_contig_files files(folder);
  frame_->step_text_set("Print files with FPC contigs...");
  result_file report(folder / "report.txt");
  report.line("contig\tname\tn\tmin\tmax\tbands");
  const number_list &clusters = current_list_of_clusters_in_use_get();
  for (std::int32_t i = 1; i <= clusters.count(); ++i) {
    const cluster_id id = clusters(i);
    const std::string name = files.write(*this, *database_, id);
    const cluster_information &cluster = cluster_information_get(id);
    std::string row = name + '\t' + cluster.FPC_name + '\t' + std::to_string(n_clones_in_cluster_get(id)) + '\t';
    if (cluster.min_and_max_known)
      row += coordinate_text(cluster.min_left) + '\t' + coordinate_text(cluster.max_right) + '\t' +
             coordinate_text(length_of_cluster_bands_get(id));
    else
      row += "\t\t";
    report.line(row);
    if (i % clusters_between_reports != 0)
      continue;
    frame_->progress(i, clusters.count());
    frame_->local_process_text_set(std::to_string(i) + " out of " + std::to_string(clusters.count()));
    if (!frame_->goes_on())
      break;
  }
  report.commit();
  return folder;
}

// ---- markers -------------------------------------------------------------------------------------------------------

namespace {

// Where the clones of one marker, or of one list, lie.
struct place_in_cluster {
  std::int32_t n_clones = 0;
  double left = 0, right = 0;
};

std::map<cluster_id, place_in_cluster> places_of(const class_FPCto_import &registry, const number_list &clones,
                                                 bool final_only) {
  std::map<cluster_id, place_in_cluster> places;
  for (const clone_number clone : clones.members()) {
    const cluster_id id = registry.clone_in_cluster_get(clone);
    if (id == 0 || (final_only && !registry.cluster_is_in_use_get(id)))
      continue;
    place_in_cluster &place = places[id];
    const double left = registry.clone_coor_left(clone), right = registry.clone_coor_right(clone);
    place.left = place.n_clones == 0 ? left : std::min(place.left, left);
    place.right = place.n_clones == 0 ? right : std::max(place.right, right);
    ++place.n_clones;
  }
  return places;
}

struct named_clones {
  std::string name, position;
  number_list clones;
};

std::vector<named_clones> clones_of_all_markers(const class_markers &markers) {
  std::vector<named_clones> all;
  for (std::int32_t m = 1; m <= markers.total_number_of_markers_get(); ++m)
    all.push_back(
        {markers.name_of_marker_get(m), markers.position_of_marker_get(m), markers.list_of_clones_of_marker_get(m)});
  return all;
}

// Lines "clone_1,..,clone_k", named by their numbers; unknown clones are counted.
std::vector<named_clones> clones_of_lines(const fs::path &file, class_DB_of_clones &database, std::int32_t &n_unknown) {
  std::vector<named_clones> all;
  line_reader lines(file);
  std::string_view line;
  std::vector<std::string> unknown;
  while (lines.next(line)) {
    named_clones listed{"line " + std::to_string(lines.line_number()), "", {}};
    std::int32_t n = 0;
    database.list_of_clones_in_line_get(line, listed.clones, unknown, n);
    n_unknown += n;
    if (!listed.clones.empty())
      all.push_back(std::move(listed));
  }
  return all;
}

} // namespace

bool class_FPCto_import::print_positon_of_markers(const fs::path &lists) {
  question asked;
  asked.text = "From table of lists of clones: clone_1,..,clone_k (or for all markers in system?)";
  asked.to_go_on = answer::no; // all markers, which takes no file
  std::vector<named_clones> wanted;
  if (!lists.empty() || frame_->yes(asked)) {
    const fs::path file = lists.empty() ? frame_->open_file_dialog("Open file with lists of lists of clones") : lists;
    if (file.empty())
      return false;
    if (const std::string problem = why_no_text_file(file); !problem.empty()) {
      return frame_->refuse(problem);
    }
    std::int32_t n_unknown = 0;
    wanted = clones_of_lines(file, *database_, n_unknown);
    if (n_unknown > 0) {
      frame_->refuse("In total, " + std::to_string(n_unknown) + " clones not found! ");
    }
  } else {
    wanted = clones_of_all_markers(database_->markers());
  }
  asked.text = "Final clusters only?";
  asked.by_default = asked.to_go_on = answer::yes;
  const bool final_only = frame_->yes(asked);

  std::map<cluster_id, std::int32_t> n_of_cluster;
  result_file table(frame_->path_in_working_folder("\\mmm.txt"));
  table.line("marker,position,n_clones,contig,n_clones_in_contig,left,right");
  for (const named_clones &marker : wanted)
    for (const auto &[id, place] : places_of(*this, marker.clones, final_only)) {
      ++n_of_cluster[id];
      table.line(marker.name + ',' + marker.position + ',' + std::to_string(marker.clones.count()) + ',' +
                 name_of_cluster_get(id) + ',' + std::to_string(place.n_clones) + ',' + coordinate_text(place.left) +
                 ',' + coordinate_text(place.right));
    }
  table.commit();
  result_file counts(frame_->path_in_working_folder("\\contigs_with_n_markers.txt"));
  counts.line("contig,n_clones,n_markers");
  for (const auto &[id, n] : n_of_cluster)
    counts.line(name_of_cluster_get(id) + ',' + std::to_string(n_clones_in_cluster_get(id)) + ',' + std::to_string(n));
  counts.commit();
  return true;
}

void class_FPCto_import::PrintClonesForMarkers(marker_separator separator) {
  const class_markers &markers = database_->markers();
  if (markers.total_number_of_markers_get() == 0) {
    frame_->alarm("No markers were loaded!");
    return;
  }
  question asked;
  asked.text = "By default, comma will be used for separation between clone names.\rDo you want to use space instead?";
  asked.to_go_on = answer::no;
  if (separator == marker_separator::ask)
    separator = frame_->yes(asked) ? marker_separator::blank : marker_separator::comma;
  result_file out(frame_->path_in_working_folder("\\clones_for_each_marker.txt"));
  for (const named_clones &marker : clones_of_all_markers(markers)) {
    std::string line = marker.name + '\t';
    for (std::int32_t i = 1; i <= marker.clones.count(); ++i)
      line += (i == 1                                 ? ""
               : separator == marker_separator::blank ? " "
                                                      : ",") +
              database_->name_of_clone_get(marker.clones(i));
    out.line(line + '\t' + marker.position);
  }
  out.commit();
}

// ---- names ---------------------------------------------------------------------------------------------------------

bool class_FPCto_import::rename_contigs(const fs::path &file) {
  std::map<cluster_id, std::string> renamed;
  std::set<std::string> taken;
  line_reader lines(file);
  std::string_view line;
  const auto refused = [&](const std::string &why) {
    return frame_->refuse(why + "\r\nfile " + file.string() + ", line " + std::to_string(lines.line_number()));
  };
  while (lines.next(line)) {
    if (line.empty())
      continue;
    const std::size_t tab = line.find('\t');
    if (tab == 0 || tab == std::string_view::npos || tab + 1 == line.size())
      return refused("A line holds the name of a contig, a tab and its new name.");
    cluster_id id = 0;
    bool not_found = false;
    search_for_cluster(line.substr(0, tab), id, not_found);
    if (not_found)
      return refused("Contig " + std::string(line.substr(0, tab)) + " not found!");
    if (!taken.emplace(line.substr(tab + 1)).second || !renamed.emplace(id, line.substr(tab + 1)).second)
      return refused("A contig or a new name stands in two lines.");
  }
  for (const auto &[id, name] : renamed) {
    const auto found = id_of_name_.find(name);
    if (found != id_of_name_.end() && renamed.count(found->second) == 0) {
      return frame_->refuse("Cluster with name " + name + " already exist!");
    }
  }
  for (const auto &[id, name] : renamed)
    id_of_name_.erase(name_of_cluster_[static_cast<std::size_t>(id)]);
  for (const auto &[id, name] : renamed) {
    name_of_cluster_[static_cast<std::size_t>(id)] = name;
    id_of_name_[name] = id;
  }
  return true;
}

} // namespace orb
