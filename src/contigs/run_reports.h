// The folder of a run and the five reports that grow in it; the names and rows that the run and its reader share.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "clustering/cluster_file_name.h"
#include "contigs/run_folder.h"
#include "frame/files.h"
#include "frame/process_frame.h"

namespace orb {

inline constexpr const char *report_contigs_name = "report_contigs.txt";
inline constexpr const char *report_clusters_name = "report_clusters.txt";
inline constexpr const char *heaps_folder_name = "Heaps";
inline constexpr const char *far_clones_start = "far_from_MTP_"; // of the name of a contig's list
inline constexpr const char *remark_not_connected = "Not connected";
inline constexpr const char *remark_too_large = "Too large";
// A contig that stayed wider than the limit at the top of the ladder.
inline constexpr const char *remark_wide = "Wide: may join apart places";
inline constexpr const char *coordinates_header = "clone\tcoor_left\tcoor_right";

struct run_reports {
  std::filesystem::path folder_contigs; // of the run
  std::filesystem::path folder_heaps;   // in it, for clusters below the minimal size
  growing_file contigs, clusters, clones_in_MTP, clones_in_MTP_details, clones_in_MTP_and_bridges;

  // In a new folder; or, when `folder` isn't empty, in this one, where a stopped run may have left its reports: they
  // are continued. Throws file_error.
  void open(process_frame &frame, const std::filesystem::path &folder = {});
  void flush(); // after each cluster
  void close(); // of a run that was stopped: what an earlier one wrote behind its end stays
  void end_here();

private:
  void open_files(bool continued);
};

// Makes a folder "ORB_contigs_" + date in a folder, with "_2" and so on when there is one already. Throws file_error.
std::filesystem::path make_run_folder(process_frame &frame, const std::filesystem::path &in);

// Cluster report: header, a row, and a row read back (false: damaged; `why` says what is wrong with it).
std::string cluster_report_header();
std::string cluster_row_text(const cluster_row &row);
bool cluster_row_read(std::string_view line, cluster_row &row, std::string &why);

} // namespace orb
