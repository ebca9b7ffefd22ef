#include "ordering/band_map_ends.h"

#include <algorithm>
#include <bit>

namespace orb {

std::int32_t n_common(std::span<const std::uint64_t> a, std::span<const std::uint64_t> b) {
  std::int32_t n = 0;
  for (std::size_t w = 0; w < a.size(); ++w)
    n += std::popcount(a[w] & b[w]);
  return n;
}

std::int32_t n_different(std::span<const std::uint64_t> a, std::span<const std::uint64_t> b) {
  std::int32_t n = 0;
  for (std::size_t w = 0; w < a.size(); ++w)
    n += std::popcount(a[w] ^ b[w]);
  return n;
}

namespace {

constexpr std::size_t segments_around = 40; // in which a band's best place is looked for again
constexpr std::size_t longest_move = 12;    // of an end, past others
constexpr int most_sweeps = 4;
constexpr double least_gain = 1e-6;

struct end_of_clone {
  double at;
  std::int32_t clone;
  bool is_left;
};

// Segment s lies in front of end s; segment 0 and the last one are empty.
class end_sorter {
public:
  end_sorter(const clone_sets &having, std::size_t n_bands, const band_map_weights &weights,
             const std::vector<clone_stretch> &stretches)
      : having_(having), weights_(weights), covering_(2 * stretches.size() + 1, stretches.size()),
        depth_(2 * stretches.size() + 1, 0), bands_at_(depth_.size()), best_(n_bands, 0), place_(n_bands, 0) {
    for (std::size_t c = 0; c < stretches.size(); ++c) {
      ends_.push_back({stretches[c].left, static_cast<std::int32_t>(c), true});
      ends_.push_back({stretches[c].right, static_cast<std::int32_t>(c), false});
    }
    std::stable_sort(ends_.begin(), ends_.end(),
                     [](const end_of_clone &a, const end_of_clone &b) { return a.at < b.at; });
    for (std::size_t s = 1; s < depth_.size(); ++s)
      cover_segment(s);
    for (std::size_t b = 0; b < n_bands; ++b)
      put(b, 0, depth_.size());
  }

  // False after a stop request.
  bool run(process_frame &frame) {
    for (int sweep = 0; sweep < most_sweeps; ++sweep) {
      bool moved = false;
      for (std::size_t k = 0; k < ends_.size(); ++k) {
        if (!frame.goes_on())
          return false;
        moved = move_end(k, true) || move_end(k, false) || moved;
      }
      if (!moved)
        return true;
    }
    return true;
  }

  void stretches(std::vector<clone_stretch> &made) const {
    constexpr double behind_another = 1e-6; // ends without a band between them keep their sequence
    double at = 0.5;
    for (std::size_t k = 0; k < ends_.size(); ++k) {
      at += static_cast<double>(bands_at_[k].size()) + behind_another;
      const auto c = static_cast<std::size_t>(ends_[k].clone);
      (ends_[k].is_left ? made[c].left : made[c].right) = at;
    }
  }

private:
  // By the segment in front of it.
  void cover_segment(std::size_t s) {
    const end_of_clone &end = ends_[s - 1];
    std::copy(covering_[s - 1].begin(), covering_[s - 1].end(), covering_[s].begin());
    covering_.change(s, static_cast<std::size_t>(end.clone));
    depth_[s] = depth_[s - 1] + (end.is_left ? 1 : -1);
  }

  // Of a band that `n` of the clones over the segment have.
  double score(std::int32_t n, std::size_t s) const { return n * weights_.present + (depth_[s] - n) * weights_.absent; }

  // The best of a range of segments; the first of equals. From segment to segment one clone begins or ends.
  void put(std::size_t band, std::size_t from, std::size_t to) {
    std::int32_t n = n_common(having_[band], covering_[from]);
    double best = score(n, from);
    std::size_t place = from;
    for (std::size_t s = from + 1; s < to; ++s) {
      const end_of_clone &end = ends_[s - 1];
      if (having_.has(band, static_cast<std::size_t>(end.clone)))
        n += end.is_left ? 1 : -1;
      if (const double here = score(n, s); here > best) {
        best = here;
        place = s;
      }
    }
    best_[band] = best;
    place_[band] = place;
    bands_at_[place].push_back(band);
  }

  // What a band would gain in the segment between two ends that were exchanged: the one in front lies behind it now.
  double gain_of_exchange(std::size_t band, std::size_t k) const {
    double gain = 0;
    for (const std::size_t end : {k, k + 1}) {
      const bool is_covered_now = ends_[end].is_left == (end == k);
      const double weight =
          having_.has(band, static_cast<std::size_t>(ends_[end].clone)) ? weights_.present : weights_.absent;
      gain += is_covered_now ? weight : -weight;
    }
    return gain;
  }

  // Exchanges ends k and k + 1, and says what the bands gain by it.
  double exchange(std::size_t k) {
    const std::size_t s = k + 1;
    std::swap(ends_[k], ends_[k + 1]);
    cover_segment(s);
    const std::size_t from = s > segments_around ? s - segments_around : 0;
    const std::size_t to = std::min(s + segments_around + 1, depth_.size());
    double gain = 0;
    moved_bands_.clear();
    moved_bands_.swap(bands_at_[s]);
    for (const std::size_t band : moved_bands_) {
      gain -= best_[band];
      put(band, from, to);
      gain += best_[band];
    }
    for (std::size_t t = from; t < to; ++t) {
      if (t == s)
        continue;
      std::vector<std::size_t> &there = bands_at_[t];
      for (std::size_t i = 0; i < there.size();) {
        const std::size_t band = there[i];
        if (gain_of_exchange(band, k) <= 0) { // it was best elsewhere before
          ++i;
          continue;
        }
        const double now = score(n_common(having_[band], covering_[s]), s);
        if (now <= best_[band]) {
          ++i;
          continue;
        }
        gain += now - best_[band];
        best_[band] = now;
        place_[band] = s;
        bands_at_[s].push_back(band);
        there.erase(there.begin() + static_cast<std::ptrdiff_t>(i));
      }
    }
    return gain;
  }

  // Moves end k to where the bands gain most; false when that is where it is.
  bool move_end(std::size_t k, bool to_right) {
    std::size_t at = k, n_moves = 0, n_best = 0;
    double gain = 0, best = least_gain;
    while (n_moves < longest_move) {
      if (to_right ? at + 1 >= ends_.size() : at == 0)
        break;
      const std::size_t other = to_right ? at + 1 : at - 1;
      if (ends_[other].clone == ends_[at].clone)
        break;
      gain += exchange(std::min(at, other));
      at = other;
      ++n_moves;
      if (gain > best) {
        best = gain;
        n_best = n_moves;
      }
    }
    for (; n_moves > n_best; --n_moves) {
      const std::size_t other = to_right ? at - 1 : at + 1;
      exchange(std::min(at, other));
      at = other;
    }
    return n_best > 0;
  }

  const clone_sets &having_;
  const band_map_weights weights_;
  std::vector<end_of_clone> ends_;
  clone_sets covering_;                            // by segment
  std::vector<std::int32_t> depth_;                // clones that cover it
  std::vector<std::vector<std::size_t>> bands_at_; // by segment
  std::vector<double> best_;                       // score of each band at its place
  std::vector<std::size_t> place_;
  std::vector<std::size_t> moved_bands_; // work room
};

} // namespace

bool sort_ends_of_stretches(process_frame &frame, const clone_sets &having, std::size_t n_bands,
                            const band_map_weights &weights, std::vector<clone_stretch> &stretches) {
  end_sorter sorter(having, n_bands, weights, stretches);
  if (!sorter.run(frame))
    return false;
  sorter.stretches(stretches);
  return true;
}

} // namespace orb
