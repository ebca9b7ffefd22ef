// Numbers in texts: one tolerant function parses one, one function formats one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orb {

class process_frame;

// A number is an optional sign, digits with at most one point or comma among or around them (at least one digit), and
// an exponent only with a sign ("1.5E+3"; "15E24" is no number, it is a clone name). Blanks and tabs around it are
// passed over. `value` is set only when the text is a number. Never allocates.
bool number_parse(std::string_view text, double &value);
// The same for whole numbers that fit 32 bits: no point, comma or exponent.
bool whole_number_parse(std::string_view text, std::int32_t &value);

// The number in the style "0.00" (as many decimals as asked), rounded as printf does, with a decimal point.
std::string number_text(double value, int decimals);
// The same at the end of a text that exists already, without allocation of its own: for writers of large files.
void number_text_append(std::string &to, double value, int decimals);
void whole_number_append(std::string &to, std::int64_t value);
// The shortest text that reads back as the same number: 15, 15.5, 1e-07.
std::string number_text_shortest(double value);
// "#,###": thousands separated by commas.
std::string number_text_thousands(std::int64_t value);

// The number services of the frame.
bool text_is_number(std::string_view text);
std::string decimal_sign_swapped(std::string_view text);
bool number_from_text_silent(std::string_view text, double &value);
// Asks "Record ... is not number?!" when it is none; yes ends the program (status 1), no gives 0.
double number_from_text(process_frame &frame, std::string_view text);

} // namespace orb
