#include <algorithm>
#include <gtest/gtest.h>

#include "frame/class_serv_raznoe.h"
#include "frame/class_text_table.h"
#include "frame/files.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "support/scripted_frame.h"

namespace orb {
namespace {

using serv = class_serv_raznoe;
using texts = std::vector<std::string>;

TEST(texts, tokens) {
  scripted_frame shown;
  EXPECT_EQ(serv::take_text_from_begin(shown.frame, "ab\tc"), "ab");
  EXPECT_EQ(serv::take_text_from_begin(shown.frame, "abc"), "abc");
  EXPECT_EQ(serv::take_text_from_begin(shown.frame, ""), "");
  EXPECT_TRUE(shown.record.messages.empty());
  EXPECT_EQ(serv::take_text_from_begin(shown.frame, " ab"), "");
  EXPECT_EQ(shown.record.messages, texts{"Strig start from empty!"});
  EXPECT_EQ(serv::take_text("BAC : \"a1\" x", "\""), "a1");
  EXPECT_EQ(serv::take_text("n=5", "n="), "5");
  EXPECT_EQ(serv::take_text("abc", "x"), "");
}

TEST(texts, cuts) {
  texts fields{"of", "an", "earlier", "cut"};
  const std::pair<const char *, texts> at_tabs[] = {
      {"", {""}}, {"a", {"a"}}, {"a\t\tb\t", {"a", "", "b", ""}}, {"a b\tc", {"a b", "c"}}};
  for (const auto &[text, expected] : at_tabs) {
    EXPECT_EQ(serv::cut_string(text, fields), static_cast<std::int32_t>(expected.size()));
    EXPECT_EQ(fields, expected);
    std::vector<std::string_view> views;
    serv::cut_string_views(text, views);
    EXPECT_TRUE(std::equal(views.begin(), views.end(), expected.begin(), expected.end()));
  }
  EXPECT_EQ(serv::cut_string("a\tb\tc", fields, 2), 2);
  EXPECT_EQ(fields, (texts{"a", "b"}));
  bool complete = false;
  serv::cut_string_spaces("a  b", fields, -1, complete);
  EXPECT_EQ(fields, (texts{"a", "", "b"}));
  serv::cut_string_spaces_several_no_emty("  a   \"b  c\"d e ", fields, -1, complete);
  EXPECT_EQ(fields, (texts{"a", "\"b  c\"d", "e"}));
  EXPECT_TRUE(complete);
  EXPECT_EQ(serv::cut_string_spaces_several_no_emty("a b c", fields, 2, complete), 2);
  EXPECT_FALSE(complete);
  scripted_frame shown;
  EXPECT_EQ(serv::cut_string_general(shown.frame, "a, b,c", fields, ", ", -1, complete), 2);
  EXPECT_EQ(fields, (texts{"a", "b,c"}));
  EXPECT_EQ(serv::cut_string_general(shown.frame, "a;b;c", fields, ";", 2, complete), 2);
  EXPECT_FALSE(complete);
  EXPECT_EQ(shown.record.messages, texts{"Too many fields: 3 in place of 2 in \"a;b;c\""});
}

TEST(texts, quotes_names_and_zeros) {
  bool quoted = false;
  EXPECT_EQ(serv::antikovichki("\"\"", quoted), "");
  EXPECT_TRUE(quoted);
  EXPECT_EQ(serv::antikovichki("\"a b\"", quoted), "a b");
  EXPECT_EQ(serv::antikovichki("\"", quoted), "");
  EXPECT_FALSE(quoted);
  EXPECT_EQ(serv::antikovichki("\"a", quoted), "");
  EXPECT_FALSE(quoted);
  std::string extension;
  EXPECT_EQ(serv::extract_pure_file_name_new("C:\\d.x\\lib.a.sizes", extension), "lib.a");
  EXPECT_EQ(extension, "sizes");
  EXPECT_EQ(serv::extract_pure_file_name("/a.b/.hidden"), ".hidden");
  EXPECT_EQ(serv::path_of_file("/a/b.txt"), "/a/");
  EXPECT_EQ(serv::path_of_file("b.txt"), "");
  EXPECT_EQ(serv::string_with_added_zeros(7, 3), "007");
  EXPECT_EQ(serv::string_with_added_zeros(1234, 3), "1234");
  EXPECT_EQ(serv::replace_text("aXXbX", "X", "yX"), "ayXyXbyX");
  EXPECT_EQ(serv::string_with_letters_and_numbers_only_get("a-1 B_\xc3\xa4"), "a1B");
  EXPECT_EQ(serv::text_transform_to_lower_case("ABz\xc3\x84"), "abz\xc3\x84");
}

TEST(texts, input_boxes_with_limits) {
  scripted_frame shown;
  const auto ask = [&] { return serv::parameter_get_fromInputBox_Long(shown.frame, "Rank", "T", 2, 1, 9); };
  EXPECT_EQ(ask(), 2);
  EXPECT_EQ(shown.record.questions.back(), "Rank (min=1, max=9)");
  const std::pair<const char *, std::int32_t> cases[] = {{"9", 9}, {"10", 2}, {"0", 2}, {"x", 2}, {"", 2}, {"3.5", 2}};
  for (const auto &[reply, expected] : cases) {
    shown.book.add({"Rank", reply, false});
    EXPECT_EQ(ask(), expected) << reply;
  }
  shown.book.add({"F", "0,5", false});
  EXPECT_EQ(serv::parameter_get_fromInputBox_Double(shown.frame, "F", "", 0.9, 0, 1), 0.5);
  EXPECT_EQ(shown.record.questions.back(), "F (min=0, max=1)");
}

TEST(sorting_strings, order_origin_and_binary_search_against_the_slow_way) {
  random_source chance(3);
  for (int round = 0; round < 300; ++round) {
    texts original(static_cast<std::size_t>(chance.number_up_to(40)));
    for (std::string &text : original)
      for (std::int32_t n = chance.number_up_to(round % 2 == 0 ? 3 : 12); n > 1; --n)
        text += round % 3 == 0 ? static_cast<char>(chance.next()) : static_cast<char>('a' + chance.next() % 2);
    const std::int32_t last = static_cast<std::int32_t>(original.size()) - 1;
    texts list = original;
    std::vector<std::int32_t> index;
    serv::quicksort_string(list, index, 1, last, true);
    for (std::int32_t i = 1; i <= last; ++i)
      EXPECT_EQ(list[i], original[index[i]]);
    for (std::int32_t i = 2; i <= last; ++i)
      EXPECT_TRUE(list[i - 1] < list[i] || (list[i - 1] == list[i] && index[i - 1] < index[i]));
    const std::string key = original[static_cast<std::size_t>(chance.number_up_to(last + 1)) - 1].substr(0, 2);
    bool found = false;
    std::int32_t position = -7;
    serv::finnd_in_partially_ordered_list_string(key, list, found, position, 1, last);
    EXPECT_EQ(found, std::find(list.begin() + 1, list.end(), key) != list.end());
    if (found)
      EXPECT_EQ(list[position], key);
    else // as many members lie below the key
      EXPECT_EQ(position, std::count_if(list.begin() + 1, list.end(), [&](const auto &text) { return text < key; }));
  }
}

TEST(sorting_strings, search_at_the_ends) {
  const texts list{"", "b", "d", "f"};
  const std::tuple<const char *, bool, int> cases[] = {{"a", false, 0}, {"b", true, 1}, {"c", false, 1},
                                                       {"e", false, 2}, {"f", true, 3}, {"g", false, 3}};
  for (const auto &[key, expected, place] : cases) {
    bool found = !expected;
    std::int32_t position = -7;
    serv::finnd_in_partially_ordered_list_string(key, list, found, position, 1, 3);
    EXPECT_EQ(found, expected) << key;
    EXPECT_EQ(position, place) << key;
  }
  bool found = true;
  std::int32_t position = -7;
  serv::finnd_in_partially_ordered_list_string("b", list, found, position, 1, 0);
  EXPECT_FALSE(found);
  EXPECT_EQ(position, 0);
}

TEST(string_arrays, set_operations_and_files) {
  const temporary_folder folder;
  const texts list_1{"", "a", "b", "d"}, list_2{"", "b", "c", "d"};
  texts result;
  serv::array_string_1_minus_2(list_1, list_2, result);
  EXPECT_EQ(result, (texts{"", "a"}));
  serv::array_string_1_minus_2(list_1, {}, result);
  EXPECT_EQ(result, list_1);
  serv::array_string_1_and_2_run(folder.write("1", "d\nb\nb\na"), folder.write("2", "d\r\nc\r\nb"),
                                 folder.path() / "3");
  EXPECT_EQ(file_bytes(folder.path() / "3"), "b\r\nd\r\n");
  EXPECT_EQ(serv::find_text("d", list_1), 3);
  EXPECT_EQ(serv::find_text("", list_1), -1); // element 0 is unused
  number_list numbers{4, 9};
  bool not_found = false;
  std::int32_t position = 0;
  serv::find_number_long(9, numbers, not_found, true, position);
  EXPECT_EQ(position, 2);
  serv::find_number_long(5, numbers, not_found, true, position);
  EXPECT_TRUE(not_found);
  EXPECT_EQ(numbers, (number_list{4, 9, 5}));
}

TEST(text_table, read_change_print) {
  const temporary_folder folder;
  class_text_table table, other, result;
  table.read_text_table_from_file(folder.write("t.tab.txt", "name\tv\nb\t1;2\tx\n\na\t3"));
  EXPECT_EQ(table.n_rows_get(), 4);
  EXPECT_EQ(table.n_columns_get(), 3);
  EXPECT_EQ(table.file_pure_name_get(), "t.tab");
  EXPECT_EQ(table.text_in_row_get(4), "a\t3\t");
  EXPECT_EQ(table.text_in_cell_get(9, 1), "");
  EXPECT_EQ(table.findRowNumber(1, "a"), 4);
  table.select_from_text_table(1, {"a"}, 1, result);
  EXPECT_EQ(result.n_rows_get(), 2);
  other.read_text_table_from_file_new(folder.write("o", "a::7\n\nb::8\na::9"), "::");
  EXPECT_EQ(other.n_rows_get(), 3);
  class_text_table::unite_two_text_table(table, 1, other, 1, result);
  EXPECT_EQ(result.text_in_row_get(4), "a\t3\t\ta\t7");
  table.split_column(2, ";");
  EXPECT_EQ(table.text_in_row_get(2), "b\t1\t2\tx");
  EXPECT_EQ(table.text_in_row_get(4), "a\t3\t\t");
  table.interesting_columns_set({4, 1});
  table.print_table(folder.path() / "out");
  EXPECT_EQ(file_bytes(folder.path() / "out"), "\tname\r\nx\tb\r\n\t\r\n\ta\r\n");
  EXPECT_ANY_THROW(table.read_text_table_from_file(folder.path() / "absent"));
  EXPECT_EQ(table.n_rows_get(), 4);
}

} // namespace
} // namespace orb
