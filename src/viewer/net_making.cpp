// Nets of lists of clones.
#include <algorithm>

#include "frame/class_math1.h"
#include "frame/numbers.h"
#include "viewer/class_net_elng.h"
#include "viewer/clone_records.h"

namespace orb {

namespace {

// The clones of a list in its order, each once.
number_list each_once(const net_sources &sources, const number_list &list) {
  const std::int32_t n_clones = sources.database.total_number_of_clones_get();
  std::vector<bool> met(static_cast<std::size_t>(n_clones) + 1, false);
  number_list clones;
  for (const clone_number clone : list.members()) {
    if (clone < 1 || clone > n_clones || met[static_cast<std::size_t>(clone)])
      continue;
    met[static_cast<std::size_t>(clone)] = true;
    clones.add(clone);
  }
  return clones;
}

// The net of a list; place_of(v) is the place in the list of vertex v.
void net_of_list(const net_sources &sources, const number_list &list, double cutoff, value_source source,
                 class_net &net, number_list &place_of) {
  place_of = number_list::range(1, list.count());
  if (source == value_source::bands) {
    sources.signif.create_net_without_using_previous_net(list, list.count(), sources.rule.distance_index, cutoff,
                                                         sources.rule.burying, net);
    return;
  }
  number_list sorted = list;
  class_net cut;
  sources.signif.net().create_sub_net(sorted, sorted.count(), false, &place_of, cut, sources.signif.workspace());
  cut.create_sub_net_without_edges_small_or_large_value(cutoff, net, true);
}

std::vector<edge_elng> edges_of_net(const net_sources &sources, const class_net &net, const number_list &place_of,
                                    double cutoff, const std::vector<node_elng> &nodes) {
  std::vector<edge_elng> edges(1);
  for (vertex_number i = 1; i <= net.number_of_vertices_get(); ++i)
    for (const net_edge &link : net.edges_of_vertex(i)) {
      if (link.neighbour <= i || !(link.value >= cutoff))
        continue;
      const auto [from, to] = std::minmax({place_of(i), place_of(link.neighbour)});
      edges.push_back(edge_of_score(from, to, link.value));
      edge_overlay_set(sources, nodes[static_cast<std::size_t>(from)], nodes[static_cast<std::size_t>(to)],
                       edges.back());
    }
  return edges;
}

// Clones of the names; false when the user gave up at one that is unknown.
bool clones_of_names(const net_sources &sources, const std::vector<std::string> &names, number_list &list) {
  if (!sources.database.clone_name_sorted_is_created_get())
    sources.database.sort_clones_by_name(sources.frame);
  list.clear();
  for (const std::string &name : names) {
    if (const clone_number clone = sources.database.clone_number_get(name); clone > 0) {
      list.add(clone);
      continue;
    }
    question unknown;
    unknown.text = "Unknown clone name: " + name;
    unknown.choice = answer_choice::ok_cancel;
    unknown.by_default = answer::yes;
    unknown.marks_failure = true;
    unknown.explanation = "OK leaves the name out and goes on with the next one; cancel makes no net.";
    if (!sources.frame.yes(unknown))
      return false;
  }
  class_math1::sort_list_of_long_and_delete_repeats(list);
  return true;
}

} // namespace

void class_net_elng::make_net_for_clones_from_text(const net_sources &sources, std::string_view text, double cutoff,
                                                   bool use_net, bool &ok) {
  ok = false;
  number_list list;
  if (clones_of_names(sources, names_in_text(text), list))
    make_net_for_list_of_clones(sources, list, cutoff, use_net, ok);
}

void class_net_elng::read_list_of_clones_and_make_net(const net_sources &sources, double cutoff, bool use_net, bool &ok,
                                                      std::filesystem::path file) {
  ok = false;
  std::string text;
  if (text_of_list_file(sources, std::move(file), text))
    make_net_for_clones_from_text(sources, text, cutoff, use_net, ok);
}

void class_net_elng::make_net_for_list_of_clones(const net_sources &sources, const number_list &list, double cutoff,
                                                 bool use_net, bool &ok, const std::string &default_name) {
  ok = false;
  input_box name{"Name of list of nodes (will be used as a caption)", "Create net...", default_name};
  name.explanation = "The net is named so, with the cutoff behind it.";
  const std::string caption = list.empty() ? default_name : sources.frame.input(name);
  if (!caption.empty())
    make_net_for_list_of_clones_run(sources, list, cutoff, use_net, caption, ok);
}

void class_net_elng::make_net_for_list_of_clones_run(const net_sources &sources, const number_list &list, double cutoff,
                                                     bool use_net, const std::string &caption, bool &ok) {
  ok = false;
  const number_list clones = each_once(sources, list);
  if (clones.empty())
    return sources.frame.message("No clones!");
  auto net = std::make_shared<class_net>();
  number_list place_of;
  net_of_list(sources, clones, cutoff, sources.value_source_get(use_net), *net, place_of);
  if (sources.frame.stop_requested_get())
    return;
  std::vector<node_elng> nodes(1);
  nodes.reserve(static_cast<std::size_t>(clones.count()) + 1);
  for (const clone_number clone : clones.members())
    nodes.push_back(node_of_clone(sources, clone));
  std::vector<edge_elng> edges = edges_of_net(sources, *net, place_of, cutoff, nodes);
  contents_set(caption + "_" + number_text(cutoff, 1), std::move(nodes), std::move(edges), false);
  net_ = std::move(net);
  make_cluster_info(sources);
  ok = true;
  if (private_n_vertices_ < 2)
    return;
  number_list component;
  std::int32_t n_components = 0;
  net_->clustering_based_on_net(component, n_components);
  ok = n_components == 1;
  if (!ok)
    sources.frame.alarm("Net is not connected! Number of connected components =" + std::to_string(n_components));
}

} // namespace orb
