#include "commands/clone_colours.h"

#include <algorithm>
#include <optional>

namespace orb {

namespace {

// Safe for eyes that don't tell red from green (Okabe and Ito 2008).
constexpr colour_value rgb(int red, int green, int blue) {
  return red + 256 * green + 65536 * blue;
}
constexpr colour_value sheet_blue = rgb(0, 114, 178), sheet_orange = rgb(213, 94, 0), sheet_grey = rgb(190, 198, 204),
                       sheet_white = rgb(255, 255, 255);
constexpr colour_value cluster_colours[]{rgb(0, 114, 178),  rgb(230, 159, 0), rgb(0, 158, 115),  rgb(204, 121, 167),
                                         rgb(86, 180, 233), rgb(213, 94, 0),  rgb(240, 228, 66), rgb(120, 120, 120)};
constexpr std::size_t n_cluster_colours = std::size(cluster_colours);

// The colour and the legend of what a clone is.
class clone_colours {
public:
  clone_colours(const contig_map &map, const std::string &wanted, const class_net_elng &net)
      : map_(map), wanted_(wanted), net_(net) {}

  std::optional<sheet_legend_entry> of(const node_elng &node) const {
    const mapped_clone &clone = map_.clones[static_cast<std::size_t>(node.clone_id)];
    if (wanted_ == "path")
      return clone.place_on_path > 0 ? sheet_legend_entry{"tiling path", sheet_blue}
                                     : sheet_legend_entry{"other", sheet_grey};
    if (wanted_ == "burial")
      return clone.buried_in > 0 ? sheet_legend_entry{"buried", sheet_white}
                                 : sheet_legend_entry{"not buried", sheet_blue};
    if (wanted_ == "verdict")
      return clone.verdict == Q_verdict::Q_clone ? sheet_legend_entry{"Q-clone", sheet_orange}
             : clone.verdict == Q_verdict::kept  ? sheet_legend_entry{"kept by the revision", sheet_grey}
                                                 : sheet_legend_entry{"not known", sheet_white};
    if (wanted_ == "score")
      return std::nullopt;
    const std::int32_t row = net_.Get_ClusterIdByNodeId(static_cast<vertex_number>(&node - net_.nodes().data()));
    if (row < 1)
      return sheet_legend_entry{"in no contig", sheet_white};
    const auto at = static_cast<std::size_t>(row);
    return sheet_legend_entry{at <= n_cluster_colours ? net_.clusters()[at].name : "further contigs",
                              cluster_colours[std::min(at, n_cluster_colours) - 1]};
  }

private:
  const contig_map &map_;
  const std::string &wanted_;
  const class_net_elng &net_;
};

// Overlaps step back behind what the colours tell.
void quiet_edges(class_net_elng &net) {
  constexpr colour_value light = rgb(206, 210, 214);
  for (std::int32_t e = 1; e <= net.n_edges_get(); ++e) {
    edge_elng edge = net.edges()[static_cast<std::size_t>(e)];
    edge.c = light;
    edge.is_marked = false;
    edge.mark_caption.clear();
    net.edge_set(e, edge);
  }
}

} // namespace

void colour_nodes(class_net_elng &net, const contig_map &map, const std::string &wanted, net_sheet &sheet) {
  constexpr std::int16_t half_size = 5;
  const clone_colours colours(map, wanted, net);
  for (vertex_number n = 1; n <= net.n_vertices_get(); ++n) {
    const node_elng &of = net.nodes()[static_cast<std::size_t>(n)];
    const auto entry = of.clone_id < 1 ? std::nullopt : colours.of(of);
    if (!entry)
      continue;
    node_elng node = of;
    node.is_marked = false;
    node.size = half_size;
    node.ic = entry->fill;
    node.show_caption = map.clones[static_cast<std::size_t>(node.clone_id)].place_on_path > 0; // above the others
    net.node_set(n, node);
    if (std::none_of(sheet.legend.begin(), sheet.legend.end(),
                     [&](const sheet_legend_entry &known) { return known.text == entry->text; }))
      sheet.legend.push_back(*entry);
  }
  if (wanted != "score")
    quiet_edges(net);
}

} // namespace orb
