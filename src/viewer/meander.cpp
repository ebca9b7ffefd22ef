#include "viewer/meander.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orb {

namespace {

constexpr double gap = 2;             // between neighbouring runs
constexpr double widths_to_high = 10; // a bent band is at least so many times as wide as high
constexpr double stretch_length = 8;  // over which the middle of the band is a mean
constexpr double least_length = 40;   // of a band that is worth bending

} // namespace

meander::meander(const plane_points &flat) {
  length_ = *std::max_element(flat.x.begin(), flat.x.end());
  least_width_ = length_;
  if (length_ < least_length)
    return;
  find_middle(flat);
  double farthest = 0;
  for (std::size_t v = 0; v < flat.x.size(); ++v)
    farthest = std::max(farthest, std::abs(flat.y[v] - middle_at(flat.x[v])));
  thickness_ = 2 * farthest;
  radius_ = (thickness_ + gap) / 2;
  find_least_width();
}

void meander::find_middle(const plane_points &flat) {
  middle_.assign(static_cast<std::size_t>(length_ / stretch_length) + 1, 0.0);
  std::vector<double> n_nodes(middle_.size(), 0.0);
  for (std::size_t v = 0; v < flat.x.size(); ++v) {
    const auto stretch = static_cast<std::size_t>(std::max(flat.x[v], 0.0f) / stretch_length);
    middle_[stretch] += flat.y[v];
    n_nodes[stretch] += 1;
  }
  for (std::size_t stretch = 0; stretch < middle_.size(); ++stretch)
    if (n_nodes[stretch] > 0)
      middle_[stretch] /= n_nodes[stretch];
    else if (stretch > 0)
      middle_[stretch] = middle_[stretch - 1];
}

double meander::middle_at(double x) const {
  const double place = std::clamp(x / stretch_length - 0.5, 0.0, static_cast<double>(middle_.size() - 1));
  const auto before = static_cast<std::size_t>(place);
  const std::size_t after = std::min(before + 1, middle_.size() - 1);
  return middle_[before] + (place - static_cast<double>(before)) * (middle_[after] - middle_[before]);
}

// The runs between the half circles. Half circles alone shorten the band enough for anything wider.
double meander::run_length(double width) const {
  const double n_runs = (width - thickness_) / (2 * radius_);
  return std::max(0.0, length_ / n_runs - std::numbers::pi * radius_);
}

void meander::find_least_width() {
  const auto is_flat_enough = [this](double width) { return height(width) * widths_to_high <= width; };
  double low = thickness_ + 4 * radius_, high = thickness_ + 2 / std::numbers::pi * length_;
  if (low >= high || high >= length_ || !is_flat_enough(high))
    return;
  for (int halving = 0; halving < 40; ++halving) {
    const double half = (low + high) / 2;
    (is_flat_enough(half) ? high : low) = half;
  }
  least_width_ = high;
}

void meander::bend(double width, plane_points &points) const {
  const double run = run_length(width), bow = std::numbers::pi * radius_;
  for (std::size_t v = 0; v < points.x.size(); ++v) {
    const double off = points.y[v] - middle_at(points.x[v]);
    const double n_before = std::floor(points.x[v] / (run + bow)), along = points.x[v] - n_before * (run + bow);
    // a run upwards from the left, then a half circle; in every other one up and down are exchanged
    double x = 2 * radius_ * n_before, y = along - run / 2, off_x = -1, off_y = 0;
    if (along > run) {
      const double angle = (along - run) / radius_;
      off_x = -std::cos(angle);
      off_y = std::sin(angle);
      x += radius_ + radius_ * off_x;
      y = run / 2 + radius_ * off_y;
    }
    const bool downwards = std::fmod(n_before, 2) != 0;
    points.x[v] = static_cast<float>(x + (downwards ? -off : off) * off_x);
    points.y[v] = static_cast<float>((downwards ? -y : y) + off * off_y);
  }
}

} // namespace orb
