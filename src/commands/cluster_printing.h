// What the printing of clusters asks for, as parameters of the commands that print some.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "commands/parameter_list.h"
#include "project/project_state.h"

namespace orb {

struct print_wishes {
  std::optional<std::int32_t> min_size;
  std::string caption;
};

void describe_min_size(parameter_list &list, print_wishes &wishes);
void describe_caption(parameter_list &list, print_wishes &wishes);
// The questions for what was given don't come.
void answer_printing_ahead(project_state &project, const print_wishes &wishes);

} // namespace orb
