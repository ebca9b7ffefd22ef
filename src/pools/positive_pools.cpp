#include "pools/positive_pools.h"

#include <numeric>

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

std::int32_t number_from_letter(char letter) {
  if (letter >= 'A' && letter <= 'Z')
    return letter - 'A' + 1;
  return letter >= 'a' && letter <= 'z' ? letter - 'a' + 1 : -1;
}

std::string letter_from_number(process_frame &frame, std::int32_t number, bool upper) {
  if (number > most_pool_rows) {
    frame.message("Number " + std::to_string(number) + ">26 (total number of letters)", "Letter from number");
    return {};
  }
  return std::string(1, static_cast<char>((upper ? 'A' : 'a') + number - 1));
}

std::string name_of_pool(std::size_t dimension, std::int32_t pool) {
  if (dimension == pool_rows)
    return std::string(1, static_cast<char>('A' + pool - 1));
  return (dimension == pool_plates ? "P" : "") + std::to_string(pool);
}

// ---- marks ----

positive_pools::positive_pools(const pool_sizes &sizes) {
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    is_positive_[d].assign(static_cast<std::size_t>(sizes[d]) + 1, 0);
}

positive_pools::positive_pools(const pool_sizes &sizes, const pool_lists &lists) : positive_pools(sizes) {
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    for (const std::int32_t pool : lists[d].members())
      set(d, pool);
}

void positive_pools::clear() {
  for (auto &marks : is_positive_)
    std::fill(marks.begin(), marks.end(), std::uint8_t{0});
}

std::int32_t positive_pools::count() const {
  std::int32_t n = 0;
  for (const auto &marks : is_positive_)
    n += std::accumulate(marks.begin(), marks.end(), 0);
  return n;
}

// ---- one case ----

namespace {

class positive_pools_reader {
public:
  positive_pools_reader(process_frame &frame, const std::filesystem::path &file, const pool_sizes &sizes,
                        pool_lists &lists)
      : frame_(frame), lines_(file), sizes_(sizes), lists_(lists) {}

  bool read() {
    for (number_list &list : lists_)
      list.mark_unreadable();
    if (!next() || !read_list(pool_plates, count_behind(8)))
      return false;
    if (!next())
      return false;
    // A heading says by itself which list it opens; what says neither opens the columns, with the count of rows.
    const bool rows_first = begins("row");
    const std::size_t second = rows_first ? pool_rows : pool_columns;
    if (!read_list(second, count_behind(begins("col") ? 9 : 6)) || !next())
      return false;
    return read_list(rows_first ? pool_columns : pool_rows, count_behind(begins("row") ? 6 : 9)) && warn_of_rest();
  }

private:
  bool refuse(const std::string &why) { return frame_.refuse(why + "\r\n" + lines_.place()); }

  bool next() {
    if (!lines_.next(line_))
      return refuse("The file with positive pools ends too early.");
    const std::string why = why_no_text(line_);
    return why.empty() || refuse("The file with positive pools is no text: " + why + ".");
  }

  bool begins(std::string_view word) const {
    return class_serv_raznoe::text_transform_to_lower_case(line_.substr(0, word.size())) == word;
  }

  // -1 when it is no count.
  std::int32_t count_behind(std::size_t n_characters) const {
    std::int32_t count = -1;
    if (line_.size() <= n_characters || !whole_number_parse(line_.substr(n_characters), count))
      return -1;
    return count;
  }

  std::int32_t pool_of_line(std::size_t dimension) const {
    std::string_view text = line_;
    std::int32_t pool = -1;
    if (dimension == pool_rows) {
      const std::size_t at = text.find_first_not_of(" \t");
      if (at == std::string_view::npos || text.find_last_not_of(" \t") != at)
        return -1;
      return number_from_letter(text[at]);
    }
    if (dimension == pool_plates)
      text = text.substr(std::min<std::size_t>(text.size(), 1));
    return whole_number_parse(text, pool) ? pool : -1;
  }

  bool read_list(std::size_t dimension, std::int32_t count) {
    if (count < 0)
      return refuse("The count of a list of positive pools is no number from 0 on.");
    number_list list;
    std::vector<bool> there(static_cast<std::size_t>(sizes_[dimension]) + 1);
    for (std::int32_t i = 0; i < count; ++i) {
      if (!next())
        return false;
      const std::int32_t pool = pool_of_line(dimension);
      if (pool < 1 || pool > sizes_[dimension])
        return refuse("This is no pool of the scheme, which has " + std::to_string(sizes_[pool_plates]) + " plates, " +
                      std::to_string(sizes_[pool_rows]) + " rows and " + std::to_string(sizes_[pool_columns]) +
                      " columns.");
      if (there[static_cast<std::size_t>(pool)])
        frame_.doubt("Pool " + name_of_pool(dimension, pool) + " stands there twice", lines_.place());
      else
        list.add(pool);
      there[static_cast<std::size_t>(pool)] = true;
    }
    lists_[dimension] = std::move(list);
    return true;
  }

  bool warn_of_rest() {
    while (lines_.next(line_))
      if (line_.find_first_not_of(" \t") != std::string_view::npos) {
        frame_.doubt("Behind the last list there is more, which isn't read", lines_.place());
        break;
      }
    return true;
  }

  process_frame &frame_;
  line_reader lines_;
  const pool_sizes &sizes_;
  pool_lists &lists_;
  std::string_view line_;
};

} // namespace

bool read_list_of_positive_pools(process_frame &frame, const std::filesystem::path &file, const pool_sizes &sizes,
                                 pool_lists &lists) {
  return positive_pools_reader(frame, file, sizes, lists).read();
}

// ---- a table of probes ----

probe_reader::probe_reader(process_frame &frame, const std::filesystem::path &file, const pool_sizes &sizes)
    : frame_(frame), lines_(file), sizes_(sizes) {
  std::string_view line;
  if (lines_.next(line)) {
    heads_ = line;
    wrong_heads_ = why_no_text(line);
  }
}

probe_reader::piece probe_reader::refused(const std::string &why) {
  frame_.refuse(why + "\r\n" + lines_.place());
  return piece::refused;
}

probe_reader::piece probe_reader::next(probe &read) {
  if (!wrong_heads_.empty())
    return refused("The table of probes is no text: " + wrong_heads_ + ".");
  do
    if (!lines_.next(read.line))
      return piece::end;
  while (read.line.find_first_not_of(" \t") == std::string_view::npos);
  if (const std::string why = why_no_text(read.line); !why.empty())
    return refused("The table of probes is no text: " + why + ".");
  class_serv_raznoe::cut_string_views(read.line, fields_);
  read.name = fields_[0];
  read.positive.clear();
  std::size_t field = 1;
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    for (std::int32_t pool = 1; pool <= sizes_[d] && field < fields_.size(); ++pool, ++field)
      if (fields_[field].find_first_not_of(' ') != std::string_view::npos) {
        read.positive.set(d, pool);
        if (fields_[field] == "0" || fields_[field] == "-")
          frame_.doubt("A pool is marked " + std::string(fields_[field]) + ", and positive by that, as by any mark",
                       lines_.place());
      }
  for (; field < fields_.size(); ++field)
    if (fields_[field].find_first_not_of(' ') != std::string_view::npos)
      return refused("The probe has a mark behind the last of the " +
                     std::to_string(sizes_[0] + sizes_[1] + sizes_[2]) + " pools.");
  read.n_positive = read.positive.count();
  return piece::probe;
}

} // namespace orb
