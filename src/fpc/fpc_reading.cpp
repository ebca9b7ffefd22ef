#include "fpc/fpc_reading.h"

#include "fpc/fpc_blocks.h"
#include "fpc/fpc_dates.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t blocks_between_reports = 1000;
constexpr std::int32_t most_shown = 10;              // of messages about single clones
constexpr const char *date_of_old = "79 4 12 10 40"; // of a clone whose block tells none

} // namespace

struct class_FPCfrom_export::reading {
  class_FPCto_import &registry;
  class_markers markers;
  std::vector<std::int32_t> n_times; // blocks by clone number
  double date_of_old = 0;
};

std::string class_FPCfrom_export::change_clone_plate_1_2(std::string name) {
  for (const auto &[tag, other] : {std::pair{"001", "002"}, std::pair{"020", "022"}})
    if (const std::size_t at = name.find(tag); at != std::string::npos)
      return name.replace(at, 3, other);
  return name;
}

namespace {

void count_blocks(const class_DB_of_clones &database, std::string_view name, std::vector<std::int32_t> &n_times) {
  const number_list clones = database.clone_number_get_with_repeats(name);
  for (const clone_number clone : clones.members())
    ++n_times[static_cast<std::size_t>(clone)];
}

double date_or(std::string_view text, double otherwise) {
  double date = otherwise;
  date_of_fpc_file(text, date);
  return date;
}

fpc_clone_record record_of(const fpc_clone_block &block, clone_number clone, const class_DB_of_clones &database,
                           double otherwise) {
  fpc_clone_record record;
  record.name = database.name_of_clone_get(clone);
  record.map_name = block.contig;
  record.coor_left = block.left;
  record.coor_right = block.right;
  record.gel_number = block.gel_number;
  record.first_band_adress = block.first_band.value_or(database.first_band_adress_get(clone));
  record.number_of_bands = block.n_bands.value_or(database.number_of_bands_in_clone_get(clone));
  record.markers.assign(block.markers.begin(), block.markers.end());
  record.creation_date = date_or(block.created, otherwise);
  record.modification_date = date_or(block.modified, otherwise);
  return record;
}

} // namespace

// False after a stop request, and after a message when there are no clones.
bool class_FPCfrom_export::read_blocks(const fs::path &file, const fpc_reading_options &options, reading &to) {
  fpc_file_reader reader(file);
  fpc_clone_block block;
  const std::string of_all = " of " + std::to_string(database_.total_number_of_clones_get());
  for (std::int64_t n_blocks = 1; reader.next(block); ++n_blocks) {
    clone_number clone = database_.clone_number_get(block.name);
    if (clone < 1 && options.other_plates)
      clone = database_.clone_number_get(change_clone_plate_1_2(std::string(block.name)));
    if (block.map_is_wrong && ++summary_.n_problematic <= most_shown)
      frame_.alarm("Problematic clone information:" + block.lines_1_to_3 + "\r\n" + reader.place(block.line_number));
    if (clone < 1) {
      unknown_clones_.emplace_back(block.name);
    } else {
      to.registry.clone_information_from_fpc_file(record_of(block, clone, database_, to.date_of_old), true, to.markers);
      count_blocks(database_, database_.name_of_clone_get(clone), to.n_times);
      ++summary_.n_read;
    }
    if (n_blocks % blocks_between_reports != 0)
      continue;
    const double share = static_cast<double>(reader.lines().position()) / static_cast<double>(reader.lines().size());
    frame_.progress(reader.lines().position(), reader.lines().size());
    frame_.local_process_text_set("Read " + std::to_string(summary_.n_read) + of_all + " (" +
                                  number_text(100 * share, 2) + "%)");
    if (frame_.stop_requested_get())
      return false;
  }
  frame_.local_process_text_set("Read " + std::to_string(summary_.n_read) + of_all);
  for (clone_number c = 1; c <= database_.total_number_of_clones_get(); ++c) {
    summary_.n_duplicates += to.n_times[static_cast<std::size_t>(c)] > 1;
    summary_.n_not_presented += to.n_times[static_cast<std::size_t>(c)] == 0;
  }
  if (summary_.n_read == 0 && unknown_clones_.empty())
    return frame_.refuse("File " + file.string() + " holds no clones of an FPC assembly.");
  return frame_.goes_on();
}

void class_FPCfrom_export::tell_what_was_read() {
  if (summary_.n_problematic > most_shown)
    frame_.warn("Clones whose lines about the contig can't be understood: " + std::to_string(summary_.n_problematic) +
                "; the first " + std::to_string(most_shown) + " were shown.");
  if (!unknown_clones_.empty()) {
    frame_.alarm("Number of unknown clones = " + std::to_string(unknown_clones_.size()));
    const fs::path file = frame_.path_in_working_folder("\\unknownClones.txt");
    result_file names(file);
    for (const std::string &name : unknown_clones_)
      names.line(name);
    names.commit();
    summary_.files.push_back(file);
  }
  if (summary_.n_duplicates > 0)
    frame_.alarm("In total, " + std::to_string(summary_.n_duplicates) + " clones have duplicates in FPC assembly!");
  if (summary_.n_not_presented > 0)
    frame_.alarm("In total, " + std::to_string(summary_.n_not_presented) +
                 " clones are not presented in FPC assembly!");
  frame_.message("Reading of FPC assembly completed.");
}

// Reads the whole file beside what is loaded, then puts it into its place. False after a stop request or a message.
bool class_FPCfrom_export::read_and_put_in_place(const fs::path &file, const fpc_reading_options &options) {
  const auto registry = options.keep_current ? std::make_shared<class_FPCto_import>(*database_.contigs())
                                             : std::make_shared<class_FPCto_import>(frame_, settings_, database_);
  if (!options.keep_current)
    registry->clear_all_run(0, true);
  const std::int32_t n = database_.total_number_of_clones_get();
  reading to{*registry, {}, std::vector<std::int32_t>(static_cast<std::size_t>(n) + 1, 0)};
  date_from_FPC_format_get(date_of_old, to.date_of_old);
  if (database_.markers().total_number_of_markers_get() > 0)
    to.markers = database_.markers();
  else
    to.markers.redim_private_arrays(n, 0, 0);
  if (!read_blocks(file, options, to))
    return false;
  if (!options.keep_current) {
    registry->read_clusterization_from_FPC_finish_to_add_clusters(to.markers);
    registry->ORB_already_set_FALSE();
  }
  registry->make_min_and_max_coor_where_known();
  to.markers.finish_of_adding();
  database_.contigs_set(registry);
  database_.contigs_are_specified_set(true);
  database_.markers() = std::move(to.markers);
  return true;
}

bool class_FPCfrom_export::read_clusterization_from_FPC(const fs::path &file, const fpc_reading_options &options) {
  unknown_clones_.clear();
  summary_ = {};
  if (options.keep_current && !database_.contigs_are_specified_get())
    return frame_.refuse("Contigs are not specified!");
  frame_.process_start("Reading of FPC assembly");
  if (!database_.clone_name_sorted_is_created_get()) {
    frame_.step_text_set("Sort clone names...");
    database_.sort_clones_by_name(frame_);
  }
  frame_.step_text_set("Reading from FPC file...");
  frame_.log_line("Reading from FPC file " + file.string());
  frame_.control_text_set("File: " + file.string());
  frame_.local_process_text_set(" Read 0 of " + std::to_string(database_.total_number_of_clones_get()));
  if (!read_and_put_in_place(file, options)) {
    frame_.process_aborted();
    return false;
  }
  tell_what_was_read();
  print_what_was_read(options);
  frame_.process_done();
  summary_.completed = true;
  return true;
}

std::shared_ptr<class_FPCto_import> class_FPCfrom_export::read_contigs_only(const fs::path &file, bool other_plates) {
  unknown_clones_.clear();
  summary_ = {};
  if (!database_.clone_name_sorted_is_created_get())
    database_.sort_clones_by_name(frame_);
  const auto registry = std::make_shared<class_FPCto_import>(frame_, settings_, database_);
  registry->clear_all_run(0, false);
  const std::int32_t n = database_.total_number_of_clones_get();
  reading to{*registry, {}, std::vector<std::int32_t>(static_cast<std::size_t>(n) + 1, 0)};
  to.markers.redim_private_arrays(n, 0, 0);
  fpc_reading_options options;
  options.other_plates = other_plates;
  if (!read_blocks(file, options, to))
    return nullptr;
  registry->read_clusterization_from_FPC_finish_to_add_clusters(to.markers);
  registry->make_min_and_max_coor_where_known();
  return registry;
}

void class_FPCfrom_export::print_what_was_read(const fpc_reading_options &options) {
  class_FPCto_import &registry = *database_.contigs();
  question asked;
  asked.text = "Print FPC contigs?";
  asked.by_default = asked.to_go_on = answer::yes;
  if (options.print ? *options.print : frame_.yes(asked))
    summary_.files.push_back(registry.print_FPC_clusters());
  if (!options.keep_current) {
    summary_.files.push_back(frame_.path_in_working_folder("\\markers_in_clones.ORB"));
    database_.markers().file_about_markers_ORB_format_save(frame_, database_, summary_.files.back());
  }
  summary_.files.push_back(registry.print_N50_statistics());
  if (options.read_specified)
    run_read_specified_contigs(options.specified);
}

} // namespace orb
