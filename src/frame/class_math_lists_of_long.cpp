#include "frame/class_math_lists_of_long.h"

#include <algorithm>

namespace orb {

void class_math_lists_of_long::finnd_in_ordered_list(std::int32_t value, const number_list &list, bool &found,
                                                     std::int32_t &position) {
  finnd_in_partially_ordered_list(value, list, found, position, 1, list.count());
}

void class_math_lists_of_long::finnd_in_partially_ordered_list(std::int32_t value, const number_list &list, bool &found,
                                                               std::int32_t &position, std::int32_t first,
                                                               std::int32_t last) {
  found = false;
  position = first - 1;
  if (last < first || value < list(first))
    return;
  // the largest place whose value isn't above the wanted one
  const std::span<const std::int32_t> part =
      list.members().subspan(static_cast<std::size_t>(first) - 1, static_cast<std::size_t>(last - first) + 1);
  position += static_cast<std::int32_t>(std::upper_bound(part.begin(), part.end(), value) - part.begin());
  found = list(position) == value;
}

void class_math_lists_of_long::add_to_ordered_list(std::int32_t value, number_list &list, bool &found) {
  std::int32_t position = 0;
  finnd_in_ordered_list(value, list, found, position);
  if (found)
    return;
  list.add(value);
  const std::span<std::int32_t> members = list.members();
  std::rotate(members.begin() + position, members.end() - 1, members.end());
}

void class_math_lists_of_long::merge_two_oredered_lists(const number_list &list_1, const number_list &list_2,
                                                        number_list &result) {
  const auto add = [&result](std::int32_t value) {
    if (result.empty() || result(result.count()) != value)
      result.add(value);
  };
  result.clear();
  std::int32_t i = 1, j = 1;
  while (i <= list_1.count() || j <= list_2.count()) {
    const bool from_1 = j > list_2.count() || (i <= list_1.count() && list_1(i) <= list_2(j));
    add(from_1 ? list_1(i++) : list_2(j++));
  }
}

void class_math_lists_of_long::create_list_of_anti_elements(const number_list &list, std::int32_t n,
                                                            number_list &result) {
  result.clear();
  std::int32_t at = 1;
  for (std::int32_t i = 1; i <= n; ++i) {
    while (at <= list.count() && list(at) < i)
      ++at;
    if (at > list.count() || list(at) != i)
      result.add(i);
  }
}

namespace {

// Whether element i of 1..n may be removed from a vector of this size.
bool can_remove(std::size_t size, std::int32_t n, std::int32_t i) {
  return i >= 1 && i <= n && static_cast<std::size_t>(n) < size;
}

template <class value>
void remove_from_matrix(std::vector<std::vector<value>> &matrix, std::int32_t &n, std::int32_t i) {
  if (!can_remove(matrix.size(), n, i))
    return;
  matrix.erase(matrix.begin() + i);
  for (std::vector<value> &row : matrix)
    if (can_remove(row.size(), i, i))
      row.erase(row.begin() + i);
  --n;
}

} // namespace

void class_math_lists_of_long::remove_element_from_array_boolean(std::vector<bool> &array, std::int32_t &n,
                                                                 std::int32_t i) {
  if (!can_remove(array.size(), n, i))
    return;
  array.erase(array.begin() + i);
  --n;
}

void class_math_lists_of_long::remove_element_from_array_long(number_list &list, std::int32_t i) {
  if (i < 1 || i > list.count())
    return;
  const std::span<std::int32_t> members = list.members();
  std::rotate(members.begin() + i - 1, members.begin() + i, members.end());
  list.resize(list.count() - 1);
}

void class_math_lists_of_long::remove_element_from_array_double(std::vector<double> &array, std::int32_t &n,
                                                                std::int32_t i) {
  if (!can_remove(array.size(), n, i))
    return;
  array.erase(array.begin() + i);
  --n;
}

void class_math_lists_of_long::remove_element_from_matrix_double(std::vector<std::vector<double>> &matrix,
                                                                 std::int32_t &n, std::int32_t i) {
  remove_from_matrix(matrix, n, i);
}

void class_math_lists_of_long::remove_element_from_matrix_integer(std::vector<std::vector<std::int16_t>> &matrix,
                                                                  std::int32_t &n, std::int32_t i) {
  remove_from_matrix(matrix, n, i);
}

} // namespace orb
