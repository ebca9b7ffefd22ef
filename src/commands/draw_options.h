// What a drawing of a list of clones shows: the control panel of drawings as options.
#pragma once

#include <filesystem>

namespace orb {

struct draw_wishes {
  std::filesystem::path mark_1, mark_2, mark_3; // lists of clones
  bool no_names = false, numbers = false, no_bands = false;
  bool no_burial = false, relations = false;
  bool black = false, no_scores = false;
  bool series = false;          // of cutoffs
  bool several_metrics = false; // at the project's cutoff
  bool compare_metrics = false; // TagsSulston beside Sulston_1988
  bool table = false;           // of all overlaps, beside
};

} // namespace orb
