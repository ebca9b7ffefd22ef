#include "contigs/layout_ends.h"

#include <cmath>

namespace orb {

namespace {

constexpr double sticks_out = 3;   // times r
constexpr double least_common = 6; // times r, at least 4
constexpr double fewest_for_flush = 3;
// Of a score: what chance gives reaches further than its formula says. With 3 two of twelve libraries had such a join.
constexpr double margin_of_need = 4;
constexpr double behind_depth = 18; // times l
constexpr double fewest_behind = 4; // bands

double least_common_of(const band_scale &scale) {
  return std::max(4.0, least_common * scale.r);
}

void sort_bands(std::vector<end_band> &bands) {
  std::sort(bands.begin(), bands.end(), [](const end_band &a, const end_band &b) {
    return a.value != b.value ? a.value < b.value : a.distance < b.distance;
  });
}

} // namespace

double score_of_ends(double n_ends) {
  return std::log10(std::max(1.0, static_cast<double>(end_reaches.size()) * n_ends * n_ends / 2)) + margin_of_need;
}

contig_end end_of_single(const clone_layout &layout, clone_number clone) {
  contig_end end;
  end.outermost = clone;
  for (const band_value band : layout.clones.of(clone))
    end.bands.push_back({band, 0, 0, 0, true});
  return end;
}

double share_shown(const clone_layout &layout, const contig_end &end, clone_number clone, double overlap) {
  const auto own = layout.clones.of(clone);
  const double depth = std::min(overlap, behind_depth * layout.scale.l);
  double expected = 0, shown = 0, n_loose = 0, loose_shown = 0;
  for (const end_band &band : end.bands) {
    const auto at = std::lower_bound(own.begin(), own.end(), band.value - layout.clones.t);
    const double is_shown = at != own.end() && *at <= band.value + layout.clones.t ? 1 : 0;
    if (band.loose) {
      n_loose += 1;
      loose_shown += is_shown;
    } else if (band.near < depth) {
      const double inside = band.far <= depth ? 1 : (depth - band.near) / (band.far - band.near);
      expected += inside;
      shown += is_shown * inside;
    }
  }
  // Loose bands lie anywhere in what their clone sticks out by: as many as the overlap holds should be shown.
  const double loose_expected = std::clamp(overlap, 0.0, n_loose);
  expected += loose_expected;
  shown += std::min(loose_expected, loose_shown);
  return expected < fewest_behind ? -1 : shown / expected;
}

contig_end end_of_piece(const clone_layout &layout, std::int32_t piece, bool right) {
  contig_end end = end_without(layout, piece, right, 0);
  if (std::none_of(end.bands.begin(), end.bands.end(), [](const end_band &b) { return b.loose; }))
    return end;
  const contig_end behind = end_without(layout, piece, right, end.outermost);
  const double sticking_out = layout.outer_end(end.outermost, right) - layout.outer_end(behind.outermost, right);
  end.shown_behind = share_shown(layout, behind, end.outermost, layout.n_of(end.outermost) - sticking_out);
  return end;
}

contig_end end_without(const clone_layout &layout, std::int32_t piece, bool right, clone_number left_out) {
  contig_end end;
  end.piece = piece;
  end.right = right;
  // Clones within reach, on an axis that begins at the end.
  double edge = -1e300, next_edge = -1e300;
  const double length = end_profile_length * layout.scale.l;
  std::vector<clone_number> near;
  layout.for_end(piece, right, length + (left_out > 0 ? layout.n_of(left_out) : 0), [&](clone_number c) {
    if (c != left_out)
      near.push_back(c);
  });
  std::sort(near.begin(), near.end());
  for (const clone_number c : near) {
    const double x = layout.outer_end(c, right);
    if (x > edge) {
      next_edge = edge;
      edge = x;
      end.outermost = c;
    } else {
      next_edge = std::max(next_edge, x);
    }
  }
  std::vector<laid_clone> laid;
  for (const clone_number c : near) {
    const double from = edge - layout.outer_end(c, right);
    if (from <= length)
      laid.push_back({c, from, from + layout.n_of(c)});
  }
  std::sort(laid.begin(), laid.end(), [](const laid_clone &a, const laid_clone &b) {
    return a.left != b.left ? a.left < b.left : a.clone < b.clone;
  });
  band_columns map(layout.clones, layout.scale);
  map.make(laid, {}, std::atomic<bool>(false));
  for (const band_column &column : map.columns())
    if (column.place <= length)
      end.bands.push_back({static_cast<band_value>(std::lround(column.value)),
                           static_cast<float>(std::max(0.0, column.place)),
                           static_cast<float>(std::max(0.0, column.from)), static_cast<float>(column.to), false});
  if (edge - next_edge > sticks_out * layout.scale.r)
    for (std::size_t i = 0; i < laid.size(); ++i) {
      if (laid[i].clone != end.outermost)
        continue;
      const auto bands = layout.clones.of(end.outermost);
      const auto in_column = map.in_column(static_cast<std::int32_t>(i));
      for (std::size_t b = 0; b < bands.size(); ++b)
        if (in_column[b] == 0)
          end.bands.push_back({bands[b], 0, 0, 0, true});
    }
  sort_bands(end.bands);
  return end;
}

end_matcher::band_count end_matcher::count(const contig_end &p, const contig_end &q, double reach, bool loose_1,
                                           bool loose_2) const {
  band_count found;
  const std::int32_t t = layout_.clones.t;
  std::size_t i = 0, j = 0;
  const auto skip = [reach](const std::vector<end_band> &bands, std::size_t &at, bool loose) {
    while (at < bands.size() && (bands[at].distance > reach || (bands[at].loose && !loose)))
      ++at;
  };
  for (;;) {
    skip(p.bands, i, loose_1);
    skip(q.bands, j, loose_2);
    if (i == p.bands.size() && j == q.bands.size())
      return found;
    const bool p_over = i == p.bands.size(), q_over = j == q.bands.size();
    const std::int32_t d = p_over || q_over ? 0 : p.bands[i].value - q.bands[j].value;
    if (!p_over && !q_over && std::abs(d) <= t) {
      ++found.common, ++found.n_1, ++found.n_2;
      ++i, ++j;
    } else if (q_over || (!p_over && d < 0)) {
      ++found.n_1, ++i;
    } else {
      ++found.n_2, ++j;
    }
  }
}

end_match end_matcher::match(const contig_end &p, const contig_end &q) const {
  const band_scale &scale = layout_.scale;
  const double least = least_common_of(scale);
  end_match best;
  for (const double reach : end_reaches) {
    const band_count found = count(p, q, reach * scale.l, true, true);
    if (found.common < least)
      continue;
    const double score = scale.score(found.common, found.n_1, found.n_2);
    if (score <= best.score)
      continue;
    best.score = score;
    best.reach = reach * scale.l;
    best.common = found.common;
    best.n_1 = found.n_1;
    best.n_2 = found.n_2;
  }
  if (best.score > 0)
    best.overlap = scale.overlap(best.common, best.n_1, best.n_2);
  return best;
}

void end_matcher::score_without_loose(const contig_end &p, const contig_end &q, end_match &match) const {
  const auto score = [&](bool loose_1, bool loose_2) {
    const band_count found = count(p, q, match.reach, loose_1, loose_2);
    return layout_.scale.score(found.common, found.n_1, found.n_2);
  };
  match.score_without_1 = score(false, true);
  match.score_without_2 = score(true, false);
}

bool end_matcher::flush_one_way(const contig_end &p, const contig_end &q, double overlap, double share) const {
  const double slack = std::max(2.0, 5 * layout_.scale.r);
  const double deep = overlap - 0.3 * slack, reach = overlap + 3 * slack + 0.1 * overlap;
  double expected = 0, found = 0; // bands
  std::size_t j = 0;
  for (const end_band &band : p.bands) {
    if (band.near > deep || band.loose)
      continue;
    expected += band.far <= deep ? 1 : (deep - band.near) / (band.far - band.near);
    while (j < q.bands.size() && q.bands[j].value < band.value - layout_.clones.t)
      ++j;
    for (std::size_t k = j; k < q.bands.size() && q.bands[k].value <= band.value + layout_.clones.t; ++k)
      if (q.bands[k].near <= reach) {
        found += 1;
        break;
      }
  }
  return expected < fewest_for_flush || found >= share * expected;
}

bool end_matcher::flush(const contig_end &p, const contig_end &q, double overlap, double share) const {
  return flush_one_way(p, q, overlap, share) && flush_one_way(q, p, overlap, share);
}

end_index::end_index(const clone_layout &layout, std::span<const contig_end> ends, std::span<const std::int64_t> living)
    : layout_(layout), living_(living.begin(), living.end()) {
  std::size_t most = 1;
  for (std::size_t i = 0; i < living_.size(); ++i) {
    const contig_end &end = ends[static_cast<std::size_t>(living_[i])];
    most = std::max(most, end.bands.size());
    n_.push_back(count_bands(end));
    for (const end_band &band : end.bands)
      if (const std::size_t reach = reach_of(band); reach < end_reaches.size())
        entries_.push_back({band.value, static_cast<std::int32_t>(i), static_cast<std::uint8_t>(reach)});
  }
  std::sort(entries_.begin(), entries_.end(),
            [](const entry &a, const entry &b) { return a.value != b.value ? a.value < b.value : a.place < b.place; });
  log_factorial_.push_back(0);
  for (std::size_t n = 0; n <= most; ++n) {
    const double p = layout.scale.chance_of_match(static_cast<double>(n));
    log_factorial_.push_back(log_factorial_.back() + std::log10(static_cast<double>(n) + 1));
    log_p_.push_back(std::log10(std::max(p, 1e-300)));
    log_q_.push_back(std::log10(std::max(1 - p, 1e-300)));
  }
}

std::size_t end_index::reach_of(const end_band &band) const {
  std::size_t reach = 0;
  while (reach < end_reaches.size() && band.distance > end_reaches[reach] * layout_.scale.l)
    ++reach;
  return reach;
}

end_index::counts end_index::count_bands(const contig_end &end) const {
  counts n{};
  for (const end_band &band : end.bands)
    for (std::size_t reach = reach_of(band); reach < n.size(); ++reach)
      ++n[reach];
  return n;
}

// The chance of k or more is at least that of exactly k, which costs no sum.
double end_index::most_score(std::int32_t k, std::int32_t n_1, std::int32_t n_2) const {
  const auto at = [](std::int32_t i) { return static_cast<std::size_t>(i); };
  const std::int32_t n = std::min(n_1, n_2),
                     other = std::min(std::max(n_1, n_2), static_cast<std::int32_t>(log_p_.size()) - 1);
  return -(log_factorial_[at(n)] - log_factorial_[at(k)] - log_factorial_[at(n - k)] + k * log_p_[at(other)] +
           (n - k) * log_q_[at(other)]);
}

void end_index::look_up(const contig_end &p, double need, scratch &place, std::vector<std::int64_t> &found) const {
  place.common.assign(living_.size(), {});
  const std::int32_t t = layout_.clones.t;
  for (const end_band &band : p.bands) {
    const std::size_t reach = reach_of(band);
    if (reach == end_reaches.size())
      continue;
    const auto first = std::lower_bound(entries_.begin(), entries_.end(), band.value - t,
                                        [](const entry &e, band_value value) { return e.value < value; });
    for (auto at = first; at != entries_.end() && at->value <= band.value + t; ++at)
      ++place.common[static_cast<std::size_t>(at->place)][std::max<std::size_t>(reach, at->reach)];
  }
  const counts n_p = count_bands(p);
  const auto least = static_cast<std::int32_t>(std::ceil(least_common_of(layout_.scale)));
  found.clear();
  for (std::size_t i = 0; i < living_.size(); ++i) {
    std::int32_t pairs = 0; // within the reach: no matching has more
    for (std::size_t reach = 0; reach < n_p.size(); ++reach) {
      pairs += place.common[i][reach];
      const std::int32_t k = std::min({pairs, n_p[reach], n_[i][reach]});
      if (k >= least && most_score(k, n_p[reach], n_[i][reach]) >= need) {
        found.push_back(living_[i]);
        break;
      }
    }
  }
}

} // namespace orb
