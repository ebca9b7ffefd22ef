// A map of contigs as files that other programs read: a plain table, and features in base pairs.
#pragma once

#include <filesystem>

#include "clustering/contig_map.h"

namespace orb {

// All clones, contig by contig from left to right, then those alone. One head line, tabs, LF; a cell is empty where
// nothing is known or there. Throws file_error, as all of these do.
void write_map_table(const class_DB_of_clones &database, const contig_map &map, const std::filesystem::path &file);

// The contigs that have coordinates, each from base pair 1 on; a band stands for `band_size` base pairs, at least 1.
void write_map_gff3(const class_DB_of_clones &database, const contig_map &map, double band_size,
                    const std::filesystem::path &file);
// The same clones, by name of the contig and then by place: contig, start from 0, end, clone, 1000 on the tiling path,
// 200 for a buried clone off it, 500 for others, no strand.
void write_map_bed(const class_DB_of_clones &database, const contig_map &map, double band_size,
                   const std::filesystem::path &file);

} // namespace orb
