#include "commands/library_stage.h"

#include <array>
#include <cmath>
#include <fmt/format.h>

#include "database/band_statistics.h"
#include "database/class_markers.h"
#include "database/library_file.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "metrics/class_clone_text_distance.h"
#include "reports/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

parameter_fields preset_parameters(std::int32_t preset) {
  const std::optional<parameter_fields> known = parameters_of_kind(preset);
  if (!known)
    throw usage_error("--preset takes a number from 1 to 5");
  return *known;
}

void apply_parameters(class_DB_of_clones &database, parameter_fields &fields, bool length_from_field) {
  database.max_number_of_real_clones_set(fields.max_n_clones);
  database.total_number_of_different_bands_FPC_set(fields.n_bands);
  database.tollerance_parameters_set(fields.tolerance, fields.tolerance_index);
  if (!length_from_field && fields.gel_length != database.max_band_length_get() && fields.gel_length < 2)
    fields.gel_length = std::floor(database.max_band_length_get());
  database.total_number_of_different_bands_set_by_eff_len(fields.gel_length);
}

parameter_fields fields_from_options(const command_options &options) {
  parameter_fields fields = options.preset ? preset_parameters(*options.preset) : parameter_fields{};
  if (options.tolerance)
    fields.tolerance = *options.tolerance;
  if (options.tolerance_index)
    fields.tolerance_index = *options.tolerance_index;
  if (options.gel_length)
    fields.gel_length = *options.gel_length;
  if (options.n_bands)
    fields.n_bands = *options.n_bands;
  fields.max_n_clones = options.capacity;
  return fields;
}

// A library file brings its parameters. Those that its stored bands depend on can't be changed any more; the others
// are taken from the command line when given there, and this is said.
static void override_library_parameters(project_state &session, const command_options &options,
                                        const command_streams &streams) {
  class_DB_of_clones &database = session.database();
  parameter_fields fields{database.tollerance_get(), database.taking_tollerance_into_account_index_get(),
                          database.max_band_length_get(), database.total_number_of_different_bands_FPC_get(),
                          database.max_number_of_real_clones_get()};
  parameter_fields wanted = fields;
  const bool bins = database.index_of_band_type_get() != 0;
  if (options.tolerance_index)
    throw usage_error("--tolerance-index can't be used on a library file: its stored bands depend on it");
  if (options.tolerance && bins)
    throw usage_error("--tolerance can't be used on a library file of bin numbers: they depend on it");
  if (options.preset) {
    wanted = preset_parameters(*options.preset);
    if (wanted.tolerance_index != fields.tolerance_index || (bins && wanted.tolerance != fields.tolerance))
      throw usage_error("--preset doesn't fit the library file: its stored bands were made with tolerance index " +
                        std::to_string(fields.tolerance_index) + " and tolerance " + std::to_string(fields.tolerance));
    wanted.max_n_clones = fields.max_n_clones;
  }
  if (options.tolerance)
    wanted.tolerance = *options.tolerance;
  if (options.gel_length)
    wanted.gel_length = *options.gel_length;
  if (options.n_bands)
    wanted.n_bands = *options.n_bands;
  if (wanted.tolerance == fields.tolerance && wanted.gel_length == fields.gel_length &&
      wanted.n_bands == fields.n_bands)
    return;
  for (const auto &[name, was, is] : {std::tuple{"tolerance", double(fields.tolerance), double(wanted.tolerance)},
                                      std::tuple{"gel length", fields.gel_length, wanted.gel_length},
                                      std::tuple{"n-bands", double(fields.n_bands), double(wanted.n_bands)}})
    if (was != is)
      streams.people(fmt::format("The {} of the command line, {}, is used in place of the library's, {}.", name,
                                 number_text_shortest(is), number_text_shortest(was)));
  apply_parameters(database, wanted, true);
  if (!make_band_statistics(session.frame(), database, session.usable_values()))
    throw program_end("bands beyond the gel length", exit_status::run_failed);
}

// The reader that fits INPUT, as a process with a name.
static bool read_input(project_state &session, const command_options &options, input_kind kind,
                       const command_streams &streams) {
  class_DB_of_clones_read &reader = session.reader();
  process_frame &frame = session.frame();
  const bool is_folder = fs::is_directory(options.input);
  bool loaded = false;
  frame.all_panels_reset();
  if (kind == input_kind::library && !options.plain_text) {
    frame.process_start("Load DB from ORB file");
    loaded = reader.open_file_with_clones(options.capacity, options.input, true, true, session.database(),
                                          session.usable_values());
    if (loaded)
      override_library_parameters(session, options, streams);
  } else if (options.plain_text && kind != input_kind::missing && !is_folder) {
    frame.process_start("Load DB from text file");
    loaded = reader.open_file_with_clones(options.capacity, options.input, false, true, session.database(),
                                          session.usable_values());
  } else {
    frame.process_start("Load DB from sizes folder");
    reader.read_database_from_folder_of_sizes_files(options.input, !is_folder, true, loaded, session.database(),
                                                    session.usable_values());
  }
  if (frame.stop_requested_get())
    frame.process_stopped_manually();
  else if (frame.process_is_running())
    frame.all_panels_reset();
  return loaded;
}

static std::int64_t clones_with_markers(const class_DB_of_clones &database) {
  std::int64_t n = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    n += database.markers().n_markers_in_clone_get(clone) > 0 ? 1 : 0;
  return n;
}

// The markers that the options name, over the clones just loaded.
static exit_status load_markers(project_state &session, const command_options &options,
                                const command_streams &streams) {
  if (options.markers.empty())
    return exit_status::done;
  marker_file_form form{};
  marker_read_summary summary;
  class_markers &markers = session.database().markers();
  if (!markers.read_markers_of_any_text_form(session.frame(), session.database(), options.markers, form, &summary))
    return session.frame().was_stopped() ? exit_status::stopped : exit_status::run_failed;
  session.settings().markers_in_clones = true;
  streams.people(fmt::format("Markers: {} on {} clones.", number_text_thousands(markers.total_number_of_markers_get()),
                             number_text_thousands(clones_with_markers(session.database()))));
  return exit_status::done;
}

exit_status load_library(project_state &session, const command_options &options, const command_streams &streams) {
  const input_kind kind = kind_of_input(options.input);
  project_settings &settings = session.settings();
  settings.clone_name_format_input = options.name_format_in;
  settings.clone_name_format_output = options.name_format_out;
  parameter_fields fields = fields_from_options(options);
  apply_parameters(session.database(), fields, false);

  const bool loaded = read_input(session, options, kind, streams);
  if (session.frame().was_stopped())
    return exit_status::stopped;
  const std::int32_t n = session.database().total_number_of_clones_get();
  if (loaded) {
    session.frame().message("Fingerprint data for all of " + std::to_string(n) + " clones are loaded.");
    if (n > options.capacity)
      streams.people(fmt::format("The library has more clones than the capacity of {}, which was raised to {}.",
                                 options.capacity, n));
    return load_markers(session, options, streams);
  }
  const bool nothing_there =
      kind == input_kind::missing || (fs::is_directory(options.input) && sizes_files_of_folder(options.input).empty());
  return nothing_there ? exit_status::no_input_or_output : exit_status::run_failed;
}

std::string text_of_library(project_state &session) {
  const class_DB_of_clones &database = session.database();
  const std::int32_t n = database.total_number_of_clones_get();
  const std::int64_t bands = database.first_band_adress_get(n + 1) - 1;
  return fmt::format(
      "{} clones, {} bands ({} a clone); tolerance {}, index {}, gel length {}, n-bands {}", number_text_thousands(n),
      number_text_thousands(bands), number_text(n > 0 ? double(bands) / n : 0, 1), database.tollerance_get(),
      database.taking_tollerance_into_account_index_get(), number_text_shortest(database.max_band_length_get()),
      database.total_number_of_different_bands_FPC_get());
}

void record_library(project_state &session, run_record &record) {
  const class_DB_of_clones &database = session.database();
  record.parameter_set("tolerance", database.tollerance_get());
  record.parameter_set("tolerance_index", database.taking_tollerance_into_account_index_get());
  record.parameter_set("gel_length", database.max_band_length_get());
  record.parameter_set("n_bands", database.total_number_of_different_bands_FPC_get());
  record.library_set(database.total_number_of_clones_get(), library_checksum(database));
}

exit_status load_pvalue_tables(project_state &session, const command_options &options, run_record &record,
                               const command_streams &streams) {
  if (options.pvalue_tables.empty())
    return exit_status::done;
  class_clone_dist_table &table = session.context().table;
  if (!table.run_read_tables(session.frame(), options.pvalue_tables))
    return exit_status::run_failed;
  record.input_add(process_frame::path_in_folder(options.pvalue_tables, class_clone_dist_table::name_of_sizes_file()));
  for (const int mode : {0, 1})
    for (const char *const p : {"a0", "a1", "a2"})
      if (table.is_loaded(mode))
        record.input_add(
            process_frame::path_in_folder(options.pvalue_tables, class_clone_dist_table::name_of_file(p, mode)));
  streams.people(fmt::format("Tables of p-values: clones of {} to {} bands, in steps of {}{}.", table.min_n_bands_get(),
                             table.size(table.n_steps_get()), table.step_get(),
                             !table.is_loaded(0)   ? "; mode fr only"
                             : !table.is_loaded(1) ? "; mode iid only"
                                                   : ""));
  return exit_status::done;
}

// The mode of the tables that a metric reads; -1: it reads none.
static int mode_of_metric(std::int16_t index) {
  using family = class_clone_dist_general;
  switch (index) {
  case family::DISTANCE_INDEX_Nof_get():
    return 0;
  case family::DISTANCE_INDEX_Lnn_get():
  case family::DISTANCE_INDEX_LnnCuted_get():
  case family::DISTANCE_INDEX_LnnMarkers_get():
    return 1;
  default:
    return -1;
  }
}

static bool tables_serve_metric(project_state &session, std::int16_t index) {
  return session.context().table.is_loaded(mode_of_metric(index));
}

void say_what_tables_leave_out(project_state &session, const command_streams &streams) {
  const class_clone_dist_table &table = session.context().table;
  const class_DB_of_clones &database = session.database();
  if (!tables_serve_metric(session, session.settings().distance_index))
    return;
  const std::int32_t least = table.min_n_bands_get(), most = table.size(table.n_steps_get());
  std::int32_t n_outside = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone) {
    const std::int32_t n = database.number_of_bands_in_clone_get(clone);
    n_outside += n < least || n > most;
  }
  if (n_outside > 0)
    streams.people(fmt::format("{} of {} clones have fewer than {} or more than {} bands: the tables know nothing of "
                               "them, and their overlaps score 0.",
                               number_text_thousands(n_outside),
                               number_text_thousands(database.total_number_of_clones_get()), least, most));
}

void apply_metric(project_state &session, const command_options &options) {
  const std::string metric = options.metric.empty() ? "Sulston_1988" : options.metric;
  std::int16_t index = class_clone_dist_general::index_of_name(metric);
  std::int32_t number = -1;
  if (index < 0 && whole_number_parse(metric, number) && number >= 0 &&
      number <= class_clone_dist_general::number_distance_index_get())
    index = static_cast<std::int16_t>(number);
  if (index < 0) {
    std::string names;
    for (std::int16_t i = 0; i <= class_clone_dist_general::number_distance_index_get(); ++i)
      names += (i ? ", " : "") + class_clone_dist_general::name_of_cutoff_distance(i);
    throw usage_error("--metric: no metric \"" + metric + "\"; known are " + names);
  }
  const std::string name = class_clone_dist_general::name_of_cutoff_distance(index);
  const std::string useless =
      class_clone_dist_general::why_only_zero(index, tables_serve_metric(session, index), !options.markers.empty());
  if (!useless.empty())
    throw usage_error("--metric " + name + ": " + useless);
  const double standard = class_clone_dist_general::standard_cutoff(index);
  if (!options.cutoff && standard < 0)
    throw usage_error("--cutoff is required: the metric " + name + " has no standard one");
  project_settings &settings = session.settings();
  settings.distance_index = index;
  settings.cutoff = options.cutoff ? *options.cutoff : standard;
  settings.burying = options.burying.value_or(0.9);
  if (class_clone_dist_general::need_take_band_abundances_into_account_get(index))
    settings.distance_table_full_mode = true;
  if (options.table_format)
    class_clone_text_distance::table_format_select(settings, *options.table_format);
}

void record_metric(project_state &session, run_record &record) {
  const project_settings &settings = session.settings();
  record.parameter_set("metric", class_clone_dist_general::name_of_cutoff_distance(settings.distance_index));
  record.parameter_set("cutoff", settings.cutoff);
  record.parameter_set("burying", settings.burying);
  if (settings.table_format_text != project_settings().table_format_text)
    record.parameter_set("table_format", settings.table_format_text);
}

} // namespace orb
