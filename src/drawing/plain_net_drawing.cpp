#include "drawing/plain_net_drawing.h"

#include <algorithm>

#include "drawing/class_net_draw.h"
#include "frame/numbers.h"
#include "lists/class_list_of_clones.h"

namespace orb {

namespace {

constexpr std::int16_t shape_ellipse = 0, size_of_vertex = 1, colour_blue = 5, colour_black = 10;
constexpr std::int16_t width_of_edge = 1, pattern_solid = 0;
constexpr double all_edges = -1; // threshold

// The clones of a file, ascending and each once. False when cancelled or refused.
bool read_sorted_list(const metric_context &context, std::filesystem::path file, const std::string &dialog_title,
                      number_list &list) {
  if (file.empty())
    file = context.frame.open_file_dialog(dialog_title);
  class_list_of_clones lists(context.frame, context.settings);
  std::string name;
  if (file.empty() || !lists.run_reading_file_with_list_of_clones(file, list, name, context.database))
    return false;
  lists.sort_list_of_clones_and_delete_repeats(list); // a message when there is none
  return !list.empty();
}

// Places in a sorted list of all clones.
number_list places_of(process_frame &frame, const class_DB_of_clones &database, const number_list &all,
                      const number_list &clones) {
  number_list places;
  const auto members = all.members();
  for (const clone_number clone : clones.members()) {
    const auto at = std::lower_bound(members.begin(), members.end(), clone);
    if (at != members.end() && *at == clone)
      places.add(static_cast<std::int32_t>(at - members.begin()) + 1);
    else
      frame.alarm("Clone " + database.name_of_clone_get(clone) + " is not presented in list of all clones in net!");
  }
  return places;
}

std::vector<std::string> captions_with_super_clone(const class_DB_of_clones &database, const number_list &all,
                                                   const number_list &new_number, vertex_number representative) {
  std::vector<std::string> captions(1);
  for (vertex_number v = 1; v <= all.count(); ++v)
    if (new_number(v) >= 1)
      captions.push_back(v == representative ? "SuperClone_" + std::to_string(all.count())
                                             : database.name_of_clone_get(all(v)));
  return captions;
}

} // namespace

bool plain_net_to_pajek(process_frame &frame, const class_net &net, const std::vector<std::string> &captions,
                        int decimals, std::string_view title, const std::filesystem::path &file) {
  const vertex_number n = net.number_of_vertices_get();
  class_net_draw drawing(frame);
  drawing.inicialisate_net(n);
  for (vertex_number v = 1; v <= n; ++v)
    drawing.add_vertex(captions[static_cast<std::size_t>(v)], shape_ellipse, size_of_vertex, colour_blue, colour_black);
  std::string label;
  for (vertex_number v = 1; v <= n; ++v)
    for (const net_edge &edge : net.edges_of_vertex(v)) {
      std::int32_t k = 0;
      edge_adress e = 0;
      bool is_told_there = false; // by the run of the lower end
      if (edge.neighbour < v)
        net.edge_is_exist_slow(edge.neighbour, v, k, e, is_told_there);
      if (is_told_there)
        continue;
      label.clear();
      number_text_append(label, edge.value, decimals);
      drawing.add_edge(std::min(v, edge.neighbour), std::max(v, edge.neighbour), edge.value, label, colour_black,
                       width_of_edge, pattern_solid, false);
    }
  return drawing.print_net_pajek(file, all_edges, title);
}

bool create_sub_net_list_into_one_vertex_run(class_clone_net_signif &signif, const overlap_rule &rule,
                                             const super_clone_options &options, std::filesystem::path &file) {
  const metric_context &context = signif.context();
  process_frame &frame = context.frame;
  number_list all, united;
  if (!read_sorted_list(context, options.file_all, "Open list of all clones in net", all) ||
      !read_sorted_list(context, options.file_united, "Open list of clones for placing into one vertex", united))
    return false;
  // The list is sorted, so that vertex v of its net is all(v).
  const number_list vertices = places_of(frame, context.database, all, united);
  if (vertices.empty())
    return false;
  frame.process_start("Placing of clones into one vertex");
  class_net net, contracted;
  number_list net_list, new_number;
  signif.create_net_general(all, all.count(), rule.distance_index, rule.cutoff, rule.burying, net, net_list);
  if (!frame.goes_on()) {
    frame.process_stopped_manually();
    return false;
  }
  net.create_sub_net_list_into_one_vertex(vertices, new_number, false, contracted);
  file = frame.path_in_working_folder("\\net_SuperClone.net");
  if (!plain_net_to_pajek(frame, contracted, captions_with_super_clone(context.database, all, new_number, vertices(1)),
                          2, "SuperClone", file)) {
    frame.process_stopped_manually();
    return false;
  }
  frame.all_panels_reset();
  return true;
}

} // namespace orb
