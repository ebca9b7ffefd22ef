// Places for all nodes of an open net by one of the layouts, and the springs step by step.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "viewer/class_net_elng.h"
#include "viewer/multilevel_layout.h"
#include "viewer/spring_layout.h"

namespace orb {

// The first places of a run of the springs; each leaves the nodes with known places and the box as it has become.
void lay_out_on_circle(class_net_elng &net);
void lay_out_by_clusters(class_net_elng &net, random_source &chance);
// False when stopped: the nodes that were reached have places.
bool lay_out_by_growth(class_net_elng &net, process_frame &frame);
// By the distances along the edges. False when stopped, with what was reached.
bool lay_out_multilevel(class_net_elng &net, const multilevel_options &options, process_frame &frame);

// A run of the springs over an open net: made from it, stepped, and put back into it.
class spring_run {
public:
  spring_run(const class_net_elng &net, int threads);
  // `warned`: that no unfrozen node has an edge was asked.
  spring_step step(bool use_exp, spring_values &values, process_frame &frame);
  void put_into(class_net_elng &net) const;

private:
  std::vector<layout_edge> edges_;
  spring_layout springs_;
  spring_nodes nodes_;
  bool warned_ = false;
};

constexpr std::int32_t most_steps_of_a_run = 100;
// After this many steps a run ends when the nodes rest.
bool is_at_rest(std::int32_t steps_done, const spring_step &step);

} // namespace orb
