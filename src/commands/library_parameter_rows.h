// How bands are compared, as parameters of a command.
#pragma once

#include "commands/parameter_list.h"
#include "project/part_loading.h"

namespace orb {

// `least_length`: below 2 where that stands for the length in force.
void describe_library_parameters(parameter_list &list, library_wishes &wishes, double least_length = 2);

} // namespace orb
