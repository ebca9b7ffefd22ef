#include "frame/random_source.h"

#include <bit>

namespace orb {

namespace {

std::uint64_t splitmix64(std::uint64_t &state) {
  state += 0x9e3779b97f4a7c15u;
  std::uint64_t z = state;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
  return z ^ (z >> 31);
}

} // namespace

random_source::random_source(std::uint64_t seed, std::uint64_t stream) {
  std::uint64_t of_stream = stream;
  // the stream's number is mixed first, so that neighbouring seeds and streams share nothing
  std::uint64_t mixed = seed ^ (stream == 0 ? 0 : splitmix64(of_stream));
  for (std::uint64_t &word : state_)
    word = splitmix64(mixed);
}

std::uint64_t random_source::next() {
  const std::uint64_t result = std::rotl(state_[1] * 5, 7) * 9;
  const std::uint64_t shifted = state_[1] << 17;
  state_[2] ^= state_[0];
  state_[3] ^= state_[1];
  state_[1] ^= state_[2];
  state_[0] ^= state_[3];
  state_[2] ^= shifted;
  state_[3] = std::rotl(state_[3], 45);
  return result;
}

double random_source::uniform() {
  return static_cast<double>(next() >> 11) * 0x1.0p-53;
}

std::int32_t random_source::number_up_to(std::int32_t n) {
  // the high half of a product, values that would favour some numbers drawn again (Lemire 2019)
  const std::uint32_t range = static_cast<std::uint32_t>(n < 1 ? 1 : n);
  const std::uint32_t uneven = (0u - range) % range;
  std::uint64_t product = 0;
  do
    product = (next() >> 32) * range;
  while (static_cast<std::uint32_t>(product) < uneven);
  return static_cast<std::int32_t>(product >> 32) + 1;
}

} // namespace orb
