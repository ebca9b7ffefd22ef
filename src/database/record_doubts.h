// What looks wrong about fingerprint records that are read all the same: the readers warn of it, the survey lists it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/files.h"

namespace orb {

// Sees the records of a load one after another, file after file.
class record_doubts {
public:
  enum class ending { mark, text, blank_line, file_end };
  using told = std::function<void(const std::string &what, const std::string &place)>;

  explicit record_doubts(told tell) : tell_(std::move(tell)) {}

  // The header line of a record, just read: a header that begins with a blank has no name; one that is a number comes
  // from a broken line of bands; "NAME<tab>N<tab>Gel" announces N bands.
  void begin(std::string_view header, const line_reader &lines);
  // How the record ended, in front of or with `line`, and with how many bands.
  void end(ending how, std::int64_t n_bands, std::string_view line, const line_reader &lines);
  // Behind the last file. Ends without "-1" are doubtful where other records have it; a load that has none of these
  // marks is of another habit.
  void finish();

private:
  struct open_end {
    std::string what, place;
  };

  told tell_;
  std::string name_, header_place_;
  std::int64_t announced_ = -1, header_line_ = 0; // bands; -1: the header says nothing of them
  bool has_marks_ = false;
  std::int64_t n_open_ends_ = 0;
  std::vector<open_end> open_ends_; // the first few
};

} // namespace orb
