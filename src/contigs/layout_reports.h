// What a layout rests on, as tables in the folder of its run, so that each decision can be checked.
#pragma once

#include <filesystem>

#include "contigs/layout_method.h"

namespace orb {

inline constexpr const char *layout_doubts_name = "layout_doubts.txt";
inline constexpr const char *layout_dropped_name = "layout_dropped_overlaps.txt";
inline constexpr const char *layout_suspects_name = "layout_suspects.txt";
inline constexpr const char *layout_joins_name = "layout_joins.txt";

// Throws file_error.
void print_layout_reports(const class_DB_of_clones &database, const layout_result &found,
                          std::span<const std::string> contig_names, const std::filesystem::path &folder);

} // namespace orb
