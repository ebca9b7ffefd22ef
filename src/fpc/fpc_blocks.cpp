#include "fpc/fpc_blocks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::size_t most_lines = 1000;       // of a block that are kept
constexpr std::size_t least_lines = 3;         // of a clone
constexpr std::size_t least_letters = 9;       // of a line that is looked at
constexpr double largest_parameter = 1e6;      // of a gel; bands have 16 bits
constexpr std::string_view no_contig = "ctg0"; // where FPC keeps clones that are in no contig
constexpr std::array<std::string_view, 7> kinds{"BAC", "Clone", "PAC", "YAC", "Fosmid", "Cosmid", "Plasmid"};

// The next word, which ends at a blank or a tab outside of double quotes; it is taken off the text.
std::string_view next_word(std::string_view &text) {
  text = trimmed(text);
  bool quoted = false;
  std::size_t end = 0;
  for (; end < text.size() && (quoted || (text[end] != ' ' && text[end] != '\t')); ++end)
    quoted = quoted != (text[end] == '"');
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

// The text between the first two double quotes; without any: the first word.
std::string_view name_in(std::string_view text) {
  const std::size_t first = text.find('"');
  if (first == std::string_view::npos)
    return next_word(text);
  text.remove_prefix(first + 1);
  return text.substr(0, text.find('"'));
}

// The text behind the kind of a clone in its first line; empty: it is no clone.
std::string_view behind_kind(std::string_view line) {
  for (const std::string_view kind : kinds) {
    if (!line.starts_with(kind))
      continue;
    const std::string_view rest = trimmed(line.substr(kind.size()));
    if (rest.starts_with(':'))
      return trimmed(rest.substr(1));
    if (rest.starts_with('"'))
      return rest;
  }
  return {};
}

bool coordinate_parse(std::string_view word, double &value) {
  return number_parse(word, value) && std::isfinite(value);
}

// "1e-12" is 12, and a number from 1 on is such an exponent itself. Very small ones fit no double.
std::optional<double> exponent_of(std::string_view word) {
  double mantissa = 0, exponent = 0;
  const std::size_t e = word.find_first_of("eE");
  if (!number_parse(word.substr(0, e), mantissa) || !(mantissa > 0) || !std::isfinite(mantissa))
    return std::nullopt;
  if (e != std::string_view::npos && !number_parse(word.substr(e + 1), exponent))
    return std::nullopt;
  if (e == std::string_view::npos && mantissa >= 1)
    return mantissa;
  const double found = -(exponent + std::log10(mantissa));
  constexpr double part = 10000; // "3.2e-16" stands for 15.5
  return found > 0 && found < 1e6 ? std::optional(std::round(found * part) / part) : std::nullopt;
}

void take_number(std::string_view word, std::optional<double> &value) {
  double number = 0;
  if (!value && number_parse(word, number) && number >= 0 && number <= largest_parameter)
    value = number;
}

} // namespace

void fpc_file_reader::read_head_line(std::string_view line) {
  std::string_view before;
  for (std::string_view word = next_word(line); !word.empty(); before = word, word = next_word(line)) {
    if (before == "Tol")
      take_number(word, head_.tolerance);
    else if (before == "length" || before == "Gel_length")
      take_number(word, head_.gel_length);
    else if (before == "Cut" && !head_.cutoff)
      head_.cutoff = exponent_of(word);
  }
}

// The lines up to one that parts blocks; false at the end of the file.
bool fpc_file_reader::next_block() {
  text_.clear();
  ends_.assign(1, 0);
  std::string_view line;
  while (lines_.next(line)) {
    if (line.empty() || line[0] == ' ' || line[0] == '\t') {
      if (n_lines() > 0)
        return true;
      continue;
    }
    if (n_lines() == 0)
      first_line_ = lines_.line_number();
    if (line.starts_with("//"))
      read_head_line(line);
    if (n_lines() == most_lines)
      continue;
    text_ += line;
    ends_.push_back(text_.size());
  }
  return n_lines() > 0;
}

bool fpc_file_reader::next(fpc_clone_block &clone) {
  while (!at_end_ && next_block()) {
    if (line(0).starts_with("Markerdata") || line(0).starts_with("Contigdata"))
      break;
    if (n_lines() < least_lines || name_in(behind_kind(line(0))).empty())
      continue;
    read_clone(clone);
    return true;
  }
  at_end_ = true;
  return false;
}

void fpc_file_reader::read_clone(fpc_clone_block &clone) {
  std::vector<std::string_view> markers = std::move(clone.markers);
  markers.clear();
  clone = {};
  clone.markers = std::move(markers);
  clone.line_number = first_line_;
  clone.name = name_in(behind_kind(line(0)));
  bool map_is_read = false;
  for (std::size_t i = 1; i < n_lines(); ++i) {
    if (!map_is_read && i + 1 < n_lines() && line(i).starts_with("Map") && line(i + 1).starts_with("Map")) {
      map_is_read = true;
      clone.map_is_wrong = !read_map(i, clone);
      if (clone.map_is_wrong)
        clone.lines_1_to_3 = std::string(line(0)) + ";" + std::string(line(i)) + ";" + std::string(line(i + 1));
      ++i;
    } else if (line(i).size() >= least_letters) {
      read_word(line(i), clone);
    }
  }
}

// Lines i and i + 1: Map CONTIG Ends Left NUMBER, and Right likewise, behind which the old contig may stand.
bool fpc_file_reader::read_map(std::size_t i, fpc_clone_block &clone) {
  std::array<std::array<std::string_view, 5>, 2> words;
  std::string_view rest;
  for (std::size_t k = 0; k < 2; ++k) {
    rest = line(i + k);
    for (std::string_view &word : words[k])
      word = next_word(rest);
  }
  const auto &[left, right] = words;
  double from = 0, to = 0;
  std::string_view contig = left[1];
  if (left[2] != "Ends" || left[3] != "Left" || right[2] != "Ends" || right[3] != "Right" || left[1] != right[1] ||
      !coordinate_parse(left[4], from) || !coordinate_parse(right[4], to))
    return false;
  if (contig.size() >= 2 && contig.front() == '"' && contig.back() == '"')
    contig = contig.substr(1, contig.size() - 2);
  const std::string_view old_word = next_word(rest);
  if (contig.empty() || contig.find('\t') != std::string_view::npos || (!old_word.empty() && old_word != "Oldctg"))
    return false;
  if (contig == no_contig)
    return true;
  clone.contig = contig;
  clone.left = from;
  clone.right = to;
  clone.old_contig = trimmed(rest);
  return true;
}

void fpc_file_reader::read_word(std::string_view line, fpc_clone_block &clone) const {
  const std::string_view word = next_word(line);
  if (word == "Gel_number") {
    clone.gel_number = trimmed(line);
  } else if (word == "Bands") {
    std::int32_t number = 0;
    if (whole_number_parse(next_word(line), number))
      clone.first_band = number;
    if (whole_number_parse(next_word(line), number))
      clone.n_bands = number;
  } else if (word.starts_with("Positive_")) {
    if (const std::string_view name = name_in(line); !name.empty())
      clone.markers.push_back(name);
  } else if (word == "Creation_date") {
    clone.created = trimmed(line);
  } else if (word == "Modified_date") {
    clone.modified = trimmed(line);
  }
}

std::string fpc_file_reader::place(std::int64_t line_number) const {
  return "file " + lines_.path().string() + ", line " + std::to_string(line_number);
}

fpc_head head_of_fpc_file(const std::filesystem::path &file) {
  fpc_file_reader reader(file);
  fpc_clone_block clone;
  reader.next(clone);
  return reader.head();
}

std::filesystem::path cor_file_of(const std::filesystem::path &fpc_file) {
  return std::filesystem::path(fpc_file).replace_extension(".cor");
}

} // namespace orb
