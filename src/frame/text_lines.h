// What is text, line by line: for readers of files that people and other programs write.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "frame/files.h"
#include "frame/process_frame.h"

namespace orb {

// Without the blanks (the characters of `blanks`) at both ends.
std::string_view trimmed(std::string_view text, std::string_view blanks = " \t");
// Empty, or nothing but blanks and tabs.
bool is_blank_line(std::string_view line);
// Why the bytes are no text: what stands at which byte; empty for a text. Letters of any encoding of one byte or of
// UTF-8 are text; control characters other than tabs, line ends, form feeds and the old end-of-file mark aren't.
std::string why_no_text(std::string_view bytes);
// The same for the first 64 KiB of a file; throws file_error.
std::string why_no_text_file(const std::filesystem::path &file);
// Whether the line last read is text; false after a message.
bool is_line_of_text(process_frame &frame, const line_reader &lines, std::string_view line);

} // namespace orb
