#include "commands/lanes_of_clones.h"

#include <algorithm>

#include "metrics/class_clone_dist_my.h"

namespace orb {

lane_values lanes_of_clones(project_state &project, const std::vector<clone_number> &clones) {
  constexpr std::size_t most_lanes = 120;
  class_clone_dist_my gate(project.context(), &project.signif().net());
  gate.net_private_parameters_set_interface(project.rule());
  const class_DB_of_clones &database = project.database();
  std::vector<clone_number> known;
  for (const clone_number clone : clones)
    if (clone >= 1 && clone <= database.total_number_of_clones_get())
      known.push_back(clone);
  known = order_of_lanes(std::move(known), project.has(project_part::contigs) ? database.contigs().get() : nullptr);
  known.resize(std::min(known.size(), most_lanes));
  return lane_values_of(database, known,
                        [&gate](clone_number a, clone_number b) { return gate.overlap_is_significant(a, b); });
}

} // namespace orb
