// Stages on nets that several commands share: loading a net that fits the library, revising it, making contigs.
#pragma once

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "contigs/class_contig_adapt_clust.h"
#include "reports/run_record.h"

namespace orb {

// `check_output` for the reports that a revision writes beside its net.
void check_revision_reports(const project_state &session, const command_options &options,
                            const std::filesystem::path &folder);
// Loads a native net as the session's current one. Refused: a net of another library (by its run record), of another
// number of clones, or damaged. Settles from the record whether the net's metric is the one in use, and warns of a
// cutoff below what the net can know.
exit_status load_net(project_state &session, const std::filesystem::path &file, const command_streams &streams);

// Makes the net in memory and saves it; says what was found.
exit_status make_net(project_state &session, const std::filesystem::path &out, run_record &record,
                     const command_streams &streams);
// Saves the current net as `out` and says how many overlaps it has.
void save_net(project_state &session, const std::filesystem::path &out, run_record &record,
              const command_streams &streams);
exit_status revise_net(project_state &session, const command_options &options, const std::filesystem::path &out,
                       run_record &record, const command_streams &streams);
// The additional cutoff as a number, after the form's rules; usage_error with the form's text otherwise.
double additional_cutoff(const project_state &session, const command_options &options);

// Which of the forms "net", "graphml" or "both" a drawing takes.
void set_drawing_format(const command_options &options, drawing_options &drawing);
// What is written of each contig. The question that each table of pairs would ask is asked once a run.
contig_files files_of_contigs(project_state &session, const command_options &options);
exit_status make_contigs(project_state &session, const command_options &options, run_record &record,
                         const command_streams &streams);
void record_contig_options(const command_options &options, run_record &record);
void record_ordering_options(const command_options &options, run_record &record);
ordering_options ordering_options_of(const command_options &options);

// What every stage on a library begins with: the library, in the record too.
exit_status library_for_stage(project_state &session, const command_options &options, run_record &record,
                              const command_streams &streams);
// The same with the metric and the tables that it may need.
exit_status library_and_metric(project_state &session, const command_options &options, run_record &record,
                               const command_streams &streams);

} // namespace orb
