// Names as UTF-8, whatever bytes they are made of.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orb {

// Bytes of the UTF-8 character of more than one byte at a place, 2 to 4; 0 when there is none.
std::size_t utf8_length(std::string_view text, std::size_t at);
void append_byte_as_latin_1(std::string &to, unsigned char byte);
// The text with bytes that are no UTF-8 taken for Latin-1, and control characters for blanks.
std::string utf8_text(std::string_view text);
// How many characters it has; of a text that is UTF-8.
std::size_t utf8_count(std::string_view text);

} // namespace orb
