#include "reports/info_report.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <map>

#include "contigs/run_folder.h"
#include "database/class_DB_of_clones_read.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "graph/class_net.h"
#include "project/input_kind.h"
#include "reports/contig_summary_text.h"
#include "reports/fingerprint_survey.h"
#include "reports/proposal_report.h"
#include "reports/run_record.h"

namespace orb {

namespace fs = std::filesystem;

report head_of_report(const fs::path &path) {
  report made;
  made["path"] = path.string();
  made["kind"] = name_of_kind(kind_of_input(path));
  std::error_code failed;
  if (const std::uintmax_t size = fs::file_size(path, failed); !failed)
    made["bytes"] = size;
  return made;
}

namespace {

// What a run record beside the result says of its making.
void add_making(process_frame &frame, report &made, const fs::path &path) {
  const auto record = run_record_beside(path);
  if (!record)
    return;
  if (const std::string difference = fs::is_directory(path) ? "" : difference_from_record(path); !difference.empty()) {
    made["check"] = "not the file that its run.json tells of";
    frame.refuse(difference + ".");
  }
  report making;
  for (const char *field : {"command", "date", "state", "seed"})
    if (record->contains(field))
      making[field] = (*record)[field];
  if (record->contains("parameters"))
    making["parameters"] = (*record)["parameters"];
  made["made by"] = std::move(making);
}

} // namespace

report report_on_library(process_frame &frame, const project_settings &settings, const fs::path &file) {
  report made = head_of_report(file);
  class_DB_of_clones database;
  class_usable_values usable_values;
  class_DB_of_clones_read reader(frame, settings);
  if (!reader.open_file_with_clones(0, file, true, true, database, usable_values)) {
    made["check"] = "refused";
    return made;
  }
  const std::int32_t n = database.total_number_of_clones_get();
  std::int32_t least = n > 0 ? database.number_of_bands_in_clone_get(1) : 0, most = least;
  for (clone_number clone = 1; clone <= n; ++clone) {
    least = std::min(least, database.number_of_bands_in_clone_get(clone));
    most = std::max(most, database.number_of_bands_in_clone_get(clone));
  }
  const std::int64_t bands = database.first_band_adress_get(n + 1) - 1;
  made["clones"] = n;
  made["bands"] = bands;
  made["bands a clone"] = {
      {"smallest", least}, {"mean", n ? number_text(double(bands) / n, 1) : "0.0"}, {"largest", most}};
  made["parameters"] = {{"tolerance", database.tollerance_get()},
                        {"tolerance index", database.taking_tollerance_into_account_index_get()},
                        {"gel length", database.max_band_length_get()},
                        {"n-bands", database.total_number_of_different_bands_FPC_get()},
                        {"bands hold", database.index_of_band_type_get() == 0 ? "lengths" : "bin numbers"}};
  made["proposed parameters"] = rows_of_proposals(proposals_of(database));
  made["repeated names"] = database.IsDBContainRepeatsCloneNames_get();
  made["checksum"] = checksum_text(library_checksum(database));
  made["check"] = "whole; bands ascending and within the gel length";
  add_making(frame, made, file);
  return made;
}

report report_on_net(process_frame &frame, const fs::path &file) {
  report made = head_of_report(file);
  class_net net;
  bool ok = false;
  net.read_net_type(frame, file, ok, -1);
  if (!ok) {
    made["check"] = "refused";
    return made;
  }
  std::int32_t alone = 0, most = 0, n_Q = 0;
  double largest = 0;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v) {
    const std::int32_t degree = net.number_of_edges_for_vertex_total_get(v);
    alone += degree == 0;
    most = std::max(most, degree);
    for (const net_edge &edge : net.edges_of_vertex(v))
      largest = std::max(largest, edge.value);
  }
  net.number_of_vertices_with_index_get(-1, n_Q);
  number_list class_number;
  std::int32_t n_components = 0;
  net.clustering_based_on_net(class_number, n_components);
  made["clones"] = net.number_of_vertices_get();
  made["overlaps"] = net.number_of_edges_get() / 2;
  made["overlaps a clone"] = {
      {"mean",
       number_text(net.number_of_vertices_get() ? double(net.number_of_edges_get()) / net.number_of_vertices_get() : 0,
                   2)},
      {"largest", most}};
  made["scores"] = {{"smallest", number_text(net.minimal_edge_value_get(), 2)}, {"largest", number_text(largest, 2)}};
  made["clones without overlaps"] = alone;
  made["Q-clones (cut off, marked -1)"] = n_Q;
  made["connected parts"] = n_components;
  made["check"] = std::string("whole; ") +
                  (net.neighbours_are_sorted_get() ? "neighbours ascending; " : "neighbours not ascending; ") +
                  "each overlap stands at both ends";
  add_making(frame, made, file);
  return made;
}

report report_on_text_net(const fs::path &file) {
  report made = head_of_report(file);
  line_reader lines(file);
  std::string_view line;
  std::int64_t clones = 0, records = 0;
  std::string first, last;
  while (lines.next(line)) {
    if (line.starts_with("c")) {
      ++clones;
      (clones == 1 ? first : last) = std::string(line);
    } else if (!line.empty()) {
      ++records;
    }
  }
  made["clone lines"] = clones;
  made["overlap lines"] = records;
  made["first clone line"] = first;
  if (!last.empty())
    made["last clone line"] = last;
  return made;
}

report report_on_fingerprints(process_frame &frame, const project_settings &settings, const fs::path &path) {
  report made = head_of_report(path);
  const fingerprint_survey survey =
      survey_of_fingerprints(fs::is_directory(path) ? sizes_files_of_folder(path) : std::vector<fs::path>{path});
  made["files"] = survey.n_files;
  made["records"] = survey.n_records;
  made["exact copies"] = survey.n_exact_copies;
  made["repeated names"] = survey.n_repeated_names;
  made["bands"] = survey.n_bands;
  made["records without bands"] = survey.n_without_bands;
  if (survey.n_bands > 0) {
    made["smallest band"] = survey.smallest_band;
    made["largest band"] = survey.largest_band;
  }
  made["bands a clone"] = {
      {"smallest", survey.fewest_bands},
      {"mean", number_text(survey.n_records ? double(survey.n_bands) / double(survey.n_records) : 0, 1)},
      {"largest", survey.most_bands}};
  made["decimals"] = survey.decimals;
  if (survey.decimals > 0)
    made["decimal sign"] = survey.has_point && survey.has_comma ? "point and comma"
                           : survey.has_comma                   ? "comma"
                                                                : "point";
  if (const auto proposals = proposals_from_files(frame, settings, path, survey.largest_band))
    made["proposed parameters"] = rows_of_proposals(*proposals);
  else if (survey.n_bands > 0)
    made["nothing proposed"] = survey.largest_band > longest_usual_gel ? "the largest band is longer than any gel"
                                                                       : "a load would refuse these fingerprints";
  made["problems"] = survey.problems;
  if (survey.n_problems > static_cast<std::int64_t>(survey.problems.size()))
    made["problems in all"] = survey.n_problems;
  return made;
}

// By the record in the folder above, where it tells of this run: a run that didn't come to its end.
static std::string early_end_of_run(const fs::path &folder) {
  const fs::path run = fs::absolute(folder).lexically_normal();
  const fs::path whole = run.has_filename() ? run : run.parent_path();
  const auto record = run_record_read(whole.parent_path() / "run.json");
  const nlohmann::json outputs = record ? record->value("outputs", nlohmann::json::object()) : nlohmann::json::object();
  const bool is_its_own = outputs.is_object() && outputs.contains("run_folder") &&
                          outputs["run_folder"].value("name", "") == whole.filename().string();
  const std::string state = is_its_own ? record->value("state", "") : "";
  return state.empty() || state == "complete" ? "" : state;
}

report report_on_run(process_frame &frame, const fs::path &folder) {
  report made = head_of_report(folder);
  run_folder run;
  if (!read_run_folder(frame, folder, run)) {
    made["check"] = "refused";
    return made;
  }
  std::int32_t n_clones = 0;
  for (const cluster_row &row : run.clusters)
    n_clones += row.n_clones;
  std::int32_t least_contig = 0;
  for (const cluster_row &row : run.clusters)
    if (row.contig)
      least_contig = least_contig ? std::min(least_contig, row.n_clones) : row.n_clones;
  const contig_figures figures = contig_figures_of(run, least_contig, n_clones);
  made["final clusters"] = run.clusters.size();
  made["contigs"] = figures.contigs.size();
  made["clones in contigs"] = figures.n_clones_in_contigs;
  made["heaps"] = figures.n_heaps;
  made["clones in heaps"] = figures.n_clones_in_heaps;
  made["N50 in bands"] = figures.N50_bands;
  report table = report::array();
  for (const contig_summary &contig : figures.contigs)
    table.push_back({{"contig", contig.name},
                     {"clones", contig.n_clones},
                     {"bands long", contig.length_bands},
                     {"cutoff", number_text(contig.cutoff, 2)},
                     {"width", contig.width},
                     {"tiling path", contig.n_clones_MTP}});
  made["table of contigs"] = std::move(table);
  const std::string early = early_end_of_run(folder);
  made["check"] =
      (early.empty() ? "whole" : "NOT whole: the run is " + early + ", and clusters that it didn't reach lack") +
      "; lists, tiling paths and coordinates read back";
  return made;
}

report report_on_results(process_frame &frame, const project_settings &settings, const fs::path &folder) {
  report made = head_of_report(folder);
  add_making(frame, made, folder);
  report holds = report::array();
  std::vector<fs::path> entries;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder))
    entries.push_back(entry.path());
  std::sort(entries.begin(), entries.end());
  for (const fs::path &entry : entries) {
    const input_kind kind = kind_of_input(entry);
    static const std::vector<input_kind> told{
        input_kind::library,  input_kind::native_net,     input_kind::text_net,   input_kind::run_folder,
        input_kind::fpc_file, input_kind::native_markers, input_kind::coordinates};
    if (std::find(told.begin(), told.end(), kind) != told.end())
      holds.push_back(report_on(frame, settings, entry));
    for (report &held : holds)
      held.erase("made by"); // told above
  }
  made["holds"] = std::move(holds);
  return made;
}

report report_on_other(const fs::path &path) {
  report made = head_of_report(path);
  if (!fs::is_directory(path)) {
    made["check"] = "neither a library, a net nor fingerprints";
    return made;
  }
  std::map<std::string, int> endings;
  for (const fs::directory_entry &entry : fs::directory_iterator(path))
    ++endings[entry.is_directory()               ? "folders"
              : entry.path().extension().empty() ? "no extension"
                                                 : entry.path().extension().string()];
  made["check"] = "no .sizes files, no results and no run here";
  made["holds"] = endings;
  return made;
}

report report_on(process_frame &frame, const project_settings &settings, const fs::path &path) {
  switch (kind_of_input(path)) {
  case input_kind::missing:
    throw file_error("can't open", path, "No such file or directory");
  case input_kind::library:
    return report_on_library(frame, settings, path);
  case input_kind::native_net:
    return report_on_net(frame, path);
  case input_kind::text_net:
    return report_on_text_net(path);
  case input_kind::sizes_folder:
  case input_kind::sizes_file:
    return report_on_fingerprints(frame, settings, path);
  case input_kind::run_folder:
    return report_on_run(frame, path);
  case input_kind::results_folder:
    return report_on_results(frame, settings, path);
  case input_kind::fpc_file:
  case input_kind::pajek_net:
  case input_kind::native_markers:
  case input_kind::true_positions:
  case input_kind::coordinates:
  case input_kind::table:
  case input_kind::list_of_clones:
    return report_on_text(path);
  case input_kind::other_folder:
  case input_kind::other_file:
    return report_on_other(path);
  }
  return {};
}

namespace {

constexpr std::size_t widest_cell = 60; // of a table; wider values stand in lines of their own

std::string text_of_value(const report &value) {
  if (value.is_number_float())
    return number_text_shortest(value.get<double>());
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// A list of flat reports with the same fields, as aligned columns.
std::string table_text(const report &rows, const std::string &indent) {
  std::vector<std::vector<std::string>> cells(1);
  for (const auto &[name, value] : rows.front().items())
    cells[0].push_back(name);
  for (const report &row : rows) {
    cells.emplace_back();
    for (const auto &[name, value] : row.items())
      cells.back().push_back(text_of_value(value));
  }
  std::vector<std::size_t> widths;
  for (const auto &row : cells)
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (widths.size() <= i)
        widths.push_back(0);
      widths[i] = std::max(widths[i], row[i].size());
    }
  std::string text;
  for (const auto &row : cells) {
    std::string line = indent;
    for (std::size_t i = 0; i < row.size(); ++i)
      line += fmt::format("{:<{}}  ", row[i], widths[i]);
    text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
  }
  return text;
}

bool is_table(const report &value) {
  if (!value.is_array() || value.empty())
    return false;
  for (const report &row : value) {
    if (!row.is_object() || row.size() != value.front().size())
      return false;
    for (const auto &[name, cell] : row.items())
      if (cell.is_structured() || text_of_value(cell).size() > widest_cell)
        return false;
  }
  return value.size() > 1 || value.front().size() > 2;
}

void add_lines(const report &shown, const std::string &indent, std::string &text) {
  for (const auto &[name, value] : shown.items()) {
    if (is_table(value)) {
      text += indent + name + ":\n" + table_text(value, indent + "  ");
    } else if (value.is_array()) {
      text += indent + name + ":" + (value.empty() ? " none" : "") + "\n";
      for (const report &item : value) {
        if (item.is_object())
          add_lines(item, indent + "  ", text);
        else
          text += indent + "  " + text_of_value(item) + "\n";
        if (item.is_object())
          text += "\n";
      }
    } else if (value.is_object()) {
      text += indent + name + ":\n";
      add_lines(value, indent + "  ", text);
    } else {
      text += indent + name + ": " + text_of_value(value) + "\n";
    }
  }
}

} // namespace

std::string text_of_report(const report &shown) {
  std::string text;
  add_lines(shown, "", text);
  if (!text.empty())
    text.pop_back();
  return text;
}

} // namespace orb
