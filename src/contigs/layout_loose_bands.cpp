#include "contigs/layout_loose_bands.h"

#include <cmath>

namespace orb {

namespace {

constexpr double chance_of_so_many = 1e-5; // a clone in a hundred thousand by chance
// Share of bands in no column of clones that have nothing odd; where more have none, the map is poor, not the clone.
constexpr double least_share = 0.03, most_share = 0.15;
constexpr std::int32_t least_depth = 3; // the clone and two others: fewer make no columns of their bands
constexpr double slack = 2;             // bands by which ends may be off

// That chance of the given mean gives so many or more.
double chance_of(std::int32_t n, double mean) {
  double term = std::exp(-mean), below = 0;
  for (std::int32_t i = 0; i < n; ++i) {
    below += term;
    term *= mean / (i + 1);
  }
  return std::max(0.0, 1 - below);
}

// How many clones cover each stretch between ends.
struct depth_of_stretches {
  std::vector<double> from;
  std::vector<std::int32_t> depth;

  explicit depth_of_stretches(const laid_contig &contig) {
    std::vector<std::pair<double, std::int32_t>> ends;
    for (std::size_t i = 0; i < contig.clones.size(); ++i) {
      ends.emplace_back(contig.left_exact[i], 1);
      ends.emplace_back(contig.right_exact[i], -1);
    }
    std::sort(ends.begin(), ends.end());
    std::int32_t now = 0;
    for (const auto &[place, change] : ends) {
      now += change;
      from.push_back(place);
      depth.push_back(now);
    }
  }
  // Over every stretch that reaches more than the slack into left..right.
  std::int32_t least_within(double left, double right) const {
    auto i = static_cast<std::size_t>(std::upper_bound(from.begin(), from.end(), left) - from.begin()) - 1;
    std::int32_t least = depth[i];
    for (; i < from.size() && from[i] < right - slack; ++i)
      if (i + 1 == from.size() || from[i + 1] > left + slack)
        least = std::min(least, depth[i]);
    return least;
  }
};

} // namespace

std::vector<clone_number> clones_of_loose_bands(const clone_bands &clones, const laid_contig &contig) {
  std::vector<clone_number> found;
  const depth_of_stretches depths(contig);
  for (std::size_t i = 0; i < contig.clones.size(); ++i) {
    const double n = clones.count(contig.clones[i]);
    const double share = std::clamp(static_cast<double>(contig.doubt[i].no_column_around), least_share, most_share);
    const auto loose = static_cast<std::int32_t>(std::lround(contig.doubt[i].no_column * n));
    if (chance_of(loose, share * n) < chance_of_so_many &&
        depths.least_within(contig.left_exact[i], contig.right_exact[i]) >= least_depth)
      found.push_back(contig.clones[i]);
  }
  std::sort(found.begin(), found.end());
  return found;
}

} // namespace orb
