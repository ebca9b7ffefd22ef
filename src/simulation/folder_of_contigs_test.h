// The report that sets every contig of a run against the true places of its clones.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "contigs/run_folder.h"
#include "frame/process_frame.h"
#include "simulation/evaluation_files.h"
#include "simulation/simul_clone.h"

namespace orb {

// Writes into the working folder:
// report.txt: "Results of preprocessing" and the date, then a head and one line a contig, tab-separated:
//   f                         running number of the contig
//   ctg                       its name
//   n_clones, n_Qclones       its clones; those among them that are Q-clones here: listed as such, or truly chimeric
//   n_unburied                clones in the order found by the ordering; "-" without one
//   x_start, x_end            extremes of its clones on the true sequence, in base pairs; where the truth has several
//                             chromosomes, with the chromosome's number and a colon before them
//   x_start_noQQ, x_end_no_QQ the same without Q-clones
//   n_clust, n_clust_nonQ     separate stretches into which its clones fall; without Q-clones
//   n>, n<                    clones next to each other by coordinates in right and wrong order; "-" without
//   coordinates
// A line ends with "NB!" when the clones that aren't Q fall into several stretches or a clone is unknown. Lines
// "Unknown clone ... in contig ..." stand before the line of their contig; the first of them are shown, too.
// clones_coor_NAME.txt and, without Q-clones, clones_coor_noQQ_NAME.txt: the clones of contig NAME along the map with
// coordinates and true parts.
//
// An empty folder is asked for ("Click any file from directory"). False when that was cancelled, when the run is
// damaged (the message was shown) or the user stopped. Throws file_error.
bool test_folder_of_contigs(process_frame &frame, std::filesystem::path folder, const placed_clones &clones,
                            const std::vector<std::string> &Q_clones);
// The same on a run that was read already.
bool test_folder_of_contigs(process_frame &frame, const run_folder &run, std::span<const clone_order> orders,
                            const placed_clones &clones, const std::vector<std::string> &Q_clones);

} // namespace orb
