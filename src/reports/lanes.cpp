#include "reports/lanes.h"

#include <algorithm>
#include <limits>
#include <tuple>

#include "metrics/band_merge.h"

namespace orb {

namespace {

// Places in both lists of each common pair, by the merge that counts common bands everywhere.
template <class take_pair> void walk_common(const lane &a, const lane &b, std::int32_t t, take_pair &&take) {
  std::vector<band_value> of_a, of_b;
  for (const lane_band &band : a.bands)
    of_a.push_back(band.size);
  for (const lane_band &band : b.bands)
    of_b.push_back(band.size);
  // equal bands of a list are taken in turn, so that the place is the next one of this size
  std::size_t i = 0, j = 0;
  merge_bands(of_a, of_b, t, [&](band_value in_a, band_value in_b) {
    while (of_a[i] != in_a)
      ++i;
    while (of_b[j] != in_b)
      ++j;
    take(i++, j++);
  });
}

} // namespace

std::vector<clone_number> order_of_lanes(std::vector<clone_number> clones, const class_FPCto_import *registry) {
  const auto key = [registry](clone_number clone) {
    constexpr cluster_id behind = std::numeric_limits<cluster_id>::max();
    const cluster_id id = registry == nullptr ? 0 : registry->clone_in_cluster_get(clone);
    if (id < 1)
      return std::tuple(behind, std::int64_t{0}, clone);
    return std::tuple(id, static_cast<std::int64_t>(registry->clone_coor_left(clone)), clone);
  };
  std::sort(clones.begin(), clones.end(), [&](clone_number a, clone_number b) { return key(a) < key(b); });
  clones.erase(std::unique(clones.begin(), clones.end()), clones.end());
  return clones;
}

lane_values lane_values_of(const class_DB_of_clones &database, const std::vector<clone_number> &clones,
                           const std::function<bool(clone_number, clone_number)> &overlap) {
  lane_values values;
  for (const clone_number clone : clones) {
    lane &made = values.lanes.emplace_back();
    made.clone = clone;
    made.name = database.name_of_clone_get(clone);
    for (const band_value size : database.bands_of_clone(clone)) {
      made.bands.push_back({size, false});
      values.largest = std::max(values.largest, size);
    }
  }
  const std::int32_t t = list_tolerance(database);
  for (std::size_t a = 0; a < values.lanes.size(); ++a)
    for (std::size_t b = a + 1; b < values.lanes.size(); ++b) {
      lane &first = values.lanes[a], &second = values.lanes[b];
      const bool explains = overlap(first.clone, second.clone);
      if (explains)
        first.has_neighbours = second.has_neighbours = true;
      if (!explains && b != a + 1)
        continue;
      walk_common(first, second, t, [&](std::size_t i, std::size_t j) {
        if (explains)
          first.bands[i].is_explained = second.bands[j].is_explained = true;
        if (b == a + 1)
          values.joins.push_back(
              {static_cast<std::int32_t>(a), static_cast<std::int32_t>(i), static_cast<std::int32_t>(j)});
      });
    }
  return values;
}

} // namespace orb
