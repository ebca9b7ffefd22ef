// Simulated p-values of common band counts, for a grid of clone sizes: made by simulation, kept in files, looked up by
// the metrics. Two modes: 0 "iid" counts common bands, 1 "fr" the sum of -ln f over the common bands.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/process_frame.h"

namespace orb {

struct form_simul_1;
struct simulation_services;
class class_clone_dist_simul;
class result_file;

// One pair of sizes in one mode. The three lists hold counts 0..n_non_infinite - 1 in natural-log units, all others
// read as 0; after reading from files they are empty.
struct p_value_situation {
  std::int32_t n_non_infinite = 0; // counts that occurred, up to the limit of the mode
  std::vector<double> minus_log_P, minus_log_P_min, minus_log_P_max;
  double a0 = 0, a1 = 0, a2 = 0;         // -log10 P of b is about a0 + a1 b + a2 b^2
  std::int32_t b_start = 0, b_end = 0;   // counts that the fit used; 0, 0: no fit, or read from files
  std::int32_t n_runs = 0;               // simulated pairs
  double threshold = infinite_threshold; // the parabola rules from here on; set by `find_threshold`

  static constexpr double infinite_threshold = 1e300;
  // b_start or, when that is 0, the largest count at which the curve is 2. A curve that stays above 2 rules from its
  // lowest point on, where it begins to rise: its falling branch would score pairs that share nothing. Any other curve
  // without such a count rules nowhere.
  void find_threshold();
  double simulated(double x) const; // -log10 P of the count Int(x), 0 where nothing is stored
  double parabola(double x) const { return a0 + (a1 + a2 * x) * x; }
};

class class_clone_dist_table {
public:
  static constexpr std::int32_t most_steps = 179; // so that n_situations stays a signed 16-bit number

  // ---- parameters ----------------------------------------------------------------------------------------------
  // The sizes are min_n_bands + step * i, i = 0..n_steps. Type 1: a triangular grid of them; 0: one situation, whatever
  // its sizes. Forgets all situations. The parameters must be good ones (wrong_parameters).
  void table_parameters_set(std::int16_t min_n_bands, std::int16_t step, std::int16_t n_steps, std::int16_t table_type);
  void no_tables() { table_parameters_set(0, 0, 0, 0); }
  // Why a grid can't be made; empty when it can.
  static std::string wrong_parameters(std::int64_t min_n_bands, std::int64_t step, std::int64_t n_steps);
  void show_table_parameters_in_form_simul_1(form_simul_1 &form) const;
  std::int16_t min_n_bands_get() const { return min_n_bands_; }
  std::int16_t step_get() const { return step_; }
  std::int16_t n_steps_get() const { return n_steps_; }
  std::int16_t table_type_get() const { return table_type_; }
  // Of both modes together.
  std::int16_t n_situations_get() const { return n_situations_; }
  std::int32_t size(std::int32_t i) const { return step_ * i + min_n_bands_; }
  // 1-based; 0 for a pair that isn't on the grid. Order doesn't matter.
  std::int32_t index_of_situation(std::int32_t n1, std::int32_t n2) const;

  // A grid that was made or read whole, in this mode (in any).
  bool is_loaded(int mode) const { return mode >= 0 && mode < n_modes && loaded_[static_cast<std::size_t>(mode)]; }
  bool is_loaded() const { return is_loaded(0) || is_loaded(1); }

  // ---- making --------------------------------------------------------------------------------------------------
  // All situations of the grid in one mode, each with its control report, then the files, in the working folder. Shows
  // "k from n_situations" and the time left. False when stopped or when a size can't be drawn: no table is there then.
  bool create_table_of_parameters_for_log_probabilities(std::int32_t n_runs, bool iid,
                                                        const class_DB_of_clones &database,
                                                        const simulation_services &services);
  // The same for both modes; their reports, which have the same names, lie in the folders "iid" and "fr".
  bool create_tables_of_both_modes(std::int32_t n_runs, const class_DB_of_clones &database,
                                   const simulation_services &services);
  // One situation, which enters the table when its sizes are on the grid. `print`: control report "\func_..." in the
  // working folder. A situation of too few usable counts has no fit. False when stopped or impossible.
  bool estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
      std::int32_t n1, std::int32_t n2, bool print, std::int32_t n_runs, bool iid, const class_DB_of_clones &database,
      const simulation_services &services, p_value_situation &situation);
  static std::string name_of_report(std::int32_t n_positions, std::int32_t n1, std::int32_t n2); // "\func_..."

  // ---- files ---------------------------------------------------------------------------------------------------
  void write_table_sizes(process_frame &frame) const;
  void write_tables(process_frame &frame, bool iid) const;
  // "\parameters_a0_iid.txt" and its kin; p is "a0", "a1", "a2", "n" or "f".
  static std::string name_of_file(const std::string &p, int mode);
  static std::string name_of_sizes_file() { return "\\parameters_table.txt"; }
  // Reads the tables of a folder. A mode of which no file is there stays empty when the other is there. False, with
  // the old tables as they were, when a file is damaged; the message named file and line. Throws file_error.
  bool run_read_tables(process_frame &frame, const std::filesystem::path &folder);

  // ---- values --------------------------------------------------------------------------------------------------
  // `which`: 0 a0, 1 a1, 2 a2; any other, and sizes off the grid, read 0 and set nothing.
  void table_of_abc_parameters_for_one_situation_get(std::int32_t n1, std::int32_t n2, int which, int mode,
                                                     double &value) const;
  void table_of_abc_parameters_for_one_situation_set(std::int32_t n1, std::int32_t n2, int which, int mode,
                                                     double value);
  const p_value_situation *situation(std::int32_t n1, std::int32_t n2, int mode) const; // null off the grid

  // -log10 of the p-value of x. For sizes on the grid; the parabola rules from the threshold on, itself included.
  void parabola_for_partial_case(double x, std::int32_t n1, std::int32_t n2, int mode, double &value) const;
  // The inverse: the x at which the curve reaches the value. False when it doesn't below 100 (n1 + n2). Sizes off the
  // grid are answered from the net.
  bool parabola_for_partial_case_arg(double value, std::int32_t n1, std::int32_t n2, int mode, double &x) const;
  // For any sizes, between the four situations around them; the parabola rules behind the threshold. Never below 0;
  // 0 for sizes outside of the grid, of which nothing is known. Fast, and safe to call from several threads.
  void parabola_on_net(double x, std::int32_t n1, std::int32_t n2, int mode, double &value) const;
  // The exact situation when there is one, otherwise the net. False when nothing is loaded that could answer.
  bool value_of_count(double x, std::int32_t n1, std::int32_t n2, int mode, double &value) const;
  // What the metrics ask.
  double minus_log10_p_value_get(double count, std::int32_t n1, std::int32_t n2, int mode) const {
    double value = 0;
    parabola_on_net(count, n1, n2, mode, value);
    return value;
  }
  // No curve of the mode falls anywhere when the count rises.
  bool curves_rise(int mode) const;

private:
  static constexpr int n_modes = 2;
  bool create_modes(std::int32_t n_runs, const std::vector<bool> &iid_of_modes, const class_DB_of_clones &database,
                    const simulation_services &services);
  bool create_mode(std::int32_t n_runs, bool iid, const std::string &folder_of_reports, std::int32_t &k,
                   const class_DB_of_clones &database, const simulation_services &services,
                   class_clone_dist_simul &simul);
  bool estimate(std::int32_t n1, std::int32_t n2, const std::string &report, std::int32_t n_runs, bool iid,
                const class_DB_of_clones &database, const simulation_services &services, class_clone_dist_simul &simul,
                p_value_situation &situation);
  std::int32_t n_pairs_of_sizes() const { return (n_steps_ + 1) * (n_steps_ + 2) / 2; }
  void write_square_table(process_frame &frame, const std::string &p, int mode) const;
  void write_counts(process_frame &frame, int mode) const;
  bool read_sizes(process_frame &frame, const std::filesystem::path &file);
  bool read_tables_from_files(process_frame &frame, const std::filesystem::path &folder);
  bool read_square_table(process_frame &frame, const std::filesystem::path &file, int which, int mode);
  // i >= j from 0.
  const p_value_situation &cell(std::int32_t i, std::int32_t j, int mode) const {
    return table_[static_cast<std::size_t>(i * (i + 1) / 2 + j + 1)][static_cast<std::size_t>(mode)];
  }

  std::vector<std::array<p_value_situation, n_modes>> table_; // from 1
  std::int16_t n_situations_ = 1;
  std::int16_t min_n_bands_ = 0, step_ = 0, n_steps_ = 0;
  std::int16_t table_type_ = 0;
  std::array<bool, n_modes> loaded_{};
};

} // namespace orb
