#include "project/part_loading.h"

#include <fmt/format.h>

#include "contigs/run_folder.h"
#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "project/input_kind.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

std::int64_t clones_with_markers(const class_DB_of_clones &database) {
  std::int64_t n = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone)
    n += database.markers().n_markers_in_clone_get(clone) > 0 ? 1 : 0;
  return n;
}

load_end end_of_failure(const process_frame &frame) {
  return frame.was_stopped() || frame.stop_requested_get() ? load_end::stopped : load_end::refused;
}

bool read_markers(process_frame &frame, class_DB_of_clones &database, const fs::path &file, marker_file_form form,
                  class_markers &markers) {
  const bool one_column = form == marker_file_form::markers_of_clones_in_one_column;
  switch (form) {
  case marker_file_form::markers_of_clones_in_fields:
  case marker_file_form::markers_of_clones_in_one_column:
    return markers.file_with_list_of_markers_for_each_clone_read(frame, database, true, file, &one_column);
  case marker_file_form::clones_of_markers:
    return markers.file_with_list_of_clones_for_each_marker_read(frame, database, file);
  case marker_file_form::native:
    return markers.run_file_about_markers_ORB_format_load(frame, database, file);
  case marker_file_form::unknown:
    break;
  }
  if (file.empty()) // the dialog of the commonest form, which asks how the line is built
    return markers.file_with_list_of_markers_for_each_clone_read(frame, database, true);
  marker_file_form found{};
  return markers.read_markers_of_any_text_form(frame, database, file, found);
}

// The mode of the tables that a metric reads; -1: it reads none.
int mode_of_metric(std::int16_t index) {
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

} // namespace

load_end load_markers(project_state &project, const fs::path &file, marker_file_form form, const std::string &made_by) {
  process_frame &frame = project.frame();
  class_DB_of_clones &database = project.database();
  class_markers fresh;
  if (!read_markers(frame, database, file, form, fresh))
    return end_of_failure(frame);
  database.markers() = std::move(fresh);
  project.settings().markers_in_clones = true;
  project.loaded(project_part::markers, {file, made_by});
  frame.note(fmt::format("Markers: {} on {} clones.",
                         number_text_thousands(database.markers().total_number_of_markers_get()),
                         number_text_thousands(clones_with_markers(database))));
  return load_end::loaded;
}

load_end load_marker_positions(project_state &project, const fs::path &file) {
  class_markers fresh = project.database().markers();
  if (!fresh.read_file_with_marker_position(project.frame(), project.database(), file))
    return end_of_failure(project.frame());
  project.database().markers() = std::move(fresh);
  project.loaded(project_part::markers, project.origin(project_part::markers));
  return load_end::loaded;
}

load_end load_pvalue_tables(project_state &project, const fs::path &folder, const std::string &made_by) {
  class_clone_dist_table fresh;
  if (!fresh.run_read_tables(project.frame(), folder))
    return end_of_failure(project.frame());
  class_clone_dist_table &table = project.pvalue_tables();
  table = std::move(fresh);
  project.loaded(project_part::pvalue_tables, {folder, made_by});
  project.frame().note(fmt::format("Tables of p-values: clones of {} to {} bands, in steps of {}{}.",
                                   table.min_n_bands_get(), table.size(table.n_steps_get()), table.step_get(),
                                   !table.is_loaded(0)   ? "; mode fr only"
                                   : !table.is_loaded(1) ? "; mode iid only"
                                                         : ""));
  return load_end::loaded;
}

bool tables_serve_metric(const project_state &project, std::int16_t distance_index) {
  return project.pvalue_tables().is_loaded(mode_of_metric(distance_index));
}

void say_what_tables_leave_out(project_state &project) {
  if (!tables_serve_metric(project, project.rule().distance_index))
    return;
  const class_clone_dist_table &table = project.pvalue_tables();
  const class_DB_of_clones &database = project.database();
  const std::int32_t least = table.min_n_bands_get(), most = table.size(table.n_steps_get());
  std::int32_t n_outside = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone) {
    const std::int32_t n = database.number_of_bands_in_clone_get(clone);
    n_outside += n < least || n > most;
  }
  if (n_outside > 0)
    project.frame().warn(fmt::format("{} of {} clones have fewer than {} or more than {} bands: the tables know "
                                     "nothing of them, and their overlaps score 0.",
                                     number_text_thousands(n_outside),
                                     number_text_thousands(database.total_number_of_clones_get()), least, most));
}

load_end load_net(project_state &project, const fs::path &file, const std::string &made_by) {
  if (std::error_code failed; !file.empty() && !fs::exists(file, failed))
    throw file_error("can't open", file, "No such file or directory");
  bool ok = false;
  const std::uint64_t before = project.version();
  project.signif().read_file_with_significant_connections(file, "", true, false, ok);
  if (!ok && project.frame().stop_requested_get()) // once the net is there a wish to stop came too late
    return load_end::stopped;
  if (const std::string found = ok ? "" : words_of_other_kind(file, {input_kind::native_net}); !found.empty())
    project.frame().message(found + (kind_of_input(file) == input_kind::text_net
                                         ? " orb textnet read makes a net of it."
                                         : " Wanted: a net of significant overlaps."));
  if (!ok)
    return project.version() == before && file.empty() ? load_end::cancelled : load_end::refused;
  project.loaded(project_part::net, {project.signif().net().FullFileNameGet(), made_by});
  return load_end::loaded;
}

load_end load_text_net(project_state &project, text_net_reading wanted, const std::string &made_by) {
  wanted.name = "_" + class_clone_dist_general::name_of_cutoff_distance(project.rule().distance_index) + "_" +
                number_text(project.rule().cutoff, 2);
  const bool is_named = !wanted.file.empty();
  bool ok = false;
  project.signif().read_text_net_run(std::move(wanted), ok);
  if (!ok && project.frame().stop_requested_get())
    return load_end::stopped;
  if (!ok)
    return is_named ? load_end::refused : load_end::cancelled;
  project.loaded(project_part::net, {project.signif().net().FullFileNameGet(), made_by});
  project.rule_of_net_set({});
  return load_end::loaded;
}

load_end load_run(project_state &project, const fs::path &folder, const std::string &made_by) {
  if (!read_run_folder_into_registry(project.frame(), project.settings(), folder, project.database()))
    return end_of_failure(project.frame());
  project.loaded(project_part::contigs, {folder, made_by});
  return load_end::loaded;
}

load_end load_folder_of_clusters(project_state &project, const fs::path &folder, const std::string &made_by,
                                 std::optional<bool> test) {
  process_frame &frame = project.frame();
  fs::path chosen = folder;
  if (chosen.empty())
    chosen = frame.open_file_dialog("Click any file from directory").parent_path();
  if (chosen.empty())
    return load_end::cancelled;
  if (!fs::is_directory(chosen))
    throw file_error("can't open", chosen, "it is no folder");
  const std::shared_ptr<class_FPCto_import> fresh = project.registry_for_reading();
  fresh->read_clustering_from_folder_of_files(chosen, test);
  if (frame.was_stopped() || frame.stop_requested_get())
    return load_end::stopped;
  project.database().contigs_set(fresh);
  project.loaded(project_part::contigs, {chosen, made_by});
  return load_end::loaded;
}

load_end load_fpc_assembly(project_state &project, const fs::path &file, const fpc_reading_options &options,
                           const std::string &made_by, fpc_reading_summary &summary) {
  process_frame &frame = project.frame();
  if (const std::string found = words_of_other_kind(file, {input_kind::fpc_file}); !found.empty()) {
    frame.refuse(found + " Wanted: an .fpc file.");
    return load_end::refused;
  }
  class_FPCfrom_export reader(frame, project.settings(), project.database());
  if (!reader.read_clusterization_from_FPC(file, options))
    return end_of_failure(frame);
  summary = reader.summary();
  if (project.database().markers().total_number_of_markers_get() > 0) {
    project.settings().markers_in_clones = true;
    project.loaded(project_part::markers, {file, made_by});
  }
  project.loaded(project_part::contigs, {file, made_by});
  return load_end::loaded;
}

} // namespace orb
