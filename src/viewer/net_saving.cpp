// Open nets as files and as nets.
#include <algorithm>

#include "drawing/class_net_draw.h"
#include "frame/files.h"
#include "frame/numbers.h"
#include "viewer/net_file.h"

namespace orb {

namespace {

void edge_line_append(std::string &to, const edge_elng &edge, std::span<const vertex_number> new_number) {
  whole_number_append(to, new_number[static_cast<std::size_t>(edge.from)]);
  to += ' ';
  whole_number_append(to, new_number[static_cast<std::size_t>(edge.to)]);
  to += ' ';
  to += edge.value == 0 ? "1" : number_text_shortest(edge.value);
  to += " w ";
  whole_number_append(to, edge.width);
  to += " c ";
  to += edge.c_name;
  to += " p ";
  std::string_view pattern;
  line_pattern_name(edge.pattern, pattern);
  to += pattern;
  to += " l \"";
  to += text_in_quotes(edge.caption);
  to += '"';
}

void vertex_line_append(std::string &to, std::int32_t number, const node_elng &node) {
  whole_number_append(to, number);
  to += " \"";
  to += text_in_quotes(node.caption);
  to += "\" ";
  number_text_append(to, node.x, 3);
  to += ' ';
  number_text_append(to, node.y, 3);
  to += " sh ";
  to += shape_name(node.shape);
  to += " x_fact 1 y_fact 1 ic ";
  to += node.ic_name;
  to += " bc ";
  to += node.bc_name;
}

// Where a name has blanks it needs quotes to be read whole.
std::string network_line(const std::string &name) {
  const std::string text = text_in_quotes(name);
  return "*Network " + (text.find(' ') == std::string::npos ? text : '"' + text + '"');
}

} // namespace

bool class_net_elng::SaveNet(process_frame &frame, const std::filesystem::path &file, const net_saving &wanted) const {
  if (!wanted.all_nodes && selected_.empty()) {
    frame.message("No nodes were selected!");
    return false;
  }
  const number_list list = wanted.all_nodes ? number_list::range(1, private_n_vertices_) : selected_;
  std::vector<vertex_number> new_number(nodes_.size(), 0);
  result_file out(file);
  out.line(network_line(wanted.net_name));
  out.line("*Vertices " + std::to_string(list.count()));
  std::string line;
  for (std::int32_t i = 1; i <= list.count(); ++i) {
    new_number[static_cast<std::size_t>(list(i))] = i;
    line.clear();
    vertex_line_append(line, i, nodes_[static_cast<std::size_t>(list(i))]);
    out.line(line);
  }
  for (const bool arcs : {true, false}) {
    std::vector<std::size_t> written;
    for (std::size_t e = 1; e < edges_.size(); ++e)
      if (edges_[e].is_arc == arcs && new_number[static_cast<std::size_t>(edges_[e].from)] > 0 &&
          new_number[static_cast<std::size_t>(edges_[e].to)] > 0 &&
          (!wanted.edge_is_shown || wanted.edge_is_shown(edges_[e])))
        written.push_back(e);
    out.line((arcs ? "*Arcs " : "*Edges ") + std::to_string(written.size()));
    for (const std::size_t e : written) {
      line.clear();
      edge_line_append(line, edges_[e], new_number);
      out.line(line);
    }
  }
  out.commit();
  if (!wanted.all_nodes && wanted.remove_saved)
    wanted.remove_saved();
  return true;
}

void class_net_elng::SaveNet__visible(const std::function<bool(const node_elng &)> &node_is_shown,
                                      const edge_filter &edge_is_shown, class_net &net,
                                      std::vector<std::string> &names) const {
  std::vector<vertex_number> new_number(nodes_.size(), 0);
  names.assign(1, {});
  for (std::size_t n = 1; n < nodes_.size(); ++n) {
    if (!nodes_[n].is_coor_known || (node_is_shown && !node_is_shown(nodes_[n])))
      continue;
    new_number[n] = static_cast<vertex_number>(names.size());
    names.push_back(nodes_[n].caption);
  }
  std::vector<std::vector<net_edge>> links(names.size());
  const auto link = [&](vertex_number from, vertex_number to, double value) {
    net_edge record;
    record.neighbour = to;
    record.value = value;
    links[static_cast<std::size_t>(from)].push_back(record);
  };
  for (std::size_t e = 1; e < edges_.size(); ++e) {
    const vertex_number from = new_number[static_cast<std::size_t>(edges_[e].from)];
    const vertex_number to = new_number[static_cast<std::size_t>(edges_[e].to)];
    if (from == 0 || to == 0 || from == to || (edge_is_shown && !edge_is_shown(edges_[e])))
      continue;
    link(from, to, edges_[e].value);
    link(to, from, edges_[e].value);
  }
  net.inicializate_net(static_cast<std::int32_t>(links.size()) - 1, 0);
  for (std::size_t v = 1; v < links.size(); ++v) {
    net.add_vertex_fast(0);
    std::stable_sort(links[v].begin(), links[v].end(),
                     [](const net_edge &a, const net_edge &b) { return a.neighbour < b.neighbour; });
    for (const net_edge &record : links[v])
      net.add_edge_fast(static_cast<vertex_number>(v), record.neighbour, record.value, 0, 0);
  }
  net.finish_of_adding();
  net.test_neighbours_sorted();
}

} // namespace orb
