// Contigs of the registry, wherever they came from, as the folder of a run that all that reads runs can read.
#pragma once

#include <filesystem>

#include "clustering/class_FPCto_import.h"

namespace orb {

struct registry_run {
  std::filesystem::path folder;
  std::int32_t n_contigs = 0, n_clones_in_contigs = 0;
  bool completed = false; // false after a stop request
};

// Makes a new run folder in the working folder: the reports with a row for each contig in use (what a contig is:
// `cluster_is_contig_get`), a folder for each with its clones from left to right and, where they are placed, their
// coordinates; its tiling path where it has one; the kept registry and the table of coordinates. Topology isn't
// measured: its fields are empty, and every row bears this cutoff. Throws file_error.
registry_run write_run_of_registry(process_frame &frame, const class_DB_of_clones &database,
                                   class_FPCto_import &registry, double cutoff);

} // namespace orb
