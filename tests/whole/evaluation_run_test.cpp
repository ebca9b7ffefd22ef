// `orb evaluate` on the example, whose truth is known, and on runs that were damaged on purpose.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "support/program_run.h"

using whole::bytes_of;
using whole::outcome;
using whole::write_bytes;
namespace fs = std::filesystem;

class evaluation : public whole::program_test {
protected:
  fs::path assemble(const std::string &options = "") {
    const outcome made =
        orb("assemble " + example + " --out made --yes --quiet --no-pair-tables --no-drawings " + options);
    EXPECT_EQ(made.status, 0) << made.err;
    return folder / made.out.substr(0, made.out.find('\n'));
  }
  nlohmann::json measures(const std::string &run, const std::string &options = "") {
    const outcome seen = orb("evaluate " + run + " --quiet --json --truth " + example + "/truth.tsv " + options);
    EXPECT_EQ(seen.status, 0) << seen.err;
    return nlohmann::json::parse(seen.out);
  }
  // Puts the clones of contig `other` behind those of contig `name`.
  void merge(const fs::path &run, const std::string &name, const std::string &other) {
    for (const std::string start : {"", "MTP_"}) {
      const fs::path file = run / name / (start + name + ".txt");
      write_bytes(file, bytes_of(file) + bytes_of(run / other / (start + other + ".txt")));
    }
    fs::remove(run / name / ("coor_" + name + ".txt"));
    std::string rows = bytes_of(run / "report_clusters.txt"), kept;
    for (std::size_t at = 0, end = 0; at < rows.size(); at = end + 2) {
      end = rows.find("\r\n", at);
      std::string row = rows.substr(at, end - at);
      if (row.find("\t" + other + "\t") != std::string::npos)
        continue;
      if (const std::size_t found = row.find("\t" + name + "\t"); found != std::string::npos) {
        const std::size_t begin = found + name.size() + 2, length = row.find('\t', begin) - begin;
        const std::string clones = bytes_of(run / name / (name + ".txt"));
        row.replace(begin, length, std::to_string(std::count(clones.begin(), clones.end(), '\n')));
      }
      kept += row + "\r\n";
    }
    write_bytes(run / "report_clusters.txt", kept);
  }
};

TEST_F(evaluation, the_example_is_five_unbroken_contigs) {
  const fs::path run = assemble();
  const nlohmann::json found = measures("made");
  const nlohmann::json &m = found["measures"];
  EXPECT_EQ(m["clones"]["contigs"], 5);
  EXPECT_EQ(m["clones"]["in_contigs"], 413);
  EXPECT_EQ(m["clones"]["unknown"], 0);
  EXPECT_EQ(m["joins"]["joining_contigs"], 0);
  EXPECT_EQ(m["joins"]["wrong_clones"], 0);
  EXPECT_EQ(m["genome"]["islands"], 1);
  EXPECT_EQ(m["genome"]["islands_share_in_contigs"], 1.0);
  EXPECT_EQ(m["lengths"]["N50_bands"], 433); // as the assembly itself says
  EXPECT_GT(m["order_by_ordering"]["tau"], 0.99);
  EXPECT_EQ(m["tiling_path"]["false_steps"], 0);
  EXPECT_EQ(m["Q_clones"]["chimeric"], 11);
  EXPECT_EQ(m["Q_clones"]["found"], 9);
  EXPECT_EQ(m["Q_clones"]["good_lost"], 1);
  EXPECT_EQ(found["damage"]["breaks"].size(), 4u);
  EXPECT_EQ(found["contigs"].size(), 5u);
  EXPECT_EQ(measures(run.string())["measures"], m) << "the run's folder in place of the assembly's";
  EXPECT_EQ(measures("made", "--genome-length 9877466")["measures"]["genome"]["share_in_contigs"], 0.492601);
  const outcome text = orb("evaluate made --truth " + example + "/truth.tsv --out judged");
  EXPECT_NE(text.out.find("Kendall's tau"), std::string::npos);
  EXPECT_EQ(nlohmann::json::parse(bytes_of(folder / "judged/evaluation.json"))["measures"], m);
  const std::string contigs = bytes_of(folder / "judged/contigs.tsv");
  EXPECT_EQ(std::count(contigs.begin(), contigs.end(), '\n'), 6);
  EXPECT_TRUE(bytes_of(folder / "judged/report.txt").starts_with("Results of preprocessing "));
  EXPECT_EQ(orb("evaluate made --truth " + example + "/truth.tsv --out judged").status, 3) << "no overwriting unasked";
}

TEST_F(evaluation, damage_is_noticed_and_named) {
  const fs::path run = assemble("--no-ordering");
  EXPECT_TRUE(measures("made")["measures"]["order_by_ordering"]["tau"].is_null()) << "no ordering, no measure";
  merge(run, "cl_3", "cl_5");
  const nlohmann::json found = measures("made");
  const nlohmann::json &m = found["measures"];
  EXPECT_EQ(m["joins"]["joining_contigs"], 1);
  EXPECT_EQ(m["joins"]["wrong_clones"], 59);
  EXPECT_EQ(m["tiling_path"]["false_steps"], 1);
  ASSERT_EQ(found["damage"]["false_path_steps"].size(), 1u);
  EXPECT_EQ(found["damage"]["false_path_steps"][0]["contig"], "cl_3");
  EXPECT_EQ(found["damage"]["false_path_steps"][0]["distance"], 317930);
  for (const nlohmann::json &row : found["damage"]["wrong_clones"])
    EXPECT_EQ(row["contig"], "cl_3");
  fs::remove(folder / "made/cutoff15_Q_clones.txt");
  const outcome without = orb("evaluate made --truth " + example + "/truth.tsv");
  EXPECT_NE(without.out.find("found as Q-clones" + std::string(62 - 17 - 2 + 13, ' ') + "-\n"), std::string::npos)
      << without.out;
  write_bytes(folder / "Q", "EC001D05\n");
  EXPECT_EQ(measures("made", "--q-clones Q")["measures"]["Q_clones"]["listed"], 1);
  std::string record = bytes_of(folder / "made/run.json");
  record.replace(record.find("\"complete\""), 10, "\"stopped\"");
  write_bytes(folder / "made/run.json", record);
  const outcome stopped = orb("evaluate made --truth " + example + "/truth.tsv");
  EXPECT_NE(stopped.err.find("The run is stopped, not complete"), std::string::npos) << stopped.err;
}

TEST_F(evaluation, wrong_inputs_are_refused) {
  const fs::path run = assemble("--no-ordering");
  write_bytes(folder / "other.tsv", "clone\tpart\tchromosome\tstart\tend\nX\t1\tc\t0\t5\n");
  write_bytes(folder / "short.tsv", "clone\tpart\tchromosome\tstart\tend\nX\t1\tc\n");
  const struct {
    std::string arguments;
    int status;
    std::string said;
  } cases[] = {{"nowhere --truth other.tsv", 3, "nowhere"},
               {example + " --truth other.tsv", 1, "neither the folder of a run nor of an assembly"},
               {"made --truth nowhere.tsv", 3, "nowhere.tsv"},
               {"made --truth short.tsv", 1, "short.tsv, line 2"},
               {"made --truth other.tsv", 1, "None of the run's clones stands in the table of true positions."},
               {"made --truth " + example + "/truth.tsv --q-clones short.tsv", 1, "short.tsv, line 1"},
               {"made", 2, "--truth is required"}};
  for (const auto &one : cases) {
    const outcome seen = orb("evaluate " + one.arguments);
    EXPECT_EQ(seen.status, one.status) << one.arguments << seen.err;
    EXPECT_NE(seen.err.find(one.said), std::string::npos) << one.arguments << seen.err;
    EXPECT_EQ(seen.out, "");
  }
}
