#include "viewer/multilevel_packing.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "viewer/meander.h"

namespace orb {

namespace {

constexpr double margin = 2; // between components

void move_to_origin(plane_points &points) {
  const float left = *std::min_element(points.x.begin(), points.x.end());
  const float low = *std::min_element(points.y.begin(), points.y.end());
  for (std::size_t v = 0; v < points.x.size(); ++v) {
    points.x[v] -= left;
    points.y[v] -= low;
  }
}

struct box {
  double width = 0, height = 0;
};

box box_of(const plane_points &flat) {
  return {*std::max_element(flat.x.begin(), flat.x.end()), *std::max_element(flat.y.begin(), flat.y.end())};
}

// Components in rows, on pages of any width. Bands are squeezed by bending them, all by the same factor as far as they
// can be, so that lengths compare.
class page {
public:
  explicit page(const std::vector<plane_points> &components) {
    for (const plane_points &points : components) {
      straight_.push_back(box_of(points));
      bands_.emplace_back(points);
    }
    order_.resize(components.size());
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::stable_sort(order_.begin(), order_.end(),
                     [this](std::size_t a, std::size_t b) { return straight_[a].height > straight_[b].height; });
  }

  bool is_bent(double squeeze, std::size_t c) const { return squeeze > 1 && bands_[c].can_be_bent(); }
  const meander &band(std::size_t c) const { return bands_[c]; }
  double band_width(double squeeze, std::size_t c) const {
    return std::max(straight_[c].width / squeeze, bands_[c].least_width());
  }
  double least_width(double squeeze) const {
    double least = 1;
    for (std::size_t c = 0; c < straight_.size(); ++c)
      least = std::max(least, box_of_component(squeeze, c).width);
    return least;
  }
  double total_width() const {
    return std::accumulate(straight_.begin(), straight_.end(), 0.0,
                           [](double sum, const box &one) { return sum + one.width + margin; });
  }
  // The height of all rows; `put(component, x, y)` is told where each goes.
  template <class placer> double rows(double width, double squeeze, const placer &put) const {
    double x = 0, y = 0, row_height = 0;
    for (const std::size_t c : order_) {
      const box taken = box_of_component(squeeze, c);
      if (x > 0 && x + taken.width > width) {
        y += row_height + margin;
        x = row_height = 0;
      }
      put(c, x, y);
      x += taken.width + margin;
      row_height = std::max(row_height, taken.height);
    }
    return y + row_height;
  }
  double height(double width, double squeeze) const {
    return rows(width, squeeze, [](std::size_t, double, double) {});
  }

private:
  box box_of_component(double squeeze, std::size_t c) const {
    if (!is_bent(squeeze, c))
      return straight_[c];
    const double width = band_width(squeeze, c);
    return {width, bands_[c].height(width)};
  }

  std::vector<box> straight_;
  std::vector<meander> bands_;
  std::vector<std::size_t> order_;
};

// The least squeeze with which the widest component doesn't make the page wider than it is to be.
double squeeze_of_page(const page &components, double aspect) {
  constexpr double least = std::numbers::pi / 2, most = 50, factor = 1.08; // half circles alone squeeze by the first
  double squeeze = 1;
  while (squeeze < most) {
    const double width = components.least_width(squeeze);
    if (components.height(width, squeeze) * aspect >= width)
      break;
    squeeze = std::max(least, squeeze * factor);
  }
  return squeeze;
}

// The narrowest of some widths on which the rows aren't higher than the page is to be.
double width_of_page(const page &components, double squeeze, double aspect) {
  constexpr int n_tried = 60;
  const double least = components.least_width(squeeze), most = std::max(components.total_width(), least);
  for (int i = 0; i < n_tried; ++i) {
    const double width = least * std::pow(most / least, static_cast<double>(i) / n_tried);
    if (components.height(width, squeeze) * aspect <= width)
      return width;
  }
  return most;
}

} // namespace

void turn_flat(plane_points &points) {
  const double n = static_cast<double>(points.x.size());
  double mean_x = 0, mean_y = 0, xx = 0, xy = 0, yy = 0;
  for (std::size_t v = 0; v < points.x.size(); ++v) {
    mean_x += points.x[v] / n;
    mean_y += points.y[v] / n;
  }
  for (std::size_t v = 0; v < points.x.size(); ++v) {
    const double x = points.x[v] - mean_x, y = points.y[v] - mean_y;
    xx += x * x;
    xy += x * y;
    yy += y * y;
  }
  double angle = 0.5 * std::atan2(2 * xy, xx - yy); // of the principal axis
  if ((points.x[0] - mean_x) * std::cos(angle) + (points.y[0] - mean_y) * std::sin(angle) > 0)
    angle += std::numbers::pi;
  const double c = std::cos(angle), s = std::sin(angle);
  for (std::size_t v = 0; v < points.x.size(); ++v) {
    const double x = points.x[v] - mean_x, y = points.y[v] - mean_y;
    points.x[v] = static_cast<float>(c * x + s * y);
    points.y[v] = static_cast<float>(c * y - s * x);
  }
  move_to_origin(points);
}

void pack_components(double aspect, std::vector<plane_points> &components) {
  const page all(components);
  const double squeeze = squeeze_of_page(all, aspect), width = width_of_page(all, squeeze, aspect);
  all.rows(width, squeeze, [&](std::size_t c, double left, double low) {
    plane_points &points = components[c];
    if (all.is_bent(squeeze, c)) {
      all.band(c).bend(all.band_width(squeeze, c), points);
      move_to_origin(points);
    }
    for (std::size_t v = 0; v < points.x.size(); ++v) {
      points.x[v] += static_cast<float>(left);
      points.y[v] += static_cast<float>(low);
    }
  });
}

} // namespace orb
