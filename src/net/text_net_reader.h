// Walks a text net: a clone line, then as many overlap lines as it says, for each clone in order.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "frame/files.h"
#include "frame/lists.h"
#include "frame/process_frame.h"

namespace orb {

struct text_overlap {
  clone_number partner = 0;
  double value = 0;
  std::int16_t code = 0;
};

// Nothing that the file claims is trusted: counts only say how many lines to read on. A broken clone line ends the
// program (status 1), since clone numbers would no longer mean anything; a broken overlap line refuses the file.
class text_net_reader {
public:
  // Throws file_error.
  text_net_reader(process_frame &frame, const std::filesystem::path &file, std::int32_t n_clones);

  // The next clone, numbered on from 1. False at the end of the file, or when the file is refused.
  bool next_clone(clone_number &clone, std::int32_t &n_overlaps);
  // One of the overlap lines that follow; false when it is broken: the file is refused then.
  bool next_overlap(text_overlap &overlap);
  bool refused() const { return refused_; }
  std::int32_t n_clones_read() const { return n_read_; }

private:
  static constexpr std::size_t n_fields = 4;
  [[noreturn]] void end_program(const std::string &text);
  bool refuse(const std::string &reason);
  std::string_view field(std::size_t i) const { return fields_[i]; }
  void cut(std::string_view line);
  bool burial_code(std::string_view text, std::int16_t &code);

  process_frame &frame_;
  line_reader lines_;
  std::int32_t n_clones_, n_read_ = 0;
  std::array<std::string_view, n_fields> fields_;
  bool refused_ = false;
};

} // namespace orb
