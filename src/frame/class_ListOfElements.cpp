#include "frame/class_ListOfElements.h"

#include <algorithm>

namespace orb {

void class_ListOfElements::n_elements_set(std::int32_t n, bool clear) {
  n_elements_ = std::max(n, 0);
  if (clear)
    element_adress_in_list_.clear();
  element_adress_in_list_.resize(static_cast<std::size_t>(n_elements_) + 1, -1);
}

void class_ListOfElements::n_members_in_list_set(std::int32_t n, bool clear) {
  n_members_in_list_ = std::max(n, 0);
  if (clear)
    member_of_list_antiadres_.clear();
  member_of_list_antiadres_.resize(static_cast<std::size_t>(n_members_in_list_) + 1, -1);
}

bool class_ListOfElements::add_member(std::int32_t e) {
  if (e < 1 || e > n_elements_)
    return false;
  member_of_list_antiadres_.push_back(e);
  element_adress_in_list_[static_cast<std::size_t>(e)] = ++n_members_in_list_;
  return true;
}

std::int32_t class_ListOfElements::element_adress_in_list_get(std::int32_t e) const {
  return e < 1 || e > n_elements_ ? -1 : element_adress_in_list_[static_cast<std::size_t>(e)];
}

std::int32_t class_ListOfElements::member_of_list_antiadres_get(std::int32_t k) const {
  return k < 1 || k > n_members_in_list_ ? -1 : member_of_list_antiadres_[static_cast<std::size_t>(k)];
}

void class_ListOfElements::list_of_elements_non_presented_get(number_list &list) const {
  list.clear();
  for (std::int32_t e = 1; e <= n_elements_; ++e)
    if (element_adress_in_list_[static_cast<std::size_t>(e)] < 1)
      list.add(e);
}

void class_ListOfElements::number_of_times_in_list_get(number_list &counts) const {
  counts.clear();
  counts.resize(n_elements_);
  for (std::int32_t k = 1; k <= n_members_in_list_; ++k) {
    const std::int32_t e = member_of_list_antiadres_[static_cast<std::size_t>(k)];
    if (e >= 1 && e <= n_elements_)
      ++counts(e);
  }
}

} // namespace orb
