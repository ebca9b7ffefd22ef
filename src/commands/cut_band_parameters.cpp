#include "commands/cut_band_parameters.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include "database/band_statistics.h"
#include "frame/numbers.h"

namespace orb {

namespace {

double length_of_gel(const band_parameters &p) {
  return p.is_agarose() ? class_Simul_CutEnzyme::length_of_agarose : 3.0 * p.window() + p.longest() * p.units_a_bp();
}

} // namespace

std::string by_gel(double capillary, double agarose) {
  return number_text_shortest(capillary) + ", agarose " + number_text_shortest(agarose);
}

void describe_bands(parameter_list &list, band_parameters &p) {
  const char *group = "Bands";
  list.add("gel", p.gel, "sizes of labelled fragments of five enzymes, or positions of HindIII fragments on agarose")
      .one_of({"capillary", "agarose"})
      .in_group(group);
  list.add("min-band-length", p.min_length, "shortest band seen, base pairs")
      .limits(1, 1e6)
      .unset(by_gel(on_capillaries.min_length, on_agarose.min_length))
      .in_group(group);
  list.add("max-band-length", p.max_length, "longest band seen, base pairs")
      .limits(1, 1e5)
      .unset(by_gel(on_capillaries.max_length, on_agarose.max_length))
      .in_group(group);
  list.add("scale", p.scale, "gel units a base pair").limits(0.001, 1e6).unset_is(usual_scale).in_group(group);
  list.add("shift", p.shift, "gel units between the windows of two colours")
      .limits(1, 3e6)
      .unset_is(usual_shift)
      .in_group(group);
  list.add("merge", p.merge, "bands so close show as one, gel units")
      .limits(0, 1e6)
      .unset(by_gel(on_capillaries.merge, on_agarose.merge))
      .in_group(group);
}

void describe_reading(parameter_list &list, band_parameters &p) {
  const char *group = "Bands";
  list.add("error", p.error,
           "largest error of nine readings in ten, base pairs, on agarose gel units; three times it in the tenth")
      .limits(0, 1000)
      .unset(by_gel(on_capillaries.error, on_agarose.error))
      .in_group(group);
  list.add("lost", p.lost, "chance of a band to be missed").limits(0, 1).in_group(group);
}

void check_bands(const band_parameters &p) {
  if (p.is_agarose() && (p.scale || p.shift))
    throw usage_error("--scale and --shift belong to --gel capillary");
  if (p.shortest() >= p.longest())
    throw usage_error("--min-band-length must be below --max-band-length");
  if (length_of_gel(p) > LARGEST_band_axis)
    throw usage_error("--shift, --scale and --max-band-length make a gel longer than 10000000 units");
}

void apply_bands(const band_parameters &p, class_Simul_CutEnzyme &bands) {
  if (p.is_agarose())
    bands.start_for_agarose();
  bands.max_error_in_band_size_scoring_set(p.largest_error());
  bands.probability_to_miss_band_set(p.lost);
  bands.min_band_length_set(p.shortest());
  if (p.longest() != bands.max_band_length_get())
    bands.max_band_length_set(p.longest());
  bands.scale_set(p.units_a_bp());
  bands.merge_distance_set(p.merge_distance());
  bands.shift_of_scaled_bands_set(p.window());
}

void put_bands(const band_parameters &p, command_result &result) {
  result.parameter("gel", p.gel);
  result.parameter("min_band_length", p.shortest());
  result.parameter("max_band_length", p.longest());
  if (!p.is_agarose()) {
    result.parameter("scale", p.units_a_bp());
    result.parameter("shift", p.window());
  }
  result.parameter("merge", p.merge_distance());
}

void warn_of_colours(process_frame &frame, const band_parameters &p) {
  if (!p.is_agarose() && (p.longest() - p.shortest()) * p.units_a_bp() > p.window())
    frame.warn("The windows of the colours overlap: bands of two colours can merge. A larger --shift or a smaller "
               "--scale sets them apart.");
}

std::string options_of_assembly(const band_parameters &p) {
  const library_parameters standard;
  const auto tolerance =
      static_cast<std::int32_t>(std::lround(2 * p.largest_error() * (p.is_agarose() ? 1 : p.units_a_bp())));
  const double gel_length = std::ceil(length_of_gel(p));
  const double places = p.is_agarose() ? gel_length : 4 * (p.longest() - p.shortest()) * p.units_a_bp();
  const auto n_bands = static_cast<std::int32_t>(std::max(1.0, std::round(places / std::max(2 * tolerance, 1))));
  std::string text;
  if (tolerance != standard.tolerance)
    text += fmt::format(" --tolerance {}", tolerance);
  if (gel_length != standard.gel_length)
    text += " --gel-length " + number_text_shortest(gel_length);
  if (n_bands != standard.n_bands)
    text += fmt::format(" --n-bands {}", n_bands);
  return text;
}

} // namespace orb
