#include "viewer/multilevel_layout.h"

#include <algorithm>
#include <atomic>
#include <cassert>

#include "frame/worker_batch.h"
#include "viewer/multilevel_packing.h"

namespace orb {

namespace {

constexpr std::int32_t most_nodes_of_item = 2000; // larger components are worked on by all threads together

// The components one after the other, or many at a time.
class net_placing {
public:
  net_placing(const layout_graph &graph, const multilevel_options &options, process_frame &frame)
      : options_(options), frame_(frame), components_(components_of(graph, options.without_doubtful)),
        pictures_(components_.size()), n_nodes_(graph.n) {
    for (std::size_t c = 0; c < components_.size(); ++c)
      place_in_layers(components_[c], pictures_[c]);
  }

  // Components stand from the largest to the smallest. Numbers of nodes are told at the end of each large one.
  bool place() {
    std::size_t next = 0;
    std::int64_t done = 0;
    for (; next < components_.size() && components_[next].count() > most_nodes_of_item; ++next) {
      const layout_work work{options_.threads, [this] { return frame_.goes_on(); }};
      if (!place_component(components_[next], options_.seed, work, pictures_[next]))
        return false;
      done += components_[next].count();
      frame_.progress(done, n_nodes_);
    }
    const bool all = place_small(next, done);
    if (all)
      frame_.progress(n_nodes_, n_nodes_); // those without edges stand where they are
    return all;
  }

  void pack(std::vector<float> &x, std::vector<float> &y) {
    for (plane_points &picture : pictures_)
      turn_flat(picture);
    pack_components(options_.aspect, pictures_);
    for (std::size_t c = 0; c < components_.size(); ++c)
      for (std::size_t v = 0; v < components_[c].node.size(); ++v) {
        x[static_cast<std::size_t>(components_[c].node[v])] = pictures_[c].x[v];
        y[static_cast<std::size_t>(components_[c].node[v])] = pictures_[c].y[v];
      }
  }

private:
  // Those from `first` on, as many at a time as there are threads.
  bool place_small(std::size_t first, std::int64_t n_before) {
    std::size_t end = first;
    while (end < components_.size() && components_[end].count() > 1)
      ++end;
    std::atomic<std::int64_t> done{n_before};
    return run_and_poll(
        static_cast<std::int64_t>(end - first), options_.threads,
        [&](std::int64_t item, int, const std::atomic<bool> &stopped) {
          const std::size_t c = first + static_cast<std::size_t>(item) - 1;
          const layout_work alone{1, [&stopped] { return !stopped; }};
          place_component(components_[c], options_.seed, alone, pictures_[c]);
          done += components_[c].count();
        },
        [&](std::int64_t) {
          frame_.progress(done, n_nodes_);
          return frame_.goes_on();
        });
  }

  const multilevel_options &options_;
  process_frame &frame_;
  std::vector<component_graph> components_;
  std::vector<plane_points> pictures_;
  std::int32_t n_nodes_;
};

} // namespace

bool multilevel_layout(const layout_graph &graph, const multilevel_options &options, process_frame &frame,
                       std::vector<float> &x, std::vector<float> &y) {
  assert(options.aspect > 0);
  x.assign(static_cast<std::size_t>(graph.n) + 1, 0.0f);
  y = x;
  if (graph.n == 0)
    return true;
  net_placing placing(graph, options, frame);
  const bool done = placing.place();
  placing.pack(x, y);
  return done;
}

} // namespace orb
