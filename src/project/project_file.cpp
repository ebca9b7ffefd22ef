#include "project/project_file.h"

#include <cmath>
#include <vector>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"
#include "metrics/class_clone_dist_general.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t n_fields = 10; // label, value, five times

// What a field holds between blanks and quotes.
std::string without_quotes(std::string_view text) {
  text = trimmed(text);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
    text = text.substr(1, text.size() - 2);
  return std::string(text);
}

// The fields of a line: commas within double quotes don't split.
void add_fields(std::string_view line, std::vector<std::string> &fields) {
  bool quoted = false;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= line.size(); ++i) {
    if (i < line.size() && line[i] == '"')
      quoted = !quoted;
    if (i < line.size() && (quoted || line[i] != ','))
      continue;
    fields.push_back(without_quotes(line.substr(begin, i - begin)));
    begin = i + 1;
  }
}

// A name as it stands, or beside the project file.
std::string found_beside(const std::string &name, const fs::path &project_file) {
  if (name.empty())
    return name;
  std::string path = name;
  for (char &c : path)
    if (c == '\\')
      c = '/';
  std::error_code failed;
  if (fs::path(path).is_relative() && !fs::exists(path, failed))
    if (const fs::path beside = project_file.parent_path() / path; fs::exists(beside, failed))
      return beside.string();
  return path;
}

class project_loading {
public:
  project_loading(project_state &project, const project_file &values, const std::string &made_by)
      : project_(project), values_(values), made_by_(made_by) {}

  load_end run() {
    if (values_.library.empty())
      return load_end::loaded; // nothing more is read
    if (!is_there(values_.library, "File ", " with DB is NOT FOUND!"))
      return load_end::refused;
    library_wishes wishes;
    wishes.file = values_.library;
    wishes.source = library_wishes::source_kind::library_file;
    if (const load_end end = load_library(project_, wishes, made_by_); end != load_end::loaded)
      return end;
    load_markers_of_project();
    if (!stopped() && !values_.net.empty() && is_there(values_.net, "File ", " with NET is NOT FOUND!"))
      count(load_net(project_, values_.net, made_by_));
    if (!stopped() && !values_.fpc_contigs.empty() &&
        is_there(values_.fpc_contigs, "File ", " with contigs in FPC format is NOT FOUND!"))
      load_fpc_contigs();
    if (!stopped() && !values_.clusters_folder.empty() &&
        is_there(values_.clusters_folder, "Folder ", " with clusters NOT FOUND!"))
      count(load_folder_of_clusters(project_, values_.clusters_folder, made_by_));
    return stopped() ? load_end::stopped : whole_ ? load_end::loaded : load_end::refused;
  }

private:
  bool stopped() const { return project_.frame().was_stopped() || project_.frame().stop_requested_get(); }

  void count(load_end end) { whole_ = whole_ && end == load_end::loaded; }

  bool is_there(const std::string &path, const char *before, const char *behind) {
    std::error_code failed;
    if (fs::exists(path, failed))
      return true;
    project_.frame().refuse(before + path + behind);
    whole_ = false;
    return false;
  }

  void load_markers_of_project() {
    if (stopped() || values_.markers.empty() || !is_there(values_.markers, "File ", " with MARKERS is NOT FOUND!"))
      return;
    count(load_markers(project_, values_.markers, marker_file_form::unknown, made_by_));
    project_.frame().step_text_set("Markers loaded");
  }

  void load_fpc_contigs() {
    fpc_reading_options options;
    options.print = false; // a project that is opened leaves no lists behind
    fpc_reading_summary summary;
    count(load_fpc_assembly(project_, values_.fpc_contigs, options, made_by_, summary));
  }

  project_state &project_;
  const project_file &values_;
  const std::string &made_by_;
  bool whole_ = true;
};

std::string file_or(const fs::path &file, const char *otherwise) {
  return file.empty() ? otherwise : file.string();
}

} // namespace

project_file read_project_file(const fs::path &file) {
  line_reader lines(file);
  std::vector<std::string> fields;
  for (std::string_view line; fields.size() < n_fields && lines.next(line);)
    add_fields(line, fields);
  fields.resize(n_fields);
  project_file values;
  std::string *const into[] = {&values.library, &values.markers, &values.net, &values.fpc_contigs,
                               &values.clusters_folder};
  for (std::size_t i = 0; i < std::size(into); ++i)
    *into[i] = found_beside(fields[2 * i + 1], file);
  return values;
}

load_end open_project(project_state &project, const fs::path &file, const std::string &made_by) {
  fs::path chosen = file;
  if (chosen.empty())
    chosen = project.frame().open_file_dialog_typed("Open file with adresses of DB, Markers and Net", "txt");
  if (chosen.empty())
    return load_end::cancelled;
  return project_loading(project, read_project_file(chosen), made_by).run();
}

static project_panel_frame panel_of_net(const project_state &project) {
  project_panel_frame shown{"FrameNetSignif", "Clone overlaps", {}};
  if (!project.has(project_part::net)) {
    shown.lines.push_back("Net is not loaded");
    return shown;
  }
  const class_net &net = project.signif().net();
  const std::int64_t n_vertices = net.number_of_vertices_get(), n_edges = net.number_of_edges_get();
  shown.lines = {file_or(project.origin(project_part::net).file, "(made here, not saved)"),
                 "N_vertices = " + std::to_string(n_vertices), "N_edges= " + std::to_string(n_edges),
                 "N_mean_e/v =" + number_text(n_vertices > 0 ? double(n_edges) / double(n_vertices) : 0, 2),
                 "Min(edge_value) = " + number_text(net.minimal_edge_value_get(), 4)};
  return shown;
}

static project_panel_frame panel_of_contigs(const project_state &project) {
  std::int64_t n_contigs = 0, n_clones = 0;
  if (project.has(project_part::contigs)) {
    const class_FPCto_import &registry = *project.database().contigs();
    for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members()) {
      ++n_contigs;
      n_clones += registry.n_clones_in_cluster_get(id);
    }
  }
  const fs::path from = project.origin(project_part::contigs).file;
  const bool is_fpc = from.extension() == ".fpc";
  return {"FrameNet",
          "Net of contigs",
          {"Contigs folder name = " + file_or(is_fpc ? fs::path() : from, ""),
           "Contigs in FPC format  = " + file_or(is_fpc ? from : fs::path(), ""),
           "Number of contigs = " + std::to_string(n_contigs),
           "Number of clones in contigs = " + std::to_string(n_clones)}};
}

std::vector<project_panel_frame> project_panel_of(const project_state &project) {
  const class_DB_of_clones &database = project.database();
  return {{"FrameTolerance",
           "Tolerance",
           {"Tolerance, t = " + std::to_string(database.tollerance_get()),
            "Gel length, L = " + std::to_string(std::llround(database.max_band_length_get())),
            "N_bands_Sulston = " + std::to_string(database.total_number_of_different_bands_FPC_get())}},
          {"FrameMetrics",
           "Metric",
           {class_clone_dist_general::name_of_cutoff_distance(project.rule().distance_index),
            "-Log_10 (Cutoff) = " + number_text(project.rule().cutoff, 2),
            "Fraction of common bands resulting buring = " + number_text_shortest(project.rule().burying)}},
          {"FrameDataBase",
           "DataBase",
           {"DB file name = " + file_or(project.origin(project_part::library).file, ""),
            "Number of clones = " + std::to_string(database.total_number_of_clones_get())}},
          panel_of_net(project),
          panel_of_contigs(project)};
}

std::string text_of_project_panel(const project_state &project) {
  std::string text;
  for (const project_panel_frame &frame : project_panel_of(project)) {
    text += frame.caption + "\n";
    for (const std::string &line : frame.lines)
      text += "  " + line + "\n";
  }
  return text;
}

} // namespace orb
