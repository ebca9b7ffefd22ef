// What `orb info` says of text files: lists, tables, drawings, FPC assemblies.
#include <set>

#include "database/marker_native_heads.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "project/input_kind.h"
#include "reports/info_report.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

void add_list(const fs::path &file, report &made) {
  line_reader lines(file);
  std::string_view line;
  std::int64_t n = 0;
  std::set<std::string, std::less<>> names;
  while (lines.next(line))
    while (!line.empty()) {
      const std::size_t end = std::min(line.find_first_of(", \t"), line.size());
      if (end > 0) {
        ++n;
        names.emplace(line.substr(0, end));
      }
      line.remove_prefix(std::min(end + 1, line.size()));
    }
  made["names"] = n;
  made["different names"] = names.size();
}

// Rows below the head, and how many values stand in some of the fields.
void add_table(const fs::path &file, const std::vector<std::pair<std::size_t, const char *>> &counted, report &made) {
  line_reader lines(file);
  std::string_view line;
  std::vector<std::string> fields;
  std::int64_t n = 0;
  std::vector<std::set<std::string>> values(counted.size());
  if (lines.next(line))
    made["head"] = std::string(line);
  while (lines.next(line)) {
    if (line.empty())
      continue;
    ++n;
    class_serv_raznoe::cut_string(line, fields);
    for (std::size_t i = 0; i < counted.size(); ++i)
      if (counted[i].first < fields.size())
        values[i].insert(fields[counted[i].first]);
  }
  made["rows"] = n;
  for (std::size_t i = 0; i < counted.size(); ++i)
    made[counted[i].second] = values[i].size();
}

void add_drawing(const fs::path &file, report &made) {
  line_reader lines(file);
  std::string_view line;
  std::string section;
  std::int64_t n_vertices = 0, n_edges = 0;
  while (lines.next(line)) {
    if (line.starts_with("*"))
      section = class_serv_raznoe::text_transform_to_lower_case(std::string(line.substr(0, line.find(' '))));
    else if (line.find_first_not_of(" \t") != std::string_view::npos)
      (section == "*vertices" ? n_vertices : n_edges) += 1;
  }
  made["vertices"] = n_vertices;
  made["edges"] = n_edges;
}

// The head's lines as they stand, and the records of each kind.
void add_fpc(const fs::path &file, report &made) {
  line_reader lines(file);
  std::string_view line;
  std::int64_t n_clones = 0, n_placed = 0, n_markers = 0;
  std::set<std::string, std::less<>> contigs;
  report head = report::array();
  while (lines.next(line)) {
    if (line.starts_with("//"))
      head.push_back(std::string(line));
    n_clones += line.starts_with("BAC :") || line.starts_with("Clone :");
    n_markers += line.starts_with("Marker_") || line.starts_with("Marker :");
    if (!line.starts_with("Map \"") || line.find(" Left ") == std::string_view::npos)
      continue;
    ++n_placed;
    contigs.emplace(line.substr(5, line.find('"', 5) - 5));
  }
  made["head"] = std::move(head);
  made["clones"] = n_clones;
  made["clones in contigs"] = n_placed;
  made["contigs"] = contigs.size();
  made["markers"] = n_markers;
}

// The three counts that the native form of markers begins with, each below its head.
void add_markers(const fs::path &file, report &made) {
  line_reader lines(file);
  std::string_view head, value;
  for (const char *name : {"clones", "clones with markers", "markers"})
    if (lines.next(head) && lines.next(value))
      made[name] = std::string(value);
}

} // namespace

report report_on_text(const fs::path &file) {
  report made = head_of_report(file);
  switch (kind_of_input(file)) {
  case input_kind::list_of_clones:
    add_list(file, made);
    break;
  case input_kind::true_positions:
    add_table(file, {{0, "clones"}, {2, "chromosomes"}}, made);
    break;
  case input_kind::coordinates: {
    line_reader lines(file);
    std::string_view head;
    const bool has_contigs = lines.next(head) && head.starts_with("BAC");
    if (has_contigs)
      add_table(file, {{0, "clones"}, {1, "contigs"}}, made);
    else
      add_table(file, {{0, "clones"}}, made);
    break;
  }
  case input_kind::pajek_net:
    add_drawing(file, made);
    break;
  case input_kind::fpc_file:
    add_fpc(file, made);
    break;
  case input_kind::native_markers:
    add_markers(file, made);
    break;
  default:
    add_table(file, {}, made);
    break;
  }
  return made;
}

} // namespace orb
