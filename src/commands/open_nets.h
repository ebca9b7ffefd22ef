// What commands about open nets share: what the session lends to a net, and how nodes get their places.
#pragma once

#include <filesystem>
#include <string>

#include "commands/lent_sources.h"
#include "commands/parameter_list.h"
#include "project/project_state.h"
#include "viewer/class_net_elng.h"

namespace orb {

// False after messages: the drawing can't be read.
bool read_net(const std::filesystem::path &file, const net_sources &sources, class_net_elng &net);

struct layout_parameters {
  std::string layout; // empty: places as they are, "multilevel" for nodes without
};
void describe_layout(parameter_list &list, layout_parameters &p);
// `aspect`: width of the picture over its height. False when stopped: half of the nodes may lie anywhere then.
bool lay_out(class_net_elng &net, const layout_parameters &p, double aspect, project_state &project,
             random_source &chance);

} // namespace orb
