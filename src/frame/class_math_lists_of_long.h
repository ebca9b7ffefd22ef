// Ascending lists of whole numbers with the count in element 0, and closing the gap of a removed element.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/lists.h"

namespace orb {

class class_math_lists_of_long {
public:
  // Binary search over the whole list. A hit: `found`, and `position` is its place. A miss: the place behind which
  // the value belongs, from 0 to the count.
  static void finnd_in_ordered_list(std::int32_t value, const number_list &list, bool &found, std::int32_t &position);
  // The same on list(first..last): first - 1 below the part, last above it; an empty part gives first - 1.
  static void finnd_in_partially_ordered_list(std::int32_t value, const number_list &list, bool &found,
                                              std::int32_t &position, std::int32_t first, std::int32_t last);
  // Inserts an absent value; of a present one only `found` tells. Linear in what lies behind it.
  static void add_to_ordered_list(std::int32_t value, number_list &list, bool &found);
  // Equal values are kept once. `result` may be neither of the two.
  static void merge_two_oredered_lists(const number_list &list_1, const number_list &list_2, number_list &result);
  // The numbers of 1..n that the ascending list lacks.
  static void create_list_of_anti_elements(const number_list &list, std::int32_t n, number_list &result);

  // Close the gap of element i of elements 1..n (element 0 of the vectors is unused); n drops by one. An i out of
  // range changes nothing. Of a matrix both row i and column i go.
  static void remove_element_from_array_boolean(std::vector<bool> &array, std::int32_t &n, std::int32_t i);
  static void remove_element_from_array_long(number_list &list, std::int32_t i);
  static void remove_element_from_array_double(std::vector<double> &array, std::int32_t &n, std::int32_t i);
  static void remove_element_from_matrix_double(std::vector<std::vector<double>> &matrix, std::int32_t &n,
                                                std::int32_t i);
  static void remove_element_from_matrix_integer(std::vector<std::vector<std::int16_t>> &matrix, std::int32_t &n,
                                                 std::int32_t i);
};

} // namespace orb
