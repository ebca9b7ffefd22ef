// The project file: a hand-written list of the files to load again. Five pairs of label and value, between commas or
// line ends; labels are free text, and no program writes the file.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "project/part_loading.h"

namespace orb {

struct project_file {
  // Values; empty: nothing of that kind, or the file ended before.
  std::string library, markers, net, fpc_contigs, clusters_folder;
};

// Throws file_error. A value in double quotes may hold commas. Names that aren't found as they stand are looked for
// beside the project file.
project_file read_project_file(const std::filesystem::path &file);

// Loads the parts in their order; an empty path asks. A file that is missing is told, and the rest goes on loading,
// but for a missing library. `cancelled` when no file was chosen; `refused` when a part was missing or refused.
load_end open_project(project_state &project, const std::filesystem::path &file, const std::string &made_by);

// What the project panel shows: a frame, its caption, its lines.
struct project_panel_frame {
  std::string control, caption; // "FrameTolerance", "Tolerance"
  std::vector<std::string> lines;
};
std::vector<project_panel_frame> project_panel_of(const project_state &project);
// The same as text.
std::string text_of_project_panel(const project_state &project);

} // namespace orb
