// A whole text table in memory: rows and columns of strings, numbered from 1.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "frame/lists.h"

namespace orb {

class class_text_table {
public:
  std::int32_t n_rows_get() const { return static_cast<std::int32_t>(rows_.size()); }
  std::int32_t n_columns_get() const { return n_columns_; } // of the longest row

  // Empty for a cell that isn't there.
  const std::string &text_in_cell_get(std::int32_t row, std::int32_t column) const;
  // Makes the table larger where the cell lies outside it; numbers below 1 are passed over.
  void text_in_cell_set(std::int32_t row, std::int32_t column, std::string_view text);
  // The cells of a row with tabs between them, all columns.
  std::string text_in_row_get(std::int32_t row) const;
  // The interesting columns of a row, in the order of their list.
  std::string text_in_row_interesting_columns_get(std::int32_t row) const;
  void interesting_columns_set(const number_list &columns) { interesting_columns_ = columns; }
  void interesting_columns_all_set() { interesting_columns_ = number_list::range(1, n_columns_); }

  // Of the file last read: its whole name, its name without folder and extension, its folder with a separator.
  const std::string &file_name_get() const { return file_name_; }
  const std::string &file_pure_name_get() const { return file_pure_name_; }
  const std::string &file_path_get() const { return file_path_; }

  // Reads a tab-separated file, every line a row, shorter rows ending in empty cells; all columns are interesting
  // afterwards. The table is left as it was when the file can't be read: throws file_error.
  void read_text_table_from_file(const std::filesystem::path &file);
  // The same with a separator of any length; empty lines are passed over.
  void read_text_table_from_file_new(const std::filesystem::path &file, std::string_view separator);
  // Writes the interesting columns of all rows, tab-separated.
  void print_table(const std::filesystem::path &file) const;

  // Rows of both tables whose cells in the key columns are equal, side by side; a row of the first table without a
  // partner keeps empty cells, and the first partner counts when there are several.
  static void unite_two_text_table(const class_text_table &first, std::int32_t key_column_1,
                                   const class_text_table &second, std::int32_t key_column_2, class_text_table &result);
  // The rows whose cell in a column is one of the values; the first `n_head_rows` rows are kept in any case.
  void select_from_text_table(std::int32_t column, const std::vector<std::string> &values, std::int32_t n_head_rows,
                              class_text_table &result) const;
  // Splits the cells of a column at a separator into as many columns as the richest cell needs.
  void split_column(std::int32_t column, std::string_view separator);
  // The first row whose cell in a column is the text; -1 when there is none.
  std::int32_t findRowNumber(std::int32_t column, std::string_view text) const;

private:
  void read_rows(const std::filesystem::path &file, std::string_view separator, bool empty_lines);
  void row_add(std::vector<std::string> cells);

  std::vector<std::vector<std::string>> rows_;
  std::int32_t n_columns_ = 0;
  number_list interesting_columns_;
  std::string file_name_, file_pure_name_, file_path_;
};

} // namespace orb
