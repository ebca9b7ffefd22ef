// Bytes a second of writing and reading a native net, beside writing and reading as many bytes and nothing else; the
// ratios are printed at the end.
//   bench_net_files [arguments of library_arguments.h] [options of Google Benchmark]; argument of a row: clones
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "bench_library.h"
#include "library_arguments.h"

namespace orb {
namespace {

namespace fs = std::filesystem;

generated_library wanted;
std::map<std::string, double> bytes_a_second;

struct net_on_disk : bench_library {
  fs::path file = folder / "net.ORBns", copy = folder / "copy";

  net_on_disk() : bench_library(wanted, 15) { signif.net().save_net_type(frame, file); }
};

template <class work_type> void measure(benchmark::State &state, const char *name, work_type work) {
  wanted.n_clones = static_cast<std::int32_t>(state.range(0));
  net_on_disk disk;
  const auto size = static_cast<std::int64_t>(fs::file_size(disk.file));
  double best = 1e300;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    work(disk);
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  state.SetBytesProcessed(state.iterations() * size);
  bytes_a_second[name] = static_cast<double>(size) / best;
}

void write_net(benchmark::State &state) {
  measure(state, "writing a net", [](net_on_disk &disk) { disk.signif.net().save_net_type(disk.frame, disk.copy); });
}

void read_net(benchmark::State &state) {
  measure(state, "reading a net", [](net_on_disk &disk) {
    class_net net;
    bool ok = false;
    net.read_net_type(disk.frame, disk.file, ok, -1);
    if (!ok)
      std::abort();
    benchmark::DoNotOptimize(net.number_of_edges_get());
  });
}

void write_bytes(benchmark::State &state) {
  std::string bytes;
  measure(state, "writing bytes", [&](net_on_disk &disk) {
    bytes.resize(fs::file_size(disk.file), 'x');
    std::ofstream(disk.copy, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  });
}

void read_bytes(benchmark::State &state) {
  std::string bytes;
  measure(state, "reading bytes", [&](net_on_disk &disk) {
    bytes.resize(fs::file_size(disk.file));
    std::ifstream(disk.file, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  });
}

BENCHMARK(write_net)->Arg(80000)->Unit(benchmark::kMillisecond);
BENCHMARK(write_bytes)->Arg(80000)->Unit(benchmark::kMillisecond);
BENCHMARK(read_net)->Arg(80000)->Unit(benchmark::kMillisecond);
BENCHMARK(read_bytes)->Arg(80000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orb

int main(int argc, char **argv) {
  orb::take_library_arguments(argc, argv, orb::wanted);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 2;
  benchmark::RunSpecifiedBenchmarks();
  auto &rates = orb::bytes_a_second;
  for (const auto &[name, rate] : rates)
    std::printf("%-16s %8.0f MB/s\n", name.c_str(), rate / 1e6);
  if (rates["writing bytes"] > 0 && rates["reading bytes"] > 0)
    std::printf("a net is written at %.2f of the speed of its bytes alone, and read at %.2f\n",
                rates["writing a net"] / rates["writing bytes"], rates["reading a net"] / rates["reading bytes"]);
  return 0;
}
