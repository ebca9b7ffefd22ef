// The report files of one contig: lists of its clones, coordinates, its tiling path, its line in a report. All go to
// the contig's output folder unless a file is named, and throw file_error when they can't be written.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "contigs/class_contig_analysis.h"
#include "frame/files.h"

namespace orb {

// `file`, or in its place the file of the output folder whose name is `start` and the cluster's name.
std::filesystem::path report_path(const class_contig_analysis &contig, const std::filesystem::path &file,
                                  const std::string &start);

void print_clones_of_cluster(const class_contig_analysis &contig, const std::filesystem::path &file = {});
void print_list_of_clones_MTP(const class_contig_analysis &contig, const std::filesystem::path &file = {});
void print_list_of_clones_unoverlapped_with_diam_path(const class_contig_analysis &contig,
                                                      const std::filesystem::path &file = {});
void print_list_of_clones_unoverlapped_with_diam_path_NewCutoff(const class_contig_analysis &contig,
                                                                const std::filesystem::path &file = {});
void print_list_of_clones_with_coordinates(const class_contig_analysis &contig, const std::filesystem::path &file = {});
// A hook that does nothing yet in this system: deliberate.
inline void print_coordinate_control(const class_contig_analysis & /*contig*/) {}

// Appends the cluster's tiling path to the two files of a run; a null file is skipped.
void print_list_of_clones_MTP_update_files_with_all_MTPs(const class_contig_analysis &contig, growing_file *file_names,
                                                         growing_file *file_details);
std::string header_of_MTP_details();
// Appends the pairs of `list` (clones of the cluster) that the whole net joins, both ways round, each clone with
// whether it is sequenced and whether it lies on `MTP`. `index`: preference by clone number, see
// retained_tiling_path.h; `cutoff` tells significant pairs from others; `unlinked`: said in every line. Stopped, it
// ends early; what it wrote is then for the caller to take back.
void print_coordinates_of_selected_clones_for_Retain(const class_contig_analysis &contig, const number_list &list,
                                                     const std::vector<std::int16_t> &index, growing_file &file,
                                                     const number_list &MTP, double cutoff, bool unlinked);
// Name, number of clones, gaps, radius, diam, width, gaps after ordering, long name. Which gaps stand there goes by
// the family of the pair tables: metrics 2 and 6 for the families 0 to 2, 4 for family 3, none for others.
std::string report_line_get(const class_contig_analysis &contig);

} // namespace orb
