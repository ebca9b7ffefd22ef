// Which pairs of a drawing's clones become edges and arcs.
#include <algorithm>
#include <array>

#include "drawing/class_clone_net_draw.h"
#include "drawing/palette.h"
#include "frame/numbers.h"

namespace orb {

namespace {

constexpr std::int32_t clones_for_kernel = 500; // from here on all pairs are compared on all cores
constexpr double value_always_shown = 1000;     // above every cutoff of a series
constexpr std::int16_t colour_white = 0, colour_yellow = 1, colour_blue = 5, colour_red = 7, colour_black = 10;
constexpr std::int16_t width_of_overlap = 1, width_of_burial = 3, pattern_solid = 0;
constexpr double cutoff_of_tags = 6, cutoff_of_sulston = 20; // of the comparison of two metrics

std::int16_t index_or(std::int32_t value, std::int32_t not_set, std::int16_t otherwise) {
  return value == not_set ? otherwise : static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

} // namespace

void class_clone_net_draw::add_vertices(const class_DB_of_clones &database) {
  net_draw_.inicialisate_net(n_clones_get());
  details_ = {};
  details_.vertices.resize(static_cast<std::size_t>(n_clones_get()) + 1);
  for (std::int32_t k = 1; k <= n_clones_get(); ++k) {
    const clone_look &look = clone_vertex_[static_cast<std::size_t>(k)];
    net_draw_.add_vertex(look.caption, index_or(look.shape, not_set, 0), index_or(look.size, not_set, 1),
                         index_or(look.ic, not_set, colour_blue), index_or(look.bc, not_set, colour_black));
    graphml_vertex &detail = details_.vertices[static_cast<std::size_t>(k)];
    detail.clone = clone_number_get(k);
    detail.name = database.name_of_clone_get(detail.clone);
    detail.n_bands = database.number_of_bands_in_clone_get(detail.clone);
    detail.marks = look.marks;
    detail.position_known = !places_.empty();
    if (detail.position_known) {
      detail.x = places_[static_cast<std::size_t>(k) - 1].x;
      detail.y = places_[static_cast<std::size_t>(k) - 1].y;
    }
  }
}

bool class_clone_net_draw::fill_drawing(double burying_border, drawing_kind kind, const class_DB_of_clones &database) {
  add_vertices(database);
  if (n_clones_get() > class_net_draw::Const_MAX_n_vertices_get())
    return false;
  const bool all_pairs = kind == drawing_kind::diagonals && diagonals_; // such pairs needn't overlap
  if (kind == drawing_kind::two_metrics)
    two_metrics_to_net(burying_border);
  else if (all_pairs)
    pairs_to_net(kind);
  else if (metric_.use_net_get())
    for_pairs_of_loaded_net([&](std::int32_t a, std::int32_t b) { add_pair_of_metric(a, b, kind); });
  else if (n_clones_get() < clones_for_kernel)
    pairs_to_net(kind);
  else
    computed_pairs_to_net(burying_border, kind);
  return !signif_->context().frame.stop_requested_get();
}

void class_clone_net_draw::add_pair_of_metric(std::int32_t a, std::int32_t b, drawing_kind kind) {
  double value = 0;
  std::int16_t burying_index = 0;
  bool significant = false;
  metric_.cutoff_and_burring_calculation(list_of_clones_(a), list_of_clones_(b), value, burying_index, significant);
  add_pair(a, b, kind, value, burying_index, significant);
}

void class_clone_net_draw::pairs_to_net(drawing_kind kind) {
  for (std::int32_t a = 1; a <= n_clones_get() && goes_on_with_pairs(n_clones_get()); ++a)
    for (std::int32_t b = a + 1; b <= n_clones_get(); ++b)
      add_pair_of_metric(a, b, kind);
}

// In a dense heap pairs come by the million.
bool class_clone_net_draw::goes_on_with_pairs(std::int64_t n_more) const {
  constexpr std::int64_t pairs_between_looks = 20000;
  n_pairs_since_look_ += n_more;
  if (n_pairs_since_look_ < pairs_between_looks)
    return true;
  n_pairs_since_look_ = 0;
  return signif_->context().frame.goes_on();
}

// The pairs a < b of places whose clones have a record in the loaded net: a pair without one can't overlap there. A
// clone may stand in the list more than once.
template <class pair_of_places> void class_clone_net_draw::for_pairs_of_loaded_net(pair_of_places pair) const {
  const class_net &net = signif_->net();
  const std::int32_t n = n_clones_get(), n_vertices = net.number_of_vertices_get();
  position_table first_place;
  first_place.start(n_vertices);
  std::vector<std::int32_t> next_place(static_cast<std::size_t>(n) + 1, 0), partners;
  for (std::int32_t k = n; k >= 1; --k) {
    const clone_number clone = list_of_clones_(k);
    if (clone < 1 || clone > n_vertices)
      continue;
    next_place[static_cast<std::size_t>(k)] = first_place.get(clone, 0);
    first_place.set(clone, k);
  }
  for (std::int32_t a = 1; a <= n; ++a) {
    const clone_number clone = list_of_clones_(a);
    if (clone < 1 || clone > n_vertices)
      continue;
    partners.clear();
    for (const net_edge &edge : net.edges_of_vertex(clone))
      for (std::int32_t b = first_place.get(edge.neighbour, 0); b > 0; b = next_place[static_cast<std::size_t>(b)])
        if (b > a)
          partners.push_back(b);
    if (!goes_on_with_pairs(static_cast<std::int64_t>(partners.size())))
      return;
    std::sort(partners.begin(), partners.end());
    for (const std::int32_t b : partners)
      pair(a, b);
  }
}

// Large lists: the same pairs and values from the comparison on all cores.
void class_clone_net_draw::computed_pairs_to_net(double burying_border, drawing_kind kind) {
  class_net net;
  signif_->create_net_without_using_previous_net(list_of_clones_, n_clones_get(), metric_.distance_index_get(),
                                                 metric_.limit_r_get(), burying_border, net);
  for (std::int32_t a = 1;
       a <= net.number_of_vertices_get() && goes_on_with_pairs(net.number_of_edges_for_vertex_total_get(a)); ++a)
    for (const net_edge &edge : net.edges_of_vertex(a)) // ascending
      if (edge.neighbour > a)
        add_pair(a, edge.neighbour, kind, edge.value, edge.index2, true);
}

void class_clone_net_draw::add_pair(std::int32_t a, std::int32_t b, drawing_kind kind, double value,
                                    std::int16_t burying_index, bool significant) {
  const bool in_table =
      kind == drawing_kind::diagonals && diagonals_ && diagonals_(clone_number_get(a), clone_number_get(b));
  if (!significant && !in_table)
    return;
  std::int16_t colour = colour_blue;
  if (in_table)
    colour = significant ? colour_red : colour_yellow;
  else if (kind == drawing_kind::overlaps)
    colour = color_of_overlap(value);
  label_.clear();
  if (options_.caption_cutoff)
    number_text_append(label_, value, 1);
  // a pair of the table is drawn in any case, so no threshold may leave it out
  net_draw_.add_edge(a, b, in_table ? value_always_shown : value, label_, colour, width_of_overlap, pattern_solid,
                     false, burying_index);
  if (significant && burying_index != 0)
    mark_burial(a, b, burying_index);
}

std::int16_t class_clone_net_draw::color_of_overlap(double value) const {
  using metrics = class_clone_dist_general;
  if (!options_.cutoff_by_color)
    return colour_black;
  const std::int16_t index = metric_.distance_index_get();
  if (index == metrics::DISTANCE_INDEX_k2_frac_mn_get())
    return color_for_value(value, 1000, 2);
  if (index == metrics::DISTANCE_INDEX_Nof_get())
    return color_for_value(value, 1, 3);
  if (index == metrics::DISTANCE_INDEX_Lnn_get() || index == metrics::DISTANCE_INDEX_LnnMarkers_get())
    return color_for_value(value, 1, 4);
  if (index == metrics::DISTANCE_INDEX_Sulston_1988_get() || index == metrics::DISTANCE_INDEX_Soderlund_1997_get())
    return color_for_value(value, 50, 5);
  return colour_white;
}

// An arc leads from the buried clone to the other.
void class_clone_net_draw::mark_burial(std::int32_t a, std::int32_t b, std::int16_t code) {
  const std::array<std::int32_t, 2> ends{a, b};
  for (std::int16_t end = 0; end < 2; ++end) {
    const bool is_buried = code == 3 || code == end + 1;
    if (!is_buried)
      continue;
    const std::int32_t buried = ends[static_cast<std::size_t>(end)], other = ends[static_cast<std::size_t>(1 - end)];
    details_.vertices[static_cast<std::size_t>(buried)].buried = true;
    if (options_.mark_relations)
      net_draw_.add_edge(buried, other, value_always_shown, {}, colour_white, width_of_burial, pattern_solid, true,
                         code == 3 ? std::int16_t{3} : std::int16_t{1});
    if (options_.mark_buried)
      net_draw_.vertex_border_set(buried, colour_white);
  }
}

void class_clone_net_draw::two_metrics_to_net(double burying_border) {
  using metrics = class_clone_dist_general;
  const metric_context &context = signif_->context();
  class_clone_dist_calc calc(context, true); // both metrics on the same counts, and the first one needs weights
  for (std::int32_t a = 1; a <= n_clones_get() && goes_on_with_pairs(n_clones_get()); ++a)
    for (std::int32_t b = a + 1; b <= n_clones_get(); ++b) {
      const clone_number clone_a = list_of_clones_(a), clone_b = list_of_clones_(b);
      const double one =
          calc.minus_log10_p_value_of_clone_overlapping(clone_a, clone_b, metrics::DISTANCE_INDEX_TagsSulston_get());
      const double two =
          calc.minus_log10_p_value_of_clone_overlapping(clone_a, clone_b, metrics::DISTANCE_INDEX_Sulston_1988_get());
      const bool by_one = one >= cutoff_of_tags, by_two = two >= cutoff_of_sulston;
      if (!by_one && !by_two)
        continue; // nor is a burial marked that no edge shows
      label_.clear();
      if (options_.caption_cutoff) {
        number_text_append(label_, one, 1);
        label_ += '/';
        number_text_append(label_, two, 1);
      }
      const std::int16_t burying_index = calc.burring_index_get(burying_border);
      net_draw_.add_edge(a, b, value_always_shown, label_,
                         by_one && by_two ? colour_black
                         : by_one         ? colour_blue
                                          : colour_red,
                         width_of_overlap, pattern_solid, false, burying_index);
      if (burying_index != 0)
        mark_burial(a, b, burying_index);
    }
}

} // namespace orb
