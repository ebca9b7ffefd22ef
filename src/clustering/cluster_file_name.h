// Files named after clusters.
#pragma once

#include <string>
#include <string_view>

namespace orb {

// The cluster's name as a file name: what can't stand in one becomes "_", so that no name leads out of the folder.
std::string cluster_file_name(std::string_view name);

} // namespace orb
