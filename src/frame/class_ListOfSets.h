// A compact family of sets of positive numbers: all sets one after another in one flat array. Sets are numbered from
// 1; members keep the order in which they were given until something sorts them, and may repeat.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/lists.h"

namespace orb {

class process_frame;

class class_ListOfSets {
public:
  // Make room for n sets, or n members in all, and start with no set.
  void n_sets_max_set(std::int32_t n);
  void n_array_of_sets_max_set(std::int32_t n);

  // Appends a set: constant time a member, amortised.
  void add_set(std::span<const std::int32_t> members);
  void add_set(const number_list &list) { add_set(list.members()); }
  void add_set(const number_list &list, std::int32_t n) { add_set(list.members().first(static_cast<std::size_t>(n))); }

  std::int32_t n_sets_get() const { return n_sets_; }
  // Fewer sets drop the last ones, more of them add empty ones.
  void n_sets_set(std::int32_t n);
  std::int32_t element_max_get() const { return element_max_; } // the largest element ever added
  std::int32_t n_elements_get(std::int32_t s) const;            // 0 for a set out of range
  std::int32_t array_of_sets_length_get() const { return static_cast<std::int32_t>(array_of_sets_.size()) - 1; }

  // The members of set s without a copy, valid until the family changes; none for a set out of range.
  std::span<const std::int32_t> set_get(std::int32_t s) const;
  // list(0) = size; a set out of range gives an empty list.
  void list_of_elements_get(std::int32_t s, number_list &list) const;
  // The numbers of 1..n that aren't in set s, ascending.
  void list_of_non_elements_get(std::int32_t s, std::int32_t n, number_list &list) const;
  // Each set ascending.
  void sort_array_of_sets();
  // The numbers that two ascending sets have in common.
  void list_of_common_elements_of_ordered_sets_get(std::int32_t a, std::int32_t b, number_list &list) const;
  // The sets of this family, then the other's. `result` may be neither of the two.
  void unite_with_another_list_of_sets(const class_ListOfSets &other, class_ListOfSets &result) const;
  // In how many set places an element stands; for all elements 1..element_max at once.
  std::int32_t element_times_get(std::int32_t e) const;
  void elements_times_get(number_list &counts) const;
  void recalculate_element_max();

  // Makes this family the dual of the source: set e holds, ascending, the numbers of the source's sets that hold
  // element e (once for each place). n_sets_wanted below 1: as many sets as the source's element_max; elements above
  // n_sets_wanted are passed over. Linear.
  void make_ListOfSets_dual(const class_ListOfSets &source, std::int32_t n_sets_wanted);
  // Removes an element from all sets.
  void delete_element(std::int32_t e);
  // The new member k of set s is the one formerly at place order(k).
  void order_of_elements_in_set_set(std::int32_t s, const number_list &order);

  // Sorts each set and the family, then keeps one copy of each set; order inside sets is lost.
  void exclude_repeats_of_sets();
  // Does set a come before set b: by size, then member by member.
  bool set_is_before(std::int32_t a, std::int32_t b) const;
  // Sorts set numbers order(first..last) by `set_is_before`, equal sets by number; order_inverse(s) = the place of
  // set s. `start` first fills order with 1..n_sets. The sets themselves stay where they are.
  void quicksort_sets(std::int32_t first, std::int32_t last, number_list &order, number_list &order_inverse,
                      bool start) const;

  // Collects pairs (set number, element) for `update_from_lists_of_pairs`. A number that isn't positive shows
  // "error in adding!" and adds nothing.
  void add_to_temp_list_of_elements_for_set(process_frame &frame, std::int32_t s, std::int32_t e);
  // The family will have at least so many sets after the update.
  void temp_list_of_elements_for_set_set_number_max_set(std::int32_t n);
  // Rebuilds the family from what it holds and the pairs collected since, by counting sort on the set number: members
  // of a set stand in their former order, then those of the pairs as they came. The number of sets is the largest set
  // number among members and pairs, or the one that was forced. With no member and no pair at all the family becomes
  // empty. The pair list is empty afterwards.
  void update_from_lists_of_pairs();

private:
  std::span<std::int32_t> set_of(std::int32_t s);

  std::int32_t n_sets_ = 0;
  std::vector<std::int32_t> array_of_sets_ = {0};    // from 1
  std::vector<std::int32_t> adress_of_set_ = {0, 1}; // from 1; the entry behind the last set is the end
  std::int32_t element_max_ = 0;
  std::vector<std::int32_t> temp_set_, temp_element_; // the collected pairs
  std::int32_t temp_set_number_max_ = 0;
};

} // namespace orb
