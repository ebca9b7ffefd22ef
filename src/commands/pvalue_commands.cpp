// Simulated p-values: one score by formula, one situation, the tables, and a look into them.
#include <algorithm>
#include <fmt/format.h>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_simul.h"
#include "metrics/form_simul_1.h"

namespace orb {

namespace fs = std::filesystem;

namespace {

constexpr double largest_size = 32767;

void add_size_arguments(option_list &list, command_options &options) {
  list.add("n1", options.pvalue.n1, "bands of one clone").limits(1, largest_size).type("N1").needed();
  list.add("n2", options.pvalue.n2, "bands of the other").limits(1, largest_size).type("N2").needed();
}

void add_simulation_options(option_list &list, command_options &options) {
  list.add("--runs", options.pvalue.runs, "random pairs of clones for each pair of sizes").limits(1, 2000000000);
}

simulation_services services_of(project_state &session) {
  return {session.frame(), session.usable_values(), session.settings().seed, session.settings().threads};
}

// Sizes that can't be drawn from the bands of the library are a mistake on the command line.
void check_sizes(project_state &session, std::int32_t n1, std::int32_t n2, bool iid) {
  class_clone_simul simul;
  simul.create_distribution_function(session.frame(), session.database(), 2);
  const std::string wrong = class_clone_dist_simul::wrong_sizes(n1, n2, iid, simul);
  if (!wrong.empty())
    throw usage_error(wrong + (iid ? "" : " (Of this library's bands; all are possible with --iid.)"));
}

// The library, with folder, record and checks as every command with an --out DIR has them.
exit_status begin(project_state &session, const command_options &options, run_record &record,
                  const command_streams &streams) {
  const exit_status loaded = library_for_stage(session, options, record, streams);
  record.parameter_set("runs", options.pvalue.runs);
  return loaded;
}

} // namespace

// ---- score ---------------------------------------------------------------------------------------------------------

void pvalue_score_options(option_list &list, command_options &options) {
  add_size_arguments(list, options);
  list.add("k", options.pvalue.k, "common bands").limits(0, largest_size).type("K").needed();
  list.add("--metric", options.metric, "which formula")
      .one_of({"Sulston_1988", "Soderlund_1997"})
      .shown_default("Sulston_1988");
  add_parameter_options(list, options);
  add_common_options(list, options);
}

exit_status pvalue_score_command(project_state &session, const command_options &options,
                                 const command_streams &streams) {
  const pvalue_options &asked = options.pvalue;
  if (asked.k > std::min(asked.n1, asked.n2))
    throw usage_error(fmt::format("clones of {} and {} bands can't have {} in common", asked.n1, asked.n2, asked.k));
  parameter_fields fields = fields_from_options(options);
  apply_parameters(session.database(), fields, true);
  form_simul_1 form;
  form.put_GUI_m_n_k(asked.n1, asked.n2, asked.k);
  form.metric = class_clone_dist_general::index_of_name(options.metric.empty() ? "Sulston_1988" : options.metric);
  if (!form.calculate(session.context()))
    return exit_status::run_failed;
  streams.results(form.l_lg_P_val);
  return exit_status::done;
}

// ---- estimate ------------------------------------------------------------------------------------------------------

void pvalue_estimate_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_size_arguments(list, options);
  add_output_options(list, options, "DIR");
  add_simulation_options(list, options);
  list.add("--iid", options.pvalue.iid,
           "count common bands, all equally likely, in place of the library's frequencies");
  add_library_options(list, options);
  add_common_options(list, options);
}

static std::string text_of_situation(const p_value_situation &made) {
  if (made.b_end == 0)
    return "Too few counts occurred for a curve.";
  return fmt::format("Curve through the counts {} to {}: -log10 P = {}*x^2+{}*x+{}", made.b_start, made.b_end,
                     number_text(made.a2, 5), number_text(made.a1, 5), number_text(made.a0, 5));
}

exit_status pvalue_estimate_command(project_state &session, const command_options &options,
                                    const command_streams &streams) {
  run_record record = record_in_folder(session, options);
  const exit_status loaded = begin(session, options, record, streams);
  if (loaded != exit_status::done)
    return loaded;
  const pvalue_options &asked = options.pvalue;
  check_sizes(session, asked.n1, asked.n2, asked.iid);
  const fs::path report = session.frame().path_in_working_folder(class_clone_dist_table::name_of_report(
      session.database().total_number_of_different_bands_FPC_get(), asked.n1, asked.n2));
  check_output(report, options.force);
  record.parameter_set("n1", asked.n1);
  record.parameter_set("n2", asked.n2);
  record.parameter_set("mode", asked.iid ? "iid" : "fr");
  record.stage_start("simulation");
  session.frame().process_start("Estimate p-values");
  p_value_situation made;
  class_clone_dist_table one_situation;
  one_situation.no_tables();
  if (!one_situation.estimation_of_intersection_probability_via_simul_clones_of_concrete_given_lengths(
          asked.n1, asked.n2, true, asked.runs, asked.iid, session.database(), services_of(session), made))
    return stopped_or_failed(session);
  session.frame().all_panels_reset();
  record.stage_end();
  record.result_set("a2", made.a2);
  record.result_set("a1", made.a1);
  record.result_set("a0", made.a0);
  record.output_set("report", report);
  streams.people(text_of_situation(made));
  streams.results(report.string());
  return finish_record(record, exit_status::done);
}

// ---- table ---------------------------------------------------------------------------------------------------------

void pvalue_table_options(option_list &list, command_options &options) {
  const double most_steps = class_clone_dist_table::most_steps;
  add_library_argument(list, options);
  add_output_options(list, options, "DIR");
  add_simulation_options(list, options);
  list.add("--min-bands", options.pvalue.min_bands, "smallest size of a clone")
      .limits(1, largest_size)
      .shown_default("that of the library");
  list.add("--step", options.pvalue.step, "from size to size")
      .limits(1, largest_size)
      .shown_default("a tenth of the range");
  list.add("--steps", options.pvalue.steps, "sizes above the smallest")
      .limits(0, most_steps)
      .shown_default("up to the largest clone");
  list.add("--iid", options.pvalue.iid, "mode iid alone: all bands equally likely, for Nof");
  add_library_options(list, options);
  add_common_options(list, options);
}

namespace {

struct table_grid {
  std::int32_t min_bands = 0, step = 0, steps = 0;
  std::int32_t largest() const { return min_bands + step * steps; }
};

// What isn't asked for covers the clones of the library.
table_grid grid_for(const class_DB_of_clones &database, const pvalue_options &asked) {
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

void check_grid(project_state &session, const table_grid &grid, bool iid_only) {
  const std::string wrong = class_clone_dist_table::wrong_parameters(grid.min_bands, grid.step, grid.steps);
  if (!wrong.empty())
    throw usage_error(wrong);
  for (const bool iid : {true, false})
    if (iid || !iid_only)
      check_sizes(session, grid.largest(), grid.largest(), iid);
}

// Of a mode that isn't made anew nothing may stay: it would be read as if it belonged to the new table.
void remove_tables_of_mode_fr(project_state &session, const command_streams &streams) {
  bool removed = false;
  for (const char *const p : {"a0", "a1", "a2", "n", "f"}) {
    std::error_code failed;
    removed |= fs::remove(session.frame().path_in_working_folder(class_clone_dist_table::name_of_file(p, 1)), failed);
  }
  if (removed)
    streams.people("The older tables of mode fr were removed.");
}

bool make_tables(project_state &session, const table_grid &grid, const pvalue_options &asked) {
  class_clone_dist_table &table = session.context().table;
  table.table_parameters_set(static_cast<std::int16_t>(grid.min_bands), static_cast<std::int16_t>(grid.step),
                             static_cast<std::int16_t>(grid.steps), 1);
  return asked.iid ? table.create_table_of_parameters_for_log_probabilities(asked.runs, true, session.database(),
                                                                            services_of(session))
                   : table.create_tables_of_both_modes(asked.runs, session.database(), services_of(session));
}

// The box about too few points doesn't say where.
void say_what_has_no_curve(const class_clone_dist_table &table, const command_streams &streams) {
  for (const int mode : {0, 1}) {
    std::int32_t n = 0, n_without = 0;
    for (std::int32_t i = 0; i <= table.n_steps_get() && table.is_loaded(mode); ++i)
      for (std::int32_t j = 0; j <= i; ++j, ++n)
        n_without += table.situation(table.size(i), table.size(j), mode)->b_end == 0;
    if (n_without > 0)
      streams.people(fmt::format("Mode {}: {} of {} pairs of sizes have no curve and score 0; more --runs or larger "
                                 "sizes give one.",
                                 mode == 0 ? "iid" : "fr", n_without, n));
  }
}

} // namespace

exit_status pvalue_table_command(project_state &session, const command_options &options,
                                 const command_streams &streams) {
  run_record record = record_in_folder(session, options);
  check_output(session.frame().path_in_working_folder(class_clone_dist_table::name_of_sizes_file()), options.force);
  const exit_status loaded = begin(session, options, record, streams);
  if (loaded != exit_status::done)
    return loaded;
  const table_grid grid = grid_for(session.database(), options.pvalue);
  check_grid(session, grid, options.pvalue.iid);
  record.parameter_set("min_bands", grid.min_bands);
  record.parameter_set("step", grid.step);
  record.parameter_set("steps", grid.steps);
  record.parameter_set("modes", options.pvalue.iid ? "iid" : "iid, fr");
  streams.people(
      fmt::format("Sizes of clones: {} to {} bands in steps of {}.", grid.min_bands, grid.largest(), grid.step));
  record.stage_start("simulation");
  session.frame().process_start("Create tables of p-values");
  if (!make_tables(session, grid, options.pvalue))
    return stopped_or_failed(session);
  session.frame().all_panels_reset();
  record.stage_end();
  if (options.pvalue.iid)
    remove_tables_of_mode_fr(session, streams);
  say_what_has_no_curve(session.context().table, streams);
  record.output_set("tables", session.frame().path_in_working_folder(class_clone_dist_table::name_of_sizes_file()));
  streams.results(options.out.string());
  return finish_record(record, exit_status::done);
}

// ---- lookup --------------------------------------------------------------------------------------------------------

void pvalue_lookup_options(option_list &list, command_options &options) {
  list.add("folder", options.pvalue.folder, "folder of tables").type("DIR").needed();
  add_size_arguments(list, options);
  list.add("--count", options.pvalue.count, "common bands, or in mode fr their weight: gives -log10 of the p-value")
      .limits(0, 1e6)
      .type("K")
      .shown_default("none");
  list.add("--value", options.pvalue.value, "-log10 of the p-value: gives the count")
      .limits(0, 1e6)
      .type("P")
      .shown_default("none");
  list.add("--mode", options.pvalue.mode, "iid counts common bands, fr weighs them").one_of({"iid", "fr"});
  add_common_options(list, options);
}

exit_status pvalue_lookup_command(project_state &session, const command_options &options,
                                  const command_streams &streams) {
  const pvalue_options &asked = options.pvalue;
  if (asked.count.has_value() == asked.value.has_value())
    throw usage_error("one of --count and --value is required");
  class_clone_dist_table &table = session.context().table;
  if (!table.run_read_tables(session.frame(), asked.folder))
    return exit_status::run_failed;
  const std::int32_t largest = table.size(table.n_steps_get());
  if (std::min(asked.n1, asked.n2) < table.min_n_bands_get() || std::max(asked.n1, asked.n2) > largest)
    throw usage_error(fmt::format("the tables hold clones of {} to {} bands", table.min_n_bands_get(), largest));
  if (!table.is_loaded(asked.mode == "iid" ? 0 : 1))
    throw usage_error("no tables of mode " + asked.mode + " are in " + asked.folder.string());
  form_simul_1 form;
  form.t_m = std::to_string(asked.n1);
  form.t_n = std::to_string(asked.n2);
  form.ch_iid = asked.mode == "iid";
  form.t_k = asked.count ? number_text_shortest(*asked.count) : "";
  form.t_lg_P_val = asked.value ? number_text_shortest(*asked.value) : "";
  const bool found =
      asked.count ? form.minus_lg_p_value_of_K(session.context()) : form.K_of_minus_lg_p_value(session.context());
  if (!found) {
    streams.people("No count reaches that value.");
    return exit_status::run_failed;
  }
  double result = 0;
  number_parse(asked.count ? form.t_lg_P_val : form.t_k, result);
  streams.results(number_text(result, 6));
  return exit_status::done;
}

} // namespace orb
