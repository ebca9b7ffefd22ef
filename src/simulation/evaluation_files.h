// What an evaluation reads of a run beyond its clusters: the orders found by the ordering, and the Q-clones.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "contigs/run_folder.h"
#include "frame/process_frame.h"

namespace orb {

// The unburied clones of each contig of `run` in the order that the ordering found, from
// Consec_dist_NoBuriedORB_NAME.txt or, in a run without tables of pairs, ORB_order_NAME_....txt; nothing for a heap and
// where a contig has neither. False with a message (file and line) when a file is damaged or names a clone that its
// cluster lacks; `orders` stays as it was then.
using clone_order = std::optional<std::vector<std::string>>;
bool read_orders_of_run(process_frame &frame, const run_folder &run, std::vector<clone_order> &orders);

// Names of Q-clones: the column "name" of a revision's report Q_clones.txt, or else a plain list, one name a line.
// False with a message (file and line) when the file is damaged; throws file_error.
bool read_Q_clones(process_frame &frame, const std::filesystem::path &file, std::vector<std::string> &names);

// The reports of Q-clones (...Q_clones.txt) that a revision left in a folder, in byte order of their names.
std::vector<std::filesystem::path> Q_clone_reports_of_folder(const std::filesystem::path &folder);

} // namespace orb
