// Telling what a file or folder is before anything is read from it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orb {

enum class input_kind {
  missing,
  sizes_folder,
  results_folder,
  run_folder,
  other_folder,
  library,
  native_net,
  text_net,
  sizes_file,
  fpc_file,
  pajek_net,
  native_markers,
  true_positions,
  coordinates,
  table, // fields between tabs with a head
  list_of_clones,
  other_file
};

// By content where it tells (a library's header, a net's size, a folder's reports), by extension otherwise.
input_kind kind_of_input(const std::filesystem::path &path);
std::string name_of_kind(input_kind kind);
// "FILE is a list of clones." for a file of a kind that can be told and isn't among the wanted ones; else empty.
std::string words_of_other_kind(const std::filesystem::path &file, const std::vector<input_kind> &wanted);
// The .sizes files of a folder, in byte order of their names.
std::vector<std::filesystem::path> sizes_files_of_folder(const std::filesystem::path &folder);
// The newest run folder (ORB_contigs_...) of a results folder, by name; empty when there is none.
std::filesystem::path run_folder_of_results(const std::filesystem::path &folder);

} // namespace orb
