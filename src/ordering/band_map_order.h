// The bands of a contig as one row: which readings of its clones are the same band, and in which order bands lie.
//
// Readings of equal size in clones that lie apart are different bands. So the clones are laid out first; readings of
// equal size in overlapping clones are one band as far as a common point of those clones explains them. A band lies
// where the clones that have it cover and those that lack it don't; then each clone's stretch is found anew on the row
// of bands, and so on until nothing changes.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/lists.h"
#include "frame/process_frame.h"
#include "ordering/band_map_layout.h"

namespace orb {

struct band_of_map {
  band_value value = 0;             // the middle one of its readings
  std::vector<std::int32_t> clones; // that have it, from 0, ascending
  double place = 0;                 // on the axis of the stretches
};

// Bands by their places; equal places by value. `stretches` are those of the clones, and end as stretches of the row:
// from the first band - 0.5 to the last band + 0.5, counted from 1. A reading that no common point explains is in no
// band. False after a stop request.
bool order_bands(process_frame &frame, const band_map_clones &clones, std::vector<clone_stretch> &stretches,
                 std::vector<band_of_map> &bands);

// The stretch of each clone on a row of bands, by the bands that are its own.
void stretches_on(const band_map_clones &clones, const std::vector<band_of_map> &bands,
                  std::vector<clone_stretch> &stretches);

} // namespace orb
