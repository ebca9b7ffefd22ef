// Fills the clone database from files: a folder of .sizes files or one such file, one plain text file of clones, or
// the program's own library file.
#pragma once

#include <filesystem>
#include <functional>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"
#include "frame/settings.h"

namespace orb {

class fingerprint_records;
struct band_statistics;

// What a load found, for summaries.
struct load_summary {
  std::int32_t n_records = 0;        // fingerprint records read
  std::int32_t n_repeated = 0;       // records that had exact copies
  std::int32_t n_copies_dropped = 0; // exact copies left out
  std::int32_t n_files = 0;
};

class class_DB_of_clones_read {
public:
  // `loaded` is called after each load that replaced the database's contents: the session renews net and registry.
  class_DB_of_clones_read(process_frame &frame, const project_settings &settings, std::function<void()> loaded = {});

  // Parameters (tolerance, gel length, numbers of band positions) are those of `database` for text, those of the file
  // for a library file. A load that fails, or is stopped, leaves `database` and `usable_values` as they were; wrong
  // bands throw program_end, files that can't be read file_error. More clones than the capacity raise it, which is
  // logged. With `store` off the clones are only checked and counted: `database` then holds as many clones without
  // names and bands.

  // A plain text file in its own order, or with `library_format` a library file. `clone_capacity` 0: the database's
  // own. Returns whether clones were loaded.
  bool open_file_with_clones(std::int32_t clone_capacity, std::filesystem::path file, bool library_format, bool store,
                             class_DB_of_clones &database, class_usable_values &usable_values);
  // A folder of .sizes files, or one file of any name; clones in the order of their header lines, exact copies
  // dropped. An empty path asks.
  void read_database_from_folder_of_sizes_files(std::filesystem::path path, bool single_file, bool store, bool &success,
                                                class_DB_of_clones &database, class_usable_values &usable_values);
  // Records that `read` fills from a format of its own, with their checked bands counted: clones in the order of their
  // header lines, exact copies dropped. `fresh` has the parameters that count. False, after a message or a stop
  // request, when `read` says so or there are no records.
  using record_source = std::function<bool(class_DB_of_clones &fresh, fingerprint_records &, band_statistics &)>;
  bool read_database_from_records(const record_source &read, class_DB_of_clones &database,
                                  class_usable_values &usable_values);
  const load_summary &summary() const { return summary_; }

private:
  void replace_database(class_DB_of_clones &fresh, bool store, class_DB_of_clones &database);
  void finish_load(class_DB_of_clones &database, band_statistics &statistics, class_usable_values &usable_values);
  std::filesystem::path path_from_dialog(bool single_file);
  std::vector<std::filesystem::path> files_of_path(const std::filesystem::path &path, bool from_dialog);
  bool only_readable_files(std::vector<std::filesystem::path> &files, std::int64_t &total_bytes);
  bool read_files(std::vector<std::filesystem::path> files, bool store, class_DB_of_clones &fresh,
                  band_statistics &statistics);
  void order_and_store(const fingerprint_records &records, class_DB_of_clones &fresh);

  process_frame &frame_;
  const project_settings &settings_;
  std::function<void()> loaded_;
  load_summary summary_;
};

} // namespace orb
