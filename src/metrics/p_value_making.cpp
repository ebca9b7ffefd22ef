// class_clone_dist_table: making the tables by simulation.
#include <algorithm>

#include "frame/files.h"
#include "metrics/class_clone_dist_parab.h"
#include "metrics/class_clone_dist_simul.h"
#include "metrics/class_clone_dist_table.h"

namespace orb {

namespace {

constexpr std::int32_t most_counts_fr = 100;

void store(const class_clone_dist_parab &curves, const class_clone_dist_parab::simulated_counts &counts,
           p_value_situation &situation) {
  situation.n_runs = counts.n_runs;
  for (std::int32_t b = 0; b <= counts.n_shown && !curves.infinite_get(b); ++b) {
    situation.minus_log_P.push_back(counts.minus_log_P[static_cast<std::size_t>(b)]);
    situation.minus_log_P_min.push_back(curves.minus_probabilities_min_get(b));
    situation.minus_log_P_max.push_back(curves.minus_probabilities_max_get(b));
    ++situation.n_non_infinite;
  }
  situation.find_threshold();
}

} // namespace

std::string class_clone_dist_table::name_of_report(std::int32_t n_positions, std::int32_t n1, std::int32_t n2) {
  return "\\func_" + std::to_string(n_positions) + "b_" + std::to_string(n1) + "_" + std::to_string(n2) + ".txt";
}

// `report`: name of the file in the working folder, empty for none.
bool class_clone_dist_table::estimate(std::int32_t n1, std::int32_t n2, const std::string &report, std::int32_t n_runs,
                                      bool iid, const class_DB_of_clones &database, const simulation_services &services,
                                      class_clone_dist_simul &simul, p_value_situation &situation) {
  situation = {};
  class_clone_dist_parab::simulated_counts counts;
  counts.n_runs = n_runs;
  counts.n1 = n1;
  counts.n2 = n2;
  counts.n_shown = iid ? std::min(n1, n2) : most_counts_fr;
  if (!simul.estimation_of_log_probability_new(n_runs, n1, n2, counts.minus_log_P, counts.infinite, counts.mean_iid,
                                               database, iid))
    return false;
  class_clone_dist_parab curves;
  curves.control_results_of_p_val_estimation_a2a1a0(services.frame, counts, situation.a2, situation.a1, situation.a0,
                                                    situation.b_start, situation.b_end, database,
                                                    services.usable_values);
  if (!report.empty()) {
    result_file file(services.frame.path_in_working_folder(report));
    curves.control_results_of_p_val_estimation_print(counts, file);
    file.commit();
  }
  store(curves, counts, situation);
  const auto index = static_cast<std::size_t>(index_of_situation(n1, n2));
  if (index > 0 && index < table_.size())
    table_[index][iid ? 0 : 1] = situation;
  return true;
}

bool class_clone_dist_table::estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
    std::int32_t n1, std::int32_t n2, bool print, std::int32_t n_runs, bool iid, const class_DB_of_clones &database,
    const simulation_services &services, p_value_situation &situation) {
  class_clone_dist_simul simul(services);
  const std::string report =
      print ? name_of_report(database.total_number_of_different_bands_FPC_get(), n1, n2) : std::string();
  return estimate(n1, n2, report, n_runs, iid, database, services, simul, situation);
}

bool class_clone_dist_table::create_mode(std::int32_t n_runs, bool iid, const std::string &folder_of_reports,
                                         std::int32_t &k, const class_DB_of_clones &database,
                                         const simulation_services &services, class_clone_dist_simul &simul) {
  process_frame &frame = services.frame;
  p_value_situation made;
  if (!folder_of_reports.empty())
    create_folder(frame.path_in_working_folder(folder_of_reports));
  for (std::int32_t i = 0; i <= n_steps_; ++i)
    for (std::int32_t j = 0; j <= i; ++j) {
      frame.step_text_set(std::to_string(++k) + " from " + std::to_string(n_situations_));
      const std::string report =
          folder_of_reports + name_of_report(database.total_number_of_different_bands_FPC_get(), size(i), size(j));
      if (!estimate(size(i), size(j), report, n_runs, iid, database, services, simul, made))
        return false;
    }
  loaded_[iid ? 0 : 1] = true;
  return true;
}

bool class_clone_dist_table::create_modes(std::int32_t n_runs, const std::vector<bool> &iid_of_modes,
                                          const class_DB_of_clones &database, const simulation_services &services) {
  const bool several = iid_of_modes.size() > 1;
  table_parameters_set(min_n_bands_, step_, n_steps_, table_type_); // nothing of an older table stays
  if (table_type_ != 1)
    return false;
  double work = 0;
  for (std::int32_t i = 0; i <= n_steps_; ++i)
    for (std::int32_t j = 0; j <= i; ++j)
      work += class_clone_dist_simul::work_of(n_runs, size(i), size(j));
  class_clone_dist_simul simul(services);
  simul.work_total_set(work * static_cast<double>(iid_of_modes.size()));
  std::int32_t k = 0;
  bool made = true;
  for (const bool iid : iid_of_modes)
    made = made && create_mode(n_runs, iid, !several ? "" : iid ? "\\iid" : "\\fr", k, database, services, simul);
  if (!made) {
    table_parameters_set(min_n_bands_, step_, n_steps_, table_type_);
    return false;
  }
  for (const bool iid : iid_of_modes)
    write_tables(services.frame, iid);
  write_table_sizes(services.frame);
  return true;
}

bool class_clone_dist_table::create_table_of_parameters_for_log_probabilities(std::int32_t n_runs, bool iid,
                                                                              const class_DB_of_clones &database,
                                                                              const simulation_services &services) {
  return create_modes(n_runs, {iid}, database, services);
}

bool class_clone_dist_table::create_tables_of_both_modes(std::int32_t n_runs, const class_DB_of_clones &database,
                                                         const simulation_services &services) {
  return create_modes(n_runs, {true, false}, database, services);
}

} // namespace orb
