// From pieces to contigs: places counted in columns of bands, doubts, tiling paths.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "contigs/band_columns.h"
#include "contigs/clone_layout.h"

namespace orb {

// How far a clone's place can be doubted.
struct clone_doubt {
  float no_column = 0;        // share of its bands in no column
  float no_column_around = 0; // mean of that over the clones around
  float odd_edges = 0;        // share of its overlaps dropped, leaving the contig, or far from what the layout says
  float odd_edges_around = 0;
  float not_linked = 0; // share of the overlaps that the layout predicts and that aren't there
};

struct laid_contig {
  std::vector<clone_number> clones;           // ascending by left end
  std::vector<std::int32_t> left, right;      // in whole bands, from 1
  std::vector<float> left_exact, right_exact; // the same before rounding
  std::vector<clone_doubt> doubt;
  std::vector<clone_number> loose_bands;        // clones of which a part belongs elsewhere, ascending
  std::vector<std::vector<clone_number>> paths; // from left to right; several where no step leads on
};

// Contigs of these pieces of the layout, in their order. A long piece is worked on in windows that overlap, cut by
// numbers of clones alone: the result is the same for any number of threads. False when `poll` answered false.
bool finish_pieces(const clone_layout &layout, std::span<const std::int32_t> pieces, int threads,
                   const std::function<bool(double)> &poll, std::vector<laid_contig> &contigs,
                   std::size_t clones_in_window = 1500);

} // namespace orb
