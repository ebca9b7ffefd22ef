// Worker threads for few long items: the calling thread polls while they run.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>

namespace orb {

// Calls `body(item, worker, stopped)` for the items 1..n, each taken by the next free one of `threads` worker threads
// (0: all cores); `worker` is from 0 and no two running calls share it. Meanwhile the calling thread calls
// `poll(items done)` every `period`, and once at the end. When a poll answers false no further item is started and
// `stopped` turns true, which a long body must look at itself. Returns whether all items were done without that.
// An exception of a body or of a poll stops the rest in the same way and is thrown to the caller after all threads have
// ended. What a body writes must depend on its item alone.
bool run_and_poll(std::int64_t n, int threads,
                  const std::function<void(std::int64_t, int, const std::atomic<bool> &)> &body,
                  const std::function<bool(std::int64_t)> &poll,
                  std::chrono::milliseconds period = std::chrono::milliseconds(20));

} // namespace orb
