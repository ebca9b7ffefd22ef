// A list of clones as groups that overlaps hold together, and the same list with clones around it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "net/class_clone_net_signif.h"

namespace orb {

// Connected components of the list by the rule, numbered by their first clone; members in the order of the list.
std::vector<number_list> linked_groups_of(class_clone_net_signif &signif, const overlap_rule &rule,
                                          const number_list &list);

// The list with all clones that overlaps join to it within `rank` steps, ascending: by the loaded net, or without one
// by comparing clones. `name`: of a file in the working folder that gets the list; empty: none. False after a stop
// request.
bool list_with_linked_clones(class_clone_net_signif &signif, const overlap_rule &rule, const number_list &list,
                             std::int32_t rank, const std::string &name, number_list &extended);

} // namespace orb
