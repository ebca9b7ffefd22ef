#include "viewer/pivot_placing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orb {

namespace {

constexpr int n_rounds = 60;
constexpr double last_rate = 0.05; // the share of what is wrong that the last round sets right
constexpr double next_to_nothing = 1e-9;

} // namespace

bool pivot_placing::run(const pivot_distances &pivots, std::uint64_t seed, int n_starts, const layout_work &work) {
  pairs_.clear();
  longest_ = 1;
  for (std::int32_t a = 0; a < pivots.count(); ++a)
    for (std::int32_t b = 0; b < a; ++b) {
      pairs_.push_back({a, b, static_cast<double>(pivots.row(pivots.pivot[static_cast<std::size_t>(a)])[b])});
      longest_ = std::max(longest_, pairs_.back().steps);
    }
  double least_stress = std::numeric_limits<double>::infinity();
  for (int start = 0; start < n_starts; ++start) {
    random_source chance(seed, static_cast<std::uint64_t>(start));
    start_at_random(pivots.pivot.size(), chance);
    if (!place_once(chance, work))
      return false;
    const double reached = stress();
    if (start == 0 || reached < least_stress) {
      least_stress = reached;
      best_x_ = x_;
      best_y_ = y_;
    }
  }
  return true;
}

void pivot_placing::start_at_random(std::size_t n, random_source &chance) {
  x_.resize(n);
  y_.resize(n);
  for (std::size_t p = 0; p < n; ++p) {
    x_[p] = longest_ * chance.uniform();
    y_[p] = longest_ * chance.uniform();
  }
}

// Pairs are set right one after the other in random order, in the first rounds all the way, in the last a little
// (Zheng, Pawar and Goodman 2018): nothing else comes out of a fold as surely. All pairs count alike, however far
// apart: what is wanted is the order of all distances, and most of them are long.
bool pivot_placing::place_once(random_source &chance, const layout_work &work) {
  for (int round = 0; round < n_rounds; ++round) {
    for (std::size_t i = pairs_.size(); i > 1; --i) {
      const auto other = static_cast<std::size_t>(chance.number_up_to(static_cast<std::int32_t>(i))) - 1;
      std::swap(pairs_[i - 1], pairs_[other]);
    }
    set_all_right(std::pow(last_rate, static_cast<double>(round) / (n_rounds - 1)));
    if (!work.goes_on())
      return false;
  }
  return true;
}

void pivot_placing::set_all_right(double rate) {
  for (const pair_of_pivots &pair : pairs_) {
    const auto a = static_cast<std::size_t>(pair.a), b = static_cast<std::size_t>(pair.b);
    const double dx = x_[a] - x_[b], dy = y_[a] - y_[b], drawn = std::sqrt(dx * dx + dy * dy) + next_to_nothing;
    const double move = rate * 0.5 * (pair.steps - drawn) / drawn;
    x_[a] += move * dx;
    y_[a] += move * dy;
    x_[b] -= move * dx;
    y_[b] -= move * dy;
  }
}

double pivot_placing::stress() const {
  double sum = 0;
  for (const pair_of_pivots &pair : pairs_) {
    const auto a = static_cast<std::size_t>(pair.a), b = static_cast<std::size_t>(pair.b);
    const double off = pair.steps - std::sqrt((x_[a] - x_[b]) * (x_[a] - x_[b]) + (y_[a] - y_[b]) * (y_[a] - y_[b]));
    sum += off * off;
  }
  return sum;
}

} // namespace orb
