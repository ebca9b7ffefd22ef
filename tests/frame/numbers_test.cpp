#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

#include "frame/numbers.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"

namespace orb {
namespace {

// The grammar one step after the other, and the C library for the value.
bool parse_slowly(std::string text, double &value) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos)
    return false;
  text = text.substr(first, text.find_last_not_of(" \t") + 1 - first);
  std::size_t at = text[0] == '+' || text[0] == '-' ? 1 : 0;
  int n_digits = 0, n_signs = 0;
  for (; at < text.size() && std::string("0123456789.,").find(text[at]) != std::string::npos; ++at) {
    if (text[at] == ',')
      text[at] = '.';
    (text[at] == '.' ? n_signs : n_digits) += 1;
  }
  if (n_digits == 0 || n_signs > 1)
    return false;
  if (at < text.size()) {
    if (text[at] != 'e' && text[at] != 'E')
      return false;
    if (at + 2 >= text.size() || (text[at + 1] != '+' && text[at + 1] != '-'))
      return false;
    if (text.find_first_not_of("0123456789", at + 2) != std::string::npos)
      return false;
  }
  const double number = std::strtod(text.c_str(), nullptr);
  if (std::isinf(number))
    return false;
  value = number;
  return true;
}

void expect_same_parse(const std::string &text) {
  double fast = -77, slow = -77;
  const bool fast_is = number_parse(text, fast), slow_is = parse_slowly(text, slow);
  ASSERT_EQ(fast_is, slow_is) << "[" << text << "]";
  ASSERT_EQ(fast, slow) << "[" << text << "]";
  ASSERT_EQ(std::signbit(fast), std::signbit(slow)) << "[" << text << "]";
}

TEST(number_parse, random_texts_as_the_slow_way) {
  random_source chance(11);
  const std::string letters = "0123456789015.,eE+- \tx";
  for (int round = 0; round < 200000; ++round) {
    std::string text;
    for (std::int32_t n = chance.number_up_to(9); n > 0; --n)
      text += letters[static_cast<std::size_t>(chance.number_up_to(static_cast<std::int32_t>(letters.size()))) - 1];
    ASSERT_NO_FATAL_FAILURE(expect_same_parse(text));
  }
}

TEST(number_parse, random_numbers_of_any_length_round_as_the_library_does) {
  random_source chance(12);
  for (int round = 0; round < 40000; ++round) {
    std::string text;
    for (std::int32_t part = 0; part < 2; ++part) {
      const std::int32_t n = chance.number_up_to(round % 100 == 0 ? 1200 : 14);
      for (std::int32_t i = 1; i < n; ++i)
        text += static_cast<char>('0' + chance.number_up_to(10) - 1);
      text += part == 0 ? "." : "";
    }
    if (round % 2 == 0)
      text += "E" + std::string(round % 4 == 0 ? "+" : "-") + std::to_string(chance.number_up_to(340));
    ASSERT_NO_FATAL_FAILURE(expect_same_parse(text));
  }
}

TEST(number_parse, hand_made_cases) {
  for (const char *text : {"1533.1", "9007199254740993", "9007199254740993.00000000000000000001", "1e+22", "1e+23",
                           "1e-22", "0.1e+1", "123456789012345678901234567890", "2.2250738585072011e-308", "4.9e-324",
                           "1e-400", "-0", "0e+99999999999", "1e+99999999999", "000000000000000000000000000001.5",
                           "0.000000000000000000000000000000000015", "179769313486231580793728971405301e+276"})
    expect_same_parse(text);
  const std::string tie = "1." + std::string(15, '0') + "11102230246251565404236316680908203125"; // 1 + half a step
  expect_same_parse(tie);
  expect_same_parse(tie + std::string(1500, '0') + "1");
  double value = 0;
  EXPECT_FALSE(number_parse("15E24", value)); // a clone name
  EXPECT_FALSE(number_parse("nan", value));
  EXPECT_FALSE(number_parse("0x10", value));
  EXPECT_TRUE(number_parse(",5", value));
  EXPECT_EQ(value, 0.5);
  double with_point = 0, with_comma = 1;
  EXPECT_TRUE(number_from_text_silent("12.25", with_point) && number_from_text_silent("12,25", with_comma));
  EXPECT_EQ(with_point, with_comma);
}

TEST(whole_number_parse, limits) {
  std::int32_t value = 5;
  for (const char *text : {"", "-", "1.0", "2147483648", "-2147483649", "99999999999999999999999", "1 2", "0x1"})
    EXPECT_FALSE(whole_number_parse(text, value)) << text;
  EXPECT_EQ(value, 5);
  EXPECT_TRUE(whole_number_parse(" -2147483648\t", value));
  EXPECT_EQ(value, std::numeric_limits<std::int32_t>::min());
  EXPECT_TRUE(whole_number_parse("+2147483647", value));
  EXPECT_EQ(value, std::numeric_limits<std::int32_t>::max());
}

TEST(number_text, as_printf) {
  random_source chance(13);
  char expected[512];
  const double special[] = {0,    -0.0,   0.005,         0.015, 0.125, 0.375, 2.5,
                            1e-9, -0.004, 999999999.995, 1e15,  1e300, 0.5,   1.5};
  for (int round = 0; round < 100000; ++round) {
    const int decimals = chance.number_up_to(7) - 1;
    double value = (chance.uniform() - 0.5) * std::pow(10, chance.number_up_to(12));
    if (round % 2 == 0)
      value = std::round(value * 1000) / 1000 / (round % 4 + 1); // many near ties
    if (round < 14)
      value = special[round];
    std::snprintf(expected, sizeof expected, "%.*f", decimals, value);
    ASSERT_EQ(number_text(value, decimals), expected);
  }
}

TEST(number_text, shortest_and_thousands) {
  const std::pair<double, const char *> shortest[] = {
      {15, "15"}, {15.5, "15.5"}, {1e-7, "1e-07"}, {100000, "100000"}, {-0.25, "-0.25"}, {1e20, "1e+20"}, {0, "0"}};
  for (const auto &[value, text] : shortest)
    EXPECT_EQ(number_text_shortest(value), text);
  const std::pair<std::int64_t, const char *> thousands[] = {
      {0, "0"}, {999, "999"}, {1000, "1,000"}, {-1234567, "-1,234,567"}, {-100, "-100"}};
  for (const auto &[value, text] : thousands)
    EXPECT_EQ(number_text_thousands(value), text);
  EXPECT_EQ(decimal_sign_swapped("1.234,5"), "1,234.5");
}

TEST(number_from_text, asks_and_takes_zero_or_ends) {
  answer_book book;
  front_end_record record;
  process_frame frame(scripted_front_end(book, record));
  EXPECT_EQ(number_from_text(frame, "7,5"), 7.5);
  EXPECT_FALSE(frame.data_failed());
  EXPECT_EQ(number_from_text(frame, "abc"), 0);
  EXPECT_TRUE(frame.data_failed());
  EXPECT_EQ(record.questions.back(),
            "Record abc is not number?!\rZero will be used instead. Do you want to STOP the program?");
  book.add({"Record", "yes", false});
  try {
    number_from_text(frame, "abc");
    FAIL();
  } catch (const program_end &end) {
    EXPECT_EQ(end.status(), exit_status::run_failed);
  }
}

} // namespace
} // namespace orb
