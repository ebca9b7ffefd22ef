// The commands on lists of clones as sets and files: list sort, intersect, minus, unite, format, select.
#include <fmt/format.h>
#include <functional>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace fs = std::filesystem;

using list_work = std::function<bool(class_list_of_clones &)>;

// What all of them share: the result may not be there yet, the library is loaded where one is needed, and the run
// leaves its record beside the result. `work` makes the file.
static exit_status make_list(project_state &session, const command_options &options, const command_streams &streams,
                             const list_work &work) {
  run_record record = record_beside_file(session, options);
  if (!options.input.empty()) {
    const exit_status status = library_for_stage(session, options, record, streams);
    if (status != exit_status::done)
      return status;
  }
  for (const fs::path &file : {options.list, options.list_2})
    if (!file.empty())
      record.input_add(file);
  if (!options.fingerprints.empty())
    record.inputs_add(options.fingerprints);
  class_list_of_clones lists(session.frame(), session.settings());
  const exit_status status = work(lists) ? exit_status::done : stopped_or_failed(session);
  if (status == exit_status::done)
    streams.results(options.out.string());
  return finish_record(record, status);
}

static void say_count(const command_streams &streams, const number_list &list) {
  streams.people(fmt::format("Clones in the list: {}.", list.count()));
}

// ---- sort ----------------------------------------------------------------------------------------------------------

void list_sort_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_list_argument(list, options);
  add_output_options(list, options, "LIST");
  add_library_options(list, options);
  add_common_options(list, options);
}

exit_status list_sort_command(project_state &session, const command_options &options, const command_streams &streams) {
  return make_list(session, options, streams, [&](class_list_of_clones &lists) {
    number_list made;
    std::string name;
    if (!read_list(session, options.list, made, name))
      return false;
    lists.sort_list_of_clones_and_delete_repeats(made);
    say_count(streams, made);
    lists.print_list_of_clones(made, options.out, session.database());
    return true;
  });
}

// ---- two lists -----------------------------------------------------------------------------------------------------

void list_pair_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_list_argument(list, options);
  list.add("list2", options.list_2, "names of clones, one a line").type("LIST2").needed();
  add_output_options(list, options, "LIST");
  add_library_options(list, options);
  add_common_options(list, options);
}

using pair_of_files_work = bool (class_list_of_clones::*)(class_DB_of_clones &, const fs::path &, const fs::path &,
                                                          fs::path);

static exit_status combine_lists(project_state &session, const command_options &options, const command_streams &streams,
                                 pair_of_files_work combine) {
  return make_list(session, options, streams, [&](class_list_of_clones &lists) {
    return (lists.*combine)(session.database(), options.list, options.list_2, options.out);
  });
}

exit_status list_intersect_command(project_state &session, const command_options &options,
                                   const command_streams &streams) {
  return combine_lists(session, options, streams, &class_list_of_clones::find_intersection_of_contigs);
}

exit_status list_minus_command(project_state &session, const command_options &options, const command_streams &streams) {
  return combine_lists(session, options, streams, &class_list_of_clones::find_ctg1_minus_ctg2);
}

exit_status list_unite_command(project_state &session, const command_options &options, const command_streams &streams) {
  return combine_lists(session, options, streams, &class_list_of_clones::find_ctg1_plus_ctg2);
}

// ---- format --------------------------------------------------------------------------------------------------------

void list_format_options(option_list &list, command_options &options) {
  add_list_argument(list, options);
  add_output_options(list, options, "LIST");
  list.add("--name-format-in", options.name_format_in, "clone name format of the list").limits(0, 8);
  list.add("--name-format-out", options.name_format_out, "clone name format of the result").limits(0, 8);
  add_common_options(list, options);
}

exit_status list_format_command(project_state &session, const command_options &options,
                                const command_streams &streams) {
  session.settings().clone_name_format_input = options.name_format_in;
  session.settings().clone_name_format_output = options.name_format_out;
  return make_list(session, options, streams, [&](class_list_of_clones &lists) {
    return lists.transform_list_of_clones(options.list, options.out);
  });
}

// ---- select --------------------------------------------------------------------------------------------------------

void list_select_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_list_argument(list, options);
  list.add("fingerprints", options.fingerprints, "folder of .sizes files, or one file, whose records are copied")
      .type("FINGERPRINTS")
      .needed();
  add_output_options(list, options, "FILE");
  list.add("--frequency", options.frequency_cutoff, "leave bands out that are more frequent among the clones")
      .type("X")
      .shown_default("1.00");
  add_library_options(list, options);
  add_common_options(list, options);
}

exit_status list_select_command(project_state &session, const command_options &options,
                                const command_streams &streams) {
  return make_list(session, options, streams, [&](class_list_of_clones &lists) {
    number_list chosen;
    std::string name;
    if (!read_list(session, options.list, chosen, name))
      return false;
    say_count(streams, chosen);
    return lists.create_file_with_clons_with_list_of_bands(chosen, chosen.count(), session.database(),
                                                           options.fingerprints, options.out, options.frequency_cutoff);
  });
}

} // namespace orb
