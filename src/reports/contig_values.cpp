// What the map of a contig shows, from the map of all clones.
#include <algorithm>
#include <map>

#include "database/class_markers.h"
#include "reports/contig_layout.h"

namespace orb {

namespace {

double place_of_marker(const std::vector<const contig_bar *> &bars) {
  std::vector<std::int32_t> left, right;
  for (const contig_bar *bar : bars) {
    left.push_back(bar->left);
    right.push_back(bar->right);
  }
  const std::vector<depth_step> steps = depth_of(left, right);
  const std::int32_t most = largest_depth(steps);
  std::size_t i = 0;
  while (steps[i].depth != most)
    ++i;
  return (static_cast<double>(steps[i].from) + steps[i + 1].from) / 2;
}

void put_markers(const class_markers &markers, contig_values &values) {
  std::map<std::int32_t, std::vector<const contig_bar *>> bars_of_marker;
  for (const contig_bar &bar : values.bars)
    for (const std::int32_t marker : markers.markers_of_clone(bar.clone))
      bars_of_marker[marker].push_back(&bar);
  for (const auto &[marker, bars] : bars_of_marker)
    values.markers.push_back({markers.name_of_marker_get(marker), place_of_marker(bars)});
  std::stable_sort(values.markers.begin(), values.markers.end(),
                   [](const contig_marker &a, const contig_marker &b) { return a.at < b.at; });
}

} // namespace

contig_values contig_values_of(const class_DB_of_clones &database, const contig_map &map, std::size_t contig,
                               const std::vector<clone_number> &far) {
  contig_values values;
  values.name = map.contigs[contig].name;
  for (const clone_number clone : map.contigs[contig].clones) {
    const mapped_clone &from = map.clones[static_cast<std::size_t>(clone)];
    contig_bar &bar = values.bars.emplace_back();
    bar.clone = clone;
    bar.left = static_cast<std::int32_t>(from.left); // the map holds no coordinates above a thousand million
    bar.right = static_cast<std::int32_t>(from.right);
    bar.name = database.name_of_clone_get(clone);
    bar.place_on_path = from.place_on_path;
    bar.buried_in = from.buried_in;
    bar.is_Q = from.verdict == Q_verdict::Q_clone;
    bar.is_far = std::binary_search(far.begin(), far.end(), clone);
  }
  put_markers(database.markers(), values);
  return values;
}

} // namespace orb
