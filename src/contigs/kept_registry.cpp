#include "contigs/kept_registry.h"

#include <map>

#include "contigs/clone_finder.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr const char *clusters_header = "i\tin_use\tplaced\tn_clones\tcluster\tfull_name";
constexpr const char *clones_header = "i\tclone_number\tcoor_left\tcoor_right\tpath\tclone";

const char *truth_text(bool is_true) {
  return is_true ? "True" : "False";
}

void keep_clones(const class_FPCto_import &registry, const class_DB_of_clones &database, cluster_id id,
                 result_file &file) {
  const std::string start = std::to_string(id) + '\t';
  std::map<clone_number, std::string> places_on_path; // a clone may stand there twice
  for (std::int32_t k = 1; k <= registry.tiling_path_get(id).count(); ++k) {
    std::string &places = places_on_path[registry.tiling_path_get(id)(k)];
    places += (places.empty() ? "" : ",") + std::to_string(k);
  }
  for (const clone_number clone : registry.clones_of_cluster(id)) {
    const auto on_path = places_on_path.find(clone);
    file.line(start + std::to_string(clone) + '\t' + number_text_shortest(registry.clone_coor_left(clone)) + '\t' +
              number_text_shortest(registry.clone_coor_right(clone)) + '\t' +
              (on_path == places_on_path.end() ? "" : on_path->second) + '\t' + database.name_of_clone_get(clone));
  }
}

// Lines of a fixed number of fields; tabs beyond them belong to the last one.
class table_reader {
public:
  table_reader(process_frame &frame, const std::filesystem::path &file, std::size_t n_fields)
      : frame_(frame), lines_(file), fields_(n_fields) {}

  bool head(const char *expected) {
    std::string_view line;
    return (lines_.next(line) && line == expected) || refuse("This is no table of a run's registry: its first line is "
                                                             "not the header.");
  }
  // False at the end, and after a message.
  bool next() {
    std::string_view line;
    if (!lines_.next(line))
      return false;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      const std::size_t end = i + 1 < fields_.size() ? line.find('\t') : line.size();
      if (end == std::string_view::npos)
        return refuse("A row has " + std::to_string(fields_.size()) + " fields separated by tabs.");
      fields_[i] = line.substr(0, end);
      line.remove_prefix(std::min(end + 1, line.size()));
    }
    return true;
  }
  bool refuse(const std::string &text) {
    refused_ = true;
    return frame_.refuse(text + "\r\n" + lines_.place());
  }
  bool refused() const { return refused_; }
  std::string_view field(std::size_t i) const { return fields_[i]; }
  // Fields that aren't as they must be turn `wrong` true.
  std::int32_t whole_number(std::size_t i, std::int32_t least, bool &wrong) const {
    std::int32_t number = 0;
    wrong = wrong || !whole_number_parse(fields_[i], number) || number < least;
    return number;
  }
  // With commas between them; none of an empty field.
  std::vector<std::int32_t> whole_numbers(std::size_t i, std::int32_t least, bool &wrong) const {
    std::vector<std::int32_t> numbers;
    for (std::string_view rest = fields_[i]; !rest.empty() || !numbers.empty();) {
      const std::size_t end = rest.find(',');
      std::int32_t number = 0;
      wrong = wrong || !whole_number_parse(rest.substr(0, end), number) || number < least;
      numbers.push_back(number);
      if (wrong || end == std::string_view::npos)
        break;
      rest.remove_prefix(end + 1);
    }
    return numbers;
  }
  double number(std::size_t i, bool &wrong) const {
    double number = 0;
    wrong = wrong || !number_parse(fields_[i], number);
    return number;
  }
  bool truth(std::size_t i, bool &wrong) const {
    wrong = wrong || (fields_[i] != truth_text(true) && fields_[i] != truth_text(false));
    return fields_[i] == truth_text(true);
  }

private:
  process_frame &frame_;
  line_reader lines_;
  std::vector<std::string_view> fields_;
  bool refused_ = false;
};

struct kept_cluster {
  bool in_use = false, placed = false;
  std::int32_t n_clones = 0;
  std::string name, full_name;
  number_list clones;
  std::map<std::int32_t, clone_number> path; // by place
};

bool read_clusters(table_reader &table, std::vector<kept_cluster> &clusters) {
  clusters.assign(1, {}); // from 1
  if (!table.head(clusters_header))
    return false;
  while (table.next()) {
    bool wrong = false;
    kept_cluster cluster;
    wrong = table.whole_number(0, 1, wrong) != static_cast<std::int32_t>(clusters.size());
    cluster.in_use = table.truth(1, wrong);
    cluster.placed = table.truth(2, wrong);
    cluster.n_clones = table.whole_number(3, 0, wrong);
    cluster.name = table.field(4);
    cluster.full_name = table.field(5);
    if (wrong)
      return table.refuse(
          "A row is the cluster's number (all in sequence), whether it is in use and placed, the number "
          "of its clones, and its two names.");
    clusters.push_back(std::move(cluster));
  }
  return !table.refused();
}

bool read_clones(table_reader &table, clone_finder &finder, std::vector<kept_cluster> &clusters,
                 class_FPCto_import &registry) {
  if (!table.head(clones_header))
    return false;
  while (table.next()) {
    bool wrong = false;
    const std::int32_t id = table.whole_number(0, 1, wrong), proposed = table.whole_number(1, 1, wrong);
    const double left = table.number(2, wrong), right = table.number(3, wrong);
    const std::vector<std::int32_t> places = table.whole_numbers(4, 1, wrong);
    if (wrong || static_cast<std::size_t>(id) >= clusters.size())
      return table.refuse(
          "A row is the number of a cluster, of a clone, its two ends, its places on the tiling path or "
          "nothing, and its name.");
    const std::string name(table.field(5));
    const clone_number clone = finder.take(name, proposed);
    if (clone < 1)
      return table.refuse(clone < 0 ? "Clone " + name + " of the run is not in the library."
                                    : "Clone " + name + " lies in two clusters of the run.");
    kept_cluster &cluster = clusters[static_cast<std::size_t>(id)];
    cluster.clones.add(clone);
    for (const std::int32_t place : places)
      if (!cluster.path.emplace(place, clone).second)
        return table.refuse("Two clones have one place on the tiling path.");
    registry.clone_coordinates_set(clone, left, right);
  }
  return !table.refused();
}

bool put_cluster(process_frame &frame, const kept_cluster &cluster, const std::filesystem::path &file,
                 class_FPCto_import &registry) {
  if (cluster.clones.count() != cluster.n_clones)
    return frame.refuse("Of cluster " + cluster.name + " the registry of the run holds " +
                        std::to_string(cluster.clones.count()) + " of " + std::to_string(cluster.n_clones) +
                        " clones.\r\nfile " + file.string());
  if (!registry.add_new_cluster(cluster.clones, cluster.name, cluster.full_name, false))
    return false;
  const cluster_id id = registry.n_list_of_all_cluster_names_get();
  if (cluster.placed)
    registry.make_min_and_max_coor_for_cluster(id);
  number_list path;
  for (const auto &[place, clone] : cluster.path)
    path.add(clone);
  registry.tiling_path_set(id, std::move(path));
  if (!cluster.in_use)
    registry.cluster_off_idCluster(id);
  return true;
}

} // namespace

void keep_registry(const class_FPCto_import &registry, const class_DB_of_clones &database,
                   const std::filesystem::path &folder) {
  result_file clusters(folder / registry_clusters_name), clones(folder / registry_clones_name);
  clusters.line(clusters_header);
  clones.line(clones_header);
  for (cluster_id id = 1; id <= registry.n_list_of_all_cluster_names_get(); ++id) {
    const bool in_use = registry.cluster_is_in_use_get(id);
    const cluster_information &cluster = registry.cluster_information_get(id);
    clusters.line(std::to_string(id) + '\t' + truth_text(in_use) + '\t' +
                  truth_text(in_use && cluster.min_and_max_known) + '\t' +
                  std::to_string(in_use ? registry.n_clones_in_cluster_get(id) : 0) + '\t' +
                  registry.name_of_cluster_get(id) + '\t' + cluster.FPC_name);
    if (in_use)
      keep_clones(registry, database, id, clones);
  }
  clones.commit();
  clusters.commit(); // last: a folder with this table has both
}

bool registry_is_kept(const std::filesystem::path &folder) {
  std::error_code error;
  return std::filesystem::is_regular_file(folder / registry_clusters_name, error);
}

bool read_kept_registry(process_frame &frame, const std::filesystem::path &folder, class_DB_of_clones &database,
                        class_FPCto_import &registry) {
  table_reader clusters_table(frame, folder / registry_clusters_name, 6),
      clones_table(frame, folder / registry_clones_name, 6);
  std::vector<kept_cluster> clusters;
  clone_finder finder(database);
  if (!read_clusters(clusters_table, clusters) || !read_clones(clones_table, finder, clusters, registry))
    return false;
  for (std::size_t id = 1; id < clusters.size(); ++id)
    if (!put_cluster(frame, clusters[id], folder / registry_clones_name, registry))
      return false;
  registry.add_new_cluster_finish();
  return true;
}

} // namespace orb
