// How far two readings of one band lie apart, from the fingerprints alone.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "database/class_DB_of_clones.h"

namespace orb {

// Where the bands of a library lie: the chance of finding one near another, whatever clones they are of.
class band_places {
public:
  explicit band_places(const class_DB_of_clones &database);
  // That another band lies within t of a band; 1 over it are the positions that bands take.
  double share_within(std::int32_t t) const;
  // That a band finds a match within t by chance, in n bands.
  double chance_of_match(std::int32_t t, double n) const;

private:
  std::vector<band_value> bands_; // ascending; a sample of a large library's
};

struct reading_spread {
  std::int32_t tolerance = 0;  // 0: the fingerprints don't tell
  double share_within = 0;     // of the readings of one band
  std::int32_t n_pairs = 0;    // of clones that were looked at
  std::int64_t n_readings = 0; // of one band in two clones, without those that lie near each other by chance
  bool of_one_name = false;    // the pairs are two fingerprints of one name; else clones that overlap strongly
};

// Asked between pieces of the work, some ten milliseconds each; what was found is of no use once it says no.
using asked_whether_to_go_on = std::function<bool()>;
inline bool always_on() {
  return true;
}

// Needs bands that are lengths; looks at no parameter of the library. Some million merges.
reading_spread spread_of_readings(const class_DB_of_clones &database,
                                  const asked_whether_to_go_on &goes_on = always_on);

// How many pairs of bands lie 0, 1, 2, ... units apart, of clones that are much alike and of strangers.
struct band_distances {
  explicit band_distances(std::int32_t most)
      : alike(static_cast<std::size_t>(most) + 1), strange(static_cast<std::size_t>(most) + 1) {}
  std::vector<std::int64_t> alike, strange;
};

// The smallest tolerance with nearly all that any tells about an overlap: a smaller one loses readings of one band, a
// larger one drowns them in chance. Strangers tell what chance gives near a band, by the second half of the distances
// how much of it there is among those alike. `n`: bands of a clone. 0: too few, or nothing above chance.
reading_spread tolerance_by_distances(const band_distances &distances, const band_places &places, double n);

// Clones that stand for a library of n where all pairs would be too many: each of these against all others.
std::vector<clone_number> clones_to_compare(std::int32_t n);

double median_of_band_counts(const class_DB_of_clones &database);

} // namespace orb
