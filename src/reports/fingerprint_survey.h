// A look over fingerprint files that asks for no parameters and refuses nothing: what is in them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orb {

struct fingerprint_survey {
  std::int64_t n_files = 0, n_records = 0, n_bands = 0;
  std::int64_t n_exact_copies = 0;   // records with the header line and the bands of an earlier one
  std::int64_t n_repeated_names = 0; // names that stand over different fingerprints
  double smallest_band = 0, largest_band = 0;
  std::int64_t fewest_bands = 0, most_bands = 0; // of a record
  int decimals = 0;                              // most digits behind the decimal sign
  bool has_point = false, has_comma = false;
  std::int64_t n_without_bands = 0;
  std::vector<std::string> problems; // what a load would refuse or warn of, with file and line; the first few
  std::int64_t n_problems = 0;
};

// Throws file_error when a file can't be read.
fingerprint_survey survey_of_fingerprints(const std::vector<std::filesystem::path> &files);

} // namespace orb
