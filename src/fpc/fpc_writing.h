// The contig registry as a text file in the form that the FPC assembly program reads, in two flavours.
#pragma once

#include <filesystem>

#include "clustering/class_FPCto_import.h"

namespace orb {

// What else is told of the files.
struct fpc_file_choice {
  std::filesystem::path list; // of the clones, when not all are meant; empty: asks
  bool use_FPC_names = false; // the long names of the clusters in place of the short ones
};

// Writes the plain and then the `pp` flavour; empty paths get the default names in the working folder. The table of
// renamed contigs goes to `folder`. All clones of the database, or those of a list that is asked for.
void print_FPC_like_file_run(process_frame &frame, const project_settings &settings, class_DB_of_clones &database,
                             const class_FPCto_import &registry, const std::filesystem::path &path_plain,
                             const std::filesystem::path &path_pp, const std::filesystem::path &folder, bool all_clones,
                             const fpc_file_choice &choice = {});
void write_fpc_file(process_frame &frame, const class_DB_of_clones &database, const class_FPCto_import &registry,
                    const number_list &clones, const std::filesystem::path &name_or_empty, bool pp,
                    const std::filesystem::path &folder, bool use_FPC_names = false);

} // namespace orb
