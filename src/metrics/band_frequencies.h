// Where the weights of bands come from: the frequencies of the library, or its class frequencies.
#pragma once

#include <cmath>

#include "database/class_usable_values.h"
#include "metrics/band_merge.h"

namespace orb {

class band_frequencies {
public:
  // `classes`: reads the class frequencies in place of the real ones, as the swap of both would, without touching the
  // database that other threads read. Null: the real ones.
  explicit band_frequencies(const class_DB_of_clones &database, const class_usable_values *classes = nullptr)
      : database_(database), classes_(classes), bins_(database.index_of_band_type_get() != 0),
        tolerance_(list_tolerance(database)) {}
  // With another tolerance than the database's, which other threads read meanwhile.
  band_frequencies(const class_DB_of_clones &database, const class_usable_values *classes, std::int32_t tolerance,
                   bool bins)
      : database_(database), classes_(classes), bins_(bins), tolerance_(bins ? 0 : tolerance) {}

  // 0 for a band that the statistics don't know.
  double of_band(band_value band) const {
    const auto &real = database_.frecuency_of_band_in_clones_array();
    if (band < 0 || static_cast<std::size_t>(band) >= real.size())
      return 0;
    // the swap covers 1..N only
    const bool in_classes = classes_ != nullptr && band >= 1 && band <= database_.total_number_of_different_bands_get();
    return in_classes ? classes_->band_frec_buffer_get(band) : real[static_cast<std::size_t>(band)];
  }
  // The frequency of two similar bands: the larger one; that of band 1 for bin numbers, where both are the same band.
  double of_pair(band_value band_1, band_value band_2) const {
    const double f1 = of_band(band_1);
    if (bins_)
      return f1;
    const double f2 = of_band(band_2);
    return f1 < f2 ? f2 : f1;
  }
  // -ln f. Throws zero_frequency when f isn't above 0.
  static double weight(double f) {
    if (!(f > 0))
      throw zero_frequency();
    return -std::log(f);
  }
  double weight_of_list(std::span<const band_value> list) const {
    double sum = 0;
    for (const band_value band : list)
      sum += weight(of_band(band));
    return sum;
  }
  // Common bands k of two lists and their weight.
  void weighted_common(std::span<const band_value> list_1, std::span<const band_value> list_2, double &k,
                       double &weighted_k) const {
    k = weighted_k = 0;
    merge_bands(list_1, list_2, tolerance_, [&](band_value a, band_value b) {
      k += 1;
      weighted_k += weight(of_pair(a, b));
    });
  }

private:
  const class_DB_of_clones &database_;
  const class_usable_values *classes_;
  bool bins_;              // bands are numbers of bins
  std::int32_t tolerance_; // of lists
};

} // namespace orb
