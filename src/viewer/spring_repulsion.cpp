#include "viewer/spring_repulsion.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orb {

namespace {

constexpr float r_min2 = 0.01f, r_min3 = 0.001f, r_cut2 = 36.0f;

// So many nodes take what one other node does to them together; each adds up in the order of the others.
constexpr std::size_t lanes = 16;
using lane_values = std::array<float, lanes>;

struct lane_sums {
  lane_values x{}, y{};
};

void add_plain(float x, float y, const lane_values &at_x, const lane_values &at_y, lane_sums &sum) {
  for (std::size_t k = 0; k < lanes; ++k) {
    const float dx = at_x[k] - x, dy = at_y[k] - y, r2 = dx * dx + dy * dy;
    const float cube = std::sqrt(r2) * r2, q = r2 < r_min2 ? r_min3 : cube;
    sum.x[k] += dx / q;
    sum.y[k] += dy / q;
  }
}

// The divisor of a pair nearer than the cut.
float cut_divisor(float r2) {
  if (r2 < r_min2)
    return r_min3;
  const float r = std::sqrt(r2), w = std::exp(r) - std::exp(1.0f) + 1.0f;
  return r2 <= w ? w * r : r * r2;
}

// What up to `lanes` others do to one node. Few are near enough, so they are looked for together first.
template <std::size_t extent>
void add_near(std::span<const float, extent> x, std::span<const float, extent> y, float at_x, float at_y, float &sum_x,
              float &sum_y) {
  lane_values r2;
  int n_near = 0;
  for (std::size_t k = 0; k < x.size(); ++k) {
    const float dx = at_x - x[k], dy = at_y - y[k];
    r2[k] = dx * dx + dy * dy;
    n_near += r2[k] < r_cut2 ? 1 : 0;
  }
  for (std::size_t k = 0; n_near > 0; ++k)
    if (r2[k] < r_cut2) {
      const float q = cut_divisor(r2[k]);
      sum_x += (at_x - x[k]) / q;
      sum_y += (at_y - y[k]) / q;
      --n_near;
    }
}

void sum_of_cut(std::span<const float> x, std::span<const float> y, float at_x, float at_y, float &sum_x,
                float &sum_y) {
  sum_x = sum_y = 0;
  std::size_t first = 0;
  for (; first + lanes <= x.size(); first += lanes)
    add_near(x.subspan(first).first<lanes>(), y.subspan(first).first<lanes>(), at_x, at_y, sum_x, sum_y);
  add_near(x.subspan(first), y.subspan(first), at_x, at_y, sum_x, sum_y);
}

// Up to `lanes` nodes together.
void sum_of_plain(std::span<const float> x, std::span<const float> y, std::span<const float> at_x,
                  std::span<const float> at_y, std::span<float> force_x, std::span<float> force_y) {
  lane_values some_x{}, some_y{};
  std::copy(at_x.begin(), at_x.end(), some_x.begin());
  std::copy(at_y.begin(), at_y.end(), some_y.begin());
  lane_sums sum;
  for (std::size_t j = 0; j < x.size(); ++j)
    add_plain(x[j], y[j], some_x, some_y, sum);
  std::copy_n(sum.x.begin(), at_x.size(), force_x.begin());
  std::copy_n(sum.y.begin(), at_x.size(), force_y.begin());
}

} // namespace

void sum_of_repulsion(repulsion_law law, std::span<const float> x, std::span<const float> y,
                      std::span<const float> at_x, std::span<const float> at_y, std::span<float> force_x,
                      std::span<float> force_y) {
  for (std::size_t i = 0; law.cut && i < at_x.size(); ++i)
    sum_of_cut(x, y, at_x[i], at_y[i], force_x[i], force_y[i]);
  for (std::size_t i = 0; !law.cut && i < at_x.size(); i += lanes) {
    const std::size_t n = std::min(lanes, at_x.size() - i);
    sum_of_plain(x, y, at_x.subspan(i, n), at_y.subspan(i, n), force_x.subspan(i, n), force_y.subspan(i, n));
  }
}

} // namespace orb
