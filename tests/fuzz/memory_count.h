// Counts what operator new gives out in this program, of all threads.
#pragma once

#include <cstdint>

namespace fuzz_test {

// What a reader may use: so much, and so much more for each byte of its input.
struct work_limits {
  std::int64_t bytes = 2 << 20, bytes_per_byte = 200;
  std::int64_t allocations = 20000, allocations_per_byte = 20;
};

// Counts from its making on.
class memory_count {
public:
  memory_count();
  std::int64_t most_bytes() const;  // at any time, beyond those at the beginning
  std::int64_t allocations() const; // ever
  // Throws broken_promise when a reader of so many bytes used more than its limits.
  void check(std::int64_t n_bytes_read, const work_limits &limits) const;

private:
  std::int64_t bytes_before_, allocations_before_;
};

} // namespace fuzz_test
