#include "simulation/true_map.h"

#include <algorithm>
#include <cassert>
#include <tuple>

namespace orb {

void places_of_stretches(std::vector<true_stretch> &stretches, std::vector<true_place> &places,
                         std::vector<std::int32_t> &place_of) {
  std::sort(stretches.begin(), stretches.end(), [](const true_stretch &a, const true_stretch &b) {
    return std::tie(a.begin, a.end, a.clone) < std::tie(b.begin, b.end, b.clone);
  });
  places.clear();
  place_of.clear();
  for (const true_stretch &stretch : stretches) {
    if (places.empty() || stretch.begin >= places.back().end)
      places.push_back({stretch.begin, stretch.end, 0});
    places.back().end = std::max(places.back().end, stretch.end);
    place_of.push_back(static_cast<std::int32_t>(places.size()) - 1);
  }
  // A clone may have several stretches in one place: pairs of place and clone, each counted once.
  std::vector<std::pair<std::int32_t, true_clone>> met;
  for (std::size_t i = 0; i < stretches.size(); ++i)
    met.emplace_back(place_of[i], stretches[i].clone);
  std::sort(met.begin(), met.end());
  met.erase(std::unique(met.begin(), met.end()), met.end());
  for (const auto &[place, clone] : met)
    ++places[static_cast<std::size_t>(place)].n_clones;
}

true_map::true_map(const placed_clones &clones) : clones_(&clones) {
  place_chromosomes();
  first_.push_back(0);
  clone_of_name_.reserve(clones.clones.size());
  for (std::size_t i = 0; i < clones.clones.size(); ++i) {
    for (const clone_part &part : clones.clones[i].parts) {
      const true_position start = start_of_[static_cast<std::size_t>(part.chromosome) - 1];
      if (part.part_start < part.part_end)
        stretches_.push_back({start + part.part_start, start + part.part_end, static_cast<true_clone>(i)});
    }
    first_.push_back(stretches_.size());
    clone_of_name_.try_emplace(clones.clones[i].name, static_cast<true_clone>(i));
  }
  std::vector<true_stretch> all = stretches_;
  std::vector<std::int32_t> ignored;
  places_of_stretches(all, islands_, ignored);
}

void true_map::place_chromosomes() {
  std::vector<std::int64_t> length(clones_->chromosomes.size(), 0);
  for (const simul_clone &clone : clones_->clones)
    for (const clone_part &part : clone.parts) {
      assert(part.chromosome >= 1 && static_cast<std::size_t>(part.chromosome) <= length.size());
      std::int64_t &longest = length[static_cast<std::size_t>(part.chromosome) - 1];
      longest = std::max<std::int64_t>(longest, part.part_end);
    }
  true_position start = 0;
  for (const std::int64_t chromosome : length) {
    start_of_.push_back(start);
    start += chromosome + 1;
    genome_length_ += chromosome;
  }
}

true_clone true_map::find(std::string_view name) const {
  const auto found = clone_of_name_.find(name);
  return found == clone_of_name_.end() ? -1 : found->second;
}

bool true_map::overlap(true_clone a, true_clone b) const {
  for (const true_stretch &one : stretches(a))
    for (const true_stretch &other : stretches(b))
      if (one.overlaps(other))
        return true;
  return false;
}

std::int64_t true_map::distance(const true_stretch &a, const true_stretch &b) const {
  if (chromosome_of(a.begin) != chromosome_of(b.begin))
    return -1;
  return std::max<std::int64_t>({0, a.begin - b.end, b.begin - a.end});
}

std::int64_t true_map::distance(true_clone a, true_clone b) const {
  std::int64_t nearest = -1;
  for (const true_stretch &one : stretches(a))
    for (const true_stretch &other : stretches(b)) {
      const std::int64_t found = distance(one, other);
      if (found >= 0 && (nearest < 0 || found < nearest))
        nearest = found;
    }
  return nearest;
}

std::int32_t true_map::chromosome_of(true_position position) const {
  const auto behind = std::upper_bound(start_of_.begin(), start_of_.end(), position);
  return static_cast<std::int32_t>(behind - start_of_.begin()) - 1;
}

std::size_t true_map::island_of(true_position position) const {
  const auto behind = std::upper_bound(islands_.begin(), islands_.end(), position,
                                       [](true_position at, const true_place &island) { return at < island.begin; });
  assert(behind != islands_.begin());
  return static_cast<std::size_t>(behind - islands_.begin()) - 1;
}

} // namespace orb
