#include "frame/class_ListOfSets.h"

#include <algorithm>

#include "frame/process_frame.h"

namespace orb {

namespace {

std::size_t place(std::int32_t number) {
  return static_cast<std::size_t>(number);
}

} // namespace

void class_ListOfSets::n_sets_max_set(std::int32_t n) {
  n_sets_set(0);
  adress_of_set_.reserve(place(std::max(n, 0)) + 2);
}

void class_ListOfSets::n_array_of_sets_max_set(std::int32_t n) {
  n_sets_set(0);
  array_of_sets_.reserve(place(std::max(n, 0)) + 1);
}

void class_ListOfSets::n_sets_set(std::int32_t n) {
  n = std::max(n, 0);
  adress_of_set_.resize(place(n) + 2, adress_of_set_.back());
  if (n < n_sets_)
    array_of_sets_.resize(place(adress_of_set_.back()));
  if (n == 0)
    element_max_ = 0;
  n_sets_ = n;
}

void class_ListOfSets::add_set(std::span<const std::int32_t> members) {
  const bool own = !members.empty() && members.data() >= array_of_sets_.data() &&
                   members.data() < array_of_sets_.data() + array_of_sets_.size();
  if (own) { // the array may move while it grows
    const std::vector<std::int32_t> copy(members.begin(), members.end());
    add_set(copy);
    return;
  }
  if (!members.empty()) {
    const std::int32_t largest = *std::max_element(members.begin(), members.end());
    // the first member of all begins the maximum, so that it isn't held up by a 0 of no set
    element_max_ = array_of_sets_length_get() == 0 ? largest : std::max(element_max_, largest);
  }
  array_of_sets_.insert(array_of_sets_.end(), members.begin(), members.end());
  adress_of_set_.push_back(static_cast<std::int32_t>(array_of_sets_.size()));
  ++n_sets_;
}

std::span<const std::int32_t> class_ListOfSets::set_get(std::int32_t s) const {
  if (s < 1 || s > n_sets_)
    return {};
  const std::int32_t begin = adress_of_set_[place(s)];
  return {array_of_sets_.data() + begin, place(adress_of_set_[place(s) + 1] - begin)};
}

std::span<std::int32_t> class_ListOfSets::set_of(std::int32_t s) {
  const std::span<const std::int32_t> set = set_get(s);
  return {set.empty() ? nullptr : array_of_sets_.data() + adress_of_set_[place(s)], set.size()};
}

std::int32_t class_ListOfSets::n_elements_get(std::int32_t s) const {
  return static_cast<std::int32_t>(set_get(s).size());
}

void class_ListOfSets::list_of_elements_get(std::int32_t s, number_list &list) const {
  list.clear();
  for (const std::int32_t e : set_get(s))
    list.add(e);
}

void class_ListOfSets::list_of_non_elements_get(std::int32_t s, std::int32_t n, number_list &list) const {
  std::vector<bool> is_element(place(std::max(n, 0)) + 1, false);
  for (const std::int32_t e : set_get(s))
    if (e >= 1 && e <= n)
      is_element[place(e)] = true;
  list.clear();
  for (std::int32_t e = 1; e <= n; ++e)
    if (!is_element[place(e)])
      list.add(e);
}

void class_ListOfSets::sort_array_of_sets() {
  for (std::int32_t s = 1; s <= n_sets_; ++s) {
    const std::span<std::int32_t> set = set_of(s);
    std::sort(set.begin(), set.end());
  }
}

void class_ListOfSets::list_of_common_elements_of_ordered_sets_get(std::int32_t a, std::int32_t b,
                                                                   number_list &list) const {
  const std::span<const std::int32_t> set_a = set_get(a), set_b = set_get(b);
  list.clear();
  std::size_t i = 0, j = 0;
  while (i < set_a.size() && j < set_b.size()) {
    if (set_a[i] == set_b[j])
      list.add(set_a[i]);
    const bool step_a = set_a[i] <= set_b[j], step_b = set_b[j] <= set_a[i];
    i += step_a;
    j += step_b;
  }
}

void class_ListOfSets::unite_with_another_list_of_sets(const class_ListOfSets &other, class_ListOfSets &result) const {
  result.n_sets_max_set(n_sets_ + other.n_sets_);
  result.n_array_of_sets_max_set(array_of_sets_length_get() + other.array_of_sets_length_get());
  for (std::int32_t s = 1; s <= n_sets_; ++s)
    result.add_set(set_get(s));
  for (std::int32_t s = 1; s <= other.n_sets_; ++s)
    result.add_set(other.set_get(s));
}

std::int32_t class_ListOfSets::element_times_get(std::int32_t e) const {
  return static_cast<std::int32_t>(std::count(array_of_sets_.begin() + 1, array_of_sets_.end(), e));
}

void class_ListOfSets::elements_times_get(number_list &counts) const {
  counts.clear();
  counts.resize(std::max(element_max_, 0));
  for (std::size_t i = 1; i < array_of_sets_.size(); ++i)
    if (array_of_sets_[i] >= 1)
      ++counts(array_of_sets_[i]);
}

void class_ListOfSets::recalculate_element_max() {
  element_max_ = array_of_sets_.size() > 1 ? *std::max_element(array_of_sets_.begin() + 1, array_of_sets_.end()) : 0;
}

void class_ListOfSets::make_ListOfSets_dual(const class_ListOfSets &source, std::int32_t n_sets_wanted) {
  if (&source == this) {
    const class_ListOfSets copy = source;
    make_ListOfSets_dual(copy, n_sets_wanted);
    return;
  }
  const std::int32_t n = std::max(n_sets_wanted < 1 ? source.element_max_ : n_sets_wanted, 0);
  // behind(e): first the size of set e, then its end, lowered while it fills from the last source set down
  std::vector<std::int32_t> behind(place(n) + 2, 0);
  for (std::size_t i = 1; i < source.array_of_sets_.size(); ++i) {
    const std::int32_t e = source.array_of_sets_[i];
    if (e >= 1 && e <= n)
      ++behind[place(e)];
  }
  behind[0] = 1;
  for (std::int32_t e = 1; e <= n; ++e)
    behind[place(e)] += behind[place(e) - 1];
  behind[place(n) + 1] = behind[place(n)];
  array_of_sets_.assign(place(behind[place(n)]), 0);
  for (std::int32_t s = source.n_sets_; s >= 1; --s)
    for (const std::int32_t e : source.set_get(s))
      if (e >= 1 && e <= n)
        array_of_sets_[place(--behind[place(e)])] = s;
  behind[0] = 0;
  adress_of_set_ = std::move(behind);
  n_sets_ = n;
  recalculate_element_max();
}

void class_ListOfSets::delete_element(std::int32_t e) {
  std::size_t kept = 1;
  std::size_t at = 1;
  for (std::int32_t s = 1; s <= n_sets_; ++s) {
    const std::size_t end = place(adress_of_set_[place(s) + 1]);
    adress_of_set_[place(s)] = static_cast<std::int32_t>(kept);
    for (; at < end; ++at)
      if (array_of_sets_[at] != e)
        array_of_sets_[kept++] = array_of_sets_[at];
  }
  adress_of_set_[place(n_sets_) + 1] = static_cast<std::int32_t>(kept);
  array_of_sets_.resize(kept);
  recalculate_element_max();
}

void class_ListOfSets::order_of_elements_in_set_set(std::int32_t s, const number_list &order) {
  const std::span<std::int32_t> set = set_of(s);
  const std::vector<std::int32_t> former(set.begin(), set.end());
  const std::int32_t n = std::min(order.count(), static_cast<std::int32_t>(set.size()));
  for (std::int32_t k = 1; k <= n; ++k) {
    const std::int32_t from = order(k);
    if (from >= 1 && place(from) <= former.size())
      set[place(k) - 1] = former[place(from) - 1];
  }
}

bool class_ListOfSets::set_is_before(std::int32_t a, std::int32_t b) const {
  const std::span<const std::int32_t> set_a = set_get(a), set_b = set_get(b);
  if (set_a.size() != set_b.size())
    return set_a.size() < set_b.size();
  return std::lexicographical_compare(set_a.begin(), set_a.end(), set_b.begin(), set_b.end());
}

void class_ListOfSets::quicksort_sets(std::int32_t first, std::int32_t last, number_list &order,
                                      number_list &order_inverse, bool start) const {
  if (start)
    order = number_list::range(1, n_sets_);
  first = std::max(first, 1);
  last = std::min(last, order.count());
  if (first < last) {
    const std::span<std::int32_t> part = order.members().subspan(place(first) - 1, place(last - first) + 1);
    std::sort(part.begin(), part.end(), [this](std::int32_t a, std::int32_t b) {
      if (set_is_before(a, b))
        return true;
      return !set_is_before(b, a) && a < b;
    });
  }
  order_inverse.clear();
  order_inverse.resize(n_sets_);
  for (std::int32_t k = 1; k <= order.count(); ++k)
    if (order(k) >= 1 && order(k) <= n_sets_)
      order_inverse(order(k)) = k;
}

void class_ListOfSets::exclude_repeats_of_sets() {
  sort_array_of_sets();
  number_list order, order_inverse;
  quicksort_sets(1, n_sets_, order, order_inverse, true);
  class_ListOfSets kept;
  kept.n_sets_max_set(n_sets_);
  kept.n_array_of_sets_max_set(array_of_sets_length_get());
  for (std::int32_t k = 1; k <= n_sets_; ++k)
    if (k == 1 || set_is_before(order(k - 1), order(k)))
      kept.add_set(set_get(order(k)));
  n_sets_ = kept.n_sets_;
  array_of_sets_ = std::move(kept.array_of_sets_);
  adress_of_set_ = std::move(kept.adress_of_set_);
}

void class_ListOfSets::add_to_temp_list_of_elements_for_set(process_frame &frame, std::int32_t s, std::int32_t e) {
  if (s <= 0 || e <= 0) {
    frame.message("error in adding!");
    return;
  }
  temp_set_.push_back(s);
  temp_element_.push_back(e);
  temp_set_number_max_ = std::max(temp_set_number_max_, s);
}

void class_ListOfSets::temp_list_of_elements_for_set_set_number_max_set(std::int32_t n) {
  temp_set_number_max_ = std::max(temp_set_number_max_, n);
}

void class_ListOfSets::update_from_lists_of_pairs() {
  std::int32_t n = temp_set_number_max_;
  for (std::int32_t s = n_sets_; s > n; --s)
    if (n_elements_get(s) > 0)
      n = s;
  if (array_of_sets_length_get() == 0 && temp_set_.empty())
    n = 0;
  // next(s): first the size of set s - 1, then the next free place of set s
  std::vector<std::int32_t> next(place(n) + 2, 0);
  for (std::int32_t s = 1; s <= std::min(n, n_sets_); ++s)
    next[place(s) + 1] += n_elements_get(s);
  for (const std::int32_t s : temp_set_)
    ++next[place(s) + 1];
  next[1] = 1;
  for (std::int32_t s = 1; s <= n; ++s)
    next[place(s) + 1] += next[place(s)];
  std::vector<std::int32_t> adress = next;
  std::vector<std::int32_t> array(place(next[place(n) + 1]), 0);
  for (std::int32_t s = 1; s <= std::min(n, n_sets_); ++s)
    for (const std::int32_t e : set_get(s))
      array[place(next[place(s)]++)] = e;
  for (std::size_t i = 0; i < temp_set_.size(); ++i)
    array[place(next[place(temp_set_[i])]++)] = temp_element_[i];
  array_of_sets_ = std::move(array);
  adress_of_set_ = std::move(adress);
  n_sets_ = n;
  recalculate_element_max();
  temp_set_.clear();
  temp_element_.clear();
  temp_set_number_max_ = 0;
}

} // namespace orb
