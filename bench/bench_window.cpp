// The window program: from start to end of an empty session, a day's commands in the window against the same ones
// without it, and the longest stretch in which a command serves no event (nothing can be clicked then).
//   tests/desktop/under_xvfb build/bench/bench/bench_window [options of Google Benchmark]
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>
#include <algorithm>

#include "commands/command_table.h"
#include "commands/script.h"
#include "frame/front_end.h"
#include "support/library_generator.h"
#include "support/sizes_file.h"
#include "support/temporary_folder.h"
#include "ui/desktop/main_window.h"

namespace orb {
namespace {

namespace fs = std::filesystem;

// How long nothing could be clicked.
class event_watch {
public:
  event_watch() {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { longest_ = std::max(longest_, since_.restart()); });
    timer_.start(0);
    since_.start();
  }
  qint64 longest() const { return longest_; } // ms

private:
  QTimer timer_;
  QElapsedTimer since_;
  qint64 longest_ = 0;
};

// A session in a folder of its own, with the main window on it.
struct open_window {
  temporary_folder folder;
  desktop_session session;
  main_window window{session, nullptr};

  open_window() {
    session.keep_quiet(true, true);
    session.project().frame().working_folder_set(folder.path());
    session.project().working_folder_set(folder.path());
    window.resize(1280, 800);
    window.show();
    QCoreApplication::processEvents();
  }
  void run(benchmark::State &state, const std::string &line) {
    const script_line parsed = parse_script_line(line, 1);
    bound_command command = bound_by_name(parsed.command);
    for (const auto &[key, value] : parsed.values)
      command.set(key, value);
    if (!session.run(command).completed)
      state.SkipWithError(("failed: " + line).c_str());
  }
};

std::vector<std::string> day_of(const fs::path &library, const fs::path &out) {
  return {"library.load file=" + library.string(),
          "net.create",
          "net.revise force=yes out=" + (out / "q.ORBns").string(),
          "contigs.assemble no-ordering=yes out=" + (out / "results").string(),
          "contigs.draw_map overview=yes out=" + (out / "map.pdf").string(),
          "contigs.picture all=yes out=" + (out / "contig.png").string()};
}

const fs::path &library_of(std::int64_t n_clones) {
  static std::map<std::int64_t, std::pair<temporary_folder, fs::path>> made;
  auto &[folder, file] = made[n_clones];
  if (file.empty()) {
    generated_library wanted;
    wanted.n_clones = static_cast<std::int32_t>(n_clones);
    process_frame frame;
    class_DB_of_clones database;
    class_usable_values usable_values;
    generate_library(frame, wanted, database, usable_values);
    file = folder.path() / "library.sizes";
    write_sizes_file(file, database);
  }
  return file;
}

void start(benchmark::State &state) {
  temporary_folder home;
  for (auto _ : state) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ORB_HOME", QString::fromStdString(home.path().string()));
    process.setProcessEnvironment(environment);
    process.start(ORB_DESKTOP_PROGRAM, {"--quit"});
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
      state.SkipWithError("the program failed");
  }
}
BENCHMARK(start)->Unit(benchmark::kMillisecond)->UseRealTime();

void day_in_window(benchmark::State &state) {
  for (auto _ : state) {
    open_window at;
    for (const std::string &line : day_of(library_of(state.range(0)), at.folder.path()))
      at.run(state, line);
  }
}

void day_without(benchmark::State &state) {
  for (auto _ : state) {
    temporary_folder folder;
    project_state project(front_end{}, folder.path());
    project.working_folder_set(folder.path());
    std::string script;
    for (const std::string &line : day_of(library_of(state.range(0)), folder.path()))
      script += line + "\n";
    const auto nothing = [](const std::string &) {};
    if (run_script(script, "day", project, {nothing, nothing, nothing}) != exit_status::done)
      state.SkipWithError("failed");
  }
}
BENCHMARK(day_in_window)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(day_without)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond)->UseRealTime();

// A row is one command on the library that the ones before it left; `blocked_ms` is its longest stretch without an
// event.
void blocked(benchmark::State &state, std::size_t command) {
  for (auto _ : state) {
    state.PauseTiming();
    open_window at;
    const std::vector<std::string> day = day_of(library_of(state.range(0)), at.folder.path());
    for (std::size_t i = 0; i < command; ++i)
      at.run(state, day[i]);
    state.ResumeTiming();
    const event_watch watch;
    at.run(state, day[command]);
    state.counters["blocked_ms"] = static_cast<double>(watch.longest());
  }
}
BENCHMARK_CAPTURE(blocked, load, 0)->Arg(20000)->Arg(80000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(blocked, net, 1)->Arg(20000)->Arg(80000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(blocked, revise, 2)->Arg(20000)->Arg(80000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(blocked, contigs, 3)->Arg(20000)->Arg(80000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(blocked, map, 4)->Arg(20000)->Arg(80000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(blocked, pictures, 5)->Arg(20000)->Arg(80000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orb

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
