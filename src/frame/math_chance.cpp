// class_math1: random selection and the enumeration of subsets.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "frame/class_math1.h"

namespace orb {

std::int32_t class_math1::random_value_number(const std::vector<double> &cumulative, std::int32_t n,
                                              random_source &chance) {
  const double total = n < 1 ? 0 : cumulative[static_cast<std::size_t>(n)];
  if (!(total > 0))
    return chance.number_up_to(n);
  const double drawn = chance.uniform() * total;
  // the first sum above the drawn value: an element of weight 0 has no such step
  const auto begin = cumulative.begin() + 1, end = begin + n;
  const auto step = std::upper_bound(begin, end, drawn);
  if (step != end)
    return static_cast<std::int32_t>(step - begin) + 1;
  // rounding brought the product up to the total: the last element that has a weight
  return static_cast<std::int32_t>(std::lower_bound(begin, end, total) - begin) + 1;
}

std::int32_t class_math1::random_from_list(const number_list &list, random_source &chance) {
  return list(chance.number_up_to(list.count()));
}

namespace {

// Elements that can still be drawn, with the sums of their weights; drawing one marks it.
struct drawing {
  std::vector<std::int32_t> element = {0}; // from 1
  std::vector<double> cumulative = {0};    // from 1

  void add(std::int32_t e, double weight) {
    element.push_back(e);
    cumulative.push_back(cumulative.back() + weight);
  }
  std::int32_t count() const { return static_cast<std::int32_t>(element.size()) - 1; }
  // Leaves the taken elements out: the sums are taken apart into weights and formed anew.
  void rebuild(const std::vector<bool> &taken) {
    drawing rest;
    for (std::size_t i = 1; i < element.size(); ++i)
      if (!taken[static_cast<std::size_t>(element[i])])
        rest.add(element[i], cumulative[i] - cumulative[i - 1]);
    *this = std::move(rest);
  }
};

} // namespace

void class_math1::selection_realization(std::int32_t n, const std::vector<double> &weights, std::vector<bool> &marks,
                                        std::int32_t k, number_list &result, random_source &chance) {
  marks.assign(static_cast<std::size_t>(std::max(n, 0)) + 1, false);
  result.clear();
  const auto take = [&](std::int32_t e) {
    marks[static_cast<std::size_t>(e)] = true;
    result.add(e);
  };
  drawing from;
  if (k < n)
    for (std::int32_t e = 1; e <= n; ++e)
      if (weights[static_cast<std::size_t>(e)] > 0)
        from.add(e, weights[static_cast<std::size_t>(e)]);
  const std::int32_t n_draws = std::min(k, from.count());
  std::int32_t left_at_rebuild = n_draws;
  for (std::int32_t left = n_draws; left > 0;) {
    const std::int32_t e =
        from.element[static_cast<std::size_t>(random_value_number(from.cumulative, from.count(), chance))];
    if (marks[static_cast<std::size_t>(e)])
      continue; // drawn again
    take(e);
    --left;
    if (2 * (left_at_rebuild - left) < left_at_rebuild)
      continue;
    from.rebuild(marks); // half of the draws are done: few are drawn in vain from here on
    left_at_rebuild = left;
  }
  for (std::int32_t e = 1; e <= n && result.count() < k; ++e)
    if (!marks[static_cast<std::size_t>(e)])
      take(e);
}

void class_math1::compress_list(number_list &list, const std::vector<bool> &marks) {
  std::int32_t kept = 0;
  for (std::int32_t i = 1; i <= list.count(); ++i)
    if (static_cast<std::size_t>(i) >= marks.size() || !marks[static_cast<std::size_t>(i)])
      list(++kept) = list(i);
  list.resize(kept);
}

number_list class_math1::random_ordering(std::int32_t n, random_source &chance) {
  number_list order = number_list::range(1, n);
  for (std::int32_t i = n; i > 1; --i)
    std::swap(order(i), order(chance.number_up_to(i)));
  return order;
}

bool class_math1::selected_combination_next(number_list &combination, std::int32_t n) {
  const std::int32_t k = combination.count();
  std::int32_t i = k;
  while (i >= 1 && combination(i) >= n - k + i)
    --i; // members that can't grow
  if (i < 1)
    return false;
  ++combination(i);
  for (std::int32_t j = i + 1; j <= k; ++j)
    combination(j) = combination(j - 1) + 1;
  return true;
}

bool class_math1::next_select_k_f_from_n(std::vector<bool> &flags, std::int32_t k, std::int32_t n) {
  number_list selected;
  make_list_of_selected(flags, selected);
  if (selected.count() != k || !selected_combination_next(selected, n))
    return false;
  flags.assign(static_cast<std::size_t>(n) + 1, false);
  for (const std::int32_t i : selected.members())
    flags[static_cast<std::size_t>(i)] = true;
  return true;
}

void class_math1::make_list_of_selected(const std::vector<bool> &flags, number_list &list) {
  list.clear();
  for (std::size_t i = 1; i < flags.size(); ++i)
    if (flags[i])
      list.add(static_cast<std::int32_t>(i));
}

double class_math1::gauss_value(double mean, double stdv, random_source &chance) {
  const double radius = std::sqrt(-2 * std::log(1 - chance.uniform())); // of (0, 1], so that the logarithm exists
  return mean + stdv * radius * std::cos(2 * std::numbers::pi * chance.uniform());
}

} // namespace orb
