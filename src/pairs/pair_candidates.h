// Which pairs of a library can be significant at all: partners in blocks of 512, clones scanned against a block.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "pairs/least_common.h"
#include "pairs/match_bound.h"
#include "pairs/met_places.h"
#include "pairs/pair_kernel.h"

namespace orb {

// The clones of all elements, in the order in which they are scanned: elements in chunks of their own order, and within
// a chunk ascending by size, so that the partners of a block need about the same number of common bands.
class pair_candidates {
public:
  // Chunks are given by their first elements, ascending, from 1 on. `kernel` must have a limit
  // (least_common().exists()). `go_on` is asked while the limits are found, which takes seconds for some metrics.
  pair_candidates(const pair_kernel &kernel, const pair_elements &elements,
                  std::span<const std::int32_t> first_of_chunk, int threads, const scan_path &path,
                  const std::function<bool()> &go_on);

  // True when `go_on` answered false: then nothing else may be asked.
  bool stopped() const { return stopped_; }
  // False when a clone has too many bands for the scan, or clones are of too many sizes.
  bool possible() const { return possible_; }

  // Places of clones run from 0.
  std::int32_t n_places() const { return static_cast<std::int32_t>(element_.size()); }
  std::int32_t first_place_of_chunk(std::size_t chunk) const { return place_of_chunk_[chunk]; } // or the end of all
  std::int32_t element(std::int32_t place) const { return element_[static_cast<std::size_t>(place)]; }
  clone_number clone(std::int32_t place) const { return clone_[static_cast<std::size_t>(place)]; }

  // Bit rows of a block of partners, and how to scan against them.
  struct block {
    std::int32_t first = 0, last = -1; // places
    std::vector<scan_plan> plans;      // by kind
    const std::uint64_t *rows() const { return rows_.front().words; }
    struct alignas(64) row {
      std::uint64_t words[words_of_row];
    };
    std::vector<row> rows_;
  };
  // The block of the places from `first` on, up to 512 of them and not beyond `last`.
  void make_block(std::int32_t first, std::int32_t last, block &made) const;
  // What a scan works in.
  struct scratch {
    std::vector<scan_survivor> survivors;
    met_places met;
  };
  // The clones at places first..last that may have a significant partner in the block. Where a clone has many, the
  // partners are counted from their side too: in a library with crowded parts of the axis that drops most of them.
  // When `stopped` turns true, these counts are left out.
  std::span<const scan_survivor> scan(const block &partners, std::int32_t first, std::int32_t last, scratch &room,
                                      const std::atomic<bool> &stopped) const;

private:
  // Clones of one number of bands and one size.
  struct kind {
    std::int32_t n_bands, size;
    auto operator<=>(const kind &) const = default;
  };
  // Rows of bins: of the one in which a band lies, and of the first and last that the stretch around it reaches. Bins
  // are cells of the axis or several of them, so rows ascend along it.
  struct rows_of_band {
    std::size_t own, first, last;
  };
  rows_of_band rows_of(band_value band) const {
    const std::uint16_t *own = row_of_cell_.data() + reach_ + (band - lowest_band_) / cell_width_;
    return {*own, *(own - reach_), *(own + reach_)};
  }
  void unite_cells_to_bins(const std::vector<std::uint32_t> &n_bands_in_cell);
  void mark_stretches(std::span<const band_value> bands, std::int32_t partner, block &made) const;
  void order_places(const pair_elements &elements, std::span<const std::int32_t> first_of_chunk);
  void choose_bins();
  void list_rows(int threads);
  void count_from_partners(const block &partners, scan_survivor &survivor, met_places &met) const;
  std::size_t place_of_size(std::int32_t size) const;
  void find_least_counts(int threads, const std::function<bool()> &go_on);

  const pair_kernel &kernel_;
  const scan_path &path_;
  bool possible_ = true, stopped_ = false;
  std::vector<std::int32_t> element_, place_of_chunk_;
  std::vector<clone_number> clone_;
  std::vector<std::uint16_t> kind_of_place_;
  std::vector<kind> kinds_;
  std::vector<std::int32_t> sizes_;          // all that occur, ascending
  std::vector<std::int32_t> least_of_sizes_; // for each pair of places in sizes_
  band_value lowest_band_ = 0, highest_band_ = 0;
  std::int32_t cell_width_ = 1;
  std::ptrdiff_t reach_ = 0;                // of a stretch to either side, in cells
  std::vector<std::uint16_t> row_of_cell_;  // with as many cells more at either end, which belong to the outermost bins
  std::size_t n_rows_ = 1;                  // row 0 is empty
  std::vector<std::uint16_t> word_of_band_; // where the rows of all places' bands begin, padded with row 0
  std::vector<std::uint32_t> first_row_;
};

} // namespace orb
