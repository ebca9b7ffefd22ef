// Bytes a second of reading fingerprints: a folder of .sizes files, a library file, and, as what can't be undercut, a
// loop that only finds the lines of the same bytes. The ratios are printed at the end.
//   bench_reading [arguments of library_arguments.h] [options of Google Benchmark]
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "database/class_DB_of_clones_read.h"
#include "database/library_file.h"
#include "frame/files.h"
#include "library_arguments.h"
#include "support/sizes_file.h"
#include "support/temporary_folder.h"

namespace {

using namespace orb;
namespace fs = std::filesystem;

generated_library wanted{.n_clones = 20000};
std::map<std::string, double> bytes_a_second;

// One library as a folder with one .sizes file and as a library file; removed at the end.
struct generated_files {
  temporary_folder folder;
  fs::path sizes = folder.path() / "library.sizes", library = folder.path() / "library.ORBdb";

  generated_files() {
    process_frame frame;
    class_usable_values usable_values;
    class_DB_of_clones made;
    generate_library(frame, wanted, made, usable_values);
    write_sizes_file(sizes, made);
    class_DB_of_clones database;
    load(database);
    DataBase_in_typical_file_print(library, database);
  }

  void load(class_DB_of_clones &database) const { read(sizes, false, database); }
  static void read(const fs::path &file, bool library_format, class_DB_of_clones &database) {
    process_frame frame;
    project_settings settings;
    class_usable_values usable_values;
    database.total_number_of_different_bands_set_by_eff_len(60000);
    class_DB_of_clones_read reader(frame, settings);
    bool success = false;
    if (library_format)
      success = reader.open_file_with_clones(0, file, true, true, database, usable_values);
    else
      reader.read_database_from_folder_of_sizes_files(file, true, true, success, database, usable_values);
    if (!success)
      throw std::runtime_error("the generated file can't be read");
  }
};

const generated_files &files() {
  static const generated_files made;
  return made;
}

// Counts the bytes of all rounds; the rate is kept for the ratios.
template <typename work_type>
void measure(benchmark::State &state, const std::string &name, const fs::path &file, work_type work) {
  const auto size = static_cast<std::int64_t>(fs::file_size(file));
  double seconds = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    work();
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  state.SetBytesProcessed(state.iterations() * size);
  bytes_a_second[name] = static_cast<double>(state.iterations() * size) / seconds;
}

void scan_lines(benchmark::State &state, const std::string &name, const fs::path &file) {
  measure(state, name, file, [&file] {
    line_reader lines(file);
    std::string_view line;
    std::size_t length = 0;
    while (lines.next(line))
      length += line.size();
    benchmark::DoNotOptimize(length);
  });
}

void lines_of_sizes(benchmark::State &state) {
  scan_lines(state, "lines of .sizes", files().sizes);
}
void lines_of_library(benchmark::State &state) {
  scan_lines(state, "lines of library file", files().library);
}

void read_sizes(benchmark::State &state) {
  measure(state, "reading .sizes", files().sizes, [] {
    class_DB_of_clones database;
    files().load(database);
    benchmark::DoNotOptimize(database.band_array());
  });
}

void read_library(benchmark::State &state) {
  measure(state, "reading library file", files().library, [] {
    class_DB_of_clones database;
    generated_files::read(files().library, true, database);
    benchmark::DoNotOptimize(database.band_array());
  });
}

void write_library(benchmark::State &state) {
  class_DB_of_clones database;
  files().load(database);
  measure(state, "writing library file", files().library,
          [&database] { DataBase_in_typical_file_print(files().folder.path() / "written.ORBdb", database); });
}

BENCHMARK(lines_of_sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(read_sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(lines_of_library)->Unit(benchmark::kMillisecond);
BENCHMARK(read_library)->Unit(benchmark::kMillisecond);
BENCHMARK(write_library)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
  take_library_arguments(argc, argv, wanted);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  benchmark::RunSpecifiedBenchmarks();
  for (const auto &[name, rate] : bytes_a_second)
    std::printf("%-24s %8.0f MB/s\n", name.c_str(), rate / 1e6);
  if (bytes_a_second["lines of .sizes"] > 0)
    std::printf("reading .sizes runs at %.2f of the speed of only finding the lines\n",
                bytes_a_second["reading .sizes"] / bytes_a_second["lines of .sizes"]);
  if (bytes_a_second["lines of library file"] > 0)
    std::printf("reading a library file at %.2f\n",
                bytes_a_second["reading library file"] / bytes_a_second["lines of library file"]);
}
