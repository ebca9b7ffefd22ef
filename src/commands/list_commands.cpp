// The commands over one list of clones that score pairs: order and table.
#include <fmt/format.h>

#include "commands/command_steps.h"
#include "commands/commands.h"
#include "commands/library_stage.h"
#include "commands/net_stage.h"
#include "lists/class_list_of_clones.h"
#include "metrics/class_clone_text_distance.h"
#include "ordering/class_clone_ord_and_verif.h"

namespace orb {

namespace fs = std::filesystem;

static exit_status order_list(project_state &session, const command_options &options, const command_streams &streams) {
  number_list list;
  std::string name;
  if (!read_list(session, options.list, list, name))
    return stopped_or_failed(session);
  class_clone_ord_and_verif orderer(session.context(), nullptr, ordering_options_of(options));
  ordering_task task;
  task.list = list;
  task.absorb = session.settings().burying;
  task.name = name;
  task.flag = false; // the consensus and solution files
  task.folder = options.out;
  std::vector<ordering_work> works;
  if (!orderer.compute_all(std::span(&task, 1), works))
    return stopped_or_failed(session);
  fs::path file_order;
  orderer.write(works.front(), file_order);
  const ordering_work &work = works.front();
  streams.people(fmt::format(
      "{} of {} clones ordered, {} are buried in others. {}", work.n_used(), list.count(), list.count() - work.n_used(),
      work.proven() ? "No order has shorter steps." : "The search ended at its limit; a better order may exist."));
  streams.results(file_order.string());
  return exit_status::done;
}

void order_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_list_argument(list, options);
  add_output_options(list, options, "DIR");
  add_library_options(list, options);
  add_metric_options(list, options);
  add_ordering_options(list, options);
  add_common_options(list, options);
}

exit_status order_command(project_state &session, const command_options &options, const command_streams &streams) {
  run_record record = record_in_folder(session, options);
  exit_status status = library_and_metric(session, options, record, streams);
  if (status != exit_status::done)
    return status;
  record.input_add(options.list);
  record_ordering_options(options, record);
  record.stage_start("order");
  status = order_list(session, options, streams);
  record.stage_end();
  return finish_record(record, status);
}

// ---- table ---------------------------------------------------------------------------------------------------------

void table_options(option_list &list, command_options &options) {
  add_library_argument(list, options);
  add_list_argument(list, options);
  add_output_options(list, options, "DIR");
  list.add("--consecutive", options.only_consecutive, "only the table of each clone with the one before it");
  list.add("--all-pairs", options.only_all_pairs, "only the table of all pairs");
  list.add("--net", options.net, "of all pairs only those that this net joins").type("NET");
  std::string formats;
  for (std::int32_t format = 0; format < class_clone_text_distance::table_format_n_text_get(); ++format)
    formats += fmt::format(" {} {};", format, class_clone_text_distance::table_format_text_get(format));
  formats.pop_back();
  list.add("--table-format", options.table_format, "columns:" + formats).limits(0, 4).shown_default("0");
  add_library_options(list, options);
  add_metric_options(list, options);
  add_common_options(list, options);
}

static exit_status print_tables(project_state &session, const command_options &options,
                                const command_streams &streams) {
  number_list list;
  std::string name;
  if (!read_list(session, options.list, list, name))
    return stopped_or_failed(session);
  class_list_of_clones tables(session.frame(), session.settings());
  const bool both = options.only_consecutive == options.only_all_pairs;
  const fs::path consecutive = options.out / ("Consec_dist_" + name + ".txt");
  const fs::path all_pairs = options.out / ("All_dist_" + name + ".txt");
  if (both || options.only_consecutive) {
    std::vector<std::int32_t> gaps;
    if (!tables.print_consecuent_dist(list.count(), list, name, consecutive, gaps, true, session.context()))
      return stopped_or_failed(session);
    const std::int32_t weak = gaps[static_cast<std::size_t>(session.settings().distance_index)];
    streams.people(fmt::format("Steps below the cutoff: {} of {}.", weak, std::max(list.count() - 1, 0)));
    streams.results(consecutive.string());
  }
  if (both || options.only_all_pairs) {
    const pairs_of_table pairs = options.net.empty() ? pairs_of_table::all : pairs_of_table::from_net_only;
    if (!tables.print_all_dist(list, name, all_pairs, session.context(), &session.signif().net(), pairs))
      return stopped_or_failed(session);
    streams.results(all_pairs.string());
  }
  return exit_status::done;
}

exit_status table_command(project_state &session, const command_options &options, const command_streams &streams) {
  run_record record = record_in_folder(session, options);
  exit_status status = library_and_metric(session, options, record, streams);
  if (status == exit_status::done) {
    record.input_add(options.list);
    if (!options.net.empty()) {
      record.input_add(options.net);
      status = load_net(session, options.net, streams);
    }
  }
  if (status != exit_status::done)
    return status;
  record.stage_start("table");
  status = print_tables(session, options, streams);
  record.stage_end();
  return finish_record(record, status);
}

} // namespace orb
