// One text file with all clones, in the record form of .sizes files, read in its own order and with nothing dropped.
#pragma once

#include <filesystem>

#include "database/band_statistics.h"
#include "database/class_DB_of_clones.h"
#include "frame/process_frame.h"
#include "frame/settings.h"

namespace orb {

// Reads into `database`, a fresh one with its parameters set; `store` off: only counts and checks. Differs from the
// reading of .sizes files: only the line "-1" or one that isn't a number ends a record, one empty line inside a record
// is passed over, and values don't pass through float32. The stop flag isn't tested. Wrong bands end the program with
// file and line. False when the parameters can't be used.
bool read_plain_text_file(process_frame &frame, const project_settings &settings, const std::filesystem::path &file,
                          bool store, class_DB_of_clones &database, band_statistics &statistics);

} // namespace orb
