// The pvalue commands as a user runs them, and the metrics that live on their tables.
#include <map>
#include <nlohmann/json.hpp>

#include "support/program_run.h"

using whole::outcome;
namespace fs = std::filesystem;

class p_values : public whole::program_test {
protected:
  // All files below a folder but the records, by name.
  std::map<std::string, std::string> files_of(const fs::path &below) const {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(below))
      if (entry.is_regular_file() && entry.path().filename() != "run.json")
        files[fs::relative(entry.path(), below).string()] = whole::bytes_of(entry.path());
    return files;
  }
};

TEST_F(p_values, tables_are_the_same_for_any_number_of_threads_and_serve_the_metrics) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  const std::string grid = " --min-bands 40 --step 50 --steps 2 --runs 2000";
  const outcome made = orb("pvalue table l.ORBdb --out tables -t 1" + grid);
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.out, "tables\n");
  ASSERT_EQ(orb("pvalue table l.ORBdb --out again -t 3" + grid).status, 0);
  EXPECT_EQ(files_of(folder / "tables"), files_of(folder / "again"));
  EXPECT_EQ(files_of(folder / "tables").size(), 11u + 2 * 6); // sizes, five of each mode, the reports
  const auto record = nlohmann::json::parse(whole::bytes_of(folder / "tables/run.json"));
  EXPECT_EQ(record["parameters"]["steps"], 2);
  EXPECT_EQ(record["state"], "complete");

  // one situation alone is the same situation
  const outcome one = orb("pvalue estimate l.ORBdb 90 40 --runs 2000 --out one");
  ASSERT_EQ(one.status, 0) << one.err;
  EXPECT_EQ(one.out, "one/func_2250b_90_40.txt\n");
  EXPECT_EQ(whole::bytes_of(folder / "one/func_2250b_90_40.txt"),
            whole::bytes_of(folder / "tables/fr/func_2250b_90_40.txt"));
  EXPECT_EQ(orb("pvalue table l.ORBdb --out tables").status, 3);

  for (const std::string metric : {"Nof", "Lnn"}) {
    const outcome net = orb("net l.ORBdb --out " + metric + ".ORBns --metric " + metric + " --pvalue-tables tables");
    ASSERT_EQ(net.status, 0) << net.err;
    EXPECT_EQ(net.err.find("Overlaps: 0 "), std::string::npos) << net.err;
    const auto made_of = nlohmann::json::parse(whole::bytes_of(folder / (metric + ".ORBns.run.json")));
    EXPECT_EQ(made_of["inputs"].size(), 8u); // library, sizes, three tables of each mode
    EXPECT_EQ(orb("net l.ORBdb --out x.ORBns --metric " + metric).status, 2);
  }
  const outcome road = orb("assemble " + example + " --out road --metric Nof --pvalue-tables tables --no-ordering");
  EXPECT_EQ(road.status, 0) << road.err;
  const outcome resumed = orb("assemble " + example + " --out road --metric Nof --pvalue-tables one --resume");
  EXPECT_EQ(resumed.status, 3) << "no tables there: " << resumed.err;

  // tables of one mode serve its metric, and an older mode doesn't stay beside it
  const outcome iid = orb("pvalue table l.ORBdb --out tables --force --iid" + grid);
  ASSERT_EQ(iid.status, 0) << iid.err;
  EXPECT_NE(iid.err.find("The older tables of mode fr were removed."), std::string::npos) << iid.err;
  EXPECT_EQ(orb("net l.ORBdb --out x.ORBns --metric Lnn --pvalue-tables tables").status, 2);
  const outcome few = orb("pvalue table l.ORBdb --out few --iid --runs 500 --min-bands 60 --step 5 --steps 1");
  ASSERT_EQ(few.status, 0) << few.err;
  const outcome outside = orb("net l.ORBdb --out x.ORBns --metric Nof --pvalue-tables few");
  EXPECT_NE(outside.err.find(" of 423 clones have fewer than 60 or more than 65 bands"), std::string::npos)
      << outside.err;
}

TEST_F(p_values, values_are_looked_up_in_either_direction) {
  ASSERT_EQ(orb("pvalue table " + example + " --out t --iid --runs 3000 --min-bands 40 --step 20 --steps 1").status, 0);
  const outcome value = orb("pvalue lookup t 45 52 --count 20");
  ASSERT_EQ(value.status, 0) << value.err;
  const double found = std::stod(value.out);
  EXPECT_GT(found, 10);
  const outcome back = orb("pvalue lookup t 52 45 --value " + value.out.substr(0, value.out.find('\n')));
  EXPECT_NEAR(std::stod(back.out), 20, 1e-4) << back.err;
  EXPECT_EQ(orb("pvalue score 100 90 40").out, "-Lod_10(P)=29.631522\n");
  EXPECT_NE(orb("pvalue score 100 90 40 --n-bands 5000").out, "-Lod_10(P)=29.631522\n");
  EXPECT_EQ(orb("pvalue score 100 90 40 --preset 4").out, "-Lod_10(P)=29.631522\n");

  const struct {
    std::string arguments;
    int status;
    std::string said;
  } mistakes[] = {
      {"score 100 90 91", 2, "clones of 100 and 90 bands can't have 91 in common"},
      {"score 0 90 1", 2, ""},
      {"lookup t 45 50", 2, "one of --count and --value is required"},
      {"lookup t 45 50 --count 3 --value 4", 2, "one of --count and --value"},
      {"lookup t 39 50 --count 3", 2, "the tables hold clones of 40 to 60 bands"},
      {"lookup t 45 50 --count 3 --mode fr", 2, "no tables of mode fr"},
      {"lookup nowhere 45 50 --count 3", 3, "nowhere/parameters_table.txt"},
      {"estimate " + example + " 20 2251 --iid --out e", 2, "from 1 to 2250 of the 2250 band positions"},
      {"estimate " + example + " 20 2200 --out e", 2, "all are possible with --iid"},
      {"table " + example + " --out e --min-bands 30 --step 30000 --steps 2", 2,
       "The largest size of the table, 60030"},
      {"table " + example + " --out e --steps 180", 2, "--steps"},
      {"table nowhere --out e", 3, "nowhere"},
  };
  for (const auto &wrong : mistakes) {
    const outcome seen = orb("pvalue " + wrong.arguments);
    EXPECT_EQ(seen.status, wrong.status) << wrong.arguments << "\n" << seen.err;
    EXPECT_NE(seen.err.find(wrong.said), std::string::npos) << wrong.arguments << "\n" << seen.err;
    EXPECT_EQ(seen.out, "");
  }
  whole::write_bytes(folder / "t/parameters_a1_iid.txt", "bands\t40\t60\r\n40\t1\r\n");
  for (const std::string &command : {std::string("pvalue lookup t 45 50 --count 3"),
                                     std::string("net ") + example + " --out n.ORBns --metric Nof --pvalue-tables t"}) {
    const outcome bad = orb(command);
    EXPECT_EQ(bad.status, 1) << bad.err;
    EXPECT_NE(bad.err.find("2 fields where the table has 3 (file t/parameters_a1_iid.txt, line 2)"), std::string::npos)
        << bad.err;
  }
  EXPECT_FALSE(fs::exists(folder / "n.ORBns"));
}

TEST_F(p_values, an_interrupted_table_leaves_no_table) {
  const outcome stopped = orb("pvalue table " + example + " --out t --runs 2000000000",
                              "true; (sleep 1; kill -INT $$) & exec"); // the program takes the place of the shell
  EXPECT_EQ(stopped.status, 130) << stopped.err;
  EXPECT_FALSE(fs::exists(folder / "t/parameters_table.txt"));
}
