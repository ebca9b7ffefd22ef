// The distribution of common bands of unrelated clones, counted over many random pairs.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "database/class_usable_values.h"
#include "frame/process_frame.h"
#include "metrics/class_clone_simul.h"

namespace orb {

// What a simulation needs beside the library.
struct simulation_services {
  process_frame &frame; // progress and stop; only the calling thread touches it
  const class_usable_values &usable_values;
  std::uint64_t seed = 1;
  int threads = 0; // 0: all. The result is the same for any number
};

// One object a run: it keeps the distribution of bands while the run goes through its sizes, and the run's clock.
class class_clone_dist_simul {
public:
  explicit class_clone_dist_simul(const simulation_services &services)
      : services_(services), began_(std::chrono::steady_clock::now()), shown_(began_) {}

  // Draws n_runs pairs of clones of n1 and n2 bands. `iid`: all bands are equally likely and the index b is the number
  // of common bands; otherwise bands have the frequencies of the library and b is the whole part of the sum of -ln f
  // over the common bands, at most the number of positions. For each b from 0 to the largest that sizes and bands
  // allow: minus_log_P = -ln of the share of pairs at b
  // or above, or 0 and `infinite` where there are none; mean_iid = mean number of common bands of the pairs at b.
  // The draws depend on the seed, the sizes and the mode alone. False when stopped, or when the sizes can't be drawn
  // (the message was shown).
  bool estimation_of_log_probability_new(std::int32_t n_runs, std::int32_t n1, std::int32_t n2,
                                         std::vector<double> &minus_log_P, std::vector<std::uint8_t> &infinite,
                                         std::vector<double> &mean_iid, const class_DB_of_clones &database, bool iid);

  // Why clones of these sizes can't be drawn from a distribution; empty when they can.
  static std::string wrong_sizes(std::int32_t n1, std::int32_t n2, bool iid, const class_clone_simul &simul);

  // Draws of all situations to come, as `work_of` counts them: what the time left is told from. Unset: of the next one.
  void work_total_set(double work) { work_total_ = work; }
  static double work_of(std::int32_t n_runs, std::int32_t n1, std::int32_t n2) {
    return static_cast<double>(n_runs) * (static_cast<double>(n1) + n2);
  }

private:
  struct histogram;
  std::int32_t largest_index(std::int32_t n1, std::int32_t n2, bool iid) const;
  bool draw_pairs(std::int32_t n_runs, std::int32_t n1, std::int32_t n2, bool iid, histogram &sum);
  void show_progress(std::int64_t done, std::int32_t n_runs, double work);

  simulation_services services_;
  class_clone_simul simul_;
  const class_DB_of_clones *prepared_for_ = nullptr;
  std::chrono::steady_clock::time_point began_, shown_;
  double work_total_ = 0, work_done_ = 0;
};

} // namespace orb
