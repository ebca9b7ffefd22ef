#include "commands/open_nets.h"

#include "viewer/net_file.h"
#include "viewer/net_layout.h"

namespace orb {

namespace {

// Growth from nothing and one run of the springs.
bool lay_out_own(class_net_elng &net, int threads, process_frame &frame) {
  for (node_elng &node : net.nodes_for_layout())
    node.is_coor_known = false;
  net.SelectAll();
  net.SelectedNodesCoorUnFroze();
  net.UnselectAll();
  if (!lay_out_by_growth(net, frame))
    return false;
  net.SelectAll(); // growth freezes what it has placed; the springs are to move it
  net.SelectedNodesCoorUnFroze();
  net.UnselectAll();
  spring_run springs(net, threads);
  spring_values values;
  for (std::int32_t i = 1; i <= most_steps_of_a_run && frame.goes_on(); ++i)
    if (const spring_step step = springs.step(false, values, frame); is_at_rest(i, step) || !step.go_on)
      break;
  springs.put_into(net);
  return !frame.stop_requested_get();
}

} // namespace

void describe_layout(parameter_list &list, layout_parameters &p) {
  list.add("layout", p.layout,
           "places of the nodes: own (growth, then springs), circle, clusters, multilevel (by steps along the edges), "
           "unfolded (the same without edges that are probably false)")
      .one_of({"own", "circle", "clusters", "multilevel", "unfolded"})
      .unset("as in the file; multilevel where it has none");
}

bool lay_out(class_net_elng &net, const layout_parameters &p, double aspect, project_state &project,
             random_source &chance) {
  const int threads = project.settings().threads;
  if (p.layout == "circle")
    lay_out_on_circle(net);
  else if (p.layout == "own")
    return lay_out_own(net, threads, project.frame());
  else if (p.layout == "clusters") {
    lay_out_on_circle(net); // nodes without a cluster stay on it
    lay_out_by_clusters(net, chance);
  } else if (p.layout == "multilevel" || p.layout == "unfolded" || !net.coor_are_known_get())
    return lay_out_multilevel(net, {aspect, project.settings().seed, threads, p.layout == "unfolded"}, project.frame());
  return true;
}

bool read_net(const std::filesystem::path &file, const net_sources &sources, class_net_elng &net) {
  bool all_or_none = false;
  if (!net.ReadNetFile(sources, file, true, all_or_none))
    return false;
  net.make_cluster_info(sources);
  return true;
}

} // namespace orb
