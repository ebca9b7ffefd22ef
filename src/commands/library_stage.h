// The first stage of most commands: parameters applied, a library loaded from whatever INPUT is.
#pragma once

#include "commands/commands.h"
#include "database/library_parameters.h"
#include "reports/run_record.h"

namespace orb {

using parameter_fields = library_parameters;

// What --preset stands for: tolerance, index, gel length and number of bands of a known kind of laboratory data.
parameter_fields preset_parameters(std::int32_t preset); // 1..5, otherwise usage_error
// What the options say, or the defaults.
parameter_fields fields_from_options(const command_options &options);

// Copies the fields into the database. A gel length below 2 is replaced by the database's own, in the field too, unless
// `length_from_field` asks for it as it stands.
void apply_parameters(class_DB_of_clones &database, parameter_fields &fields, bool length_from_field);

// Loads the library that the options name and applies the parameters in the order that the command line promises.
// Notes for people go through `streams`. False when nothing was loaded; the messages were shown.
exit_status load_library(project_state &session, const command_options &options, const command_streams &streams);

// The summary lines of a load: clones, copies, bands, parameters.
std::string text_of_library(project_state &session);
// Parameters of the library as they were in force, for run.json.
void record_library(project_state &session, run_record &record);
// The tables of simulated p-values that the options name, into the session and the record's inputs; to be called before
// `apply_metric`. run_failed for damaged tables, of which the message was shown.
exit_status load_pvalue_tables(project_state &session, const command_options &options, run_record &record,
                               const command_streams &streams);
// Says how many clones have sizes of which the tables know nothing, when the metric lives on tables.
void say_what_tables_leave_out(project_state &session, const command_streams &streams);
// Metric, cutoff and burying fraction into the settings; usage_error for an unknown or useless metric or a missing
// cutoff.
void apply_metric(project_state &session, const command_options &options);
void record_metric(project_state &session, run_record &record);

} // namespace orb
