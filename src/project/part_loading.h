// Loading the parts of a project, each whole or not at all: what can't be read leaves the part as it was. Every
// function ends with the project's door (`loaded`), whose `made_by` is the id of the command that asked.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "database/class_markers.h"
#include "fpc/fpc_reading.h"
#include "project/project_state.h"

namespace orb {

enum class load_end {
  loaded,
  cancelled,     // nothing was chosen in a dialog
  stopped,       // by the user
  refused,       // the messages were shown
  nothing_there, // no such file, or a folder without fingerprints
};

// ---- library ----

// What is asked of a library: unset values are the defaults for fingerprints, and for a library file what it says.
struct library_wishes {
  // Folder of .sizes files, one such file, a library file, or an .fpc file with its .cor file; empty: asks by the
  // source.
  std::filesystem::path file;
  enum class source_kind { by_content, plain_text, library_file, sizes, fpc } source = source_kind::by_content;
  bool single_file = false; // of a dialog for sizes: one file
  std::int32_t capacity = library_parameters{}.max_n_clones;
  std::int16_t name_format_in = project_settings{}.clone_name_format_input;
  std::int16_t name_format_out = project_settings{}.clone_name_format_output;
  std::optional<std::int16_t> tolerance, tolerance_index;
  std::optional<double> gel_length;
  std::optional<std::int32_t> n_bands;
  std::optional<std::int32_t> preset; // 1.. of the known kinds of data
};

// The parameters that the wishes stand for; usage_error for an unknown preset.
library_parameters parameters_of(const library_wishes &wishes);
library_parameters parameters_of(const class_DB_of_clones &database);
// Copies parameters into the database. A gel length below 2 is replaced by the database's own, in `fields` too, unless
// `length_from_field` asks for it as it stands.
void apply_parameters(class_DB_of_clones &database, library_parameters &fields, bool length_from_field);

// Exact copies that were dropped don't count in the band statistics: a library is the same from fingerprints and from
// its library file. Throws usage_error for parameters that a library file's stored bands forbid.
load_end load_library(project_state &project, const library_wishes &wishes, const std::string &made_by);
// "423 clones, 40,822 bands (96.5 a clone); tolerance 12, index 1, gel length 60000, n-bands 2250"
std::string text_of_library(const class_DB_of_clones &database);

// ---- the parts that hang on it ----

// Markers of clones, over the clones that are loaded; `form` unknown: told by what stands in the file.
load_end load_markers(project_state &project, const std::filesystem::path &file, marker_file_form form,
                      const std::string &made_by);
// Positions of the markers that are loaded.
load_end load_marker_positions(project_state &project, const std::filesystem::path &file);

load_end load_pvalue_tables(project_state &project, const std::filesystem::path &folder, const std::string &made_by);
// Whether the tables that are loaded serve a metric.
bool tables_serve_metric(const project_state &project, std::int16_t distance_index);
// Says how many clones have sizes of which the tables know nothing, when the metric lives on tables.
void say_what_tables_leave_out(project_state &project);

// A native net for this library; an empty path asks. Another number of clones, or a damaged file, is refused.
load_end load_net(project_state &project, const std::filesystem::path &file, const std::string &made_by);
// A text net or its parts, kept in the native form and read back from there. The name of the proposal goes by the rule.
load_end load_text_net(project_state &project, text_net_reading wanted, const std::string &made_by);

// The folder of a finished run.
load_end load_run(project_state &project, const std::filesystem::path &folder, const std::string &made_by);
// A folder of lists of clones, each a cluster; an empty path asks. The registry is new. `test`: whether lists that
// share clones are refused; unset: asks.
load_end load_folder_of_clusters(project_state &project, const std::filesystem::path &folder,
                                 const std::string &made_by, std::optional<bool> test = {});
// The contigs of an .fpc file, and its markers.
load_end load_fpc_assembly(project_state &project, const std::filesystem::path &file,
                           const fpc_reading_options &options, const std::string &made_by,
                           fpc_reading_summary &summary);

} // namespace orb
