// The lines of a marker file in memory, and what all readers of such files do with them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "frame/process_frame.h"

namespace orb {

struct marker_lines {
  std::filesystem::path file;
  std::vector<std::string> text{{}}; // from 1

  std::int32_t count() const { return static_cast<std::int32_t>(text.size()) - 1; }
  const std::string &line(std::int32_t i) const { return text[static_cast<std::size_t>(i)]; }
  // "file NAME, line I"
  std::string place(std::int32_t i) const { return "file " + file.string() + ", line " + std::to_string(i); }
};

// Reads the whole file; false, with a message, for one that is no text. Throws file_error.
bool read_marker_lines(process_frame &frame, const std::filesystem::path &file, marker_lines &lines);
// Shows the text with the place of line i, and keeps it as a doubt about the input.
void report_marker_line(process_frame &frame, const std::string &text, const marker_lines &lines, std::int32_t i);
// Shows how far a reader is, every 200 lines, and tells whether to go on.
bool goes_on_behind_marker_line(process_frame &frame, const marker_lines &lines, std::int32_t i);

} // namespace orb
