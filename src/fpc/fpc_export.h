// A map of contigs as an .fpc file that strict readers take whole, and the bands of its clones in a .cor file beside
// it.
#pragma once

#include <filesystem>
#include <optional>

#include "clustering/contig_map.h"

namespace orb {

// Contigs are called ctg1, ctg2, ... in the order of the map; their own names are the remarks of the contig section. A
// clone of a contig without coordinates stands at 0 to its number of bands less 1. `exponent`: the least -log10 P of an
// overlap, where that is what overlaps were judged by. False after a message, with nothing written: a band that 16 bits
// don't hold, a name with a double quote. Throws file_error.
bool write_fpc_export(process_frame &frame, const class_DB_of_clones &database, const contig_map &map,
                      std::optional<double> exponent, const std::filesystem::path &file);

} // namespace orb
