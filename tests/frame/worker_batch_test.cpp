// Long items on worker threads under a polling caller.
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <vector>

#include "frame/worker_batch.h"

namespace {

using namespace orb;
using namespace std::chrono_literals;

TEST(worker_batch, every_item_is_done_once_by_any_number_of_threads) {
  for (const int threads : {1, 2, 5}) {
    std::vector<int> done(101, 0);
    std::int64_t told = -1;
    const auto body = [&](std::int64_t item, int worker, const std::atomic<bool> &stopped) {
      EXPECT_LT(worker, threads);
      EXPECT_FALSE(stopped);
      ++done[static_cast<std::size_t>(item)];
    };
    EXPECT_TRUE(run_and_poll(100, threads, body, [&](std::int64_t n) {
      told = n;
      return true;
    }));
    EXPECT_EQ(done, [] {
      std::vector<int> once(101, 1);
      once[0] = 0;
      return once;
    }());
    EXPECT_EQ(told, 100); // the last poll sees the end
  }
  EXPECT_TRUE(run_and_poll(0, 2, {}, {}));
}

TEST(worker_batch, polls_while_a_long_item_runs_and_stops_it) {
  const std::thread::id caller = std::this_thread::get_id();
  int polls = 0;
  std::atomic<int> started{0};
  const auto begin = std::chrono::steady_clock::now();
  const bool all = run_and_poll(
      10, 2,
      [&](std::int64_t, int, const std::atomic<bool> &stopped) {
        EXPECT_NE(std::this_thread::get_id(), caller);
        ++started;
        while (!stopped && std::chrono::steady_clock::now() - begin < 20s)
          std::this_thread::sleep_for(1ms);
      },
      [&](std::int64_t) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        return ++polls < 4;
      },
      5ms);
  EXPECT_FALSE(all);
  EXPECT_EQ(polls, 4);
  EXPECT_EQ(started, 2);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
}

// An item that the stop cut short isn't done, even when it was the last one.
TEST(worker_batch, a_stop_during_the_last_item_is_no_end) {
  EXPECT_FALSE(run_and_poll(
      1, 1,
      [](std::int64_t, int, const std::atomic<bool> &stopped) {
        while (!stopped)
          std::this_thread::sleep_for(1ms);
      },
      [](std::int64_t) { return false; }, 1ms));
}

TEST(worker_batch, exceptions_reach_the_caller) {
  const auto body = [](std::int64_t item, int, const std::atomic<bool> &) {
    if (item == 3)
      throw std::runtime_error("third");
  };
  EXPECT_THROW(run_and_poll(50, 2, body, {}), std::runtime_error);
  EXPECT_THROW(run_and_poll(
                   2, 2, [](std::int64_t, int, const std::atomic<bool> &) { std::this_thread::sleep_for(5ms); },
                   [](std::int64_t) -> bool { throw std::logic_error("poll"); }),
               std::logic_error);
}

} // namespace
