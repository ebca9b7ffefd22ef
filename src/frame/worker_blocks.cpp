#include "frame/worker_blocks.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <oneapi/tbb/blocked_range.h>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/partitioner.h>
#include <oneapi/tbb/task_arena.h>

namespace orb {

namespace {

using block_body = std::function<void(std::int64_t, std::int64_t, int)>;

#if defined(__SANITIZE_THREAD__)

// The packaged oneTBB isn't built for the thread sanitizer, which can't see how it hands work over and reports every
// use of a result. Plain threads take its place in that build, so that races of the work itself are found.
void run_pieces(int workers, std::int64_t first, std::int64_t last, std::int64_t piece, const block_body &body) {
  std::atomic<std::int64_t> next{first};
  std::exception_ptr failure;
  std::mutex failing;
  const auto work = [&](int worker) {
    try {
      for (std::int64_t begin = next.fetch_add(piece); begin <= last; begin = next.fetch_add(piece))
        body(begin, std::min(begin + piece - 1, last), worker);
    } catch (...) {
      const std::lock_guard lock(failing);
      failure = std::current_exception();
      next = last + 1;
    }
  };
  std::vector<std::thread> threads;
  for (int worker = 0; worker < workers; ++worker)
    threads.emplace_back(work, worker);
  for (std::thread &thread : threads)
    thread.join();
  if (failure)
    std::rethrow_exception(failure);
}

#else

// The pieces of [first, last] on the workers of an arena.
void run_pieces(int workers, std::int64_t first, std::int64_t last, std::int64_t piece, const block_body &body) {
  oneapi::tbb::task_arena arena(workers); // starts its workers with the first use
  arena.execute([&] {
    const std::int64_t n_pieces = (last - first) / piece + 1;
    const oneapi::tbb::blocked_range<std::int64_t> pieces(0, n_pieces);
    oneapi::tbb::parallel_for(
        pieces,
        [&](const oneapi::tbb::blocked_range<std::int64_t> &some) {
          const int worker = oneapi::tbb::this_task_arena::current_thread_index();
          for (std::int64_t p = some.begin(); p != some.end(); ++p) {
            const std::int64_t begin = first + p * piece;
            body(begin, std::min(begin + piece - 1, last), worker);
          }
        },
        oneapi::tbb::simple_partitioner());
  });
}

#endif

} // namespace

int worker_count(int threads_setting) {
  if (threads_setting > 0)
    return threads_setting;
  return static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
}

bool run_in_blocks(std::int64_t first, std::int64_t last, std::int64_t block, std::int64_t piece, int threads,
                   const block_body &body, const std::function<bool(std::int64_t)> &between) {
  block = std::max<std::int64_t>(block, 1);
  piece = std::max<std::int64_t>(piece, 1);
  const int workers = worker_count(threads);
  // the library keeps to the number of cores unless it is told otherwise, and complains on standard error
  std::optional<oneapi::tbb::global_control> more_than_cores;
  if (workers > worker_count(0))
    more_than_cores.emplace(oneapi::tbb::global_control::max_allowed_parallelism, static_cast<std::size_t>(workers));
  for (std::int64_t begin = first; begin <= last; begin += block) {
    const std::int64_t end = last - begin < block ? last : begin + block - 1;
    if (workers == 1) {
      for (std::int64_t p = begin; p <= end; p += piece)
        body(p, std::min(p + piece - 1, end), 0);
    } else {
      run_pieces(workers, begin, end, piece, body);
    }
    if (between && !between(end))
      return end == last;
  }
  return true;
}

} // namespace orb
