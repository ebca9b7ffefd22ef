#include "net/text_net_reader.h"

#include "frame/numbers.h"

namespace orb {

namespace {

constexpr const char *broken_file = "error in file with significant connections!";

bool blank(std::string_view line) {
  return line.find_first_not_of(" \t") == std::string_view::npos;
}

// A field as it may stand in a message: hostile files hold fields of any length.
std::string quoted(std::string_view text) {
  constexpr std::size_t most = 60;
  std::string result(1, '"');
  result += text.substr(0, most);
  return result += text.size() > most ? "...\"" : "\"";
}

} // namespace

text_net_reader::text_net_reader(process_frame &frame, const std::filesystem::path &file, std::int32_t n_clones)
    : frame_(frame), lines_(file), n_clones_(n_clones) {}

void text_net_reader::end_program(const std::string &text) {
  frame_.message(text);
  frame_.program_end_now(lines_.place(), exit_status::run_failed);
}

bool text_net_reader::refuse(const std::string &reason) {
  refused_ = true;
  frame_.message(broken_file);
  return frame_.refuse(lines_.place() + ": " + reason);
}

// The first fields of a line; those that it lacks are empty.
void text_net_reader::cut(std::string_view line) {
  for (std::string_view &cell : fields_) {
    const std::size_t tab = line.find('\t');
    cell = line.substr(0, tab);
    line = tab == std::string_view::npos ? std::string_view() : line.substr(tab + 1);
  }
}

bool text_net_reader::next_clone(clone_number &clone, std::int32_t &n_overlaps) {
  std::string_view line;
  do {
    if (refused_ || !lines_.next(line))
      return false;
  } while (blank(line));
  if (line.front() != 'c')
    end_program(broken_file);
  cut(line);
  if (n_read_ == n_clones_) { // more clones than the library has: a net of another one
    refused_ = true;
    frame_.message("i <> nnn: " + std::to_string(n_read_ + 1) + " <> " + std::to_string(n_clones_));
    return frame_.refuse(lines_.place() + ": the net has more clones than the library");
  }
  ++n_read_;
  if (!whole_number_parse(field(1), clone) || clone != n_read_)
    end_program("i <> j: " + std::to_string(n_read_) + " <> " + std::string(field(1).substr(0, 20)));
  if (!whole_number_parse(field(3), n_overlaps) || n_overlaps < 0)
    end_program(broken_file);
  return true;
}

bool text_net_reader::next_overlap(text_overlap &overlap) {
  std::string_view line;
  if (!lines_.next(line))
    return refuse("the file ends before the overlaps of clone " + std::to_string(n_read_));
  cut(line);
  if (!whole_number_parse(field(0), overlap.partner))
    return refuse(quoted(field(0)) + " is not a clone number");
  if (overlap.partner < 1 || overlap.partner > n_clones_ || overlap.partner == n_read_)
    return refuse("clone " + std::to_string(n_read_) + " can't overlap with clone " + std::to_string(overlap.partner));
  if (!number_from_text_silent(field(2), overlap.value))
    return refuse("value " + quoted(field(2)) + " is not a number");
  if (!burial_code(field(3), overlap.code))
    return refuse(quoted(field(3)) + " is not a burial code");
  return true;
}

// Empty: 0. Three letters ("abs"): 1, a form that the writer never emits. Longer: the fourth character.
bool text_net_reader::burial_code(std::string_view text, std::int16_t &code) {
  code = 0;
  if (text.empty())
    return true;
  if (text.size() < 3)
    return false;
  if (text.size() > 3 && (text[3] < '0' || text[3] > '3'))
    return false;
  code = text.size() == 3 ? std::int16_t{1} : static_cast<std::int16_t>(text[3] - '0');
  return true;
}

} // namespace orb
