// Files of clone names: new names for clones, and lines of names brought to the names of the library.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

#include "database/class_DB_of_clones.h"
#include "frame/process_frame.h"

namespace orb {

struct new_names_summary {
  std::int64_t n_lines = 0;        // that aren't empty
  std::int64_t n_found = 0;        // old names that are in the library
  std::int64_t n_changes = 0;      // clones whose name changed
  std::filesystem::path not_found; // the file of old names that aren't
};

// Lines "new name, tab, old name" give new names to clones; a new name that is empty or begins with "#" changes
// nothing. Old names that aren't in the library go to not_found.txt of the working folder. An empty `file` is asked
// for. After a change the user is asked whether to save the library: `save` runs on yes, and without it nothing is
// asked. False, and no name changed, when cancelled, stopped, or when the file is no text.
bool load_new_clone_names(process_frame &frame, class_DB_of_clones &database, std::filesystem::path file,
                          const std::function<void()> &save, new_names_summary &summary);

struct lists_of_names_options {
  std::filesystem::path file;            // lines of names separated by commas; empty: asked for
  std::optional<bool> exclude;           // unset: asked "Need to exclude some clones?"
  std::filesystem::path file_to_exclude; // names of clones to leave out; empty: asked for when it is needed
};

// For each line the names of its clones in the library, ascending by clone number, each once, with commas between, as a
// line of column_with_clone_names.txt of the working folder, which is returned in `written`. A name that is unknown is
// tried with letters and digits only, and then with fewer and fewer of them. False when cancelled, stopped, or when a
// file is no text.
bool extract_lists_of_clone_names(process_frame &frame, const class_DB_of_clones &database,
                                  const lists_of_names_options &options, std::filesystem::path &written);

} // namespace orb
