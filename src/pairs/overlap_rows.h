// Significant overlaps by rows: for consecutive elements, in their order, chunk by chunk on all cores. Nets in memory
// and nets as text are both made from these rows.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "pairs/pair_candidates.h"
#include "pairs/pair_kernel.h"

namespace orb {

enum class row_partners {
  all,             // a row has all its overlaps
  of_higher_number // each pair of elements once
};

class overlap_rows {
public:
  using go_on_function = std::function<bool(std::int64_t)>;
  // `path`: the instructions of the scan; null: no scan, every pair goes through the kernel, as it does for a metric
  // that sets no limit. The rows are the same.
  overlap_rows(pair_kernel &kernel, const pair_elements &elements, row_partners partners, int threads,
               const scan_path *path = &best_scan_path());

  // Makes the rows first..count. `chunk_done(first, last)` runs on the calling thread when these rows are there;
  // `go_on(pairs done)` some ten times a second in between. When either answers false the rest is left: then the result
  // is false.
  bool run(std::int32_t first, const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
           const go_on_function &go_on);
  // All pairs that the rows make, from the first element on.
  std::int64_t n_pairs() const { return pairs_before(elements_.count() + 1); }
  // Of the chunk that is done; ascending by partner.
  std::span<const pair_record> row(std::int32_t element) const {
    const auto at = static_cast<std::size_t>(element - first_row_);
    return {records_.data() + begin_[at], begin_[at + 1] - begin_[at]};
  }

private:
  struct found_pair {
    std::int32_t element;
    pair_record record;
  };
  struct worker_place {
    std::vector<found_pair> found;
    pair_candidates::scratch scratch;
    std::vector<std::pair<std::int32_t, std::int32_t>> candidates; // elements: row, partner
    std::vector<std::pair<clone_number, clone_number>> clones;
  };

  bool run_plain(std::int32_t first, const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
                 const go_on_function &go_on);
  bool run_scanned(std::int32_t first, const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
                   const go_on_function &go_on);
  // `go_on` is told which share of the chunk is done.
  bool scan_chunk(const pair_candidates &candidates, std::size_t chunk, const std::function<bool(double)> &go_on);
  std::int64_t pairs_before(std::int32_t row) const;
  void scan_piece(const pair_candidates &candidates, const pair_candidates::block &partners, std::int32_t first,
                  std::int32_t last, worker_place &place, int worker, const std::atomic<bool> &stopped);
  void note_candidate(std::int32_t row, std::int32_t partner, worker_place &place) const;
  void compare_candidates(worker_place &place, int worker, const std::atomic<bool> &stopped);
  void gather(std::int32_t first, std::int32_t last);

  pair_kernel &kernel_;
  const pair_elements &elements_;
  row_partners partners_;
  int threads_;
  const scan_path *path_;
  bool united_ = false; // some element has several clones
  std::vector<worker_place> places_;
  std::vector<pair_candidates::block> blocks_;
  std::int32_t first_row_ = 1;
  std::vector<std::size_t> begin_;
  std::vector<pair_record> records_;
};

} // namespace orb
