#include "frame/class_text_table.h"

#include <algorithm>
#include <map>
#include <set>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"

namespace orb {

namespace {

const std::string empty_cell;

std::string joined(const std::vector<std::string_view> &cells) {
  std::string text;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0)
      text += '\t';
    text += cells[i];
  }
  return text;
}

// The parts of a text between separators; the text as the only part when the separator is empty.
std::vector<std::string> parts_of(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  std::size_t end = separator.empty() ? std::string_view::npos : text.find(separator);
  for (; end != std::string_view::npos; end = text.find(separator)) {
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end + separator.size());
  }
  parts.emplace_back(text);
  return parts;
}

} // namespace

const std::string &class_text_table::text_in_cell_get(std::int32_t row, std::int32_t column) const {
  if (row < 1 || row > n_rows_get() || column < 1)
    return empty_cell;
  const std::vector<std::string> &cells = rows_[static_cast<std::size_t>(row) - 1];
  return static_cast<std::size_t>(column) <= cells.size() ? cells[static_cast<std::size_t>(column) - 1] : empty_cell;
}

void class_text_table::text_in_cell_set(std::int32_t row, std::int32_t column, std::string_view text) {
  if (row < 1 || column < 1)
    return;
  if (row > n_rows_get())
    rows_.resize(static_cast<std::size_t>(row));
  std::vector<std::string> &cells = rows_[static_cast<std::size_t>(row) - 1];
  if (static_cast<std::size_t>(column) > cells.size())
    cells.resize(static_cast<std::size_t>(column));
  cells[static_cast<std::size_t>(column) - 1] = text;
  n_columns_ = std::max(n_columns_, column);
}

std::string class_text_table::text_in_row_get(std::int32_t row) const {
  std::vector<std::string_view> cells;
  for (std::int32_t column = 1; column <= n_columns_; ++column)
    cells.push_back(text_in_cell_get(row, column));
  return joined(cells);
}

std::string class_text_table::text_in_row_interesting_columns_get(std::int32_t row) const {
  std::vector<std::string_view> cells;
  for (const std::int32_t column : interesting_columns_.members())
    cells.push_back(text_in_cell_get(row, column));
  return joined(cells);
}

void class_text_table::row_add(std::vector<std::string> cells) {
  n_columns_ = std::max(n_columns_, static_cast<std::int32_t>(cells.size()));
  rows_.push_back(std::move(cells));
}

void class_text_table::read_rows(const std::filesystem::path &file, std::string_view separator, bool empty_lines) {
  class_text_table read;
  line_reader reader(file);
  for (std::string_view line; reader.next(line);)
    if (empty_lines || !line.empty())
      read.row_add(parts_of(line, separator));
  read.interesting_columns_all_set();
  read.file_name_ = file.string();
  read.file_pure_name_ = class_serv_raznoe::extract_pure_file_name(read.file_name_);
  read.file_path_ = class_serv_raznoe::path_of_file(read.file_name_);
  *this = std::move(read);
}

void class_text_table::read_text_table_from_file(const std::filesystem::path &file) {
  read_rows(file, "\t", true);
}

void class_text_table::read_text_table_from_file_new(const std::filesystem::path &file, std::string_view separator) {
  read_rows(file, separator, false);
}

void class_text_table::print_table(const std::filesystem::path &file) const {
  result_file out(file);
  for (std::int32_t row = 1; row <= n_rows_get(); ++row)
    out.line(text_in_row_interesting_columns_get(row));
  out.commit();
}

void class_text_table::unite_two_text_table(const class_text_table &first, std::int32_t key_column_1,
                                            const class_text_table &second, std::int32_t key_column_2,
                                            class_text_table &result) {
  std::map<std::string_view, std::int32_t> row_of_key;
  for (std::int32_t row = 1; row <= second.n_rows_get(); ++row)
    row_of_key.emplace(second.text_in_cell_get(row, key_column_2), row); // the first of several stays
  class_text_table united;
  for (std::int32_t row = 1; row <= first.n_rows_get(); ++row) {
    std::vector<std::string> cells;
    for (std::int32_t column = 1; column <= first.n_columns_; ++column)
      cells.push_back(first.text_in_cell_get(row, column));
    const auto partner = row_of_key.find(first.text_in_cell_get(row, key_column_1));
    const std::int32_t partner_row = partner == row_of_key.end() ? 0 : partner->second;
    for (std::int32_t column = 1; column <= second.n_columns_; ++column)
      cells.push_back(second.text_in_cell_get(partner_row, column));
    united.row_add(std::move(cells));
  }
  united.interesting_columns_all_set();
  result = std::move(united);
}

void class_text_table::select_from_text_table(std::int32_t column, const std::vector<std::string> &values,
                                              std::int32_t n_head_rows, class_text_table &result) const {
  const std::set<std::string_view> wanted(values.begin(), values.end());
  class_text_table selected;
  for (std::int32_t row = 1; row <= n_rows_get(); ++row)
    if (row <= n_head_rows || wanted.count(text_in_cell_get(row, column)) > 0)
      selected.row_add(rows_[static_cast<std::size_t>(row) - 1]);
  selected.n_columns_ = n_columns_;
  selected.interesting_columns_ = interesting_columns_;
  result = std::move(selected);
}

void class_text_table::split_column(std::int32_t column, std::string_view separator) {
  if (column < 1 || column > n_columns_)
    return;
  std::size_t widest = 1;
  for (std::int32_t row = 1; row <= n_rows_get(); ++row)
    widest = std::max(widest, parts_of(text_in_cell_get(row, column), separator).size());
  if (widest == 1)
    return;
  for (std::vector<std::string> &cells : rows_) {
    const std::size_t at = static_cast<std::size_t>(column) - 1;
    if (cells.size() <= at)
      continue; // the row ends before the column
    std::vector<std::string> parts = parts_of(cells[at], separator);
    parts.resize(widest);
    cells.erase(cells.begin() + column - 1);
    cells.insert(cells.begin() + column - 1, parts.begin(), parts.end());
  }
  n_columns_ += static_cast<std::int32_t>(widest) - 1;
  interesting_columns_all_set();
}

std::int32_t class_text_table::findRowNumber(std::int32_t column, std::string_view text) const {
  for (std::int32_t row = 1; row <= n_rows_get(); ++row)
    if (text_in_cell_get(row, column) == text)
      return row;
  return -1;
}

} // namespace orb
