// Changes inputs by chance: the same seed, the same changes.
#pragma once

#include <string>
#include <vector>

#include "frame/random_source.h"

namespace fuzz_test {

// One to four changes; `other` is another input, of which pieces are taken.
std::string mutated(std::string bytes, const std::string &other, orb::random_source &chance);

} // namespace fuzz_test
