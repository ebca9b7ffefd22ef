// The one way in which the sorts of the toolboxes order a range and carry a companion index along.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace orb {

// list(first..last) in the order that `order(from)` gives to the 0-based places of the range, index alike. An index
// that is too short is made as long as the list; `fill_index` first fills the range with its positions. `sort_places`
// gets the number of elements and returns their places in sorted order. Ranges outside the list are cut to it.
template <class value, class sort_places>
void sort_with_index(std::vector<value> &list, std::vector<std::int32_t> &index, std::int32_t first, std::int32_t last,
                     bool fill_index, sort_places places_of) {
  first = std::max(first, 0);
  last = std::min(last, static_cast<std::int32_t>(list.size()) - 1);
  if (index.size() < list.size())
    index.resize(list.size(), 0);
  if (fill_index)
    for (std::int32_t i = first; i <= last; ++i)
      index[static_cast<std::size_t>(i)] = i;
  if (first >= last)
    return;
  const std::size_t begin = static_cast<std::size_t>(first);
  const std::vector<std::uint32_t> places = places_of(list.data() + begin, static_cast<std::size_t>(last - first) + 1);
  std::vector<value> sorted_list(places.size());
  std::vector<std::int32_t> sorted_index(places.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    sorted_list[i] = std::move(list[begin + places[i]]);
    sorted_index[i] = index[begin + places[i]];
  }
  std::move(sorted_list.begin(), sorted_list.end(), list.begin() + first);
  std::copy(sorted_index.begin(), sorted_index.end(), index.begin() + first);
}

// Places 0..n-1 sorted by `less(a, b)` on places, equal ones in their order.
template <class place_less> std::vector<std::uint32_t> sorted_places(std::size_t n, place_less less) {
  std::vector<std::uint32_t> places(n);
  for (std::size_t i = 0; i < n; ++i)
    places[i] = static_cast<std::uint32_t>(i);
  std::stable_sort(places.begin(), places.end(), less);
  return places;
}

} // namespace orb
