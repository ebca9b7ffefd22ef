#include "frame/text_lines.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "frame/failures.h"

namespace orb {

std::string_view trimmed(std::string_view text, std::string_view blanks) {
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool is_blank_line(std::string_view line) {
  for (const char c : line)
    if (c != ' ' && c != '\t')
      return false;
  return true;
}

std::string why_no_text(std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto c = static_cast<unsigned char>(bytes[i]);
    if (c >= ' ' && c != 127)
      continue;
    if ((c >= '\t' && c <= '\r') || c == 26)
      continue;
    return "byte " + std::to_string(c) + " at offset " + std::to_string(i);
  }
  return {};
}

std::string why_no_text_file(const std::filesystem::path &file) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE *)> opened(std::fopen(file.c_str(), "rb"), std::fclose);
  if (!opened)
    throw file_error("can't open", file, std::strerror(errno));
  std::string bytes(64 * 1024, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), opened.get()));
  return why_no_text(bytes);
}

bool is_line_of_text(process_frame &frame, const line_reader &lines, std::string_view line) {
  const std::string why = why_no_text(line);
  return why.empty() ||
         frame.refuse("File " + lines.path().string() + " is no text: " + why + " of the line\r\n" + lines.place());
}

} // namespace orb
