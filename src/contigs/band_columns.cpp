#include "contigs/band_columns.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "contigs/clone_layout.h"

namespace orb {

namespace {

constexpr double share_of_tolerance = 0.83; // within which bands of two clones go to one column
constexpr double least_common_stretch = 2;  // times l
constexpr double off_place = 6;             // times r: a member's stretch that misses the place by more is no member
constexpr double off_best = 8;              // times r
constexpr std::size_t most_tries = 6;       // columns of a group
constexpr int n_refits = 2;
// The nearest that a clone is compared with: they were compared with those further.
constexpr auto most_touching = static_cast<std::ptrdiff_t>(clone_layout::most_overlaps);
constexpr double negligible = 30; // below the best score
constexpr int n_passes = 3;
constexpr double longest_gap = 6; // a longer stretch that only one clone covers, where no column is, keeps its length
constexpr double least_missing = 0.01, most_missing = 0.2;

double gain_of_member(const column_chances &c) {
  return std::log((1 - c.missing) / c.stray);
}
double loss_of_other(const column_chances &c) {
  return std::log((1 - c.stray) / c.missing);
}
bool covers(const laid_clone &clone, const band_column &column, double slack) {
  return clone.left <= column.place + slack && clone.right >= column.place - slack;
}

} // namespace

std::int32_t band_columns::root(std::int32_t entry) {
  while (parent_[static_cast<std::size_t>(entry)] != entry) {
    std::int32_t &parent = parent_[static_cast<std::size_t>(entry)];
    parent = parent_[static_cast<std::size_t>(parent)];
    entry = parent;
  }
  return entry;
}

void band_columns::unite(std::int32_t x, std::int32_t y) {
  if (parent_[static_cast<std::size_t>(x)] == parent_[static_cast<std::size_t>(y)])
    return;
  x = root(x);
  y = root(y);
  parent_[static_cast<std::size_t>(std::max(x, y))] = std::min(x, y);
}

// Bands of a clone and of one or two (-1: one) others. Matches are written down first, since no jump foretells them.
void band_columns::join_clones(std::span<const laid_clone> laid, std::int32_t clone, std::int32_t other_1,
                               std::int32_t other_2) {
  const std::int32_t near = static_cast<std::int32_t>(std::lround(share_of_tolerance * clones_.t));
  const auto bands_of = [&](std::int32_t at) {
    return at < 0 ? std::span<const band_value>() : clones_.of(laid[static_cast<std::size_t>(at)].clone);
  };
  const auto own = bands_of(clone);
  for (auto &matched : matched_)
    matched.resize(std::max(matched.size(), own.size() + 1));
  const auto [n_1, n_2] =
      merge_with_two(own, bands_of(other_1), bands_of(other_2), near, matched_[0].data(), matched_[1].data());
  const auto unite_all = [&](std::int32_t other, std::span<const common_pair> matched) {
    const band_value *const bands = bands_of(other).data();
    const auto at = [](const band_value *band, const band_value *first, std::size_t first_entry) {
      return static_cast<std::int32_t>(first_entry + static_cast<std::size_t>(band - first));
    };
    for (const common_pair &both : matched)
      unite(at(both.own, own.data(), first_band_[static_cast<std::size_t>(clone)]),
            at(both.other, bands, first_band_[static_cast<std::size_t>(other)]));
  };
  unite_all(other_1, std::span(matched_[0]).first(n_1));
  if (other_2 >= 0)
    unite_all(other_2, std::span(matched_[1]).first(n_2));
}

// Bands of two clones that lie side by side and are of a size are one band of the genome.
void band_columns::join_entries(std::span<const laid_clone> laid, const std::atomic<bool> &stopped) {
  const double least = least_common_stretch * scale_.l;
  std::vector<std::int32_t> reaching, touching; // clones that go on, and those that go on far enough
  for (std::size_t b = 0; b < laid.size() && !stopped; ++b) {
    std::erase_if(reaching,
                  [&](std::int32_t a) { return laid[static_cast<std::size_t>(a)].right - laid[b].left <= least; });
    touching.clear();
    for (const std::int32_t a : reaching)
      if (std::min(laid[static_cast<std::size_t>(a)].right, laid[b].right) - laid[b].left > least)
        touching.push_back(a);
    if (std::ssize(touching) > most_touching)
      touching.erase(touching.begin(), touching.end() - most_touching);
    for (std::size_t k = 0; k < touching.size(); k += 2)
      join_clones(laid, static_cast<std::int32_t>(b), touching[k], k + 1 < touching.size() ? touching[k + 1] : -1);
    reaching.push_back(static_cast<std::int32_t>(b));
  }
}

// Left ends and right ends of all clones as they come along the axis, a left one first where two are at a place.
void band_columns::order_ends(std::span<const laid_clone> laid) {
  const std::size_t n = laid.size();
  std::vector<std::int32_t> by_right(n);
  std::iota(by_right.begin(), by_right.end(), 0);
  const auto right = [&](std::int32_t c) { return laid[static_cast<std::size_t>(c)].right; };
  std::sort(by_right.begin(), by_right.end(),
            [&](std::int32_t a, std::int32_t b) { return right(a) != right(b) ? right(a) < right(b) : a < b; });
  ends_.clear();
  ends_before_.resize(n);
  first_reaching_.resize(n);
  for (std::size_t begins = 0, ends = 0, reaching = 0; begins < n || ends < n;) {
    if (begins == n || (ends < n && right(by_right[ends]) < laid[begins].left)) {
      ends_.push_back({right(by_right[ends]), by_right[ends], true});
      ++ends;
      continue;
    }
    const bool same_place = begins > 0 && laid[begins - 1].left == laid[begins].left;
    ends_before_[begins] = same_place ? ends_before_[begins - 1] : ends_.size();
    while (laid[reaching].left < laid[begins].left - longest_)
      ++reaching;
    first_reaching_[begins] = reaching;
    ends_.push_back({laid[begins].left, static_cast<std::int32_t>(begins), false});
    ++begins;
  }
}

// What changes along the axis from the left end of a clone up to `high`, for the group in hand; what covers that end
// comes first. What ends beyond `high` needn't be closed.
void band_columns::take_steps(std::span<const laid_clone> laid, const column_chances &chances, std::size_t leftmost,
                              double high) {
  const double gain = gain_of_member(chances), loss = loss_of_other(chances), low = laid[leftmost].left;
  const double change_of[] = {-loss, gain, 0.0}; // by stance
  static_assert(static_cast<int>(stance::wanting) == 1 && static_cast<int>(stance::explained) == 2);
  std::size_t n = 0, i = first_reaching_[leftmost];
  if (steps_.size() < 2 * laid.size())
    steps_.resize(2 * laid.size());
  for (; i < laid.size() && laid[i].left < low; ++i) {
    steps_[n] = {laid[i].left, change_of[static_cast<std::size_t>(stance_[i])]};
    n += laid[i].right >= low && stance_[i] != stance::explained;
  }
  for (std::size_t at = ends_before_[leftmost]; at < ends_.size() && ends_[at].at <= high; ++at) {
    const stance taken = stance_[static_cast<std::size_t>(ends_[at].clone)];
    const double change = change_of[static_cast<std::size_t>(taken)];
    steps_[n] = {ends_[at].at, ends_[at].is_right ? -change : change};
    n += ends_[at].is_right || taken != stance::explained;
  }
  n_steps_ = n;
}

// The stretch of the axis at which most clones that want the band there cover it, and fewest that don't show it.
bool band_columns::best_place(const column_chances &chances, band_column &column) {
  const double gain = gain_of_member(chances);
  double score = 0, best = 0, best_at = 0;
  for (std::size_t i = 0; i + 1 < n_steps_; ++i) {
    score += steps_[i].change;
    if (score > best && steps_[i + 1].at > steps_[i].at) {
      best = score;
      column.from = steps_[i].at;
      column.to = steps_[i + 1].at;
      best_at = (column.from + column.to) / 2;
    }
  }
  if (best < 2 * gain - 1)
    return false;
  score = 0;
  double sum = 0, weights = 0;
  for (std::size_t i = 0; i + 1 < n_steps_; ++i) {
    score += steps_[i].change;
    if (score < best - negligible)
      continue;
    const double weight = (steps_[i + 1].at - steps_[i].at) * std::exp(std::min(0.0, score - best));
    weights += weight;
    sum += weight * (steps_[i].at + steps_[i + 1].at) / 2;
  }
  column.place = weights > 0 ? sum / weights : best_at;
  if (std::abs(column.place - best_at) > off_best * scale_.r)
    column.place = best_at;
  return true;
}

// Who of a group still wants a column: clones that cover no fit but `without`, to within the slack. How many.
std::int32_t band_columns::take_stances(std::span<const laid_clone> laid, std::span<const std::int32_t> entries,
                                        std::size_t without, double slack) {
  std::int32_t wanting = 0;
  for (const std::int32_t e : entries) {
    const auto i = static_cast<std::size_t>(clone_of(e));
    if (stance_[i] != stance::other)
      continue; // another band of the clone
    stance_[i] = stance::wanting;
    for (std::size_t f = 0; f < fits_.size() && stance_[i] == stance::wanting; ++f)
      if (f != without && covers(laid[i], fits_[f], slack))
        stance_[i] = stance::explained;
    wanting += stance_[i] == stance::wanting;
  }
  return wanting;
}

void band_columns::forget_stances(std::span<const std::int32_t> entries) {
  for (const std::int32_t e : entries)
    stance_[static_cast<std::size_t>(clone_of(e))] = stance::other;
}

// Makes columns of a group of entries. Bands of like size that lie near each other on the genome make one group, and
// show as one band in a clone that holds both: so a clone may belong to several columns of its group.
void band_columns::place_group(std::span<const laid_clone> laid, const column_chances &chances,
                               std::span<const std::int32_t> entries) {
  const auto leftmost = static_cast<std::size_t>(clone_of(entries.front())); // entries ascend as their clones do
  double high = laid[leftmost].left;
  for (const std::int32_t e : entries)
    high = std::max(high, laid[static_cast<std::size_t>(clone_of(e))].right);
  const auto best_of_group = [&](band_column &column) {
    take_steps(laid, chances, leftmost, high);
    return best_place(chances, column);
  };
  constexpr auto none = static_cast<std::size_t>(-1);
  fits_.clear();
  std::int32_t wanting_before = static_cast<std::int32_t>(entries.size()) + 1;
  while (fits_.size() < most_tries) {
    const std::int32_t wanting = take_stances(laid, entries, none, off_place * scale_.r);
    band_column fit;
    const bool more = wanting > 1 && wanting < wanting_before && best_of_group(fit);
    forget_stances(entries);
    if (!more)
      break;
    wanting_before = wanting;
    fits_.push_back(fit);
  }
  for (int round = 0; round < n_refits && fits_.size() > 1; ++round)
    for (std::size_t f = 0; f < fits_.size();) {
      const bool wanted = take_stances(laid, entries, f, 0) > 1 && best_of_group(fits_[f]);
      forget_stances(entries);
      if (wanted)
        ++f;
      else
        fits_.erase(fits_.begin() + static_cast<std::ptrdiff_t>(f));
    }
  keep_fits(laid, entries);
}

// Columns of one group, from `first_column` on.
void band_columns::note_shared_bands(std::size_t first_column, std::span<const std::int32_t> entries) {
  shares_.resize(members_.size(), 0);
  if (columns_.size() < first_column + 2)
    return;
  const std::span<const std::int32_t> all(members_.data() + columns_[first_column].first,
                                          members_.size() - columns_[first_column].first);
  for (const std::int32_t clone : all)
    ++n_columns_[static_cast<std::size_t>(clone)];
  for (std::size_t k = 0; k < all.size(); ++k) {
    const auto clone = static_cast<std::size_t>(all[k]);
    if (n_columns_[clone] < 2)
      continue;
    const auto from = std::lower_bound(entries.begin(), entries.end(), static_cast<std::int32_t>(first_band_[clone]));
    const auto to = std::lower_bound(from, entries.end(), static_cast<std::int32_t>(first_band_[clone + 1]));
    shares_[columns_[first_column].first + k] = n_columns_[clone] > to - from ? 1 : 0;
  }
  for (const std::int32_t clone : all)
    n_columns_[static_cast<std::size_t>(clone)] = 0;
}

void band_columns::keep_fits(std::span<const laid_clone> laid, std::span<const std::int32_t> entries) {
  const double slack = off_place * scale_.r;
  const std::size_t first_column = columns_.size();
  for (band_column &fit : fits_) {
    fit.first = members_.size();
    fit.group = entries.front();
    fit.n_members = 0;
    fit.value = 0;
    for (const std::int32_t e : entries) {
      const laid_clone &clone = laid[static_cast<std::size_t>(clone_of(e))];
      const bool again = fit.n_members > 0 && members_.back() == clone_of(e);
      if (again || !covers(clone, fit, slack) ||
          (!covers(clone, fit, 0) &&
           std::any_of(fits_.begin(), fits_.end(), [&](const band_column &other) { return covers(clone, other, 0); })))
        continue;
      members_.push_back(clone_of(e));
      fit.value += value_of_entry_[static_cast<std::size_t>(e)];
      ++fit.n_members;
    }
    if (fit.n_members < 2) {
      members_.resize(fit.first);
      continue;
    }
    fit.value /= fit.n_members;
    columns_.push_back(fit);
    std::size_t member = fit.first; // both ascend
    for (const std::int32_t e : entries) {
      while (member < members_.size() && members_[member] < clone_of(e))
        ++member;
      if (member < members_.size() && members_[member] == clone_of(e))
        in_column_[static_cast<std::size_t>(e)] = 1;
    }
  }
  note_shared_bands(first_column, entries);
}

void band_columns::number_entries(std::span<const laid_clone> laid) {
  first_band_.assign(1, 0);
  clone_of_entry_.clear();
  value_of_entry_.clear();
  longest_ = 0;
  for (std::size_t i = 0; i < laid.size(); ++i) {
    longest_ = std::max(longest_, laid[i].right - laid[i].left);
    for (const band_value band : clones_.of(laid[i].clone)) {
      clone_of_entry_.push_back(static_cast<std::int32_t>(i));
      value_of_entry_.push_back(band);
    }
    first_band_.push_back(clone_of_entry_.size());
  }
  std::vector<std::int32_t> by_clone(laid.size());
  std::iota(by_clone.begin(), by_clone.end(), 0);
  std::sort(by_clone.begin(), by_clone.end(), [&](std::int32_t a, std::int32_t b) {
    return laid[static_cast<std::size_t>(a)].clone < laid[static_cast<std::size_t>(b)].clone;
  });
  key_of_first_.resize(laid.size());
  std::size_t key = 0;
  for (const std::int32_t i : by_clone) {
    const auto at = static_cast<std::size_t>(i);
    key_of_first_[at] = key;
    key += first_band_[at + 1] - first_band_[at];
  }
}

void band_columns::group_entries(std::span<const laid_clone> laid, const std::atomic<bool> &stopped) {
  const std::size_t n = clone_of_entry_.size();
  parent_.resize(n);
  std::iota(parent_.begin(), parent_.end(), 0);
  join_entries(laid, stopped);
  group_of_key_.resize(n);
  for (std::size_t e = 0; e < n; ++e)
    group_of_key_[key_of(static_cast<std::int32_t>(e))] =
        static_cast<std::int32_t>(key_of(root(static_cast<std::int32_t>(e))));
}

void band_columns::make(std::span<const laid_clone> laid, const column_chances &chances,
                        const std::atomic<bool> &stopped, bool same_groups) {
  columns_.clear();
  members_.clear();
  shares_.clear();
  number_entries(laid);
  const std::size_t n = clone_of_entry_.size();
  in_column_.assign(n, 0);
  stance_.assign(laid.size(), stance::other);
  n_columns_.assign(laid.size(), 0);
  order_ends(laid);
  if (!same_groups)
    group_entries(laid, stopped);
  std::vector<std::int32_t> next(n, -1), first(n, -1), last(n, -1); // the latter two by group
  for (std::size_t e = 0; e < n; ++e) {
    const auto entry = static_cast<std::int32_t>(e);
    const auto group = static_cast<std::size_t>(group_of_key_[key_of(entry)]);
    (first[group] < 0 ? first[group] : next[static_cast<std::size_t>(last[group])]) = entry;
    last[group] = entry;
  }
  for (std::size_t e = 0; e < n && !stopped; ++e) {
    const auto entry = static_cast<std::int32_t>(e);
    if (first[static_cast<std::size_t>(group_of_key_[key_of(entry)])] != entry || next[e] < 0)
      continue;
    group_.clear();
    for (std::int32_t at = entry; at >= 0; at = next[static_cast<std::size_t>(at)])
      group_.push_back(at);
    place_group(laid, chances, group_);
  }
  std::sort(columns_.begin(), columns_.end(), [](const band_column &x, const band_column &y) {
    return x.place != y.place ? x.place < y.place : x.first < y.first;
  });
}

namespace {

// Where a clone begins and ends, by the columns that it shows and those that it doesn't.
class end_finder {
public:
  end_finder(const band_scale &scale, const band_columns &map, std::vector<laid_clone> &laid)
      : scale_(scale), map_(map), laid_(laid), shown_(laid.size()) {
    const auto &columns = map.columns();
    for (std::size_t c = 0; c < columns.size(); ++c)
      for (std::size_t k = 0; k < map.members(columns[c]).size(); ++k)
        shown_[static_cast<std::size_t>(map.members(columns[c])[k])].push_back(
            {static_cast<std::int32_t>(c), map.shares_a_band(columns[c])[k] != 0, true, true});
    for (auto &shown : shown_)
      find_repeats(shown);
    find_gaps();
  }

  // Ends become places between columns: column c lies from c to c + 1.
  void to_numbers() {
    const auto &columns = map_.columns();
    const auto number_of = [&](double x) {
      const auto at = std::lower_bound(columns.begin(), columns.end(), x,
                                       [](const band_column &c, double y) { return c.place < y; });
      const auto i = static_cast<double>(at - columns.begin());
      if (columns.empty())
        return x;
      if (at == columns.begin())
        return x - columns.front().place + 0.5; // outside, a band is as long as a column
      if (at == columns.end())
        return i - 0.5 + x - columns.back().place;
      const double before = (at - 1)->place, gap = at->place - before;
      return i - 0.5 + (gap > 0 ? (x - before) / gap : 0.5);
    };
    for (laid_clone &clone : laid_) {
      clone.left = number_of(clone.left);
      clone.right = number_of(clone.right);
    }
  }

  void find_ends(const column_chances &chances) {
    const double gain = gain_of_member(chances), loss = loss_of_other(chances);
    const double usual_loose = usual_loose_share();
    for (std::size_t i = 0; i < laid_.size(); ++i) {
      const double middle = (laid_[i].left + laid_[i].right) / 2;
      double left = best_cut(i, laid_[i].left, middle, gain, loss, true);
      double right = best_cut(i, laid_[i].right, middle, gain, loss, false);
      stick_out(i, usual_loose, left, right);
      laid_[i].left = std::min(left, right);
      laid_[i].right = std::max(left, right);
    }
  }

  double missing_share() const {
    std::int64_t inside = 0, shown = 0;
    for (std::size_t i = 0; i < laid_.size(); ++i) {
      const auto first = static_cast<std::int32_t>(std::ceil(laid_[i].left));
      const auto last = static_cast<std::int32_t>(std::floor(laid_[i].right)) - 1;
      if (last <= first + 1)
        continue;
      const auto from = std::max(first, 0), to = std::min(last, static_cast<std::int32_t>(map_.columns().size()) - 1);
      if (to < from)
        continue;
      inside += to - from + 1;
      shown += first_shown(i, to + 1) - first_shown(i, from);
    }
    return inside == 0 ? 0.05 : 1 - static_cast<double>(shown) / static_cast<double>(inside);
  }

  // Stretches of one clone, in which there are no columns, come back.
  void to_axis() {
    const auto extra_of = [&](double column) {
      return extra_[static_cast<std::size_t>(std::clamp(column, 0.0, static_cast<double>(extra_.size()) - 1))];
    };
    for (laid_clone &clone : laid_) {
      clone.left += extra_of(std::floor(clone.left));
      clone.right += extra_of(std::ceil(clone.right) - 1);
    }
  }

private:
  // A column that a clone shows. By one band a clone may show several columns of like size: the innermost takes it, and
  // for those further out it tells nothing, since it would be there whether the clone covers them or not.
  struct shown_column {
    std::int32_t column;
    bool shares_a_band;
    bool tells_left, tells_right; // of an end to that side
  };
  void find_repeats(std::vector<shown_column> &shown) {
    const auto group_of = [&](std::int32_t k) {
      return map_.columns()[static_cast<std::size_t>(shown[static_cast<std::size_t>(k)].column)].group;
    };
    by_group_.clear();
    for (std::size_t k = 0; k < shown.size(); ++k)
      if (shown[k].shares_a_band)
        by_group_.push_back(static_cast<std::int32_t>(k));
    std::sort(by_group_.begin(), by_group_.end(), [&](std::int32_t a, std::int32_t b) {
      return group_of(a) != group_of(b) ? group_of(a) < group_of(b) : a < b;
    });
    for (std::size_t k = 1; k < by_group_.size(); ++k)
      if (group_of(by_group_[k - 1]) == group_of(by_group_[k])) {
        shown[static_cast<std::size_t>(by_group_[k - 1])].tells_left = false;
        shown[static_cast<std::size_t>(by_group_[k])].tells_right = false;
      }
  }
  std::ptrdiff_t first_shown(std::size_t i, std::int32_t column) const {
    return std::lower_bound(shown_[i].begin(), shown_[i].end(), column,
                            [](const shown_column &s, std::int32_t c) { return s.column < c; }) -
           shown_[i].begin();
  }

  double loose_bands(std::size_t i) const {
    const auto shown = map_.in_column(static_cast<std::int32_t>(i));
    return static_cast<double>(std::count(shown.begin(), shown.end(), 0));
  }
  double usual_loose_share() const {
    std::vector<double> shares;
    for (std::size_t i = 0; i < laid_.size(); ++i)
      if (const std::size_t n = map_.in_column(static_cast<std::int32_t>(i)).size(); n > 0)
        shares.push_back(loose_bands(i) / static_cast<double>(n));
    if (shares.empty())
      return 0;
    const auto middle = shares.begin() + static_cast<std::ptrdiff_t>(shares.size() / 2);
    std::nth_element(shares.begin(), middle, shares.end());
    return *middle;
  }

  // A column needs two clones: what the outermost has beyond the second is as long as its bands in no column are many,
  // without those that any clone has.
  void stick_out(std::size_t i, double usual_loose, double &left, double &right) const {
    const auto n = static_cast<double>(map_.columns().size());
    const bool at_left = left<0.5, at_right = right> n - 0.5;
    if ((!at_left && !at_right) || shown_[i].empty())
      return;
    const auto n_bands = static_cast<double>(map_.in_column(static_cast<std::int32_t>(i)).size());
    const double beyond = std::max(0.0, loose_bands(i) - usual_loose * n_bands);
    const double laid_left = std::max(0.0, -laid_[i].left), laid_right = std::max(0.0, laid_[i].right - n);
    const double of_left = !at_right                    ? 1
                           : !at_left                   ? 0
                           : laid_left + laid_right > 0 ? laid_left / (laid_left + laid_right)
                                                        : 0.5;
    if (at_left)
      left = -beyond * of_left;
    if (at_right)
      right = n + beyond * (1 - of_left);
  }

  // Stretches that one clone covers, or none: `laid_` ascends by left end here.
  void find_gaps() {
    const auto &columns = map_.columns();
    extra_.assign(std::max<std::size_t>(columns.size(), 1), 0);
    double farthest = -1e300, second = -1e300; // right ends so far
    for (const laid_clone &clone : laid_) {
      if (farthest > -1e300 && clone.left - second > longest_gap && second > -1e300) {
        const double middle = (second + clone.left) / 2;
        const auto at = std::lower_bound(columns.begin(), columns.end(), middle,
                                         [](const band_column &c, double x) { return c.place < x; });
        if (at != columns.begin() && at != columns.end()) // in whole bands, so that ends stay between columns
          extra_[static_cast<std::size_t>(at - columns.begin())] += std::round(clone.left - second);
      }
      if (clone.right > farthest) {
        second = farthest;
        farthest = clone.right;
      } else {
        second = std::max(second, clone.right);
      }
    }
    std::partial_sum(extra_.begin(), extra_.end(), extra_.begin());
  }

  // Cuts within reach of `end`, each scored by the columns between it and the clone's middle; their mean.
  double best_cut(std::size_t i, double end, double middle, double gain, double loss, bool is_left) const {
    const auto n = static_cast<std::int32_t>(map_.columns().size());
    const double reach = std::max(5.0, 18 * scale_.r);
    if (!shown_[i].empty()) // what sticks out covers at least the outermost column
      end = std::clamp(end, 0.0, static_cast<double>(n));
    std::int32_t low = static_cast<std::int32_t>(std::ceil(end - reach)),
                 high = static_cast<std::int32_t>(std::floor(end + reach));
    if (is_left)
      high = std::min(high, static_cast<std::int32_t>(middle));
    else
      low = std::max(low, static_cast<std::int32_t>(std::ceil(middle)));
    low = std::clamp(low, 0, n);
    high = std::clamp(high, 0, n);
    if (high <= low || (is_left ? end < 0 : end > n))
      return end; // no column can tell
    const auto evidence = [&](std::int32_t c) {
      const auto k = static_cast<std::size_t>(first_shown(i, c));
      if (k == shown_[i].size() || shown_[i][k].column != c)
        return -loss;
      return (is_left ? shown_[i][k].tells_left : shown_[i][k].tells_right) ? gain : 0.0;
    };
    thread_local std::vector<double> scores;
    scores.assign(static_cast<std::size_t>(high - low) + 1, 0);
    if (is_left)
      for (std::int32_t cut = high - 1; cut >= low; --cut)
        scores[static_cast<std::size_t>(cut - low)] = scores[static_cast<std::size_t>(cut - low) + 1] + evidence(cut);
    else
      for (std::int32_t cut = low + 1; cut <= high; ++cut)
        scores[static_cast<std::size_t>(cut - low)] =
            scores[static_cast<std::size_t>(cut - low) - 1] + evidence(cut - 1);
    const double best = *std::max_element(scores.begin(), scores.end());
    double sum = 0, weights = 0;
    for (std::size_t k = 0; k < scores.size(); ++k) {
      const double weight = std::exp(scores[k] - best);
      weights += weight;
      sum += weight * (low + static_cast<double>(k));
    }
    return sum / weights;
  }

  const band_scale &scale_;
  const band_columns &map_;
  std::vector<laid_clone> &laid_;
  std::vector<std::vector<shown_column>> shown_; // by clone, ascending
  std::vector<std::int32_t> by_group_;           // of the clone in hand
  std::vector<double> extra_;                    // by column: length of the gaps before it
};

} // namespace

void lay_by_columns(const band_scale &scale, std::vector<laid_clone> &laid, band_columns &columns,
                    const std::atomic<bool> &stopped) {
  column_chances chances;
  for (int pass = 0; pass < n_passes && !stopped; ++pass) {
    std::sort(laid.begin(), laid.end(), [](const laid_clone &a, const laid_clone &b) {
      return a.left != b.left ? a.left < b.left : a.clone < b.clone;
    });
    columns.make(laid, chances, stopped, pass > 0);
    if (stopped || columns.columns().size() < 2)
      break;
    end_finder ends(scale, columns, laid);
    ends.to_numbers();
    ends.find_ends(chances);
    chances.missing = std::clamp(ends.missing_share(), least_missing, most_missing);
    ends.to_axis();
  }
}

} // namespace orb
