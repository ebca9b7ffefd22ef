#include "frame/clock.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace orb {

namespace {

constexpr double day_number_of_1970 = 25569; // days from 1899-12-30 to 1970-01-01
constexpr double seconds_a_day = 86400;

std::string formatted(const std::tm &when, const char *format) {
  char text[64];
  return std::string(text, std::strftime(text, sizeof text, format, &when));
}

} // namespace

program_clock::program_clock() {
  const char *epoch = std::getenv("SOURCE_DATE_EPOCH");
  if (epoch == nullptr || *epoch == '\0')
    return;
  long long seconds = 0;
  const char *end = epoch + std::strlen(epoch);
  const auto result = std::from_chars(epoch, end, seconds);
  pinned_ = result.ec == std::errc() && result.ptr == end;
  pinned_time_ = static_cast<std::time_t>(seconds);
}

std::tm program_clock::now() const {
  std::tm when{};
  if (pinned_) {
    gmtime_r(&pinned_time_, &when);
  } else {
    const std::time_t time = std::time(nullptr);
    localtime_r(&time, &when);
  }
  return when;
}

std::string program_clock::log_date() const {
  return formatted(now(), "%Y-%m-%d,%H:%M:%S");
}

std::string program_clock::date_and_time_string() const {
  return formatted(now(), "%Y-%m-%d_%H-%M-%S");
}

std::string program_clock::iso_date() const {
  return formatted(now(), "%Y-%m-%dT%H:%M:%S");
}

double program_clock::day_number() const {
  std::tm fields = now();
  // the calendar fields taken as if they were UTC count days without summer time
  return day_number_of_1970 + static_cast<double>(timegm(&fields)) / seconds_a_day;
}

std::tm calendar_of_day_number(double day_number) {
  const double seconds = std::round((day_number - day_number_of_1970) * seconds_a_day);
  // years 100 to 9999; a damaged file can hold any bits
  const bool sound = seconds > -6e10 && seconds < 2.6e11;
  const std::time_t time = sound ? static_cast<std::time_t>(seconds) : 0;
  std::tm when{};
  gmtime_r(&time, &when);
  return when;
}

} // namespace orb
