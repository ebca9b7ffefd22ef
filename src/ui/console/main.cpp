// The program orb: command line in, files and a result line out.
#include <chrono>
#include <cstdio>
#include <fmt/format.h>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "commands/verbs.h"
#include "frame/files.h"
#include "frame/program_folder.h"
#include "frame/version.h"
#include "ui/console/command_line.h"
#include "ui/console/console_front_end.h"
#include "ui/console/standard_input.h"

namespace {

namespace fs = std::filesystem;

// The folder of the verb's results for the long runs, unless one is named.
fs::path log_folder(orb::verb_run &call) {
  if (!call.program().log.empty())
    return call.program().log;
  const std::string &name = call.the_verb().name;
  return name == "assemble" || name == "contigs" ? call.path("out") : fs::path();
}

void read_answers(const fs::path &file, orb::answer_book &book) {
  if (file.empty())
    return;
  std::string problem;
  if (!orb::answer_book::parse(orb::file_bytes(file), book, problem))
    throw orb::usage_error("--answers: " + problem);
}

void say_closing_lines(std::chrono::steady_clock::time_point began) {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
  const double cpu = double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                     double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  fmt::print(stderr, "ORB {}: {:.1f} s, CPU {:.1f} s, peak memory {:.0f} MiB\n", orb::program_version(), wall, cpu,
             double(usage.ru_maxrss) / 1024);
}

// A result that standard output could not take is a failed output.
bool standard_output_is_whole() {
  return std::fflush(stdout) == 0 && !std::ferror(stdout);
}

orb::exit_status run(orb::verb_run &call) {
  const orb::program_options &options = call.program();
  const orb::standard_input from_pipe(call);
  orb::answer_book book;
  read_answers(options.answers, book);
  const fs::path home = orb::program_folder();
  orb::console shown({options.quiet, options.verbose, options.yes}, book);
  orb::project_state project(shown.as_front_end(), home);
  if (const fs::path folder = log_folder(call); !folder.empty()) {
    orb::create_folder(folder);
    project.frame().log_folder_set(folder);
  } else if (home.empty()) {
    project.frame().note("This command has no log: " + orb::usual_program_folder().string() +
                         " can't be written. --log DIR or ORB_HOME names another folder.");
  }
  project.start();
  const orb::exit_status status = orb::run_verb(call, project, shown.streams());
  project.finish();
  return status;
}

} // namespace

int main(int count, char **values) {
  const auto began = std::chrono::steady_clock::now();
  const std::vector<std::string> arguments(values + 1, values + count);
  const orb::command_line_result parsed = orb::parse_command_line(arguments);
  if (!parsed.call) {
    std::fputs((parsed.text + (parsed.text.ends_with('\n') ? "" : "\n")).c_str(), parsed.status == 0 ? stdout : stderr);
    return parsed.status == 0 && !standard_output_is_whole() ? 3 : parsed.status;
  }
  orb::verb_run &call = *parsed.call;
  call.program().command_line.assign(values, values + count);
  orb::interrupts_install();
  orb::exit_status status = orb::exit_status::done;
  const auto wrong_end = [&](const char *why, orb::exit_status end) {
    std::fprintf(stderr, "orb %s: %s\n", call.the_verb().name.c_str(), why);
    status = end;
  };
  try {
    status = run(call);
  } catch (const orb::usage_error &wrong) {
    wrong_end(wrong.what(), orb::exit_status::wrong_command);
  } catch (const orb::file_error &failed) {
    wrong_end(failed.what(), orb::exit_status::no_input_or_output);
  }
  if (status == orb::exit_status::done && !call.program().quiet)
    say_closing_lines(began);
  if (!standard_output_is_whole() && status == orb::exit_status::done)
    wrong_end("standard output can't be written", orb::exit_status::no_input_or_output);
  return static_cast<int>(status);
}
