// Parameters of the library, and parts of the project that come whole or not at all.
#include "support/project_session.h"

using namespace orb_test;

namespace {

class parts : public session_test {
protected:
  // The files of a library and of all that hangs on it.
  void make_files() const {
    session run;
    run.done({load(), "metric.set cutoff=20", "net.create", "net.save out=" + text("strong.ORBns"),
              "net.save_text out=" + text("strong.txt"), "metric.set cutoff=10", "net.create",
              "net.save out=" + text("n.ORBns"), "net.save_text out=" + text("n.txt"),
              "markers.load file=" + text("markers.txt"), "markers.save out=" + text("m.ORB"),
              "contigs.assemble no-ordering=yes no-pair-tables=yes no-drawings=yes out=" + text("results"),
              "pvalue.table runs=300 steps=3 out=" + text("tables")});
  }
  void load_all(session &run) const {
    run.done({load(), "metric.set cutoff=10", "net.load file=" + text("n.ORBns"),
              "markers.load file=" + text("markers.txt"), "contigs.load_folder folder=" + text("lists"),
              "pvalue.load folder=" + text("tables")});
  }
  fs::path run_folder() const {
    for (const fs::directory_entry &entry : fs::directory_iterator(path("results")))
      if (entry.is_directory())
        return entry.path();
    return {};
  }
  std::string copy_of(const fs::path &from, const std::string &name) const {
    fs::remove_all(path(name));
    fs::copy(from, path(name), fs::copy_options::recursive);
    return text(name);
  }
  void cut(const fs::path &file) const {
    ASSERT_TRUE(fs::is_regular_file(file)) << file;
    fs::resize_file(file, fs::file_size(file) / 2 + 1);
  }
};

} // namespace

TEST_F(parts, a_length_below_two_is_the_databases_own) {
  class_DB_of_clones database;
  library_parameters fields;
  fields.gel_length = 40000;
  apply_parameters(database, fields, false);
  fields.gel_length = 1;
  apply_parameters(database, fields, false);
  EXPECT_EQ(fields.gel_length, 40000) << "the field shows it";
  EXPECT_EQ(database.max_band_length_get(), 40000);
  apply_parameters(database, fields, true);
  fields.gel_length = 40000.7;
  apply_parameters(database, fields, true);
  fields.gel_length = 0;
  apply_parameters(database, fields, false);
  EXPECT_EQ(fields.gel_length, 40000) << "its floor";

  session run; // as the dialog asks for it
  run.done({"parameters.set gel-length=50000", "parameters.set gel-length=1 n-bands=3000"});
  EXPECT_EQ(run.project.database().max_band_length_get(), 50000);
  EXPECT_EQ(run.project.database().total_number_of_different_bands_FPC_get(), 3000);
}

TEST_F(parts, presets_stand_for_four_values_that_may_be_overruled) {
  for (std::int32_t preset = 1; preset <= static_cast<std::int32_t>(known_kinds_of_data.size()); ++preset) {
    const library_parameters known = *parameters_of_kind(preset);
    session run;
    run.done({"parameters.set preset=" + std::to_string(preset)});
    const library_parameters set = parameters_of(run.project.database());
    EXPECT_EQ(set.tolerance, known.tolerance);
    EXPECT_EQ(set.tolerance_index, known.tolerance_index);
    EXPECT_EQ(set.gel_length, known.gel_length);
    EXPECT_EQ(set.n_bands, known.n_bands);
    library_wishes wishes;
    wishes.preset = preset;
    wishes.tolerance = 3;
    EXPECT_EQ(parameters_of(wishes).tolerance, 3);
    EXPECT_EQ(parameters_of(wishes).n_bands, known.n_bands);
  }
  library_wishes unknown;
  unknown.preset = 99;
  EXPECT_THROW(parameters_of(unknown), usage_error);
  session run; // what isn't given stays
  run.done({load() + " tolerance=9 n-bands=2000", "parameters.set gel-length=70000"});
  EXPECT_EQ(run.project.database().tollerance_get(), 9);
  EXPECT_EQ(run.project.database().total_number_of_different_bands_FPC_get(), 2000);
  const std::string before = text_of_project(run.project);
  EXPECT_NE(run.run("parameters.set gel-length=5000 tolerance=3").status, exit_status::done) << "it cuts bands off";
  EXPECT_NE(run.run("parameters.set tolerance-index=0").status, exit_status::done) << "loaded bands depend on it";
  EXPECT_EQ(text_of_project(run.project), before);
}

TEST_F(parts, what_is_damaged_leaves_the_part_as_it_was) {
  make_files();
  session run;
  load_all(run);
  const std::string before = text_of_project(run.project);
  const std::uint64_t version = run.project.version();

  const std::string net = bytes_of(path("n.ORBns"));
  write("cut.ORBns", net.substr(0, net.size() - 5));
  std::string beyond = net; // a neighbour that is no clone
  beyond[8 + 6 * 88 + 3] = '\x7f';
  write("beyond.ORBns", beyond);
  write("empty.ORBns", "");
  const std::string text_net = bytes_of(path("n.txt"));
  write("cut.txt", text_net.substr(0, text_net.size() / 2) + "\nclone\t9999\tX\t3\r\n");
  write("junk.bin", std::string("\0\1\2junk\n\xff", 9));
  std::string markers = bytes_of(path("m.ORB"));
  write("cut.ORB", markers.substr(0, markers.size() / 2));
  write("nobody.txt", "M1\tnobody\n");
  write("positions.txt", "M9\t12\n");
  const std::string no_sizes = copy_of(path("tables"), "no_sizes"), cut_a0 = copy_of(path("tables"), "cut_a0");
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(cut_a0))
    if (entry.is_regular_file() && entry.path().filename() != "parameters_table.txt")
      fs::resize_file(entry.path(), 3);
  fs::remove(fs::path(no_sizes) / "parameters_table.txt");
  const std::string no_clusters = copy_of(run_folder(), "no_clusters"), half = copy_of(run_folder(), "half_run");
  fs::remove(fs::path(no_clusters) / "report_clusters.txt");
  cut(fs::path(half) / "report_clusters.txt");
  fs::create_directories(path("unreadable"));
  fs::copy(path("lists/c1.txt"), path("unreadable/c1.txt"));
  fs::create_symlink("/proc/self/mem", path("unreadable/c2.txt")); // opens, and can't be read

  const std::vector<std::string> lines{"net.load file=" + text("cut.ORBns"),
                                       "net.load file=" + text("beyond.ORBns"),
                                       "net.load file=" + text("empty.ORBns"),
                                       "net.load file=" + text("markers.txt"),
                                       "net.load_text force=yes out=" + text("x.ORBns") + " file=" + text("cut.txt"),
                                       "net.load_text force=yes out=" + text("x.ORBns") + " file=" + text("junk.bin"),
                                       "net.load_text out=/dev/null/x file=" + text("n.txt"),
                                       "markers.load form=native file=" + text("cut.ORB"),
                                       "markers.load form=native file=" + text("markers.txt"),
                                       "markers.load file=" + text("junk.bin"),
                                       "markers.load file=" + text("plates"),
                                       "pvalue.load folder=" + no_sizes,
                                       "pvalue.load folder=" + cut_a0,
                                       "pvalue.load folder=" + text("lists"),
                                       "contigs.load folder=" + no_clusters,
                                       "contigs.load folder=" + half,
                                       "contigs.load folder=" + text("lists"),
                                       "contigs.load_folder folder=" + text("unreadable"),
                                       "contigs.load_folder folder=" + text("markers.txt"),
                                       "contigs.load_folder folder=" + text("nowhere")};
  for (const std::string &line : lines) {
    run.record.messages.clear();
    const command_result result = run.run(line);
    EXPECT_NE(result.status, exit_status::done) << line;
    EXPECT_TRUE(!result.why.empty() || !run.record.messages.empty()) << "nobody was told: " << line;
    EXPECT_EQ(run.project.version(), version) << line;
    const std::string now = text_of_project(run.project);
    EXPECT_TRUE(now == before) << line << "\n" << now.substr(0, 900) << "\n-- before --\n" << before.substr(0, 900);
  }
  load_all(run);
  EXPECT_EQ(text_of_project(run.project), before) << "whole inputs are taken afterwards";
}

TEST_F(parts, a_stop_leaves_the_old_part_or_brings_the_new_one) {
  make_files();
  session run;
  write("other/c.txt", names(20, 40));
  write("new_names.txt", "another\t" + names(5, 5));
  write("other_markers.txt", "M7\t" + line_of(20, 22) + "\n");
  const std::vector<std::string> lines{"net.load file=" + text("strong.ORBns"),
                                       "net.load_text force=yes out=" + text("y.ORBns") + " file=" + text("strong.txt"),
                                       "markers.load file=" + text("other_markers.txt"),
                                       "contigs.load_folder folder=" + text("other"),
                                       "contigs.load folder=" + run_folder().string(),
                                       load(),
                                       "net.create",
                                       "net.revise force=yes out=" + text("revised.ORBns"),
                                       "net.remetric with-markers=yes",
                                       "parameters.set n-bands=2000 tolerance=9",
                                       "library.rename force=yes save=" + text("l.ORBdb") +
                                           " file=" + text("new_names.txt")};
  for (const std::string &line : lines) {
    load_all(run);
    const std::string before = text_of_project(run.project);
    int n = 0;
    run.on_yield = [&n] { return ++n, false; };
    run.done({line});
    const std::string after = text_of_project(run.project);
    EXPECT_NE(after, before) << line;
    for (int at = 1; at <= n; at += 1 + n / 12) {
      run.on_yield = nullptr;
      load_all(run);
      run.on_yield = [at, seen = 0]() mutable { return ++seen == at; };
      const std::uint64_t version = run.project.version();
      const exit_status status = run.run(line).status;
      EXPECT_TRUE(status == exit_status::done || status == exit_status::stopped) << line;
      const std::string now = text_of_project(run.project);
      EXPECT_TRUE(now == after || (now == before && status == exit_status::stopped))
          << line << " at " << at << " of " << n;
      EXPECT_EQ(run.project.version() > version, now == after) << line << " at " << at << " of " << n;
    }
    run.on_yield = nullptr;
  }
}
