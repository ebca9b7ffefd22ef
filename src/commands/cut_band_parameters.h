// How bands are cut and read by the commands of simulation: what of them can be asked for, and what holds else.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "commands/command_row.h"
#include "simulation/class_simul_clones.h"

namespace orb {

// What holds where nothing else is asked for.
struct kind_of_gel {
  double min_length, max_length; // base pairs
  double merge;                  // gel units
  double error;                  // base pairs; on agarose gel units
  std::int32_t min_bands;        // of a clone that is kept
};
inline constexpr double usual_scale = 30;
inline constexpr std::int32_t usual_shift = 15000;
inline constexpr kind_of_gel on_capillaries{50, 500, 12, 0.2, 50}, on_agarose{600, 30000, 7, 3.5, 15};

struct band_parameters {
  std::string gel = "capillary";                              // or "agarose"
  std::optional<double> min_length, max_length, merge, error; // unset: by the gel
  std::optional<double> scale;                                // of capillaries, gel units a base pair
  std::optional<std::int32_t> shift;                          // of capillaries, gel units
  double lost = 0;

  bool is_agarose() const { return gel == "agarose"; }
  // As given, else as is usual for the gel.
  const kind_of_gel &usual() const { return is_agarose() ? on_agarose : on_capillaries; }
  double shortest() const { return min_length.value_or(usual().min_length); }
  double longest() const { return max_length.value_or(usual().max_length); }
  double merge_distance() const { return merge.value_or(usual().merge); }
  double largest_error() const { return error.value_or(usual().error); }
  double units_a_bp() const { return scale.value_or(usual_scale); }
  std::int32_t window() const { return shift.value_or(usual_shift); }
};

// The default of both gels, as the help shows it.
std::string by_gel(double capillary, double agarose);

void describe_bands(parameter_list &list, band_parameters &p);
// The errors of readings, which a library has and a digest hasn't.
void describe_reading(parameter_list &list, band_parameters &p);
void check_bands(const band_parameters &p);

void apply_bands(const band_parameters &p, class_Simul_CutEnzyme &bands);
void put_bands(const band_parameters &p, command_result &result);
void warn_of_colours(process_frame &frame, const band_parameters &p);
// What an assembly has to be told about such bands, where it isn't the default.
std::string options_of_assembly(const band_parameters &p);

} // namespace orb
