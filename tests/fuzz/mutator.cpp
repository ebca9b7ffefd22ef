#include "mutator.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <iterator>

namespace fuzz_test {

namespace {

using std::size_t;

constexpr const char *extremes[] = {"0",
                                    "-1",
                                    "1",
                                    "2147483647",
                                    "-2147483648",
                                    "2147483648",
                                    "9223372036854775807",
                                    "99999999999999999999",
                                    "32767",
                                    "65536",
                                    "500",
                                    "501",
                                    "1e+308",
                                    "1E-300",
                                    "nan",
                                    "-inf",
                                    "0.005",
                                    ".",
                                    "",
                                    "-0",
                                    "60001"};
constexpr const char *line_ends[] = {"\n", "\r", "\r\n", "\n\r", "\n\n", ""};
constexpr char odd_bytes[] = {'\0', '\t', '\n', '\r', ' ', ',',    '"',    '#',
                              '-',  '.',  '\\', '/',  '=', '\x1a', '\x7f', '\xff'};
constexpr std::int32_t most_of_words[] = {2147483647, -2147483647 - 1, -1, 0, 1, 65536, 16777216};

// One chance among the places 0..size.
class changer {
public:
  changer(std::string &bytes, const std::string &other, orb::random_source &chance)
      : bytes_(bytes), other_(other), chance_(chance) {}

  void change() {
    using way = void (changer::*)();
    constexpr way ways[] = {&changer::flip,       &changer::put_byte, &changer::cut_out,     &changer::repeat,
                            &changer::splice,     &changer::truncate, &changer::put_extreme, &changer::put_extreme,
                            &changer::change_end, &changer::put_word, &changer::swap_lines,  &changer::repeat_line,
                            &changer::drop_line};
    (this->*ways[below(std::size(ways))])();
  }

private:
  size_t below(size_t n) { return n < 2 ? 0 : static_cast<size_t>(chance_.next() % n); }
  size_t place() { return below(bytes_.size() + 1); }
  size_t length() { return 1 + below(below(4) == 0 ? 200 : 8); }
  // From the beginning of the line of a place to behind its end.
  std::pair<size_t, size_t> line() {
    const size_t at = place(), before = at == 0 ? std::string::npos : bytes_.rfind('\n', at - 1);
    const size_t begin = before == std::string::npos ? 0 : before + 1, end = bytes_.find('\n', begin);
    return {begin, end == std::string::npos ? bytes_.size() : end + 1};
  }

  void flip() {
    if (!bytes_.empty())
      bytes_[below(bytes_.size())] ^= static_cast<char>(1 << below(8));
  }
  void put_byte() {
    const char byte = below(2) == 0 ? static_cast<char>(below(256)) : odd_bytes[below(std::size(odd_bytes))];
    bytes_.insert(place(), 1, byte);
  }
  void cut_out() { bytes_.erase(place(), length()); }
  void repeat() {
    const std::string piece = bytes_.substr(place(), length());
    bytes_.insert(place(), piece);
  }
  void splice() {
    const size_t begin = below(other_.size() + 1);
    bytes_.replace(place(), below(2) * length(), other_.substr(begin, below(2) == 0 ? length() : std::string::npos));
  }
  void truncate() { bytes_.resize(place()); }
  void change_end() {
    const size_t at = bytes_.find_first_of("\r\n", place());
    if (at != std::string::npos)
      bytes_.replace(at, bytes_.compare(at, 2, "\r\n") == 0 ? 2 : 1, line_ends[below(std::size(line_ends))]);
  }
  // In place of a number, where one is found.
  void put_extreme() {
    size_t begin = std::min(bytes_.find_first_of("0123456789", place()), bytes_.size()), end = begin;
    while (end < bytes_.size() && std::isdigit(static_cast<unsigned char>(bytes_[end])) != 0)
      ++end;
    bytes_.replace(begin, end - begin, extremes[below(std::size(extremes))]);
  }
  // Four bytes of a binary number.
  void put_word() {
    if (bytes_.size() < 4)
      return;
    const auto word = static_cast<std::uint32_t>(most_of_words[below(std::size(most_of_words))]);
    const size_t at = below(2) == 0 ? below(bytes_.size() - 3) : 2 * below(std::min<size_t>(bytes_.size() - 2, 32) / 2);
    for (size_t i = 0; i < 4 && at + i < bytes_.size(); ++i)
      bytes_[at + i] = static_cast<char>(word >> (8 * i));
  }
  void repeat_line() {
    const auto [begin, end] = line();
    const std::string text = bytes_.substr(begin, end - begin);
    bytes_.insert(below(2) == 0 ? begin : line().first, text);
  }
  void drop_line() {
    const auto [begin, end] = line();
    bytes_.erase(begin, end - begin);
  }
  void swap_lines() {
    const auto [begin, end] = line();
    const std::string text = bytes_.substr(begin, end - begin);
    bytes_.erase(begin, end - begin);
    bytes_.insert(line().first, text);
  }

  std::string &bytes_;
  const std::string &other_;
  orb::random_source &chance_;
};

} // namespace

std::string mutated(std::string bytes, const std::string &other, orb::random_source &chance) {
  const std::int32_t n = chance.number_up_to(4);
  for (std::int32_t i = 0; i < n; ++i)
    changer(bytes, other, chance).change();
  return bytes;
}

} // namespace fuzz_test
