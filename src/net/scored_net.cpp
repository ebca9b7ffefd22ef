#include "net/scored_net.h"

#include <algorithm>

#include "frame/worker_batch.h"
#include "metrics/two_merges.h"

namespace orb {

namespace {

constexpr std::int64_t clones_in_item = 64;

} // namespace

scored_net::scored_net(const class_net &net, const clone_bands &clones, const band_scale &scale, double least,
                       int threads, const std::function<bool()> &go_on)
    : first_(static_cast<std::size_t>(clones.n) + 2, 0) {
  const std::int32_t n = std::min(clones.n, net.number_of_vertices_get());
  for (clone_number a = 1; a <= clones.n; ++a)
    first_[static_cast<std::size_t>(a) + 1] =
        first_[static_cast<std::size_t>(a)] + (a <= n ? net.edges_of_vertex(a).size() : 0);
  edges_.resize(first_.back());
  const auto for_clones = [&](const std::function<void(clone_number)> &body) {
    return run_and_poll((n + clones_in_item - 1) / clones_in_item, threads,
                        [&](std::int64_t item, int, const std::atomic<bool> &stopped) {
                          const std::int64_t last = std::min<std::int64_t>(n, item * clones_in_item);
                          for (std::int64_t a = (item - 1) * clones_in_item + 1; a <= last && !stopped; ++a)
                            body(static_cast<clone_number>(a));
                        },
                        [&](std::int64_t) { return go_on(); });
  };
  const auto score_upper = [&](clone_number a) { // each pair once
    const auto run = of(a);
    auto at = run.begin();
    for (const net_edge &edge : net.edges_of_vertex(a))
      (at++)->to = edge.neighbour;
    std::sort(run.begin(), run.end(), [](const scored_edge &x, const scored_edge &y) { return x.to < y.to; });
    std::vector<common_pair> common_1(clones.of(a).size() + 1), common_2(common_1);
    const auto score = [&](scored_edge &edge, std::size_t common) {
      const auto k = static_cast<std::int32_t>(common);
      edge.common = static_cast<std::int16_t>(k);
      edge.overlap = static_cast<float>(scale.overlap(k, clones.count(a), clones.count(edge.to)));
      edge.score = static_cast<float>(scale.score(k, clones.count(a), clones.count(edge.to)));
    };
    const auto first = std::find_if(run.begin(), run.end(), [a](const scored_edge &edge) { return edge.to > a; });
    for (auto edge = first; edge < run.end(); edge += 2) {
      const bool is_last = edge + 1 == run.end();
      const auto [k_1, k_2] = merge_with_two(clones.of(a), clones.of(edge->to),
                                             is_last ? std::span<const band_value>() : clones.of((edge + 1)->to),
                                             clones.t, common_1.data(), common_2.data());
      score(*edge, k_1);
      if (is_last)
        break;
      score(*(edge + 1), k_2);
    }
  };
  const auto mirror_lower = [&](clone_number a) {
    for (scored_edge &edge : of(a)) {
      if (edge.to >= a)
        return;
      if (const scored_edge *same = find(edge.to, a)) {
        edge.common = same->common;
        edge.overlap = same->overlap;
        edge.score = same->score;
      }
    }
  };
  if (!for_clones(score_upper) || !for_clones(mirror_lower)) {
    edges_.clear();
    first_.assign(first_.size(), 0);
    return;
  }
  std::size_t kept = 0;
  for (clone_number a = 1; a <= clones.n; ++a) {
    const auto run = of(a);
    first_[static_cast<std::size_t>(a)] = kept;
    for (const scored_edge &edge : run)
      if (edge.score >= static_cast<float>(least) && edge.to != a)
        edges_[kept++] = edge;
      else
        ++n_left_out_;
  }
  first_[static_cast<std::size_t>(clones.n) + 1] = kept;
  edges_.resize(kept);
}

const scored_edge *scored_net::find(clone_number a, clone_number b) const {
  const auto run = of(a);
  const auto at =
      std::lower_bound(run.begin(), run.end(), b, [](const scored_edge &e, clone_number to) { return e.to < to; });
  return at == run.end() || at->to != b ? nullptr : &*at;
}

void scored_net::end_both(clone_number a, clone_number b, edge_end end) {
  if (const scored_edge *edge = find(a, b))
    of(a)[static_cast<std::size_t>(edge - of(a).data())].end = end;
  if (const scored_edge *edge = find(b, a))
    of(b)[static_cast<std::size_t>(edge - of(b).data())].end = end;
}

} // namespace orb
