// The switches of the analysis of lists, as options, panel and help call them.
#pragma once

#include <span>

#include "contigs/class_contig_process.h"

namespace orb {

struct analysis_switch {
  const char *word;    // of "do"
  const char *control; // of the panel; empty: it is one of the project's settings
  const char *caption;
  bool contig_process_options::*value;
};
std::span<const analysis_switch> analysis_switches();

} // namespace orb
