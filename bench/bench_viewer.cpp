// The viewer on large nets: redraw into an image, snapshots for undo, .net files, elongation by ranks.
//   bench_viewer [options of Google Benchmark]; the argument of a row: nodes
#include <benchmark/benchmark.h>

#include "bench_library.h"
#include "bench_nets.h"
#include "drawing/cairo_surface.h"
#include "viewer/net_elongation.h"
#include "viewer/net_file.h"
#include "viewer/net_history.h"
#include "viewer/net_painter.h"

namespace orb {
namespace {

void redraw(benchmark::State &state) {
  const class_net_elng &net = net_of(state.range(0));
  raster_picture picture(1600, 1000);
  view_geometry geometry;
  geometry.fit(picture.surface().size(), net.box());
  net_picture look;
  look.moves = state.range(1) != 0;
  net_painter painter;
  for (auto _ : state)
    painter.redraw_net(net, geometry, look, nullptr, picture.surface());
  state.counters["edges"] = net.n_edges_get();
}
BENCHMARK(redraw)->ArgsProduct({{20000, 80000}, {1, 0}})->ArgNames({"", "moves"})->Unit(benchmark::kMillisecond);

void snapshot(benchmark::State &state) {
  net_history history;
  history.open().copy_all_from(net_of(state.range(0)));
  for (auto _ : state)
    history.store_net_snapshot();
}
BENCHMARK(snapshot)->Arg(20000)->Arg(80000)->Unit(benchmark::kMillisecond);

void save(benchmark::State &state) {
  temporary_folder folder;
  process_frame frame;
  net_saving wanted;
  wanted.net_name = "net";
  for (auto _ : state)
    net_of(state.range(0)).SaveNet(frame, folder.path() / "n.net", wanted);
}
BENCHMARK(save)->Arg(20000)->Arg(80000)->Unit(benchmark::kMillisecond);

void read(benchmark::State &state) {
  temporary_folder folder;
  process_frame frame;
  net_saving wanted;
  wanted.net_name = "net";
  net_of(state.range(0)).SaveNet(frame, folder.path() / "n.net", wanted);
  for (auto _ : state) {
    net_file_contents contents;
    read_net_file(frame, folder.path() / "n.net", contents);
    benchmark::DoNotOptimize(contents);
  }
}
BENCHMARK(read)->Arg(20000)->Arg(80000)->Unit(benchmark::kMillisecond);

// From 50 nodes of a library's net, five ranks.
void elongation_by_ranks(benchmark::State &state) {
  generated_library wanted;
  wanted.n_clones = static_cast<std::int32_t>(state.range(0));
  bench_library library(wanted, 15);
  class_clone_dist_my gate(library.context, &library.signif.net());
  random_source chance(1);
  const net_sources sources{library.frame, library.database, library.signif, gate,
                            library.rule,  chance,           library.folder};
  class_net_elng net;
  bool connected = false;
  net.make_net_for_list_of_clones_run(sources, number_list::range(1, 50), 15, true, "cl", connected);
  net.SelectAll();
  elongation_candidates candidates;
  std::int32_t n_small_ranks = 0;
  std::string text;
  for (auto _ : state)
    net.text_rank(sources, 15, true, candidates, n_small_ranks, text);
  state.counters["found"] = candidates.list_of_elongate_clones.count();
}
BENCHMARK(elongation_by_ranks)->Arg(20000)->Arg(80000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orb

BENCHMARK_MAIN();
