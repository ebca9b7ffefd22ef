// How bands are compared, as parameters of a command.
#pragma once

#include "commands/parameter_list.h"
#include "project/part_loading.h"

namespace orb {

// `least_length`: below 2 where that stands for the length in force.
void describe_library_parameters(parameter_list &list, library_wishes &wishes, double least_length = 2);
// False, and all as it was, when the bands that are loaded don't fit.
bool change_parameters(project_state &project, library_parameters fields);

} // namespace orb
