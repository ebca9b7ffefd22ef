#include "metrics/form_simul_1.h"

#include <algorithm>

#include "frame/class_serv_raznoe.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_FPC.h"
#include "metrics/class_clone_dist_general.h"
#include "metrics/class_clone_dist_simul.h"
#include "metrics/class_clone_simul.h"

namespace orb {

namespace {

constexpr std::int32_t largest_size = 32767, most_runs = 2000000000;

bool whole_field(process_frame &frame, const char *name, const std::string &text, std::int32_t least, std::int32_t most,
                 std::int32_t &value) {
  if (class_serv_raznoe::test_value_long(text, least, most, value))
    return true;
  frame.alarm(std::string(name) + " takes a whole number from " + std::to_string(least) + " to " +
              std::to_string(most) + ", not \"" + text + "\".");
  return false;
}

bool number_field(process_frame &frame, const char *name, const std::string &text, double &value) {
  if (number_from_text_silent(text, value))
    return true;
  frame.alarm(std::string(name) + " takes a number, not \"" + text + "\".");
  return false;
}

} // namespace

void form_simul_1::put_GUI_m_n_k(std::int32_t m, std::int32_t n, std::int32_t k) {
  t_m = std::to_string(m);
  t_n = std::to_string(n);
  t_k = std::to_string(k);
}

void form_simul_1::put_GUI_table_size(std::int32_t min_bands, std::int32_t shag, std::int32_t n_shag) {
  t_min_bands = std::to_string(min_bands);
  t_shag = std::to_string(shag);
  t_n_shag = std::to_string(n_shag);
}

bool form_simul_1::sizes_of_pair(process_frame &frame, std::int32_t &m, std::int32_t &n) const {
  return whole_field(frame, "m", t_m, 1, largest_size, m) && whole_field(frame, "n", t_n, 1, largest_size, n);
}

bool form_simul_1::calculate(const metric_context &context) {
  std::int32_t m = 0, n = 0, k = 0;
  if (!sizes_of_pair(context.frame, m, n) || !whole_field(context.frame, "k", t_k, 0, std::min(m, n), k))
    return false;
  const double value = class_clone_dist_FPC::minus_log10_p_value_from_FPC(
      k, m, n,
      metric == class_clone_dist_general::DISTANCE_INDEX_Soderlund_1997_get()
          ? class_clone_dist_FPC::FPC_DISTANCE_INDEX_Soderlund_1997_get()
          : class_clone_dist_FPC::FPC_DISTANCE_INDEX_Sulston_1988_get(),
      context.database, context.usable_values);
  l_lg_P_val = "-Lod_10(P)=" + number_text(value, 6);
  return true;
}

static simulation_services services_of(const metric_context &context) {
  return {context.frame, context.usable_values, context.settings.seed, context.settings.threads};
}

bool form_simul_1::estimate(const metric_context &context, std::int32_t further_runs) {
  std::int32_t m = 0, n = 0, n_runs = 0;
  if (!sizes_of_pair(context.frame, m, n) ||
      !whole_field(context.frame, "Number of estimations", t_n_estimations, 1, most_runs, n_runs))
    return false;
  context.table.no_tables();
  p_value_situation situation;
  return context.table.estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
      m, n, true, n_runs + further_runs, ch_iid, context.database, services_of(context), situation);
}

bool form_simul_1::run_estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
    const metric_context &context) {
  return estimate(context, 0);
}

bool form_simul_1::minus_lg_p_value_of_K(const metric_context &context) {
  std::int32_t m = 0, n = 0;
  double k = 0, value = 0;
  if (!sizes_of_pair(context.frame, m, n) || !number_field(context.frame, "k", t_k, k))
    return false;
  if (!context.table.value_of_count(k, m, n, ch_iid ? 0 : 1, value))
    return false;
  t_lg_P_val = number_text_shortest(value);
  return true;
}

bool form_simul_1::K_of_minus_lg_p_value(const metric_context &context) {
  std::int32_t m = 0, n = 0;
  double k = 0, value = 0;
  if (!sizes_of_pair(context.frame, m, n) || !number_field(context.frame, "-Lg p-value", t_lg_P_val, value))
    return false;
  if (!context.table.parabola_for_partial_case_arg(value, m, n, ch_iid ? 0 : 1, k))
    return false;
  t_k = number_text_shortest(k);
  return true;
}

bool form_simul_1::create_table(const metric_context &context) {
  std::int32_t min_bands = 0, shag = 0, n_shag = 0, n_runs = 0;
  process_frame &frame = context.frame;
  if (!whole_field(frame, "Min number of bands", t_min_bands, 1, largest_size, min_bands) ||
      !whole_field(frame, "Step", t_shag, 1, largest_size, shag) ||
      !whole_field(frame, "Number of steps", t_n_shag, 0, class_clone_dist_table::most_steps, n_shag) ||
      !whole_field(frame, "Number of estimations", t_n_estimations, 1, most_runs, n_runs))
    return false;
  const std::string wrong = class_clone_dist_table::wrong_parameters(min_bands, shag, n_shag);
  if (!wrong.empty()) {
    frame.alarm(wrong);
    return false;
  }
  context.table.table_parameters_set(static_cast<std::int16_t>(min_bands), static_cast<std::int16_t>(shag),
                                     static_cast<std::int16_t>(n_shag), 1);
  return context.table.create_table_of_parameters_for_log_probabilities(n_runs, ch_iid, context.database,
                                                                        services_of(context));
}

bool form_simul_1::known_problem_run(const metric_context &context, std::int32_t index) {
  constexpr std::int32_t further_runs = 50, clones_of_empty_database = 10000;
  question asked;
  asked.text = "Start to simulate?";
  asked.by_default = answer::yes;
  class_DB_of_clones &database = context.database;
  if (index < 1 || index > class_clone_simul::known_problem_n_get() || !context.frame.yes(asked) ||
      !class_clone_simul::known_problem_param_set(context.frame, index, *this, database))
    return false;
  const std::int32_t n = database.total_number_of_clones_get();
  database.frecuency_of_band_in_clones_inicializate();
  for (std::int32_t band = 1; band <= database.total_number_of_different_bands_get(); ++band)
    database.frecuency_of_band_in_clones_set(band, 10.0 / (n > 0 ? n : clones_of_empty_database));
  return estimate(context, further_runs);
}

} // namespace orb
