// Tables of one contig: pairs, consecutive clones, markers. All go to the contig's output folder unless a file is
// named, and throw file_error when they can't be written.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "contigs/class_contig_analysis.h"
#include "lists/class_list_of_clones.h"

namespace orb {

// All pairs of the cluster's clones; see class_list_of_clones.
void print_all_dist(const class_contig_analysis &contig, pairs_of_table pairs, const std::filesystem::path &file = {});
// Each clone with the one before it, along the tiling path, the cluster's list, and the list and the order without
// buried clones. Given back are the weak steps by metric index, from 0; empty when the user stopped. Without
// `print_to_file` they are counted and no file is written.
std::vector<std::int32_t> print_consecuent_dist_MTP(const class_contig_analysis &contig, bool print_to_file,
                                                    const std::filesystem::path &file = {});
std::vector<std::int32_t> print_consecuent_dist_initial_list_of_clones(const class_contig_analysis &contig,
                                                                       bool print_to_file,
                                                                       const std::filesystem::path &file = {});
std::vector<std::int32_t> print_consecuent_dist_NoBuriedInit(const class_contig_analysis &contig, bool print_to_file,
                                                             const std::filesystem::path &file = {});
std::vector<std::int32_t> print_consecuent_dist_NoBuriedORB(const class_contig_analysis &contig, bool print_to_file,
                                                            const std::filesystem::path &file = {});
// Which clone bears which marker, and the same with coordinates and places in the tiling path.
void print_markers(const class_contig_analysis &contig, const std::filesystem::path &file = {});
void print_clones_indicateMTP_coordinates_and_markers(const class_contig_analysis &contig,
                                                      const std::filesystem::path &file = {});

} // namespace orb
