#include "pools/class_pools3D.h"

#include <algorithm>
#include <cmath>

#include "frame/class_math1.h"

namespace orb {

void class_pools3D::start(const pool_sizes &sizes) {
  sizes_ = sizes;
  clone_in_pool_.assign(
      static_cast<std::size_t>(sizes[0]) * static_cast<std::size_t>(sizes[1]) * static_cast<std::size_t>(sizes[2]), -1);
  coordinates_.assign(1, {});
  pool_error_rates_set(standard_error_rate_1, standard_error_rate_2);
}

void class_pools3D::put_clone(clone_number clone, const pool_place &place) {
  ++n_coded_clones_;
  clone_in_pool_[place_of_well(place)] = clone;
  coordinates_.push_back(place);
  if (index_of_clone_.size() <= static_cast<std::size_t>(clone))
    index_of_clone_.resize(static_cast<std::size_t>(clone) + 1, 0);
  index_of_clone_[static_cast<std::size_t>(clone)] = n_coded_clones_;
  coded_clones_.add(clone);
}

void class_pools3D::finish() {
  class_math1::sort_list_of_long_and_delete_repeats(coded_clones_);
}

void class_pools3D::pool_error_rates_set(double row_1, double row_2) {
  for (std::size_t d = 0; d < n_pool_dimensions; ++d) {
    error_rates_[0][d].assign(static_cast<std::size_t>(sizes_[d]) + 1, row_1);
    error_rates_[1][d].assign(static_cast<std::size_t>(sizes_[d]) + 1, row_2);
  }
}

bool class_pools3D::find_clone_in_pools(clone_number clone, pool_place &place) const {
  if (clone < 1 || static_cast<std::size_t>(clone) >= index_of_clone_.size())
    return false;
  const std::int32_t k = index_of_clone_[static_cast<std::size_t>(clone)];
  if (k > 0)
    place = coordinates_[static_cast<std::size_t>(k)];
  return k > 0;
}

std::string class_pools3D::position_of_clone_in_pools_text_get(clone_number clone) const {
  pool_place place;
  if (!find_clone_in_pools(clone, place))
    return "no";
  return name_of_pool(pool_plates, place[0]) + "_" + name_of_pool(pool_rows, place[1]) +
         name_of_pool(pool_columns, place[2]);
}

// ---- positive pools ----

void class_pools3D::create_list_of_clones_in_pool_intersections(const pool_lists &lists, number_list &clones) const {
  clones.clear();
  if (!is_loaded())
    return;
  for (const std::int32_t plate : lists[pool_plates].members())
    for (const std::int32_t row : lists[pool_rows].members())
      for (const std::int32_t column : lists[pool_columns].members())
        if (const clone_number clone = clone_in_pool(column, row, plate); clone >= 1)
          clones.add(clone);
}

void class_pools3D::create_list_of_clones_in_positive_pools(const positive_pools &positive, number_list &clones) const {
  clones.clear();
  pool_place place;
  for (const clone_number clone : coded_clones_.members())
    if (find_clone_in_pools(clone, place) && positive.n_of(place) == n_pool_dimensions)
      clones.add(clone);
}

bool class_pools3D::find_list_of_clones_in_pools(const pool_lists &lists, std::span<const clone_number> clones,
                                                 positive_pools &covered) const {
  const positive_pools listed(sizes_, lists);
  covered = positive_pools(sizes_);
  pool_place place;
  for (const clone_number clone : clones)
    if (find_clone_in_pools(clone, place) && listed.n_of(place) == n_pool_dimensions)
      for (std::size_t d = 0; d < n_pool_dimensions; ++d)
        covered.set(d, place[d]);
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    for (const std::int32_t pool : lists[d].members())
      if (!covered.has(d, pool))
        return false;
  return true;
}

class_pools3D::pool_counts class_pools3D::counts_of(std::span<const clone_number> clones) const {
  pool_counts counts;
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    counts[d].assign(static_cast<std::size_t>(sizes_[d]) + 1, 0);
  pool_place place;
  for (const clone_number clone : clones)
    if (find_clone_in_pools(clone, place))
      for (std::size_t d = 0; d < n_pool_dimensions; ++d)
        ++counts[d][static_cast<std::size_t>(place[d])];
  return counts;
}

std::string class_pools3D::text_of_unexplained_pools(std::span<const clone_number> clones,
                                                     const positive_pools &positive) const {
  const pool_counts counts = counts_of(clones);
  std::string text;
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    for (std::int32_t pool = 1; pool <= sizes_[d]; ++pool) {
      const bool has_clone = counts[d][static_cast<std::size_t>(pool)] > 0;
      if (has_clone == positive.has(d, pool))
        continue;
      text += text.empty() ? "" : " ";
      text += has_clone ? "(" + name_of_pool(d, pool) + ")" : name_of_pool(d, pool);
    }
  return text.empty() ? "all positive pools are explained" : text;
}

void class_pools3D::putatively_positive_clones_based_on_likelyhood(std::span<const clone_number> clones,
                                                                   const positive_pools &positive, double &score,
                                                                   bool &exact, bool &all_explained) const {
  const pool_counts counts = counts_of(clones);
  const auto n = static_cast<double>(clones.size());
  score = 0;
  exact = all_explained = true;
  for (std::size_t d = 0; d < n_pool_dimensions; ++d)
    for (std::int32_t pool = 1; pool <= sizes_[d]; ++pool) {
      const double c = counts[d][static_cast<std::size_t>(pool)];
      const bool is_positive = positive.has(d, pool);
      exact = exact && (c >= 1) == is_positive;
      all_explained = all_explained && (c >= 1 || !is_positive);
      const double stays_negative =
          std::pow(pool_error_rate(1, d, pool), c) * std::pow(1 - pool_error_rate(2, d, pool), std::max(n - c, 0.0));
      score -= std::log(is_positive ? 1 - stays_negative : stays_negative);
    }
}

} // namespace orb
