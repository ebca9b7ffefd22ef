// Drawings of one contig's net with its tiling path and the clones far from it marked, in the contig's output folder.
#pragma once

#include "contigs/class_contig_analysis.h"
#include "drawing/class_clone_net_draw.h"

namespace orb {

// At the contig's cutoff; `with_whole_cluster`: one of the whole cluster before.
void print_files_with_net_Pajek(const class_contig_analysis &contig, bool with_whole_cluster,
                                const drawing_options &options);
// The same at the cutoff of the last check.
void check_contig_with_MTP_new_cutoff_print_net_Pajek(const class_contig_analysis &contig,
                                                      const drawing_options &options);
// Another tiling path (red), clones that it could have used (green), and the contig's own path (boxes).
void draw_retained_MTP(const class_contig_analysis &contig, const number_list &MTP, const number_list &not_used,
                       const drawing_options &options);

} // namespace orb
