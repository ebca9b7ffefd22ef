// Tests of a database and of fingerprint files that a user can ask for, and the list of clones with band counts.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

// Counts clones whose name an earlier clone has, and offers to write a fingerprint file without them: on yes
// `write_fingerprint_file` gets the list of the others. `file_is_wanted`: yes where nobody is asked. Needs no sorted
// index.
void test_database_on_repeats(process_frame &frame, const class_DB_of_clones &database, bool file_is_wanted,
                              const std::function<void(const number_list &)> &write_fingerprint_file);
// DB.txt of the working folder: all names, with the number of bands behind a tab when that is wanted.
// Unset: asks.
void print_names_of_all_clones(process_frame &frame, const class_DB_of_clones &database,
                               std::optional<bool> with_counts = {});
// testRes.txt of the working folder: for each line of a .sizes file how it is understood. An empty name asks; false
// when that was cancelled.
bool test_for_Reviewer(process_frame &frame, std::filesystem::path file = {});

} // namespace orb
