// Places of inputs that look wrong and were read all the same: the first ten of them, and how many there are.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orb {

class input_doubts {
public:
  static constexpr std::int64_t most_named = 10;

  // `place`: "file NAME, line N".
  void add(const std::string &what, const std::string &place) {
    if (++count_ <= most_named)
      named_.push_back(what + " (" + place + ")");
  }
  std::int64_t count() const { return count_; }
  const std::vector<std::string> &named() const { return named_; }
  // The number of all and a line for each that is named; empty when there are none.
  std::string text() const {
    if (count_ == 0)
      return {};
    std::string text = std::to_string(count_) + (count_ == 1 ? " doubtful place" : " doubtful places") +
                       " in the input" + (count_ > most_named ? ", of which the first:" : ":");
    for (const std::string &place : named_)
      text += "\r\n  " + place;
    return text;
  }

private:
  std::int64_t count_ = 0;
  std::vector<std::string> named_;
};

} // namespace orb
