#include "clustering/contig_map.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "net/q_mark.h"

namespace orb {

namespace {

constexpr double largest_coordinate = 1e9;

mapped_clone &of(contig_map &map, clone_number clone) {
  return map.clones[static_cast<std::size_t>(clone)];
}

void put_clones_into_contigs(const class_FPCto_import &registry, contig_map &map) {
  std::vector<std::int32_t> contig_of(static_cast<std::size_t>(registry.n_list_of_all_cluster_names_get()) + 1, 0);
  const auto n_clones = static_cast<clone_number>(map.clones.size()) - 1;
  for (clone_number clone = 1; clone <= n_clones; ++clone)
    contig_of[static_cast<std::size_t>(registry.clone_in_cluster_get(clone))] = 1;
  for (cluster_id id = 1; id <= registry.n_list_of_all_cluster_names_get(); ++id) {
    std::int32_t &contig = contig_of[static_cast<std::size_t>(id)];
    if (contig == 0 || !registry.cluster_is_contig_get(id)) {
      contig = 0;
      continue;
    }
    contig = static_cast<std::int32_t>(map.contigs.size());
    mapped_contig &made = map.contigs.emplace_back();
    made.id = id;
    made.name = registry.name_of_cluster_get(id);
    made.is_placed = registry.cluster_information_get(id).min_and_max_known;
  }
  contig_of[0] = 0;
  for (clone_number clone = 1; clone <= n_clones; ++clone) {
    const std::int32_t contig = contig_of[static_cast<std::size_t>(registry.clone_in_cluster_get(clone))];
    of(map, clone).contig = contig;
    (contig > 0 ? map.contigs[static_cast<std::size_t>(contig)].clones : map.alone).push_back(clone);
  }
}

// A folder of a run may have been written by anybody.
bool place_clone(const clone_information &from, mapped_clone &clone) {
  for (const double coor : {from.coor_left, from.coor_right})
    if (!(std::abs(coor) <= largest_coordinate))
      return false;
  clone.left = std::llround(from.coor_left);
  clone.right = std::llround(from.coor_right);
  return clone.left <= clone.right;
}

bool place_contig(process_frame &frame, const class_DB_of_clones &database, const class_FPCto_import &registry,
                  mapped_contig &contig, contig_map &map) {
  for (const clone_number clone : contig.clones)
    if (!place_clone(registry.clone_information_get(clone), of(map, clone))) {
      frame.message("The coordinates of clone " + database.name_of_clone_get(clone) + " in contig " + contig.name +
                    " can't be: left " + std::to_string(registry.clone_coor_left(clone)) + ", right " +
                    std::to_string(registry.clone_coor_right(clone)) + ".");
      frame.data_failed_set();
      return false;
    }
  std::sort(contig.clones.begin(), contig.clones.end(), [&map](clone_number a, clone_number b) {
    const mapped_clone &x = of(map, a), &y = of(map, b);
    return std::tuple(x.left, x.right, a) < std::tuple(y.left, y.right, b);
  });
  contig.left = of(map, contig.clones.front()).left;
  contig.right = of(map, contig.clones.front()).right;
  for (const clone_number clone : contig.clones)
    contig.right = std::max(contig.right, of(map, clone).right);
  return true;
}

void put_path(const number_list &path, std::int32_t contig, contig_map &map) {
  for (std::int32_t i = 1; i <= path.count(); ++i) {
    mapped_clone &clone = of(map, path(i));
    if (clone.place_on_path == 0 && clone.contig == contig) // one that stands there twice: its first place
      clone.place_on_path = i;
  }
}

// ---- burial --------------------------------------------------------------------------------------------------------

bool all_bands_are_common(const class_DB_of_clones &database, clone_number a, clone_number b) {
  std::int32_t n_a = 0, n_b = 0;
  double common = 0;
  if (database.taking_tollerance_into_account_index_get() == 0)
    database.number_of_band_overlaps_fast_index0(a, b, n_a, n_b, common);
  else
    database.number_of_band_overlaps_fast_tolr_index1(a, b, n_a, n_b, common, database.tollerance_get());
  return n_a == n_b && common >= n_a;
}

// Of the clones that hold this one, all looked at before it, the one with the strongest overlap; one that isn't buried
// comes before one that is.
void bury(const class_DB_of_clones &database, const class_net &net, const std::vector<char> &seen, clone_number clone,
          contig_map &map) {
  const net_edge *best = nullptr;
  const auto rank = [&map](const net_edge &edge) {
    return std::tuple(of(map, edge.neighbour).buried_in == 0, edge.value, -edge.neighbour);
  };
  for (const net_edge &edge : net.edges_of_vertex(clone))
    if ((edge.index2 == 1 || edge.index2 == 3) && seen[static_cast<std::size_t>(edge.neighbour)] != 0 &&
        of(map, edge.neighbour).contig == of(map, clone).contig && (best == nullptr || rank(edge) > rank(*best)))
      best = &edge;
  if (best == nullptr)
    return;
  mapped_clone &buried = of(map, clone);
  const mapped_clone &holder = of(map, best->neighbour);
  buried.buried_in = holder.buried_in > 0 ? holder.buried_in : best->neighbour;
  buried.how = holder.buried_in > 0                                     ? burial::by_another
               : all_bands_are_common(database, clone, best->neighbour) ? burial::same_bands
                                                                        : burial::in_larger;
}

// A clone can be held by one with as many bands or more, so that clones are looked at from the largest to the smallest:
// of two that hold each other the larger one stays. False when stopped.
bool bury_clones(process_frame &frame, const class_DB_of_clones &database, const class_net &net, contig_map &map) {
  std::vector<clone_number> order;
  for (std::size_t c = 1; c < map.contigs.size(); ++c)
    order.insert(order.end(), map.contigs[c].clones.begin(), map.contigs[c].clones.end());
  std::sort(order.begin(), order.end(), [&database](clone_number a, clone_number b) {
    return std::tuple(-database.number_of_bands_in_clone_get(a), a) <
           std::tuple(-database.number_of_bands_in_clone_get(b), b);
  });
  std::vector<char> seen(map.clones.size(), 0);
  constexpr std::int32_t stride = 5000;
  std::int32_t n_seen = 0;
  for (const clone_number clone : order) {
    if (++n_seen % stride == 0 && !frame.goes_on())
      return false;
    bury(database, net, seen, clone, map);
    seen[static_cast<std::size_t>(clone)] = 1;
  }
  return true;
}

void put_verdicts(const class_net &net, contig_map &map) {
  std::int32_t n_Q = 0;
  net.number_of_vertices_with_index_get(q_mark, n_Q);
  for (std::size_t clone = 1; clone < map.clones.size(); ++clone)
    map.clones[clone].verdict = verdict_in_net(net, n_Q, static_cast<clone_number>(clone));
}

} // namespace

Q_verdict verdict_in_net(const class_net &net, std::int32_t n_Q, clone_number clone) {
  if (n_Q == 0)
    return Q_verdict::unknown;
  return net.index_of_vertex_get(clone) == q_mark ? Q_verdict::Q_clone : Q_verdict::kept;
}

bool make_contig_map(process_frame &frame, const class_DB_of_clones &database, const class_FPCto_import &registry,
                     const class_net *net, contig_map &map) {
  map = {};
  map.clones.resize(static_cast<std::size_t>(database.total_number_of_clones_get()) + 1);
  put_clones_into_contigs(registry, map);
  for (std::size_t c = 1; c < map.contigs.size(); ++c) {
    mapped_contig &contig = map.contigs[c];
    if (contig.is_placed && !place_contig(frame, database, registry, contig, map))
      return false;
    put_path(registry.tiling_path_get(contig.id), static_cast<std::int32_t>(c), map);
  }
  if (net != nullptr) {
    if (!bury_clones(frame, database, *net, map))
      return false;
    put_verdicts(*net, map);
  }
  return true;
}

} // namespace orb
