#include "command_reader.h"

#include <cstdlib>
#include <fmt/format.h>
#include <map>
#include <memory>
#include <unistd.h>

#include "support/native_markers.h"
#include "support/temporary_folder.h"

namespace fuzz_test {

namespace fs = std::filesystem;

namespace {

// Windows of an axis of bands: eight clones in a row, two beside them, one alone. A short gel makes loading quick.
std::string small_library() {
  constexpr int n_bands = 12, shift = 3;
  std::string text;
  const auto add = [&](const std::string &name, int first) {
    text += name + "\t" + std::to_string(n_bands) + "\tGel\r\n";
    for (int i = first; i < first + n_bands; ++i)
      text += fmt::format("{}.{}\r\n", 40 + 17 * i + (i * i) % 7, i % 10);
    text += "-1\r\n";
  };
  for (int i = 0; i < 8; ++i)
    add("AB001C0" + std::to_string(i + 1), shift * i);
  add("AB002D01", 60);
  add("AB002D02", 62);
  add("AB002E11", 90);
  return text;
}

std::string small_truth() {
  std::string text = "clone\tpart\tchromosome\tstart\tend\r\n";
  for (int i = 0; i < 8; ++i)
    text += fmt::format("AB001C0{}\t1\tchr1\t{}\t{}\r\n", i + 1, 3000 * i, 3000 * i + 12000);
  return text + "AB002D01\t1\tchr2\t100\t9000\r\nAB002D02\t1\tchr2\t4000\t12000\r\nAB002D02\t2\tchr1\t50\t60\r\n"
                "AB002E11\t1\tchr2\t50000\t50000\r\n";
}

// Files of a folder in memory where there is one.
void choose_temporary_folder() {
  std::error_code failed;
  if (fs::is_directory("/dev/shm", failed) && ::access("/dev/shm", W_OK) == 0)
    ::setenv("TMPDIR", "/dev/shm", 1);
}

class input_folder {
public:
  input_folder() {
    fs::create_directories(top_ / "work" / "read");
    fs::current_path(top_ / "work");
    const auto write = [&](const char *name, const std::string &bytes) { write_bytes(top_ / "in" / name, bytes); };
    write("plates/p.sizes", small_library());
    write("truth.tsv", small_truth());
    write("list.txt", "AB001C01\nAB001C03,AB002D01 AB001C02\n");
    write("fields.txt", "AB001C01\tm1\tm2\nAB001C02\tm2\nAB002D01\tm3\n");
    write("column.txt", "AB001C01\tm1,m2\nAB001C02\tm2\n");
    write("of_markers.txt", "m1\tAB001C01,AB001C02\tchr1\nm2\tAB002D01\t\n");
    write("positions.txt", "m1\t12.5\nm2\tchr2\n");
    write("new_names.txt", "NEW1\tAB001C01\n#NEW2\tAB001C02\nNEW3\tAB002D02\n");
    write("columns.txt", "AB001C01,AB001C02\nAB002D01\n");
    write("lists/a.txt", "AB001C01\nAB001C02\n");
    write("lists/b.txt", "AB002D01\n");
    write("addresses.txt", "../../in/lists/a.txt\t2\n../../in/lists/b.txt\n");
    write("contig_names.txt", "cl_1\tctg_new\n");
    write("project.txt",
          "library,../in/library.ORBdb\nmarkers,../in/fields.txt\nnet,../in/net.ORBns\nfpc,\nclusters,../in/lists\n");
    write("fpc_paths.txt", "// paths\ncl_2    AB001C01 AB001C02\nCL_2 AB001C03\n");
    write("fpc_zone.txt", "# z - remark: r\nAB001C01,AB001C02\n# y\nAB002D01\n");
    write("native.ORB", orb_test::native_markers(11));
    write("q_clones.txt", "AB001C03\nAB002D01\n");
    make_by_commands();
  }
  const fs::path &path() const { return in_; }

private:
  void make_by_commands() {
    session made;
    run_lines(made, {"library.load file=../in/plates gel-length=2000 tolerance=2 n-bands=500",
                     "library.save out=../in/library.ORBdb", "metric.set cutoff=4", "net.create",
                     "net.save out=../in/net.ORBns", "net.save_text out=../in/net.txt",
                     "contigs.assemble out=../in/made min-size=4 ordering-steps=200 no-drawings=yes",
                     "pvalue.table out=../in/tables runs=50 min-bands=10 step=10 steps=2",
                     "markers.load file=../in/fields.txt", "markers.save out=../in/markers.ORB",
                     "contigs.export to=fpc out=../in/fpc/x.fpc",
                     "contigs.evaluate folder=../in/made truth=../in/truth.tsv"});
    for (const fs::directory_entry &entry : fs::directory_iterator(in_ / "made"))
      if (entry.is_directory())
        fs::rename(entry.path(), in_ / "run");
    fs::copy(in_ / "run", in_ / "old_run", fs::copy_options::recursive);
    for (const char *table : {"registry_clusters.tsv", "registry_clones.tsv"})
      fs::remove(in_ / "old_run" / table);
  }

  temporary_folder folder_;
  fs::path top_ = folder_.path(), in_ = top_ / "in";
};

// A session with parts, and all that it holds.
struct held_parts {
  explicit held_parts(const std::vector<std::string> &parts) {
    run_lines(held, load_line(parts));
    held.record = {};
    text = orb_test::text_of_project(held.project);
  }
  session held;
  std::string text;
};

class command_target {
public:
  explicit command_target(command_reader reader) : reader_(std::move(reader)) {}

  bool run(const std::string &bytes) {
    prepare(bytes);
    if (!before_)
      before_ = std::make_unique<held_parts>(reader_.parts);
    session &held = before_->held;
    held.project.settings().threads = 1;
    const memory_count count;
    const command_result result = held.run(reader_.read);
    count.check(static_cast<std::int64_t>(bytes.size()), reader_.limits);
    promise(result.status != exit_status::broken_invariant || result.why.empty(), result.why);
    promise(result.why != "not enough memory", result.why);
    if (!result.completed)
      promise(!result.why.empty() || !held.told().empty(), "refused without a word");
    else if (reader_.write)
      check_written(held);
    const bool stays = result.completed ? reader_.does == effect::none : reader_.does != effect::some;
    if (stays)
      check_unchanged();
    else
      before_.reset();
    return result.completed;
  }

private:
  void prepare(const std::string &bytes) {
    fs::current_path(small_inputs().parent_path() / "work"); // also makes the inputs
    if (!copied_ && !reader_.folder.empty()) {
      fs::remove_all("read");
      fs::copy(small_inputs() / reader_.folder, "read", fs::copy_options::recursive);
      copied_ = true;
    }
    fs::remove_all("out");
    fs::create_directory("out");
    write_bytes(fs::path("read") / reader_.file, bytes);
  }

  void check_unchanged() {
    promise(orb_test::text_of_project(before_->held.project) == before_->text,
            "what was loaded changed: " + before_->held.told());
    before_->held.record = {};
  }

  // What was accepted is the same when it is written and read.
  void check_written(session &first) {
    if (!reader_.write(first) || reader_.read_again.empty())
      return;
    session again;
    run_lines(again, load_line(reader_.parts));
    run_lines(again, reader_.read_again);
    const std::string was = reader_.text(first), is = reader_.text(again);
    promise(was == is, "reads back otherwise:\n" + was + "\nand now\n" + is);
  }

  command_reader reader_;
  std::unique_ptr<held_parts> before_;
  bool copied_ = false;
};

} // namespace

void run_lines(session &on, const std::vector<std::string> &lines) {
  for (const std::string &line : lines) {
    on.project.settings().threads = 1;
    const command_result result = on.run(line);
    promise(result.completed, line + ": " + result.why + " " + on.told());
  }
}

const fs::path &small_inputs() {
  static const bool chosen = (choose_temporary_folder(), true);
  static const input_folder inputs;
  return (void)chosen, inputs.path();
}

std::string bytes_of_input(const std::string &name) {
  return bytes_of(small_inputs() / name);
}

std::vector<std::string> load_line(const std::vector<std::string> &parts) {
  static const std::map<std::string, std::string> lines{
      {"library", "library.load file=../in/library.ORBdb"},      {"net", "net.load file=../in/net.ORBns"},
      {"lists", "clones_in_lists.add_file file=../in/list.txt"}, {"contigs", "contigs.load folder=../in/run"},
      {"markers", "markers.load file=../in/fields.txt"},         {"tables", "pvalue.load folder=../in/tables"}};
  std::vector<std::string> all;
  for (const std::string &part : parts)
    all.push_back(lines.at(part));
  return all;
}

std::function<bool(session &)> by_lines(std::vector<std::string> lines) {
  return [lines](session &on) { return run_lines(on, lines), true; };
}

std::string parts_of(const session &of) {
  return orb_test::text_of_parts(of.project);
}

fuzz_target target_of(const std::string &name, command_reader reader, std::vector<std::string> inputs,
                      std::vector<std::string> kept) {
  if (!reader.folder.empty())
    inputs.push_back(reader.folder + "/" + reader.file);
  const auto target = std::make_shared<command_target>(std::move(reader));
  return {name,
          [inputs, kept] {
            std::vector<std::string> seeds = kept;
            for (const std::string &input : inputs)
              seeds.push_back(bytes_of_input(input));
            return seeds;
          },
          [target](const std::string &bytes) { return target->run(bytes); }};
}

} // namespace fuzz_test
