// The coarsest level of a layout: the pivots in the plane by all distances among them.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/random_source.h"
#include "viewer/multilevel_pivots.h"

namespace orb {

class pivot_placing {
public:
  // The best of `n_starts` placings that begin with random places. False when stopped: then the best of those that were
  // finished, and no places before the first. Square of the pivots for each of 60 rounds.
  bool run(const pivot_distances &pivots, std::uint64_t seed, int n_starts, const layout_work &work);

  // By pivot.
  const std::vector<double> &x() const { return best_x_; }
  const std::vector<double> &y() const { return best_y_; }

private:
  struct pair_of_pivots {
    std::int32_t a, b;
    double steps;
  };
  void start_at_random(std::size_t n, random_source &chance);
  bool place_once(random_source &chance, const layout_work &work);
  void set_all_right(double rate);
  double stress() const;

  std::vector<pair_of_pivots> pairs_;
  double longest_ = 1;
  std::vector<double> x_, y_, best_x_, best_y_;
};

} // namespace orb
