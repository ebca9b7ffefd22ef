// Writes a generated library as a .sizes file.
//   write_library FILE CLONES [COVERAGE 15] [BANDS 100] [SPREAD 0.5] [SEED 1] [skewed|even] [STACK 0]
// STACK: so many clones of the same 60 bands besides.
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "support/library_generator.h"
#include "support/sizes_file.h"

int main(int argc, char **argv) {
  using namespace orb;
  if (argc < 3) {
    std::cerr << "write_library FILE CLONES [COVERAGE] [BANDS] [SPREAD] [SEED] [skewed|even] [STACK]\n";
    return 2;
  }
  const auto number = [&](int place, double by_default) { return argc > place ? std::atof(argv[place]) : by_default; };
  generated_library wanted;
  wanted.n_clones = static_cast<std::int32_t>(number(2, 0));
  wanted.coverage = number(3, wanted.coverage);
  wanted.bands_in_clone = static_cast<std::int32_t>(number(4, wanted.bands_in_clone));
  wanted.spread = number(5, wanted.spread);
  wanted.seed = static_cast<std::uint64_t>(number(6, 1));
  wanted.skewed = argc > 7 && std::strcmp(argv[7], "skewed") == 0;
  wanted.n_stack = static_cast<std::int32_t>(number(8, 0));
  process_frame frame;
  class_DB_of_clones database;
  class_usable_values usable_values;
  generate_library(frame, wanted, database, usable_values);
  write_sizes_file(argv[1], database);
  return 0;
}
