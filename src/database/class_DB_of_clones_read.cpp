#include "database/class_DB_of_clones_read.h"

#include <algorithm>

#include "database/fingerprint_records.h"
#include "database/library_file.h"
#include "database/plain_text_clones.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"

namespace orb {

namespace fs = std::filesystem;

class_DB_of_clones_read::class_DB_of_clones_read(process_frame &frame, const project_settings &settings,
                                                 std::function<void()> loaded)
    : frame_(frame), settings_(settings), loaded_(std::move(loaded)) {}

// Any text reads as names: without a band it is something else, and its first line shows what.
static std::string no_band_in(const fs::path &file, std::size_t n_names) {
  constexpr std::size_t most = 60;
  line_reader lines(file);
  std::string_view line;
  while (lines.next(line) && is_blank_line(line)) {
  }
  return "File " + file.string() + " holds " + std::to_string(n_names) +
         " names and not one band, so it isn't a file of fingerprints. It begins: " +
         std::string(line.substr(0, most)) + (line.size() > most ? "..." : "");
}

// Puts a complete load in the place of what was there. Nothing fails from here on.
void class_DB_of_clones_read::replace_database(class_DB_of_clones &fresh, bool store, class_DB_of_clones &database) {
  const std::int32_t n = fresh.total_number_of_clones_get();
  if (n > fresh.max_number_of_real_clones_get()) {
    frame_.log_line("Capacity of " + std::to_string(fresh.max_number_of_real_clones_get()) + " clones raised to " +
                    std::to_string(n));
    fresh.max_number_of_real_clones_set(n);
  }
  if (!store) { // as many clones without names and bands
    fresh.room_for(n, 0);
    for (clone_number i = 1; i <= n; ++i)
      fresh.ListOfBands_from_real_database_fast_all_bands_set(i, {});
  }
  fresh.contigs_set(database.contigs());
  database = std::move(fresh);
  if (loaded_)
    loaded_();
}

void class_DB_of_clones_read::finish_load(class_DB_of_clones &database, band_statistics &statistics,
                                          class_usable_values &usable_values) {
  normalise_band_frequencies(database);
  find_most_frequent_number_of_bands(statistics);
  usable_values.min_n_different_bands_in_clone_set(statistics.min_n_different_bands_in_clone);
  usable_values.inicialize_buffer(database);
}

// ---- text and library files ----

bool class_DB_of_clones_read::open_file_with_clones(std::int32_t clone_capacity, fs::path file, bool library_format,
                                                    bool store, class_DB_of_clones &database,
                                                    class_usable_values &usable_values) {
  if (file.empty()) {
    if (library_format)
      frame_.file_filter_set("ORB-specific files (*.ORB)|*.ORB|ORB-DB files (*.ORBdb)|*.ORBdb");
    file = frame_.open_file_dialog("Open file with all clones");
    frame_.file_filter_set("");
  }
  if (file.empty())
    return false;
  summary_ = {};
  class_DB_of_clones fresh;
  fresh.max_number_of_real_clones_set(clone_capacity > 0 ? clone_capacity : database.max_number_of_real_clones_get());
  if (const std::string why = why_no_text_file(file); !why.empty())
    return frame_.refuse("File " + file.string() + " is no text: " + why);

  band_statistics statistics;
  bool read = false;
  if (library_format) {
    read = DataBase_in_typical_file_read(frame_, file, fresh, usable_values, true);
  } else {
    const std::int32_t capacity = fresh.max_number_of_real_clones_get();
    fresh.parameters_from(database);
    fresh.max_number_of_real_clones_set(capacity);
    read = read_plain_text_file(frame_, settings_, file, store, fresh, statistics);
  }
  if (frame_.stop_requested_get())
    return false;
  if (read && fresh.total_number_of_clones_get() < 1)
    read = frame_.refuse("NB! No clones was readen!\r\nfile " + file.string());
  const bool has_bands = !read || !store || fresh.first_band_adress_get(fresh.total_number_of_clones_get() + 1) > 1;
  if (read && !library_format && !has_bands)
    read = frame_.refuse(no_band_in(file, static_cast<std::size_t>(fresh.total_number_of_clones_get())));
  if (read) {
    summary_.n_files = 1;
    summary_.n_records = fresh.total_number_of_clones_get();
    if (!library_format) {
      if (store)
        fresh.sort_clones_by_name(frame_);
      finish_load(fresh, statistics, usable_values);
    }
    replace_database(fresh, store || library_format, database);
  }
  frame_.all_panels_reset();
  return read;
}

// ---- folders of .sizes files ----

// Without a path: the file dialogs. A file for a single file, else its folder; empty when cancelled.
fs::path class_DB_of_clones_read::path_from_dialog(bool single_file) {
  if (single_file)
    return frame_.open_file_dialog("Open single file with bands");
  frame_.file_filter_set("Sizes files |*.sizes|All files|*.*");
  const fs::path chosen = frame_.open_file_dialog("Open any file with bands from folder");
  std::error_code failed;
  return chosen.empty() || fs::is_directory(chosen, failed) ? chosen : fs::absolute(chosen).parent_path();
}

// What lies in a folder that was searched in vain: up to 5 names and the count.
static std::string text_of_folder_contents(const fs::path &folder) {
  constexpr std::size_t most_shown = 5;
  std::vector<std::string> names;
  std::error_code failed;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder, failed))
    names.push_back(entry.path().filename().string() + (entry.is_directory(failed) ? "/" : ""));
  if (names.empty())
    return "it is empty";
  std::sort(names.begin(), names.end());
  std::string text =
      std::to_string(names.size()) + (names.size() == 1 ? " entry lies there: " : " entries lie there: ");
  for (std::size_t i = 0; i < std::min(names.size(), most_shown); ++i)
    text += (i > 0 ? ", " : "") + names[i];
  return names.size() > most_shown ? text + ", ..." : text;
}

// The files that a path stands for; empty after a message.
std::vector<fs::path> class_DB_of_clones_read::files_of_path(const fs::path &path, bool from_dialog) {
  std::error_code failed;
  const fs::file_status status = fs::status(path, failed);
  if (!fs::exists(status)) {
    frame_.refuse(from_dialog ? "File " + path.string() + " not found!" : "Path " + path.string() + " not found!");
    return {};
  }
  if (fs::is_regular_file(status))
    return {path};
  if (!fs::is_directory(status)) {
    frame_.refuse("Can't read from archive " + path.string() + "!");
    return {};
  }
  std::vector<fs::path> files;
  for (const std::string &name : class_serv_raznoe::create_ordered_list_of_files_in_folder(path, "sizes"))
    files.push_back(path / name);
  if (files.empty())
    frame_.refuse("No files *.sizes were found in folder " + path.string() + "; " + text_of_folder_contents(path));
  return files;
}

// Files of two decimal signs are passed over, after their message, and the run counts as failed; one that is no text
// refuses the whole load. `total_bytes`: of the files that are left.
bool class_DB_of_clones_read::only_readable_files(std::vector<fs::path> &files, std::int64_t &total_bytes) {
  std::vector<fs::path> readable_files;
  total_bytes = 0;
  for (const fs::path &file : files) {
    if (const std::string why = why_no_text_file(file); !why.empty())
      return frame_.refuse("File " + file.string() + " is no text: " + why);
    bool readable = true, point = true, crlf = true;
    class_serv_raznoe::read_first_symbols_of_file_and_detect_type(frame_, 1000, file, readable, point, crlf);
    if (!readable) {
      frame_.data_failed_set();
      continue;
    }
    std::error_code failed;
    total_bytes += static_cast<std::int64_t>(fs::file_size(file, failed));
    readable_files.push_back(file);
  }
  files = std::move(readable_files);
  return true;
}

// The clones in the order of their header lines, without exact copies.
void class_DB_of_clones_read::order_and_store(const fingerprint_records &records, class_DB_of_clones &fresh) {
  const fingerprint_records::ordering order = records.order_without_copies();
  summary_.n_repeated = order.n_repeated;
  summary_.n_copies_dropped = order.n_copies;
  if (order.n_copies > 0)
    frame_.message("NB! Exact repeats are found in fingerprint data!\rIn total, " + std::to_string(order.n_repeated) +
                   " clones repeated more than once. " + std::to_string(order.n_copies) +
                   " exact copies of clone fingerprints will be exccluded from the analysis!");
  const auto n = static_cast<std::int32_t>(order.kept.size());
  const auto n_bands = static_cast<std::int64_t>(records.number_of_bands());
  fresh.inicalise_database(frame_, n, n_bands + 1);
  fresh.room_for(n, n_bands);
  for (clone_number clone = 1; clone <= n; ++clone) {
    const std::uint32_t record = order.kept[static_cast<std::size_t>(clone) - 1];
    fresh.name_of_clone_set(clone, name_from_header(frame_, records.header(record), settings_));
    fresh.ListOfBands_from_real_database_fast_all_bands_set(clone, records.bands(record));
  }
  fresh.total_number_of_clones_set(n);
  fresh.sort_clones_by_name(frame_);
}

bool class_DB_of_clones_read::read_files(std::vector<fs::path> files, bool store, class_DB_of_clones &fresh,
                                         band_statistics &statistics) {
  if (const std::string wrong = wrong_band_axis(fresh); !wrong.empty())
    return frame_.refuse(wrong);
  std::int64_t total_bytes = 0;
  if (!only_readable_files(files, total_bytes))
    return false;
  summary_.n_files = static_cast<std::int32_t>(files.size());
  prepare_band_statistics(fresh, statistics);
  if (store)
    fresh.inicalise_database(frame_, 0, 0);
  frame_.local_process_text_set("Started...");
  fingerprint_records records;
  sizes_file_reader reader(frame_, settings_, fresh, records, statistics, total_bytes);
  for (const fs::path &file : files) {
    const std::size_t records_before = records.count(), bands_before = records.number_of_bands();
    if (!reader.read_file(file))
      return false;
    if (frame_.stop_requested_get())
      return false;
    if (records.count() > records_before && records.number_of_bands() == bands_before)
      return frame_.refuse(no_band_in(file, records.count() - records_before));
  }
  reader.finish();
  frame_.local_process_text_set("Ordering and testing...");
  summary_.n_records = static_cast<std::int32_t>(records.count());
  if (records.count() == 0)
    return frame_.refuse("NB! No clones was readen!");
  if (store)
    order_and_store(records, fresh);
  else
    fresh.total_number_of_clones_set(summary_.n_records);
  return true;
}

void class_DB_of_clones_read::read_database_from_folder_of_sizes_files(fs::path path, bool single_file, bool store,
                                                                       bool &success, class_DB_of_clones &database,
                                                                       class_usable_values &usable_values) {
  success = false;
  summary_ = {};
  const bool from_dialog = path.empty();
  if (from_dialog)
    path = path_from_dialog(single_file);
  if (path.empty())
    return;
  const std::vector<fs::path> files = files_of_path(path, from_dialog);
  if (files.empty())
    return;
  frame_.log_line(path.string() + " " + frame_.process_name_get());
  frame_.step_text_set("Folder: " + (fs::is_directory(path) ? path : path.parent_path()).string());
  class_DB_of_clones fresh;
  fresh.parameters_from(database);
  band_statistics statistics;
  success = read_files(files, store, fresh, statistics);
  if (!success)
    return;
  finish_load(fresh, statistics, usable_values);
  replace_database(fresh, store, database);
}

bool class_DB_of_clones_read::read_database_from_records(const record_source &read, class_DB_of_clones &database,
                                                         class_usable_values &usable_values) {
  summary_ = {};
  summary_.n_files = 1;
  class_DB_of_clones fresh;
  fresh.parameters_from(database);
  if (const std::string wrong = wrong_band_axis(fresh); !wrong.empty())
    return frame_.refuse(wrong);
  band_statistics statistics;
  prepare_band_statistics(fresh, statistics);
  fingerprint_records records;
  if (!read(fresh, records, statistics) || frame_.stop_requested_get())
    return false;
  summary_.n_records = static_cast<std::int32_t>(records.count());
  if (records.count() == 0)
    return frame_.refuse("NB! No clones was readen!");
  order_and_store(records, fresh);
  finish_load(fresh, statistics, usable_values);
  replace_database(fresh, true, database);
  return true;
}

} // namespace orb
