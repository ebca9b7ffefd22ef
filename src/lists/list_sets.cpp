// Lists of clones as sets: sorting, intersection, difference, union.
#include <algorithm>
#include <iterator>

#include "frame/class_math1.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

std::vector<std::int32_t> as_set(const number_list &list) {
  std::vector<std::int32_t> set(list.members().begin(), list.members().end());
  std::sort(set.begin(), set.end());
  set.erase(std::unique(set.begin(), set.end()), set.end());
  return set;
}

// The results don't touch the arguments before they are made, so that they may be one of them.
template <class set_algorithm>
void combine(const number_list &list_1, const number_list &list_2, number_list &result, set_algorithm algorithm) {
  const std::vector<std::int32_t> a = as_set(list_1), b = as_set(list_2);
  std::vector<std::int32_t> made;
  algorithm(a, b, std::back_inserter(made));
  result = number_list(std::span<const std::int32_t>(made));
}

} // namespace

void class_list_of_clones::sort_list_of_clones_and_delete_repeats(number_list &list) const {
  if (list.empty()) {
    frame_.alarm("list of clones for orderind is empty!!!");
    return;
  }
  class_math1::sort_list_of_long_and_delete_repeats(list);
}

void class_list_of_clones::intersection_list1_list2_long(const number_list &list_1, const number_list &list_2,
                                                         number_list &common) {
  number_list found; // may be one of the two
  for (std::int32_t i = 1, j = 1; i <= list_1.count() && j <= list_2.count();) {
    if (list_1(i) < list_2(j)) {
      ++i;
    } else if (list_2(j) < list_1(i)) {
      ++j;
    } else {
      if (found.empty() || found(found.count()) != list_1(i))
        found.add(list_1(i));
      ++i, ++j;
    }
  }
  common = std::move(found);
}

void class_list_of_clones::find_intersection_of_contigs(const number_list &list_1, const number_list &list_2,
                                                        number_list &result) {
  combine(list_1, list_2, result,
          [](const auto &a, const auto &b, auto to) { std::ranges::set_intersection(a, b, to); });
}

void class_list_of_clones::find_ctg1_minus_ctg2(const number_list &list_1, const number_list &list_2,
                                                number_list &result) {
  combine(list_1, list_2, result, [](const auto &a, const auto &b, auto to) { std::ranges::set_difference(a, b, to); });
}

void class_list_of_clones::find_ctg1_plus_ctg2(const number_list &list_1, const number_list &list_2,
                                               number_list &result) {
  combine(list_1, list_2, result, [](const auto &a, const auto &b, auto to) { std::ranges::set_union(a, b, to); });
}

// ---- the same from files -------------------------------------------------------------------------------------------

bool class_list_of_clones::lists_of_two_files(class_DB_of_clones &database, std::filesystem::path file_1,
                                              std::filesystem::path file_2, std::filesystem::path result,
                                              const std::string &file_start, set_operation operation) {
  if (file_1.empty())
    file_1 = frame_.open_file_dialog("Open first file with clones");
  if (file_1.empty())
    return false;
  if (file_2.empty())
    file_2 = frame_.open_file_dialog("Open second file with clones");
  if (file_2.empty())
    return false;
  number_list list_1, list_2, combined;
  std::string name_1, name_2;
  if (!run_reading_file_with_list_of_clones(file_1, list_1, name_1, database) ||
      !run_reading_file_with_list_of_clones(file_2, list_2, name_2, database))
    return false;
  sort_list_of_clones_and_delete_repeats(list_1);
  sort_list_of_clones_and_delete_repeats(list_2);
  operation(list_1, list_2, combined);
  if (result.empty())
    result = frame_.path_in_working_folder(file_start + name_1 + "_" + name_2 + ".txt");
  print_list_of_clones(combined, result, database);
  return true;
}

bool class_list_of_clones::find_intersection_of_contigs(class_DB_of_clones &database,
                                                        const std::filesystem::path &file_1,
                                                        const std::filesystem::path &file_2,
                                                        std::filesystem::path result) {
  return lists_of_two_files(database, file_1, file_2, std::move(result), "\\intersection_",
                            &class_list_of_clones::find_intersection_of_contigs);
}

bool class_list_of_clones::find_ctg1_minus_ctg2(class_DB_of_clones &database, const std::filesystem::path &file_1,
                                                const std::filesystem::path &file_2, std::filesystem::path result) {
  return lists_of_two_files(database, file_1, file_2, std::move(result), "\\minus_",
                            &class_list_of_clones::find_ctg1_minus_ctg2);
}

bool class_list_of_clones::find_ctg1_plus_ctg2(class_DB_of_clones &database, const std::filesystem::path &file_1,
                                               const std::filesystem::path &file_2, std::filesystem::path result) {
  return lists_of_two_files(database, file_1, file_2, std::move(result), "\\plus_",
                            &class_list_of_clones::find_ctg1_plus_ctg2);
}

} // namespace orb
