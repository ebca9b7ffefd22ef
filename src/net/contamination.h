// Putative contaminations: strongly overlapping clones from neighbouring wells of one plate, the sign of a spill in the
// laboratory. The last three characters of a clone's name are read as its well, a row and a column of two digits.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "net/class_clone_net_signif.h"

namespace orb {

// What the dialogs ask; a value that is not set is asked for.
struct contamination_options {
  std::optional<double> cutoff;       // at least the weakest overlap of the net, which is also the default
  std::optional<double> max_distance; // wells between rows and between columns, at least 1; 5 by default
  std::filesystem::path file;         // empty: cl_contominat_CUTOFF_MAX.txt of the working folder
};

struct contamination_result {
  double cutoff = 0;
  std::int32_t max_distance = 5;
  number_list clones; // ascending
  std::filesystem::path file;
};

// Looks through the current net. False, and no file, after a stop request.
bool search_for_contamination(const class_clone_net_signif &signif, const contamination_options &options,
                              contamination_result &result);

} // namespace orb
