// Nets made from a net: copies with something left out, contraction, factor net; and flat forms of it.
#include <algorithm>
#include <cassert>
#include <limits>
#include <numeric>

#include "graph/class_net.h"
#include "graph/label_forest.h"

namespace orb {

namespace {

// Fills `net` with all vertices of `source` and the records that `kept(v, record)` lets through.
template <class keep> void copy_with(const class_net &source, class_net &net, const keep &kept) {
  assert(&source != &net);
  net.inicializate_net(source.number_of_vertices_get(), source.number_of_edges_get());
  net.reserve_edges(source.number_of_edges_get()); // pages that aren't written take no memory
  for (vertex_number v = 1; v <= source.number_of_vertices_get(); ++v) {
    net.add_vertex_fast(source.index_of_vertex_get(v));
    for (const net_edge &edge : source.edges_of_vertex(v))
      if (kept(v, edge))
        net.add_edge_fast(v, edge.neighbour, edge.value, edge.index1, edge.index2);
  }
  net.finish_of_adding();
}

void sort_list(number_list &list, std::int32_t n, number_list *paired_array) {
  const auto members = list.members().first(static_cast<std::size_t>(n));
  if (std::is_sorted(members.begin(), members.end()))
    return;
  if (paired_array == nullptr) {
    std::sort(members.begin(), members.end());
    return;
  }
  std::vector<std::pair<std::int32_t, std::int32_t>> pairs(members.size());
  for (std::int32_t i = 1; i <= n; ++i)
    pairs[static_cast<std::size_t>(i) - 1] = {list(i), (*paired_array)(i)};
  std::stable_sort(pairs.begin(), pairs.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
  for (std::int32_t i = 1; i <= n; ++i) {
    list(i) = pairs[static_cast<std::size_t>(i) - 1].first;
    (*paired_array)(i) = pairs[static_cast<std::size_t>(i) - 1].second;
  }
}

} // namespace

void class_net::create_net_copy(class_net &net) const {
  copy_with(*this, net, [](vertex_number, const net_edge &) { return true; });
}

void class_net::create_sub_net(number_list &list, std::int32_t n, bool list_is_sorted, number_list *paired_array,
                               class_net &net, net_workspace &workspace) const {
  assert(&net != this);
  if (!list_is_sorted)
    sort_list(list, n, paired_array);
  workspace.position.start(private_n_vertices_);
  std::int64_t n_records = 0;
  for (std::int32_t i = 1; i <= n; ++i) {
    workspace.position.set(list(i), i);
    n_records += number_of_edges_for_vertex_total_get(list(i));
  }
  net.inicializate_net(n, n_records);
  net.reserve_edges(n_records);
  for (std::int32_t i = 1; i <= n; ++i) {
    net.add_vertex_fast(index_of_vertex_get(list(i)));
    for (const net_edge &edge : edges_of_vertex(list(i)))
      if (workspace.position.has(edge.neighbour))
        net.add_edge_fast(i, workspace.position.get(edge.neighbour), edge.value, edge.index1, edge.index2);
  }
  net.finish_of_adding();
}

void class_net::create_sub_net_without_edges_index(std::int16_t index, class_net &net) const {
  copy_with(*this, net, [index](vertex_number, const net_edge &edge) { return edge.index1 != index; });
}

void class_net::create_sub_net_without_edges_small_or_large_value(double threshold, class_net &net,
                                                                  bool remove_small) const {
  copy_with(*this, net, [threshold, remove_small](vertex_number, const net_edge &edge) {
    return remove_small ? edge.value >= threshold : edge.value <= threshold;
  });
}

void class_net::create_sub_net_with_disconnected_vertices_index(std::int16_t index, class_net &net) const {
  copy_with(*this, net, [this, index](vertex_number v, const net_edge &edge) {
    return index_of_vertex_get(v) != index && index_of_vertex_get(edge.neighbour) != index;
  });
}

namespace {

struct new_edge {
  vertex_number from, to;
  double value;
};

// Both directions of each edge, ascending by first and then by second end.
std::vector<new_edge> doubled_edges(const number_list &first_ends, const number_list &second_ends,
                                    const std::vector<double> &values) {
  std::vector<new_edge> edges;
  edges.reserve(2 * first_ends.members().size());
  for (std::int32_t k = 1; k <= first_ends.count(); ++k) {
    const double value = values[static_cast<std::size_t>(k)];
    edges.push_back({first_ends(k), second_ends(k), value});
    edges.push_back({second_ends(k), first_ends(k), value});
  }
  std::stable_sort(edges.begin(), edges.end(), [](const new_edge &a, const new_edge &b) {
    return a.from != b.from ? a.from < b.from : a.to < b.to;
  });
  return edges;
}

} // namespace

void class_net::create_net_with_disconnected_and_changed_part(process_frame &frame, const number_list &list,
                                                              const number_list &first_ends,
                                                              const number_list &second_ends,
                                                              const std::vector<double> &values, class_net &net) const {
  assert(&net != this);
  std::vector<char> in_list(static_cast<std::size_t>(private_n_vertices_) + 1, 0);
  for (const vertex_number v : list.members())
    in_list[static_cast<std::size_t>(v)] = 1;
  const std::vector<new_edge> edges = doubled_edges(first_ends, second_ends, values);
  std::size_t n_added = 0;
  net.inicializate_net(private_n_vertices_, private_n_edges_ + static_cast<std::int64_t>(edges.size()));
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    net.add_vertex_fast(index_of_vertex_get(v));
    if (in_list[static_cast<std::size_t>(v)] != 0) {
      auto edge = std::lower_bound(edges.begin(), edges.end(), v,
                                   [](const new_edge &a, vertex_number from) { return a.from < from; });
      for (; edge != edges.end() && edge->from == v; ++edge, ++n_added)
        net.add_edge_fast(v, edge->to, edge->value, 0, 0);
    } else {
      for (const net_edge &edge : edges_of_vertex(v))
        if (in_list[static_cast<std::size_t>(edge.neighbour)] == 0)
          net.add_edge_fast(v, edge.neighbour, edge.value, edge.index1, edge.index2);
    }
  }
  net.finish_of_adding();
  if (n_added != edges.size())
    frame.alarm("error of adding!");
}

void class_net::create_sub_net_list_into_one_vertex_prestart(const number_list &list, number_list &new_number,
                                                             std::int32_t &n_new) const {
  new_number.clear();
  new_number.resize(private_n_vertices_);
  for (std::int32_t k = 2; k <= list.count(); ++k)
    new_number(list(k)) = -1;
  if (!list.empty())
    new_number(list(1)) = 0;
  n_new = 0;
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    if (new_number(v) >= 0)
      new_number(v) = ++n_new;
}

// Deliberately not symmetric: a vertex joined to the group but not to its representative gets a record in the
// representative's run only, and one joined to the representative alone loses its record on its own side.
void class_net::create_sub_net_list_into_one_vertex(const number_list &list, number_list &new_number,
                                                    bool prestart_done, class_net &net) const {
  assert(&net != this);
  std::int32_t n_new = 0;
  if (prestart_done)
    for (const std::int32_t number : new_number.members())
      n_new = std::max(n_new, number);
  else
    create_sub_net_list_into_one_vertex_prestart(list, new_number, n_new);
  const vertex_number representative = list.empty() ? 0 : list(1);
  std::vector<double> best(static_cast<std::size_t>(private_n_vertices_) + 1, 0.0);
  std::vector<char> has(static_cast<std::size_t>(private_n_vertices_) + 1, 0);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    if (new_number(v) < 1 || v == representative)
      continue;
    for (const net_edge &edge : edges_of_vertex(v)) {
      if (new_number(edge.neighbour) >= 1)
        continue;
      double &value = best[static_cast<std::size_t>(v)];
      value = has[static_cast<std::size_t>(v)] != 0 ? std::max(value, edge.value) : edge.value;
      has[static_cast<std::size_t>(v)] = 1;
    }
  }
  net.inicializate_net(n_new, private_n_edges_);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    if (new_number(v) < 1)
      continue;
    net.add_vertex_fast(index_of_vertex_get(v));
    if (v == representative) {
      for (vertex_number w = 1; w <= private_n_vertices_; ++w)
        if (has[static_cast<std::size_t>(w)] != 0)
          net.add_edge_fast(v, new_number(w), best[static_cast<std::size_t>(w)], 0, 0);
      continue;
    }
    for (const net_edge &edge : edges_of_vertex(v)) {
      if (new_number(edge.neighbour) < 1)
        continue;
      if (edge.neighbour != representative)
        net.add_edge_fast(v, new_number(edge.neighbour), edge.value, edge.index1, edge.index2);
      else if (has[static_cast<std::size_t>(v)] != 0)
        net.add_edge_fast(v, new_number(edge.neighbour), best[static_cast<std::size_t>(v)], 0, 0);
    }
  }
  net.finish_of_adding();
}

void class_net::create_factor_net(const number_list &class_number, std::int32_t n_classes, class_net &net) const {
  assert(&net != this);
  // Elements grouped by class.
  std::vector<std::int32_t> start(static_cast<std::size_t>(n_classes) + 2, 0);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    ++start[static_cast<std::size_t>(class_number(v)) + 1];
  std::partial_sum(start.begin(), start.end(), start.begin());
  std::vector<vertex_number> elements(static_cast<std::size_t>(private_n_vertices_));
  std::vector<std::int32_t> next(start);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    elements[static_cast<std::size_t>(next[static_cast<std::size_t>(class_number(v))]++)] = v;

  position_table place; // class -> place in `found`
  std::vector<std::pair<std::int32_t, double>> found;
  net.inicializate_net(n_classes, private_n_edges_);
  for (std::int32_t c = 1; c <= n_classes; ++c) {
    net.add_vertex_fast(0);
    place.start(n_classes);
    found.clear();
    for (auto i = start[static_cast<std::size_t>(c)]; i < start[static_cast<std::size_t>(c) + 1]; ++i)
      for (const net_edge &edge : edges_of_vertex(elements[static_cast<std::size_t>(i)])) {
        const std::int32_t other = class_number(edge.neighbour);
        if (other == c)
          continue;
        if (!place.has(other)) {
          place.set(other, static_cast<std::int32_t>(found.size()));
          found.emplace_back(other, edge.value);
        } else {
          double &largest = found[static_cast<std::size_t>(place.get(other))].second;
          largest = std::max(largest, edge.value);
        }
      }
    std::sort(found.begin(), found.end());
    for (const auto &[other, value] : found)
      net.add_edge_fast(c, other, value, 0, 0);
  }
  net.finish_of_adding();
}

void class_net::save_net_into_arrayes(std::vector<vertex_number> &neighbours, std::vector<edge_adress> &adress_of_start,
                                      bool both_directions) const {
  neighbours.assign(1, 0);
  adress_of_start.assign(static_cast<std::size_t>(private_n_vertices_) + 2, 1);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v) {
    adress_of_start[static_cast<std::size_t>(v)] = static_cast<edge_adress>(neighbours.size());
    for (const net_edge &edge : edges_of_vertex(v))
      if (both_directions || edge.neighbour > v)
        neighbours.push_back(edge.neighbour);
  }
  adress_of_start[static_cast<std::size_t>(private_n_vertices_) + 1] = static_cast<edge_adress>(neighbours.size());
}

void class_net::clustering_based_on_net(number_list &class_number, std::int32_t &n_classes) const {
  label_forest forest;
  forest.start(private_n_vertices_);
  for (vertex_number v = 1; v <= private_n_vertices_; ++v)
    for (const net_edge &edge : edges_of_vertex(v))
      if (edge.neighbour > v)
        forest.join(v, edge.neighbour);
  number_list sizes;
  forest.number_clusters(class_number, sizes, n_classes);
}

} // namespace orb
