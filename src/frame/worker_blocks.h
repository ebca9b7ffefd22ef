// Worker threads inside a call: the calling thread starts a block, waits, reports, polls, starts the next.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>

namespace orb {

// Number of worker threads for a setting where 0 means all cores.
int worker_count(int threads_setting);

// Calls `body(first, last, worker)` for consecutive pieces of [first, last] (both ends included) on up to `threads`
// workers, `block` items at a time; `worker` is below worker_count(threads) and no two running calls share it. Between
// blocks `between(done_up_to)` runs on the calling thread; when it answers false the rest is not started. Returns
// whether all was done. An exception of a body is thrown to the caller. What a body writes must depend on its items
// alone, so that the result is the same for any number of threads.
bool run_in_blocks(std::int64_t first, std::int64_t last, std::int64_t block, std::int64_t piece, int threads,
                   const std::function<void(std::int64_t, std::int64_t, int)> &body,
                   const std::function<bool(std::int64_t)> &between);

} // namespace orb
