// A contig too long for one search, through the commands: the run and the list are ordered in windows along its axis,
// and a list that has no axis is refused when it is long.
#include "support/library_generator.h"
#include "support/project_session.h"
#include "support/sizes_file.h"

using namespace orb_test;

namespace {

class long_contig : public session_test {
protected:
  // Fingerprints of clones along one chromosome, none of them buried.
  void write_fingerprints(std::int32_t n_clones) const {
    process_frame frame;
    class_DB_of_clones database;
    class_usable_values usable_values;
    generate_library(frame, {.n_clones = n_clones, .bands_in_clone = 40, .spread = 0, .coverage = 12}, database,
                     usable_values);
    write_sizes_file(path("clones.sizes"), database);
  }
};

std::string notes_of(const session &run) {
  std::string text;
  for (const std::string &note : run.record.notes)
    text += note + "\n";
  return text;
}

} // namespace

TEST_F(long_contig, is_ordered_in_windows_in_a_run_and_as_a_list) {
  write_fingerprints(700);
  session run;
  run.done({"library.load file=" + text("clones.sizes"), "metric.set cutoff=10 burying=1", "net.create"});
  const std::string findings =
      run.run("contigs.assemble max-clones=none no-drawings=yes no-pair-tables=yes out=" + text("run")).findings;
  EXPECT_NE(findings.find("Contigs ordered in windows, with more than 500 clones that aren't buried: 1. Weak joins of "
                          "their windows (see order_control_): 0 of "),
            std::string::npos)
      << findings;
  fs::path list, control;
  for (const auto &entry : fs::recursive_directory_iterator(path("run"))) {
    const std::string name = entry.path().filename().string();
    if (name == entry.path().parent_path().filename().string() + ".txt" && fs::file_size(entry.path()) > 3000)
      list = entry.path();
    if (name.starts_with("order_control_") && bytes_of(entry.path()).find("\nWindows:\r\n") != std::string::npos)
      control = entry.path();
  }
  ASSERT_FALSE(list.empty() || control.empty());
  const std::string in_run = bytes_of(control);
  run.done({"order.list list=" + list.string() + " out=" + text("ordered")});
  EXPECT_NE(notes_of(run).find("are buried in others. In "), std::string::npos) << notes_of(run);
  EXPECT_EQ(bytes_of(path("ordered") / control.filename()), in_run);

  write_fingerprints(5200);
  std::ofstream far_apart(path("list.txt"));
  run.done({"library.load file=" + text("clones.sizes"), "metric.set cutoff=100"});
  for (clone_number c = 1; c <= 5200; ++c)
    far_apart << run.project.database().name_of_clone_get(c) << "\n";
  far_apart.close();
  EXPECT_EQ(run.run("order.list list=" + text("list.txt") + " out=" + text("none")).status, exit_status::run_failed);
  EXPECT_NE(run.told().find("don't hang together at the cutoff"), std::string::npos);
}
