// When a search has to end: by the clock, or because the user stopped it.
#pragma once

#include <chrono>
#include <functional>

namespace orb {

// Asked on the thread of the search, so that it may be a worker's; true: stop. Once true it has to stay so.
using stop_question = std::function<bool()>;

// Looked at by searches on worker threads at short strides: one question and one look at the clock.
class search_clock {
public:
  using clock = std::chrono::steady_clock; // the day's end and a clock that is set don't matter to it

  // `seconds` below 0: no limit. `stop` may be null or empty, and outlives the clock and its shares.
  explicit search_clock(double seconds = -1, const stop_question *stop = nullptr)
      : start_(clock::now()), seconds_(seconds), stop_(stop) {}

  double seconds_used() const { return std::chrono::duration<double>(clock::now() - start_).count(); }
  bool stopped() const { return stop_ != nullptr && *stop_ && (*stop_)(); }
  bool time_is_up() const { return seconds_ >= 0 && seconds_used() >= seconds_; }
  bool over() const { return stopped() || time_is_up(); }
  // The same start and stop question with a share of the time, for a part of a search.
  search_clock share(double of_time) const {
    search_clock part(*this);
    part.seconds_ = seconds_ < 0 ? seconds_ : seconds_ * of_time;
    return part;
  }

private:
  clock::time_point start_;
  double seconds_;
  const stop_question *stop_;
};

} // namespace orb
