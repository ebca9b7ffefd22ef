// Simulated p-values: one score by formula, one situation, the tables, a look into them, and the known problems. The
// tables and parameters of the project stay as they are.
#include <algorithm>
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/library_parameter_rows.h"
#include "commands/row_steps.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_simul.h"
#include "metrics/form_simul_1.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr double largest_size = 32767;
constexpr double most_runs = 2000000000;

struct pair_sizes {
  std::int32_t n1 = 0, n2 = 0; // bands of the two clones
};

void describe_sizes(parameter_list &list, pair_sizes &p) {
  list.add("n1", p.n1, "bands of one clone").limits(1, largest_size).type("N1").needed();
  list.add("n2", p.n2, "bands of the other").limits(1, largest_size).type("N2").needed();
}

void describe_runs(parameter_list &list, std::int32_t &runs) {
  list.add("runs", runs, "random pairs of clones for each pair of sizes").limits(1, most_runs);
}

simulation_services services_of(project_state &project) {
  return {project.frame(), project.usable_values(), project.settings().seed, project.settings().threads};
}

// Sizes that can't be drawn from the bands of the library are a mistake of who asks.
void check_sizes(project_state &project, std::int32_t n1, std::int32_t n2, bool iid) {
  class_clone_simul simul;
  simul.create_distribution_function(project.frame(), project.database(), 2);
  const std::string wrong = class_clone_dist_simul::wrong_sizes(n1, n2, iid, simul);
  if (!wrong.empty())
    throw usage_error(wrong + (iid ? "" : " (Of this library's bands; all are possible with --iid.)"));
}

// A database and tables beside those of the project, as the panel of simulations needs them.
class own_context {
public:
  explicit own_context(project_state &project)
      : context_{project.frame(), project.settings(), database, usable_values, table} {}
  own_context(const own_context &) = delete;
  own_context &operator=(const own_context &) = delete;
  const metric_context &context() const { return context_; }

  class_DB_of_clones database;
  class_usable_values usable_values;
  class_clone_dist_table table;

private:
  metric_context context_;
};

// ---- pvalue.score ----

struct score_parameters {
  pair_sizes sizes;
  std::int32_t k = 0; // common bands
  std::string metric = "Sulston_1988";
  library_wishes wishes; // the parameters of band comparison alone
};

void describe_score(parameter_list &list, score_parameters &p) {
  describe_sizes(list, p.sizes);
  list.add("k", p.k, "common bands").limits(0, largest_size).type("K").needed();
  list.add("metric", p.metric, "which formula").one_of({"Sulston_1988", "Soderlund_1997"});
  describe_library_parameters(list, p.wishes);
}

void check_score(const project_state &, const parts_there &, const score_parameters &p) {
  if (p.k > std::min(p.sizes.n1, p.sizes.n2))
    throw usage_error(fmt::format("clones of {} and {} bands can't have {} in common", p.sizes.n1, p.sizes.n2, p.k));
  parameters_of(p.wishes);
}

// What isn't asked for is as in the project, which begins with the defaults.
library_parameters parameters_in_force(const project_state &project, const library_wishes &asked) {
  const library_parameters base = asked.preset ? parameters_of(asked) : parameters_of(project.database());
  library_wishes wishes = asked;
  wishes.tolerance = asked.tolerance.value_or(base.tolerance);
  wishes.tolerance_index = asked.tolerance_index.value_or(base.tolerance_index);
  wishes.gel_length = asked.gel_length.value_or(base.gel_length);
  wishes.n_bands = asked.n_bands.value_or(base.n_bands);
  return parameters_of(wishes);
}

command_result score(project_state &project, const score_parameters &p) {
  own_context own(project);
  library_parameters fields = parameters_in_force(project, p.wishes);
  apply_parameters(own.database, fields, true);
  form_simul_1 form;
  form.put_GUI_m_n_k(p.sizes.n1, p.sizes.n2, p.k);
  form.metric = class_clone_dist_general::index_of_name(p.metric);
  if (!form.calculate(own.context()))
    return command_result::ended(exit_status::run_failed);
  command_result result;
  result.lines.push_back(form.l_lg_P_val);
  return result;
}

// ---- pvalue.estimate ----

struct estimate_parameters {
  pair_sizes sizes;
  output_wishes output;
  std::int32_t runs = 10000;
  bool iid = false; // all bands equally likely
};

void describe_estimate(parameter_list &list, estimate_parameters &p) {
  describe_sizes(list, p.sizes);
  describe_output(list, p.output, "DIR");
  describe_runs(list, p.runs);
  list.add("iid", p.iid, "count common bands, all equally likely, in place of the library's frequencies");
}

std::string text_of_situation(const p_value_situation &made) {
  if (made.b_end == 0)
    return "Too few counts occurred for a curve.";
  return fmt::format("Curve through the counts {} to {}: -log10 P = {}*x^2+{}*x+{}", made.b_start, made.b_end,
                     number_text(made.a2, 5), number_text(made.a1, 5), number_text(made.a0, 5));
}

// The report that a situation of these sizes leaves in a folder.
fs::path report_in(const fs::path &folder, std::int32_t n_positions, std::int32_t n1, std::int32_t n2) {
  return process_frame::path_in_folder(folder, class_clone_dist_table::name_of_report(n_positions, n1, n2));
}

void put_situation(process_frame &frame, const p_value_situation &made, const fs::path &report,
                   command_result &result) {
  result.figure("a2", made.a2);
  result.figure("a1", made.a1);
  result.figure("a0", made.a0);
  result.file("report", report);
  frame.note(text_of_situation(made));
  result.lines.push_back(report.string());
}

command_result estimate(project_state &project, const estimate_parameters &p) {
  process_frame &frame = project.frame();
  const auto [n1, n2] = p.sizes;
  check_sizes(project, n1, n2, p.iid);
  const fs::path report = report_in(p.output.out, project.database().total_number_of_different_bands_FPC_get(), n1, n2);
  check_output(project, report, p.output.force);
  work_in(project, p.output.out);
  frame.process_start("Estimate p-values");
  p_value_situation made;
  class_clone_dist_table one_situation;
  one_situation.no_tables();
  if (!one_situation.estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
          n1, n2, true, p.runs, p.iid, project.database(), services_of(project), made))
    return stopped_or_failed(project);
  frame.all_panels_reset();
  command_result result;
  result.parameter("runs", p.runs);
  result.parameter("n1", n1);
  result.parameter("n2", n2);
  result.parameter("mode", p.iid ? "iid" : "fr");
  put_situation(frame, made, report, result);
  return result;
}

// ---- pvalue.table ----

struct table_parameters {
  output_wishes output;
  std::int32_t runs = 10000;
  std::optional<std::int32_t> min_bands, step, steps; // unset: they cover the library
  bool iid = false;
};

void describe_table(parameter_list &list, table_parameters &p) {
  describe_output(list, p.output, "DIR");
  describe_runs(list, p.runs);
  list.add("min-bands", p.min_bands, "smallest size of a clone").limits(1, largest_size).unset("that of the library");
  list.add("step", p.step, "from size to size").limits(1, largest_size).unset("a tenth of the range");
  list.add("steps", p.steps, "sizes above the smallest")
      .limits(0, class_clone_dist_table::most_steps)
      .unset("up to the largest clone");
  list.add("iid", p.iid, "mode iid alone: all bands equally likely, for Nof");
}

fs::path file_of_sizes(const fs::path &folder) {
  return process_frame::path_in_folder(folder, class_clone_dist_table::name_of_sizes_file());
}

void check_table(const project_state &project, const parts_there &, const table_parameters &p) {
  check_output(project, file_of_sizes(p.output.out), p.output.force);
}

struct table_grid {
  std::int32_t min_bands = 0, step = 0, steps = 0;
  std::int32_t largest() const { return min_bands + step * steps; }
};

// What isn't asked for covers the clones of the library.
table_grid grid_for(const class_DB_of_clones &database, const table_parameters &asked) {
  constexpr std::int32_t steps_over_range = 10, smallest_useful = 5;
  std::int32_t least = 0, most = 0;
  for (clone_number clone = 1; clone <= database.total_number_of_clones_get(); ++clone) {
    const std::int32_t n = database.number_of_bands_in_clone_get(clone);
    least = least == 0 ? n : std::min(least, n);
    most = std::max(most, n);
  }
  table_grid grid;
  grid.min_bands = asked.min_bands.value_or(std::max(least, smallest_useful));
  const std::int32_t range = std::max(most - grid.min_bands, 0);
  grid.step = asked.step.value_or(std::max((range + steps_over_range - 1) / steps_over_range, 1));
  grid.steps = asked.steps.value_or((range + grid.step - 1) / grid.step);
  return grid;
}

void check_grid(project_state &project, const table_grid &grid, bool iid_only) {
  const std::string wrong = class_clone_dist_table::wrong_parameters(grid.min_bands, grid.step, grid.steps);
  if (!wrong.empty())
    throw usage_error(wrong);
  for (const bool iid : {true, false})
    if (iid || !iid_only)
      check_sizes(project, grid.largest(), grid.largest(), iid);
}

// Of a mode that isn't made anew nothing may stay: it would be read as if it belonged to the new table.
void remove_tables_of_mode_fr(process_frame &frame) {
  bool removed = false;
  for (const char *const p : {"a0", "a1", "a2", "n", "f"}) {
    std::error_code failed;
    removed |= fs::remove(frame.path_in_working_folder(class_clone_dist_table::name_of_file(p, 1)), failed);
  }
  if (removed)
    frame.note("The older tables of mode fr were removed.");
}

bool make_tables(project_state &project, const table_grid &grid, const table_parameters &asked,
                 class_clone_dist_table &table) {
  table.table_parameters_set(static_cast<std::int16_t>(grid.min_bands), static_cast<std::int16_t>(grid.step),
                             static_cast<std::int16_t>(grid.steps), 1);
  return asked.iid ? table.create_table_of_parameters_for_log_probabilities(asked.runs, true, project.database(),
                                                                            services_of(project))
                   : table.create_tables_of_both_modes(asked.runs, project.database(), services_of(project));
}

// The box about too few points doesn't say where.
void say_what_has_no_curve(process_frame &frame, const class_clone_dist_table &table) {
  for (const int mode : {0, 1}) {
    std::int32_t n = 0, n_without = 0;
    for (std::int32_t i = 0; i <= table.n_steps_get() && table.is_loaded(mode); ++i)
      for (std::int32_t j = 0; j <= i; ++j, ++n)
        n_without += table.situation(table.size(i), table.size(j), mode)->b_end == 0;
    if (n_without > 0)
      frame.warn(fmt::format("Mode {}: {} of {} pairs of sizes have no curve and score 0; more --runs or larger sizes "
                             "give one.",
                             mode == 0 ? "iid" : "fr", n_without, n));
  }
}

command_result table_of_grid(project_state &project, const table_parameters &p) {
  process_frame &frame = project.frame();
  const table_grid grid = grid_for(project.database(), p);
  check_grid(project, grid, p.iid);
  work_in(project, p.output.out);
  frame.note(fmt::format("Sizes of clones: {} to {} bands in steps of {}.", grid.min_bands, grid.largest(), grid.step));
  frame.process_start("Create tables of p-values");
  class_clone_dist_table table;
  if (!make_tables(project, grid, p, table))
    return stopped_or_failed(project);
  frame.all_panels_reset();
  if (p.iid)
    remove_tables_of_mode_fr(frame);
  say_what_has_no_curve(frame, table);
  command_result result;
  result.parameter("runs", p.runs);
  result.parameter("min_bands", grid.min_bands);
  result.parameter("step", grid.step);
  result.parameter("steps", grid.steps);
  result.parameter("modes", p.iid ? "iid" : "iid, fr");
  result.file("tables", file_of_sizes(p.output.out));
  result.lines.push_back(p.output.out.string());
  return result;
}

// ---- pvalue.lookup ----

struct lookup_parameters {
  fs::path folder;
  pair_sizes sizes;
  std::optional<double> count, value; // which of the two is known
  std::string mode = "iid";
  bool is_iid() const { return mode == "iid"; }
};

void describe_lookup(parameter_list &list, lookup_parameters &p) {
  list.add("folder", p.folder, "folder of tables").type("DIR").needed();
  describe_sizes(list, p.sizes);
  list.add("count", p.count, "common bands, or in mode fr their weight: gives -log10 of the p-value")
      .limits(0, 1e6)
      .type("K")
      .unset("none");
  list.add("value", p.value, "-log10 of the p-value: gives the count").limits(0, 1e6).type("P").unset("none");
  list.add("mode", p.mode, "iid counts common bands, fr weighs them").one_of({"iid", "fr"});
}

void check_lookup(const project_state &, const parts_there &, const lookup_parameters &p) {
  if (p.count.has_value() == p.value.has_value())
    throw usage_error("one of --count and --value is required");
}

// Whether the tables that were read can answer at all.
void check_tables(const lookup_parameters &p, const class_clone_dist_table &table) {
  const auto [n1, n2] = p.sizes;
  const std::int32_t largest = table.size(table.n_steps_get());
  if (std::min(n1, n2) < table.min_n_bands_get() || std::max(n1, n2) > largest)
    throw usage_error(fmt::format("the tables hold clones of {} to {} bands", table.min_n_bands_get(), largest));
  if (!table.is_loaded(p.is_iid() ? 0 : 1))
    throw usage_error("no tables of mode " + p.mode + " are in " + p.folder.string());
}

command_result look_up(project_state &project, const lookup_parameters &p) {
  process_frame &frame = project.frame();
  own_context own(project);
  if (!own.table.run_read_tables(frame, p.folder))
    return command_result::ended(exit_status::run_failed);
  check_tables(p, own.table);
  form_simul_1 form;
  form.t_m = std::to_string(p.sizes.n1);
  form.t_n = std::to_string(p.sizes.n2);
  form.ch_iid = p.is_iid();
  form.t_k = p.count ? number_text_shortest(*p.count) : "";
  form.t_lg_P_val = p.value ? number_text_shortest(*p.value) : "";
  const bool found = p.count ? form.minus_lg_p_value_of_K(own.context()) : form.K_of_minus_lg_p_value(own.context());
  if (!found) {
    frame.note("No count reaches that value.");
    return command_result::ended(exit_status::run_failed);
  }
  double answer_found = 0;
  number_parse(p.count ? form.t_lg_P_val : form.t_k, answer_found);
  command_result result;
  result.lines.push_back(number_text(answer_found, 6));
  return result;
}

// ---- pvalue.preset ----

struct preset_parameters {
  std::int32_t preset = 0;
  output_wishes output;
  std::int32_t runs = 10000; // a known problem takes 50 more
};

constexpr std::int32_t bands_of_clone = 100;         // of both clones of a known problem
constexpr std::int32_t n_bands_of_shorter_gel = 235; // of the first problem, where a question asks for it

void describe_preset(parameter_list &list, preset_parameters &p) {
  list.add("preset", p.preset, "a known kind of data, by its number")
      .limits(1, class_clone_simul::known_problem_n_get())
      .needed();
  describe_output(list, p.output, "DIR");
  describe_runs(list, p.runs);
}

void check_preset(const project_state &project, const parts_there &, const preset_parameters &p) {
  std::vector<std::int32_t> n_positions{class_clone_simul::known_problem_get(p.preset).parameters.n_bands};
  if (p.preset == 1)
    n_positions.push_back(n_bands_of_shorter_gel);
  for (const std::int32_t n : n_positions)
    check_output(project, report_in(p.output.out, n, bands_of_clone, bands_of_clone), p.output.force);
}

// Sizes of 100 bands can be drawn from every known problem: what isn't stopped was declined.
command_result not_simulated(project_state &project) {
  if (project.frame().stop_requested_get() || project.frame().was_stopped())
    return stopped_or_failed(project);
  project.frame().process_canceled();
  return command_result::ended(exit_status::run_failed, "the simulation was declined");
}

command_result simulate_preset(project_state &project, const preset_parameters &p) {
  process_frame &frame = project.frame();
  work_in(project, p.output.out);
  own_context own(project);
  form_simul_1 form;
  form.t_n_estimations = std::to_string(p.runs);
  frame.process_start("Estimate p-values");
  if (!form.known_problem_run(own.context(), p.preset))
    return not_simulated(project);
  frame.all_panels_reset();
  const p_value_situation &made = *own.table.situation(bands_of_clone, bands_of_clone, form.ch_iid ? 0 : 1);
  const library_parameters problem = parameters_of(own.database);
  command_result result;
  result.parameter("preset", p.preset);
  result.parameter("runs", made.n_runs);
  result.parameter("tolerance", problem.tolerance);
  result.parameter("tolerance_index", problem.tolerance_index);
  result.parameter("gel_length", problem.gel_length);
  result.parameter("n_bands", problem.n_bands);
  put_situation(frame, made, report_in(p.output.out, problem.n_bands, bands_of_clone, bands_of_clone), result);
  return result;
}

} // namespace

void add_pvalue_rows(command_rows &rows) {
  rows.push_back(command_maker<score_parameters>("pvalue.score")
                     .captioned(form_simul_1::caption)
                     .purpose("score of K common bands of clones with N1 and N2 bands, by the closed formula")
                     .example("pvalue.score n1=100 n2=90 k=40 n-bands=2250")
                     .parameters(describe_score)
                     .checked_by(check_score)
                     .runs(score)
                     .row());
  rows.push_back(command_maker<estimate_parameters>("pvalue.estimate")
                     .captioned(form_simul_1::b_estimate_caption)
                     .purpose("simulate the common bands of clones with N1 and N2 bands")
                     .example("pvalue.estimate n1=100 n2=90 runs=100000 out=estimate")
                     .needs({project_part::library})
                     .parameters(describe_estimate)
                     .runs(estimate)
                     .row());
  rows.push_back(command_maker<table_parameters>("pvalue.table")
                     .captioned(form_simul_1::b_create_table_caption)
                     .purpose("make the tables of simulated p-values that the metrics Nof and Lnn need")
                     .example("pvalue.table out=tables runs=10000")
                     .needs({project_part::library})
                     .parameters(describe_table)
                     .checked_by(check_table)
                     .runs(table_of_grid)
                     .row());
  rows.push_back(command_maker<lookup_parameters>("pvalue.lookup")
                     .captioned(form_simul_1::b_value_of_k_caption)
                     .purpose("read tables of simulated p-values, from a count or from a value")
                     .example("pvalue.lookup folder=tables n1=100 n2=90 count=40")
                     .parameters(describe_lookup)
                     .checked_by(check_lookup)
                     .runs(look_up)
                     .row());
  rows.push_back(command_maker<preset_parameters>("pvalue.preset")
                     .captioned("Known problem")
                     .purpose("simulate two clones of 100 bands with the parameters of a known kind of data")
                     .example("pvalue.preset preset=4 out=estimate")
                     .parameters(describe_preset)
                     .checked_by(check_preset)
                     .runs(simulate_preset)
                     .row());
}

} // namespace orb
