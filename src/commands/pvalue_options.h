// What the pvalue commands are asked to do.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace orb {

struct pvalue_options {
  std::int32_t n1 = 0, n2 = 0, k = 0; // bands of the clones, common bands
  std::int32_t runs = 10000;
  bool iid = false;                                   // all bands equally likely
  std::optional<std::int32_t> min_bands, step, steps; // of the table; unset: they cover the library
  std::filesystem::path folder;                       // of tables
  std::optional<double> count, value;                 // which of the two is known
  std::string mode = "iid";
};

} // namespace orb
