// The consensus band map of a contig: one row of bands in which each clone is a stretch, made from the clones' bands
// alone; the clones in the order of the map; and the same on simulated clones, where the map is known.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "ordering/band_map_layout.h"
#include "ordering/band_map_order.h"
#include "ordering/class_map_of_bands3.h"
#include "ordering/square_array.h"

namespace orb {

// Bands of clones of a library, to be compared as its kind of bands is: bin numbers for equality, lengths within the
// tolerance. `lost`: share of the bands that clones are believed to miss.
band_map_clones band_map_clones_of(const class_DB_of_clones &database, const number_list &list,
                                   double lost = band_map_metric{}.lost);

struct band_map_options {
  std::int64_t steps = 300; // limit of the search for the order of the bands
  std::uint64_t seed = 1;
};

// Where the clones of a simulated library truly lie, and how they are read.
struct band_map_simulation {
  double coverage = 10; // clones over a point of the map
  double lost = 0.03;   // chance of a band to be missed
  double added = 0.03;  // false bands, as a share of a clone's bands
  double error = 5;     // largest, of a reading, in band units
  std::uint64_t seed = 1;
};

// A map and clones that were read from it.
struct simulated_band_map {
  std::vector<band_value> map;
  std::vector<std::int32_t> first, last; // of each clone on the map, from 0
};

// How well a map was found.
struct band_map_quality {
  double bands_found = 0;      // share of the true bands that clones show and that are in the map
  double bands_true = 0;       // share of the map's bands that are true
  double neighbours_right = 0; // share of neighbouring bands that don't lie in the wrong order: equal clones are ties
  double tau = 0;              // Kendall's, of the clones by their starts on the map
};

// Of the clones that have bands.
std::vector<std::int32_t> numbers_of_bands(const band_map_clones &clones);

class class_map_of_bands4 {
public:
  // A map with more bands keeps the order of its first building: a matrix over its bands would take too much memory.
  static constexpr std::int32_t most_bands_of_tour = 5000;

  class_map_of_bands4(process_frame &frame, band_map_options options) : frame_(frame), options_(options) {}

  // Files of the folder: test_band_frec_M_W.txt, band_dist.txt, band_map.txt, band_map_all_clones.txt. False after a
  // stop request: then there is no map.
  bool make_all_work(const band_map_clones &clones, const std::filesystem::path &folder);
  // Of these, those that this map was written to.
  std::vector<std::string> names_of_files() const;
  // The same without files.
  bool make_map(const band_map_clones &clones);

  std::span<const band_value> map() const { return map_; }
  // Of clone i, from 0, on the map.
  const class_map_of_bands3 &alignment(std::size_t i) const { return alignments_[i]; }
  // Places of the clones in the order of the map, from 0.
  const std::vector<std::int32_t> &order_of_clones() const { return order_; }

  // Aligns the clones to the map and orders them by the starts of their stretches; equal ones keep their order.
  void sort_clones_based_on_band_map(const band_map_clones &clones);
  void print_sorted_clones(const band_map_clones &clones, const std::filesystem::path &file) const;
  // band_map_and_clone_NAME.txt of the folder; returns its path.
  std::filesystem::path print_aligment_of_one_clone(const band_map_clones &clones, std::size_t i,
                                                    const std::filesystem::path &folder) const;

  // ---- simulation ----

  // Random bands in random order.
  static void simulate_band_map(std::int32_t n_bands, const band_map_metric &metric, random_source &chance,
                                std::vector<band_value> &map);
  // Ascending bands of the stretch [first, last], some lost, some added, all read with errors.
  static std::vector<band_value> simulate_read_clone_from_band_map(std::span<const band_value> map, std::int32_t first,
                                                                   std::int32_t last, const band_map_metric &metric,
                                                                   const band_map_simulation &wanted,
                                                                   random_source &chance);
  // Clones of the numbers of bands given, in random places and named by their numbers; the map is as long as the
  // coverage asks for.
  static simulated_band_map simulate_read_clones_from_band_map(std::span<const std::int32_t> numbers_of_bands,
                                                               const band_map_metric &metric,
                                                               const band_map_simulation &wanted,
                                                               band_map_clones &clones);
  // All of it, and a comparison with the truth in band_map_simulation.txt of the folder. False after a stop request.
  bool simulate_make_all_work(std::span<const std::int32_t> numbers_of_bands, const band_map_metric &metric,
                              const band_map_simulation &wanted, const std::filesystem::path &folder,
                              band_map_quality &quality);
  band_map_quality quality_against(const simulated_band_map &truth, const band_map_clones &clones) const;

private:
  void print_frequencies(const band_map_clones &clones, const std::filesystem::path &file) const;
  bool make_distances(const band_map_clones &clones, square_array<double> &distances) const;
  bool order_by_tour(square_array<double> &distances);
  bool print_distances(const square_array<double> &distances, const std::filesystem::path &file) const;
  void print_map(const std::filesystem::path &file) const;
  bool compute(const band_map_clones &clones, const std::filesystem::path *folder);

  process_frame &frame_;
  band_map_options options_;
  std::vector<band_of_map> bands_;       // of the map, in its order
  std::vector<clone_stretch> stretches_; // of the clones on it
  std::vector<band_value> map_;
  double unit_ = 1; // gel units a band value
  std::vector<class_map_of_bands3> alignments_;
  std::vector<std::int32_t> order_;
};

} // namespace orb
