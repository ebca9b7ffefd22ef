// The first part of a project: a library, from whatever the input is.
#include <cmath>
#include <fmt/format.h>
#include <tuple>

#include "database/band_statistics.h"
#include "database/library_file.h"
#include "fpc/fpc_fingerprints.h"
#include "frame/numbers.h"
#include "project/input_kind.h"
#include "project/part_loading.h"

namespace orb {

namespace fs = std::filesystem;

using source_kind = library_wishes::source_kind;

library_parameters parameters_of(const library_wishes &wishes) {
  library_parameters fields;
  if (wishes.preset) {
    const auto known = parameters_of_kind(*wishes.preset);
    if (!known)
      throw usage_error(fmt::format("preset takes a number from 1 to {}", known_kinds_of_data.size()));
    fields = *known;
  }
  fields.tolerance = wishes.tolerance.value_or(fields.tolerance);
  fields.tolerance_index = wishes.tolerance_index.value_or(fields.tolerance_index);
  fields.gel_length = wishes.gel_length.value_or(fields.gel_length);
  fields.n_bands = wishes.n_bands.value_or(fields.n_bands);
  fields.max_n_clones = wishes.capacity;
  return fields;
}

library_parameters parameters_of(const class_DB_of_clones &database) {
  return {database.tollerance_get(), database.taking_tollerance_into_account_index_get(),
          database.max_band_length_get(), database.total_number_of_different_bands_FPC_get(),
          database.max_number_of_real_clones_get()};
}

void apply_parameters(class_DB_of_clones &database, library_parameters &fields, bool length_from_field) {
  database.max_number_of_real_clones_set(fields.max_n_clones);
  database.total_number_of_different_bands_FPC_set(fields.n_bands);
  database.tollerance_parameters_set(fields.tolerance, fields.tolerance_index);
  if (!length_from_field && fields.gel_length != database.max_band_length_get() && fields.gel_length < 2)
    fields.gel_length = std::floor(database.max_band_length_get());
  database.total_number_of_different_bands_set_by_eff_len(fields.gel_length);
}

namespace {

// The reader takes the parameters from the database; when it fails, the library that stays gets its own back.
class parameters_keeper {
public:
  explicit parameters_keeper(project_state &project)
      : project_(project), parameters_(parameters_of(project.database())),
        format_in_(project.settings().clone_name_format_input),
        format_out_(project.settings().clone_name_format_output), version_(project.version()) {}
  ~parameters_keeper() {
    if (released_ || project_.version() != version_) // another library has come into its place
      return;
    apply_parameters(project_.database(), parameters_, true);
    project_.settings().clone_name_format_input = format_in_;
    project_.settings().clone_name_format_output = format_out_;
  }
  parameters_keeper(const parameters_keeper &) = delete;
  parameters_keeper &operator=(const parameters_keeper &) = delete;
  void release() { released_ = true; }

private:
  project_state &project_;
  library_parameters parameters_;
  std::int16_t format_in_, format_out_;
  std::uint64_t version_;
  bool released_ = false;
};

// What a library file's stored bands depend on can't be asked for any more.
void refuse_what_stored_bands_forbid(const library_wishes &wishes, const library_parameters &fields, bool bins) {
  if (wishes.tolerance_index)
    throw usage_error("--tolerance-index can't be used on a library file: its stored bands depend on it");
  if (wishes.tolerance && bins)
    throw usage_error("--tolerance can't be used on a library file of bin numbers: they depend on it");
  if (!wishes.preset)
    return;
  const library_parameters known = *parameters_of_kind(*wishes.preset);
  if (known.tolerance_index != fields.tolerance_index || (bins && known.tolerance != fields.tolerance))
    throw usage_error(fmt::format("--preset doesn't fit the library file: its stored bands were made with tolerance "
                                  "index {} and tolerance {}",
                                  fields.tolerance_index, fields.tolerance));
}

// A library file brings its parameters; what may still be changed is taken from the wishes, and this is said.
void override_library_parameters(project_state &project, const library_wishes &wishes) {
  class_DB_of_clones &database = project.database();
  const library_parameters fields = parameters_of(database);
  library_parameters wanted = fields;
  if (wishes.preset)
    wanted = *parameters_of_kind(*wishes.preset);
  wanted.max_n_clones = fields.max_n_clones;
  wanted.tolerance = wishes.tolerance.value_or(wanted.tolerance);
  wanted.gel_length = wishes.gel_length.value_or(wanted.gel_length);
  wanted.n_bands = wishes.n_bands.value_or(wanted.n_bands);
  if (wanted.tolerance == fields.tolerance && wanted.gel_length == fields.gel_length &&
      wanted.n_bands == fields.n_bands)
    return;
  for (const auto &[name, was, is] : {std::tuple{"tolerance", double(fields.tolerance), double(wanted.tolerance)},
                                      std::tuple{"gel length", fields.gel_length, wanted.gel_length},
                                      std::tuple{"n-bands", double(fields.n_bands), double(wanted.n_bands)}})
    if (was != is)
      project.frame().note(fmt::format("The {} of the command line, {}, is used in place of the library's, {}.", name,
                                       number_text_shortest(is), number_text_shortest(was)));
  apply_parameters(database, wanted, true);
  if (!make_band_statistics(project.frame(), database, project.usable_values()))
    throw program_end("bands beyond the gel length", exit_status::run_failed);
}

source_kind source_of(const library_wishes &wishes) {
  const input_kind kind = kind_of_input(wishes.file);
  if (kind == input_kind::fpc_file && wishes.source != source_kind::library_file)
    return source_kind::fpc;
  if (wishes.source == source_kind::by_content)
    return kind == input_kind::library ? source_kind::library_file : source_kind::sizes;
  const bool is_text = wishes.source == source_kind::plain_text;
  std::error_code failed;
  const bool can_be_text = wishes.file.empty() || (fs::exists(wishes.file, failed) && !fs::is_directory(wishes.file));
  return is_text && !can_be_text ? source_kind::sizes : wishes.source;
}

// What the head of an .fpc file proposes counts where nothing else is asked for, and this is said.
library_parameters parameters_of_fpc_input(process_frame &frame, const library_wishes &wishes) {
  const library_parameters asked = parameters_of(wishes);
  fpc_head head = head_of_fpc_file(wishes.file);
  if (wishes.preset || (!head.tolerance && !head.gel_length))
    return asked;
  if (wishes.tolerance)
    head.tolerance = *wishes.tolerance;
  if (wishes.gel_length)
    head.gel_length = *wishes.gel_length;
  library_parameters fields = parameters_of_fpc(head, asked);
  fields.n_bands = wishes.n_bands.value_or(fields.n_bands);
  frame.note(fmt::format("By the head of {} and the options: tolerance {}, gel length {}, n-bands {}.",
                         wishes.file.filename().string(), fields.tolerance, number_text_shortest(fields.gel_length),
                         fields.n_bands));
  return fields;
}

// The reader that fits, as a process with a name. The library comes into its place whole, or the old one stays.
bool read_library(project_state &project, const library_wishes &wishes, source_kind source) {
  class_DB_of_clones_read &reader = project.reader();
  process_frame &frame = project.frame();
  class_DB_of_clones &database = project.database();
  bool loaded = false;
  frame.all_panels_reset();
  if (source == source_kind::fpc) {
    frame.process_start("Load DB from FPC project");
    loaded = reader.read_database_from_records(
        [&](class_DB_of_clones &fresh, fingerprint_records &records, band_statistics &statistics) {
          return read_fpc_fingerprints(frame, project.settings(), wishes.file, fresh, records, statistics);
        },
        database, project.usable_values());
    if (loaded && reader.summary().n_copies_dropped > 0)
      make_band_statistics(frame, database, project.usable_values());
  } else if (source == source_kind::sizes) {
    frame.process_start("Load DB from sizes folder");
    const bool single = wishes.file.empty() ? wishes.single_file : !fs::is_directory(wishes.file);
    reader.read_database_from_folder_of_sizes_files(wishes.file, single, true, loaded, database,
                                                    project.usable_values());
    if (loaded && reader.summary().n_copies_dropped > 0)
      make_band_statistics(frame, database, project.usable_values());
  } else {
    const bool is_library = source == source_kind::library_file;
    frame.process_start(is_library ? "Load DB from ORB file" : "Load DB from text file");
    loaded =
        reader.open_file_with_clones(wishes.capacity, wishes.file, is_library, true, database, project.usable_values());
    if (loaded && is_library)
      override_library_parameters(project, wishes);
  }
  if (frame.stop_requested_get())
    frame.process_stopped_manually();
  else if (frame.process_is_running())
    frame.all_panels_reset();
  return loaded;
}

void tell_clones_without_bands(process_frame &frame, const class_DB_of_clones &database) {
  constexpr std::int32_t most_shown = 10;
  std::int32_t n = 0;
  std::string names;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    if (database.number_of_bands_in_clone_get(clone) == 0 && ++n <= most_shown)
      names += (n > 1 ? ", " : "") + std::string(database.name_of_clone_get(clone));
  if (n > 0)
    frame.warn(fmt::format("Without a band, and so without overlaps: {} clones: {}{}.", n, names,
                           n > most_shown ? ", ..." : ""));
}

} // namespace

load_end load_library(project_state &project, const library_wishes &wishes, const std::string &made_by) {
  process_frame &frame = project.frame();
  project_settings &settings = project.settings();
  class_DB_of_clones &database = project.database();
  const source_kind source = source_of(wishes);
  if (source == source_kind::library_file && !wishes.file.empty())
    if (const auto stored = parameters_of_library_file(wishes.file))
      refuse_what_stored_bands_forbid(wishes, stored->parameters, stored->bins);
  parameters_keeper keeper(project);
  settings.clone_name_format_input = wishes.name_format_in;
  settings.clone_name_format_output = wishes.name_format_out;
  library_parameters fields =
      source == source_kind::fpc ? parameters_of_fpc_input(frame, wishes) : parameters_of(wishes);
  apply_parameters(database, fields, false);
  const bool loaded = read_library(project, wishes, source);
  if (loaded) { // it is there, even when a wish to stop came too late
    keeper.release();
    project.loaded(project_part::library, {wishes.file, made_by});
  }
  if (loaded && !frame.was_stopped()) {
    const std::int32_t n = database.total_number_of_clones_get();
    frame.message("Fingerprint data for all of " + std::to_string(n) + " clones are loaded.");
    if (n > wishes.capacity)
      frame.note(fmt::format("The library has more clones than the capacity of {}, which was raised to {}.",
                             wishes.capacity, n));
    tell_clones_without_bands(frame, database);
    return load_end::loaded;
  }
  if (frame.was_stopped())
    return load_end::stopped;
  if (wishes.file.empty())
    return frame.data_failed() ? load_end::refused : load_end::cancelled;
  if (const std::string found = words_of_other_kind(
          wishes.file, {input_kind::library, input_kind::sizes_file, input_kind::sizes_folder, input_kind::fpc_file});
      !found.empty())
    frame.message(found + " Wanted: fingerprints or a library file.");
  const bool nothing_there = kind_of_input(wishes.file) == input_kind::missing ||
                             (fs::is_directory(wishes.file) && sizes_files_of_folder(wishes.file).empty());
  return nothing_there ? load_end::nothing_there : load_end::refused;
}

std::string text_of_library(const class_DB_of_clones &database) {
  const std::int32_t n = database.total_number_of_clones_get();
  const std::int64_t bands = database.first_band_adress_get(n + 1) - 1;
  return fmt::format(
      "{} clones, {} bands ({} a clone); tolerance {}, index {}, gel length {}, n-bands {}", number_text_thousands(n),
      number_text_thousands(bands), number_text(n > 0 ? double(bands) / n : 0, 1), database.tollerance_get(),
      database.taking_tollerance_into_account_index_get(), number_text_shortest(database.max_band_length_get()),
      database.total_number_of_different_bands_FPC_get());
}

} // namespace orb
