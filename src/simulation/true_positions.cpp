#include "simulation/true_positions.h"

#include <string_view>
#include <unordered_map>
#include <vector>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"
#include "simulation/class_simul_clones.h"

namespace orb {

namespace {

constexpr std::string_view start_of_table_of_clones = "N_clones\t";
constexpr std::string_view heads[] = {"clone", "part", "chromosome", "start", "end"};
constexpr std::size_t n_fields = std::size(heads);
constexpr std::int32_t most_parts = 100;  // of a clone
constexpr std::size_t longest_quote = 40; // characters of a bad field that a message repeats

std::string in_quotes(std::string_view text) {
  return "\"" + std::string(text.substr(0, longest_quote)) + (text.size() > longest_quote ? "...\"" : "\"");
}

class truth_reader {
public:
  explicit truth_reader(const std::filesystem::path &file) : lines_(file) {}

  // An empty text, or what is wrong.
  std::string read() {
    std::string_view line;
    if (!lines_.next(line))
      return "The table of true positions is empty.";
    cut(line);
    for (std::size_t i = 0; i < n_fields; ++i)
      if (fields_.size() != n_fields || fields_[i] != heads[i])
        return "This is no table of true positions: its first line is not \"clone\", \"part\", \"chromosome\", "
               "\"start\", \"end\" with tabs between.";
    while (lines_.next(line)) {
      if (std::string wrong = read_row(line); !wrong.empty())
        return wrong;
    }
    return read_.clones.empty() ? "The table of true positions holds no clone." : std::string();
  }
  std::string place() const { return lines_.place(); }
  placed_clones &result() { return read_; }

private:
  void cut(std::string_view line) {
    class_serv_raznoe::cut_string_views(line, fields_, n_fields + 1);
    for (std::string_view &field : fields_)
      field = trimmed(field, " ");
  }

  std::string read_row(std::string_view line) {
    if (trimmed(line, " ").empty())
      return {};
    cut(line);
    if (fields_.size() != n_fields)
      return "A row has 5 fields (clone, part, chromosome, start, end) with tabs between, this one has " +
             std::string(fields_.size() > n_fields ? "more" : std::to_string(fields_.size())) + ".";
    if (fields_[0].empty() || fields_[2].empty())
      return std::string("The name of the ") + (fields_[0].empty() ? "clone" : "chromosome") + " is missing.";
    std::int32_t part = 0, start = 0, end = 0;
    if (!whole_number_parse(fields_[1], part) || part < 1 || part > most_parts)
      return "Part is no number from 1 to " + std::to_string(most_parts) + ": " + in_quotes(fields_[1]) + ".";
    if (!whole_number_parse(fields_[3], start) || start < 0)
      return "Start is no whole number of base pairs from 0: " + in_quotes(fields_[3]) + ".";
    if (!whole_number_parse(fields_[4], end) || end < start)
      return "End is no whole number of base pairs from the start on: " + in_quotes(fields_[4]) + ".";
    return add_part(part, start, end);
  }

  std::string add_part(std::int32_t part, std::int32_t start, std::int32_t end) {
    const auto [known, is_new] = clone_of_name_.try_emplace(std::string(fields_[0]), read_.clones.size());
    if (is_new) {
      read_.clones.emplace_back();
      read_.clones.back().name = fields_[0];
    }
    simul_clone &clone = read_.clones[known->second];
    if (part != clone.n_parts() + 1)
      return "Part " + std::to_string(part) + " of clone " + in_quotes(clone.name) + " stands where part " +
             std::to_string(clone.n_parts() + 1) + " is expected.";
    clone_part stretch;
    stretch.chromosome = chromosome();
    stretch.part_start = start;
    stretch.part_end = end;
    clone.parts.push_back(stretch);
    if (clone.length > INT32_MAX - (end - start))
      return "The parts of clone " + in_quotes(clone.name) + " are too long.";
    clone.length += end - start;
    return {};
  }

  std::int32_t chromosome() {
    const auto [known, is_new] = chromosome_of_name_.try_emplace(
        std::string(fields_[2]), static_cast<std::int32_t>(read_.chromosomes.size()) + 1);
    if (is_new)
      read_.chromosomes.emplace_back(fields_[2]);
    return known->second;
  }

  line_reader lines_;
  std::vector<std::string_view> fields_;
  placed_clones read_;
  std::unordered_map<std::string, std::size_t> clone_of_name_;
  std::unordered_map<std::string, std::int32_t> chromosome_of_name_;
};

} // namespace

// The table of clones that a simulation writes begins with the number of clones.
static bool is_table_of_clones(const std::filesystem::path &file) {
  line_reader lines(file);
  std::string_view line;
  return lines.next(line) && line.starts_with(start_of_table_of_clones);
}

bool read_true_positions(process_frame &frame, const std::filesystem::path &file, placed_clones &truth) {
  if (is_table_of_clones(file))
    return read_table_of_clones(frame, file, truth);
  truth_reader reader(file);
  if (const std::string wrong = reader.read(); !wrong.empty()) {
    return frame.refuse(wrong + "\r\n" + reader.place());
  }
  truth = std::move(reader.result());
  return true;
}

} // namespace orb
