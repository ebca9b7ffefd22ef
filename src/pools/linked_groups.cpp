#include "pools/linked_groups.h"

#include "clustering/class_clustering.h"
#include "frame/class_math1.h"
#include "net/relevant_clones.h"

namespace orb {

std::vector<number_list> linked_groups_of(class_clone_net_signif &signif, const overlap_rule &rule,
                                          const number_list &list) {
  const metric_context &context = signif.context();
  class_net net;
  number_list place_of_vertex;
  signif.create_net_general_run(list, rule, net, place_of_vertex);
  number_list component, number_of_place;
  std::int32_t n = 0;
  net.clustering_based_on_net(component, n);
  number_of_place.resize(list.count());
  for (vertex_number v = 1; v <= list.count(); ++v)
    number_of_place(place_of_vertex(v)) = component(v);
  class_clustering clusters(context.frame, context.settings, &context.database);
  clusters.clustering_start_no_metric("", list.count(), list);
  clusters.cluster_number_for_all_elements_set(number_of_place);
  clusters.create_arrays_for_clusters(true, true);
  std::vector<number_list> groups(static_cast<std::size_t>(clusters.number_of_clusters_get()));
  for (std::size_t k = 0; k < groups.size(); ++k) {
    clusters.read_from_arrays_for_clusters(static_cast<std::int32_t>(k) + 1, groups[k]);
    for (std::int32_t &member : groups[k].members())
      member = list(member);
  }
  return groups;
}

bool list_with_linked_clones(class_clone_net_signif &signif, const overlap_rule &rule, const number_list &list,
                             std::int32_t rank, const std::string &name, number_list &extended) {
  const metric_context &context = signif.context();
  if (context.settings.use_file_with_connections) {
    number_list ranks;
    create_relevant_clones_using_net2(context, list, rank, rule.cutoff, false, signif.net(), extended, ranks);
  } else {
    pumping_options wanted;
    wanted.start_list = list;
    wanted.n_rank_limit = rank;
    pumping_result grown;
    nasos_clones(context, rule, wanted, grown);
    if (!grown.completed)
      return false;
    extended = std::move(grown.list);
    class_math1::sort_list_of_long_and_delete_repeats(extended);
  }
  if (!name.empty())
    print_relevant_clones(context, extended, rule, name, rank);
  return true;
}

} // namespace orb
