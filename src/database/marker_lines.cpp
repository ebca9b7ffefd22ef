#include "database/marker_lines.h"

#include "frame/class_serv_raznoe.h"
#include "frame/text_lines.h"

namespace orb {

bool read_marker_lines(process_frame &frame, const std::filesystem::path &file, marker_lines &lines) {
  lines.file = file;
  class_serv_raznoe::read_array_string_from_file(file, lines.text);
  if (lines.text.empty())
    lines.text.emplace_back();
  for (std::int32_t i = 1; i <= lines.count(); ++i) {
    const std::string why = why_no_text(lines.line(i));
    if (why.empty())
      continue;
    return frame.refuse("File " + file.string() + " is no text: " + why + " of the line\r\n" + lines.place(i));
  }
  return true;
}

void report_marker_line(process_frame &frame, const std::string &text, const marker_lines &lines, std::int32_t i) {
  frame.message(text + "\r\n" + lines.place(i));
  frame.doubt(text, lines.place(i));
}

bool goes_on_behind_marker_line(process_frame &frame, const marker_lines &lines, std::int32_t i) {
  if (i % 200 == 0) {
    frame.progress(i, lines.count());
    frame.local_process_text_set(std::to_string(i) + " of " + std::to_string(lines.count()) + " clone-markers");
  }
  return !frame.stop_requested_get();
}

} // namespace orb
