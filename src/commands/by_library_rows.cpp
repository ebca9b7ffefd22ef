// Parameters that the fingerprints themselves tell: for a layout, and as proposals.
#include <fmt/format.h>

#include "commands/command_table.h"
#include "commands/library_parameter_rows.h"
#include "commands/metric_parameters.h"
#include "commands/row_steps.h"
#include "database/band_statistics.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "net/band_scale.h"
#include "net/parameter_proposals.h"
#include "reports/proposal_report.h"

namespace orb {

namespace {

// Positions of bands and cutoff from the fingerprints themselves, for a layout.
command_result run_metric_by_library(project_state &project, const no_parameters &) {
  const band_scale scale = band_scale_of(clone_bands(project.database()), project.settings().seed);
  library_parameters fields = parameters_of(project.database());
  fields.n_bands = positions_of_library(scale);
  if (!change_parameters(project, fields))
    return command_result::ended(exit_status::run_failed, "the positions found don't fit the loaded bands");
  project.rule() = rule_of_metric(class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get(), cutoff_of_net(scale),
                                  project.rule().burying);
  settle_use_of_net(project);
  command_result result;
  result.parameter("n_bands", fields.n_bands);
  result.parameter("metric", class_clone_dist_general::name_of_cutoff_distance(project.rule().distance_index));
  result.parameter("cutoff", project.rule().cutoff);
  result.summary = fmt::format("bands take {} positions; the net is made from a score of {} on", fields.n_bands,
                               number_text(project.rule().cutoff, 2));
  return result;
}

// ---- parameters.by_library ----

// What is given stays; the rest is proposed.
struct by_library_parameters {
  std::optional<std::int32_t> preset, n_bands;
  std::optional<std::int16_t> tolerance;
  std::optional<double> gel_length, cutoff;
  std::string metric;
  bool library_stays = false;
};

void describe_by_library(parameter_list &list, by_library_parameters &p) {
  const char *by_library = "by the fingerprints";
  list.add("preset", p.preset, "known kind of data that settles tolerance, gel length and n-bands")
      .limits(1, double(known_kinds_of_data.size()))
      .unset("none");
  list.add("tolerance", p.tolerance, "of two readings of one band").limits(0, 32000).unset(by_library);
  list.add("gel-length", p.gel_length, "largest band").limits(2, LARGEST_band_axis).unset(by_library);
  list.add("n-bands", p.n_bands, "positions that bands take").limits(1, 1e7).unset(by_library);
  list.add("metric", p.metric, "one that isn't Sulston_1988 keeps its own cutoff").unset("Sulston_1988");
  list.add("cutoff", p.cutoff, "least score of an overlap").limits(0, 1e300).unset(by_library);
  list.add("library-stays", p.library_stays, "only the cutoff is changed; it fits what the library has");
}

void check_by_library(const project_state &, const parts_there &, const by_library_parameters &p) {
  if (!p.metric.empty())
    metric_index_of(p.metric);
}

// A cutoff that isn't known yet stands in no other's way.
void foresee_by_library(project_state &project, const parts_there &, const by_library_parameters &p) {
  if (p.metric.empty() || metric_index_of(p.metric) == class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get())
    project.rule().cutoff = p.cutoff.value_or(0);
}

// As asked for, else by a preset, else as proposed. Numbers of bins have been made with tolerance and gel length.
library_parameters fields_by_library(const class_DB_of_clones &database, const by_library_parameters &p,
                                     const parameter_proposals &proposals) {
  library_parameters fields = parameters_of(database);
  const auto known = p.preset ? parameters_of_kind(*p.preset) : std::nullopt;
  fields.n_bands = p.n_bands.value_or(known ? known->n_bands : static_cast<std::int32_t>(proposals.n_bands.value));
  if (!proposals.tolerance)
    return fields;
  fields.tolerance =
      p.tolerance.value_or(known ? known->tolerance : static_cast<std::int16_t>(proposals.tolerance->value));
  fields.gel_length = p.gel_length.value_or(known ? known->gel_length : proposals.gel_length->value);
  return fields;
}

settled_parameters settled_by(const class_DB_of_clones &database, const by_library_parameters &p) {
  if (p.library_stays)
    return {database.tollerance_get(), database.total_number_of_different_bands_FPC_get()};
  settled_parameters settled;
  const auto known = p.preset ? parameters_of_kind(*p.preset) : std::nullopt;
  if (p.tolerance || known)
    settled.tolerance = p.tolerance ? *p.tolerance : known->tolerance;
  if (p.n_bands || known)
    settled.n_bands = p.n_bands ? *p.n_bands : known->n_bands;
  return settled;
}

command_result run_by_library(project_state &project, const by_library_parameters &p) {
  process_frame &frame = project.frame();
  frame.process_start("Parameters by the fingerprints");
  const parameter_proposals proposals =
      proposals_of(project.database(), settled_by(project.database(), p), [&frame] { return frame.goes_on(); });
  if (frame.stop_requested_get())
    return stopped_or_failed(project);
  frame.process_done();
  const library_parameters fields =
      p.library_stays ? parameters_of(project.database()) : fields_by_library(project.database(), p, proposals);
  if (!change_parameters(project, fields))
    return command_result::ended(exit_status::run_failed, "the parameters proposed don't fit the loaded bands");
  const std::int16_t sulston = class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get();
  const std::int16_t metric = p.metric.empty() ? sulston : metric_index_of(p.metric);
  if (metric == sulston)
    project.rule() = rule_of_metric(metric, p.cutoff.value_or(proposals.cutoff.value), project.rule().burying);
  settle_use_of_net(project);
  command_result result;
  result.parameter("tolerance", fields.tolerance);
  result.parameter("gel_length", fields.gel_length);
  result.parameter("n_bands", fields.n_bands);
  result.parameter("metric", class_clone_dist_general::name_of_cutoff_distance(project.rule().distance_index));
  result.parameter("cutoff", project.rule().cutoff);
  result.figure("least_overlap_percent", proposals.least_overlap.value);
  if (proposals.depth)
    result.figure("depth", proposals.depth->value);
  result.summary =
      fmt::format("by the fingerprints: tolerance {}, gel length {}, n-bands {}, cutoff {}", fields.tolerance,
                  number_text_shortest(fields.gel_length), fields.n_bands, number_text_shortest(project.rule().cutoff));
  result.findings = text_of_report({{"proposed parameters", rows_of_proposals(proposals)}});
  return result;
}

} // namespace

void add_by_library_rows(command_rows &rows) {
  rows.push_back(command_maker<no_parameters>("metric.by_library")
                     .captioned("Metric by the library")
                     .purpose("positions of bands and cutoff from the fingerprints themselves, for contigs by layout")
                     .example("metric.by_library")
                     .needs({project_part::library})
                     .runs(run_metric_by_library)
                     .row());
  rows.push_back(command_maker<by_library_parameters>("parameters.by_library")
                     .captioned("Parameters by the library")
                     .purpose("tolerance, gel length, n-bands and cutoff from the fingerprints themselves")
                     .example("parameters.by_library tolerance=7")
                     .needs({project_part::library})
                     .parameters(describe_by_library)
                     .checked_by(check_by_library)
                     .foresees(foresee_by_library)
                     .runs(run_by_library)
                     .row());
}

} // namespace orb
