// Redraw of large nets as the window paints them, into an image of 1600 x 1000 pixels.
//   bench_look [options of Google Benchmark]; the arguments of a row: nodes, whether something moves, pixels a pixel
#include <benchmark/benchmark.h>

#include <QGuiApplication>

#include "bench_nets.h"
#include "ui/desktop/qt_surface.h"
#include "viewer/net_painter.h"

namespace orb {
namespace {

void redraw(benchmark::State &state) {
  const class_net_elng &net = net_of(state.range(0));
  qt_picture picture;
  picture.resize({1600, 1000}, static_cast<double>(state.range(2)));
  const drawing_surface surface = picture.surface();
  view_geometry geometry;
  geometry.fit(surface.size(), net.box());
  net_picture look;
  look.moves = state.range(1) != 0;
  net_painter painter;
  for (auto _ : state)
    painter.redraw_net(net, geometry, look, nullptr, surface);
  state.counters["edges"] = net.n_edges_get();
}
BENCHMARK(redraw)
    ->ArgsProduct({{20000, 80000}, {1, 0}, {1, 2}})
    ->ArgNames({"", "moves", "ratio"})
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orb

int main(int argc, char **argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
