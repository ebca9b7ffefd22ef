#include "contigs/skyline_solver.h"

#include <algorithm>
#include <cmath>

namespace orb {

namespace {

constexpr double anchor = 1e-6;
constexpr int n_sweeps = 60;

double product_of(const double *a, const double *b, std::size_t n) {
  double sum_0 = 0, sum_1 = 0, sum_2 = 0, sum_3 = 0;
  std::size_t k = 0;
  for (; k + 4 <= n; k += 4) {
    sum_0 += a[k] * b[k];
    sum_1 += a[k + 1] * b[k + 1];
    sum_2 += a[k + 2] * b[k + 2];
    sum_3 += a[k + 3] * b[k + 3];
  }
  for (; k < n; ++k)
    sum_0 += a[k] * b[k];
  return sum_0 + sum_1 + sum_2 + sum_3;
}

} // namespace

bool skyline_solver::lay_out(std::span<const axis_spring> springs, std::size_t n, std::size_t most_entries) {
  first_column_.resize(n);
  for (std::size_t i = 0; i < n; ++i)
    first_column_[i] = i;
  for (const axis_spring &spring : springs) {
    std::size_t &first = first_column_[static_cast<std::size_t>(spring.high)];
    first = std::min(first, static_cast<std::size_t>(spring.low));
  }
  row_start_.assign(n + 1, 0);
  for (std::size_t i = 0; i < n; ++i)
    row_start_[i + 1] = row_start_[i] + (i - first_column_[i] + 1);
  return row_start_[n] <= most_entries;
}

void skyline_solver::factor(std::size_t n, const std::atomic<bool> &stopped) {
  for (std::size_t i = 0; i < n && !stopped; ++i) {
    double *row = entries_.data() + row_start_[i];
    const std::size_t first = first_column_[i];
    for (std::size_t j = first; j < i; ++j) {
      const double *other = entries_.data() + row_start_[j];
      const std::size_t from = std::max(first, first_column_[j]);
      const double known = product_of(row + (from - first), other + (from - first_column_[j]), j - from);
      row[j - first] = (row[j - first] - known) / other[j - first_column_[j]];
    }
    const double known = product_of(row, row, i - first);
    row[i - first] = std::sqrt(std::max(row[i - first] - known, anchor * anchor));
  }
}

void skyline_solver::improve(std::span<const axis_spring> springs, std::span<const double> start,
                             std::vector<double> &x) {
  const std::size_t n = start.size();
  std::vector<double> pull(n), weight(n);
  x.assign(start.begin(), start.end());
  for (int sweep = 0; sweep < n_sweeps; ++sweep) {
    for (std::size_t i = 0; i < n; ++i) {
      weight[i] = anchor;
      pull[i] = anchor * start[i];
    }
    for (const axis_spring &spring : springs) {
      const auto low = static_cast<std::size_t>(spring.low), high = static_cast<std::size_t>(spring.high);
      weight[low] += spring.weight;
      weight[high] += spring.weight;
      pull[low] += spring.weight * (x[high] - spring.target);
      pull[high] += spring.weight * (x[low] + spring.target);
    }
    for (std::size_t i = 0; i < n; ++i)
      x[i] = 0.5 * (x[i] + pull[i] / weight[i]);
  }
}

void skyline_solver::solve(std::span<const axis_spring> springs, std::span<const double> start, std::vector<double> &x,
                           const std::atomic<bool> &stopped, std::size_t most_entries) {
  const std::size_t n = start.size();
  if (!lay_out(springs, n, most_entries))
    return improve(springs, start, x);
  entries_.assign(row_start_[n], 0);
  right_.resize(n);
  for (std::size_t i = 0; i < n; ++i) {
    entries_[row_start_[i + 1] - 1] = anchor;
    right_[i] = anchor * start[i];
  }
  for (const axis_spring &spring : springs) {
    const auto low = static_cast<std::size_t>(spring.low), high = static_cast<std::size_t>(spring.high);
    entries_[row_start_[low + 1] - 1] += spring.weight;
    entries_[row_start_[high + 1] - 1] += spring.weight;
    entries_[row_start_[high] + (low - first_column_[high])] -= spring.weight;
    right_[low] -= spring.weight * spring.target;
    right_[high] += spring.weight * spring.target;
  }
  factor(n, stopped);
  if (stopped) {
    x.assign(start.begin(), start.end());
    return;
  }
  x = right_;
  for (std::size_t i = 0; i < n; ++i) {
    const double *row = entries_.data() + row_start_[i];
    const std::size_t first = first_column_[i];
    x[i] = (x[i] - product_of(row, x.data() + first, i - first)) / row[i - first];
  }
  for (std::size_t i = n; i-- > 0;) {
    const double *row = entries_.data() + row_start_[i];
    const std::size_t first = first_column_[i];
    x[i] /= row[i - first];
    for (std::size_t j = first; j < i; ++j)
      x[j] -= row[j - first] * x[i];
  }
}

} // namespace orb
