// A long thin component bent to and fro, so that it fits on a page.
#pragma once

#include "viewer/multilevel_stress.h"

namespace orb {

// A band that lies along the x axis and begins at 0, and its bends: runs across the page, joined by half circles that
// leave a gap between neighbouring runs. Along the page it still goes from one end to the other, and it is at most a
// tenth as high as it is wide: so that far in the picture still is far in the net.
class meander {
public:
  // A picture that isn't a band, or gains nothing, can't be bent.
  explicit meander(const plane_points &flat);

  bool can_be_bent() const { return least_width_ < length_; }
  // The narrowest that it can be made, bent or straight.
  double least_width() const { return least_width_; }
  // The height when it is bent to be `width` wide at the most; `width` is from least_width() up to the length.
  double height(double width) const { return run_length(width) + 2 * radius_ + thickness_; }
  void bend(double width, plane_points &points) const;

private:
  void find_middle(const plane_points &flat);
  double middle_at(double x) const;
  void find_least_width();
  double run_length(double width) const;

  double length_ = 0, thickness_ = 0, radius_ = 0, least_width_ = 0;
  std::vector<double> middle_; // y in the middle of the band, at the middle of each stretch
};

} // namespace orb
