#include "ui/console/stage_line.h"

#include <cstdio>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace orb {

namespace {

double seconds_since(std::chrono::steady_clock::time_point began) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
}

} // namespace

int width_of_terminal() {
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::string clipped(const std::string &text, int columns) {
  std::size_t end = 0;
  for (int column = 0; end < text.size(); ++column) {
    std::size_t next = end + 1;
    while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0U) == 0x80U)
      ++next; // the rest of a UTF-8 character
    if (column == columns)
      break;
    end = next;
  }
  return text.substr(0, end);
}

stage_line::stage_line(bool lines, bool progress)
    : lines_(lines), progress_(lines && progress), terminal_(isatty(STDERR_FILENO) != 0) {}

void stage_line::begin(int i, int n, const std::string &name) {
  label_ = fmt::format("[{}/{}] {}", i, n, name);
  counter_.clear();
  estimate_.begin();
  stage_began_ = written_ = clock::now();
  drawn_ = {};
  draw();
}

void stage_line::progress(std::int64_t done, std::int64_t total) {
  estimate_.progress(done, total);
  draw();
}

void stage_line::counter(const std::string &text) {
  counter_ = text;
  draw();
}

void stage_line::end(const std::string &summary) {
  clear();
  if (lines_ && !label_.empty())
    std::fprintf(stderr, "%s: %s (%s)\n", label_.c_str(), summary.empty() ? "done" : summary.c_str(),
                 text_of_time(seconds_since(stage_began_)).c_str());
  label_.clear();
}

void stage_line::clear() {
  if (is_open_)
    std::fputs("\r\033[K", stderr);
  is_open_ = false;
}

std::string stage_line::text_of_progress() const {
  if (!estimate_.is_known())
    return {};
  const std::string rest = estimate_.text_of_rest();
  return fmt::format("{:.0f} %", 100 * estimate_.share()) + (rest.empty() ? "" : ", " + rest);
}

void stage_line::draw() {
  if (!progress_ || label_.empty())
    return;
  constexpr auto between_drawings = std::chrono::milliseconds(100);
  constexpr auto between_lines = std::chrono::minutes(1);
  const auto now = clock::now();
  if (!terminal_) {
    if (now - written_ < between_lines)
      return;
    written_ = now;
    const std::string text = text_of_progress();
    std::fprintf(stderr, "%s: %s\n", label_.c_str(), text.empty() ? "at work" : text.c_str());
    return;
  }
  if (now - drawn_ < between_drawings)
    return;
  drawn_ = now;
  std::string line = label_;
  for (const std::string &part : {text_of_progress(), counter_})
    if (!part.empty())
      line += "  " + part;
  std::fprintf(stderr, "\r\033[K%s", clipped(line, width_of_terminal() - 1).c_str());
  std::fflush(stderr);
  is_open_ = true;
}

} // namespace orb
