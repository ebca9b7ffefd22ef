#include "metrics/class_clone_dist_simul.h"

#include <algorithm>
#include <cmath>

#include "frame/class_serv_raznoe.h"
#include "frame/worker_batch.h"
#include "frame/worker_blocks.h"

namespace orb {

namespace {

constexpr std::int32_t runs_of_chunk = 256;
constexpr std::int32_t largest_size = 32767; // sizes are signed 16-bit in the tables

// Chance of one chunk of one situation; no two of them share a stream, whatever else the run simulates.
std::uint64_t stream_of(bool iid, std::int32_t n1, std::int32_t n2, std::int64_t chunk) {
  const auto part = [](std::int64_t n) { return static_cast<std::uint64_t>(n); };
  return part(iid ? 0 : 1) << 62 | part(n1) << 43 | part(n2) << 24 | part(chunk);
}

std::string text_of_seconds(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::clamp(seconds, 0.0, 1e9) + 0.5);
  return std::to_string(whole / 3600) + ":" + class_serv_raznoe::string_with_added_zeros(whole / 60 % 60, 2) + ":" +
         class_serv_raznoe::string_with_added_zeros(whole % 60, 2);
}

} // namespace

// Whole numbers, so that they may be added in any order.
struct class_clone_dist_simul::histogram {
  std::vector<std::int64_t> counts, sum_iid;

  explicit histogram(std::int32_t last) : counts(static_cast<std::size_t>(last) + 1, 0), sum_iid(counts) {}
  void add(std::int32_t index, std::int32_t k) {
    ++counts[static_cast<std::size_t>(index)];
    sum_iid[static_cast<std::size_t>(index)] += k;
  }
  void add(const histogram &other) {
    for (std::size_t b = 0; b < counts.size(); ++b) {
      counts[b] += other.counts[b];
      sum_iid[b] += other.sum_iid[b];
    }
  }
};

std::string class_clone_dist_simul::wrong_sizes(std::int32_t n1, std::int32_t n2, bool iid,
                                                const class_clone_simul &simul) {
  const std::int32_t most = std::min(simul.n_drawable_get(iid), largest_size);
  if (std::min(n1, n2) >= 1 && std::max(n1, n2) <= most)
    return {};
  return "Clones of " + std::to_string(n1) + " and " + std::to_string(n2) + " bands can't be drawn: from 1 to " +
         std::to_string(most) + " of the " + std::to_string(simul.n_bands_get()) + " band positions are possible.";
}

void class_clone_dist_simul::show_progress(std::int64_t done, std::int32_t n_runs, double work) {
  const double so_far = work_done_ + work * static_cast<double>(done) / n_runs;
  constexpr double parts = 1e6; // work is measured in no whole units
  if (work_total_ > 0)
    services_.frame.progress(static_cast<std::int64_t>(parts * so_far / work_total_), static_cast<std::int64_t>(parts));
  const auto now = std::chrono::steady_clock::now();
  if (now - shown_ < std::chrono::seconds(3))
    return;
  shown_ = now;
  services_.frame.control_text_set(std::to_string(done) + " of " + std::to_string(n_runs));
  const double elapsed = std::chrono::duration<double>(now - began_).count();
  if (so_far > 0)
    services_.frame.clones_text_set("time left: " +
                                    text_of_seconds(elapsed * std::max(work_total_ - so_far, 0.0) / so_far));
}

bool class_clone_dist_simul::draw_pairs(std::int32_t n_runs, std::int32_t n1, std::int32_t n2, bool iid,
                                        histogram &sum) {
  const std::int32_t B = simul_.n_bands_get(), last_index = static_cast<std::int32_t>(sum.counts.size()) - 1;
  const std::int64_t n_chunks = (static_cast<std::int64_t>(n_runs) + runs_of_chunk - 1) / runs_of_chunk;
  const auto n_workers = static_cast<std::size_t>(std::min<std::int64_t>(worker_count(services_.threads), n_chunks));
  std::vector<histogram> of_worker(n_workers, histogram(last_index));
  std::vector<class_clone_simul::band_states> states(n_workers);
  const auto chunk_of_runs = [&](std::int64_t chunk, int worker, const std::atomic<bool> &stopped) {
    const auto w = static_cast<std::size_t>(worker);
    random_source chance(services_.seed, stream_of(iid, n1, n2, chunk));
    const std::int64_t first = (chunk - 1) * runs_of_chunk,
                       last = std::min<std::int64_t>(first + runs_of_chunk, n_runs);
    for (std::int64_t run = first; run < last && !stopped.load(std::memory_order_relaxed); ++run) {
      std::int32_t k = 0;
      double x_fr = 0;
      simul_.create_single_pair_of_clones_and_characterize_overlap_fast(n1, n2, B, iid, k, x_fr, states[w], chance);
      // bands that clones have more than once weigh less than nothing
      of_worker[w].add(iid ? k : static_cast<std::int32_t>(std::clamp<double>(x_fr, 0, last_index)), k);
    }
  };
  const double work = work_of(n_runs, n1, n2);
  work_total_ = std::max(work_total_, work_done_ + work);
  const bool completed = run_and_poll(n_chunks, services_.threads, chunk_of_runs, [&](std::int64_t chunks_done) {
    show_progress(std::min<std::int64_t>(chunks_done * runs_of_chunk, n_runs), n_runs, work);
    return services_.frame.goes_on();
  });
  work_done_ += work;
  for (const histogram &one : of_worker)
    sum.add(one);
  return completed;
}

// No pair has an index above this one.
std::int32_t class_clone_dist_simul::largest_index(std::int32_t n1, std::int32_t n2, bool iid) const {
  const std::int32_t most_common = std::min(n1, n2);
  if (iid)
    return most_common;
  double heaviest = 0;
  for (std::int32_t b = 1; b <= simul_.n_bands_get(); ++b)
    heaviest = std::max(heaviest, simul_.band_log_weight_get(b));
  return static_cast<std::int32_t>(std::min<double>(simul_.n_bands_get(), std::ceil(most_common * heaviest)));
}

bool class_clone_dist_simul::estimation_of_log_probability_new(std::int32_t n_runs, std::int32_t n1, std::int32_t n2,
                                                               std::vector<double> &minus_log_P,
                                                               std::vector<std::uint8_t> &infinite,
                                                               std::vector<double> &mean_iid,
                                                               const class_DB_of_clones &database, bool iid) {
  services_.frame.local_process_text_set("Simul(" + std::to_string(n1) + "," + std::to_string(n2) + ")");
  if (prepared_for_ != &database) {
    // kind 2: bands that nearly all clones have must not be drawn as if a clone could have them twice
    simul_.create_distribution_function(services_.frame, database, 2);
    prepared_for_ = &database;
  }
  if (const std::string wrong = wrong_sizes(n1, n2, iid, simul_); !wrong.empty()) {
    return services_.frame.refuse(wrong);
  }
  if (n_runs < 1)
    return false;
  histogram sum(largest_index(n1, n2, iid));
  if (!draw_pairs(n_runs, n1, n2, iid, sum))
    return false;
  const std::size_t n = sum.counts.size();
  minus_log_P.assign(n, 0);
  infinite.assign(n, 1);
  mean_iid.assign(n, 0);
  std::int64_t at_or_above = 0;
  for (std::size_t b = n; b-- > 0;) {
    if (sum.counts[b] > 0)
      mean_iid[b] = static_cast<double>(sum.sum_iid[b]) / static_cast<double>(sum.counts[b]);
    at_or_above += sum.counts[b];
    infinite[b] = at_or_above == 0;
    if (at_or_above > 0) // the shares of all pairs must be exactly 0, not -0
      minus_log_P[b] = at_or_above == n_runs ? 0 : -std::log(static_cast<double>(at_or_above) / n_runs);
  }
  return true;
}

} // namespace orb
