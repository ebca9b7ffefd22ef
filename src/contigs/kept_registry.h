// The contig registry as a run leaves it, in two tables beside its reports. The reports tell of tested clusters alone;
// with these tables a run that is read back has the same numbers, clones alone and coordinates, and prints the same.
#pragma once

#include <filesystem>

#include "clustering/class_FPCto_import.h"

namespace orb {

inline constexpr const char *registry_clusters_name = "registry_clusters.tsv";
inline constexpr const char *registry_clones_name = "registry_clones.tsv";

// All cluster numbers ever given; and the clones of each cluster in use, with coordinates and their places on its
// tiling path. Dates, gel numbers and remarks aren't kept. Throws file_error.
void keep_registry(const class_FPCto_import &registry, const class_DB_of_clones &database,
                   const std::filesystem::path &folder);
// Whether the folder has the tables: those of older runs don't.
bool registry_is_kept(const std::filesystem::path &folder);
// Fills an empty registry. False after a message with file and line. The names of the library must be sorted.
bool read_kept_registry(process_frame &frame, const std::filesystem::path &folder, class_DB_of_clones &database,
                        class_FPCto_import &registry);

} // namespace orb
