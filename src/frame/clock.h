// One clock gives every date and time that a result or a log holds.
#pragma once

#include <ctime>
#include <string>

namespace orb {

class program_clock {
public:
  // Follows the machine's local time, or stands still at SOURCE_DATE_EPOCH (in UTC) when that is set.
  program_clock();
  std::tm now() const;
  std::string log_date() const;             // "YYYY-MM-dd,hh:mm:ss"
  std::string date_and_time_string() const; // "YYYY-MM-dd_HH-mm-ss", for file names
  std::string iso_date() const;             // "YYYY-MM-ddTHH:mm:ss", for run.json
  double day_number() const;                // days since 1899-12-30 with the time of day as fraction

private:
  bool pinned_ = false;
  std::time_t pinned_time_ = 0;
};

// The calendar fields of a day number as `day_number` gives it.
std::tm calendar_of_day_number(double day_number);

} // namespace orb
