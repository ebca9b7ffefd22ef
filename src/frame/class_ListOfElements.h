// A list of elements 1..n_elements with its inverse: from position to element and from element to position.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/lists.h"

namespace orb {

class class_ListOfElements {
public:
  // Set the sizes; with `clear` all entries become -1 (no position, no member).
  void n_elements_set(std::int32_t n, bool clear);
  void n_members_in_list_set(std::int32_t n, bool clear);
  std::int32_t n_elements_get() const { return n_elements_; }
  std::int32_t n_members_in_list_get() const { return n_members_in_list_; }

  // Appends an element 1..n_elements; its address becomes the new position, also when it was in the list before.
  // An element out of range is refused: false.
  bool add_member(std::int32_t e);
  // -1 for an element that isn't in the list or out of range.
  std::int32_t element_adress_in_list_get(std::int32_t e) const;
  // -1 for a position out of range or never filled.
  std::int32_t member_of_list_antiadres_get(std::int32_t k) const;
  // The elements whose address is below 1, ascending.
  void list_of_elements_non_presented_get(number_list &list) const;
  // counts(e): how often element e stands in the list.
  void number_of_times_in_list_get(number_list &counts) const;

private:
  std::int32_t n_elements_ = 0, n_members_in_list_ = 0;
  std::vector<std::int32_t> element_adress_in_list_ = {-1};   // from 1
  std::vector<std::int32_t> member_of_list_antiadres_ = {-1}; // from 1
};

} // namespace orb
