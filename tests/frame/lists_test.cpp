#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <set>

#include "frame/class_ListOfElements.h"
#include "frame/class_ListOfSets.h"
#include "frame/class_math_lists_of_long.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "frame/worker_blocks.h"

namespace orb {
namespace {

using model = std::vector<std::vector<std::int32_t>>; // the slow twin of a family of sets

model content_of(const class_ListOfSets &sets) {
  model content;
  for (std::int32_t s = 1; s <= sets.n_sets_get(); ++s) {
    number_list list;
    sets.list_of_elements_get(s, list);
    EXPECT_EQ(list.count(), sets.n_elements_get(s));
    content.emplace_back(list.members().begin(), list.members().end());
  }
  return content;
}

model random_model(random_source &chance, std::int32_t n_sets, std::int32_t largest) {
  model content(static_cast<std::size_t>(n_sets));
  for (auto &set : content)
    for (std::int32_t n = chance.number_up_to(4); n > 1; --n)
      set.push_back(chance.number_up_to(largest));
  return content;
}

class_ListOfSets family_of(const model &content) {
  class_ListOfSets sets;
  sets.n_sets_max_set(2);
  for (const auto &set : content)
    sets.add_set(set);
  return sets;
}

std::int32_t largest_of(const model &content) {
  std::int32_t largest = 0;
  for (const auto &set : content)
    for (const std::int32_t e : set)
      largest = std::max(largest, e);
  return largest;
}

TEST(class_ListOfSets, adding_deleting_and_dual_as_the_model) {
  random_source chance(21);
  for (int round = 0; round < 300; ++round) {
    model content = random_model(chance, chance.number_up_to(8) - 1, 6);
    class_ListOfSets sets = family_of(content);
    ASSERT_EQ(content_of(sets), content);
    ASSERT_EQ(sets.element_max_get(), largest_of(content));
    for (const std::int32_t wanted : {0, 4, 9}) {
      model dual(static_cast<std::size_t>(wanted < 1 ? largest_of(content) : wanted));
      for (std::size_t s = 0; s < content.size(); ++s)
        for (const std::int32_t e : content[s])
          if (static_cast<std::size_t>(e) <= dual.size())
            dual[e - 1].push_back(static_cast<std::int32_t>(s) + 1);
      class_ListOfSets of_family;
      of_family.make_ListOfSets_dual(sets, wanted);
      ASSERT_EQ(content_of(of_family), dual);
    }
    for (auto &set : content)
      std::erase(set, 3);
    sets.delete_element(3);
    ASSERT_EQ(content_of(sets), content);
    ASSERT_EQ(sets.element_max_get(), largest_of(content));
    ASSERT_EQ(sets.element_times_get(3), 0);
    sets.add_set(number_list{3, 3});
    number_list counts;
    sets.elements_times_get(counts);
    ASSERT_EQ(counts(3), 2);
  }
}

TEST(class_ListOfSets, pairs_join_what_is_there) {
  random_source chance(22);
  process_frame frame;
  for (int round = 0; round < 300; ++round) {
    model content = random_model(chance, chance.number_up_to(5) - 1, 9);
    class_ListOfSets sets = family_of(content);
    for (std::int32_t n = chance.number_up_to(12); n > 1; --n) {
      const std::int32_t s = chance.number_up_to(7), e = chance.number_up_to(9);
      sets.add_to_temp_list_of_elements_for_set(frame, s, e);
      content.resize(std::max(content.size(), static_cast<std::size_t>(s)));
      content[s - 1].push_back(e);
    }
    while (!content.empty() && content.back().empty())
      content.pop_back(); // the largest number in use counts
    sets.update_from_lists_of_pairs();
    ASSERT_EQ(content_of(sets), content);
    sets.temp_list_of_elements_for_set_set_number_max_set(9);
    sets.update_from_lists_of_pairs();
    content.resize(content.empty() ? 0 : 9); // with no pairs at all the family stays empty
    ASSERT_EQ(content_of(sets), content);
  }
}

TEST(class_ListOfSets, repeats_go_and_sets_come_sorted) {
  random_source chance(23);
  for (int round = 0; round < 200; ++round) {
    const model content = random_model(chance, chance.number_up_to(12), 3);
    std::set<std::pair<std::size_t, std::vector<std::int32_t>>> distinct;
    for (auto set : content) {
      std::sort(set.begin(), set.end());
      distinct.emplace(set.size(), set);
    }
    model expected;
    for (const auto &[size, set] : distinct)
      expected.push_back(set);
    class_ListOfSets sets = family_of(content);
    number_list order, inverse;
    sets.quicksort_sets(1, sets.n_sets_get(), order, inverse, true);
    for (std::int32_t k = 1; k <= order.count(); ++k) {
      ASSERT_EQ(inverse(order(k)), k);
      ASSERT_TRUE(k == 1 || !sets.set_is_before(order(k), order(k - 1)));
    }
    sets.exclude_repeats_of_sets();
    ASSERT_EQ(content_of(sets), expected);
  }
}

TEST(class_ListOfSets, small_operations_and_edges) {
  answer_book book;
  front_end_record record;
  process_frame frame(scripted_front_end(book, record));
  class_ListOfSets sets = family_of({{5, 2, 9}, {}, {2, 4, 5}}), other = family_of({{7}}), united;
  number_list list{1};
  for (const std::int32_t s : {-1, 0, 2, 4}) {
    sets.list_of_elements_get(s, list);
    EXPECT_EQ(list(0), 0);
  }
  sets.list_of_non_elements_get(1, 6, list);
  EXPECT_EQ(list, (number_list{1, 3, 4, 6}));
  sets.order_of_elements_in_set_set(1, {3, 1, 2});
  EXPECT_EQ(content_of(sets)[0], (std::vector<std::int32_t>{9, 5, 2}));
  sets.sort_array_of_sets();
  sets.list_of_common_elements_of_ordered_sets_get(1, 3, list);
  EXPECT_EQ(list, (number_list{2, 5}));
  sets.unite_with_another_list_of_sets(other, united);
  EXPECT_EQ(content_of(united), (model{{2, 5, 9}, {}, {2, 4, 5}, {7}}));
  sets.add_set(sets.set_get(1)); // a part of itself
  EXPECT_EQ(content_of(sets).back(), (std::vector<std::int32_t>{2, 5, 9}));
  sets.add_to_temp_list_of_elements_for_set(frame, 0, 1);
  sets.add_to_temp_list_of_elements_for_set(frame, 1, -1);
  EXPECT_EQ(record.messages, (std::vector<std::string>{"error in adding!", "error in adding!"}));
  class_ListOfSets of_itself = family_of({{2}, {1}});
  of_itself.make_ListOfSets_dual(of_itself, 0);
  EXPECT_EQ(content_of(of_itself), (model{{2}, {1}}));
}

TEST(class_ListOfElements, list_and_inverse) {
  class_ListOfElements list;
  list.n_elements_set(4, true);
  list.n_members_in_list_set(0, true);
  for (const std::int32_t e : {3, 1, 3})
    EXPECT_TRUE(list.add_member(e));
  EXPECT_FALSE(list.add_member(5));
  EXPECT_EQ(list.element_adress_in_list_get(3), 3);
  EXPECT_EQ(list.element_adress_in_list_get(2), -1);
  EXPECT_EQ(list.member_of_list_antiadres_get(1), 3);
  EXPECT_EQ(list.member_of_list_antiadres_get(4), -1);
  number_list out;
  list.list_of_elements_non_presented_get(out);
  EXPECT_EQ(out, (number_list{2, 4}));
  list.number_of_times_in_list_get(out);
  EXPECT_EQ(out, (number_list{1, 0, 2, 0}));
}

TEST(lists_of_long, as_a_set) {
  random_source chance(24);
  number_list list, other;
  std::set<std::int32_t> members;
  for (int round = 0; round < 2000; ++round) {
    const std::int32_t value = chance.number_up_to(300);
    bool found = false;
    std::int32_t position = -7;
    class_math_lists_of_long::finnd_in_ordered_list(value, list, found, position);
    ASSERT_EQ(found, members.count(value) == 1);
    ASSERT_EQ(position, std::distance(members.begin(), members.upper_bound(value)));
    class_math_lists_of_long::add_to_ordered_list(value, list, found);
    ASSERT_EQ(found, !members.insert(value).second);
    ASSERT_TRUE(std::equal(members.begin(), members.end(), list.members().begin(), list.members().end()));
    if (round % 100 == 0)
      class_math_lists_of_long::create_list_of_anti_elements(list, 300, other);
  }
  number_list anti, merged;
  class_math_lists_of_long::create_list_of_anti_elements(list, 300, anti);
  class_math_lists_of_long::merge_two_oredered_lists(anti, list, merged);
  EXPECT_EQ(merged, number_list::range(1, 300));
  class_math_lists_of_long::merge_two_oredered_lists(list, list, merged);
  EXPECT_EQ(merged, list);
}

TEST(lists_of_long, gaps_close) {
  number_list list{4, 5, 6};
  class_math_lists_of_long::remove_element_from_array_long(list, 2);
  class_math_lists_of_long::remove_element_from_array_long(list, 3);
  EXPECT_EQ(list, (number_list{4, 6}));
  std::vector<std::vector<double>> matrix{{0, 0, 0, 0}, {0, 11, 12, 13}, {0, 21, 22, 23}, {0, 31, 32, 33}};
  std::int32_t n = 3;
  class_math_lists_of_long::remove_element_from_matrix_double(matrix, n, 2);
  EXPECT_EQ(n, 2);
  EXPECT_EQ(matrix, (std::vector<std::vector<double>>{{0, 0, 0}, {0, 11, 13}, {0, 31, 33}}));
}

TEST(run_in_blocks, every_item_once_for_any_number_of_threads) {
  for (const int threads : {1, 2, 4, 0})
    for (const std::int64_t block : {1, 7, 1000, 5000}) {
      std::vector<int> times(3001, 0);
      std::vector<std::atomic<int>> running(static_cast<std::size_t>(worker_count(threads)));
      std::atomic<bool> shared{false};
      std::vector<std::int64_t> reports;
      const bool done = run_in_blocks(
          1, 3000, block, 3, threads,
          [&](std::int64_t first, std::int64_t last, int worker) {
            ASSERT_TRUE(worker >= 0 && worker < worker_count(threads) && last - first < 3);
            if (running[static_cast<std::size_t>(worker)]++ != 0)
              shared = true;
            for (std::int64_t i = first; i <= last; ++i)
              ++times[static_cast<std::size_t>(i)];
            --running[static_cast<std::size_t>(worker)];
          },
          [&](std::int64_t up_to) {
            reports.push_back(up_to);
            return true;
          });
      EXPECT_TRUE(done);
      EXPECT_FALSE(shared);
      EXPECT_EQ(reports.size(), static_cast<std::size_t>((3000 + block - 1) / block));
      EXPECT_EQ(reports.back(), 3000);
      EXPECT_EQ(times[0], 0);
      EXPECT_TRUE(std::all_of(times.begin() + 1, times.end(), [](int n) { return n == 1; }));
    }
}

TEST(run_in_blocks, stops_between_blocks_and_passes_exceptions_on) {
  for (const int threads : {1, 3}) {
    std::atomic<std::int64_t> largest{0};
    const auto body = [&](std::int64_t, std::int64_t last, int) {
      std::int64_t seen = largest;
      while (seen < last && !largest.compare_exchange_weak(seen, last)) {
      }
    };
    EXPECT_FALSE(run_in_blocks(1, 100, 10, 2, threads, body, [](std::int64_t up_to) { return up_to < 30; }));
    EXPECT_EQ(largest, 30);
    EXPECT_TRUE(run_in_blocks(1, 10, 10, 2, threads, body, [](std::int64_t) { return false; })); // all was done
    EXPECT_TRUE(run_in_blocks(5, 4, 10, 2, threads, body, {}));
    const auto failing = [](std::int64_t first, std::int64_t, int) {
      if (first > 50)
        throw std::runtime_error("item");
    };
    EXPECT_THROW(run_in_blocks(1, 100, 100, 1, threads, failing, {}), std::runtime_error);
  }
}

} // namespace
} // namespace orb
