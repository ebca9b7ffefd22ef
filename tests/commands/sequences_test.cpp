// Commands one after another, and one within another, on one project: what an earlier one did must not be seen in the
// result of a later one, and what failed or was stopped must leave nothing behind.
#include "frame/random_source.h"
#include "support/project_session.h"

using namespace orb_test;

namespace {

class sequences : public session_test {
protected:
  // The bytes of the net that is loaded.
  std::string net_of(session &run) const {
    run.done({"net.save force=yes out=" + text("saved.ORBns")});
    return bytes_of(path("saved.ORBns"));
  }
  std::string fresh_net(const std::vector<std::string> &lines) const {
    session run;
    run.done(lines);
    return net_of(run);
  }
  const std::string whole_example = example().string();
};

// Stops at the n-th yield of a command.
void stop_at(session &run, const std::string &id, int n) {
  run.on_yield = [&run, id, n, seen = 0]() mutable { return run.project.running() == id && ++seen >= n; };
}

int yields_of(session &run, const std::string &line) {
  int n = 0;
  run.on_yield = [&n] { return ++n, false; };
  run.done({line});
  run.on_yield = nullptr;
  return n;
}

bool is_at_rest(const project_state &project) {
  const process_frame &frame = project.frame();
  return project.running().empty() && !frame.was_stopped() && !frame.stop_requested_get() && !frame.data_failed() &&
         !frame.process_is_running();
}

} // namespace

TEST_F(sequences, what_was_stopped_is_done_the_second_time) {
  session run;
  const std::string load_example = "library.load file=" + whole_example;
  run.done({load_example});
  const int yields = yields_of(run, "net.create");
  const std::string net = net_of(run);
  int n_stopped = 0;
  for (int at = 1; at <= yields; ++at) {
    run.done({load_example});
    stop_at(run, "net.create", at);
    const exit_status first = run.run("net.create").status;
    EXPECT_TRUE(first == exit_status::stopped || first == exit_status::done) << at; // behind its last clone it is done
    EXPECT_EQ(run.project.has(project_part::net), first == exit_status::done) << at;
    n_stopped += first == exit_status::stopped;
    EXPECT_TRUE(is_at_rest(run.project));
    run.on_yield = nullptr;
    EXPECT_EQ(run.run("net.create").status, exit_status::done);
    EXPECT_EQ(net_of(run), net) << at;
  }
  EXPECT_GT(n_stopped, 2);
  const std::map<std::string, std::string> options{{"input", whole_example}, {"out", text("verb.ORBns")}};
  stop_at(run, "net.create", 3);
  EXPECT_EQ(run.run_verb("net", options).status, exit_status::stopped);
  EXPECT_FALSE(fs::exists(path("verb.ORBns")));
  run.on_yield = nullptr;
  EXPECT_EQ(run.run_verb("net", options).status, exit_status::done);
  EXPECT_EQ(bytes_of(path("verb.ORBns")), net);
}

TEST_F(sequences, a_stopped_picture_leaves_no_file) {
  session run;
  run.done({load(), "contigs.load_folder folder=" + text("lists")});
  stop_at(run, "contigs.draw_map", 1);
  const std::string line = "contigs.draw_map overview=yes out=";
  for (const char *name : {"m.png", "m.svg", "m.pdf"}) {
    EXPECT_EQ(run.run(line + text(name)).status, exit_status::stopped);
    EXPECT_FALSE(fs::exists(path(name)));
  }
  run.on_yield = nullptr;
  EXPECT_EQ(run.run(line + text("m.png")).status, exit_status::done);
  EXPECT_TRUE(fs::exists(path("m.png")));
}

TEST_F(sequences, a_failed_load_leaves_the_library_whole) {
  session run;
  run.done({load() + " tolerance=9 capacity=1000", "markers.load file=" + text("markers.txt"), "metric.set cutoff=10",
            "net.create", "contigs.load_folder folder=" + text("lists"), "library.save out=" + text("l.ORBdb")});
  const std::string before = text_of_project(run.project);
  const std::uint64_t version = run.project.version();
  const std::string library = bytes_of(path("l.ORBdb"));
  write("cut.ORBdb", library.substr(0, library.size() / 2));
  write("junk.ORBdb", "no quotes,5\r\n");
  write("empty.sizes", "");
  fs::create_directories(path("nothing"));
  for (const char *bad : {"bad", "cut.ORBdb", "junk.ORBdb", "empty.sizes", "nothing", "nowhere"})
    for (const char *wish : {"", " preset=4 name-format-in=1 capacity=7"}) {
      const command_result result = run.run("library.load file=" + text(bad) + wish);
      EXPECT_NE(result.status, exit_status::done) << bad;
      EXPECT_EQ(text_of_project(run.project), before) << bad << wish;
      EXPECT_EQ(run.project.version(), version) << bad << wish;
      EXPECT_TRUE(is_at_rest(run.project)) << bad;
    }
  stop_at(run, "library.load", 3);
  EXPECT_EQ(run.run(load()).status, exit_status::stopped);
  EXPECT_EQ(text_of_project(run.project), before);
  run.on_yield = nullptr;
  EXPECT_EQ(run.run(load()).status, exit_status::done) << "no earlier failure is seen";
}

TEST_F(sequences, a_verb_does_not_see_what_was_loaded_before) {
  const std::map<std::string, std::string> options{
      {"input", text("plates")}, {"out", text("n.ORBns")}, {"metric", "Lnn"}, {"cutoff", "3"}};
  session fresh;
  const verb_end refused = fresh.run_verb("net", options);
  EXPECT_EQ(refused.status, exit_status::wrong_command);
  session run;
  run.done({load(), "pvalue.table runs=300 steps=3 out=" + text("tables"), "pvalue.load folder=" + text("tables"),
            "metric.set metric=Lnn cutoff=3", "net.create", "options.set table-format=4 fast-fpc=no"});
  const verb_end second = run.run_verb("net", options);
  EXPECT_EQ(second.status, refused.status);
  EXPECT_EQ(second.people, refused.people);
  EXPECT_FALSE(fs::exists(path("n.ORBns")));
  session untouched;
  EXPECT_EQ(text_of_project(run.project), text_of_project(untouched.project));
}

TEST_F(sequences, a_metric_of_frequencies_leaves_nothing_behind) {
  const std::string net = fresh_net({load(), "net.create"});
  session run;
  run.done({load(), "metric.set metric=SulstonFrec cutoff=12", "net.create", "metric.set", "net.create"});
  EXPECT_EQ(net_of(run), net);
}

TEST_F(sequences, frequencies_are_the_same_from_fingerprints_and_from_the_library_file) {
  const std::string records = records_of_start();
  write("copies/a.sizes", records);
  write("copies/b.sizes", records.substr(0, records.find("-1\n", records.size() / 3) + 3));
  session run;
  const command_result loaded = run.run("library.load file=" + text("copies"));
  ASSERT_EQ(loaded.status, exit_status::done);
  ASSERT_GT(run.project.reader().summary().n_copies_dropped, 10);
  const std::vector<std::string> net{"metric.set metric=SulstonFrec cutoff=12", "net.create"};
  run.done({"library.save out=" + text("l.ORBdb")});
  run.done(net);
  const std::string from_folder = net_of(run);
  EXPECT_GT(run.project.signif().net().number_of_edges_get(), 0);
  EXPECT_EQ(from_folder, fresh_net({"library.load file=" + text("l.ORBdb"), net[0], net[1]}));
  EXPECT_EQ(from_folder, fresh_net({load(), net[0], net[1]})) << "copies don't count";
}

TEST_F(sequences, no_command_runs_within_another) {
  const std::string net = fresh_net({"library.load file=" + whole_example, "net.create"});
  session run;
  run.done({"library.load file=" + whole_example});
  std::size_t asked = 0;
  run.on_yield = [&] {
    if (run.project.running() != "net.create" || asked == table_of_commands().size())
      return false;
    const command_row &row = table_of_commands()[asked++];
    const std::uint64_t version = run.project.version();
    bound_command command = row.bind();
    if (row.id == "library.load")
      command.set("file", text("plates"));
    const command_result result = run_command(run.project, command);
    const std::string why = row.id + " can't begin while net.create runs.";
    EXPECT_EQ(result.status, exit_status::run_failed) << row.id;
    EXPECT_EQ(result.why, why);
    EXPECT_EQ(run.record.messages.back(), why);
    EXPECT_EQ(run.project.version(), version) << row.id;
    EXPECT_EQ(run.project.running(), "net.create") << row.id;
    return false;
  };
  for (int i = 0; i < 100 && asked < table_of_commands().size(); ++i)
    run.done({"net.create"});
  EXPECT_EQ(asked, table_of_commands().size());
  EXPECT_EQ(net_of(run), net);

  bool tried = false; // a verb would clear the project under the one that runs
  run.on_yield = [&] {
    if (run.project.running() == "net.create" && !tried) {
      tried = true;
      const verb_end end = run.run_verb("load", {{"input", text("plates")}, {"out", text("l.ORBdb")}});
      EXPECT_EQ(end.status, exit_status::run_failed);
      EXPECT_EQ(end.people, std::vector<std::string>{"orb load: load can't begin while net.create runs."});
    }
    return false;
  };
  run.done({"net.create"});
  EXPECT_TRUE(tried);
  EXPECT_FALSE(fs::exists(path("l.ORBdb")));
  run.on_yield = nullptr;
  EXPECT_EQ(net_of(run), net);
}

// ---- any order ----

namespace {

// The first line in which two files differ; empty: none.
std::string first_difference(const std::string &wanted, const std::string &made) {
  std::istringstream left(wanted), right(made);
  std::string line, other;
  for (int number = 1;; ++number) {
    const bool is_left = bool(std::getline(left, line)), is_right = bool(std::getline(right, other));
    if (!is_left && !is_right)
      return {};
    if (is_left != is_right || line != other)
      return "line " + std::to_string(number) + "\n" + line + "\n" + other;
  }
}

// What may be set and loaded, and the commands that write files from it. A project that came there by any road writes
// the same files as one that went there straight.
struct choices {
  bool other_metric = false, other_options = false, markers = false, other_parameters = false;
  int net = 0; // 0 none, 1 as made, 2 revised
  friend bool operator==(const choices &, const choices &) = default;
};

class any_order : public sequences {
protected:
  any_order() {
    session run;
    run.done({load(), "metric.set cutoff=10", "net.create", "net.save out=" + text("n1.ORBns"),
              "net.revise out=" + text("n2.ORBns")});
  }
  std::string line(const choices &at, int what) const {
    switch (what) {
    case 0:
      return at.other_metric ? "metric.set metric=Soderlund_1997 cutoff=8 burying=0.7" : "metric.set cutoff=10";
    case 1:
      return at.other_options ? "options.set table-format=2 net-in-ordering=yes fast-clustering=no"
                              : "options.set table-format=0 net-in-ordering=no fast-clustering=yes";
    case 2:
      return at.other_parameters ? "parameters.set n-bands=3000 tolerance=7"
                                 : "parameters.set n-bands=2250 tolerance=12";
    case 3:
      return "markers.load file=" + text("markers.txt");
    default:
      return "net.load file=" + text("n" + std::to_string(at.net) + ".ORBns");
    }
  }
  std::vector<std::string> straight_to(const choices &at) const {
    std::vector<std::string> lines{load(), line(at, 0), line(at, 1), line(at, 2)};
    if (at.markers)
      lines.push_back(line(at, 3));
    if (at.net > 0)
      lines.push_back(line(at, 4));
    return lines;
  }
  static constexpr int n_writers = 7, text_net_writer = 5;
  std::string writer(int k, const std::string &out) const {
    const std::string list = " list=" + text("clones.txt") + " out=" + text(out);
    const std::string lines[n_writers]{"table.pairs" + list,
                                       "draw.list force=yes mark=" + text("part.txt") + list + "/d.net",
                                       "order.list ordering-steps=2000" + list,
                                       "contigs.assemble ordering-steps=500 out=" + text(out),
                                       "net.subnet force=yes out=" + text(out + "/s.ORBns"),
                                       "net.create_text force=yes out=" + text(out + "/t.txt"),
                                       "draw.marked" + list};
    return lines[k];
  }
  std::map<std::string, std::string> files_of(session &run, int k) const {
    fs::remove_all(path("made"));
    const command_result result = run.run(writer(k, "made"));
    EXPECT_EQ(result.status, exit_status::done) << writer(k, "made") << ": " << result.why << run.told();
    return files_below(path("made"));
  }
};

} // namespace

TEST_F(any_order, files_are_those_of_a_fresh_project) {
  random_source chance(5);
  std::map<std::string, std::map<std::string, std::string>> straight; // files by road and writer
  session run;
  choices at;
  run.done(straight_to(at));
  std::string road;
  for (int step = 0; step < 160; ++step) {
    const int what = chance.number_up_to(12) - 1;
    if (what < 5) { // one thing changes, or the library comes anew and with it all that hangs on it goes
      at.other_metric ^= what == 0;
      at.other_options ^= what == 1;
      at.other_parameters ^= what == 2;
      at.markers |= what == 3;
      at.net = what == 4 ? chance.number_up_to(2) : at.net;
      std::string next = line(at, what);
      if (what == 3 && chance.uniform() < 0.5) {
        at.markers = at.other_parameters = false;
        at.net = 0;
        next = load();
      }
      run.done({next});
      road += next + "\n";
      continue;
    }
    const int k = what - 5;
    std::string key = std::to_string(k);
    const std::vector<std::string> lines = straight_to(at);
    for (const std::string &one : lines)
      key += one + "\n";
    if (!straight.contains(key)) {
      session fresh;
      fresh.done(lines);
      straight[key] = files_of(fresh, k);
    }
    const auto made = files_of(run, k);
    road += writer(k, "made") + "\n";
    EXPECT_FALSE(made.empty()) << road;
    for (const auto &[name, bytes] : straight[key]) {
      ASSERT_TRUE(made.contains(name)) << name << " behind\n" << road;
      ASSERT_EQ(first_difference(bytes, made.at(name)), "") << name << " behind\n" << road;
    }
    ASSERT_EQ(made.size(), straight[key].size()) << road;
    if (k == text_net_writer && at.markers && at.net > 0) { // it brings the loaded net to the markers: another net
      run.done({line(at, 4)});
      road += line(at, 4) + "\n";
    }
  }
  EXPECT_GT(straight.size(), 30u);
}

TEST_F(any_order, a_revised_net_is_the_same_as_one_loaded) {
  session made, loaded;
  made.done({load(), "metric.set cutoff=10", "net.create", "net.revise force=yes out=" + text("r.ORBns")});
  loaded.done({load(), "metric.set cutoff=10", "net.load file=" + text("r.ORBns")});
  for (int k = 0; k < n_writers; ++k)
    EXPECT_TRUE(files_of(made, k) == files_of(loaded, k)) << writer(k, "made");
}

// ---- what every command keeps ----

TEST_F(sequences, a_failure_leaves_the_session_at_rest_and_a_line_at_each_end_of_the_log) {
  session run;
  run.done({load(), "metric.set cutoff=10", "net.create", "folder.set folder=" + text("work")});
  write("file", "x");
  const fs::path working = run.project.frame().working_folder_get();
  const struct {
    std::string line;
    exit_status status;
    bool begins; // refused before any work, a command leaves no line
  } cases[]{
      {"table.pairs list=" + text("clones.txt") + " out=" + text("file/x"), exit_status::no_input_or_output, true},
      {"net.ladder rank=1 steps=1 out=/dev/null/x", exit_status::no_input_or_output, true},
      {"library.load file=" + text("bad"), exit_status::run_failed, true},
      {"library.load file=" + text("nowhere"), exit_status::no_input_or_output, true},
      {"pvalue.estimate n1=32000 n2=5 out=" + text("e"), exit_status::wrong_command, true},
      {"net.characteristics clone=nobody", exit_status::run_failed, true},
      {"library.save out=/dev/null/x", exit_status::no_input_or_output, false},
      {"markers.load file=" + text("nowhere"), exit_status::no_input_or_output, false},
      {"net.revise additional-cutoff=1", exit_status::wrong_command, false},
  };
  for (const auto &c : cases) {
    const std::string before = text_of_project(run.project);
    run.record.log.clear();
    const command_result result = run.run(c.line);
    EXPECT_EQ(result.status, c.status) << c.line << ": " << result.why;
    EXPECT_FALSE(result.completed);
    EXPECT_TRUE(is_at_rest(run.project)) << c.line;
    EXPECT_EQ(run.project.frame().working_folder_get(), working) << c.line;
    EXPECT_EQ(text_of_project(run.project), before) << c.line;
    const std::string id = c.line.substr(0, c.line.find(' '));
    const auto &log = run.record.log;
    EXPECT_EQ(std::count(log.begin(), log.end(), id), c.begins ? 1 : 0) << c.line;
    EXPECT_EQ(std::count_if(log.begin(), log.end(),
                            [&](const std::string &line) { return line.starts_with(id + " failed"); }),
              c.begins ? 1 : 0)
        << c.line;
    if (c.begins) {
      EXPECT_EQ(log.front(), id);
      EXPECT_TRUE(log.back().starts_with(id + " failed")) << log.back();
    } else {
      EXPECT_TRUE(log.empty()) << log.front();
    }
  }
  run.record.log.clear();
  run.done({"net.create"});
  EXPECT_EQ(run.record.log.front(), "net.create");
  EXPECT_EQ(run.record.log.back(), "net.create done");
}

TEST_F(sequences, a_log_that_cant_be_written_ends_a_command_in_words) {
  session run;
  run.done({load()});
  run.project.frame().log_folder_set(path("nowhere"));
  for (const std::string &line : {std::string("net.create"), load(), std::string("project.show")}) {
    command_result result;
    EXPECT_NO_THROW(result = run.run(line)) << line;
    EXPECT_EQ(result.status, exit_status::no_input_or_output) << line;
    EXPECT_NE(result.why.find("ORB.log"), std::string::npos) << result.why;
    EXPECT_TRUE(is_at_rest(run.project));
  }
  EXPECT_TRUE(run.project.has(project_part::library));
}

TEST_F(sequences, what_is_missing_is_named_with_what_makes_it_before_any_work) {
  session run;
  run.record = {};
  const std::uint64_t version = run.project.version();
  int n = 0;
  for (const command_row &row : table_of_commands()) {
    if (row.needs.empty())
      continue;
    ++n;
    const command_result result = run_command(run.project, row.bind());
    EXPECT_EQ(result.status, exit_status::wrong_command) << row.id;
    EXPECT_TRUE(result.why.starts_with(row.id + " needs " + name_of_part(row.needs.front()) + ", and there is none"))
        << result.why;
    int n_makers = 0;
    const std::string makers = " " + result.why.substr(result.why.find(" by: ") + 5) + ",";
    for (const command_row &other : table_of_commands()) {
      const bool makes = std::find(other.makes.begin(), other.makes.end(), row.needs.front()) != other.makes.end();
      EXPECT_EQ(makers.find(" " + other.id + ",") != std::string::npos, makes) << result.why;
      n_makers += makes;
    }
    EXPECT_GT(n_makers, 0) << row.id;
  }
  EXPECT_GT(n, 40);
  EXPECT_TRUE(run.record.panels.empty() && run.record.log.empty() && run.record.questions.empty());
  EXPECT_EQ(run.project.version(), version);
}

TEST_F(sequences, wrong_parameters_of_a_verb_are_refused_before_anything_is_read) {
  const struct {
    std::string verb;
    std::map<std::string, std::string> options;
    exit_status status;
  } cases[]{{"net", {{"metric", "Foo"}}, exit_status::wrong_command},
            {"net", {{"metric", "Lnn"}, {"cutoff", "3"}}, exit_status::wrong_command},
            {"net", {{"start", "5"}}, exit_status::wrong_command},
            {"revise", {{"net", text("markers.txt")}, {"additional-cutoff", "1"}}, exit_status::wrong_command},
            {"contigs", {{"net", text("markers.txt")}, {"metric", "LnnMarkers"}}, exit_status::wrong_command},
            {"assemble", {{"additional-cutoff", "x"}}, exit_status::wrong_command},
            {"list sort", {{"list", text("nowhere")}}, exit_status::no_input_or_output},
            {"draw",
             {{"net", text("markers.txt")}, {"list", text("clones.txt")}, {"mark-prefix", "x"}},
             exit_status::wrong_command}};
  for (const auto &c : cases) {
    session run;
    run.record = {};
    fs::remove_all(path("out"));
    std::map<std::string, std::string> options = c.options;
    options["input"] = text("bad");
    options["out"] = text("out");
    const verb_end end = run.run_verb(c.verb, options);
    EXPECT_EQ(end.status, c.status) << c.verb;
    EXPECT_EQ(end.people.size(), 1u) << c.verb;
    EXPECT_TRUE(run.record.panels.empty()) << c.verb << ": " << run.record.panels.front();
    EXPECT_TRUE(run.record.messages.empty()) << c.verb;
    EXPECT_TRUE(!fs::exists(path("out")) || fs::is_empty(path("out"))) << c.verb;
  }
}

TEST_F(sequences, the_version_rises_when_a_part_changes) {
  session run;
  run.done({load(), "metric.set cutoff=10", "net.create", "net.save out=" + text("n.ORBns"),
            "pvalue.table runs=300 steps=3 out=" + text("tables"), "contigs.assemble out=" + text("run")});
  write("names.txt", "other\t" + all_names().front() + "\n");
  write("cluster_names.txt", "c1\tfirst\n");
  write("positions.txt", "M1\t12\n");
  write("markers.txt", "M1\t" + line_of(2, 4) + "\n");
  const struct {
    std::string line;
    bool rises;
  } steps[]{{load(), true},
            {"project.show", false},
            {"metric.set cutoff=11", false},
            {"options.set table-format=2", false},
            {"formats.set name-format-out=1", false},
            {"formats.set name-format-out=7", false},
            {"parameters.set tolerance=12", false},
            {"parameters.set n-bands=2000", true},
            {"parameters.set n-bands=2250", true},
            {"markers.load file=" + text("markers.txt"), true},
            {"markers.positions file=" + text("positions.txt"), true},
            {"markers.save out=" + text("m.ORB"), false},
            {"pvalue.load folder=" + text("tables"), true},
            {"net.load file=" + text("n.ORBns"), true},
            {"net.save_text out=" + text("n.txt"), false},
            {"net.create_text out=" + text("with.txt"), true}, // the loaded net is brought to the markers
            {"net.load file=" + text("n.ORBns"), true},
            {"net.subnet out=" + text("s.ORBns"), false},
            {"net.save out=" + text("n2.ORBns"), true}, // it lies in another file now
            {"net.revise out=" + text("r.ORBns"), true},
            {"net.remetric", true},
            {"table.pairs out=" + text("t") + " list=" + text("clones.txt"), false},
            {"order.list ordering-steps=100 out=" + text("t") + " list=" + text("clones.txt"), false},
            {"net.ladder rank=1 steps=1 min-cutoff=12 step=2 out=" + text("t"), false},
            {"contigs.load_folder folder=" + text("lists"), true},
            {"contigs.rename file=" + text("cluster_names.txt"), true},
            {"contigs.coordinates out=" + text("t"), false},
            {"contigs.load folder=" + text("run"), true},
            {"library.rename save=" + text("l.ORBdb") + " out=" + text("t") + " file=" + text("names.txt"), true},
            {"library.names bands=no out=" + text("t"), false},
            {"contigs.reset", true},
            {load(), true}};
  for (const auto &step : steps) {
    const std::uint64_t before = run.project.version();
    run.done({step.line});
    EXPECT_EQ(run.project.version() > before, step.rises) << step.line;
  }
  for (const project_part part : {project_part::markers, project_part::net, project_part::contigs})
    EXPECT_FALSE(run.project.has(part)) << name_of_part(part);
  EXPECT_TRUE(run.project.has(project_part::pvalue_tables)) << "they don't hang on the library";
  EXPECT_FALSE(run.project.settings().use_file_with_connections || run.project.settings().markers_in_clones);
}
