#include "viewer/clone_records.h"

#include <algorithm>
#include <array>

#include "clustering/class_FPCto_import.h"
#include "frame/numbers.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::int16_t lowest_type = -1, type_without_edges = 5;
constexpr std::int32_t black = 1;
// Entries of the palette for the types from -1: WHITE, GREEN, YELLOW, BROWN, DARK_GREEN, RED, BLACK.
constexpr std::array<std::int32_t, 7> fill_of_type{12, 7, 13, 3, 16, 10, 1};

struct score_colour {
  double below;
  std::int32_t entry;
};
constexpr std::array<score_colour, 5> colours_of_scores{
    {{100, 12 /*WHITE*/}, {500, 13 /*YELLOW*/}, {1000, 8 /*ORANGE*/}, {2000, 10 /*RED*/}, {3000, 2 /*BLUE*/}}};

colour_value colour_of_score(double value) {
  for (const score_colour &step : colours_of_scores)
    if (value < step.below)
      return palette_colour(step.entry).value;
  return palette_colour(black).value;
}

// The records of a clone's run that lead to another clone.
std::span<const net_edge> links_between(const class_net &net, clone_number from, clone_number to) {
  const std::span<const net_edge> run = net.edges_of_vertex(from);
  if (!net.neighbours_are_sorted_get())
    return run;
  const auto first = std::lower_bound(run.begin(), run.end(), to,
                                      [](const net_edge &edge, clone_number clone) { return edge.neighbour < clone; });
  auto last = first;
  while (last != run.end() && last->neighbour == to)
    ++last;
  return run.subspan(static_cast<std::size_t>(first - run.begin()), static_cast<std::size_t>(last - first));
}

bool is_in_net(const net_sources &sources, const node_elng &node) {
  return node.clone_id > 0 && sources.net_is_loaded() && node.clone_id <= sources.signif.net().number_of_vertices_get();
}

} // namespace

std::int32_t cluster_of_clone(const net_sources &sources, clone_number clone) {
  if (!sources.database.contigs_are_specified_get() || sources.database.contigs() == nullptr)
    return -1;
  return sources.database.contigs()->clone_in_cluster_get(clone);
}

node_elng node_of_clone(const net_sources &sources, clone_number clone) {
  node_elng node;
  node.clone_id = clone;
  node.caption = sources.database.name_of_clone_get(clone);
  node.cluster_id = cluster_of_clone(sources, clone);
  vertex_overlay_set(sources, node);
  return node;
}

edge_elng edge_of_score(vertex_number from, vertex_number to, double value) {
  edge_elng edge;
  edge.from = from;
  edge.to = to;
  edge.value = value;
  edge.caption = number_text(value, 2);
  std::string_view name;
  color_name_of_scale(color_for_value(value, 0, -1), name);
  edge.c_name = name;
  edge.c = color_from_name(name);
  return edge;
}

void vertex_overlay_set(const net_sources &sources, node_elng &node) {
  if (!is_in_net(sources, node))
    return;
  const std::int16_t type = sources.signif.net().index_of_vertex_get(node.clone_id);
  if (type < lowest_type)
    return;
  node.is_marked = true;
  node.mark_caption.clear();
  node.mark_shape = 0;
  node.mark_size = node.size >= 2 ? static_cast<std::int16_t>(std::min(2 * node.size, INT16_MAX)) : std::int16_t{10};
  const auto place = static_cast<std::size_t>(type - lowest_type);
  node.mark_ic = palette_colour(place < fill_of_type.size() ? fill_of_type[place] : black).value;
  node.mark_bc = palette_colour(black).value;
}

void edge_overlay_set(const net_sources &sources, const node_elng &from, const node_elng &to, edge_elng &edge) {
  if (!from.is_marked || !to.is_marked || !is_in_net(sources, from) || !is_in_net(sources, to))
    return;
  const class_net &net = sources.signif.net();
  for (const clone_number clone : {from.clone_id, to.clone_id})
    if (const std::int16_t type = net.index_of_vertex_get(clone); type < 0 || type == type_without_edges)
      return;
  double largest = 0;
  std::string text;
  for (const net_edge &link : links_between(net, from.clone_id, to.clone_id)) {
    if (link.neighbour != to.clone_id)
      continue;
    largest = text.empty() ? link.value : std::max(largest, link.value);
    if (!text.empty())
      text += ',';
    number_text_append(text, link.value, 1);
  }
  if (text.empty())
    return;
  edge.is_marked = true;
  edge.mark_caption = std::move(text);
  edge.mark_c = colour_of_score(largest);
}

class_clone_dist_my &gate_on_bands(const net_sources &sources, double cutoff) {
  sources.gate.net_private_parameters_set_interface(at_cutoff(sources.rule, cutoff));
  sources.gate.use_net_set(false);
  return sources.gate;
}

std::vector<std::string> names_in_text(std::string_view text) {
  std::vector<std::string> names;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n\t"), text.size());
    const std::string_view name = trimmed(text.substr(0, end), " ");
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!name.empty())
      names.emplace_back(name);
  }
  return names;
}

} // namespace orb
