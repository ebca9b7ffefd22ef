#include "contigs/contig_coordinates.h"

namespace orb {

namespace {

// Share of a clone's bands from which on it counts as lying inside the other. It stands apart from the burying
// fraction of the settings.
constexpr double share_of_inside = 0.85;

// A clone at an end of the path goes outwards when its neighbour has more than this many bands that neither it nor the
// next clone of the path explains.
constexpr std::int32_t bands_to_go_outwards = 5;

// In a dense heap a clone is compared with thousands.
constexpr std::int64_t comparisons_between_looks = 100000;

// Whether the clone leaves so many of its neighbour's bands unexplained that it lies on the outer side.
bool goes_outwards(std::int32_t n_bands_neighbour, std::int32_t explained) {
  return n_bands_neighbour - bands_to_go_outwards > explained;
}

std::size_t at(std::int32_t position) {
  return static_cast<std::size_t>(position);
}

} // namespace

bool contig_coordinates::pair_counts::first_is_inside() const {
  return share_of_inside * n_1 <= common;
}

bool contig_coordinates::pair_counts::is_proper() const {
  return share_of_inside * n_1 > common && share_of_inside * n_2 > common;
}

contig_coordinates::contig_coordinates(process_frame &frame, const class_DB_of_clones &database,
                                       const number_list &list_of_clones)
    : frame_(frame), database_(database), list_(list_of_clones) {
  const std::size_t size = at(list_.count()) + 1;
  left.assign(size, 0);
  right.assign(size, 0);
  placed_.assign(size, 0);
}

// Bands are compared within the library's tolerance whatever their kind, so bin numbers as well: deliberate, since the
// axis stands for the same comparison in all libraries.
contig_coordinates::pair_counts contig_coordinates::compare(std::int32_t position_1, std::int32_t position_2) const {
  pair_counts counts;
  double common = 0;
  database_.number_of_band_overlaps_fast_tolr_index1(list_(position_1), list_(position_2), counts.n_1, counts.n_2,
                                                     common, database_.tollerance_get());
  counts.common = static_cast<std::int32_t>(common);
  return counts;
}

void contig_coordinates::place(std::int32_t position, std::int32_t left_coor, std::int32_t right_coor) {
  left[at(position)] = left_coor;
  right[at(position)] = right_coor;
  placed_[at(position)] = 1;
}

void contig_coordinates::make_clone_coordinates(number_list path, const number_list &ranks, std::int32_t width,
                                                const class_net &net, const number_list &net_list) {
  place(path(1), 1, database_.number_of_bands_in_clone_get(list_(path(1))));
  if (path.count() < 2) {
    make_coordinates_short_path(path);
  } else {
    make_coordinates_on_diam_path(path);
  }
  make_coordinates_by_rank(path, ranks, width, net, net_list);
}

void contig_coordinates::make_coordinates_on_diam_path(const number_list &path) {
  for (std::int32_t i = 2; i <= path.count(); ++i) {
    const std::int32_t current = path(i);
    if (placed_[at(current)])
      continue;
    std::int32_t previous = path(i - 1);
    pair_counts counts = compare(previous, current);
    const std::int32_t n_bands = counts.n_2;
    if (!counts.is_proper() && counts.first_is_inside()) {
      if (i < 3) {
        place(current, 1, n_bands);
        continue;
      }
      // The previous clone tells nothing about where this one ends; the one before it does.
      previous = path(i - 2);
      counts = compare(previous, current);
    }
    const std::int32_t left_coor = right[at(previous)] + 1 - counts.common;
    place(current, left_coor, left_coor + n_bands - 1);
  }
}

void contig_coordinates::make_coordinates_short_path(number_list &path) {
  const std::int32_t start = path(1);
  for (std::int32_t position = 1; position <= list_.count(); ++position) {
    if (placed_[at(position)] || !compare(start, position).is_proper())
      continue;
    path.add(position);
    make_coordinates_on_diam_path(path);
    return;
  }
  for (std::int32_t position = 1; position <= list_.count(); ++position) {
    if (!placed_[at(position)])
      place(position, 1, database_.number_of_bands_in_clone_get(list_(position)));
  }
}

void contig_coordinates::start_places_on_path(const number_list &path) {
  left_on_path_.assign(left.size(), 0);
  right_on_path_.assign(left.size(), 0);
  for (std::int32_t i = 1; i <= path.count(); ++i) {
    left_on_path_[at(path(i))] = i - 1;
    right_on_path_[at(path(i))] = i + 1;
  }
}

void contig_coordinates::make_coordinates_by_rank(const number_list &path, const number_list &ranks, std::int32_t width,
                                                  const class_net &net, const number_list &net_list) {
  start_places_on_path(path);
  std::vector<vertex_number> vertex_of_position(left.size(), 0);
  for (std::int32_t v = 1; v <= net_list.count(); ++v)
    vertex_of_position[at(net_list(v))] = v;
  std::vector<std::vector<std::int32_t>> of_rank(at(width) + 1); // positions, in list order
  for (std::int32_t position = 1; position <= list_.count(); ++position) {
    if (ranks(position) >= 1 && ranks(position) <= width)
      of_rank[at(ranks(position))].push_back(position);
  }
  best_neighbour best;
  std::int64_t n_compared = 0; // at the most
  first_relevant_ = 0;
  for (std::int32_t rank = 1; rank <= width; ++rank) {
    if (of_rank[at(rank)].empty())
      frame_.alarm("Error! list_of_vertices_next_rank(0) = 0");
    for (const std::int32_t position : of_rank[at(rank)]) {
      n_compared += net.number_of_edges_for_vertex_total_get(vertex_of_position[at(position)]);
      if (n_compared > comparisons_between_looks) {
        n_compared = 0;
        if (!frame_.goes_on())
          return;
      }
      find_best_neighbour(position, vertex_of_position[at(position)], ranks, net, net_list, best);
      if (best.position > 0)
        place_beside(position, best.position, path);
    }
  }
}

// Of the neighbours of smaller rank the first one with the most common bands. When there is none, the first such
// neighbour of the clone before is used again.
void contig_coordinates::find_best_neighbour(std::int32_t position, vertex_number vertex, const number_list &ranks,
                                             const class_net &net, const number_list &net_list, best_neighbour &best) {
  bool any = false;
  best = {};
  for (const net_edge &edge : net.edges_of_vertex(vertex)) {
    const std::int32_t other = net_list(edge.neighbour);
    if (ranks(other) >= ranks(position))
      continue;
    const std::int32_t common = compare(position, other).common;
    if (!any)
      first_relevant_ = other;
    if (!any || common > best.common)
      best = {other, common};
    any = true;
  }
  if (any)
    return;
  frame_.alarm("Error! list_of_relevant(0) = 0");
  best.position = first_relevant_;
}

// Whether the clone lies to the right of its neighbour, judged by how well it and the neighbour's neighbours on the
// path explain the neighbour's bands. n_third: the band count of the clone that was counted last.
bool contig_coordinates::goes_right(std::int32_t position, std::int32_t neighbour, const number_list &path,
                                    std::int32_t &n_third) const {
  const std::int32_t place_left = left_on_path_[at(neighbour)], place_right = right_on_path_[at(neighbour)];
  std::int32_t n_neighbour = 0, n_again = 0;
  const auto count_with = [&](std::int32_t place) {
    double common = 0;
    database_.number_of_band_overlaps_fast_tolr_index1_with_pair(list_(position), list_(neighbour), list_(path(place)),
                                                                 n_neighbour, n_again, n_third, common,
                                                                 database_.tollerance_get());
    return static_cast<std::int32_t>(common);
  };
  const bool has_left = place_left >= 1, has_right = place_right <= path.count();
  if (has_left && has_right) {
    const std::int32_t with_left = count_with(place_left);
    const std::int32_t with_right = count_with(place_right);
    return with_left <= with_right;
  }
  const std::int32_t explained = count_with(has_left ? place_left : place_right);
  return goes_outwards(n_neighbour, explained) == has_left;
}

// A clone off the path gets the length of the clone that was counted last, not its own: deliberate, this is the rule
// by which contigs are laid out.
void contig_coordinates::place_beside(std::int32_t position, std::int32_t neighbour, const number_list &path) {
  const std::int32_t common = compare(position, neighbour).common;
  std::int32_t n_third = 0;
  if (goes_right(position, neighbour, path, n_third)) {
    const std::int32_t left_coor = right[at(neighbour)] + 1 - common;
    place(position, left_coor, left_coor + n_third - 1);
    right_on_path_[at(position)] = right_on_path_[at(neighbour)];
    left_on_path_[at(position)] = right_on_path_[at(position)] - 1;
  } else {
    const std::int32_t right_coor = left[at(neighbour)] + common - 1;
    place(position, right_coor - n_third + 1, right_coor);
    left_on_path_[at(position)] = left_on_path_[at(neighbour)];
    right_on_path_[at(position)] = left_on_path_[at(position)] + 1;
  }
}

void contig_coordinates::shift_coordinates_to_positive(std::int32_t path_start, std::int32_t path_end,
                                                       std::int32_t &left_extreme, std::int32_t &right_extreme) {
  left_extreme = path_start;
  right_extreme = path_end;
  for (std::int32_t position = 1; position <= list_.count(); ++position) {
    if (left[at(position)] < left[at(left_extreme)])
      left_extreme = position;
    if (right[at(position)] > right[at(right_extreme)])
      right_extreme = position;
  }
  const std::int32_t shift = 1 - left[at(left_extreme)];
  if (shift <= 0)
    return;
  for (std::int32_t position = 1; position <= list_.count(); ++position) {
    left[at(position)] += shift;
    right[at(position)] += shift;
  }
}

} // namespace orb
