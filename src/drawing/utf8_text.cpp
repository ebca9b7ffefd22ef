#include "drawing/utf8_text.h"

namespace orb {

static bool continuation(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

std::size_t utf8_length(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  if (!continuation(text, at + 1))
    return 0;
  if (byte(0) >= 0xC2 && byte(0) <= 0xDF)
    return 2;
  if (!continuation(text, at + 2))
    return 0;
  if (byte(0) == 0xE0)
    return byte(1) >= 0xA0 ? 3 : 0; // not an overlong form
  if (byte(0) == 0xED)
    return byte(1) < 0xA0 ? 3 : 0; // not a surrogate
  if (byte(0) >= 0xE1 && byte(0) <= 0xEF)
    return 3;
  if (!continuation(text, at + 3))
    return 0;
  if (byte(0) == 0xF0)
    return byte(1) >= 0x90 ? 4 : 0;
  if (byte(0) == 0xF4)
    return byte(1) < 0x90 ? 4 : 0; // up to U+10FFFF
  return byte(0) >= 0xF1 && byte(0) <= 0xF3 ? 4 : 0;
}

void append_byte_as_latin_1(std::string &to, unsigned char byte) {
  to += static_cast<char>(0xC0 | (byte >> 6));
  to += static_cast<char>(0x80 | (byte & 0x3F));
}

std::string utf8_text(std::string_view text) {
  std::string made;
  made.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80) {
      made += byte < 32 || byte == 127 ? ' ' : text[at];
    } else if (const std::size_t length = utf8_length(text, at); length > 0) {
      made.append(text.substr(at, length));
      at += length - 1;
    } else {
      append_byte_as_latin_1(made, byte);
    }
  }
  return made;
}

std::size_t utf8_count(std::string_view text) {
  std::size_t n = 0;
  for (const char c : text)
    n += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
  return n;
}

} // namespace orb
