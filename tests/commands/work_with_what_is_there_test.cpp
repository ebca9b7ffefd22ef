// The road beside the road: FPC projects as input and as contigs, their tests and comparisons, trees, groups, analyses,
// as verbs on the example's first clones.
#include <set>

#include "support/project_session.h"

using namespace orb_test;

namespace {

class what_is_there : public session_test {
protected:
  void SetUp() override {
    ASSERT_EQ(verb("assemble", {{"input", text("plates")},
                                {"out", text("as")},
                                {"ordering-steps", "500"},
                                {"n-bands", "2500"},
                                {"min-size", "3"}})
                  .status,
              exit_status::done);
    ASSERT_EQ(verb("export", {{"run", text("as")}, {"to", "fpc"}, {"out", text("p.fpc")}}).status, exit_status::done);
  }
  verb_end verb(const std::string &name, const std::map<std::string, std::string> &options) {
    const verb_end end = run.run_verb(name, options);
    said.clear();
    for (const std::string &line : end.people)
      said += line + "\n";
    for (const std::string &line : run.record.messages)
      said += line + "\n";
    for (const std::string &line : run.record.notes)
      said += line + "\n";
    run.record = {};
    return end;
  }
  // The contigs that are loaded, without their names.
  std::set<std::set<clone_number>> contigs() const {
    const class_FPCto_import &registry = *run.project.database().contigs();
    std::set<std::set<clone_number>> all;
    for (const cluster_id id : registry.current_list_of_clusters_in_use_get().members())
      if (registry.cluster_is_contig_get(id))
        all.emplace(registry.clones_of_cluster(id).begin(), registry.clones_of_cluster(id).end());
    return all;
  }
  std::string library() const { return text("as/CloneBandSizes.ORBdb"); }
  std::string net() const {
    for (const fs::directory_entry &entry : fs::directory_iterator(path("as")))
      if (entry.path().filename().string().starts_with("net_signif_noQQ"))
        return entry.path().string();
    return {};
  }

  session run;
  std::string said;
};

TEST_F(what_is_there, an_fpc_project_is_an_input) {
  const auto of_sizes = contigs();
  ASSERT_EQ(
      verb("assemble", {{"input", text("p.fpc")}, {"out", text("again")}, {"ordering-steps", "500"}, {"min-size", "3"}})
          .status,
      exit_status::done)
      << said;
  EXPECT_EQ(contigs(), of_sizes);
  EXPECT_NE(said.find("tolerance 12, gel length 60000, n-bands 2500"), std::string::npos) << said;
  EXPECT_NE(bytes_of(path("again/run.json")).find("p.cor"), std::string::npos);
  // the head's cutoff counts until another one is asked for; what was made goes on with it
  std::string head = bytes_of(path("p.fpc"));
  head.replace(head.find("Cut 1e-15"), 9, "Cut 1e-20");
  write("q.fpc", head);
  fs::copy_file(path("p.cor"), path("q.cor"));
  const std::map<std::string, std::string> wanted{
      {"input", text("q.fpc")}, {"out", text("q")}, {"ordering-steps", "500"}};
  ASSERT_EQ(verb("assemble", wanted).status, exit_status::done) << said;
  EXPECT_EQ(run.project.rule().cutoff, 20);
  std::map<std::string, std::string> resumed = wanted;
  resumed["resume"] = "yes";
  ASSERT_EQ(verb("assemble", resumed).status, exit_status::done) << said;
  ASSERT_EQ(verb("net", {{"input", text("q.fpc")}, {"out", text("n.ORBns")}, {"cutoff", "17"}}).status,
            exit_status::done);
  EXPECT_EQ(run.project.rule().cutoff, 17);
  ASSERT_EQ(verb("load", {{"input", text("q.fpc")}, {"out", text("q.ORBdb")}, {"tolerance", "6"}}).status,
            exit_status::done);
  EXPECT_EQ(run.project.database().total_number_of_different_bands_FPC_get(), 5000);
  fs::remove(path("q.cor"));
  EXPECT_EQ(verb("load", {{"input", text("q.fpc")}, {"out", text("r.ORBdb")}}).status, exit_status::run_failed);
  EXPECT_NE(said.find("q.cor beside it, and there is no such file"), std::string::npos) << said;
}

TEST_F(what_is_there, an_assembly_becomes_a_run) {
  const auto of_run = contigs();
  const verb_end read =
      verb("fpc read", {{"file", text("p.fpc")}, {"library", library()}, {"net", net()}, {"out", text("read")}});
  ASSERT_EQ(read.status, exit_status::done) << said;
  EXPECT_EQ(contigs(), of_run);
  ASSERT_EQ(verb("report", {{"run", text("read")}, {"out", text("tables")}}).status, exit_status::done) << said;
  EXPECT_EQ(contigs(), of_run);
  ASSERT_EQ(verb("map", {{"run", text("read")}, {"overview", "yes"}, {"out", text("m.svg")}}).status, exit_status::done)
      << said;
  ASSERT_EQ(verb("evaluate", {{"run", text("read")}, {"truth", (example() / "truth.tsv").string()}}).status,
            exit_status::done)
      << said;
  write("p.orb", "DB," + library() + ",M,,N,,F," + text("p.fpc"));
  EXPECT_EQ(run.run("project.open file=" + text("p.orb")).status, exit_status::done) << run.told();
  EXPECT_EQ(contigs(), of_run);
  EXPECT_NE(text_of_project_panel(run.project).find("Contigs in FPC format  = " + text("p.fpc")), std::string::npos);
  write("old.txt", names(1, 5));
  ASSERT_EQ(
      verb("retain",
           {{"run", text("read")}, {"old-mtp", text("old.txt")}, {"out", text("retained")}, {"ordering-steps", "500"}})
          .status,
      exit_status::done)
      << said;
  ASSERT_EQ(verb("fpc compare", {{"assembly", text("p.fpc")}, {"run", text("as")}, {"out", text("compared")}}).status,
            exit_status::done)
      << said;
  EXPECT_NE(said.find("split 0, joined 0, lacking 0, otherwise changed 0"), std::string::npos) << said;
  ASSERT_EQ(verb("fpc test", {{"file", text("p.fpc")},
                              {"library", library()},
                              {"net", net()},
                              {"check-cutoff", "12"},
                              {"out", text("tested")},
                              {"ordering-steps", "500"}})
                .status,
            exit_status::done)
      << said;
  EXPECT_NE(said.find("0 of them not connected"), std::string::npos) << said;
  write("paths.txt", "// paths\nctg1    " + all_names()[0] + " " + all_names()[2] + "\nnone    x\n");
  ASSERT_EQ(verb("fpc mtp", {{"file", text("p.fpc")},
                             {"paths", text("paths.txt")},
                             {"library", library()},
                             {"net", net()},
                             {"out", text("paths")}})
                .status,
            exit_status::done)
      << said;
  EXPECT_NE(said.find("Unknown contig 2: none in file with MTPs"), std::string::npos) << said;
}

TEST_F(what_is_there, trees_groups_and_analyses) {
  ASSERT_EQ(verb("tree", {{"input", library()}, {"net", net()}, {"cutoffs", "15,25,35"}, {"out", text("tree")}}).status,
            exit_status::done)
      << said;
  std::size_t n_rows = 0; // each clone stands in one leaf
  for (const char c : bytes_of(path("tree/clones_in_tree.tsv")))
    n_rows += c == '\n';
  EXPECT_EQ(n_rows, static_cast<std::size_t>(run.project.database().total_number_of_clones_get()) + 1);
  EXPECT_EQ(verb("tree", {{"input", library()}, {"net", net()}, {"cutoffs", "15,15"}, {"out", text("t2")}}).status,
            exit_status::wrong_command);
  write("pairs/a.txt", names(1, 3));
  write("pairs/b.txt", names(4, 6));
  write("pairs/c.txt", names(7, 8));
  const verb_end grouped =
      verb("group", {{"input", library()}, {"net", net()}, {"clusters", text("pairs")}, {"out", text("groups")}});
  ASSERT_EQ(grouped.status, exit_status::done) << said;
  EXPECT_NE(said.find("1 clusters of 3 after 2 joinings"), std::string::npos) << said;
  const std::map<std::string, std::string> analyse{{"input", library()}, {"net", net()}, {"out", text("an")}};
  EXPECT_EQ(verb("analyse", analyse).status, exit_status::wrong_command);
  auto with = [&](std::map<std::string, std::string> more) {
    more.insert(analyse.begin(), analyse.end());
    return verb("analyse", more).status;
  };
  EXPECT_EQ(with({{"all", "yes"}, {"do", "topology,nonsense"}}), exit_status::wrong_command);
  ASSERT_EQ(with({{"all", "yes"}, {"do", "topology,clustering"}}), exit_status::done) << said;
  ASSERT_EQ(with({{"lists", text("pairs")}, {"preset", "folder"}, {"ordering-steps", "500"}, {"force", "yes"}}),
            exit_status::done)
      << said;
  ASSERT_EQ(
      verb("grow",
           {{"input", library()}, {"net", net()}, {"list", text("pairs/a.txt")}, {"rank", "2"}, {"out", text("grown")}})
          .status,
      exit_status::done)
      << said;
  EXPECT_NE(said.find("n(0)=3, n(1)="), std::string::npos) << said;
}

} // namespace
