// Contigs by name, for options that choose one.
#pragma once

#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"

namespace orb {

// Of the contigs that are in use, in their order.
std::vector<std::string> names_of_contigs(const class_FPCto_import &registry);
// "Contigs are a, b, c, d, e and 7 more."
std::string text_of_some_contigs(const std::vector<std::string> &names);
// Throws usage_error, with the name that may be meant.
[[noreturn]] void refuse_contig(const std::string &wanted, const std::vector<std::string> &names);

} // namespace orb
