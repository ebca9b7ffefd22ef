// class_math1: sorting with a companion index.
#include <algorithm>
#include <cmath>

#include "frame/class_math1.h"
#include "frame/sorting.h"

namespace orb {

namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// The run of digits at the start of a text, without its leading zeros; `text` loses the run.
std::string_view take_digits(std::string_view &text) {
  std::size_t end = 0;
  while (end < text.size() && is_digit(text[end]))
    ++end;
  std::string_view digits = text.substr(0, end);
  text.remove_prefix(end);
  while (!digits.empty() && digits.front() == '0')
    digits.remove_prefix(1);
  return digits;
}

std::vector<std::uint32_t> places_of_numbers(const std::int32_t *list, std::size_t n) {
  // value and place in one number, whose order is that of value, then place
  std::vector<std::uint64_t> keys(n);
  for (std::size_t i = 0; i < n; ++i)
    keys[i] = static_cast<std::uint64_t>(static_cast<std::uint32_t>(list[i]) ^ 0x80000000u) << 32 | i;
  std::sort(keys.begin(), keys.end());
  std::vector<std::uint32_t> places(n);
  for (std::size_t i = 0; i < n; ++i)
    places[i] = static_cast<std::uint32_t>(keys[i]);
  return places;
}

} // namespace

void class_math1::quicksort_tourerpp(std::vector<double> &list, std::vector<std::int32_t> &index, std::int32_t first,
                                     std::int32_t last, bool fill_index) {
  sort_with_index(list, index, first, last, fill_index, [](const double *keys, std::size_t n) {
    return sorted_places(n, [keys](std::uint32_t a, std::uint32_t b) {
      if (std::isnan(keys[a]) || std::isnan(keys[b]))
        return !std::isnan(keys[a]);
      return keys[a] < keys[b];
    });
  });
}

bool class_math1::string1less2(std::string_view text_1, std::string_view text_2) {
  std::string_view rest_1 = text_1, rest_2 = text_2;
  while (!rest_1.empty() && !rest_2.empty()) {
    if (is_digit(rest_1.front()) && is_digit(rest_2.front())) {
      const std::string_view digits_1 = take_digits(rest_1), digits_2 = take_digits(rest_2);
      if (digits_1.size() != digits_2.size())
        return digits_1.size() < digits_2.size();
      if (digits_1 != digits_2)
        return digits_1 < digits_2;
    } else {
      const unsigned char c_1 = static_cast<unsigned char>(rest_1.front());
      const unsigned char c_2 = static_cast<unsigned char>(rest_2.front());
      if (c_1 != c_2)
        return c_1 < c_2;
      rest_1.remove_prefix(1);
      rest_2.remove_prefix(1);
    }
  }
  if (rest_1.empty() != rest_2.empty())
    return rest_1.empty();
  return text_1 < text_2; // they differ by leading zeros at most
}

void class_math1::quicksort_string_numPP(std::vector<std::string> &list, std::vector<std::int32_t> &index,
                                         std::int32_t first, std::int32_t last, bool fill_index) {
  sort_with_index(list, index, first, last, fill_index, [](const std::string *keys, std::size_t n) {
    return sorted_places(n, [keys](std::uint32_t a, std::uint32_t b) { return string1less2(keys[a], keys[b]); });
  });
}

void class_math1::quicksort_long(std::vector<std::int32_t> &list, std::vector<std::int32_t> &index, std::int32_t first,
                                 std::int32_t last, bool fill_index) {
  sort_with_index(list, index, first, last, fill_index, places_of_numbers);
}

void class_math1::sort_list_of_string_and_delete_repeats(std::vector<std::string> &list, std::int32_t &n) {
  n = std::clamp(n, 0, std::max(static_cast<std::int32_t>(list.size()) - 1, 0));
  if (n == 0)
    return;
  std::sort(list.begin() + 1, list.begin() + 1 + n);
  n = static_cast<std::int32_t>(std::unique(list.begin() + 1, list.begin() + 1 + n) - list.begin()) - 1;
}

void class_math1::sort_list_of_long_and_delete_repeats(number_list &list) {
  if (list.empty())
    return;
  const std::span<std::int32_t> members = list.members();
  std::sort(members.begin(), members.end());
  list.resize(static_cast<std::int32_t>(std::unique(members.begin(), members.end()) - members.begin()));
}

} // namespace orb
