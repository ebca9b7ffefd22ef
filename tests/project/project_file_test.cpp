// The project file and what the project panel shows of it.
#include "support/native_markers.h"
#include "support/project_session.h"

using namespace orb_test;

namespace {

class project_files : public session_test {
protected:
  project_files() {
    session run;
    run.done({load() + " tolerance=9", "metric.set cutoff=10", "net.create", "net.save out=" + text("n.ORBns"),
              "library.save out=" + text("l.ORBdb")});
    write("m.ORB", native_markers(87));
  }
  project_file read(const std::string &bytes) const {
    write("p.orb", bytes);
    return read_project_file(path("p.orb"));
  }
  // Opens it; the result's status and the messages.
  command_result open(session &run, const std::string &bytes) const {
    write("p.orb", bytes);
    run.record.messages.clear();
    return run.run("project.open file=" + text("p.orb"));
  }
  static std::size_t times_told(const session &run, const std::string &message) {
    return static_cast<std::size_t>(std::count(run.record.messages.begin(), run.record.messages.end(), message));
  }
};

std::string joined(const project_file &values) {
  return values.library + "|" + values.markers + "|" + values.net + "|" + values.fpc_contigs + "|" +
         values.clusters_folder;
}

} // namespace

TEST_F(project_files, fields_stand_between_commas_or_in_lines) {
  const struct {
    std::string bytes, values;
  } cases[]{
      {"", "||||"},
      {"DB", "||||"},
      {"DB\r\nlib", "lib||||"},
      {"DB,lib\n", "lib||||"},
      {"DB,lib,markers,m,net,n,FPC,f,folder,c\n", "lib|m|n|f|c"},
      {"DB\r\nlib\r\nmarkers\r\nm\r\nnet\r\nn\r\nFPC\r\nf\r\nfolder\r\nc\r\nmore\r\n", "lib|m|n|f|c"},
      {"DB,lib\nmarkers,m\nnet\n\nFPC\nf\n,c", "lib|m||f|c"},
      {" \"the, label\" , \"a, b\" ,,m,,,\"\",f", "a, b|m||f|"},
      {"DB,\" x \",markers,\t m\t", " x |m|||"},
      {",,,,,,,,,", "||||"},
      {"DB,a\\b\\c.ORBdb", "a/b/c.ORBdb||||"},
  };
  for (const auto &c : cases)
    EXPECT_EQ(joined(read(c.bytes)), c.values) << c.bytes;
  // What isn't found from here lies beside the project file.
  EXPECT_EQ(joined(read("DB,l.ORBdb,,,,n.ORBns,,,,lists\\")),
            text("l.ORBdb") + "||" + text("n.ORBns") + "||" + text("lists/"));
  EXPECT_THROW(read_project_file(path("nowhere")), file_error);
}

TEST_F(project_files, only_pair_one_loads_the_library_and_stops) {
  for (const char *bytes : {"DB,l.ORBdb", "DB\r\nl.ORBdb\r\n"}) {
    session run;
    EXPECT_EQ(open(run, bytes).status, exit_status::done);
    EXPECT_EQ(run.project.database().total_number_of_clones_get(), 87);
    EXPECT_EQ(run.project.database().tollerance_get(), 9) << "the library's own";
    for (const project_part part : {project_part::markers, project_part::net, project_part::contigs})
      EXPECT_FALSE(run.project.has(part));
  }
  session run; // an empty first value ends the reading
  EXPECT_EQ(open(run, "DB,,markers,m.ORB,net,n.ORBns").status, exit_status::done);
  EXPECT_EQ(run.project.version(), session().project.version());
}

TEST_F(project_files, every_part_is_loaded_and_an_empty_value_is_passed_over) {
  session whole;
  EXPECT_EQ(open(whole, "DB,l.ORBdb,M,m.ORB,N,n.ORBns,F,,C,lists").status, exit_status::done) << whole.told();
  for (const project_part part :
       {project_part::library, project_part::markers, project_part::net, project_part::contigs}) {
    EXPECT_TRUE(whole.project.has(part)) << name_of_part(part);
    EXPECT_EQ(whole.project.origin(part).made_by, "project.open");
  }
  const auto &panels = whole.record.panels;
  EXPECT_TRUE(std::any_of(panels.begin(), panels.end(),
                          [](const std::string &text) { return text.find("Markers loaded") != std::string::npos; }));
  session no_net;
  EXPECT_EQ(open(no_net, "DB,l.ORBdb\nM,\nN,\nF,\nC,lists").status, exit_status::done);
  EXPECT_FALSE(no_net.project.has(project_part::net));
  EXPECT_TRUE(no_net.project.has(project_part::contigs)) << "it went on behind the empty values";
  write("f.fpc", "x");
  session with_fpc; // value 3 empty: pair 4 comes next
  const command_result result = open(with_fpc, "DB,l.ORBdb,M,,N,,F,f.fpc,C,lists");
  EXPECT_EQ(result.status, exit_status::run_failed) << "contigs in FPC format were left out, and this is told";
  EXPECT_EQ(std::count_if(with_fpc.record.messages.begin(), with_fpc.record.messages.end(),
                          [](const std::string &text) { return text.find("f.fpc") != std::string::npos; }),
            1);
  EXPECT_TRUE(with_fpc.project.has(project_part::contigs));
}

TEST_F(project_files, what_is_missing_is_told_and_the_rest_goes_on_loading_but_for_a_library) {
  session run;
  EXPECT_EQ(open(run, "DB,l.ORBdb,M,no_m,N,no_n,F,no_f,C,no_c").status, exit_status::run_failed);
  for (const char *message :
       {"File no_m with MARKERS is NOT FOUND!", "File no_n with NET is NOT FOUND!",
        "File no_f with contigs in FPC format is NOT FOUND!", "Folder no_c with clusters NOT FOUND!"})
    EXPECT_EQ(times_told(run, message), 1u) << message << "\n" << run.told();
  EXPECT_TRUE(run.project.has(project_part::library));
  session last;
  EXPECT_EQ(open(last, "DB,l.ORBdb,M,no_m,N,no_n,F,,C,lists").status, exit_status::run_failed);
  EXPECT_TRUE(last.project.has(project_part::contigs));

  const std::string before = text_of_project(last.project);
  EXPECT_EQ(open(last, "DB,no_l,M,m.ORB,N,n.ORBns,F,,C,lists").status, exit_status::run_failed);
  EXPECT_EQ(last.record.messages, std::vector<std::string>{"File no_l with DB is NOT FOUND!"});
  EXPECT_EQ(text_of_project(last.project), before) << "nothing more was read";
}

TEST_F(project_files, a_stop_ends_the_opening) {
  session run;
  int n = 0;
  run.on_yield = [&] { return ++n, false; };
  ASSERT_EQ(open(run, "DB,l.ORBdb,M,m.ORB,N,n.ORBns,F,,C,lists").status, exit_status::done);
  for (int at = 1; at <= n; at += 1 + n / 25) {
    session stopped;
    stopped.on_yield = [&stopped, at, seen = 0]() mutable { return ++seen == at; };
    const command_result result = open(stopped, "DB,l.ORBdb,M,m.ORB,N,n.ORBns,F,,C,lists");
    const bool whole = stopped.project.has(project_part::contigs) && stopped.project.has(project_part::net);
    EXPECT_EQ(result.status, whole ? exit_status::done : exit_status::stopped) << at << " of " << n;
    stopped.on_yield = nullptr;
    EXPECT_EQ(open(stopped, "DB,l.ORBdb,M,m.ORB,N,n.ORBns,F,,C,lists").status, exit_status::done);
    EXPECT_EQ(text_of_project(stopped.project), text_of_project(run.project));
  }
}

TEST_F(project_files, a_folder_of_clusters_begins_with_an_empty_registry) {
  session run;
  ASSERT_EQ(open(run, "DB,l.ORBdb,M,,N,n.ORBns,F,,C,lists").status, exit_status::done);
  const std::string first = text_of_project(run.project);
  ASSERT_EQ(open(run, "DB,l.ORBdb,M,,N,n.ORBns,F,,C,lists").status, exit_status::done);
  EXPECT_EQ(text_of_project(run.project), first) << "no cluster is there twice";
  ASSERT_EQ(run.run("contigs.load_folder folder=" + text("lists")).status, exit_status::done);
  EXPECT_EQ(run.project.database().contigs()->current_list_of_clusters_in_use_get().count(), 2);
  run.done({"contigs.reset"});
  EXPECT_FALSE(run.project.has(project_part::contigs));
  EXPECT_EQ(run.project.origin(project_part::contigs).file, "");
  // Without a net the new registry holds all clones in one cluster that is switched off.
  session no_net;
  ASSERT_EQ(open(no_net, "DB,l.ORBdb").status, exit_status::done);
  no_net.done({"contigs.reset"});
  const class_FPCto_import &registry = *no_net.project.database().contigs();
  EXPECT_EQ(registry.current_list_of_clusters_in_use_get().count(), 0);
  EXPECT_EQ(registry.name_of_cluster_get(1), "all");
  EXPECT_EQ(registry.n_clones_in_cluster_get(1), 87);
}

TEST_F(project_files, the_panel_shows_what_is_loaded_in_its_words) {
  session run;
  const std::string parameters = "Tolerance\n"
                                 "  Tolerance, t = 12\n"
                                 "  Gel length, L = 60000\n"
                                 "  N_bands_Sulston = 2250\n"
                                 "Metric\n"
                                 "  Sulston_1988\n"
                                 "  -Log_10 (Cutoff) = 15.00\n"
                                 "  Fraction of common bands resulting buring = 0.9\n";
  EXPECT_EQ(text_of_project_panel(run.project), parameters + "DataBase\n"
                                                             "  DB file name = \n"
                                                             "  Number of clones = 0\n"
                                                             "Clone overlaps\n"
                                                             "  Net is not loaded\n"
                                                             "Net of contigs\n"
                                                             "  Contigs folder name = \n"
                                                             "  Contigs in FPC format  = \n"
                                                             "  Number of contigs = 0\n"
                                                             "  Number of clones in contigs = 0\n");
  write("four/f.sizes", "A\n100\n200\n300\n400\n500\n600\n700\n-1\nB\n100\n200\n300\n400\n500\n600\n700\n800\n-1\n"
                        "C\n100\n200\n300\n400\n500\n600\n900\n-1\nD\n30000\n30100\n-1\n");
  write("two/c.txt", "A\nB\n");
  run.done({"parameters.set n-bands=2250", "library.load file=" + text("four"), "metric.set cutoff=5.126 burying=0.75",
            "net.create", "contigs.load_folder folder=" + text("two")});
  const class_net &net = run.project.signif().net();
  double least = 1e300;
  for (vertex_number v = 1; v <= 4; ++v)
    for (const net_edge &edge : net.edges_of_vertex(v))
      least = std::min(least, edge.value);
  char shown[40];
  std::snprintf(shown, sizeof shown, "%.4f", least);
  ASSERT_EQ(net.number_of_edges_get(), 6) << "A, B and C with each other";
  EXPECT_EQ(text_of_project_panel(run.project), "Tolerance\n"
                                                "  Tolerance, t = 12\n"
                                                "  Gel length, L = 60000\n"
                                                "  N_bands_Sulston = 2250\n"
                                                "Metric\n"
                                                "  Sulston_1988\n"
                                                "  -Log_10 (Cutoff) = 5.13\n"
                                                "  Fraction of common bands resulting buring = 0.75\n"
                                                "DataBase\n"
                                                "  DB file name = " +
                                                    text("four") +
                                                    "\n"
                                                    "  Number of clones = 4\n"
                                                    "Clone overlaps\n"
                                                    "  (made here, not saved)\n"
                                                    "  N_vertices = 4\n"
                                                    "  N_edges= 6\n"
                                                    "  N_mean_e/v =1.50\n"
                                                    "  Min(edge_value) = " +
                                                    shown +
                                                    "\n"
                                                    "Net of contigs\n"
                                                    "  Contigs folder name = " +
                                                    text("two") +
                                                    "\n"
                                                    "  Contigs in FPC format  = \n"
                                                    "  Number of contigs = 1\n"
                                                    "  Number of clones in contigs = 2\n");
}
