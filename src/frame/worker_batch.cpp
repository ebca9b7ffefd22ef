#include "frame/worker_batch.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "frame/worker_blocks.h"

namespace orb {

namespace {

// What the workers and the calling thread share.
struct batch_state {
  std::atomic<std::int64_t> next{1}, done{0};
  std::atomic<bool> stopped{false};
  std::mutex guard; // of the two below
  std::condition_variable worker_ended;
  int running = 0;
  std::exception_ptr failure;

  void fail() {
    const std::lock_guard lock(guard);
    if (!failure)
      failure = std::current_exception();
    stopped = true;
  }
};

void work_on_items(batch_state &state, std::int64_t n, int worker,
                   const std::function<void(std::int64_t, int, const std::atomic<bool> &)> &body) {
  try {
    for (std::int64_t item = state.next++; item <= n && !state.stopped; item = state.next++) {
      body(item, worker, state.stopped);
      ++state.done;
    }
  } catch (...) {
    state.fail();
  }
  const std::lock_guard lock(state.guard);
  --state.running;
  state.worker_ended.notify_one();
}

void poll_until_ended(batch_state &state, const std::function<bool(std::int64_t)> &poll,
                      std::chrono::milliseconds period) {
  std::unique_lock lock(state.guard);
  for (bool ended = false; !ended;) { // seen before the poll, so that the last poll comes after the last item
    ended = state.worker_ended.wait_for(lock, period, [&] { return state.running == 0; });
    lock.unlock();
    try {
      if (poll && !state.stopped && !poll(state.done))
        state.stopped = true;
    } catch (...) {
      state.fail();
    }
    lock.lock();
  }
}

} // namespace

bool run_and_poll(std::int64_t n, int threads,
                  const std::function<void(std::int64_t, int, const std::atomic<bool> &)> &body,
                  const std::function<bool(std::int64_t)> &poll, std::chrono::milliseconds period) {
  batch_state state;
  const int workers = static_cast<int>(std::min<std::int64_t>(worker_count(threads), n));
  std::vector<std::thread> started;
  state.running = std::max(workers, 0);
  for (int worker = 0; worker < workers; ++worker) {
    try {
      started.emplace_back(work_on_items, std::ref(state), n, worker, std::cref(body));
    } catch (...) { // the machine gives no more threads: those that run do the work
      const std::lock_guard lock(state.guard);
      state.running -= workers - worker;
      if (worker == 0)
        state.failure = std::current_exception();
      break;
    }
  }
  poll_until_ended(state, poll, period);
  for (std::thread &thread : started)
    thread.join();
  if (state.failure)
    std::rethrow_exception(state.failure);
  return !state.stopped && state.done >= n; // a body that was told to stop may have come back early
}

} // namespace orb
