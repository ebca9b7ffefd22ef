// Dates as .fpc files write them: year (two digits), month, day, hour and minute, separated by single blanks.
#pragma once

#include <string>
#include <string_view>

namespace orb {

// From a day number of the frame's clock.
std::string str_date_from_FPC_format_get(double date);
// The day number of such a text (years 2000 to 2099). False, and `date` as it was, when the text is none.
bool date_from_FPC_format_get(std::string_view text, double &date);

// The same as the lines of a file have them, where years count from 1900: 111 for 2011, 98 for 1998.
std::string date_text_of_fpc_file(double date);
bool date_of_fpc_file(std::string_view text, double &date);

} // namespace orb
