// The older way to a map of bands: group by group, from the clones in an order that is given. Bands of a group lie in
// no known order; where a clone begins inside a group it cuts it in two.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "frame/process_frame.h"
#include "ordering/band_map_layout.h"
#include "ordering/class_map_of_bands3.h"

namespace orb {

class class_map_of_bands1 {
public:
  class_map_of_bands1(process_frame &frame, const band_map_metric &metric) : frame_(frame), metric_(metric) {}

  // ---- the map: groups from 1, band addresses from 1 ----
  const number_list &list_of_bands() const { return list_of_bands_; }
  std::int32_t n_groups() const { return static_cast<std::int32_t>(group_start_.size()) - 2; }
  std::int32_t group_start(std::int32_t group) const { return group_start_[static_cast<std::size_t>(group)]; }
  std::int32_t n_clones() const { return static_cast<std::int32_t>(clone_borders_[0].size()) - 1; }
  // Address of the first (end 0) and the last (end 1) band of the clone's part; 0: it has none.
  std::int32_t clone_borders(std::size_t end, std::int32_t clone) const {
    return clone_borders_[end][static_cast<std::size_t>(clone)];
  }

  // One group of these bands; no clones.
  void inicialize_map_of_bands_FPC(const number_list &list);
  // False, after a message, for a group that isn't there.
  bool read_ListOfBands_from_map_of_bands(number_list &bands, std::int32_t group) const;
  // A new group: side 2 at the right; every other value at the left, where all addresses move up.
  void add_ListOfBands_to_side_of_map_of_bands(const number_list &bands, int side);

  // How a clone fits the groups first..last: bands of the map that it has and lacks, inside and outside of them, and
  // its own bands that are inside and that aren't.
  struct position_quality {
    std::int32_t n_matches_inside = 0, n_misses_inside = 0, n_matches_outside = 0, n_misses_outside = 0;
    number_list matched, unmatched;
  };
  position_quality position_of_clone_quality(std::span<const band_value> clone, std::int32_t first,
                                             std::int32_t last) const;
  // The groups that the clone most likely covers: the logarithms of how much likelier its bands are inside than outside
  // are summed over the groups, and the run of groups of best sum counts, the first of equals. Score 0 and no groups
  // where none speaks for it.
  best_stretch find_best_position_for_clone_in_CB_map(std::span<const band_value> clone) const;
  // The same among the runs that reach the right end.
  best_stretch find_best_position_in_right_tail(std::span<const band_value> clone) const;
  // Lays the clone over the right end: cuts the first group that it covers into bands that it lacks and bands that it
  // has, and what it has besides becomes a group at the right.
  void add_clone_to_right_tail_of_CB_map(std::span<const band_value> clone);

  // ---- all clones, in the order in which they come ----
  void creation_of_initial_map_of_bands(const band_map_clones &clones);
  void creation_of_initial_borders(const band_map_clones &clones);
  void creation_of_x_clone_border(std::int32_t clone, std::span<const band_value> bands);
  // Whether no run of groups fits the clone better than the one between its borders.
  bool control_of_x_clone_border(std::int32_t clone, std::span<const band_value> bands) const;
  // group, band; then the clones with their borders.
  void print(const band_map_clones &clones, const std::filesystem::path &file) const;

private:
  std::vector<double> scores_of_groups(std::span<const band_value> clone) const;
  bool has(std::span<const band_value> clone, band_value band) const;
  void cut_group(std::int32_t group, std::span<const band_value> clone);

  process_frame &frame_;
  band_map_metric metric_;
  number_list list_of_bands_;
  std::vector<std::int32_t> group_start_{0, 1};                        // 1..n_groups + 1
  std::array<std::vector<std::int32_t>, 2> clone_borders_{{{0}, {0}}}; // from 1
};

} // namespace orb
