// Random clones with the band frequencies of a library: what the probability of common bands by chance is estimated
// from. Bands are the positions 1..N_bands_Sulston of the FPC scores, and two bands are common when they are equal.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "database/class_clone_serv.h"
#include "database/library_parameters.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"

namespace orb {

struct form_simul_1;

// A kind of laboratory data of which the parameters are known.
struct known_problem {
  library_parameters parameters;
  std::int16_t further_settings = 0; // goes to two more fields of the panel; 0 where the problem has none
};

class class_clone_simul {
public:
  // Weights of the bands by `kind`: 0 all equal; 1 the share of the band among all bands of the library; 2 the chance
  // at which as many draws as a clone has bands on average show the band as often as the library does. O(bands of the
  // library). In a library without clones the frequencies are those set in the database by hand.
  void create_distribution_function(process_frame &frame, const class_DB_of_clones &database, int kind);

  std::int32_t n_bands_get() const { return n_bands_; }
  // How many different bands can be drawn: all with `equal`, otherwise those with a weight.
  std::int32_t n_drawable_get(bool equal) const { return equal ? n_bands_ : n_weighted_; }
  // -ln f, 0 for a band of frequency 0. f counts bands, so that it may be above 1 and the weight below 0.
  double band_log_weight_get(std::int32_t band) const { return band_log_weight_[static_cast<std::size_t>(band)]; }
  // Element 0 is 0, element n_bands 1, or all are 0 when no band has a weight.
  const std::vector<double> &band_cumulative_get() const { return band_cumulative_; }

  // A band, 1..n_bands. O(1) on average.
  std::int32_t random_band(bool equal, random_source &chance) const;

  // Work space of the pair routine, one a thread: all states are 0 between calls.
  struct band_states {
    std::vector<std::uint8_t> state;
    std::vector<std::int32_t> drawn;
  };
  // Draws a pair of clones of n1 and n2 different bands, neither above n_drawable_get(equal): k common bands, and x_fr
  // the sum of their -ln f. Costs the draws: the one array of states is cleared by the drawn bands only.
  void create_single_pair_of_clones_and_characterize_overlap_fast(std::int32_t n1, std::int32_t n2,
                                                                  std::int32_t n_bands, bool equal, std::int32_t &k,
                                                                  double &x_fr, band_states &states,
                                                                  random_source &chance) const;

  // Clones as wholes; lists are ascending.
  // Each band enters with its frequency.
  void create_random_clone(number_list &list, random_source &chance) const;
  // n different values of 1..max; all of them when n is larger.
  static void create_iid_clone_of_fixed_length(std::int32_t n, std::int32_t max, number_list &list,
                                               random_source &chance);
  // The one of 20 random clones whose size is nearest to n; it loses or gains the bands that are too many or missing.
  // n above the number of positions gives all.
  void create_clone_of_fixed_length(std::int32_t n, number_list &list, random_source &chance) const;
  // n different draws of `random_band` as flags 1..n_bands; at most as many as can be drawn.
  void create_clone_of_fixed_length_new(std::int32_t n, bool equal, class_clone_serv::band_presence &presence,
                                        random_source &chance) const;

  // The known problems, 1..known_problem_n_get().
  static constexpr std::int32_t known_problem_n_get() { return static_cast<std::int32_t>(known_kinds_of_data.size()); }
  static std::string known_problem_name_get(std::int32_t index); // empty for another number
  static known_problem known_problem_get(std::int32_t index);
  // Puts a problem into the panel and its parameters into the database; asks, of the first one, for the shorter gel.
  // False for another number.
  static bool known_problem_param_set(process_frame &frame, std::int32_t index, form_simul_1 &form,
                                      class_DB_of_clones &database);

private:
  void weigh_bands(int kind, double mean_n_bands);
  void make_guide();

  std::vector<double> band_log_weight_; // 1..n_bands
  std::vector<double> band_cumulative_; // 0..n_bands
  std::int32_t n_bands_ = 0;
  std::vector<double> frequency_;   // of the band in clones, 1..n_bands
  std::vector<std::int32_t> guide_; // where the search for a drawn share of the whole begins
  std::int32_t n_weighted_ = 0;
};

} // namespace orb
