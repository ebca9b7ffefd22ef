// The panel "Simulations": p-values of common bands by formula, by simulation and from the tables. A struct of the
// fields as a user fills them; the buttons are operations.
#pragma once

#include <cstdint>
#include <string>

#include "metrics/class_clone_dist_table.h"
#include "metrics/metric_context.h"

namespace orb {

struct form_simul_1 {
  std::string t_m = "100", t_n = "100"; // bands of the two clones
  std::string t_k;                      // bands that they share
  std::string t_lg_P_val;               // -log10 of the p-value
  std::string t_min_bands, t_shag, t_n_shag;
  std::string t_n_estimations = "10000";
  bool ch_iid = false;                  // "using uniform distribution"
  std::string t_further_1, t_further_2; // kept with a known problem; nothing reads them
  std::string l_lg_P_val;               // what "calculate" shows
  std::int16_t metric = 4;              // of "calculate": Sulston_1988, or 5 for Soderlund_1997

  static constexpr const char *caption = "Simulations";
  static constexpr const char *ch_iid_caption = "using uniform distribution";
  static constexpr const char *b_calculate_caption = "    calculate        -Lg p-value    (no simulation)";
  static constexpr const char *b_estimate_caption = "Estimate";
  static constexpr const char *b_value_of_k_caption = "-Lg p-value (K)";
  static constexpr const char *b_k_of_value_caption = "K(-Lg p-value)";
  static constexpr const char *b_create_table_caption = "Create table";

  void put_GUI_m_n_k(std::int32_t m, std::int32_t n, std::int32_t k);
  void put_GUI_table_size(std::int32_t min_bands, std::int32_t shag, std::int32_t n_shag);

  // The buttons. Each is false when a field is no number in its range, which a message names, or when there is no
  // result. By the closed formula, shown as "-Lod_10(P)=" and the number:
  bool calculate(const metric_context &context);
  // One situation by simulation, with its control report in the working folder.
  bool
  run_estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(const metric_context &context);
  // From the tables, in either direction; the result goes to t_lg_P_val or t_k.
  bool minus_lg_p_value_of_K(const metric_context &context);
  bool K_of_minus_lg_p_value(const metric_context &context);
  // A table of the sizes in the fields, in the mode of the check box.
  bool create_table(const metric_context &context);
  // A known problem: asks "Start to simulate?", sets all band frequencies to 10 / N and estimates one situation with 50
  // runs more than the field says. `context` should be of a database of its own: its parameters are changed.
  bool known_problem_run(const metric_context &context, std::int32_t index);

private:
  bool sizes_of_pair(process_frame &frame, std::int32_t &m, std::int32_t &n) const;
  bool estimate(const metric_context &context, std::int32_t further_runs);
};

} // namespace orb
