// Reading a table of clones with their true places.
#include <unordered_map>
#include <unordered_set>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "simulation/class_simul_clones.h"

namespace orb {

namespace {

constexpr std::size_t first_part_field = 10; // behind c, clone, bins, five counts, length, parts
constexpr std::int32_t most_parts = 100;

class table_of_clones_reader {
public:
  explicit table_of_clones_reader(const std::filesystem::path &file) : lines_(file) {}

  // An empty text, or what is wrong.
  std::string read() {
    std::string_view line;
    while (lines_.next(line)) {
      if (line.find_first_not_of(" \t") == std::string_view::npos)
        continue;
      class_serv_raznoe::cut_string_views(line, fields_);
      std::int32_t number = 0;
      const std::string wrong = whole_number_parse(fields_[0], number) ? read_row() : read_head();
      if (!wrong.empty())
        return wrong;
    }
    if (placed_.clones.empty())
      return "The table of clones holds no clone.";
    if (claimed_ >= 0 && claimed_ != static_cast<std::int32_t>(placed_.clones.size()))
      return "The table of clones says N_clones = " + std::to_string(claimed_) + " and holds " +
             std::to_string(placed_.clones.size()) + ".";
    return {};
  }
  std::string place() const { return lines_.place(); }
  placed_clones &result() { return placed_; }

private:
  // Lines before the first clone: the count, the heading, or anything else.
  std::string read_head() {
    if (!placed_.clones.empty())
      return "A line of the table of clones doesn't begin with a number.";
    if (fields_[0] == "N_clones" && fields_.size() > 1 && !whole_number_parse(fields_[1], claimed_))
      return "N_clones is no number.";
    has_chromosomes_ =
        has_chromosomes_ || (fields_.size() > first_part_field + 2 && fields_[first_part_field + 2] == "chromosome");
    return {};
  }

  bool number_of(std::size_t field, std::int32_t &value) const {
    return field < fields_.size() && whole_number_parse(fields_[field], value) && value >= 0;
  }

  std::string read_row() {
    simul_clone clone;
    std::int32_t n_parts = 0, length = 0;
    if (fields_.size() < first_part_field)
      return "A row of the table of clones is too short.";
    if (!number_of(2, clone.n_bins) || !number_of(3, clone.n_bands_more_0) || !number_of(4, clone.n_bands_too_long) ||
        !number_of(5, clone.n_bands_ok_colored) || !number_of(6, clone.n_bands_obs_no_errors) ||
        !number_of(7, clone.n_bands_obs) || !number_of(8, length))
      return "A count in the table of clones is no whole number from 0 on.";
    if (!number_of(9, n_parts) || n_parts < 1 || n_parts > most_parts)
      return "The number of parts is none from 1 to 100.";
    clone.name = fields_[1];
    if (clone.name.empty() || !names_.insert(clone.name).second)
      return clone.name.empty() ? "A clone has no name." : "Clone " + clone.name + " stands there twice.";
    const std::size_t width = has_chromosomes_ ? 3 : 2;
    for (std::int32_t k = 0; k < n_parts; ++k)
      if (!read_part(first_part_field + static_cast<std::size_t>(k) * width, clone))
        return "Clone " + clone.name + " has no start and end that fit in its stretch " + std::to_string(k + 1) + ".";
    if (clone.length != length)
      return "The parts of clone " + clone.name + " don't add up to its length.";
    placed_.clones.push_back(std::move(clone));
    return {};
  }

  bool read_part(std::size_t field, simul_clone &clone) {
    clone_part part;
    if (!number_of(field, part.part_start) || !number_of(field + 1, part.part_end) || part.part_end < part.part_start ||
        clone.length > INT32_MAX - (part.part_end - part.part_start))
      return false;
    std::string name = "sequence";
    if (has_chromosomes_) {
      if (field + 2 >= fields_.size() || fields_[field + 2].empty())
        return false;
      name = fields_[field + 2];
    }
    const auto [known, is_new] =
        chromosome_of_name_.try_emplace(name, static_cast<std::int32_t>(placed_.chromosomes.size()) + 1);
    if (is_new)
      placed_.chromosomes.push_back(name);
    part.chromosome = known->second;
    clone.length += part.part_end - part.part_start;
    clone.parts.push_back(part);
    return true;
  }

  line_reader lines_;
  std::vector<std::string_view> fields_;
  placed_clones placed_;
  std::unordered_set<std::string> names_;
  std::unordered_map<std::string, std::int32_t> chromosome_of_name_;
  std::int32_t claimed_ = -1;
  bool has_chromosomes_ = false;
};

} // namespace

bool read_table_of_clones(process_frame &frame, const std::filesystem::path &file, placed_clones &placed) {
  table_of_clones_reader reader(file);
  const std::string wrong = reader.read();
  if (!wrong.empty()) {
    return frame.refuse(wrong + "\r" + reader.place());
  }
  placed = std::move(reader.result());
  return true;
}

bool class_simul_clones::file_clones_with_parts_read_run(std::filesystem::path file) {
  if (file.empty())
    file = frame_.open_file_dialog("Open file with real clone end positions...");
  if (file.empty() || !read_table_of_clones(frame_, file, placed_))
    return false;
  sums_.clear();
  return true;
}

} // namespace orb
