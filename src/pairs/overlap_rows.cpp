#include "pairs/overlap_rows.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "frame/worker_batch.h"
#include "frame/worker_blocks.h"

namespace orb {

namespace {

constexpr std::int32_t rows_in_chunk = 8 * partners_of_block;
constexpr std::int32_t clones_in_piece = 2048;   // scanned against one block at a time
constexpr std::size_t pairs_between_looks = 128; // at the stop flag: some metrics take milliseconds for one
constexpr std::int64_t pairs_in_chunk = 100000;  // of one worker, without a scan

} // namespace

overlap_rows::overlap_rows(pair_kernel &kernel, const pair_elements &elements, row_partners partners, int threads,
                           const scan_path *path)
    : kernel_(kernel), elements_(elements), partners_(partners), threads_(threads), path_(path),
      places_(static_cast<std::size_t>(worker_count(threads))) {
  for (std::int32_t e = 1; e <= elements.count(); ++e)
    united_ = united_ || elements.clones_of(e).size() > 1;
}

bool overlap_rows::run(std::int32_t first, const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
                       const go_on_function &go_on) {
  first = std::max(first, 1);
  if (path_ != nullptr && kernel_.least_common().exists())
    return run_scanned(first, chunk_done, go_on);
  return run_plain(first, chunk_done, go_on);
}

bool overlap_rows::run_plain(std::int32_t first, const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
                             const go_on_function &go_on) {
  const std::int32_t n = elements_.count();
  const bool all = partners_ == row_partners::all;
  const std::int64_t workers = worker_count(threads_);
  const auto rows_at_once = static_cast<std::int32_t>(
      std::clamp<std::int64_t>(pairs_in_chunk * workers / std::max(all ? n : n / 2, 1), workers, 1024));
  for (std::int32_t begin = first; begin <= n; begin += rows_at_once) {
    const std::int32_t last = std::min(n, begin + rows_at_once - 1);
    const auto body = [&](std::int64_t item, int worker, const std::atomic<bool> &stopped) {
      const auto e = static_cast<std::int32_t>(begin + item - 1);
      worker_place &place = places_[static_cast<std::size_t>(worker)];
      pair_record record;
      for (std::int32_t partner = all ? 1 : e + 1; partner <= n && !stopped.load(std::memory_order_relaxed); ++partner)
        if (partner != e && kernel_.element_pair(elements_, e, partner, worker, record))
          place.found.push_back({e, record});
    };
    const auto poll = [&](std::int64_t done) { return go_on(pairs_before(begin + static_cast<std::int32_t>(done))); };
    if (!run_and_poll(last - begin + 1, threads_, body, poll))
      return false;
    gather(begin, last);
    if (!chunk_done(begin, last))
      return last == n;
  }
  return true;
}

bool overlap_rows::run_scanned(std::int32_t first, const std::function<bool(std::int32_t, std::int32_t)> &chunk_done,
                               const go_on_function &go_on) {
  const std::int32_t n = elements_.count();
  // Elements before the first row are a chunk that only serves as partners. The first rows come as a small chunk: a
  // cutoff that lets everything pass shows there.
  std::vector<std::int32_t> chunks;
  if (first > 1)
    chunks.push_back(1);
  const std::size_t first_chunk = chunks.size();
  for (std::int32_t row = first; row <= n; row += row == first ? partners_of_block : rows_in_chunk)
    chunks.push_back(row);
  const pair_candidates candidates(kernel_, elements_, chunks, threads_, *path_, [&] { return go_on(0); });
  if (candidates.stopped())
    return false;
  if (!candidates.possible())
    return run_plain(first, chunk_done, go_on);
  for (std::size_t chunk = first_chunk; chunk < chunks.size(); ++chunk) {
    const std::int32_t last = chunk + 1 < chunks.size() ? chunks[chunk + 1] - 1 : n;
    const std::int64_t before = pairs_before(chunks[chunk]), of_chunk = pairs_before(last + 1) - before;
    const auto tell = [&](double share) { return go_on(before + std::llround(share * static_cast<double>(of_chunk))); };
    if (!scan_chunk(candidates, chunk, tell))
      return false;
    gather(chunks[chunk], last);
    if (!chunk_done(chunks[chunk], last))
      return last == n;
  }
  return true;
}

// Of the rows before this one.
std::int64_t overlap_rows::pairs_before(std::int32_t row) const {
  const std::int64_t n = elements_.count(), n_rows = row - 1;
  return partners_ == row_partners::all ? n_rows * (n - 1) : n_rows * n - n_rows * row / 2;
}

// Partners are the clones of the chunk; scanned against them is whoever makes a pair with them that wasn't looked at
// before: for whole rows all clones, for pairs once those of the block itself and behind.
bool overlap_rows::scan_chunk(const pair_candidates &candidates, std::size_t chunk,
                              const std::function<bool(double)> &go_on) {
  const std::int32_t begin = candidates.first_place_of_chunk(chunk);
  const std::int32_t end = candidates.first_place_of_chunk(chunk + 1);
  blocks_.resize(static_cast<std::size_t>((end - begin + partners_of_block - 1) / partners_of_block));
  const auto n_blocks = static_cast<std::int64_t>(blocks_.size());
  run_in_blocks(0, n_blocks - 1, n_blocks, 1, threads_,
                [&](std::int64_t from, std::int64_t to, int) {
                  for (std::int64_t b = from; b <= to; ++b)
                    candidates.make_block(begin + static_cast<std::int32_t>(b) * partners_of_block, end - 1,
                                          blocks_[static_cast<std::size_t>(b)]);
                },
                {});
  struct piece {
    std::size_t block;
    std::int32_t first, last;
  };
  std::vector<piece> pieces;
  for (std::size_t b = 0; b < blocks_.size(); ++b)
    for (std::int32_t first = partners_ == row_partners::all ? 0 : blocks_[b].first; first < candidates.n_places();
         first += clones_in_piece)
      pieces.push_back({b, first, std::min(first + clones_in_piece, candidates.n_places()) - 1});
  const auto body = [&](std::int64_t item, int worker, const std::atomic<bool> &stopped) {
    const piece &one = pieces[static_cast<std::size_t>(item) - 1];
    scan_piece(candidates, blocks_[one.block], one.first, one.last, places_[static_cast<std::size_t>(worker)], worker,
               stopped);
  };
  const auto n_pieces = static_cast<double>(pieces.size());
  return run_and_poll(static_cast<std::int64_t>(pieces.size()), threads_, body,
                      [&](std::int64_t done) { return go_on(static_cast<double>(done) / std::max(n_pieces, 1.0)); });
}

void overlap_rows::scan_piece(const pair_candidates &candidates, const pair_candidates::block &partners,
                              std::int32_t first, std::int32_t last, worker_place &place, int worker,
                              const std::atomic<bool> &stopped) {
  place.candidates.clear();
  for (const scan_survivor &survivor : candidates.scan(partners, first, last, place.scratch, stopped))
    for (int w = 0; w < words_of_row; ++w)
      for (std::uint64_t bits = survivor.partners[w]; bits != 0; bits &= bits - 1) {
        const std::int32_t partner = partners.first + 64 * w + std::countr_zero(bits);
        if (partner > partners.last)
          break;
        // A place of the block meets each other one twice.
        if (partners_ == row_partners::of_higher_number && partner >= survivor.clone)
          continue;
        note_candidate(candidates.element(partner), candidates.element(survivor.clone), place);
      }
  compare_candidates(place, worker, stopped);
}

void overlap_rows::note_candidate(std::int32_t row, std::int32_t partner, worker_place &place) const {
  if (row == partner)
    return;
  if (partners_ == row_partners::of_higher_number && row > partner)
    std::swap(row, partner);
  place.candidates.emplace_back(row, partner);
}

// What is found before a stop is never gathered.
void overlap_rows::compare_candidates(worker_place &place, int worker, const std::atomic<bool> &stopped) {
  auto &candidates = place.candidates;
  if (united_) { // the versions of two names bring the same pair of elements several times, here and in other pieces
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    pair_record record;
    for (std::size_t k = 0; k < candidates.size(); ++k) {
      if (k % pairs_between_looks == 0 && stopped.load(std::memory_order_relaxed))
        return;
      const auto [row, partner] = candidates[k];
      if (kernel_.element_pair(elements_, row, partner, worker, record))
        place.found.push_back({row, record});
    }
    return;
  }
  place.clones.clear();
  for (const auto &[row, partner] : candidates)
    place.clones.emplace_back(elements_.clones_of(row).front(), elements_.clones_of(partner).front());
  const std::span<const std::pair<clone_number, clone_number>> clones(place.clones);
  for (std::size_t at = 0; at < clones.size() && !stopped.load(std::memory_order_relaxed); at += pairs_between_looks)
    kernel_.pairs(clones.subspan(at, std::min(pairs_between_looks, clones.size() - at)), worker,
                  [&](std::size_t k, double value, std::int16_t code) {
                    const auto &[row, partner] = candidates[at + k];
                    place.found.push_back({row, {partner, code, burial_code_mirrored(code), value}});
                  });
}

// The pairs of all workers as rows first..last.
void overlap_rows::gather(std::int32_t first, std::int32_t last) {
  first_row_ = first;
  const auto n_rows = static_cast<std::size_t>(last - first + 1);
  begin_.assign(n_rows + 2, 0); // for now element i stands at i + 2
  for (const worker_place &place : places_)
    for (const found_pair &found : place.found)
      ++begin_[static_cast<std::size_t>(found.element - first) + 2];
  for (std::size_t i = 2; i < begin_.size(); ++i)
    begin_[i] += begin_[i - 1];
  records_.resize(begin_.back());
  for (worker_place &place : places_) {
    for (const found_pair &found : place.found)
      records_[begin_[static_cast<std::size_t>(found.element - first) + 1]++] = found.record;
    place.found.clear();
  }
  const auto by_partner = [](const pair_record &a, const pair_record &b) { return a.partner < b.partner; };
  run_in_blocks(0, static_cast<std::int64_t>(n_rows) - 1, static_cast<std::int64_t>(n_rows), 256, threads_,
                [&](std::int64_t from, std::int64_t to, int) {
                  for (auto i = static_cast<std::size_t>(from); i <= static_cast<std::size_t>(to); ++i)
                    std::sort(records_.begin() + static_cast<std::ptrdiff_t>(begin_[i]),
                              records_.begin() + static_cast<std::ptrdiff_t>(begin_[i + 1]), by_partner);
                },
                {});
  if (!united_)
    return;
  // A pair that came several times came with the same values.
  std::size_t kept = 0, at = 0;
  for (std::size_t i = 0; i < n_rows; ++i) {
    const std::size_t end = begin_[i + 1];
    const std::size_t row_begin = kept;
    for (; at < end; ++at)
      if (kept == row_begin || records_[kept - 1].partner != records_[at].partner)
        records_[kept++] = records_[at];
    begin_[i] = row_begin;
  }
  begin_[n_rows] = kept;
}

} // namespace orb
