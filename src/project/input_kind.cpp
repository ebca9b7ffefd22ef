#include "project/input_kind.h"

#include <algorithm>
#include <cstring>
#include <fstream>

#include "contigs/run_folder.h"
#include "database/library_file.h"
#include "frame/class_serv_raznoe.h"

namespace orb {

namespace fs = std::filesystem;

static std::string extension_in_lower_case(const fs::path &path) {
  return class_serv_raznoe::text_transform_to_lower_case(path.extension().string());
}

std::vector<fs::path> sizes_files_of_folder(const fs::path &folder) {
  std::vector<fs::path> files;
  for (const std::string &name : class_serv_raznoe::create_ordered_list_of_files_in_folder(folder, "sizes"))
    files.push_back(folder / name);
  return files;
}

fs::path run_folder_of_results(const fs::path &folder) {
  fs::path newest;
  std::error_code failed;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder, failed))
    if (entry.is_directory() && entry.path().filename().string().starts_with("ORB_contigs_") &&
        is_run_folder(entry.path()) && entry.path() > newest)
      newest = entry.path();
  return newest;
}

// A native net has no head: its size must fit the two counts that it begins with.
static bool is_native_net(const fs::path &file) {
  std::ifstream in(file, std::ios::binary);
  std::int32_t counts[2] = {0, 0};
  char head[8];
  if (!in.read(head, sizeof head))
    return false;
  std::memcpy(counts, head, sizeof head);
  if (counts[0] < 0 || counts[1] < 0)
    return false;
  const std::uintmax_t size =
      8 + 6 * (static_cast<std::uintmax_t>(counts[0]) + 1) + 16 * static_cast<std::uintmax_t>(counts[1]);
  return fs::file_size(file) == size;
}

static input_kind kind_of_file(const fs::path &file) {
  const std::string extension = extension_in_lower_case(file);
  if (extension == ".orbns")
    return input_kind::native_net;
  if (extension == ".orbdb" || extension == ".orb" || is_library_file(file))
    return input_kind::library;
  if (is_native_net(file))
    return input_kind::native_net;
  if (extension == ".sizes")
    return input_kind::sizes_file;
  std::ifstream in(file, std::ios::binary);
  std::string first;
  std::getline(in, first);
  if (first.starts_with("clone\t") && first.size() > 6 && first[6] >= '1' && first[6] <= '9')
    return input_kind::text_net;
  return input_kind::other_file;
}

input_kind kind_of_input(const fs::path &path) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (!fs::exists(status))
    return input_kind::missing;
  if (!fs::is_directory(status))
    return kind_of_file(path);
  if (is_run_folder(path))
    return input_kind::run_folder;
  if (fs::is_regular_file(path / "run.json", failed) || !run_folder_of_results(path).empty())
    return input_kind::results_folder;
  return sizes_files_of_folder(path).empty() ? input_kind::other_folder : input_kind::sizes_folder;
}

std::string name_of_kind(input_kind kind) {
  switch (kind) {
  case input_kind::missing:
    return "missing";
  case input_kind::sizes_folder:
    return "folder of fingerprints";
  case input_kind::results_folder:
    return "results folder";
  case input_kind::run_folder:
    return "run folder";
  case input_kind::other_folder:
    return "folder";
  case input_kind::library:
    return "library";
  case input_kind::native_net:
    return "net of significant overlaps";
  case input_kind::text_net:
    return "text net of significant overlaps";
  case input_kind::sizes_file:
    return "fingerprints";
  case input_kind::other_file:
    return "file";
  }
  return {};
}

} // namespace orb
