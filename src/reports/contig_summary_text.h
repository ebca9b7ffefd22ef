// The figures of a finished run, and the summary that a biologist reads.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "contigs/class_contig_adapt_clust.h"
#include "contigs/run_folder.h"
#include "reports/run_record.h"

namespace orb {

struct contig_figures {
  std::filesystem::path folder;
  std::vector<contig_summary> contigs; // of at least the minimal size, longest first
  std::int32_t n_clones_in_contigs = 0, n_heaps = 0, n_clones_in_heaps = 0, n_clones_alone = 0;
  std::int32_t N50_bands = 0; // over the contigs: half of their total length lies in contigs at least this long
  std::int32_t min_size = 6;
  bool ordering = true; // was asked for
  window_totals windows;
};

contig_figures contig_figures_of(const adapt_clust_result &result, std::int32_t min_size);
// From a run read back; `n_clones` of the library tells how many are alone.
contig_figures contig_figures_of(const run_folder &run, std::int32_t min_size, std::int32_t n_clones);
// The length at which the sorted sum, from the longest, first reaches half of the total; 0 without lengths.
std::int32_t N50_of_lengths(std::vector<std::int32_t> lengths);
// `band_length`: a line on the base pairs of a band; empty: none.
std::string text_of_contigs(const contig_figures &figures, const std::string &band_length = {});

} // namespace orb
