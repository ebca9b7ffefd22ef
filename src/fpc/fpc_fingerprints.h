// An FPC project as fingerprints: the clones of an .fpc file with their bands from the .cor file beside it, an array of
// unsigned 16-bit numbers with the high byte first.
#pragma once

#include <filesystem>

#include "database/band_statistics.h"
#include "database/class_DB_of_clones.h"
#include "database/fingerprint_records.h"
#include "database/library_parameters.h"
#include "fpc/fpc_blocks.h"
#include "frame/process_frame.h"
#include "frame/settings.h"

namespace orb {

// What the head of a file proposes, over parameters for what it doesn't say; tolerance and gel length decide how many
// bands can be told apart, unless neither is known.
library_parameters parameters_of_fpc(const fpc_head &head, library_parameters otherwise);
// N_bands_Sulston of a gel length and a tolerance: as many as there are windows of twice the tolerance.
std::int32_t n_bands_of_gel(double gel_length, std::int16_t tolerance);

// Fills records, with their bands ascending and counted by the parameters of `database`. Bands of equal size in a clone
// are real and stay. False after a message: a missing or odd .cor file, bands behind its end, or a stop request. Wrong
// bands and clones of more than 500 end the program, with file and line. Throws file_error.
bool read_fpc_fingerprints(process_frame &frame, const project_settings &settings, const std::filesystem::path &file,
                           class_DB_of_clones &database, fingerprint_records &records, band_statistics &statistics);

} // namespace orb
