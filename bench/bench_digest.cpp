// Megabytes a second of cutting a sequence: a plain and a gzip file as the program reads them, and beside it the plain
// formulation, which compares the letters at each place with each site. The ratios are printed at the end.
//   bench_digest [--megabases=20] [--seed=1] [options of Google Benchmark]
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "frame/files.h"
#include "simulation/class_simul_clones.h"
#include "support/temporary_folder.h"

namespace {

using namespace orb;
namespace fs = std::filesystem;

double megabases = 20;
std::uint64_t seed = 1;
std::map<std::string, double> letters_a_second;

// A random sequence in lines of 70 letters, with a run of unknown letters, plain and compressed; removed at the end.
struct generated_sequence {
  temporary_folder folder;
  fs::path plain = folder.path() / "sequence.fa", gzip = folder.path() / "sequence.fa.gz";
  std::string letters;

  generated_sequence() {
    random_source chance(seed);
    letters.resize(static_cast<std::size_t>(megabases * 1e6));
    for (char &letter : letters)
      letter = "ACGT"[chance.next() >> 62];
    std::fill_n(letters.begin() + static_cast<std::ptrdiff_t>(letters.size() / 2), letters.size() / 50, 'N');
    std::string text = ">sequence\n";
    for (std::size_t i = 0; i < letters.size(); i += 70)
      text.append(letters, i, 70) += '\n';
    result_file file(plain);
    file.write(text);
    file.commit();
    const gzFile out = ::gzopen(gzip.c_str(), "wb1");
    ::gzwrite(out, text.data(), static_cast<unsigned>(text.size()));
    ::gzclose(out);
  }
};

const generated_sequence &sequence() {
  static const generated_sequence made;
  return made;
}

template <class work_type>
void measure(benchmark::State &state, const char *name, std::size_t letters, work_type work) {
  double best = 1e300;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(letters));
  letters_a_second[name] = static_cast<double>(letters) / best;
}

void digest_file(benchmark::State &state, const char *name, const fs::path &file) {
  measure(state, name, sequence().letters.size(), [&file] {
    process_frame frame;
    class_Simul_CutEnzyme cutter(frame);
    if (!cutter.read_sequence_and_create_real_band_map(file, true))
      std::abort();
    benchmark::DoNotOptimize(cutter.n_cuts_get());
  });
}

void plain_file(benchmark::State &state) {
  digest_file(state, "plain file", sequence().plain);
}

void gzip_file(benchmark::State &state) {
  digest_file(state, "gzip file", sequence().gzip);
}

// On letters in memory: reading isn't even counted here.
void plain_formulation(benchmark::State &state) {
  measure(state, "plain formulation", sequence().letters.size(), [] {
    process_frame frame;
    const class_Simul_CutEnzyme cutter(frame);
    std::vector<std::int32_t> position, enzyme;
    std::int32_t n = 0;
    cutter.cut_band_after_letter_and_enz_from_s(sequence().letters, position, enzyme, n, true);
    benchmark::DoNotOptimize(n);
  });
}

// Drawing a library of 15-fold coverage and reading its bands, on all cores; letters of clones a second.
void create_clones(benchmark::State &state) {
  process_frame frame;
  class_Simul_CutEnzyme bands(frame);
  clone_draw draw;
  draw.seed = seed;
  class_simul_clones clones(frame, bands, draw);
  frame.working_folder_set(sequence().folder);
  if (!clones.start_Simul_CutEnzyme_CloneEnds_run_if_needed(sequence().plain))
    std::abort();
  measure(state, "clones", static_cast<std::size_t>(15 * clones.clonable_length()), [&clones] {
    if (!clones.create_clones())
      std::abort();
  });
}

BENCHMARK(plain_file)->Unit(benchmark::kMillisecond);
BENCHMARK(gzip_file)->Unit(benchmark::kMillisecond);
BENCHMARK(plain_formulation)->Unit(benchmark::kMillisecond);
BENCHMARK(create_clones)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.starts_with("--megabases="))
      megabases = std::clamp(std::atof(argument.c_str() + 12), 0.1, 2000.0);
    else if (argument.starts_with("--seed="))
      seed = std::strtoull(argument.c_str() + 7, nullptr, 10);
    else
      argv[kept++] = argv[i];
  }
  argc = kept;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  benchmark::RunSpecifiedBenchmarks();
  for (const auto &[name, rate] : letters_a_second)
    std::printf("%-24s %8.0f Mb/s\n", name.c_str(), rate / 1e6);
  if (letters_a_second["plain formulation"] > 0)
    std::printf("a plain file is cut %.2f times as fast as by the plain formulation in memory\n",
                letters_a_second["plain file"] / letters_a_second["plain formulation"]);
}
