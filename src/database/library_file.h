// The program's own library file (.ORBdb, .ORB), which restores a library together with its parameters.
#pragma once

#include <filesystem>
#include <optional>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"

namespace orb {

// Writes the library; throws file_error.
void DataBase_in_typical_file_print(const std::filesystem::path &file, const class_DB_of_clones &database);
// Reads names, addresses and bands with their parameters into `database`, which should be a fresh one; `checked`: also
// the checks of each clone's bands and the band statistics. False when refused; the messages say why and where.
bool DataBase_in_typical_file_read(process_frame &frame, const std::filesystem::path &file,
                                   class_DB_of_clones &database, class_usable_values &usable_values, bool checked);
// What the header says of the parameters; nothing when it isn't one. Reads one line; throws file_error.
struct library_file_parameters {
  library_parameters parameters;
  bool bins = false; // the stored bands are bin numbers
};
std::optional<library_file_parameters> parameters_of_library_file(const std::filesystem::path &file);
// Whether the first line looks like a library file's header.
bool is_library_file(const std::filesystem::path &file);
// The save command: dialog, overwrite question, messages. The path, empty when not saved.
std::filesystem::path save_library_run(process_frame &frame, const class_DB_of_clones &database);

} // namespace orb
