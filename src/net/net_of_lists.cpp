// Nets of lists of clones, and the shape of one contig's net.
#include "database/class_markers.h"
#include "frame/numbers.h"
#include "metrics/class_clone_dist_general.h"
#include "net/class_clone_net_signif.h"
#include "pairs/half_net.h"

namespace orb {

namespace {

constexpr std::int32_t clones_for_status = 500; // larger lists report how far they are
constexpr std::int32_t clones_for_kernel = 500; // from here on the kernel's preparations for the whole library pay
constexpr std::int32_t clones_for_ordering_status = 50;

number_list first_of(const number_list &list, std::int32_t n) {
  return number_list(list.members().first(static_cast<std::size_t>(n)));
}

// Positions in the caller's list for a list of subnet vertices.
number_list positions_of(const number_list &vertices, const number_list &net_list) {
  number_list positions;
  positions.reserve(vertices.count());
  for (const vertex_number v : vertices.members())
    positions.add(net_list(v));
  return positions;
}

// A table by subnet vertex as a table by position in the caller's list; -1 where there is nothing.
number_list by_position(const number_list &by_vertex, const number_list &net_list) {
  number_list table;
  table.resize(net_list.count());
  for (auto &entry : table.members())
    entry = -1;
  for (vertex_number v = 1; v <= net_list.count() && v <= by_vertex.count(); ++v)
    table(net_list(v)) = by_vertex(v);
  return table;
}

// All ordered pairs, each direction by itself.
void compare_small_list(const metric_context &context, const number_list &list, std::int32_t n,
                        const overlap_rule &rule, class_net &net) {
  class_clone_dist_calc calc(context, rule.weights);
  net.inicializate_net(n, net.max_n_edges_for_n_of_vertices(n, -1));
  for (vertex_number v = 1; v <= n; ++v) {
    net.add_vertex_fast(0);
    for (vertex_number w = 1; w <= n; ++w) {
      if (v == w)
        continue;
      const double value = calc.minus_log10_p_value_of_clone_overlapping(list(v), list(w), rule.distance_index);
      if (value >= rule.cutoff)
        net.add_edge_fast(v, w, value, 0, calc.burring_index_get(rule.burying));
    }
  }
  net.finish_of_adding();
  net.test_neighbours_sorted();
}

// The same net: both directions of a pair give the same score, so each pair is compared once, on all cores. A stop
// request leaves the rest out.
void compare_large_list(const metric_context &context, std::span<const clone_number> list, const overlap_rule &rule,
                        class_net &net) {
  process_frame &frame = context.frame;
  const int threads = context.settings.threads;
  class_clone_dist_FPC significant;
  const bool with_table =
      rule.distance_index == class_clone_dist_general::DISTANCE_INDEX_Sulston_1988_get() && rule.cutoff > 0;
  if (with_table)
    significant.fill_sulston_significant_table(rule.cutoff, class_clone_dist_FPC::proposed_table_size(context.database),
                                               context.database, context.usable_values);
  half_net half;
  try {
    const pair_elements elements = pair_elements::of_list(list);
    pair_kernel kernel(context, rule, with_table ? &significant : nullptr, threads);
    overlap_rows rows(kernel, elements, row_partners::of_higher_number, threads);
    const auto go_on = [&](std::int64_t pairs_done) {
      frame.progress(pairs_done, rows.n_pairs());
      return frame.goes_on();
    };
    const auto chunk_done = [&](std::int32_t, std::int32_t last) {
      frame.local_process_text_set(std::to_string(last) + " of " + std::to_string(list.size()));
      return frame.goes_on();
    };
    half.compare(rows, elements.count(), chunk_done, go_on);
  } catch (const zero_frequency &failure) {
    frame.program_end_now(failure.what(), exit_status::run_failed);
  }
  if (half.mirrored_into(net, {}, [&frame] { return frame.goes_on(); }) == half_net::mirror_end::too_large)
    frame.program_end_now("The net has more overlaps than a net can hold. Increase cutoff stringency.",
                          exit_status::run_failed);
}

} // namespace

void class_clone_net_signif::create_net_general(const number_list &list, std::int32_t n, std::int16_t distance_index,
                                                double cutoff, double burying, class_net &net, number_list &net_list) {
  create_net(list, n, rule_of_metric(distance_index, cutoff, burying), net, net_list);
}

void class_clone_net_signif::create_net_general_run(const number_list &list, const overlap_rule &rule, class_net &net,
                                                    number_list &net_list) {
  create_net(list, list.count(), rule, net, net_list);
}

void class_clone_net_signif::create_net(const number_list &list, std::int32_t n, const overlap_rule &rule,
                                        class_net &net, number_list &net_list) {
  net_list = number_list::range(1, n);
  if (!context_.settings.use_file_with_connections) {
    compare_list(list, n, rule, net);
    return;
  }
  number_list sorted = first_of(list, n);
  net_.create_sub_net(sorted, n, false, &net_list, net, workspace_);
  bring_sub_net_to_rule(sorted, n, context_.settings.same_metric_as_net, rule, net);
}

void class_clone_net_signif::create_net_without_using_previous_net(const number_list &list, std::int32_t n,
                                                                   std::int16_t distance_index, double cutoff,
                                                                   double burying, class_net &net) {
  compare_list(list, n, rule_of_metric(distance_index, cutoff, burying), net);
}

void class_clone_net_signif::compare_list(const number_list &list, std::int32_t n, const overlap_rule &rule,
                                          class_net &net) {
  if (n >= clones_for_kernel)
    compare_large_list(context_, list.members().first(static_cast<std::size_t>(n)), rule, net);
  else
    compare_small_list(context_, list, n, rule, net);
}

void class_clone_net_signif::create_sub_net_different_metric_or_cutoff(const number_list &list, std::int32_t n,
                                                                       bool same_metric, std::int16_t distance_index,
                                                                       double cutoff, double burying,
                                                                       const class_net &net_in, class_net &net) {
  class_net made;
  net_in.create_net_copy(made);
  bring_sub_net_to_rule(list, n, same_metric, rule_of_metric(distance_index, cutoff, burying), made);
  net = std::move(made);
}

// Goes over the records in place; their values and codes are computed anew for another metric.
void class_clone_net_signif::bring_sub_net_to_rule(const number_list &list, std::int32_t n, bool same_metric,
                                                   const overlap_rule &rule, class_net &net) {
  process_frame &frame = context_.frame;
  if (n > clones_for_status)
    frame.step_text_set("creation of subnet");
  class_clone_dist_calc calc(context_, rule.weights);
  vertex_number n_shown = 0;
  const auto show_up_to = [&](vertex_number done) {
    for (; n > clones_for_status && n_shown + clones_for_status <= done; n_shown += clones_for_status) {
      frame.progress(n_shown + clones_for_status, n);
      frame.local_process_text_set(std::to_string(n_shown + clones_for_status) + " of " + std::to_string(n));
    }
  };
  net.keep_edges([&](vertex_number v, net_edge &edge) {
    show_up_to(v - 1);
    if (!same_metric) {
      edge.value = calc.minus_log10_p_value_of_clone_overlapping(list(v), list(edge.neighbour), rule.distance_index);
      edge.index2 = calc.burring_index_get(rule.burying);
    }
    return edge.value >= rule.cutoff;
  });
  show_up_to(n);
  net.test_neighbours_sorted();
}

void class_clone_net_signif::create_sub_net_same_metric_plus_markers(const number_list &list, std::int32_t n,
                                                                     std::int16_t distance_index, double cutoff,
                                                                     double burying, const class_net &net_in,
                                                                     class_net &net) {
  create_sub_net_plus_markers(list, n, rule_of_metric(distance_index, cutoff, burying), net_in, net);
}

void class_clone_net_signif::create_sub_net_plus_markers(const number_list &list, std::int32_t n,
                                                         const overlap_rule &rule, const class_net &net_in,
                                                         class_net &net) {
  process_frame &frame = context_.frame;
  frame.step_text_set("creation of subnet plus markers");
  const class_markers &markers = context_.database.markers();
  class_clone_dist_calc calc(context_, rule.weights);
  class_net made;
  made.inicializate_net(n, net_in.number_of_edges_get());
  for (vertex_number v = 1; v <= n; ++v) {
    made.add_vertex_fast(net_in.index_of_vertex_get(v));
    for (vertex_number w = 1; w <= n; ++w) {
      if (v == w)
        continue;
      std::int32_t n_common = 0;
      markers.number_of_common_markers(list(v), list(w), n_common);
      double value = 0;
      std::int16_t index1 = 0, code = 0;
      const bool found = n_common < 1 && net_in.overlap_of_pair(v, w, value, index1, code);
      if (n_common >= 1) {
        value = calc.minus_log10_p_value_of_clone_overlapping(list(v), list(w), rule.distance_index);
        code = calc.burring_index_get(rule.burying);
      }
      if ((found || n_common >= 1) && value >= rule.cutoff)
        made.add_edge_fast(v, w, value, index1, code);
    }
    if (v % clones_for_status == 0) {
      frame.progress(v, n);
      frame.local_process_text_set(std::to_string(v) + " of " + std::to_string(n));
    }
  }
  made.finish_of_adding();
  made.test_neighbours_sorted();
  net = std::move(made);
}

void class_clone_net_signif::shape_of_list(const number_list &list, const overlap_rule &rule, bool use_end_width,
                                           bool with_status, contig_shape &shape) {
  shape = {};
  if (list.empty())
    return;
  class_net net;
  number_list net_list, path, far, ranks_from_path, ranks_from_start;
  create_net_general_run(list, rule, net, net_list);
  if (with_status && list.count() > clones_for_ordering_status)
    context_.frame.local_process_text_set("nv=" + std::to_string(net.number_of_vertices_get()) +
                                          ", ne=" + std::to_string(net.number_of_edges_get()) +
                                          ", cutoff=" + number_text(rule.cutoff, 2));
  net.calculate_net_diam_and_width(context_.frame, use_end_width, shape.radius, shape.diameter, path, shape.width, far,
                                   ranks_from_path, ranks_from_start);
  shape.path = positions_of(path, net_list);
  shape.far = positions_of(far, net_list);
  shape.ranks_from_path = by_position(ranks_from_path, net_list);
  shape.ranks_from_start = by_position(ranks_from_start, net_list);
}

void class_clone_net_signif::contigomer(const number_list &list, const overlap_rule &rule, contig_shape &shape) {
  shape_of_list(list, rule, false, false, shape);
}

void class_clone_net_signif::contigomer_clone_ordering(const number_list &list, const overlap_rule &rule,
                                                       contig_shape &shape) {
  shape_of_list(list, rule, true, true, shape);
}

void class_clone_net_signif::contigomer_clone_ordering_run(const number_list &list, const overlap_rule &rule,
                                                           const number_list &list_of_clones_interesting,
                                                           bool test_interesting, bool report_unconnected,
                                                           contig_shape &shape, number_list &ranks_of_interesting) {
  process_frame &frame = context_.frame;
  contigomer_clone_ordering(list, rule, shape);
  if (shape.width < 0 && report_unconnected)
    frame.alarm("cluster of clones is not connected!");
  const auto clones_of = [&](number_list &positions) {
    for (std::int32_t &member : positions.members()) {
      if (member < 1 || member > list.count())
        frame.program_end_now("Problem with ordering!!!");
      member = list(member);
    }
  };
  clones_of(shape.path);
  clones_of(shape.far);
  position_table &position = workspace_.position;
  position.start(context_.database.total_number_of_clones_get());
  for (std::int32_t i = 1; i <= list.count(); ++i)
    position.set(list(i), i);
  ranks_of_interesting.clear();
  for (std::int32_t i = 1; i <= list_of_clones_interesting.count(); ++i) {
    const clone_number clone = list_of_clones_interesting(i);
    const std::int32_t at = position.get(clone);
    if (at < 0 && test_interesting)
      frame.alarm("Clone " + context_.database.name_of_clone_get(clone) + " of list_of_clones_interesting() " +
                  std::to_string(i) + " is not presented in list_of_clones()?!");
    ranks_of_interesting.add(at < 0 || shape.width < 0 ? -1 : shape.ranks_from_start(at));
  }
}

} // namespace orb
