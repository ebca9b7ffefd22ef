// A finished run read back: the one reader that fills the contig registry from a run's folder.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"

namespace orb {

// A row of report_clusters.txt.
struct cluster_row {
  std::int32_t id = 0; // as the run numbered it
  std::string name;
  std::int32_t n_clones = 0;
  bool contig = false;
  double cutoff = 0;
  std::int32_t diam = -1, width = -1, n_gaps = 0, n_far = 0; // diam -1: not analysed
  std::string remark, full_name;
};

struct run_folder {
  std::filesystem::path folder;
  std::vector<cluster_row> clusters;                 // final ones only, in order of their rows
  std::vector<std::vector<std::string>> clones;      // of each cluster, from NAME.txt
  std::vector<std::vector<std::string>> tiling_path; // of each, from MTP_NAME.txt; empty when there is none
  struct coordinate {
    std::string clone;
    double left = 0, right = 0;
  };
  std::vector<std::vector<coordinate>> coordinates; // of each, from coor_NAME.txt; empty when there is none
  // A cluster of two clones has path and coordinates in clones_MTP_coor_and_markers_NAME.txt only.
};

// Whether the folder has a run's reports.
bool is_run_folder(const std::filesystem::path &folder);
// Reads the reports of a run; needs no library. False with messages (file and line) when something is damaged.
bool read_run_folder(process_frame &frame, const std::filesystem::path &folder, run_folder &run);
// The clones that lie far from the tiling path of a cluster of the run; none when it has no list of them. Throws
// file_error. False after a message.
bool read_far_clones(process_frame &frame, const std::filesystem::path &folder, const std::string &cluster,
                     std::vector<std::string> &names);
// Puts a run into the registry of the database, as the run left it; of a run without kept_registry.h's tables the
// clusters that its reports tell of, with long names, coordinates, tiling paths. The registry stays as it was when a
// clone is unknown or the folder is damaged.
bool read_run_folder_into_registry(process_frame &frame, const project_settings &settings,
                                   const std::filesystem::path &folder, class_DB_of_clones &database);

} // namespace orb
