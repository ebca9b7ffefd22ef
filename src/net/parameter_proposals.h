// Parameters of a library and of its overlaps, proposed from the fingerprints alone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "database/class_DB_of_clones.h"
#include "database/library_parameters.h"
#include "net/reading_spread.h"

namespace orb {

enum class certainty { well, fairly, hardly };
const char *word_of(certainty how_sure);

struct proposal {
  double value = 0;
  int decimals = 0; // that are worth showing
  certainty how_sure = certainty::hardly;
  std::string reason;
};

struct parameter_proposals {
  std::optional<proposal> preset;    // the known kind of data that the rest is like
  std::optional<proposal> tolerance; // nothing where the bands are numbers of bins: these were made by one
  std::optional<proposal> gel_length;
  proposal n_bands;              // positions that bands take
  proposal cutoff;               // of Sulston_1988 with these positions
  proposal additional_cutoff;    // of a revision with them
  proposal step;                 // by which contigs raise the cutoff
  proposal least_overlap;        // seen at the cutoff, share of a clone in percent
  std::optional<proposal> depth; // how often clones cover the genome
};

// What is settled already, so that the rest has to fit it.
struct settled_parameters {
  std::optional<std::int32_t> tolerance, n_bands;
};

// Looks at the bands and their kind only, not at the parameters that the library was loaded with. Seconds for any
// library.
parameter_proposals proposals_of(const class_DB_of_clones &database, const settled_parameters &settled = {},
                                 const asked_whether_to_go_on &goes_on = always_on);

// In the proportion of the standard ones: where scores are lower in all, so are those that stand far above the cutoff.
double additional_cutoff_for(double cutoff);
// From level to level of contigs: a score by fewer positions rises less by a common band, and a step has to be worth as
// many bands as the usual one is by the positions usual for such a gel. A larger one cuts good contigs, a smaller one
// leaves false joins together.
double cutoff_step_for(double cutoff, const library_parameters &fields, double median_bands);

// The shortest known gel that holds a band, else one in whole thousands.
double gel_length_for(double largest_band);

} // namespace orb
