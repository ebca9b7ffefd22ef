#include "frame/numbers.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "frame/process_frame.h"

namespace orb {

namespace {

// Powers of ten that a float64 holds exactly.
constexpr double exact_power_of_ten[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                         1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int largest_exact_power = 22;
constexpr std::uint64_t largest_exact_whole = std::uint64_t{1} << 53;
// One more digit than this and the next could overflow 64 bits.
constexpr std::uint64_t room_for_a_digit = 1000000000000000000u;
constexpr int exponent_limit = 100000;

struct number_parts {
  bool negative = false;
  bool all_digits_kept = true;     // in `mantissa`
  std::uint64_t mantissa = 0;      // the leading digits as a whole number
  std::int64_t decimal_places = 0; // digits behind the decimal sign that `mantissa` holds
  int exponent = 0;                // of the text
  const char *digits = nullptr;    // digits and decimal sign
  const char *digits_end = nullptr;
};

void trim(const char *&p, const char *&end) {
  while (p != end && (*p == ' ' || *p == '\t'))
    ++p;
  while (p != end && (end[-1] == ' ' || end[-1] == '\t'))
    --end;
}

bool is_digit(char c) {
  return static_cast<unsigned>(c - '0') <= 9;
}

// The exponent behind "e": a sign and at least one digit up to the end.
bool exponent_parse(const char *p, const char *end, int &exponent) {
  if (end - p < 2 || (*p != '+' && *p != '-'))
    return false;
  const bool negative = *p++ == '-';
  for (; p != end; ++p) {
    if (!is_digit(*p))
      return false;
    if (exponent < exponent_limit)
      exponent = exponent * 10 + (*p - '0');
  }
  if (negative)
    exponent = -exponent;
  return true;
}

bool parts_parse(const char *p, const char *end, number_parts &parts) {
  if (p != end && (*p == '+' || *p == '-'))
    parts.negative = *p++ == '-';
  parts.digits = p;
  bool any_digit = false, decimal_sign = false;
  for (; p != end; ++p) {
    const char c = *p;
    if (is_digit(c)) {
      any_digit = true;
      if (parts.mantissa < room_for_a_digit) {
        parts.mantissa = parts.mantissa * 10 + static_cast<std::uint64_t>(c - '0');
        parts.decimal_places += decimal_sign;
      } else {
        parts.all_digits_kept = false;
      }
    } else if (c == '.' || c == ',') {
      if (decimal_sign)
        return false;
      decimal_sign = true;
    } else {
      break;
    }
  }
  parts.digits_end = p;
  if (!any_digit)
    return false;
  if (p == end)
    return true;
  return (*p == 'e' || *p == 'E') && exponent_parse(p + 1, end, parts.exponent);
}

// The correctly rounded value of any number of digits. All digits that can matter go to a buffer as a whole number;
// a last 1 stands for whatever follows them, which is enough to break a tie.
bool value_of_many_digits(const number_parts &parts, double &value) {
  constexpr int most_digits = 800;
  char text[most_digits + 32];
  char *to = text;
  std::int64_t exponent = parts.exponent;
  bool decimal_sign = false, rest = false;
  for (const char *p = parts.digits; p != parts.digits_end; ++p) {
    if (!is_digit(*p)) {
      decimal_sign = true;
    } else if (to == text && *p == '0') { // a leading zero
      exponent -= decimal_sign;
    } else if (to - text < most_digits) {
      *to++ = *p;
      exponent -= decimal_sign;
    } else {
      rest = rest || *p != '0';
      exponent += !decimal_sign;
    }
  }
  if (to == text) {
    value = 0;
    return true;
  }
  if (rest) {
    *to++ = '1';
    --exponent;
  }
  const bool small = exponent + (to - text) < 0;
  *to++ = 'e';
  to = std::to_chars(to, std::end(text), exponent).ptr;
  const auto result = std::from_chars(text, to, value);
  if (result.ec == std::errc())
    return std::isfinite(value);
  value = 0;
  return small; // too small is 0, too large is no number
}

} // namespace

bool number_parse(std::string_view text, double &value) {
  const char *p = text.data(), *end = p + text.size();
  trim(p, end);
  number_parts parts;
  if (!parts_parse(p, end, parts))
    return false;
  double size = 0;
  const std::int64_t power = parts.exponent - parts.decimal_places;
  if (parts.all_digits_kept && parts.mantissa <= largest_exact_whole && power >= -largest_exact_power &&
      power <= largest_exact_power) {
    // both are exact, so that the one operation rounds correctly (Clinger 1990)
    size = static_cast<double>(parts.mantissa);
    size = power < 0 ? size / exact_power_of_ten[-power] : size * exact_power_of_ten[power];
  } else if (!value_of_many_digits(parts, size)) {
    return false;
  }
  value = parts.negative ? -size : size;
  return true;
}

bool whole_number_parse(std::string_view text, std::int32_t &value) {
  const char *p = text.data(), *end = p + text.size();
  trim(p, end);
  bool negative = false;
  if (p != end && (*p == '+' || *p == '-'))
    negative = *p++ == '-';
  if (p == end)
    return false;
  std::int64_t number = 0;
  for (; p != end; ++p) {
    if (!is_digit(*p))
      return false;
    number = number * 10 + (*p - '0');
    if (number > INT64_C(0x80000000))
      return false;
  }
  if (negative)
    number = -number;
  if (number > INT32_MAX)
    return false;
  value = static_cast<std::int32_t>(number);
  return true;
}

void whole_number_append(std::string &to, std::int64_t value) {
  char text[24];
  to.append(text, std::to_chars(text, std::end(text), value).ptr);
}

namespace {

// The decimal digits of value * 10^decimals when a product in float64 settles how it is rounded.
bool rounded_product(double value, int decimals, std::int64_t &rounded) {
  if (decimals < 0 || decimals > 9)
    return false;
  const double product = value * exact_power_of_ten[decimals];
  if (!(product < 1e9))
    return false;
  const double whole = std::floor(product), fraction = product - whole;
  // the product is off by less than 1.2e-7, so that away from a half its rounding is the one of the exact value
  if (std::fabs(fraction - 0.5) < 1e-6)
    return false;
  rounded = static_cast<std::int64_t>(whole) + (fraction > 0.5);
  return true;
}

} // namespace

void number_text_append(std::string &to, double value, int decimals) {
  std::int64_t rounded = 0;
  if (rounded_product(std::fabs(value), decimals, rounded)) {
    char text[24];
    char *p = std::end(text);
    for (int i = 0; i < decimals; ++i, rounded /= 10)
      *--p = static_cast<char>('0' + rounded % 10);
    if (decimals > 0)
      *--p = '.';
    do
      *--p = static_cast<char>('0' + rounded % 10);
    while ((rounded /= 10) > 0);
    if (std::signbit(value))
      *--p = '-';
    to.append(p, std::end(text));
    return;
  }
  char text[512]; // the largest float64 has 309 digits
  if (decimals > 150)
    decimals = 150;
  const auto result = std::to_chars(text, std::end(text), value, std::chars_format::fixed, decimals);
  to.append(text, result.ptr);
}

std::string number_text(double value, int decimals) {
  std::string text;
  number_text_append(text, value, decimals);
  return text;
}

std::string number_text_shortest(double value) {
  char text[64];
  const double size = std::fabs(value);
  // Without a form std::to_chars would write 100000 as 1e+05.
  const bool plain = size == 0 || (size >= 1e-4 && size < 1e15);
  const auto result = plain ? std::to_chars(text, std::end(text), value, std::chars_format::fixed)
                            : std::to_chars(text, std::end(text), value);
  return std::string(text, result.ptr);
}

std::string number_text_thousands(std::int64_t value) {
  std::string text;
  whole_number_append(text, value);
  const std::size_t first_digit = value < 0 ? 1 : 0;
  for (std::size_t at = text.size(); at > first_digit + 3;) {
    at -= 3;
    text.insert(at, 1, ',');
  }
  return text;
}

std::string decimal_sign_swapped(std::string_view text) {
  std::string swapped(text);
  for (char &c : swapped) {
    if (c == ',')
      c = '.';
    else if (c == '.')
      c = ',';
  }
  return swapped;
}

// The parser takes the point and the comma alike, so that a text and its swapped form mean the same number.
bool text_is_number(std::string_view text) {
  double value = 0;
  return number_parse(text, value);
}

bool number_from_text_silent(std::string_view text, double &value) {
  return number_parse(text, value);
}

double number_from_text(process_frame &frame, std::string_view text) {
  double value = 0;
  if (number_parse(text, value))
    return value;
  question asked;
  asked.text =
      "Record " + std::string(text) + " is not number?!\rZero will be used instead. Do you want to STOP the program?";
  asked.by_default = answer::no;
  asked.to_go_on = answer::no;
  asked.marks_failure = true;
  if (frame.yes(asked)) {
    const std::string reason = "Record " + std::string(text) + " is not number?!";
    frame.log_line(reason);
    throw program_end(reason, exit_status::run_failed);
  }
  return 0;
}

} // namespace orb
