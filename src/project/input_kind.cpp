#include "project/input_kind.h"

#include <algorithm>
#include <cstring>
#include <fstream>

#include "contigs/run_folder.h"
#include "database/library_file.h"
#include "database/marker_native_heads.h"
#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

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

// The first lines of a text that hold anything; empty for what is no text.
static std::vector<std::string> first_lines(const fs::path &file) {
  constexpr std::size_t most_bytes = 16 * 1024;
  std::ifstream in(file, std::ios::binary);
  std::string bytes(most_bytes, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  if (!why_no_text(bytes).empty())
    return {};
  const bool is_cut = bytes.size() == most_bytes; // within its last line
  if (bytes.starts_with(encoding_mark))
    bytes.erase(0, encoding_mark.size());
  std::vector<std::string> lines(1);
  for (const char c : bytes) {
    if (c != '\r' && c != '\n')
      lines.back() += c;
    else if (!is_blank_line(lines.back()))
      lines.emplace_back();
    else
      lines.back().clear();
  }
  if (is_blank_line(lines.back()) || (is_cut && lines.size() > 1))
    lines.pop_back();
  return lines;
}

static bool is_number(const std::string &line) {
  double value = 0;
  return number_parse(line, value);
}

// A header and then a band, which a list of names has not.
static bool has_a_record(const std::vector<std::string> &lines) {
  return lines.size() > 1 && !is_number(lines[0]) && is_number(lines[1]);
}

static bool are_names(const std::vector<std::string> &lines) {
  return std::all_of(lines.begin(), lines.end(), [](const std::string &line) {
    return !is_number(line) && line.find_first_of("\t;|<>{}()=\"") == std::string::npos &&
           line.find(' ') == std::string::npos;
  });
}

static input_kind kind_of_text(const std::vector<std::string> &lines) {
  if (lines.empty())
    return input_kind::other_file;
  const std::string &first = lines.front();
  const std::string lower = class_serv_raznoe::text_transform_to_lower_case(first);
  if (lower.starts_with("// fpc project"))
    return input_kind::fpc_file;
  if (lower.starts_with("*vertices") || lower.starts_with("*network"))
    return input_kind::pajek_net;
  if (first.starts_with("clone\t") && first.size() > 6 && first[6] >= '1' && first[6] <= '9')
    return input_kind::text_net;
  if (first == marker_native_heads::n_clones_head)
    return input_kind::native_markers;
  if (first.starts_with("clone\tpart\tchromosome\t"))
    return input_kind::true_positions;
  if (first.starts_with("BAC\tctg\t") || first.starts_with("clone\tcoor_left\t"))
    return input_kind::coordinates;
  if (has_a_record(lines))
    return input_kind::sizes_file;
  const auto n_fields = [](const std::string &line) { return std::count(line.begin(), line.end(), '\t'); };
  if (lines.size() > 1 && n_fields(first) > 0 && n_fields(lines[1]) > 0)
    return input_kind::table;
  return are_names(lines) ? input_kind::list_of_clones : input_kind::other_file;
}

static input_kind kind_of_file(const fs::path &file) {
  const std::string extension = extension_in_lower_case(file);
  if (extension == ".orbdb" || is_library_file(file))
    return input_kind::library;
  if (is_native_net(file))
    return input_kind::native_net;
  const input_kind found = kind_of_text(first_lines(file));
  if (extension == ".orb" && found != input_kind::native_markers)
    return input_kind::library;
  if (extension == ".fpc" && found == input_kind::other_file)
    return input_kind::fpc_file; // one without the usual first line
  const bool is_told = found != input_kind::other_file && found != input_kind::list_of_clones;
  if (extension == ".orbns" && !is_told)
    return input_kind::native_net; // a damaged one
  return extension == ".sizes" && !is_told ? input_kind::sizes_file : found;
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
  case input_kind::fpc_file:
    return "FPC assembly";
  case input_kind::pajek_net:
    return "drawing of a net (Pajek)";
  case input_kind::native_markers:
    return "markers in the native form";
  case input_kind::true_positions:
    return "table of true positions";
  case input_kind::coordinates:
    return "table of coordinates";
  case input_kind::table:
    return "table";
  case input_kind::list_of_clones:
    return "list of clones";
  case input_kind::other_file:
    return "file";
  }
  return {};
}

std::string words_of_other_kind(const fs::path &file, const std::vector<input_kind> &wanted) {
  const input_kind kind = kind_of_input(file);
  const bool is_known =
      kind != input_kind::missing && kind != input_kind::other_file && kind != input_kind::other_folder;
  if (!is_known || std::find(wanted.begin(), wanted.end(), kind) != wanted.end())
    return {};
  return file.string() + " looks like this: " + name_of_kind(kind) + ".";
}

} // namespace orb
