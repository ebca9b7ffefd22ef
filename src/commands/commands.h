// The table of commands and their handlers: what a script or a menu can ask for.
#pragma once

#include <functional>
#include <iosfwd>
#include <span>
#include <string>

#include "commands/command_options.h"
#include "commands/option_rows.h"
#include "frame/failures.h"
#include "project/project_state.h"

namespace orb {

// Where a command puts what isn't a file: `results` is standard output, `people` is standard error.
struct command_streams {
  std::function<void(const std::string &)> results;
  std::function<void(const std::string &)> people;
};

struct command_row {
  const char *name;      // one word, or a group and a word: "list sort"
  const char *arguments; // as shown in the help
  const char *purpose;
  const char *example;
  void (*options)(option_list &, command_options &); // what the command takes
  exit_status (*handler)(project_state &, const command_options &, const command_streams &);
};

std::span<const command_row> table_of_commands();

// Each command: its options and its handler.
void load_options(option_list &, command_options &);
exit_status load_command(project_state &, const command_options &, const command_streams &);
void net_options(option_list &, command_options &);
exit_status net_command(project_state &, const command_options &, const command_streams &);
void revise_options(option_list &, command_options &);
exit_status revise_command(project_state &, const command_options &, const command_streams &);
void contigs_options(option_list &, command_options &);
exit_status contigs_command(project_state &, const command_options &, const command_streams &);
void order_options(option_list &, command_options &);
exit_status order_command(project_state &, const command_options &, const command_streams &);
void draw_options(option_list &, command_options &);
exit_status draw_command(project_state &, const command_options &, const command_streams &);
void table_options(option_list &, command_options &);
exit_status table_command(project_state &, const command_options &, const command_streams &);
void list_sort_options(option_list &, command_options &);
exit_status list_sort_command(project_state &, const command_options &, const command_streams &);
void list_pair_options(option_list &, command_options &); // of the next three
exit_status list_intersect_command(project_state &, const command_options &, const command_streams &);
exit_status list_minus_command(project_state &, const command_options &, const command_streams &);
exit_status list_unite_command(project_state &, const command_options &, const command_streams &);
void list_format_options(option_list &, command_options &);
exit_status list_format_command(project_state &, const command_options &, const command_streams &);
void list_select_options(option_list &, command_options &);
exit_status list_select_command(project_state &, const command_options &, const command_streams &);
void markers_read_options(option_list &, command_options &);
exit_status markers_read_command(project_state &, const command_options &, const command_streams &);
void markers_write_options(option_list &, command_options &);
exit_status markers_write_command(project_state &, const command_options &, const command_streams &);
void markers_print_options(option_list &, command_options &);
exit_status markers_print_command(project_state &, const command_options &, const command_streams &);
void retain_options(option_list &, command_options &);
exit_status retain_command(project_state &, const command_options &, const command_streams &);
void report_options(option_list &, command_options &);
exit_status report_command(project_state &, const command_options &, const command_streams &);
void assemble_options(option_list &, command_options &);
exit_status assemble_command(project_state &, const command_options &, const command_streams &);
void simulate_library_options(option_list &, command_options &);
exit_status simulate_library_command(project_state &, const command_options &, const command_streams &);
void simulate_digest_options(option_list &, command_options &);
exit_status simulate_digest_command(project_state &, const command_options &, const command_streams &);
void evaluate_options(option_list &, command_options &);
exit_status evaluate_command(project_state &, const command_options &, const command_streams &);
void pvalue_score_options(option_list &, command_options &);
exit_status pvalue_score_command(project_state &, const command_options &, const command_streams &);
void pvalue_estimate_options(option_list &, command_options &);
exit_status pvalue_estimate_command(project_state &, const command_options &, const command_streams &);
void pvalue_table_options(option_list &, command_options &);
exit_status pvalue_table_command(project_state &, const command_options &, const command_streams &);
void pvalue_lookup_options(option_list &, command_options &);
exit_status pvalue_lookup_command(project_state &, const command_options &, const command_streams &);
void info_options(option_list &, command_options &);
exit_status info_command(project_state &, const command_options &, const command_streams &);

// Runs one command with everything around it: start and end of the log, the stop flag, exceptions, exit status.
exit_status run_command(project_state &session, const command_options &options, const command_streams &streams);

// A mistake on the command line found by a handler; shown by `run_command`, exit status 2.
class usage_error : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace orb
