#include "pairs/pair_candidates.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "frame/worker_batch.h"
#include "frame/worker_blocks.h"

namespace orb {

namespace {

// With so many rows a block takes 320 kB: it stays in the second-level cache while clones are scanned.
constexpr double most_bins = 5000;
constexpr band_value most_cells = 1 << 20;
constexpr std::uint32_t most_kinds = 65535;
constexpr std::size_t clones_in_sample = 2000;
constexpr std::uint32_t most_sizes = 4096; // every pair of them has its least count

// Merging fewer is cheaper than marking the axis.
bool has_many_partners(const scan_survivor &survivor) {
  constexpr int many = 8;
  int n = 0;
  for (const std::uint64_t word : survivor.partners)
    for (std::uint64_t bits = word; bits != 0; bits &= bits - 1)
      if (++n == many)
        return true;
  return false;
}

// Rows are added by eights. A few left over are cheaper taken for matches than added: the bound stays one, and the
// count that the others must reach is still far from what unrelated clones have.
void leave_rest_of_rows_out(std::int32_t n_bands, scan_plan &plan) {
  constexpr std::int32_t large_enough = 4;
  const std::int32_t rest = n_bands % rows_added_at_once;
  if (plan.out || large_enough * rest > plan.least)
    return;
  plan.n_rows = n_bands - rest;
  plan.least -= rest;
}

std::int32_t filled_up(std::int32_t n_bands) {
  return (n_bands + rows_added_at_once - 1) / rows_added_at_once * rows_added_at_once;
}

} // namespace

pair_candidates::pair_candidates(const pair_kernel &kernel, const pair_elements &elements,
                                 std::span<const std::int32_t> first_of_chunk, int threads, const scan_path &path,
                                 const std::function<bool()> &go_on)
    : kernel_(kernel), path_(path) {
  order_places(elements, first_of_chunk);
  if (!possible_)
    return;
  find_least_counts(threads, go_on);
  if (!possible_ || stopped_)
    return;
  choose_bins();
  list_rows(threads);
}

void pair_candidates::order_places(const pair_elements &elements, std::span<const std::int32_t> first_of_chunk) {
  struct place {
    kind what;
    std::int32_t element;
    clone_number clone;
  };
  std::vector<place> places;
  for (std::size_t chunk = 0; chunk < first_of_chunk.size(); ++chunk) {
    const std::int32_t end = chunk + 1 < first_of_chunk.size() ? first_of_chunk[chunk + 1] : elements.count() + 1;
    place_of_chunk_.push_back(static_cast<std::int32_t>(places.size()));
    for (std::int32_t e = first_of_chunk[chunk]; e < end; ++e)
      for (const clone_number clone : elements.clones_of(e))
        places.push_back(
            {{static_cast<std::int32_t>(kernel_.bands_compared(clone).size()), kernel_.size(clone)}, e, clone});
    std::stable_sort(places.begin() + place_of_chunk_.back(), places.end(),
                     [](const place &a, const place &b) { return a.what.size < b.what.size; });
  }
  place_of_chunk_.push_back(static_cast<std::int32_t>(places.size()));
  for (const place &p : places) {
    kinds_.push_back(p.what);
    element_.push_back(p.element);
    clone_.push_back(p.clone);
  }
  std::sort(kinds_.begin(), kinds_.end());
  kinds_.erase(std::unique(kinds_.begin(), kinds_.end()), kinds_.end());
  possible_ = kinds_.size() <= most_kinds && (kinds_.empty() || kinds_.back().n_bands <= most_rows_of_clone);
  for (const place &p : places)
    kind_of_place_.push_back(
        static_cast<std::uint16_t>(std::lower_bound(kinds_.begin(), kinds_.end(), p.what) - kinds_.begin()));
}

void pair_candidates::find_least_counts(int threads, const std::function<bool()> &go_on) {
  for (const kind &k : kinds_)
    sizes_.push_back(k.size);
  std::sort(sizes_.begin(), sizes_.end());
  sizes_.erase(std::unique(sizes_.begin(), sizes_.end()), sizes_.end());
  const std::size_t n = sizes_.size();
  possible_ = n <= most_sizes;
  if (!possible_)
    return;
  least_of_sizes_.resize(n * n);
  const auto row_of_size = [&](std::int64_t item, int, const std::atomic<bool> &stopped) {
    const auto i = static_cast<std::size_t>(item) - 1;
    for (std::size_t j = 0; j < n && !stopped.load(std::memory_order_relaxed); ++j)
      least_of_sizes_[i * n + j] = kernel_.least_common()(sizes_[i], sizes_[j]);
  };
  stopped_ = !run_and_poll(static_cast<std::int64_t>(n), threads, row_of_size, [&](std::int64_t) { return go_on(); });
}

void pair_candidates::choose_bins() {
  band_value lowest = std::numeric_limits<band_value>::max(), highest = std::numeric_limits<band_value>::min();
  for (const clone_number clone : clone_)
    if (const auto bands = kernel_.bands_compared(clone); !bands.empty()) { // they ascend
      lowest = std::min(lowest, bands.front());
      highest = std::max(highest, bands.back());
    }
  if (lowest > highest)
    lowest = highest = 0; // no bands at all
  lowest_band_ = lowest;
  highest_band_ = highest;
  cell_width_ = (highest - lowest) / most_cells + 1;
  std::vector<std::uint32_t> n_bands(static_cast<std::size_t>((highest - lowest) / cell_width_) + 1, 0);
  // Any bins are right; a sample of the clones tells where bands crowd.
  const std::size_t stride = clone_.size() / clones_in_sample + 1;
  for (std::size_t place = 0; place < clone_.size(); place += stride)
    for (const band_value band : kernel_.bands_compared(clone_[place]))
      ++n_bands[static_cast<std::size_t>((band - lowest) / cell_width_)];
  unite_cells_to_bins(n_bands);
}

// A bin gets the same share of the axis and of the bands: narrow where they crowd, since there a bin that is wider than
// the tolerance finds much that doesn't match.
void pair_candidates::unite_cells_to_bins(const std::vector<std::uint32_t> &n_bands_in_cell) {
  const std::size_t n_cells = n_bands_in_cell.size();
  const double n_bins = std::min(static_cast<double>(n_cells), most_bins);
  const bool one_cell_each = static_cast<double>(n_cells) <= most_bins;
  double n_all = 0, n_before = 0;
  for (const std::uint32_t n : n_bands_in_cell)
    n_all += n;
  reach_ = (std::max(kernel_.tolerance(), 0) + cell_width_ - 1) / cell_width_;
  row_of_cell_.reserve(n_cells + 2 * static_cast<std::size_t>(reach_));
  row_of_cell_.assign(static_cast<std::size_t>(reach_), 1);
  n_rows_ = 1;
  std::size_t bin_before = 0;
  for (std::size_t cell = 0; cell < n_cells; ++cell) {
    const double share =
        (static_cast<double>(cell) / static_cast<double>(n_cells) + (n_all > 0 ? n_before / n_all : 0)) / 2;
    const auto bin = static_cast<std::size_t>(share * n_bins);
    if (cell == 0 || one_cell_each || bin > bin_before)
      ++n_rows_;
    bin_before = bin;
    n_before += n_bands_in_cell[cell];
    row_of_cell_.push_back(static_cast<std::uint16_t>(n_rows_ - 1));
  }
  row_of_cell_.insert(row_of_cell_.end(), static_cast<std::size_t>(reach_), row_of_cell_.back());
}

void pair_candidates::list_rows(int threads) {
  first_row_.resize(element_.size() + 1);
  std::uint32_t end = 0;
  for (std::size_t place = 0; place < element_.size(); ++place) {
    first_row_[place] = end;
    end += static_cast<std::uint32_t>(filled_up(kinds_[kind_of_place_[place]].n_bands));
  }
  first_row_.back() = end;
  word_of_band_.assign(end, 0);
  run_in_blocks(0, n_places() - 1, n_places(), 512, threads,
                [&](std::int64_t first, std::int64_t last, int) {
                  for (auto place = static_cast<std::size_t>(first); place <= static_cast<std::size_t>(last); ++place) {
                    std::uint16_t *row = word_of_band_.data() + first_row_[place];
                    const auto bands = kernel_.bands_compared(clone_[place]);
                    // Backwards: what is left out are the shortest bands, which crowd in most libraries.
                    for (std::size_t i = bands.size(); i-- > 0;)
                      *row++ = static_cast<std::uint16_t>(words_of_row * rows_of(bands[i]).own);
                  }
                },
                {});
}

// Flips a partner's bit where its stretches begin and behind where they end; stretches that touch are one. Running down
// the rows, each then takes over from the one before what wasn't flipped.
void pair_candidates::mark_stretches(std::span<const band_value> bands, std::int32_t partner, block &made) const {
  const auto word = static_cast<std::size_t>(partner) / 64;
  const std::uint64_t bit = std::uint64_t{1} << partner % 64;
  for (std::size_t i = 0; i < bands.size();) {
    auto [own, first, last] = rows_of(bands[i]);
    for (++i; i < bands.size(); ++i) {
      const rows_of_band next = rows_of(bands[i]);
      if (next.first > last + 1)
        break;
      last = next.last;
    }
    made.rows_[first].words[word] ^= bit;
    if (last + 1 < n_rows_)
      made.rows_[last + 1].words[word] ^= bit;
  }
}

void pair_candidates::make_block(std::int32_t first, std::int32_t last, block &made) const {
  made.first = first;
  made.last = std::min(last, first + partners_of_block - 1);
  made.rows_.assign(n_rows_, {});
  for (std::int32_t place = made.first; place <= made.last; ++place)
    mark_stretches(kernel_.bands_compared(clone_[static_cast<std::size_t>(place)]), place - made.first, made);
  for (std::size_t row = 1; row < n_rows_; ++row)
    for (int w = 0; w < words_of_row; ++w)
      made.rows_[row].words[w] ^= made.rows_[row - 1].words[w];
  std::vector<std::size_t> sizes; // of the partners, as places in sizes_
  for (std::int32_t place = made.first; place <= made.last; ++place) {
    const std::int32_t size = kinds_[kind_of_place_[static_cast<std::size_t>(place)]].size;
    if (sizes.empty() || sizes_[sizes.back()] != size)
      sizes.push_back(place_of_size(size));
  }
  made.plans.assign(kinds_.size(), {});
  for (std::size_t k = 0; k < kinds_.size(); ++k) {
    scan_plan &plan = made.plans[k];
    plan.n_rows = filled_up(kinds_[k].n_bands);
    plan.least = std::numeric_limits<std::int32_t>::max();
    const std::size_t own = place_of_size(kinds_[k].size) * sizes_.size();
    for (const std::size_t size : sizes)
      plan.least = std::min(plan.least, least_of_sizes_[own + size]);
    plan.out = plan.least > kinds_[k].n_bands;
    leave_rest_of_rows_out(kinds_[k].n_bands, plan);
  }
}

std::size_t pair_candidates::place_of_size(std::int32_t size) const {
  return static_cast<std::size_t>(std::lower_bound(sizes_.begin(), sizes_.end(), size) - sizes_.begin());
}

// Drops the partners of whose bands the clone meets too few; each against the least count of its own size.
void pair_candidates::count_from_partners(const block &partners, scan_survivor &survivor, met_places &met) const {
  const auto own = static_cast<std::size_t>(survivor.clone);
  const std::size_t row = place_of_size(kinds_[kind_of_place_[own]].size) * sizes_.size();
  met.mark(kernel_.bands_compared(clone_[own]), std::max(kernel_.tolerance(), 0), lowest_band_, highest_band_);
  for (int w = 0; w < words_of_row; ++w)
    for (std::uint64_t bits = survivor.partners[w]; bits != 0; bits &= bits - 1) {
      const auto place = static_cast<std::size_t>(partners.first + 64 * w + std::countr_zero(bits));
      if (static_cast<std::int32_t>(place) > partners.last)
        break;
      const std::size_t size = place_of_size(kinds_[kind_of_place_[place]].size);
      if (met.count(kernel_.bands_compared(clone_[place])) < least_of_sizes_[row + size])
        survivor.partners[w] ^= bits & -bits;
    }
}

std::span<const scan_survivor> pair_candidates::scan(const block &partners, std::int32_t first, std::int32_t last,
                                                     scratch &room, const std::atomic<bool> &stopped) const {
  room.survivors.resize(static_cast<std::size_t>(last - first + 1));
  const scan_task task{partners.rows(),
                       word_of_band_.data(),
                       first_row_.data(),
                       kind_of_place_.data(),
                       partners.plans.data(),
                       first,
                       last};
  const auto n = static_cast<std::size_t>(path_.scan(task, room.survivors.data()));
  for (std::size_t i = 0; i < n && !stopped.load(std::memory_order_relaxed); ++i) {
    if (has_many_partners(room.survivors[i]))
      count_from_partners(partners, room.survivors[i], room.met);
  }
  return {room.survivors.data(), n};
}

} // namespace orb
