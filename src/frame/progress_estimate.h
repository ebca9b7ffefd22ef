// How far a work has come and how long it will still take, in words for a line or a bar.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace orb {

// "4.2 s", "3 min 20 s", "2 h 5 min".
std::string text_of_time(double seconds);

class progress_estimate {
public:
  progress_estimate() { begin(); }
  void begin();
  // Done of total, in units that only this piece of work knows; less done or another total begins another piece.
  void progress(std::int64_t done, std::int64_t total);
  bool is_known() const { return total_ > 0; }
  double share() const; // 0 to 1
  // "about 4.2 s left"; empty while it is too early to tell.
  std::string text_of_rest() const;

private:
  using clock = std::chrono::steady_clock;
  std::int64_t done_ = 0, total_ = 0;
  clock::time_point piece_began_{};
};

} // namespace orb
