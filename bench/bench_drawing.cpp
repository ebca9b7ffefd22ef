// Milliseconds of drawing a net on an image of 1600 x 1000 pixels: its edges as lines of `reach` pixels at most each
// way (0: from anywhere to anywhere), while something moves (plain) and at rest (smooth), and its nodes as circles.
//   bench_drawing [options of Google Benchmark]
#include <benchmark/benchmark.h>

#include <vector>

#include "drawing/cairo_surface.h"
#include "frame/random_source.h"

namespace {

using namespace orb;

constexpr int width = 1600, height = 1000;

float place(random_source &chance, int below) {
  return static_cast<float>(chance.number_up_to(below));
}

void lines(benchmark::State &state) {
  random_source chance(1);
  std::vector<surface_line> drawn;
  const auto reach = static_cast<int>(state.range(1));
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    const surface_point from{place(chance, width), place(chance, height)};
    surface_point to{place(chance, width), place(chance, height)};
    if (reach > 0)
      to = {from.x + place(chance, 2 * reach) - static_cast<float>(reach),
            from.y + place(chance, 2 * reach) - static_cast<float>(reach)};
    drawn.push_back({from, to});
  }
  raster_picture picture(width, height);
  picture.surface().smooth(state.range(2) != 0);
  for (auto _ : state)
    picture.surface().lines({0x808080, 1, line_pattern::solid}, drawn);
  benchmark::DoNotOptimize(picture.pixel(1, 1));
}
BENCHMARK(lines)
    ->ArgNames({"lines", "reach", "smooth"})
    ->ArgsProduct({{100'000, 400'000}, {50, 0}, {0}})
    ->ArgsProduct({{100'000, 400'000}, {50}, {1}})
    ->Unit(benchmark::kMillisecond);

void circles(benchmark::State &state) {
  random_source chance(1);
  std::vector<surface_box> drawn;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    drawn.push_back({{place(chance, width), place(chance, height)}, {4, 0}});
  raster_picture picture(width, height);
  picture.surface().smooth(state.range(1) != 0);
  for (auto _ : state)
    picture.surface().circles({0xFF0000, 0, true, true}, drawn);
  benchmark::DoNotOptimize(picture.pixel(1, 1));
}
BENCHMARK(circles)
    ->ArgNames({"circles", "smooth"})
    ->ArgsProduct({{20'000, 80'000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
