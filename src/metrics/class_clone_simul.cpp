#include "metrics/class_clone_simul.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "frame/class_math1.h"
#include "frame/numbers.h"
#include "metrics/form_simul_1.h"

namespace orb {

namespace {

constexpr double mean_bands_without_clones = 160;

std::size_t place(std::int32_t i) {
  return static_cast<std::size_t>(i);
}

// How often each position occurs in a clone. Without clones nothing was counted, and what was set by hand holds.
std::vector<double> frequencies_of(process_frame &frame, const class_DB_of_clones &database) {
  if (database.total_number_of_clones_get() > 0)
    return database.create_band_FPC_frequency_in_clones(frame);
  std::vector<double> frequency(place(std::max(database.total_number_of_different_bands_FPC_get(), 0)) + 1, 0);
  const std::vector<double> &set = database.frecuency_of_band_in_clones_array();
  std::copy(set.begin(), set.begin() + static_cast<std::ptrdiff_t>(std::min(set.size(), frequency.size())),
            frequency.begin());
  return frequency;
}

double mean_n_bands_of(const class_DB_of_clones &database) {
  const std::int32_t n = database.total_number_of_clones_get();
  return n > 0 ? static_cast<double>(database.first_band_adress_get(n + 1) - 1) / n : mean_bands_without_clones;
}

} // namespace

// ---- distribution --------------------------------------------------------------------------------------------------

void class_clone_simul::create_distribution_function(process_frame &frame, const class_DB_of_clones &database,
                                                     int kind) {
  n_bands_ = std::max(database.total_number_of_different_bands_FPC_get(), 0);
  frequency_ = frequencies_of(frame, database);
  band_log_weight_.assign(place(n_bands_) + 1, 0);
  for (std::int32_t b = 1; b <= n_bands_; ++b)
    if (frequency_[place(b)] > 0)
      band_log_weight_[place(b)] = -std::log(frequency_[place(b)]);
  weigh_bands(kind, mean_n_bands_of(database));
  make_guide();
}

void class_clone_simul::weigh_bands(int kind, double mean_n_bands) {
  const auto weight = [&](std::int32_t b) {
    const double f = frequency_[place(b)];
    if (kind == 0)
      return 1.0 / n_bands_;
    if (!(mean_n_bands > 0))
      return 0.0; // clones without bands
    return kind == 1 ? f / mean_n_bands : class_clone_serv::freq_band_among_bands_get(f, mean_n_bands);
  };
  double sum = 0;
  for (std::int32_t b = 1; b <= n_bands_; ++b)
    sum += weight(b);
  band_cumulative_.assign(place(n_bands_) + 1, 0);
  n_weighted_ = 0;
  for (std::int32_t b = 1; b <= n_bands_ && sum > 0; ++b) {
    band_cumulative_[place(b)] = band_cumulative_[place(b) - 1] + weight(b) / sum;
    n_weighted_ += band_cumulative_[place(b)] > band_cumulative_[place(b) - 1];
  }
}

// Cuts the total into as many equal parts as there are bands: guide(j) is the first band whose sum is above the start
// of part j (Chen and Asau 1974). From there a draw is a step or two away.
void class_clone_simul::make_guide() {
  guide_.clear();
  if (n_weighted_ == 0)
    return;
  const double total = band_cumulative_.back();
  std::int32_t band = 1;
  for (std::int32_t j = 0; j < n_bands_; ++j) {
    while (band < n_bands_ && band_cumulative_[place(band)] <= total * j / n_bands_)
      ++band;
    guide_.push_back(band);
  }
}

std::int32_t class_clone_simul::random_band(bool equal, random_source &chance) const {
  if (equal) {
    std::int32_t band = 0;
    do
      band = static_cast<std::int32_t>(chance.uniform() * n_bands_ + 1);
    while (band > n_bands_);
    return band;
  }
  if (guide_.empty())
    return class_math1::random_value_number(band_cumulative_, n_bands_, chance);
  // the same band that random_value_number would find in the sums
  const double share = chance.uniform(), drawn = share * band_cumulative_.back();
  const auto part = std::min(static_cast<std::size_t>(share * n_bands_), guide_.size() - 1);
  std::int32_t band = guide_[part];
  while (band > 1 && band_cumulative_[place(band) - 1] > drawn)
    --band; // the start of the part was rounded
  while (band < n_bands_ && band_cumulative_[place(band)] <= drawn)
    ++band;
  return band;
}

// ---- one pair ------------------------------------------------------------------------------------------------------

void class_clone_simul::create_single_pair_of_clones_and_characterize_overlap_fast(std::int32_t n1, std::int32_t n2,
                                                                                   std::int32_t n_bands, bool equal,
                                                                                   std::int32_t &k, double &x_fr,
                                                                                   band_states &states,
                                                                                   random_source &chance) const {
  k = 0;
  x_fr = 0;
  if (states.state.size() < place(n_bands) + 1)
    states.state.assign(place(n_bands) + 1, 0);
  std::uint8_t *const state = states.state.data();
  states.drawn.clear();
  for (std::int32_t taken = 0; taken < n1;) {
    const std::int32_t band = random_band(equal, chance);
    if (state[band] != 0)
      continue;
    state[band] = 1;
    states.drawn.push_back(band);
    ++taken;
  }
  for (std::int32_t taken = 0; taken < n2;) {
    const std::int32_t band = random_band(equal, chance);
    if (state[band] >= 2)
      continue;
    if (state[band] == 1) {
      ++k;
      x_fr += band_log_weight_[place(band)];
    } else {
      states.drawn.push_back(band);
    }
    state[band] += 2;
    ++taken;
  }
  for (const std::int32_t band : states.drawn)
    state[band] = 0;
}

// ---- clones as wholes ----------------------------------------------------------------------------------------------

void class_clone_simul::create_random_clone(number_list &list, random_source &chance) const {
  list.clear();
  for (std::int32_t b = 1; b <= n_bands_; ++b)
    if (chance.uniform() < frequency_[place(b)])
      list.add(b);
}

void class_clone_simul::create_iid_clone_of_fixed_length(std::int32_t n, std::int32_t max, number_list &list,
                                                         random_source &chance) {
  const number_list all = number_list::range(1, max);
  list.clear();
  if (n >= max) {
    list = all;
    return;
  }
  std::vector<bool> taken(place(std::max(max, 0)) + 1, false);
  while (list.count() < n) {
    const std::int32_t value = class_math1::random_from_list(all, chance);
    if (!taken[place(value)])
      list.add(value);
    taken[place(value)] = true;
  }
  std::sort(list.members().begin(), list.members().end());
}

void class_clone_simul::create_clone_of_fixed_length(std::int32_t n, number_list &list, random_source &chance) const {
  constexpr int n_tries = 20;
  n = std::clamp(n, 0, n_bands_);
  number_list tried;
  for (int i = 0; i < n_tries; ++i) {
    create_random_clone(tried, chance);
    if (i == 0 || std::abs(tried.count() - n) < std::abs(list.count() - n))
      list = tried;
    if (list.count() == n)
      return;
  }
  if (list.count() > n) {
    std::vector<bool> lost(place(list.count()) + 1, false);
    const number_list order = class_math1::random_ordering(list.count(), chance);
    for (std::int32_t i = n + 1; i <= order.count(); ++i)
      lost[place(order(i))] = true;
    class_math1::compress_list(list, lost);
    return;
  }
  number_list absent, gained;
  std::vector<double> weights(1, 0);
  for (std::int32_t b = 1; b <= n_bands_; ++b)
    if (!std::binary_search(list.members().begin(), list.members().end(), b)) {
      absent.add(b);
      weights.push_back(frequency_[place(b)]);
    }
  std::vector<bool> marks;
  class_math1::selection_realization(absent.count(), weights, marks, n - list.count(), gained, chance);
  for (const std::int32_t i : gained.members())
    list.add(absent(i));
  std::sort(list.members().begin(), list.members().end());
}

void class_clone_simul::create_clone_of_fixed_length_new(std::int32_t n, bool equal,
                                                         class_clone_serv::band_presence &presence,
                                                         random_source &chance) const {
  presence.assign(place(n_bands_) + 1, 0);
  for (std::int32_t taken = 0; taken < std::min(n, n_drawable_get(equal));) {
    std::uint8_t &present = presence[place(random_band(equal, chance))];
    taken += present == 0;
    present = 1;
  }
}

// ---- known problems ------------------------------------------------------------------------------------------------

known_problem class_clone_simul::known_problem_get(std::int32_t index) {
  static constexpr std::array<std::int16_t, known_kinds_of_data.size()> further_settings{0, 0, 0, 6, 4};
  const std::optional<library_parameters> parameters = parameters_of_kind(index);
  return parameters ? known_problem{*parameters, further_settings[place(index) - 1]} : known_problem{};
}

std::string class_clone_simul::known_problem_name_get(std::int32_t index) {
  if (index < 1 || index > known_problem_n_get())
    return {};
  const library_parameters problem = known_problem_get(index).parameters;
  return "tolerance " + std::to_string(problem.tolerance) +
         (problem.tolerance_index == 0 ? ", bin numbers" : ", lengths") + ", gel length " +
         number_text_shortest(problem.gel_length) + ", " + std::to_string(problem.n_bands) + " band positions";
}

bool class_clone_simul::known_problem_param_set(process_frame &frame, std::int32_t index, form_simul_1 &form,
                                                class_DB_of_clones &database) {
  if (index < 1 || index > known_problem_n_get())
    return false;
  constexpr std::int32_t n_bands_of_clone = 100;
  known_problem problem = known_problem_get(index);
  if (index == 1) {
    question asked;
    asked.text = "Reduce the gel length to 3289 and the number of band positions to 235?";
    asked.by_default = asked.to_go_on = answer::no;
    if (frame.yes(asked)) {
      problem.parameters.gel_length = 3289;
      problem.parameters.n_bands = 235;
    }
  }
  database.tollerance_parameters_set(problem.parameters.tolerance, problem.parameters.tolerance_index);
  database.total_number_of_different_bands_set_by_eff_len(problem.parameters.gel_length);
  database.total_number_of_different_bands_FPC_set(problem.parameters.n_bands);
  form.t_m = form.t_n = std::to_string(n_bands_of_clone);
  form.t_further_1 = form.t_further_2 = problem.further_settings > 0 ? std::to_string(problem.further_settings) : "";
  return true;
}

} // namespace orb
