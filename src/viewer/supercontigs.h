// Supercontigs: contigs that a user joined or mended in the viewer, each saved as a .net file, taken back into the net
// of significant overlaps and into the registry.
#pragma once

#include <filesystem>
#include <string>

#include "viewer/net_sources.h"

namespace orb {

struct supercontig_options {
  std::filesystem::path folder;   // of the .net files, nothing else in it; empty: any file in it is asked for
  std::filesystem::path net_file; // of the changed net; empty: asks
};

struct supercontig_result {
  std::int32_t n_supercontigs = 0, n_clones = 0;
  std::filesystem::path folder_of_lists, net_file;
  bool contigs_changed = false;
};

// The current net gets the overlaps of the files between the clones of the supercontigs, and loses all that these had
// before. A list of clones for each supercontig goes to a new folder of the working folder. When contigs are specified
// it asks whether the supercontigs take the place of the contigs that they touch. False, with net and registry as they
// were, when cancelled, stopped or refused; messages say why: a clone in two places, a contig that is only partly in a
// supercontig, a vertex that is no clone. Throws file_error.
bool read_nets_for_supercontigs_and_create_new_net(const net_sources &sources, const supercontig_options &options,
                                                   supercontig_result &result);

} // namespace orb
