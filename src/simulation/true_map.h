// The true places of clones as one axis: where each clone lies, what covers what, and which stretches hang together.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "simulation/simul_clone.h"

namespace orb {

// Base pairs from the start of the first chromosome: the chromosomes stand one behind the other with a base between
// them, so that no stretch can touch one of another chromosome.
using true_position = std::int64_t;
using true_clone = std::int32_t; // from 0: place in `placed_clones::clones`; -1: unknown

struct true_stretch {
  true_position begin = 0, end = 0; // [begin, end), never empty
  true_clone clone = -1;
  std::int64_t length() const { return end - begin; }
  bool overlaps(const true_stretch &other) const { return begin < other.end && other.begin < end; }
};

// A connected union of stretches: each shares at least a base with another one (ends that only touch don't join).
struct true_place {
  true_position begin = 0, end = 0;
  std::int32_t n_clones = 0; // different ones with a stretch here
  std::int64_t length() const { return end - begin; }
};

// Sorts the stretches by begin, end and clone and unites them; `place_of` tells for each sorted stretch its place. The
// places ascend. n log n.
void places_of_stretches(std::vector<true_stretch> &stretches, std::vector<true_place> &places,
                         std::vector<std::int32_t> &place_of);

class true_map {
public:
  // The clones must outlive the map. A chromosome is as long as its largest end of a stretch.
  explicit true_map(const placed_clones &clones);

  std::int32_t n_clones() const { return static_cast<std::int32_t>(clones_->clones.size()); }
  std::int32_t n_chromosomes() const { return static_cast<std::int32_t>(clones_->chromosomes.size()); }
  const std::string &name(true_clone clone) const { return clones_->clones[static_cast<std::size_t>(clone)].name; }
  true_clone find(std::string_view name) const;

  // The clone's stretches that aren't empty, in order of its parts.
  std::span<const true_stretch> stretches(true_clone clone) const {
    const auto i = static_cast<std::size_t>(clone);
    return std::span(stretches_).subspan(first_[i], first_[i + 1] - first_[i]);
  }
  bool is_placed(true_clone clone) const { return !stretches(clone).empty(); }
  // Of several stretches.
  bool is_chimeric(true_clone clone) const { return stretches(clone).size() > 1; }
  // Whether any stretch of one shares a base with any of the other.
  bool overlap(true_clone a, true_clone b) const;
  // Base pairs between the nearest stretches of two clones, 0 when they touch or overlap; -1: on other chromosomes.
  std::int64_t distance(true_clone a, true_clone b) const;
  // The same between two stretches, whatever their clones.
  std::int64_t distance(const true_stretch &a, const true_stretch &b) const;

  std::int32_t chromosome_of(true_position position) const; // from 0
  const std::string &chromosome_name(true_position position) const {
    return clones_->chromosomes[static_cast<std::size_t>(chromosome_of(position))];
  }
  // Base pairs from the start of the chromosome; an end of a stretch belongs to the stretch's chromosome.
  std::int64_t on_chromosome(true_position position) const {
    return position - start_of_[static_cast<std::size_t>(chromosome_of(position))];
  }
  // Sum of the lengths of the chromosomes.
  std::int64_t genome_length() const { return genome_length_; }
  // Unions of the overlapping stretches of all clones, ascending.
  const std::vector<true_place> &islands() const { return islands_; }
  // Of a position inside one.
  std::size_t island_of(true_position position) const;

private:
  void place_chromosomes();

  const placed_clones *clones_;
  std::vector<true_position> start_of_; // of each chromosome
  std::int64_t genome_length_ = 0;
  std::vector<true_stretch> stretches_;
  std::vector<std::size_t> first_; // stretches of clone i: first_[i] .. first_[i + 1] - 1
  std::unordered_map<std::string_view, true_clone> clone_of_name_;
  std::vector<true_place> islands_;
};

} // namespace orb
