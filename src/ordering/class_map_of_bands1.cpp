#include "ordering/class_map_of_bands1.h"

#include <algorithm>

#include "frame/files.h"

namespace orb {

void class_map_of_bands1::inicialize_map_of_bands_FPC(const number_list &list) {
  list_of_bands_ = list;
  group_start_ = {0, 1};
  if (!list.empty())
    group_start_.push_back(list.count() + 1);
  clone_borders_ = {{{0}, {0}}};
}

bool class_map_of_bands1::read_ListOfBands_from_map_of_bands(number_list &bands, std::int32_t group) const {
  if (group < 1 || group > n_groups()) {
    frame_.message("Group is not exist!");
    return false;
  }
  bands.clear();
  for (std::int32_t i = group_start(group); i < group_start(group + 1); ++i)
    bands.add(list_of_bands_(i));
  return true;
}

void class_map_of_bands1::add_ListOfBands_to_side_of_map_of_bands(const number_list &bands, int side) {
  const std::int32_t n = bands.count();
  if (side == 2) {
    for (const band_value band : bands.members())
      list_of_bands_.add(band);
    group_start_.push_back(list_of_bands_.count() + 1);
    return;
  }
  number_list joined = bands;
  for (const band_value band : list_of_bands_.members())
    joined.add(band);
  list_of_bands_ = std::move(joined);
  for (std::size_t g = 1; g < group_start_.size(); ++g)
    group_start_[g] += n;
  group_start_.insert(group_start_.begin() + 1, 1);
  for (auto &borders : clone_borders_)
    for (std::int32_t &border : borders)
      border += border > 0 ? n : 0;
}

bool class_map_of_bands1::has(std::span<const band_value> clone, band_value band) const {
  const auto at = std::lower_bound(clone.begin(), clone.end(), band - metric_.tolerance);
  return at != clone.end() && *at <= band + metric_.tolerance;
}

class_map_of_bands1::position_quality class_map_of_bands1::position_of_clone_quality(std::span<const band_value> clone,
                                                                                     std::int32_t first,
                                                                                     std::int32_t last) const {
  position_quality made;
  std::vector<band_value> inside;
  for (std::int32_t group = 1; group <= n_groups(); ++group) {
    const bool is_inside = first <= group && group <= last;
    for (std::int32_t i = group_start(group); i < group_start(group + 1); ++i) {
      const bool is_match = has(clone, list_of_bands_(i));
      ++(is_inside ? (is_match ? made.n_matches_inside : made.n_misses_inside)
                   : (is_match ? made.n_matches_outside : made.n_misses_outside));
      if (is_inside)
        inside.push_back(list_of_bands_(i));
    }
  }
  std::sort(inside.begin(), inside.end());
  for (const band_value band : clone)
    (has(inside, band) ? made.matched : made.unmatched).add(band);
  return made;
}

std::vector<double> class_map_of_bands1::scores_of_groups(std::span<const band_value> clone) const {
  const band_map_weights weights(metric_, static_cast<double>(clone.size()));
  std::vector<double> scores;
  for (std::int32_t group = 1; group <= n_groups(); ++group) {
    double score = 0;
    for (std::int32_t i = group_start(group); i < group_start(group + 1); ++i)
      score += has(clone, list_of_bands_(i)) ? weights.present : weights.absent;
    scores.push_back(score);
  }
  return scores;
}

best_stretch class_map_of_bands1::find_best_position_for_clone_in_CB_map(std::span<const band_value> clone) const {
  const best_stretch best = best_stretch_of(scores_of_groups(clone), 1);
  return best.score > 0 ? best : best_stretch{};
}

// A group that the clone covers in part speaks for it by the bands that it has: those that it lacks are cut off.
best_stretch class_map_of_bands1::find_best_position_in_right_tail(std::span<const band_value> clone) const {
  const std::vector<double> scores = scores_of_groups(clone);
  const band_map_weights weights(metric_, static_cast<double>(clone.size()));
  best_stretch best;
  double sum = 0;
  for (std::int32_t group = n_groups(); group >= 1; --group) {
    std::int32_t n_having = 0;
    for (std::int32_t i = group_start(group); i < group_start(group + 1); ++i)
      n_having += has(clone, list_of_bands_(i)) ? 1 : 0;
    if (const double cut = sum + n_having * weights.present; n_having > 0 && cut > best.score)
      best = {group, n_groups(), cut};
    sum += scores[static_cast<std::size_t>(group) - 1];
  }
  return best;
}

void class_map_of_bands1::cut_group(std::int32_t group, std::span<const band_value> clone) {
  const auto bands = list_of_bands_.members();
  const auto begin = bands.begin() + group_start(group) - 1, end = bands.begin() + group_start(group + 1) - 1;
  const auto middle = std::stable_partition(begin, end, [&](band_value band) { return !has(clone, band); });
  if (middle != begin && middle != end)
    group_start_.insert(group_start_.begin() + group + 1, static_cast<std::int32_t>(middle - bands.begin()) + 1);
}

void class_map_of_bands1::add_clone_to_right_tail_of_CB_map(std::span<const band_value> clone) {
  const best_stretch place = find_best_position_in_right_tail(clone);
  number_list besides(clone);
  if (place.first > 0) {
    besides = position_of_clone_quality(clone, place.first, place.last).unmatched;
    cut_group(place.first, clone);
  }
  if (!besides.empty())
    add_ListOfBands_to_side_of_map_of_bands(besides, 2);
}

void class_map_of_bands1::creation_of_initial_map_of_bands(const band_map_clones &clones) {
  inicialize_map_of_bands_FPC({});
  for (const auto &bands : clones.bands)
    add_clone_to_right_tail_of_CB_map(bands);
}

void class_map_of_bands1::creation_of_initial_borders(const band_map_clones &clones) {
  for (auto &borders : clone_borders_)
    borders.assign(clones.count() + 1, 0);
  for (std::size_t c = 0; c < clones.count(); ++c)
    creation_of_x_clone_border(static_cast<std::int32_t>(c) + 1, clones.bands[c]);
}

void class_map_of_bands1::creation_of_x_clone_border(std::int32_t clone, std::span<const band_value> bands) {
  const best_stretch place = find_best_position_for_clone_in_CB_map(bands);
  clone_borders_[0][static_cast<std::size_t>(clone)] = place.first > 0 ? group_start(place.first) : 0;
  clone_borders_[1][static_cast<std::size_t>(clone)] = place.first > 0 ? group_start(place.last + 1) - 1 : 0;
}

bool class_map_of_bands1::control_of_x_clone_border(std::int32_t clone, std::span<const band_value> bands) const {
  const best_stretch place = find_best_position_for_clone_in_CB_map(bands);
  return place.first == 0 ? clone_borders(0, clone) == 0
                          : clone_borders(0, clone) == group_start(place.first) &&
                                clone_borders(1, clone) == group_start(place.last + 1) - 1;
}

void class_map_of_bands1::print(const band_map_clones &clones, const std::filesystem::path &path) const {
  result_file file(path);
  file.line("group\tb\tband");
  for (std::int32_t group = 1; group <= n_groups(); ++group)
    for (std::int32_t i = group_start(group); i < group_start(group + 1); ++i)
      file.line(std::to_string(group) + "\t" + std::to_string(i) + "\t" + std::to_string(list_of_bands_(i)));
  file.line("clone\tstart\tend");
  for (std::int32_t c = 1; c <= n_clones(); ++c)
    file.line(clones.names[static_cast<std::size_t>(c) - 1] + "\t" + std::to_string(clone_borders(0, c)) + "\t" +
              std::to_string(clone_borders(1, c)));
  file.commit();
}

} // namespace orb
