// One clone against a map of bands: which bands of the map it has, and the stretch of the map that it covers.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "frame/lists.h"

namespace orb {

// How bands are compared, and what is believed of them.
struct band_map_metric {
  std::int32_t tolerance = 12;      // bands that lie no further apart are equal
  std::int32_t n_positions = 60000; // number of different bands, on the scale of the tolerance
  double lost = 0.05;               // chance of a clone's band to be missed
};

// Logarithms of how much likelier an observation is for a band that lies in the clone than for one that doesn't.
struct band_map_weights {
  double present, absent, doubtful; // doubtful: present at double tolerance only
  // For clones of so many bands.
  band_map_weights(const band_map_metric &metric, double n_bands);
};

class class_map_of_bands3 {
public:
  // `map`: band values in their order along the map. The stretch is the one of best score among those of at least 0.7
  // of the clone's number of bands (and at most the whole map), the first of equals; a score sums the weights of its
  // bands. Costs the length of the map.
  void align_clone_to_Band_Map(std::span<const band_value> map, std::int32_t clone_number,
                               std::span<const band_value> bands, const band_map_metric &metric);

  std::int32_t clone_number() const { return clone_number_; }
  // i from 1 to the map's length. 0: not found in the clone, 1: found, 2: found at double tolerance only.
  std::int32_t band_of_map_presentance(std::int32_t i) const { return map_presence_[static_cast<std::size_t>(i)]; }
  // i from 1 to the number of bands: whether the clone's band is one of the stretch, at the tolerance.
  bool band_of_clone_presentance(std::int32_t i) const { return clone_presence_[static_cast<std::size_t>(i)] != 0; }
  // Ends of the stretch, both in it, from 1; 0 and 0 when map or clone has no bands.
  std::int32_t adres_start() const { return adres_start_; }
  std::int32_t adres_end() const { return adres_end_; }
  // Bands of the stretch that the clone lacks.
  std::int32_t n_absent_bands_in_clone() const { return n_absent_; }
  // Bands of the clone that the stretch lacks.
  const number_list &list_of_false_bands() const { return false_bands_; }
  std::int32_t n_false_bands_in_clone() const { return false_bands_.count(); }
  double trait_of_aligment_best() const { return trait_; } // score of the stretch
  const number_list &listOfBands() const { return bands_; }
  std::int32_t number_of_bands_in_clone() const { return bands_.count(); }
  band_value band_number_in_clone(std::int32_t i) const { return bands_(i); }

private:
  void find_best_stretch(const band_map_weights &weights);
  void score_best_stretch(std::span<const band_value> map, std::int32_t tolerance);

  std::int32_t clone_number_ = 0, adres_start_ = 0, adres_end_ = 0, n_absent_ = 0;
  double trait_ = 0;
  number_list bands_, false_bands_;
  std::vector<std::uint8_t> map_presence_, clone_presence_; // from 1
};

// The stretch of best sum: positions from 1, at least `least_width` wide (or all there is), the first of equals.
struct best_stretch {
  std::int32_t first = 0, last = 0;
  double score = 0;
};
best_stretch best_stretch_of(std::span<const double> scores, std::int32_t least_width);

} // namespace orb
