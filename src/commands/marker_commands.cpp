// The commands on markers: read (any form into the native one), write (a row a clone), print (of a list of clones).
#include <functional>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "database/class_markers.h"

namespace orb {

namespace fs = std::filesystem;

static void add_marker_arguments(option_list &list, command_options &options, const char *result) {
  add_library_argument(list, options);
  list.add("markers", options.markers, "markers of clones, or clones of markers").type("MARKERS").needed();
  if (result == std::string("TABLE"))
    add_list_argument(list, options);
  add_output_options(list, options, result);
  list.add("--positions", options.positions, "positions of markers: marker, tab, position").type("FILE");
  add_library_options(list, options);
  add_common_options(list, options);
}

using marker_work = std::function<bool()>;

// The library with its markers is loaded, positions are added, `work` writes the result; the record goes beside it.
static exit_status with_markers(project_state &session, const command_options &options, const command_streams &streams,
                                const marker_work &work) {
  run_record record = record_beside_file(session, options);
  const exit_status status = library_for_stage(session, options, record, streams);
  if (status != exit_status::done)
    return status;
  if (!options.positions.empty()) {
    record.input_add(options.positions);
    if (!session.database().markers().read_file_with_marker_position(session.frame(), session.database(),
                                                                     options.positions))
      return stopped_or_failed(session);
  }
  if (!work())
    return stopped_or_failed(session);
  streams.results(options.out.string());
  return finish_record(record, exit_status::done);
}

void markers_read_options(option_list &list, command_options &options) {
  add_marker_arguments(list, options, "FILE.ORB");
}

exit_status markers_read_command(project_state &session, const command_options &options,
                                 const command_streams &streams) {
  return with_markers(session, options, streams, [&] {
    session.database().markers().file_about_markers_ORB_format_save(session.frame(), session.database(), options.out);
    return true;
  });
}

void markers_write_options(option_list &list, command_options &options) {
  add_marker_arguments(list, options, "FILE.txt");
}

exit_status markers_write_command(project_state &session, const command_options &options,
                                  const command_streams &streams) {
  return with_markers(session, options, streams, [&] {
    session.database().markers().file_with_list_of_markers_for_each_clone_save(session.frame(), session.database(),
                                                                               options.out);
    return true;
  });
}

void markers_print_options(option_list &list, command_options &options) {
  add_marker_arguments(list, options, "TABLE");
}

exit_status markers_print_command(project_state &session, const command_options &options,
                                  const command_streams &streams) {
  return with_markers(session, options, streams, [&] {
    number_list list;
    std::string name;
    if (!read_list(session, options.list, list, name))
      return false;
    session.database().markers().print_marker_presence_for_list_of_clones(session.frame(), session.database(), list,
                                                                          list.count(), options.out, name);
    return true;
  });
}

} // namespace orb
