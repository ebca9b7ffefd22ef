// The library of a benchmark, from its command line.
#pragma once

#include <cstdlib>
#include <string>
#include <type_traits>

#include "support/library_generator.h"

namespace orb {

// Takes these arguments out of the list, whose rest is for Google Benchmark:
//   [--bands=100] [--spread=0.5] [--coverage=15] [--tolerance=12] [--seed=1] [--skewed] [--bins]
inline void take_library_arguments(int &argc, char **argv, generated_library &wanted) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const auto value = [&](const char *name, auto &into) {
      const std::string begin = std::string("--") + name + "=";
      if (!argument.starts_with(begin))
        return false;
      into = static_cast<std::remove_reference_t<decltype(into)>>(std::atof(argument.c_str() + begin.size()));
      return true;
    };
    if (argument == "--skewed")
      wanted.skewed = true;
    else if (argument == "--bins")
      wanted.bin_numbers = true;
    else if (!value("bands", wanted.bands_in_clone) && !value("spread", wanted.spread) &&
             !value("coverage", wanted.coverage) && !value("tolerance", wanted.tolerance) &&
             !value("seed", wanted.seed))
      argv[kept++] = argv[i];
  }
  argc = kept;
}

} // namespace orb
