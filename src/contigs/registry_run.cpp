#include "contigs/registry_run.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "contigs/kept_registry.h"
#include "contigs/run_reports.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t contigs_between_reports = 50;

std::vector<clone_number> clones_from_left(const class_FPCto_import &registry, cluster_id id) {
  const auto clones = registry.clones_of_cluster(id);
  std::vector<clone_number> ordered(clones.begin(), clones.end());
  if (registry.cluster_information_get(id).min_and_max_known)
    std::sort(ordered.begin(), ordered.end(), [&registry](clone_number a, clone_number b) {
      return std::tuple(registry.clone_coor_left(a), registry.clone_coor_right(a), a) <
             std::tuple(registry.clone_coor_left(b), registry.clone_coor_right(b), b);
    });
  return ordered;
}

void write_names(const class_DB_of_clones &database, std::span<const clone_number> clones, const fs::path &path) {
  result_file file(path);
  for (const clone_number clone : clones)
    file.line(database.name_of_clone_get(clone));
  file.commit();
}

void write_contig(const class_DB_of_clones &database, const class_FPCto_import &registry, cluster_id id,
                  const fs::path &run) {
  const std::string name = cluster_file_name(registry.name_of_cluster_get(id));
  const fs::path folder = run / name;
  create_folder(folder);
  const std::vector<clone_number> clones = clones_from_left(registry, id);
  write_names(database, clones, folder / (name + ".txt"));
  if (const number_list &path = registry.tiling_path_get(id); !path.empty())
    write_names(database, path.members(), folder / ("MTP_" + name + ".txt"));
  if (!registry.cluster_information_get(id).min_and_max_known)
    return;
  result_file table(folder / ("coor_" + name + ".txt"));
  table.line(coordinates_header);
  for (const clone_number clone : clones)
    table.line(database.name_of_clone_get(clone) + '\t' + number_text_shortest(registry.clone_coor_left(clone)) + '\t' +
               number_text_shortest(registry.clone_coor_right(clone)));
  table.commit();
}

// Two clusters must not share a folder.
bool file_names_differ(process_frame &frame, const class_FPCto_import &registry,
                       const std::vector<cluster_id> &contigs) {
  std::set<std::string> names{heaps_folder_name};
  for (const cluster_id id : contigs)
    if (!names.insert(cluster_file_name(registry.name_of_cluster_get(id))).second)
      return frame.refuse("The files of contig " + registry.name_of_cluster_get(id) +
                          " would lie where those of another one do; give it another name.");
  return true;
}

} // namespace

registry_run write_run_of_registry(process_frame &frame, const class_DB_of_clones &database,
                                   class_FPCto_import &registry, double cutoff) {
  registry_run made;
  std::vector<cluster_id> contigs;
  for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members())
    if (registry.cluster_is_contig_get(id))
      contigs.push_back(id);
  if (!file_names_differ(frame, registry, contigs))
    return made;
  frame.process_start("Contigs as a run");
  run_reports reports;
  reports.open(frame);
  made.folder = reports.folder_contigs;
  for (const cluster_id id : contigs) {
    write_contig(database, registry, id, made.folder);
    cluster_row row;
    row.id = id;
    row.name = registry.name_of_cluster_get(id);
    row.n_clones = registry.n_clones_in_cluster_get(id);
    row.contig = true;
    row.cutoff = cutoff;
    reports.contigs.line(cluster_row_text(row));
    reports.clusters.line(cluster_row_text(row));
    made.n_clones_in_contigs += row.n_clones;
    if (++made.n_contigs % contigs_between_reports != 0)
      continue;
    frame.progress(made.n_contigs, static_cast<std::int64_t>(contigs.size()));
    frame.step_text_set(std::to_string(made.n_contigs) + " out of " + std::to_string(contigs.size()));
    if (frame.stop_requested_get()) {
      reports.close();
      frame.process_stopped_manually();
      return made;
    }
  }
  reports.end_here();
  registry.print_coordinates_of_clones(number_list::range(1, database.total_number_of_clones_get()),
                                       made.folder / "coordinates_of_clones.txt");
  keep_registry(registry, database, made.folder);
  frame.process_done();
  made.completed = true;
  return made;
}

} // namespace orb
