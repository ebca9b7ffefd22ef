#include "viewer/wanted_lengths.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orb {

namespace {

constexpr std::size_t most_nodes_looked_at = 4000;
constexpr double shortest = 0.3;       // so that nobody is asked to lie on somebody else
constexpr double most_spreading = 1.1; // a monotone fit is narrower than what it fits; this gives back a part at a time

struct mean_length {
  double sum = 0, weight = 0;
  std::size_t n_steps = 1; // how many numbers of steps share it
  double mean() const { return weight > 0 ? sum / weight : 0; }
};

// Neighbours that stand in the wrong order become one, until none do.
std::vector<mean_length> in_order(const std::vector<mean_length> &by_steps) {
  std::vector<mean_length> ordered;
  for (mean_length next : by_steps) {
    while (!ordered.empty() && ordered.back().mean() >= next.mean()) {
      next.sum += ordered.back().sum;
      next.weight += ordered.back().weight;
      next.n_steps += ordered.back().n_steps;
      ordered.pop_back();
    }
    ordered.push_back(next);
  }
  return ordered;
}

} // namespace

wanted_lengths::wanted_lengths(const pivot_distances &pivots)
    : pivots_(pivots),
      length_(static_cast<std::size_t>(*std::max_element(pivots.steps.begin(), pivots.steps.end())) + 1) {
  std::iota(length_.begin(), length_.end(), 0.0f);
}

template <class user>
void wanted_lengths::for_pairs(const plane_points &points, const plane_points &pivot_at, const user &use) const {
  const std::size_t n = points.x.size(), stride = n / most_nodes_looked_at + 1;
  for (std::size_t v = 0; v < n; v += stride) {
    const std::int32_t *steps = pivots_.row(static_cast<std::int32_t>(v));
    for (std::size_t p = 0; p < pivots_.pivot.size(); ++p) {
      const double dx = points.x[v] - pivot_at.x[p], dy = points.y[v] - pivot_at.y[p];
      if (steps[p] > 0)
        use(static_cast<std::size_t>(steps[p]), std::sqrt(dx * dx + dy * dy), static_cast<double>(pivots_.share[p]));
    }
  }
}

void wanted_lengths::follow(const plane_points &points, const plane_points &pivot_at) {
  std::vector<mean_length> by_steps(length_.size() - 1); // from 1
  double weight = 0, sum = 0, squares = 0;
  for_pairs(points, pivot_at, [&](std::size_t steps, double length, double share) {
    by_steps[steps - 1].sum += share * length;
    by_steps[steps - 1].weight += share;
    weight += share;
    sum += share * length;
    squares += share * length * length;
  });
  const std::vector<mean_length> ordered = in_order(by_steps);
  const double mean = sum / weight, variance = squares / weight - mean * mean;
  double fitted = 0;
  for (const mean_length &one : ordered)
    fitted += one.weight * (one.mean() - mean) * (one.mean() - mean) / weight;
  const double spreading = fitted > 0 ? std::clamp(std::sqrt(variance / fitted), 1.0, most_spreading) : 1;
  auto to = length_.begin() + 1;
  for (const mean_length &one : ordered)
    to = std::fill_n(to, one.n_steps, static_cast<float>(std::max(shortest, mean + (one.mean() - mean) * spreading)));
}

double wanted_lengths::enlargement(const plane_points &points, const plane_points &pivot_at) const {
  double both = 0, squares = 0;
  for_pairs(points, pivot_at, [&](std::size_t steps, double length, double share) {
    both += share * length * static_cast<double>(steps);
    squares += share * length * length;
  });
  return squares > 0 ? both / squares : 1;
}

} // namespace orb
