#include "commands/cluster_printing.h"

namespace orb {

void describe_min_size(parameter_list &list, print_wishes &wishes) {
  list.add("min-size", wishes.min_size, "smaller clusters are united to a heap in the lists")
      .limits(1, 2000000000)
      .asked_else("6");
}

void describe_caption(parameter_list &list, print_wishes &wishes) {
  list.add("caption", wishes.caption, "begin of the names of the lists of clusters").asked_else("cluster");
}

void answer_printing_ahead(project_state &project, const print_wishes &wishes) {
  if (!wishes.caption.empty())
    project.frame().answer_ahead("Input caption for clusters", [caption = wishes.caption] { return caption; });
  if (wishes.min_size)
    project.frame().answer_ahead("Input minimal cluster size",
                                 [size = *wishes.min_size] { return std::to_string(size); });
}

} // namespace orb
