// class_serv_raznoe: sorting and searching arrays of strings and numbers.
#include <algorithm>

#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/sorting.h"

namespace orb {

namespace {

// The first 8 bytes as a number that compares as they do; shorter texts are filled up with 0.
std::uint64_t first_bytes(const std::string &text) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < 8; ++i)
    number = number << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0u);
  return number;
}

std::vector<std::uint32_t> places_of_strings(const std::string *list, std::size_t n) {
  struct key {
    std::uint64_t start;
    std::uint32_t place;
  };
  std::vector<key> keys(n);
  for (std::size_t i = 0; i < n; ++i)
    keys[i] = {first_bytes(list[i]), static_cast<std::uint32_t>(i)};
  std::sort(keys.begin(), keys.end(), [list](const key &a, const key &b) {
    if (a.start != b.start)
      return a.start < b.start;
    const int order = list[a.place].compare(list[b.place]);
    return order != 0 ? order < 0 : a.place < b.place;
  });
  std::vector<std::uint32_t> places(n);
  for (std::size_t i = 0; i < n; ++i)
    places[i] = keys[i].place;
  return places;
}

} // namespace

void class_serv_raznoe::quicksort_string(std::vector<std::string> &list, std::vector<std::int32_t> &index,
                                         std::int32_t first, std::int32_t last, bool fill_index) {
  sort_with_index(list, index, first, last, fill_index, places_of_strings);
}

void class_serv_raznoe::finnd_in_partially_ordered_list_string(std::string_view key,
                                                               const std::vector<std::string> &list, bool &found,
                                                               std::int32_t &position, std::int32_t first,
                                                               std::int32_t last) {
  found = true;
  if (last < first) {
    found = false;
    position = first - 1;
    return;
  }
  const auto compared = [&](std::int32_t place) { return key.compare(list[static_cast<std::size_t>(place)]); };
  const int with_first = compared(first);
  position = with_first < 0 ? first - 1 : first;
  if (with_first <= 0) {
    found = with_first == 0;
    return;
  }
  const int with_last = compared(last);
  position = last;
  if (with_last >= 0) {
    found = with_last == 0;
    return;
  }
  while (last - first > 1) {
    position = first + (last - first) / 2;
    const int with_middle = compared(position);
    if (with_middle == 0)
      return;
    (with_middle > 0 ? first : last) = position;
  }
  found = false;
  position = first;
}

void class_serv_raznoe::find_number_long(std::int32_t value, number_list &list, bool &not_found, bool add,
                                         std::int32_t &position) {
  not_found = false;
  for (position = 1; position <= list.count(); ++position)
    if (list(position) == value)
      return;
  not_found = true;
  position = -1;
  if (!add)
    return;
  list.add(value);
  position = list.count();
}

void class_serv_raznoe::array_string_1_minus_2(const std::vector<std::string> &list_1,
                                               const std::vector<std::string> &list_2,
                                               std::vector<std::string> &result) {
  std::vector<std::string> rest(1);
  if (!list_1.empty())
    std::set_difference(list_1.begin() + 1, list_1.end(), list_2.begin() + !list_2.empty(), list_2.end(),
                        std::back_inserter(rest));
  result = std::move(rest);
}

void class_serv_raznoe::array_string_1_and_2(const std::vector<std::string> &list_1,
                                             const std::vector<std::string> &list_2, std::vector<std::string> &result) {
  std::vector<std::string> common(1);
  if (!list_1.empty())
    std::set_intersection(list_1.begin() + 1, list_1.end(), list_2.begin() + !list_2.empty(), list_2.end(),
                          std::back_inserter(common));
  result = std::move(common);
}

namespace {

void sort_and_delete_repeats(std::vector<std::string> &list) {
  std::sort(list.begin() + 1, list.end());
  list.erase(std::unique(list.begin() + 1, list.end()), list.end());
}

} // namespace

void class_serv_raznoe::array_string_1_and_2_run(const std::filesystem::path &file_1,
                                                 const std::filesystem::path &file_2,
                                                 const std::filesystem::path &result) {
  std::vector<std::string> list_1, list_2, common;
  read_array_string_from_file(file_1, list_1);
  read_array_string_from_file(file_2, list_2);
  sort_and_delete_repeats(list_1);
  sort_and_delete_repeats(list_2);
  array_string_1_and_2(list_1, list_2, common);
  array_string_print_to_file(result, common);
}

void class_serv_raznoe::array_string_sort_run(const std::filesystem::path &file, const std::filesystem::path &result) {
  std::vector<std::string> list;
  read_array_string_from_file(file, list);
  sort_and_delete_repeats(list);
  array_string_print_to_file(result, list);
}

void class_serv_raznoe::read_array_string_from_file(const std::filesystem::path &file, std::vector<std::string> &list) {
  std::vector<std::string> lines(1);
  line_reader reader(file);
  for (std::string_view line; reader.next(line);)
    lines.emplace_back(line);
  list = std::move(lines);
}

void class_serv_raznoe::array_string_print_to_file(const std::filesystem::path &file,
                                                   const std::vector<std::string> &list) {
  result_file out(file);
  for (std::size_t i = 1; i < list.size(); ++i)
    out.line(list[i]);
  out.commit();
}

} // namespace orb
