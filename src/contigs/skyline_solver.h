// Exact solution of a system of springs on an axis: the Laplacian of a chain of clones has its entries near the
// diagonal, and a Cholesky factor within its skyline costs little however long the chain is.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orb {

struct axis_spring {
  std::int32_t low = 0, high = 0; // ranks, from 0, low < high
  double target = 0;              // of x[high] - x[low]
  double weight = 0;
};

class skyline_solver {
public:
  // Least sum of weight * (x[high] - x[low] - target)^2, with all x held near `start` by a weight of 1e-6, over
  // `start.size()` places. The scratch is kept for the next call. Where the skyline would take more than
  // `most_entries`, x is improved place by place instead, from `start`. Cost: sum of squares of the skyline's row
  // lengths. Ends early, with `x` as good as `start`, when `stopped` turns true.
  void solve(std::span<const axis_spring> springs, std::span<const double> start, std::vector<double> &x,
             const std::atomic<bool> &stopped, std::size_t most_entries = default_most_entries);
  static constexpr std::size_t default_most_entries = std::size_t{1} << 26;

private:
  bool lay_out(std::span<const axis_spring> springs, std::size_t n, std::size_t most_entries);
  void factor(std::size_t n, const std::atomic<bool> &stopped);
  void improve(std::span<const axis_spring> springs, std::span<const double> start, std::vector<double> &x);

  std::vector<std::size_t> first_column_, row_start_; // row i holds the columns first_column_[i]..i
  std::vector<double> entries_, right_;
};

} // namespace orb
