// The one generator of chance; handed to whoever draws.
#pragma once

#include <cstdint>

namespace orb {

// xoshiro256** (Blackman and Vigna 2018), seeded by splitmix64: the same seed gives the same run on every machine.
class random_source {
public:
  // `stream`: the number of the piece of work (cluster, run) that draws, so that threads don't change results.
  explicit random_source(std::uint64_t seed = 1, std::uint64_t stream = 0);
  std::uint64_t next();
  double uniform();                          // in [0, 1)
  std::int32_t number_up_to(std::int32_t n); // 1..n, n at least 1

private:
  std::uint64_t state_[4];
};

} // namespace orb
