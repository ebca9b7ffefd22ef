// Which metric, from which score on, and what is buried: the form "Clone overlaps" as parameters of a command.
#pragma once

#include <optional>
#include <string>

#include "commands/command_row.h"

namespace orb {

struct metric_parameters {
  std::string metric; // name or index; empty: Sulston_1988
  std::optional<double> cutoff, burying;
  std::string several, markers; // flags of the form, "yes" or "no"; empty: as they are
};

// Throws usage_error, which names the known ones.
std::int16_t metric_index_of(const std::string &metric);
void describe_metric(parameter_list &list, metric_parameters &p);
// Throws usage_error: an unknown metric, one that can only give 0 with the parts that are there, a missing cutoff.
overlap_rule rule_of(const metric_parameters &p, const project_state &project, const parts_there &there);
// Tells whether the loaded net may stand for the rule in use: known to be made by the same metric. Says so when its
// overlaps are scored again, and warns of a cutoff below what the net can know.
void settle_use_of_net(project_state &project);

} // namespace orb
