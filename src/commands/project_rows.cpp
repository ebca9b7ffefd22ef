// The project as a whole, and the forms that set its parameters.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/library_parameter_rows.h"
#include "commands/metric_parameters.h"
#include "commands/row_steps.h"
#include "database/band_statistics.h"
#include "database/class_clone_serv.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "metrics/class_clone_text_distance.h"
#include "project/project_file.h"

namespace orb {

namespace fs = std::filesystem;

bool change_parameters(project_state &project, library_parameters fields) {
  class_DB_of_clones &database = project.database();
  library_parameters before = parameters_of(database);
  apply_parameters(database, fields, false);
  const bool changed = fields.tolerance != before.tolerance || fields.gel_length != before.gel_length ||
                       fields.n_bands != before.n_bands || fields.tolerance_index != before.tolerance_index;
  if (!changed || !project.has(project_part::library))
    return true;
  if (!make_band_statistics(project.frame(), database, project.usable_values())) {
    apply_parameters(database, before, true);
    make_band_statistics(project.frame(), database, project.usable_values());
    return false;
  }
  project.loaded(project_part::library, project.origin(project_part::library));
  return true;
}

namespace {

// ---- the metric ----

void check_metric(const project_state &project, const parts_there &there, const metric_parameters &p) {
  rule_of(p, project, there);
}

void foresee_metric(project_state &project, const parts_there &there, const metric_parameters &p) {
  project.rule() = rule_of(p, project, there);
}

bool flag_of(const std::string &word, bool as_it_is) {
  return word.empty() ? as_it_is : word == "yes";
}

command_result run_metric(project_state &project, const metric_parameters &p) {
  project_settings &settings = project.settings();
  project.rule() = rule_of(p, project, parts_there::of(project));
  settings.several_metrics_and_cutoffs = flag_of(p.several, settings.several_metrics_and_cutoffs);
  settings.markers_in_clones = flag_of(p.markers, settings.markers_in_clones);
  settle_use_of_net(project);
  say_what_tables_leave_out(project);
  command_result result;
  result.parameter("metric", class_clone_dist_general::name_of_cutoff_distance(project.rule().distance_index));
  result.parameter("cutoff", project.rule().cutoff);
  result.parameter("burying", project.rule().burying);
  return result;
}

void describe_metric_form(parameter_list &list, metric_parameters &p) {
  describe_metric(list, p);
  list.add("several", p.several, "draw.marked and draw.folder make a series at rising cutoffs")
      .captioned("Several metrics and cutoffs")
      .one_of({"yes", "no"})
      .unset("as it is");
  list.add("use-markers", p.markers, "markers join clones when a net is made anew from a loaded one")
      .captioned("Markers")
      .one_of({"yes", "no"})
      .unset("as it is");
}

struct tables_parameters {
  fs::path folder;
};

void describe_tables(parameter_list &list, tables_parameters &p) {
  list.add("folder", p.folder, "folder of tables of simulated p-values, for Nof and Lnn").type("DIR").needed();
}

void check_tables(const project_state &, const parts_there &, const tables_parameters &p) {
  check_input(p.folder);
}

command_result run_tables(project_state &project, const tables_parameters &p) {
  if (const load_end end = load_pvalue_tables(project, p.folder, "pvalue.load"); end != load_end::loaded)
    return result_of(end);
  command_result result;
  using table = class_clone_dist_table;
  result.inputs.push_back(process_frame::path_in_folder(p.folder, table::name_of_sizes_file()));
  for (const int mode : {0, 1})
    for (const char *const name : {"a0", "a1", "a2"})
      if (project.pvalue_tables().is_loaded(mode))
        result.inputs.push_back(process_frame::path_in_folder(p.folder, table::name_of_file(name, mode)));
  return result;
}

// ---- form_param ----

struct form_param {
  library_wishes wishes;
  bool recalculate = false;
  std::string use_net, same_metric, same_metric_net_ord; // "yes", "no"; empty: as they are
  std::optional<std::int32_t> max_n_clones;
};

void describe_form_param(parameter_list &list, form_param &p) {
  describe_library_parameters(list, p.wishes, 0); // a length below 2 gives way to the database's own
  list.add("max-clones", p.max_n_clones, "number of clones provided for")
      .captioned("Max N_of_clones =")
      .limits(1, 2000000000)
      .unset("as it is");
  const std::vector<std::string> words{"yes", "no"};
  list.add("use-net", p.use_net, "new work starts from the loaded net")
      .captioned("Use current LOADED file with significant clone overlaps")
      .one_of(words)
      .unset("as it is");
  list.add("same-metric", p.same_metric, "the loaded net was made by the metric in use")
      .captioned("Same metric like in current LOADED file with net")
      .one_of(words)
      .unset("as it is");
  list.add("same-metric-in-order", p.same_metric_net_ord,
           "the same for orders of clones; kept, but no command goes by it yet")
      .captioned("Use same metric also for nets and clone ordering")
      .one_of(words)
      .unset("as it is");
}

void check_form_param(const project_state &project, const parts_there &there, const form_param &p) {
  parameters_of(p.wishes);
  const bool stored = there.has(project_part::library);
  const class_DB_of_clones &database = project.database();
  const bool bins = database.index_of_band_type_get() != 0;
  if (stored && p.wishes.tolerance_index &&
      *p.wishes.tolerance_index != database.taking_tollerance_into_account_index_get())
    throw usage_error("tolerance-index can't be changed under a loaded library: its bands depend on it");
  if (stored && bins && p.wishes.tolerance && *p.wishes.tolerance != database.tollerance_get())
    throw usage_error("tolerance can't be changed under a loaded library of bin numbers: they depend on it");
  if (p.use_net == "yes" && !there.has(project_part::net) && project.signif().net().number_of_vertices_get() == 0)
    throw usage_error("use-net needs a net of overlaps, and there is none");
}

// What is given goes into the project; what isn't stays as it is. A gel length that cuts loaded bands off is refused.
command_result run_form_param(project_state &project, const form_param &p) {
  project_settings &settings = project.settings();
  class_DB_of_clones &database = project.database();
  const library_parameters before = parameters_of(database);
  library_parameters fields = before;
  if (p.wishes.preset)
    fields = *parameters_of_kind(*p.wishes.preset);
  fields.max_n_clones = p.max_n_clones.value_or(before.max_n_clones);
  fields.tolerance = p.wishes.tolerance.value_or(fields.tolerance);
  fields.tolerance_index = p.wishes.tolerance_index.value_or(fields.tolerance_index);
  fields.gel_length = p.wishes.gel_length.value_or(fields.gel_length);
  fields.n_bands = p.wishes.n_bands.value_or(fields.n_bands);
  if (!change_parameters(project, fields))
    return command_result::ended(exit_status::run_failed, "the parameters don't fit the loaded bands");
  settings.use_file_with_connections = flag_of(p.use_net, settings.use_file_with_connections);
  settings.same_metric_as_net = flag_of(p.same_metric, settings.same_metric_as_net);
  settings.same_metric_net_ord_as_net = flag_of(p.same_metric_net_ord, settings.same_metric_net_ord_as_net);
  project.frame().note(fmt::format("N_bands = {}", database.total_number_of_different_bands_get()));
  command_result result;
  result.parameter("tolerance", fields.tolerance);
  result.parameter("tolerance_index", fields.tolerance_index);
  result.parameter("gel_length", fields.gel_length);
  result.parameter("n_bands", fields.n_bands);
  return result;
}

// ---- form_formats ----

struct form_formats {
  std::optional<std::int16_t> input, output, file_format;
};

std::string text_of_name_formats() {
  std::string text = "clone name format:";
  for (std::int32_t i = 0; i < class_clone_serv::n_clone_formats_get(); ++i)
    text += fmt::format(" {} {};", i, class_clone_serv::clone_format_example_get(i));
  text.pop_back();
  return text;
}

void describe_form_formats(parameter_list &list, form_formats &p) {
  list.add("name-format-in", p.input, "of what is read, " + text_of_name_formats()).limits(0, 8).unset("as it is");
  list.add("name-format-out", p.output, "of what is written").limits(0, 8).unset("as it is");
  list.add("file-format", p.file_format,
           "0 " + class_clone_serv::file_format_caption_get(0) + "; 1 " + class_clone_serv::file_format_caption_get(1) +
               "; kept, but no reader goes by it yet")
      .limits(0, 1)
      .unset("as it is");
}

// Format 8 finds prefix and number column in the names that are loaded.
command_result run_form_formats(project_state &project, const form_formats &p) {
  project_settings &settings = project.settings();
  constexpr std::int16_t automatic = 8;
  settings.clone_name_format_input = p.input.value_or(settings.clone_name_format_input);
  settings.clone_name_format_output = p.output.value_or(settings.clone_name_format_output);
  settings.file_format_index = p.file_format.value_or(settings.file_format_index);
  if (settings.clone_name_format_input == automatic || settings.clone_name_format_output == automatic) {
    class_clone_serv::automatically_selecting_clone_name_format_start(project.database(), settings);
    project.frame().note(fmt::format(
        "Names of the library: {} characters of prefix, {}.", std::max(settings.automatic_name_prefix_length, 0),
        settings.automatic_name_number_column ? "numbers without separators" : "parts with separators"));
  }
  return {};
}

// ---- options ----

struct analysis_options {
  std::string fast_FPC, net_in_ordering, fast_clustering, singletones;
  std::optional<std::int16_t> table_format;
};

void describe_options(parameter_list &list, analysis_options &p) {
  const std::vector<std::string> words{"yes", "no"};
  std::string formats;
  for (std::int32_t format = 0; format < class_clone_text_distance::table_format_n_text_get(); ++format)
    formats += fmt::format(" {} {};", format, class_clone_text_distance::table_format_text_get(format));
  formats.pop_back();
  list.add("table-format", p.table_format, "columns of pair tables:" + formats)
      .limits(0, class_clone_text_distance::table_format_n_text_get() - 1)
      .unset("0");
  list.add("fast-fpc", p.fast_FPC, "the fast path of scores; without it all columns of format 4 are printed")
      .captioned("fast FPC")
      .one_of(words)
      .unset("yes");
  list.add("net-in-ordering", p.net_in_ordering, "orders of clones link only pairs that the net joins")
      .one_of(words)
      .unset("no");
  list.add("fast-clustering", p.fast_clustering, "single linkage on the net; without it pair by pair")
      .one_of(words)
      .unset("yes");
  list.add("singletones", p.singletones, "ask whether clones outside the contigs of an .fpc file go into one set")
      .one_of(words)
      .unset("no");
}

command_result run_options(project_state &project, const analysis_options &p) {
  project_settings &settings = project.settings();
  const project_settings before = settings;
  settings.for_FPC_fast_indicator = flag_of(p.fast_FPC, settings.for_FPC_fast_indicator);
  project.usable_values().for_FPC_fast_indicator_set(settings.for_FPC_fast_indicator);
  settings.net_in_ordering = flag_of(p.net_in_ordering, settings.net_in_ordering);
  settings.fast_clustering = flag_of(p.fast_clustering, settings.fast_clustering);
  settings.singletones = flag_of(p.singletones, settings.singletones);
  if (p.table_format)
    class_clone_text_distance::table_format_select(settings, *p.table_format);
  command_result result;
  const project_settings standard;
  if (settings.table_format_text != standard.table_format_text)
    result.parameter("table_format", settings.table_format_text);
  if (settings.for_FPC_fast_indicator != standard.for_FPC_fast_indicator)
    result.parameter("fast_fpc", settings.for_FPC_fast_indicator);
  if (settings.net_in_ordering != standard.net_in_ordering)
    result.parameter("net_in_ordering", settings.net_in_ordering);
  if (settings.fast_clustering != standard.fast_clustering)
    result.parameter("fast_clustering", settings.fast_clustering);
  return result;
}

// ---- the project ----

struct project_file_parameters {
  fs::path file;
};

void describe_project_file(parameter_list &list, project_file_parameters &p) {
  list.add("file", p.file, "project file: library, markers, net, contigs, folder of clusters").type("FILE");
}

void check_project_file(const project_state &, const parts_there &, const project_file_parameters &p) {
  check_input(p.file);
}

command_result run_open(project_state &project, const project_file_parameters &p) {
  const load_end end = open_project(project, p.file, "project.open");
  command_result result = result_of(end);
  if (!p.file.empty())
    result.inputs.push_back(p.file);
  return result;
}

command_result run_show(project_state &project, const no_parameters &) {
  command_result result;
  result.lines.push_back(text_of_project_panel(project));
  result.lines.back().pop_back();
  return result;
}

command_result run_close(project_state &project, const no_parameters &) {
  project.clear();
  return {};
}

struct folder_parameters {
  fs::path folder;
};

void describe_folder(parameter_list &list, folder_parameters &p) {
  list.add("folder", p.folder, "working folder: where reports without a folder of their own go").type("DIR").needed();
}

command_result run_folder(project_state &project, const folder_parameters &p) {
  work_in(project, p.folder);
  project.working_folder_set(p.folder);
  return {};
}

command_result run_exit(project_state &project, const no_parameters &) {
  return project.frame().quit_requested() ? command_result{}
                                          : command_result::ended(exit_status::run_failed, "the program goes on");
}

} // namespace

void add_project_rows(command_rows &rows) {
  rows.push_back(command_maker<project_file_parameters>("project.open")
                     .captioned("Open ORB project...")
                     .purpose("load the files that a project file names")
                     .example("project.open file=maize.orb")
                     .makes({project_part::library})
                     .parameters(describe_project_file)
                     .checked_by(check_project_file)
                     .runs(run_open)
                     .row());
  rows.push_back(command_maker<no_parameters>("project.show")
                     .captioned("Project")
                     .purpose("what is loaded: the panels of the project as text")
                     .example("project.show")
                     .runs(run_show)
                     .row());
  rows.push_back(command_maker<no_parameters>("project.close")
                     .captioned("Close project")
                     .purpose("drop all that is loaded; parameters as at the start")
                     .example("project.close")
                     .runs(run_close)
                     .row());
  rows.push_back(command_maker<folder_parameters>("folder.set")
                     .captioned("Working folder")
                     .purpose("the working folder from here on")
                     .example("folder.set folder=results")
                     .parameters(describe_folder)
                     .runs(run_folder)
                     .row());
  rows.push_back(command_maker<form_param>("parameters.set")
                     .captioned("Parameters")
                     .purpose("tolerance, gel length, numbers of bands; how the loaded net is used")
                     .example("parameters.set tolerance=7 gel-length=40000")
                     .parameters(describe_form_param)
                     .checked_by(check_form_param)
                     .runs(run_form_param)
                     .row());
  rows.push_back(command_maker<tables_parameters>("pvalue.load")
                     .captioned("Load tables of p-values")
                     .purpose("load tables of simulated p-values, which the metrics Nof and Lnn need")
                     .example("pvalue.load folder=tables")
                     .makes({project_part::pvalue_tables})
                     .parameters(describe_tables)
                     .checked_by(check_tables)
                     .runs(run_tables)
                     .row());
  rows.push_back(command_maker<metric_parameters>("metric.set")
                     .captioned("Clone overlaps")
                     .purpose("metric, cutoff and burying fraction")
                     .example("metric.set metric=Sulston_1988 cutoff=15")
                     .parameters(describe_metric_form)
                     .checked_by(check_metric)
                     .foresees(foresee_metric)
                     .runs(run_metric)
                     .row());
  rows.push_back(command_maker<form_formats>("formats.set")
                     .captioned("Data formats")
                     .purpose("formats of clone names and of fingerprint files")
                     .example("formats.set name-format-in=1 name-format-out=0")
                     .parameters(describe_form_formats)
                     .runs(run_form_formats)
                     .row());
  rows.push_back(command_maker<analysis_options>("options.set")
                     .captioned("Options for analysis")
                     .purpose("columns of pair tables, and how scores, orders and clusters are made")
                     .example("options.set table-format=4 fast-fpc=no")
                     .parameters(describe_options)
                     .runs(run_options)
                     .row());
  rows.push_back(command_maker<no_parameters>("program.exit")
                     .captioned("Exit")
                     .purpose("the close request: asks, and refuses while a process runs")
                     .example("program.exit")
                     .runs(run_exit)
                     .row());
}

} // namespace orb
