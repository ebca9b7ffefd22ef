#include "ordering/band_map_order.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "graph/label_forest.h"
#include "ordering/band_map_ends.h"

namespace orb {

namespace {

constexpr std::array slack_of_rounds{16.0, 10.0, 6.0, 3.0}; // bands: how sure the ends of clones are
constexpr std::int32_t least_clones = 2;                    // that have a band: what one clone shows alone may be false
constexpr double least_score_of_band = 2.5;                 // below it readings stand together by chance
constexpr std::size_t most_segments_of_pair = 150;
constexpr double share_of_least_width = 0.5; // of a clone's bands: of its stretch on the row

struct reading {
  band_value value;
  std::int32_t clone; // from 0
};

double mean_number_of_bands(const band_map_clones &clones) {
  double sum = 0;
  for (const auto &bands : clones.bands)
    sum += static_cast<double>(bands.size());
  return clones.bands.empty() ? 1 : sum / static_cast<double>(clones.count());
}

class band_grouping {
public:
  // Readings of clones that end up to `slack` bands before a band belong to it too: where they end isn't sure.
  band_grouping(const band_map_clones &clones, const std::vector<clone_stretch> &stretches, double slack)
      : clones_(clones), stretches_(stretches), slack_(slack), weights_(clones.metric, mean_number_of_bands(clones)) {
    for (std::size_t c = 0; c < clones.count(); ++c)
      for (const band_value value : clones.bands[c])
        readings_.push_back({value, static_cast<std::int32_t>(c)});
    std::stable_sort(readings_.begin(), readings_.end(),
                     [](const reading &a, const reading &b) { return a.value < b.value; });
    make_segments();
  }

  // False after a stop request.
  bool run(process_frame &frame, std::vector<band_of_map> &bands) {
    bands.clear();
    std::vector<std::vector<reading>> groups;
    if (!link_readings(frame, groups))
      return false;
    for (std::vector<reading> &group : groups)
      while (take_band(group, bands))
        if (!frame.goes_on())
          return false;
    std::stable_sort(bands.begin(), bands.end(), [](const band_of_map &a, const band_of_map &b) {
      return a.place != b.place ? a.place < b.place : a.value < b.value;
    });
    return true;
  }

private:
  const clone_stretch &stretch(std::int32_t clone) const { return stretches_[static_cast<std::size_t>(clone)]; }

  bool reaches(std::int32_t clone, double place) const {
    return stretch(clone).left - slack_ <= place && place <= stretch(clone).right + slack_;
  }

  // Between neighbouring ends of clones the same clones cover the axis.
  void make_segments() {
    std::vector<double> ends;
    for (const clone_stretch &one : stretches_) {
      ends.push_back(one.left);
      ends.push_back(one.right);
    }
    std::sort(ends.begin(), ends.end());
    ends.erase(std::unique(ends.begin(), ends.end()), ends.end());
    for (std::size_t i = 1; i < ends.size(); ++i)
      middle_.push_back((ends[i - 1] + ends[i]) / 2);
    std::vector<std::int32_t> change(middle_.size() + 1, 0);
    for (const clone_stretch &one : stretches_) {
      ++change[segment_from(one.left)];
      --change[segment_from(one.right)];
    }
    depth_.resize(middle_.size());
    std::partial_sum(change.begin(), change.end() - 1, depth_.begin());
  }
  std::size_t segment_from(double x) const {
    return static_cast<std::size_t>(std::lower_bound(middle_.begin(), middle_.end(), x) - middle_.begin());
  }

  // Readings of equal size in clones that overlap on the axis, with those that hang together by them.
  bool link_readings(process_frame &frame, std::vector<std::vector<reading>> &groups) const {
    const auto n = static_cast<std::int32_t>(readings_.size());
    label_forest forest;
    forest.start(n);
    for (std::int32_t i = 1; i <= n; ++i) {
      if (!frame.goes_on())
        return false;
      for (std::int32_t j = i + 1; j <= n; ++j) {
        const reading &a = readings_[static_cast<std::size_t>(i) - 1], &b = readings_[static_cast<std::size_t>(j) - 1];
        if (b.value - a.value > clones_.metric.tolerance)
          break;
        if (stretch(a.clone).left <= stretch(b.clone).right + slack_ &&
            stretch(b.clone).left <= stretch(a.clone).right + slack_)
          forest.join(i, j);
      }
    }
    number_list group_of, sizes;
    std::int32_t n_groups = 0;
    forest.number_clusters(group_of, sizes, n_groups);
    groups.resize(static_cast<std::size_t>(n_groups));
    for (std::int32_t i = 1; i <= n; ++i)
      groups[static_cast<std::size_t>(group_of(i)) - 1].push_back(readings_[static_cast<std::size_t>(i) - 1]);
    return true;
  }

  // Where the clones of the readings cover the axis and others don't; false when no point is worth a band.
  bool find_place(const std::vector<reading> &group, double &place) {
    change_.assign(middle_.size() + 1, 0);
    std::size_t from = middle_.size(), to = 0;
    std::int32_t before = -1;
    for (const reading &one : group) { // readings of a clone stand together: see take_band
      if (one.clone == before)
        continue;
      before = one.clone;
      const std::size_t begin = segment_from(stretch(one.clone).left), end = segment_from(stretch(one.clone).right);
      ++change_[begin];
      --change_[end];
      from = std::min(from, begin);
      to = std::max(to, end);
    }
    double best = 0, first = 0, last = 0;
    std::int32_t n_here = 0;
    for (std::size_t s = from; s < to; ++s) {
      n_here += change_[s];
      const double score = n_here * weights_.present + (depth_[s] - n_here) * weights_.absent;
      if (n_here >= least_clones && score > best) {
        best = score;
        first = last = middle_[s];
      } else if (score == best && best > 0) {
        last = middle_[s];
      }
    }
    place = (first + last) / 2;
    return best > least_score_of_band;
  }

  // How many readings each clone of a group has.
  struct clone_count {
    std::int32_t clone;
    std::int32_t n;
  };
  static std::vector<clone_count> counts_of(const std::vector<reading> &group) {
    std::vector<clone_count> counts;
    for (const reading &one : group)
      if (!counts.empty() && counts.back().clone == one.clone)
        ++counts.back().n;
      else
        counts.push_back({one.clone, 1});
    return counts;
  }

  // Clones with two readings of a size say that two bands of it lie near each other: the two places that explain all
  // numbers of readings best. False when one band does as well.
  bool find_two_places(const std::vector<clone_count> &counts, double &place_1, double &place_2) const {
    double left = stretch(counts.front().clone).left, right = stretch(counts.front().clone).right;
    std::int32_t n_with_two = 0;
    for (const clone_count &one : counts) {
      left = std::min(left, stretch(one.clone).left);
      right = std::max(right, stretch(one.clone).right);
      n_with_two += one.n > 1 ? 1 : 0;
    }
    const std::size_t from = segment_from(left), to = segment_from(right);
    if (n_with_two == 0 || counts.size() < 3 || to - from > most_segments_of_pair)
      return false;
    const auto score_at = [&](std::size_t s, std::size_t t) {
      std::int32_t n_right = 0;
      for (const clone_count &one : counts) {
        const clone_stretch &there = stretch(one.clone);
        const std::int32_t n = there.covers(middle_[s]) + (t < to && there.covers(middle_[t]) ? 1 : 0);
        n_right += std::min(n, one.n);
      }
      const std::int32_t n_asked = depth_[s] + (t < to ? depth_[t] : 0);
      return n_right * weights_.present + (n_asked - n_right) * weights_.absent;
    };
    double best_of_one = 0, best = 0;
    for (std::size_t s = from; s < to; ++s) {
      best_of_one = std::max(best_of_one, score_at(s, to));
      for (std::size_t t = s; t < to; ++t) {
        const double score = score_at(s, t);
        if (score > best) {
          best = score;
          place_1 = middle_[s];
          place_2 = middle_[t];
        }
      }
    }
    return best > best_of_one + least_score_of_band;
  }

  // Sizes of two bands by the readings of clones that cover one of the places only, or of all where there are none.
  void find_two_values(const std::vector<reading> &group, std::array<band_of_map, 2> &made) const {
    std::array<std::vector<band_value>, 2> values;
    for (const reading &one : group) {
      const bool second = stretch(one.clone).covers(made[1].place);
      if (stretch(one.clone).covers(made[0].place) != second)
        values[second ? 1 : 0].push_back(one.value);
    }
    for (std::size_t k = 0; k < 2; ++k) {
      if (values[k].empty())
        for (const reading &one : group)
          values[k].push_back(one.value);
      std::sort(values[k].begin(), values[k].end());
      made[k].value = values[k][values[k].size() / 2];
    }
  }

  // The reading of a clone that covers both places belongs to the band to which it is nearer in size; of two readings
  // in clones that cover both, each band takes one.
  void take_two_bands(std::vector<reading> &group, double place_1, double place_2,
                      std::vector<band_of_map> &bands) const {
    std::array<band_of_map, 2> made;
    made[0].place = place_1;
    made[1].place = place_2;
    find_two_values(group, made);
    const std::size_t smaller = made[0].value <= made[1].value ? 0 : 1;
    std::vector<reading> rest;
    for (std::size_t i = 0, end = 0; i < group.size(); i = end) {
      for (end = i; end < group.size() && group[end].clone == group[i].clone; ++end) {
      }
      const std::int32_t clone = group[i].clone;
      const std::array<bool, 2> covers{reaches(clone, place_1), reaches(clone, place_2)};
      std::size_t n_taken = 0;
      if (covers[0] && covers[1] && end - i >= 2) { // readings of a clone ascend
        made[0].clones.push_back(clone);
        made[1].clones.push_back(clone);
        n_taken = 2;
      } else if (covers[0] || covers[1]) {
        const bool nearer =
            std::abs(group[i].value - made[1 - smaller].value) < std::abs(group[i].value - made[smaller].value);
        made[covers[0] && covers[1] ? (nearer ? 1 - smaller : smaller) : (covers[1] ? 1 : 0)].clones.push_back(clone);
        n_taken = 1;
      }
      rest.insert(rest.end(), group.begin() + static_cast<std::ptrdiff_t>(i + n_taken),
                  group.begin() + static_cast<std::ptrdiff_t>(end));
    }
    group = std::move(rest);
    for (band_of_map &one : made)
      if (one.clones.size() >= least_clones)
        bands.push_back(std::move(one));
  }

  // Takes the readings of the best band out of the group; false when there is none.
  bool take_band(std::vector<reading> &group, std::vector<band_of_map> &bands) {
    if (group.empty())
      return false;
    std::stable_sort(group.begin(), group.end(), [](const reading &a, const reading &b) { return a.clone < b.clone; });
    band_of_map made;
    double place_2 = 0;
    if (find_two_places(counts_of(group), made.place, place_2)) {
      take_two_bands(group, made.place, place_2, bands);
      return true;
    }
    if (!find_place(group, made.place))
      return false;
    std::vector<band_value> values;
    for (const reading &one : group)
      if (stretch(one.clone).covers(made.place))
        values.push_back(one.value);
    if (values.empty()) // the middle between two equal places
      return false;
    std::sort(values.begin(), values.end());
    made.value = values[values.size() / 2];
    std::vector<reading> rest;
    for (std::size_t i = 0; i < group.size();) {
      std::size_t end = i, nearest = i;
      for (; end < group.size() && group[end].clone == group[i].clone; ++end)
        if (std::abs(group[end].value - made.value) < std::abs(group[nearest].value - made.value))
          nearest = end;
      const bool taken = reaches(group[i].clone, made.place) &&
                         std::abs(group[nearest].value - made.value) <= clones_.metric.tolerance;
      if (taken)
        made.clones.push_back(group[i].clone);
      for (; i < end; ++i)
        if (!taken || i != nearest)
          rest.push_back(group[i]);
    }
    group = std::move(rest);
    bands.push_back(std::move(made));
    return true;
  }

  const band_map_clones &clones_;
  const std::vector<clone_stretch> &stretches_;
  const double slack_;
  const band_map_weights weights_;
  std::vector<reading> readings_;
  std::vector<double> middle_;       // of each segment of the axis
  std::vector<std::int32_t> depth_;  // clones that cover it
  std::vector<std::int32_t> change_; // work room: of the clones of a group from segment to segment
};

} // namespace

void stretches_on(const band_map_clones &clones, const std::vector<band_of_map> &bands,
                  std::vector<clone_stretch> &stretches) {
  std::vector<std::vector<std::int32_t>> bands_of(clones.count());
  for (std::size_t b = 0; b < bands.size(); ++b)
    for (const std::int32_t clone : bands[b].clones)
      bands_of[static_cast<std::size_t>(clone)].push_back(static_cast<std::int32_t>(b));
  std::vector<double> scores;
  for (std::size_t c = 0; c < clones.count(); ++c) {
    const band_map_weights weights(clones.metric, static_cast<double>(clones.bands[c].size()));
    if (bands_of[c].empty()) { // it has nothing in common with others
      stretches[c] = {0, 0};
      continue;
    }
    scores.assign(bands.size(), weights.absent);
    for (const std::int32_t b : bands_of[c])
      scores[static_cast<std::size_t>(b)] = weights.present;
    const best_stretch best =
        best_stretch_of(scores, static_cast<std::int32_t>(share_of_least_width * double(bands_of[c].size())));
    stretches[c] = {best.first - 0.5, best.last + 0.5};
  }
}

static clone_sets sets_of(const std::vector<band_of_map> &bands, std::size_t n_clones) {
  clone_sets having(bands.size(), n_clones);
  for (std::size_t b = 0; b < bands.size(); ++b)
    for (const std::int32_t clone : bands[b].clones)
      having.add(b, static_cast<std::size_t>(clone));
  return having;
}

bool order_bands(process_frame &frame, const band_map_clones &clones, std::vector<clone_stretch> &stretches,
                 std::vector<band_of_map> &bands) {
  const band_map_weights weights(clones.metric, mean_number_of_bands(clones));
  for (const double slack : slack_of_rounds)
    if (!band_grouping(clones, stretches, slack).run(frame, bands) ||
        !sort_ends_of_stretches(frame, sets_of(bands, clones.count()), bands.size(), weights, stretches))
      return false;
  if (!band_grouping(clones, stretches, slack_of_rounds.back()).run(frame, bands))
    return false;
  stretches_on(clones, bands, stretches);
  return true;
}

} // namespace orb
