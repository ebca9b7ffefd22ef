// The contigs of a session as maps, for the command that writes pictures of them and for windows that show them.
#pragma once

#include <filesystem>
#include <string>

#include "clustering/contig_map.h"
#include "project/project_state.h"
#include "reports/contig_layout.h"

namespace orb {

// Of the registry, with what the loaded net tells. False after a message, or when there are no contigs.
bool make_contig_map_of(project_state &project, contig_map &map);
// From 1; 0: no contig of this name has clones of its own.
std::size_t place_in_map(const contig_map &map, const std::string &contig);
// A contig that is placed, with the clones that its run lists as far from the path. False after a message.
bool contig_values_for(project_state &project, const contig_map &map, std::size_t contig, contig_values &values);
// Whether the contigs of the session are those of the run in this folder.
bool is_run_of_session(const project_state &project, const std::filesystem::path &folder);

} // namespace orb
