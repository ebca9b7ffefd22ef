#include "contigs/list_axis.h"

#include <fmt/format.h>

#include "contigs/class_contig_analysis.h"
#include "frame/numbers.h"

namespace orb {

bool find_axis(class_clone_net_signif &signif, ordering_task &task) {
  constexpr std::int32_t most_without_axis = 5000;
  if (task.list.count() <= most_in_one_search)
    return true;
  class_contig_analysis contig(signif, task.rule);
  contig.list_of_clones_set(task.list, task.list.count());
  contig.contig_topology_analyse_and_MTP_and_ordering_without_TSP();
  task.axis = contig.axis_of_list();
  if (!task.axis.empty() || task.list.count() <= most_without_axis)
    return true;
  return signif.context().frame.refuse(
      fmt::format("The {} clones of the list don't hang together at the cutoff. More than {} are "
                  "ordered only when they do.",
                  number_text_thousands(task.list.count()), number_text_thousands(most_without_axis)));
}

} // namespace orb
