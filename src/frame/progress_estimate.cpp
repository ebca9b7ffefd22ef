#include "frame/progress_estimate.h"

#include <algorithm>
#include <fmt/format.h>

namespace orb {

std::string text_of_time(double seconds) {
  if (seconds < 59.95)
    return fmt::format("{:.1f} s", seconds);
  const auto whole = static_cast<std::int64_t>(seconds + 0.5);
  return whole < 3600 ? fmt::format("{} min {} s", whole / 60, whole % 60)
                      : fmt::format("{} h {} min", whole / 3600, whole % 3600 / 60);
}

void progress_estimate::begin() {
  done_ = total_ = 0;
  piece_began_ = clock::now();
}

void progress_estimate::progress(std::int64_t done, std::int64_t total) {
  if (done < done_ || total != total_)
    piece_began_ = clock::now();
  done_ = done;
  total_ = total;
}

double progress_estimate::share() const {
  return total_ <= 0 ? 0 : std::clamp(static_cast<double>(done_) / static_cast<double>(total_), 0.0, 1.0);
}

std::string progress_estimate::text_of_rest() const {
  const double gone = std::chrono::duration<double>(clock::now() - piece_began_).count();
  const double done = share();
  return done > 0.02 && gone > 2 ? "about " + text_of_time(gone / done * (1 - done)) + " left" : std::string();
}

} // namespace orb
