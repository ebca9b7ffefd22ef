// How bands are compared, as parameters of a command.
#pragma once

#include "commands/parameter_list.h"
#include "project/part_loading.h"

namespace orb {

void describe_library_parameters(parameter_list &list, library_wishes &wishes);

} // namespace orb
