#include "net/derived_nets.h"

namespace orb {

namespace {

std::filesystem::path asked_native_file(process_frame &frame, const std::string &proposed_name) {
  return frame.save_file_dialog_checked("Save net of significant clone overlaps in the ORB-specific format",
                                        proposed_name, "ORB-Net Signif files (*.ORBns)|*.ORBns");
}

} // namespace

bool create_net_by_rule(class_clone_net_signif &signif, const class_net &net_in, const overlap_rule &rule,
                        const net_by_rule_options &options, class_net &net) {
  process_frame &frame = signif.context().frame;
  const std::int32_t n = net_in.number_of_vertices_get();
  const number_list all = number_list::range(1, n);
  class_net with_markers, made;
  if (options.with_markers) {
    signif.create_sub_net_same_metric_plus_markers(all, n, rule.distance_index, rule.cutoff, rule.burying, net_in,
                                                   with_markers);
    if (!frame.goes_on())
      return false;
  }
  // With markers and the same metric the cutoff was looked at already.
  if (options.with_markers && options.same_metric)
    made = std::move(with_markers);
  else
    signif.create_sub_net_different_metric_or_cutoff(all, n, options.same_metric, rule.distance_index, rule.cutoff,
                                                     rule.burying, options.with_markers ? with_markers : net_in, made);
  if (!frame.goes_on())
    return false;
  net = std::move(made);
  return true;
}

bool create_subnet_significant_connections_type(class_clone_net_signif &signif, const overlap_rule &rule,
                                                std::filesystem::path &file) {
  const metric_context &context = signif.context();
  process_frame &frame = context.frame;
  frame.process_start("Creation of subnet of significant clone overlaps");
  const std::int32_t n = context.database.total_number_of_clones_get();
  class_net net;
  number_list net_list;
  signif.create_net_general(number_list::range(1, n), n, rule.distance_index, rule.cutoff, rule.burying, net, net_list);
  if (!frame.goes_on()) {
    frame.process_stopped_manually();
    return false;
  }
  if (file.empty())
    file = asked_native_file(frame, "net.ORBns");
  if (file.empty()) {
    frame.process_canceled();
    return false;
  }
  if (!net.save_net_type(frame, file)) {
    frame.process_stopped_manually();
    return false;
  }
  frame.all_panels_reset();
  return true;
}

bool create_sub_net_list_disconnect(class_clone_net_signif &signif, const number_list &list,
                                    std::filesystem::path &file) {
  process_frame &frame = signif.context().frame;
  class_net marked, without;
  signif.net().create_net_copy(marked);
  // The mark of Q-clones, unless vertices bear it already: those would be disconnected too.
  std::int16_t mark = 0;
  for (std::int32_t n_bearing = 1; n_bearing > 0;)
    marked.number_of_vertices_with_index_get(--mark, n_bearing);
  for (const clone_number clone : list.members())
    if (clone >= 1 && clone <= marked.number_of_vertices_get())
      marked.change_vertex_index(clone, mark);
  marked.create_sub_net_with_disconnected_vertices_index(mark, without);
  without.test_neighbours_sorted();
  if (file.empty())
    file = asked_native_file(frame, "net1.ORBns");
  if (file.empty())
    return false;
  if (!without.save_net_type(frame, file))
    return false;
  frame.log_line("Net of significant clone overlaps without disconnected clones saved\r\n\tto file " + file.string());
  return true;
}

} // namespace orb
