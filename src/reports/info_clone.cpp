#include "reports/info_clone.h"

#include <algorithm>

#include "contigs/run_folder.h"
#include "database/class_DB_of_clones_read.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "graph/class_net.h"
#include "project/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

struct places {
  std::vector<fs::path> libraries, nets, runs;
};

void add_place(const fs::path &path, places &found) {
  switch (kind_of_input(path)) {
  case input_kind::missing:
    throw file_error("can't open", path, "No such file or directory");
  case input_kind::library:
  case input_kind::sizes_file:
  case input_kind::sizes_folder:
    found.libraries.push_back(path);
    break;
  case input_kind::native_net:
    found.nets.push_back(path);
    break;
  case input_kind::run_folder:
    found.runs.push_back(path);
    break;
  case input_kind::results_folder: {
    std::vector<fs::path> entries;
    for (const fs::directory_entry &entry : fs::directory_iterator(path))
      entries.push_back(entry.path());
    std::sort(entries.begin(), entries.end());
    for (const fs::path &entry : entries) {
      const input_kind kind = kind_of_input(entry);
      if (kind == input_kind::library || kind == input_kind::native_net)
        add_place(entry, found);
    }
    if (const fs::path run = run_folder_of_results(path); !run.empty())
      found.runs.push_back(run);
    break;
  }
  default:
    break;
  }
}

const char *burial_text(std::int16_t code) {
  return code == 1 ? "this in partner" : code == 2 ? "partner in this" : code == 3 ? "each in the other" : "";
}

void load_any(process_frame &frame, const project_settings &settings, const fs::path &path,
              class_DB_of_clones &database) {
  class_DB_of_clones_read reader(frame, settings);
  class_usable_values usable_values;
  if (kind_of_input(path) == input_kind::library) {
    reader.open_file_with_clones(0, path, true, true, database, usable_values);
  } else {
    bool success = false;
    reader.read_database_from_folder_of_sizes_files(path, !fs::is_directory(path), true, success, database,
                                                    usable_values);
  }
}

report bands_of(const class_DB_of_clones &database, clone_number clone) {
  report made;
  std::string bands;
  for (band_value band : database.bands_of_clone(clone))
    bands += (bands.empty() ? "" : " ") + std::to_string(band);
  made["number"] = clone;
  made["number of bands"] = database.number_of_bands_in_clone_get(clone);
  made["bands"] = bands;
  return made;
}

// The row of the clone in a report of the revision that lies beside the net; empty when there is none.
std::string row_of_clone(const fs::path &folder, const std::string &ending, std::size_t name_field,
                         const std::string &name) {
  std::error_code failed;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder, failed)) {
    if (!entry.path().filename().string().starts_with("cutoff") || !entry.path().filename().string().ends_with(ending))
      continue;
    line_reader lines(entry.path());
    std::string_view line;
    std::vector<std::string> fields;
    while (lines.next(line)) {
      class_serv_raznoe::cut_string(line, fields);
      if (fields.size() > name_field && fields[name_field] == name)
        return std::string(line);
    }
  }
  return {};
}

report neighbours_in(process_frame &frame, const fs::path &file, const class_DB_of_clones &database,
                     clone_number clone) {
  report made;
  made["net"] = file.string();
  class_net net;
  bool ok = false;
  net.read_net_type(frame, file, ok, database.total_number_of_clones_get());
  if (!ok)
    return made;
  std::int32_t n_Q = 0;
  net.number_of_vertices_with_index_get(-1, n_Q);
  made["Q verdict"] = net.index_of_vertex_get(clone) == -1 ? "Q-clone: its overlaps were removed"
                      : n_Q > 0                            ? "kept"
                                                           : "no Q-clones are marked in this net";
  std::vector<net_edge> edges(net.edges_of_vertex(clone).begin(), net.edges_of_vertex(clone).end());
  std::stable_sort(edges.begin(), edges.end(), [](const net_edge &a, const net_edge &b) { return a.value > b.value; });
  made["number of neighbours"] = edges.size();
  report table = report::array();
  for (const net_edge &edge : edges)
    table.push_back({{"neighbour", database.name_of_clone_get(edge.neighbour)},
                     {"score", number_text(edge.value, 2)},
                     {"buried", burial_text(edge.index2)}});
  made["neighbours"] = std::move(table);
  return made;
}

// False when no final cluster of the run holds the clone.
bool contig_in(process_frame &frame, const fs::path &folder, const std::string &name, report &made) {
  run_folder run;
  made["run"] = folder.string();
  if (!read_run_folder(frame, folder, run))
    return false;
  for (std::size_t i = 0; i < run.clusters.size(); ++i) {
    if (std::find(run.clones[i].begin(), run.clones[i].end(), name) == run.clones[i].end())
      continue;
    const cluster_row &row = run.clusters[i];
    made[row.contig ? "contig" : "heap"] = row.name;
    made["long name"] = row.full_name;
    made["clones in it"] = row.n_clones;
    for (const auto &place : run.coordinates[i])
      if (place.clone == name) {
        made["left, in bands"] = place.left;
        made["right, in bands"] = place.right;
        break;
      }
    const auto &path = run.tiling_path[i];
    const auto at = std::find(path.begin(), path.end(), name);
    made["tiling path"] = at == path.end()
                              ? report("not on it")
                              : report(std::to_string(at - path.begin() + 1) + " of " + std::to_string(path.size()));
    return true;
  }
  return false;
}

} // namespace

report report_on_clone(process_frame &frame, const project_settings &settings, const std::vector<fs::path> &paths,
                       const std::string &name, bool &found) {
  places where;
  for (const fs::path &path : paths)
    add_place(path, where);
  report made;
  made["clone"] = name;
  found = false;
  for (const fs::path &library : where.libraries) {
    class_DB_of_clones database;
    load_any(frame, settings, library, database);
    report entry{{"library", library.string()}};
    const number_list versions = database.clone_number_get_with_repeats(name);
    for (clone_number clone : versions.members()) {
      found = true;
      entry["fingerprint"].push_back(bands_of(database, clone));
      for (const fs::path &net : where.nets)
        entry["overlaps"].push_back(neighbours_in(frame, net, database, clone));
    }
    if (!entry.contains("fingerprint"))
      entry["fingerprint"] = "not in this library";
    made["libraries"].push_back(std::move(entry));
  }
  if (where.libraries.empty() && !where.nets.empty())
    made["note"] = "nets know clones by number only: name the library too";
  for (const fs::path &net : where.nets)
    if (const std::string row = row_of_clone(net.has_parent_path() ? net.parent_path() : ".", "_Q_clones.txt", 2, name);
        !row.empty()) {
      made["row in the report of Q-clones"] = row;
      break;
    }
  for (const fs::path &run : where.runs) {
    report entry;
    if (contig_in(frame, run, name, entry))
      found = true;
    else
      entry["contig"] = found                     ? "none: the clone is alone in this run"
                        : where.libraries.empty() ? "none: no cluster of this run holds the name"
                                                  : "none: the library has no clone of this name";
    made["runs"].push_back(std::move(entry));
  }
  return made;
}

} // namespace orb
