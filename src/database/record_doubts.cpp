#include "database/record_doubts.h"

#include <cctype>
#include <charconv>
#include <fmt/format.h>

#include "frame/input_doubts.h"

namespace orb {

namespace {

constexpr const char *blanks = " \t";

std::string_view token_at(std::string_view text, std::size_t &position) {
  position = std::min(text.find_first_not_of(blanks, position), text.size());
  const std::size_t end = std::min(text.find_first_of(blanks, position), text.size());
  const std::string_view token = text.substr(position, end - position);
  position = end;
  return token;
}

// The number of bands that the header announces in the form of the system's own writer; -1: none.
std::int64_t announced_bands(std::string_view header) {
  std::size_t position = 0;
  token_at(header, position);
  const std::string_view number = token_at(header, position), word = token_at(header, position);
  std::int64_t n = -1;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), n);
  const bool is_whole = error == std::errc() && end == number.data() + number.size() && n >= 0;
  const bool is_gel = word.size() >= 3 && std::tolower(static_cast<unsigned char>(word[0])) == 'g' &&
                      std::tolower(static_cast<unsigned char>(word[1])) == 'e' &&
                      std::tolower(static_cast<unsigned char>(word[2])) == 'l';
  return is_whole && (word.empty() || is_gel) ? n : -1;
}

// Digits with signs, points, commas and an exponent: "1e3", "12,345,6". A header of more than its name isn't like
// that, nor is the well 15E24.
bool looks_like_a_number(std::string_view header) {
  const std::string_view digits = header.substr(header.starts_with('-') || header.starts_with('+') ? 1 : 0);
  if (digits.empty() || digits.find_first_not_of("0123456789.,+-e") != std::string_view::npos)
    return false;
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  const bool has_exponent = digits.find('e') != std::string_view::npos;
  return is_digit(digits.front()) && is_digit(digits.back()) &&
         (has_exponent || digits.find_first_of("+-") == std::string_view::npos);
}

std::string shown(std::string_view text) {
  constexpr std::size_t most = 40;
  return '"' + std::string(text.substr(0, most)) + (text.size() > most ? "..." : "") + '"';
}

} // namespace

void record_doubts::begin(std::string_view header, const line_reader &lines) {
  const std::size_t end = std::min(header.find_first_of(blanks), header.size());
  name_ = header.substr(0, end);
  header_line_ = lines.line_number();
  announced_ = announced_bands(header);
  if (name_.empty())
    tell_("header " + shown(header) + " begins with a blank, so that its clone has no name", lines.place());
  else if (looks_like_a_number(header))
    tell_("header " + shown(header) + " is like a number; its clone gets it as name", lines.place());
}

void record_doubts::end(ending how, std::int64_t n_bands, std::string_view line, const line_reader &lines) {
  if (announced_ >= 0 && announced_ != n_bands)
    tell_(fmt::format("the header of clone {} announces {} bands and {} follow", name_, announced_, n_bands),
          fmt::format("file {}, line {}", lines.path().string(), header_line_));
  if (how == ending::mark) {
    has_marks_ = true;
    return;
  }
  if (++n_open_ends_ > input_doubts::most_named)
    return;
  const std::string what = how == ending::file_end ? "the file ends in the record of clone " + name_ + ", without -1"
                           : how == ending::blank_line
                               ? "an empty line ends the record of clone " + name_ + ", without -1"
                               : shown(line) + " ends the record of clone " + name_ + ", without -1";
  open_ends_.push_back({what, lines.place()});
}

void record_doubts::finish() {
  if (!has_marks_)
    return;
  for (const open_end &found : open_ends_)
    tell_(found.what, found.place);
  for (std::int64_t i = input_doubts::most_named; i < n_open_ends_; ++i)
    tell_({}, {}); // only counted
}

} // namespace orb
