// A map of bands against the one that its clones were simulated from.
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <map>
#include <numeric>

#include "frame/files.h"
#include "ordering/class_map_of_bands4.h"

namespace orb {

namespace {

// Which true band each band of the map is, by the readings of its clones: the one within the tolerance that most of
// them cover. -1: none that at least half of them cover.
std::int32_t true_band_of(const band_of_map &band, const simulated_band_map &truth, std::int32_t tolerance) {
  std::map<std::int32_t, std::int32_t> n_covering;
  for (const std::int32_t clone : band.clones)
    for (std::int32_t i = truth.first[static_cast<std::size_t>(clone)];
         i <= truth.last[static_cast<std::size_t>(clone)]; ++i)
      if (std::abs(truth.map[static_cast<std::size_t>(i)] - band.value) <= tolerance)
        ++n_covering[i];
  std::int32_t best = -1, most = 0;
  for (const auto &[i, n] : n_covering)
    if (n > most) {
      most = n;
      best = i;
    }
  return 2 * most >= static_cast<std::int32_t>(band.clones.size()) ? best : -1;
}

// Kendall's tau of the starts; pairs that are equal in either don't count.
double tau_of(const std::vector<std::int32_t> &a, const std::vector<std::int32_t> &b) {
  std::int64_t same = 0, all = 0;
  for (std::size_t i = 0; i < a.size(); ++i)
    for (std::size_t j = i + 1; j < a.size(); ++j)
      if (a[i] != a[j] && b[i] != b[j]) {
        ++all;
        same += (a[i] < a[j]) == (b[i] < b[j]) ? 1 : -1;
      }
  return all > 0 ? static_cast<double>(same) / static_cast<double>(all) : 1;
}

} // namespace

band_map_quality class_map_of_bands4::quality_against(const simulated_band_map &truth,
                                                      const band_map_clones &clones) const {
  // which clones cover each true band: bands between the same two ends are ties
  std::vector<std::int32_t> segment(truth.map.size() + 1, 0), depth(truth.map.size() + 1, 0);
  for (std::size_t c = 0; c < clones.count(); ++c) {
    segment[static_cast<std::size_t>(truth.first[c])] = segment[static_cast<std::size_t>(truth.last[c]) + 1] = 1;
    ++depth[static_cast<std::size_t>(truth.first[c])];
    --depth[static_cast<std::size_t>(truth.last[c]) + 1];
  }
  std::partial_sum(segment.begin(), segment.end(), segment.begin());
  std::partial_sum(depth.begin(), depth.end(), depth.begin());
  const auto n_shown = std::count_if(depth.begin(), depth.end() - 1, [](std::int32_t n) { return n > 0; });
  std::vector<std::int32_t> row, segments;
  std::vector<bool> is_found(truth.map.size(), false);
  for (const band_of_map &band : bands_)
    if (const std::int32_t i = true_band_of(band, truth, clones.metric.tolerance); i >= 0) {
      row.push_back(i);
      segments.push_back(segment[static_cast<std::size_t>(i)]);
      is_found[static_cast<std::size_t>(i)] = true;
    }
  std::vector<std::int32_t> places(segments.size());
  std::iota(places.begin(), places.end(), 0);
  const bool forward = tau_of(segments, places) >= 0;
  std::int64_t right = 0;
  for (std::size_t i = 1; i < segments.size(); ++i)
    right += forward ? segments[i - 1] <= segments[i] : segments[i - 1] >= segments[i];
  band_map_quality made;
  made.bands_found = n_shown > 0 ? double(std::count(is_found.begin(), is_found.end(), true)) / double(n_shown) : 1;
  made.bands_true = bands_.empty() ? 1 : double(row.size()) / double(bands_.size());
  made.neighbours_right = segments.size() > 1 ? double(right) / double(segments.size() - 1) : 1;
  std::vector<std::int32_t> starts;
  for (std::size_t c = 0; c < clones.count(); ++c)
    starts.push_back(alignments_[c].adres_start());
  std::vector<std::int32_t> true_starts = truth.first;
  if (!forward) // the map runs the other way
    for (std::size_t c = 0; c < clones.count(); ++c)
      true_starts[c] = -truth.last[c];
  made.tau = tau_of(true_starts, starts);
  return made;
}

bool class_map_of_bands4::simulate_make_all_work(std::span<const std::int32_t> numbers_of_bands,
                                                 const band_map_metric &metric, const band_map_simulation &wanted,
                                                 const std::filesystem::path &folder, band_map_quality &quality) {
  band_map_clones clones;
  const simulated_band_map truth = simulate_read_clones_from_band_map(numbers_of_bands, metric, wanted, clones);
  if (!make_all_work(clones, folder))
    return false;
  quality = quality_against(truth, clones);
  result_file file(folder / "band_map_simulation.txt");
  file.line(fmt::format("Length_of_Map\t{}\tsimulated\t{}", map_.size(), truth.map.size()));
  file.line(fmt::format("bands found\t{:.4f}\tbands true\t{:.4f}\tneighbours right\t{:.4f}\ttau\t{:.4f}",
                        quality.bands_found, quality.bands_true, quality.neighbours_right, quality.tau));
  file.line("c\tclone\tbands\tabsent\tfalse\tstart\tend\ttrue start\ttrue end");
  for (const std::int32_t place : order_) {
    const auto c = static_cast<std::size_t>(place);
    const class_map_of_bands3 &found = alignments_[c];
    file.line(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}", c + 1, clones.names[c], clones.bands[c].size(),
                          found.n_absent_bands_in_clone(), found.n_false_bands_in_clone(), found.adres_start(),
                          found.adres_end(), truth.first[c] + 1, truth.last[c] + 1));
  }
  file.commit();
  return true;
}

} // namespace orb
