// The scale of a library, from its own fingerprints: how many positions bands really take, what is then chance, and how
// long an overlap is.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "database/class_DB_of_clones.h"

namespace orb {

// The bands of all clones, without a copy. The database must outlive it.
struct clone_bands {
  explicit clone_bands(const class_DB_of_clones &database);

  const class_DB_of_clones *database;
  std::int32_t n = 0; // clones 1..n
  std::int32_t t = 0; // tolerance of a match; 0: bin numbers compared for equality
  std::span<const band_value> of(clone_number clone) const { return database->bands_of_clone(clone); }
  std::int32_t count(clone_number clone) const { return database->number_of_bands_in_clone_get(clone); }
};

struct band_scale {
  static constexpr double shown_again = 0.94; // share of a clone's bands that an overlapping clone shows again

  double n_positions = 1; // that bands take; pairs of clones that share nothing tell it
  double cutoff = 0;      // score from which on a pair is an overlap: 0.1 false ones expected in the library
  double median_bands = 0;
  double r = 1, l = 1; // factors of tolerances and of lengths that hold for clones of 110 bands

  // Scores below the cutoff that count where something else speaks for the pair.
  double weak_cutoff() const { return cutoff - 1.5; }
  double linked_cutoff() const { return std::max(4.0, cutoff - 2.5); }

  // That a given band finds a match by chance in n bands.
  double chance_of_match(double n) const { return 1 - std::pow(1 - 1 / n_positions, n); }
  // -log10 of the chance of k or more common bands.
  double score(std::int32_t k, std::int32_t n_1, std::int32_t n_2) const;
  // Bands in the common stretch of two clones, without those that match by chance; at most all of either.
  double overlap(std::int32_t k, std::int32_t n_1, std::int32_t n_2) const;
};

// `seed`: for the pairs that are drawn. Linear in the drawn pairs, whatever the library's size.
band_scale band_scale_of(const clone_bands &clones, std::uint64_t seed);

// As the parameters of a library and of a net take them: whole positions, and the lowest score that a layout looks at.
std::int32_t positions_of_library(const band_scale &scale);
double cutoff_of_net(const band_scale &scale);

// The least number of common bands at which two clones of given sizes reach a score.
class least_common_table {
public:
  // For sizes that occur in the library.
  least_common_table(const clone_bands &clones, const band_scale &scale, double cutoff);
  std::int32_t operator()(std::int32_t n_1, std::int32_t n_2) const {
    return table_[static_cast<std::size_t>(n_1) * width_ + static_cast<std::size_t>(n_2)];
  }

private:
  std::size_t width_ = 0;
  std::vector<std::int16_t> table_;
};

} // namespace orb
