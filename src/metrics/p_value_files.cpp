// class_clone_dist_table: writing the tables and reading them back.
#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_table.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

// No curve of counts that clones can share has such coefficients.
constexpr double largest_coefficient = 1e6;
const char *const fits[] = {"a0", "a1", "a2"}; // in the order of `which`

std::string name_of_mode(int mode) {
  return mode == 0 ? "iid" : "fr";
}

} // namespace

std::string class_clone_dist_table::name_of_file(const std::string &p, int mode) {
  return "\\parameters_" + p + "_" + name_of_mode(mode) + ".txt";
}

// ---- writing -------------------------------------------------------------------------------------------------------

void class_clone_dist_table::write_table_sizes(process_frame &frame) const {
  result_file file(frame.path_in_working_folder(name_of_sizes_file()));
  file.line("Size of tables for p-value (in Simulations) of overlap of two clones");
  file.line("Min number of bands in clone:");
  file.line(std::to_string(min_n_bands_));
  file.line("Steap of table:");
  file.line(std::to_string(step_));
  file.line("Number of steaps:");
  file.line(std::to_string(n_steps_));
  file.commit();
}

void class_clone_dist_table::write_square_table(process_frame &frame, const std::string &p, int mode) const {
  const auto field = [&](const p_value_situation &at) {
    if (p == "n")
      return std::to_string(at.n_runs);
    return number_text(p == "a0" ? at.a0 : p == "a1" ? at.a1 : at.a2, 6);
  };
  result_file file(frame.path_in_working_folder(name_of_file(p, mode)));
  std::string line = "bands";
  for (std::int32_t j = 0; j <= n_steps_; ++j)
    line += "\t" + std::to_string(size(j));
  file.line(line);
  for (std::int32_t i = 0; i <= n_steps_; ++i) {
    line = std::to_string(size(i));
    for (std::int32_t j = 0; j <= n_steps_; ++j)
      line += "\t" + field(cell(std::max(i, j), std::min(i, j), mode));
    file.line(line);
  }
  file.commit();
}

// A block for each situation; its first line holds index, sizes, and the counts that the three rows tell about.
void class_clone_dist_table::write_counts(process_frame &frame, int mode) const {
  result_file file(frame.path_in_working_folder(name_of_file("f", mode)));
  const auto row = [&](const char *name, const std::vector<double> &natural) {
    std::string line = name;
    for (const double value : natural)
      line += "\t" + number_text(value / std::numbers::ln10, 4);
    file.line(line);
  };
  const auto whole = [](std::int32_t n) { return std::to_string(n); };
  for (std::int32_t i = 0; i <= n_steps_; ++i)
    for (std::int32_t j = 0; j <= i; ++j) {
      const p_value_situation &at = cell(i, j, mode);
      std::string line = whole(index_of_situation(size(i), size(j))) + "\t" + whole(size(i)) + "\t" + whole(size(j));
      for (std::int32_t b = 0; b < at.n_non_infinite; ++b)
        line += "\t" + whole(b);
      file.line(line);
      file.line("n_runs=" + whole(at.n_runs) + ", n_non_infinite=" + whole(at.n_non_infinite) +
                ", b_start=" + whole(at.b_start) + ", b_end=" + whole(at.b_end) + ", a2=" + number_text(at.a2, 4) +
                ", a1=" + number_text(at.a1, 4) + ", a0=" + number_text(at.a0, 4));
      row("-Log10", at.minus_log_P);
      row("min", at.minus_log_P_min);
      row("max", at.minus_log_P_max);
    }
  file.commit();
}

void class_clone_dist_table::write_tables(process_frame &frame, bool iid) const {
  for (const char *const p : {"a0", "a1", "a2", "n"})
    write_square_table(frame, p, iid ? 0 : 1);
  write_counts(frame, iid ? 0 : 1);
}

// ---- reading -------------------------------------------------------------------------------------------------------

namespace {

bool refuse(process_frame &frame, const line_reader &file, const std::string &what) {
  return frame.refuse("Tables of p-values were not loaded: " + what + " (" + file.place() + ").");
}

// The next line that has to be there.
bool needed_line(process_frame &frame, line_reader &file, std::string_view &line) {
  return file.next(line) || refuse(frame, file, "the file ends too early");
}

bool size_field(std::string_view field, std::int32_t expected) {
  std::int32_t value = 0;
  return whole_number_parse(field, value) && value == expected;
}

} // namespace

bool class_clone_dist_table::read_sizes(process_frame &frame, const fs::path &path) {
  line_reader file(path);
  std::string_view line;
  std::int32_t values[3] = {};
  if (!needed_line(frame, file, line)) // the title
    return false;
  for (std::int32_t &value : values) {
    if (!needed_line(frame, file, line) || !needed_line(frame, file, line)) // a caption, then its value
      return false;
    if (!whole_number_parse(line, value)) {
      number_from_text(frame, line);
      return refuse(frame, file, "\"" + std::string(line.substr(0, 40)) + "\" is no whole number");
    }
  }
  const std::string wrong = wrong_parameters(values[0], values[1], values[2]);
  if (!wrong.empty())
    return refuse(frame, file, wrong.substr(0, wrong.size() - 1));
  table_parameters_set(static_cast<std::int16_t>(values[0]), static_cast<std::int16_t>(values[1]),
                       static_cast<std::int16_t>(values[2]), 1);
  return true;
}

// A line of n_steps + 2 fields; only those up to the diagonal are read, the others repeat them.
bool class_clone_dist_table::read_square_table(process_frame &frame, const fs::path &path, int which, int mode) {
  line_reader file(path);
  std::string_view line;
  std::vector<std::string_view> fields;
  const auto next_row = [&](std::int32_t expected_size) {
    if (!needed_line(frame, file, line))
      return false;
    const std::int32_t n = class_serv_raznoe::cut_string_views(line, fields, n_steps_ + 2);
    if (n < n_steps_ + 2)
      return refuse(frame, file, std::to_string(n) + " fields where the table has " + std::to_string(n_steps_ + 2));
    return expected_size < 0 || size_field(fields[0], expected_size) ||
           refuse(frame, file, "a row of " + std::to_string(expected_size) + " bands was expected");
  };
  if (!next_row(-1))
    return false;
  for (std::int32_t j = 0; j <= n_steps_; ++j)
    if (!size_field(fields[static_cast<std::size_t>(j) + 1], size(j)))
      return refuse(frame, file, "the sizes of the columns aren't those of " + name_of_sizes_file().substr(1));
  for (std::int32_t i = 0; i <= n_steps_; ++i) {
    if (!next_row(size(i)))
      return false;
    for (std::int32_t j = 0; j <= i; ++j) {
      const std::string_view field = fields[static_cast<std::size_t>(j) + 1];
      double value = 0;
      if (!number_from_text_silent(field, value)) {
        number_from_text(frame, field.substr(0, 40));
        return refuse(frame, file, "a field is no number");
      }
      if (std::abs(value) > largest_coefficient)
        return refuse(frame, file, std::string(field.substr(0, 40)) + " can't be the coefficient of a curve");
      table_of_abc_parameters_for_one_situation_set(size(i), size(j), which, mode, value);
    }
  }
  return true;
}

bool class_clone_dist_table::read_tables_from_files(process_frame &frame, const fs::path &folder) {
  const auto path_of = [&](const char *p, int mode) {
    return process_frame::path_in_folder(folder, name_of_file(p, mode));
  };
  std::array<bool, n_modes> there{};
  for (int mode = 0; mode < n_modes; ++mode)
    for (const char *const p : fits) {
      std::error_code failed;
      there[static_cast<std::size_t>(mode)] |= fs::exists(path_of(p, mode), failed);
    }
  for (int mode = 0; mode < n_modes; ++mode) {
    const auto m = static_cast<std::size_t>(mode);
    if (!there[m] && there[1 - m])
      continue; // the tables were made in one mode
    for (int which = 0; which < 3; ++which)
      if (!read_square_table(frame, path_of(fits[which], mode), which, mode))
        return false;
    loaded_[m] = true;
  }
  return true;
}

bool class_clone_dist_table::run_read_tables(process_frame &frame, const fs::path &folder) {
  class_clone_dist_table read;
  if (!read.read_sizes(frame, process_frame::path_in_folder(folder, name_of_sizes_file())) ||
      !read.read_tables_from_files(frame, folder))
    return false;
  *this = std::move(read);
  return true;
}

} // namespace orb
