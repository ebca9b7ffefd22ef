#include "contigs/run_folder.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "contigs/clone_finder.h"
#include "contigs/kept_registry.h"
#include "contigs/run_reports.h"
#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"

namespace orb {

namespace {

// Long names of clusters that were tested as they stood begin so, or are empty; those of a run that cuts clusters
// begin with the name of the whole.
constexpr const char *starts_of_given_cluster[] = {"_only_", "_cutoff_increased_from_"};

bool is_file(const std::filesystem::path &path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

std::string line_of(const std::filesystem::path &file, std::size_t line) {
  return "file " + file.string() + ", line " + std::to_string(line);
}

// Where a cluster of the run has its files.
std::filesystem::path folder_of_cluster(const std::filesystem::path &run, const std::string &name) {
  const std::filesystem::path heaps = run / heaps_folder_name;
  return is_file(heaps / (cluster_file_name(name) + ".txt")) ? heaps : run / cluster_file_name(name);
}

bool refuse_at(process_frame &frame, const std::string &text, const std::string &place) {
  return frame.refuse(text + "\r\n" + place);
}

bool read_list_of_names(process_frame &frame, const std::filesystem::path &file, std::vector<std::string> &names) {
  line_reader reader(file);
  std::string_view line;
  while (reader.next(line)) {
    if (line.empty())
      return refuse_at(frame, "An empty line stands in a list of clones.", reader.place());
    names.emplace_back(line);
  }
  return true;
}

// Reads one folder into one run_folder; every refusal is a message with file and line.
class run_folder_reader {
public:
  run_folder_reader(process_frame &frame, run_folder &run) : frame_(frame), run_(run) {}
  bool read();

private:
  enum class verdict { final, cut_again, damaged };

  bool refuse(const std::string &text, const std::string &place) { return refuse_at(frame_, text, place); }
  bool read_row(const line_reader &reader, std::string_view line);
  verdict verdict_of_row(const cluster_row &row, std::filesystem::path &folder) const;
  bool read_cluster(const cluster_row &row, const std::filesystem::path &folder);
  bool check_path(const std::filesystem::path &file, const std::vector<std::string> &path,
                  const std::vector<std::string> &clones);
  bool read_coordinates(const std::filesystem::path &file, const std::vector<std::string> &clones,
                        std::vector<run_folder::coordinate> &coordinates);
  bool read_pair(const std::filesystem::path &file, const std::vector<std::string> &clones,
                 std::vector<run_folder::coordinate> &coordinates, std::vector<std::string> &path);

  process_frame &frame_;
  run_folder &run_;
  std::unordered_set<std::string> names_; // of all rows
};

bool run_folder_reader::read() {
  line_reader reader(run_.folder / report_clusters_name);
  std::string_view line;
  if (!reader.next(line) || line != cluster_report_header())
    return refuse("This is no report of clusters: its first line is not the header.", line_of(reader.path(), 1));
  while (reader.next(line)) {
    if (!read_row(reader, line))
      return false;
  }
  return true;
}

bool run_folder_reader::read_row(const line_reader &reader, std::string_view line) {
  cluster_row row;
  std::string why;
  if (!cluster_row_read(line, row, why))
    return refuse("Damaged row of the cluster report: " + why + ".", reader.place());
  if (!names_.insert(row.name).second)
    return refuse("Cluster " + row.name + " stands twice in the cluster report.", reader.place());
  std::filesystem::path folder;
  switch (verdict_of_row(row, folder)) {
  case verdict::cut_again:
    return true;
  case verdict::damaged:
    return refuse("The list of clones of cluster " + row.name + " is missing: " + cluster_file_name(row.name) + ".txt",
                  reader.place());
  case verdict::final:
    break;
  }
  return read_cluster(row, folder);
}

// Whether the run kept the cluster or cut it again, by the rule of the run itself. A row can't be judged by long names:
// parts of equal size bear equal ones. What it takes is told by the row, but for the smallest size of a contig: below
// it a cluster's files lie in the folder of heaps.
run_folder_reader::verdict run_folder_reader::verdict_of_row(const cluster_row &row,
                                                             std::filesystem::path &folder) const {
  folder = folder_of_cluster(run_.folder, row.name);
  if (!is_file(folder / (cluster_file_name(row.name) + ".txt")))
    return verdict::damaged;
  bool only_tested = row.full_name.empty();
  for (const std::string_view start : starts_of_given_cluster)
    only_tested = only_tested || std::string_view(row.full_name).substr(0, start.size()) == start;
  if (only_tested || row.contig)
    return verdict::final;
  // Not connected, or too large below the top of the ladder, or too wide: cut again. A connected heap is kept.
  return row.remark.empty() && folder.filename() == heaps_folder_name ? verdict::final : verdict::cut_again;
}

bool run_folder_reader::read_cluster(const cluster_row &row, const std::filesystem::path &folder) {
  const std::string name = cluster_file_name(row.name) + ".txt";
  std::vector<std::string> clones, path;
  std::vector<run_folder::coordinate> coordinates;
  if (!read_list_of_names(frame_, folder / name, clones))
    return false;
  if (clones.size() != static_cast<std::size_t>(row.n_clones))
    return refuse("Cluster " + row.name + " has " + std::to_string(row.n_clones) +
                      " clones by the cluster report, but its list holds " + std::to_string(clones.size()) + ".",
                  line_of(folder / name, clones.size()));
  if (is_file(folder / ("MTP_" + name))) {
    if (!read_list_of_names(frame_, folder / ("MTP_" + name), path) ||
        !check_path(folder / ("MTP_" + name), path, clones))
      return false;
  }
  if (is_file(folder / ("coor_" + name)) && !read_coordinates(folder / ("coor_" + name), clones, coordinates))
    return false;
  const std::filesystem::path table = folder / ("clones_MTP_coor_and_markers_" + name);
  if (clones.size() == 2 && coordinates.empty() && is_file(table) && !read_pair(table, clones, coordinates, path))
    return false;
  run_.clusters.push_back(row);
  run_.clones.push_back(std::move(clones));
  run_.tiling_path.push_back(std::move(path));
  run_.coordinates.push_back(std::move(coordinates));
  return true;
}

bool run_folder_reader::check_path(const std::filesystem::path &file, const std::vector<std::string> &path,
                                   const std::vector<std::string> &clones) {
  std::vector<std::string_view> sorted(clones.begin(), clones.end());
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (!std::binary_search(sorted.begin(), sorted.end(), std::string_view(path[i])))
      return refuse("Clone " + path[i] + " of the tiling path is not in its cluster.", line_of(file, i + 1));
  }
  return true;
}

bool run_folder_reader::read_coordinates(const std::filesystem::path &file, const std::vector<std::string> &clones,
                                         std::vector<run_folder::coordinate> &coordinates) {
  line_reader reader(file);
  std::string_view line;
  if (!reader.next(line) || line != coordinates_header)
    return refuse("This is no table of coordinates: its first line is not the header.", line_of(file, 1));
  while (reader.next(line)) {
    const std::size_t end = line.rfind('\t'),
                      middle = end == std::string_view::npos || end == 0 ? end : line.rfind('\t', end - 1);
    run_folder::coordinate row;
    if (end == std::string_view::npos || middle == std::string_view::npos || middle == end ||
        !number_parse(line.substr(middle + 1, end - middle - 1), row.left) ||
        !number_parse(line.substr(end + 1), row.right))
      return refuse("A row of coordinates is a clone and two numbers, separated by tabs.", reader.place());
    row.clone = line.substr(0, middle);
    if (coordinates.size() >= clones.size() || row.clone != clones[coordinates.size()])
      return refuse("Coordinates don't follow the list of clones: clone " + row.clone + ".", reader.place());
    coordinates.push_back(std::move(row));
  }
  if (coordinates.size() != clones.size())
    return refuse("Coordinates end early: " + std::to_string(coordinates.size()) + " of " +
                      std::to_string(clones.size()) + " clones.",
                  reader.place());
  return true;
}

// A cluster of two clones has no tables of its own but the one with its markers: behind each clone its two ends and its
// place on the path.
bool run_folder_reader::read_pair(const std::filesystem::path &file, const std::vector<std::string> &clones,
                                  std::vector<run_folder::coordinate> &coordinates, std::vector<std::string> &path) {
  line_reader reader(file);
  std::string_view line;
  reader.next(line); // zones
  reader.next(line); // head
  std::vector<std::string> fields, on_path(2);
  for (std::size_t i = 0; i < 2; ++i) {
    const std::string start = std::to_string(i + 1) + '\t' + clones[i] + '\t';
    run_folder::coordinate row{clones[i], 0, 0};
    if (!reader.next(line) || !line.starts_with(start) ||
        class_serv_raznoe::cut_string(line.substr(start.size()), fields) < 3)
      return refuse("The table of a cluster of two clones doesn't follow its list.", reader.place());
    if (fields[0] == "Unknown" && coordinates.empty())
      return true;
    std::int32_t place = 0;
    if (!number_parse(fields[0], row.left) || !number_parse(fields[1], row.right) ||
        (fields[2] != "False" && (!whole_number_parse(fields[2], place) || place < 1 || place > 2)))
      return refuse("Behind a clone stand its two ends and its place on the tiling path or False.", reader.place());
    if (place > 0 && !on_path[static_cast<std::size_t>(place) - 1].empty())
      return refuse("Both clones have one place on the tiling path.", reader.place());
    if (place > 0)
      on_path[static_cast<std::size_t>(place) - 1] = clones[i];
    coordinates.push_back(std::move(row));
  }
  std::erase(on_path, "");
  path = std::move(on_path);
  return true;
}

// Of clone i, from 0, of a cluster.
std::string place_in_list(const run_folder &run, const std::string &cluster, std::size_t i) {
  return line_of(folder_of_cluster(run.folder, cluster) / (cluster_file_name(cluster) + ".txt"), i + 1);
}

bool find_clones(process_frame &frame, const run_folder &run, std::size_t cluster, clone_finder &finder,
                 number_list &list) {
  for (std::size_t i = 0; i < run.clones[cluster].size(); ++i) {
    const std::string &name = run.clones[cluster][i];
    const clone_number clone = finder.take(name);
    if (clone > 0) {
      list.add(clone);
      continue;
    }
    const std::string &cluster_name = run.clusters[cluster].name;
    return frame.refuse((clone < 0 ? "Clone " + name + " of the run is not in the library.\r\n"
                                   : "Clone " + name + " lies in two clusters of the run.\r\n") +
                        place_in_list(run, cluster_name, i));
  }
  return true;
}

void put_tiling_paths(const run_folder &run, const class_DB_of_clones &database, class_FPCto_import &registry) {
  for (std::size_t c = 0; c < run.clusters.size(); ++c) {
    const auto id = static_cast<cluster_id>(c) + 1;
    std::unordered_map<std::string_view, clone_number> clone_of_name;
    for (const clone_number clone : registry.clones_of_cluster(id))
      clone_of_name.emplace(database.name_of_clone_get(clone), clone);
    number_list path;
    for (const std::string &name : run.tiling_path[c]) {
      const auto found = clone_of_name.find(name);
      if (found != clone_of_name.end()) // the reader of the folder has seen to it
        path.add(found->second);
    }
    registry.tiling_path_set(id, std::move(path));
  }
}

// What the reports tell: of a run that kept no registry.
bool put_reported_clusters(process_frame &frame, const run_folder &run, class_DB_of_clones &database,
                           class_FPCto_import &registry) {
  clone_finder finder(database);
  for (std::size_t c = 0; c < run.clusters.size(); ++c) {
    number_list list;
    if (!find_clones(frame, run, c, finder, list) ||
        !registry.add_new_cluster(list, run.clusters[c].name, run.clusters[c].full_name, false))
      return false;
    for (std::size_t i = 0; i < run.coordinates[c].size(); ++i)
      registry.clone_coordinates_set(list(static_cast<std::int32_t>(i) + 1), run.coordinates[c][i].left,
                                     run.coordinates[c][i].right);
  }
  registry.add_new_cluster_finish();
  put_tiling_paths(run, database, registry);
  for (std::size_t c = 0; c < run.clusters.size(); ++c) {
    if (!run.coordinates[c].empty())
      registry.make_min_and_max_coor_for_cluster(static_cast<cluster_id>(c) + 1);
  }
  return true;
}

// Whether every clone of the reports lies in the cluster of that name: lists that were changed by hand, or that come
// from another run, aren't passed over in silence.
bool reports_agree(process_frame &frame, const run_folder &run, const class_DB_of_clones &database,
                   const class_FPCto_import &registry) {
  for (std::size_t c = 0; c < run.clusters.size(); ++c) {
    cluster_id id = 0;
    bool not_found = false;
    registry.search_for_cluster(run.clusters[c].name, id, not_found);
    std::unordered_set<std::string_view> names;
    for (const clone_number clone : registry.clones_of_cluster(id))
      names.insert(database.name_of_clone_get(clone));
    for (std::size_t i = 0; i < run.clones[c].size(); ++i)
      if (!names.contains(run.clones[c][i]))
        return frame.refuse("Clone " + run.clones[c][i] + " lies in cluster " + run.clusters[c].name +
                            " by its list, but not by " + registry_clones_name + ".\r\n" +
                            place_in_list(run, run.clusters[c].name, i));
  }
  return true;
}

} // namespace

bool is_run_folder(const std::filesystem::path &folder) {
  return is_file(folder / report_clusters_name) && is_file(folder / report_contigs_name);
}

bool read_run_folder(process_frame &frame, const std::filesystem::path &folder, run_folder &run) {
  run_folder read;
  read.folder = folder;
  if (!run_folder_reader(frame, read).read())
    return false;
  run = std::move(read);
  return true;
}

bool read_far_clones(process_frame &frame, const std::filesystem::path &folder, const std::string &cluster,
                     std::vector<std::string> &names) {
  const std::filesystem::path file =
      folder_of_cluster(folder, cluster) / (far_clones_start + cluster_file_name(cluster) + ".txt");
  return !is_file(file) || read_list_of_names(frame, file, names);
}

bool read_run_folder_into_registry(process_frame &frame, const project_settings &settings,
                                   const std::filesystem::path &folder, class_DB_of_clones &database) {
  run_folder run;
  if (!read_run_folder(frame, folder, run))
    return false;
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame);
  auto registry = std::make_shared<class_FPCto_import>(frame, settings, database);
  registry->clear_all_run(0, false);
  const bool filled = registry_is_kept(folder) ? read_kept_registry(frame, folder, database, *registry) &&
                                                     reports_agree(frame, run, database, *registry)
                                               : put_reported_clusters(frame, run, database, *registry);
  if (!filled)
    return false;
  database.contigs_set(std::move(registry));
  database.contigs_are_specified_set(true);
  return true;
}

} // namespace orb
