#include "fpc/fpc_dates.h"

#include <array>
#include <chrono>
#include <vector>

#include "frame/class_serv_raznoe.h"
#include "frame/clock.h"
#include "frame/numbers.h"

namespace orb {

std::string str_date_from_FPC_format_get(double date) {
  const std::tm fields = calendar_of_day_number(date);
  std::string text = class_serv_raznoe::string_with_added_zeros((fields.tm_year + 1900) % 100, 2);
  for (const int number : {fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min})
    text += " " + std::to_string(number);
  return text;
}

namespace {

// Year (as it stands), month, day, hour, minute.
bool five_numbers(std::string_view text, std::array<std::int32_t, 5> &numbers) {
  std::vector<std::string> fields;
  bool complete = false;
  const std::int32_t n = class_serv_raznoe::cut_string_spaces_several_no_emty(text, fields, 5, complete);
  if (n != 5 || !complete)
    return false;
  for (std::size_t i = 0; i < numbers.size(); ++i)
    if (!whole_number_parse(fields[i], numbers[i]))
      return false;
  return true;
}

// Of the numbers with a whole year in place of their own.
bool day_number_of(std::int32_t whole_year, const std::array<std::int32_t, 5> &numbers, double &date) {
  const auto [year, month, day, hour, minute] = numbers;
  if (month < 1 || month > 12 || hour < 0 || hour > 23 || minute < 0 || minute > 59)
    return false;
  using namespace std::chrono;
  const year_month_day calendar{std::chrono::year{whole_year}, std::chrono::month{static_cast<unsigned>(month)},
                                std::chrono::day{static_cast<unsigned>(day)}};
  if (day < 1 || day > 31 || !calendar.ok())
    return false;
  constexpr sys_days first_day = std::chrono::year{1899} / December / 30; // where day numbers begin
  const auto days_since = (sys_days{calendar} - first_day).count();
  // Half a second keeps the minute when the fraction of a day is taken apart again.
  date = static_cast<double>(days_since) + (hour * 3600.0 + minute * 60.0 + 0.5) / 86400.0;
  return true;
}

constexpr std::int32_t first_year = 1900, years_of_a_century = 100;

} // namespace

bool date_from_FPC_format_get(std::string_view text, double &date) {
  std::array<std::int32_t, 5> numbers{};
  if (!five_numbers(text, numbers) || numbers[0] < 0 || numbers[0] >= years_of_a_century)
    return false;
  return day_number_of(first_year + years_of_a_century + numbers[0], numbers, date);
}

std::string date_text_of_fpc_file(double date) {
  const std::int32_t year = calendar_of_day_number(date).tm_year;
  return (year >= 0 && year < years_of_a_century ? "" : "1") + str_date_from_FPC_format_get(date);
}

bool date_of_fpc_file(std::string_view text, double &date) {
  std::array<std::int32_t, 5> numbers{};
  if (!five_numbers(text, numbers) || numbers[0] < 0 || numbers[0] >= 2 * years_of_a_century)
    return false;
  return day_number_of(first_year + numbers[0], numbers, date);
}

} // namespace orb
