#include "viewer/view_hints.h"

#include <algorithm>

#include "clustering/class_FPCto_import.h"
#include "clustering/contig_map.h"
#include "frame/class_serv_raznoe.h"
#include "net/q_mark.h"

namespace orb {

namespace {

std::string verdict_of(const class_net &net, clone_number clone) {
  std::int32_t n_Q = 0;
  net.number_of_vertices_with_index_get(q_mark, n_Q);
  switch (verdict_in_net(net, n_Q, clone)) {
  case Q_verdict::Q_clone:
    return "Q-clone: its overlaps were removed";
  case Q_verdict::kept:
    return "kept by the revision";
  case Q_verdict::unknown:
    break;
  }
  return "no Q-clones are marked in the net";
}

std::string contig_of(const net_sources &sources, clone_number clone) {
  if (!sources.database.contigs_are_specified_get() || sources.database.contigs() == nullptr)
    return {};
  const cluster_id id = sources.database.contigs()->clone_in_cluster_get(clone);
  return id > 0 ? "contig " + sources.database.contigs()->name_of_cluster_get(id) : "in no contig";
}

} // namespace

std::string hint_of_node(const net_sources &sources, const class_net_elng &net, vertex_number node) {
  if (node < 1 || node > net.n_vertices_get())
    return {};
  const node_elng &of = net.nodes()[static_cast<std::size_t>(node)];
  const auto n_here = std::count_if(net.edges().begin() + 1, net.edges().end(),
                                    [node](const edge_elng &edge) { return edge.from == node || edge.to == node; });
  std::string text = of.caption;
  if (of.clone_id < 1 || of.clone_id > sources.database.total_number_of_clones_get())
    return text + "\nno clone of the library\n" + std::to_string(n_here) + " overlaps here";
  const clone_number clone = of.clone_id;
  text += "\n" + std::to_string(sources.database.number_of_bands_in_clone_get(clone)) + " bands";
  if (const std::string contig = contig_of(sources, clone); !contig.empty())
    text += "\n" + contig;
  text += "\n" + std::to_string(n_here) + " overlaps here";
  if (sources.net_is_loaded())
    text += ", " + std::to_string(sources.signif.net().edges_of_vertex(clone).size()) + " in the net of the library\n" +
            verdict_of(sources.signif.net(), clone);
  return text;
}

std::string hint_of_edge(const class_net_elng &net, std::int32_t edge) {
  if (edge < 1 || edge > net.n_edges_get())
    return {};
  const edge_elng &of = net.edges()[static_cast<std::size_t>(edge)];
  const auto name = [&net](vertex_number n) { return net.nodes()[static_cast<std::size_t>(n)].caption; };
  return name(of.from) + " - " + name(of.to) + (of.caption.empty() ? "" : ": " + of.caption) +
         (of.mark_caption.empty() ? "" : " (" + of.mark_caption + ")");
}

vertex_number node_by_name(const class_net_elng &net, const std::string &text) {
  if (text.empty())
    return -1;
  const std::string wanted = class_serv_raznoe::text_transform_to_lower_case(text);
  vertex_number begins = -1, holds = -1;
  for (vertex_number n = 1; n <= net.n_vertices_get(); ++n) {
    const std::string &caption = net.nodes()[static_cast<std::size_t>(n)].caption;
    if (caption == text)
      return n;
    const std::size_t at = class_serv_raznoe::text_transform_to_lower_case(caption).find(wanted);
    if (at == 0 && begins < 0)
      begins = n;
    if (at != std::string::npos && holds < 0)
      holds = n;
  }
  return begins > 0 ? begins : holds;
}

} // namespace orb
