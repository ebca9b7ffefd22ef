// The whole road on a real library: results against an independent slow formulation, the stages one by one against the
// one command, resuming, stopping, and what `info` tells of it.
#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>
#include <vector>

#include "support/program_run.h"
#include "whole/plain_road.h"

using namespace plain;
using whole::outcome;

namespace {

std::vector<std::vector<std::string>> table_of(const fs::path &file) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream in(bytes_of(file));
  for (std::string line; std::getline(in, line);) {
    EXPECT_TRUE(!line.empty() && line.back() == '\r') << file;
    line.pop_back();
    rows.emplace_back();
    std::istringstream fields(line);
    for (std::string field; std::getline(fields, field, '\t');)
      rows.back().push_back(field);
  }
  return rows;
}

// Result files by name below a folder, without those that hold times of day or of work.
std::map<std::string, std::string> results_below(const fs::path &folder) {
  std::map<std::string, std::string> files;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && entry.path().filename() != "run.json" && entry.path().filename() != "ORB.log")
      files[fs::relative(entry.path(), folder).string()] = bytes_of(entry.path());
  return files;
}

} // namespace

class whole_road : public whole::program_test {
protected:
  const std::string pinned = "SOURCE_DATE_EPOCH=1700000000";
  const std::string run_name = "ORB_contigs_2023-11-14_22-13-20";
};

TEST_F(whole_road, the_example_agrees_with_the_plain_formulation) {
  const outcome seen = orb("assemble " + example + " --out d", pinned);
  ASSERT_EQ(seen.status, 0) << seen.err;
  EXPECT_EQ(seen.out, "d/" + run_name + "\n");
  const std::vector<record> library = naive_library(example);
  ASSERT_EQ(library.size(), 423u);
  EXPECT_NE(seen.err.find("exact copies dropped: 3 of 426 records"), std::string::npos) << seen.err;

  std::vector<int> marks;
  const naive_net expected = net_of_library(library);
  EXPECT_EQ(net_of_file(folder / "d" / "net_signif_Sulston_1988_15.00.ORBns", marks), expected);
  std::set<int> q_clones;
  const naive_net clean = revised(expected, 25, q_clones);
  EXPECT_EQ(net_of_file(folder / "d" / "net_signif_noQQ_15_25.ORBns", marks), clean);
  for (std::size_t v = 1; v < marks.size(); ++v)
    EXPECT_EQ(marks[v], q_clones.count(int(v)) ? -1 : 0) << v;
  EXPECT_EQ(table_of(folder / "d" / "cutoff15_Q_clones.txt").size(), q_clones.size() + 1);

  // Every final cluster is one connected piece at its cutoff; clusters of contigs don't share clones.
  std::map<std::string, int> number;
  for (std::size_t i = 0; i < library.size(); ++i)
    number[library[i].header.substr(0, library[i].header.find('\t'))] = int(i) + 1;
  const fs::path run = folder / "d" / run_name;
  std::set<int> used;
  const auto rows = table_of(run / "report_contigs.txt");
  ASSERT_GT(rows.size(), 3u);
  EXPECT_EQ(rows[0], (std::vector<std::string>{"i", "cluster", "n_clones", "contig", "cutoff", "diam", "width",
                                               "n_gaps", "n_rank_MTP>1", "User_remark", "full_name"}));
  for (std::size_t r = 1; r < rows.size(); ++r) {
    naive_net at_cutoff(clean.size());
    for (std::size_t v = 1; v < clean.size(); ++v)
      for (const overlap &o : clean[v])
        if (o.value >= std::stod(rows[r][4]))
          at_cutoff[v].push_back(o);
    std::set<int> members;
    for (const auto &line : table_of(run / rows[r][1] / (rows[r][1] + ".txt")))
      members.insert(number.at(line[0]));
    EXPECT_EQ(int(members.size()), std::stoi(rows[r][2]));
    EXPECT_EQ(components(at_cutoff, members), 1) << rows[r][1];
    for (int clone : members)
      EXPECT_TRUE(used.insert(clone).second) << "clone in two contigs";
  }
  for (const char *file :
       {"report_clusters.txt", "clones_in_MTP.txt", "clones_in_MTP_details.txt", "clones_in_MTP_and_bridges.txt",
        "FPC_like.fpc", "FPC_like_pp.fpc", "coordinates_of_clones.txt", "contig_statistics_1200.txt"})
    EXPECT_TRUE(fs::exists(run / file)) << file;
  for (const char *file : {"CloneBandSizes.ORBdb", "run.json", "ORB.log"})
    EXPECT_TRUE(fs::exists(folder / "d" / file)) << file;
}

TEST_F(whole_road, contigs_hold_clones_of_one_stretch_of_the_genome) {
  ASSERT_EQ(orb("assemble " + example + " --out d", pinned).status, 0);
  std::map<std::string, std::vector<std::pair<double, double>>> truth;
  for (const auto &line : [&] {
         std::vector<std::vector<std::string>> rows;
         std::istringstream in(bytes_of(fs::path(example) / "truth.tsv"));
         for (std::string text; std::getline(in, text);) {
           std::istringstream fields(text);
           rows.emplace_back();
           for (std::string field; std::getline(fields, field, '\t');)
             rows.back().push_back(field);
         }
         rows.erase(rows.begin());
         return rows;
       }())
    truth[line[0]].push_back({std::stod(line[3]), std::stod(line[4])});
  const fs::path run = folder / "d" / run_name;
  int in_contigs = 0;
  const auto rows = table_of(run / "report_contigs.txt");
  for (std::size_t r = 1; r < rows.size(); ++r) {
    std::vector<std::pair<double, double>> parts; // of clones in one part
    for (const auto &line : table_of(run / rows[r][1] / (rows[r][1] + ".txt"))) {
      ++in_contigs;
      if (truth.at(line[0]).size() == 1)
        parts.push_back(truth.at(line[0])[0]);
    }
    std::sort(parts.begin(), parts.end());
    double reach = parts.front().second;
    for (const auto &[start, end] : parts) {
      EXPECT_LE(start, reach) << rows[r][1] << " joins stretches that don't touch";
      reach = std::max(reach, end);
    }
  }
  EXPECT_GT(in_contigs, 380) << "of 423 clones";
}

TEST_F(whole_road, stages_one_by_one_and_any_number_of_threads_give_the_same_bytes) {
  ASSERT_EQ(orb("assemble " + example + " --out d -t 1", pinned).status, 0);
  ASSERT_EQ(orb("assemble " + example + " --out e -t 4", pinned).status, 0);
  EXPECT_TRUE(results_below(folder / "d") == results_below(folder / "e"));
  fs::create_directories(folder / "s");
  ASSERT_EQ(orb("load " + example + " --out s/CloneBandSizes.ORBdb", pinned).status, 0);
  ASSERT_EQ(orb("net s/CloneBandSizes.ORBdb --out s/net_signif_Sulston_1988_15.00.ORBns", pinned).status, 0);
  ASSERT_EQ(
      orb("revise s/CloneBandSizes.ORBdb s/net_signif_Sulston_1988_15.00.ORBns --out s/net_signif_noQQ_15_25.ORBns",
          pinned)
          .status,
      0);
  ASSERT_EQ(orb("contigs s/CloneBandSizes.ORBdb s/net_signif_noQQ_15_25.ORBns --out s", pinned).status, 0);
  auto stages = results_below(folder / "s");
  for (auto it = stages.begin(); it != stages.end();)
    it = it->first.ends_with(".run.json") ? stages.erase(it) : std::next(it);
  EXPECT_TRUE(stages == results_below(folder / "d"));
}

TEST_F(whole_road, a_text_net_gives_the_same_native_net) {
  ASSERT_EQ(orb("net " + example + " --out direct.ORBns").status, 0);
  const outcome text = orb("net " + example + " --out by_text.ORBns --text net.txt");
  ASSERT_EQ(text.status, 0) << text.err;
  EXPECT_EQ(bytes_of(folder / "direct.ORBns"), bytes_of(folder / "by_text.ORBns"));
  const std::string whole_text = bytes_of(folder / "net.txt");
  EXPECT_TRUE(whole_text.starts_with("clone\t1\tEC001A01\t"));
  const outcome tail = orb("net " + example + " --out tail.ORBns --text tail.txt --start 400");
  ASSERT_EQ(tail.status, 0) << tail.err;
  const std::string tail_text = bytes_of(folder / "tail.txt");
  EXPECT_TRUE(tail_text.starts_with("clone\t400\t"));
  EXPECT_TRUE(whole_text.ends_with(tail_text));
  EXPECT_FALSE(fs::exists(folder / "tail.ORBns")) << "a part is no whole net";
  const outcome parts = orb("net " + example + " --out by_parts.ORBns --text parts.txt --parts");
  ASSERT_EQ(parts.status, 0) << parts.err;
  EXPECT_EQ(bytes_of(folder / "direct.ORBns"), bytes_of(folder / "by_parts.ORBns"));
}

TEST_F(whole_road, a_finished_run_is_summarised_again_and_others_are_not_touched) {
  const outcome first = orb("assemble " + example + " --out d --resume", pinned);
  ASSERT_EQ(first.status, 0) << first.err;
  const auto before = results_below(folder / "d");
  const outcome again = orb("assemble " + example + " --out d --resume");
  EXPECT_EQ(again.status, 0) << again.err;
  EXPECT_EQ(again.out, first.out);
  EXPECT_NE(again.err.find("nothing was made again"), std::string::npos);
  const auto figures = [](const std::string &text) {
    return text.substr(text.find("\nContig "), text.find("\nORB ") - text.find("\nContig "));
  };
  EXPECT_EQ(figures(again.err), figures(first.err));
  EXPECT_TRUE(results_below(folder / "d") == before);
  EXPECT_EQ(orb("assemble " + example + " --out d").status, 3) << "results exist";
  const outcome other = orb("assemble " + example + " --out d --resume --cutoff 20");
  EXPECT_EQ(other.status, 3);
  EXPECT_NE(other.err.find("cutoff"), std::string::npos) << other.err;
  EXPECT_TRUE(results_below(folder / "d") == before);

  // What is lost is made again, what is there is kept.
  fs::remove_all(folder / "d" / run_name);
  fs::remove(folder / "d" / "net_signif_noQQ_15_25.ORBns");
  const outcome resumed = orb("assemble " + example + " --out d --resume", pinned);
  EXPECT_EQ(resumed.status, 0) << resumed.err;
  EXPECT_NE(resumed.err.find("the net is there already"), std::string::npos) << resumed.err;
  EXPECT_EQ(resumed.err.find("NB! Selected cutoff"), std::string::npos) << "the net was made at this very cutoff";
  EXPECT_TRUE(results_below(folder / "d") == before);
  // A record that somebody edited is named, not taken for a fault of the program.
  auto record = nlohmann::json::parse(bytes_of(folder / "d" / "run.json"));
  EXPECT_EQ(record["results"]["q_clones"], 10);
  record["state"] = 5;
  whole::write_bytes(folder / "d" / "run.json", record.dump());
  const outcome damaged = orb("assemble " + example + " --out d --resume", pinned);
  EXPECT_EQ(damaged.status, 1) << damaged.err;
  EXPECT_NE(damaged.err.find("run.json is damaged"), std::string::npos) << damaged.err;
  EXPECT_EQ(orb("assemble " + example + " --out d --force", pinned).status, 0);
}

TEST_F(whole_road, an_interrupt_keeps_what_is_finished_and_the_run_goes_on_later) {
  std::mt19937 chance(7);
  std::string text;
  for (int clone = 1; clone <= 60; ++clone) {
    text += "C" + std::to_string(clone) + "\n";
    std::set<int> bands;
    while (bands.size() < 55u + chance() % 40)
      bands.insert(int(chance() % 59000) + 100);
    for (int band : bands)
      text += std::to_string(band) + "\n";
    text += "-1\n";
  }
  whole::write_bytes(folder / "in" / "p.sizes", text);
  // The signal comes once the library is saved, in the middle of the comparison of all pairs: by a metric that takes a
  // second for them.
  const outcome stopped =
      orb("assemble in --out d --metric LnnSulston --cutoff 6",
          "true; (while [ ! -e d/CloneBandSizes.ORBdb ]; do sleep 0.01; done; sleep 0.05; kill -INT $$) & exec");
  EXPECT_EQ(stopped.status, 130) << stopped.err;
  EXPECT_TRUE(fs::exists(folder / "d" / "CloneBandSizes.ORBdb"));
  EXPECT_FALSE(fs::exists(folder / "d" / "net_signif_LnnSulston_6.00.ORBns"));
  EXPECT_EQ(nlohmann::json::parse(bytes_of(folder / "d" / "run.json"))["state"], "stopped");
  const outcome resumed = orb("assemble in --out d --resume --metric LnnSulston --cutoff 6");
  EXPECT_EQ(resumed.status, 0) << resumed.err;
  EXPECT_NE(resumed.err.find("the library is there already"), std::string::npos) << resumed.err;
}

TEST_F(whole_road, each_switch_leaves_its_own_files_out) {
  const std::vector<std::pair<std::string, std::set<std::string>>> switches{
      {"--no-pair-tables", {"Consec_dist_cl_3.txt", "Consec_dist_MTP_cl_3.txt", "All_dist_cl_3.txt"}},
      {"--no-drawings", {"Net_control_MTP_cl_3_Sulston_1988_15.net"}},
      {"--no-ordering", {"ORB_order_cl_3_Sulston_1988_Cf15.0_p0.90.txt"}},
      {"", {"cl_3.txt", "MTP_cl_3.txt", "coor_cl_3.txt"}}};
  for (const auto &[given, left_out] : switches) {
    ASSERT_EQ(orb("assemble " + example + " --force --out d " + given, pinned).status, 0);
    for (const auto &[option, files] : switches)
      for (const std::string &file : files)
        EXPECT_EQ(fs::exists(folder / "d" / run_name / "cl_3" / file), option.empty() || option != given)
            << file << " " << given;
    fs::remove_all(folder / "d");
  }
}

// One contig's list ordered and drawn; its order against the truth, its drawing through two graph libraries.
TEST_F(whole_road, a_list_is_ordered_and_drawn) {
  ASSERT_EQ(orb("assemble " + example + " --out d --no-pair-tables --no-drawings --no-ordering", pinned).status, 0);
  const std::string list = "d/" + run_name + "/cl_3/cl_3.txt", library = "d/CloneBandSizes.ORBdb ";
  const outcome ordered = orb("order " + library + list + " --out o --ordering-steps 2000 --jackknife 2 -t 2", pinned);
  ASSERT_EQ(ordered.status, 0) << ordered.err;
  EXPECT_NE(ordered.err.find("of 150 clones ordered"), std::string::npos) << ordered.err;
  const std::string tail = "cl_3_Sulston_1988_Cf15.0_p0.90.txt";
  for (const char *file : {"ORB_order_", "order_control_", "consens_control_", "solution_DiagViewer_"})
    EXPECT_TRUE(fs::exists(folder / "o" / (file + tail))) << file;
  std::map<std::string, double> middle; // of clones in one part
  std::istringstream truth(bytes_of(example + "/truth.tsv"));
  for (std::string text; std::getline(truth, text);) {
    std::istringstream fields(text);
    std::string name, part, chromosome;
    double start = 0, end = 0;
    if (fields >> name >> part >> chromosome >> start >> end && !middle.count(name))
      middle[name] = start + end;
  }
  int forward = 0, steps = 0;
  std::string before;
  for (const auto &line : table_of(folder / "o" / ("ORB_order_" + tail))) {
    if (!before.empty()) {
      forward += middle.at(before) < middle.at(line[0]) ? 1 : 0;
      ++steps;
    }
    before = line[0];
  }
  EXPECT_GT(steps, 20);
  EXPECT_LE(std::min(forward, steps - forward), steps / 5) << "of " << steps << " steps";
  const outcome again = orb("order " + library + list + " --out p --ordering-steps 2000 --jackknife 2 -t 1", pinned);
  ASSERT_EQ(again.status, 0);
  for (const char *file : {"ORB_order_", "order_control_", "consens_control_", "solution_DiagViewer_"})
    EXPECT_TRUE(bytes_of(folder / "o" / (file + tail)) == bytes_of(folder / "p" / (file + tail))) << file;

  const std::string net = "d/net_signif_noQQ_15_25.ORBns ";
  const outcome drawn = orb("draw " + library + net + list + " --out x.net --format both --mark " + list, pinned);
  ASSERT_EQ(drawn.status, 0) << drawn.err;
  EXPECT_EQ(drawn.out, "x.net\nx.graphml\n");
  EXPECT_TRUE(bytes_of(folder / "x.net").starts_with("*Network cl_3\r\n*Vertices 150\r\n"));
  const std::string check = std::string("/usr/bin/python3 ") + ORB_SOURCE_DIR + "/tests/whole/check_drawing.py " +
                            (folder / "x.net").string() + " " + (folder / "x.graphml").string();
  EXPECT_EQ(std::system(check.c_str()), 0);
  EXPECT_EQ(orb("draw " + library + net + list + " --out x.net").status, 3) << "the drawing exists";
  EXPECT_EQ(orb("order " + library + "none.txt --out q").status, 3);
  whole::write_bytes(folder / "unknown.txt", "EC001A01, nobody\n");
  const outcome unknown = orb("order " + library + "unknown.txt --out q --force");
  EXPECT_NE(unknown.err.find("Clone (2) nobody not found!"), std::string::npos) << unknown.err;
  EXPECT_NE(unknown.err.find("In total, 1 clones not found!"), std::string::npos) << unknown.err;
}

// What `info` proposes is what --auto takes, but for what is given; a run that is there isn't overwritten by one whose
// files get their names later.
TEST_F(whole_road, parameters_by_the_fingerprints) {
  const std::string quick = " --auto --no-ordering --no-pair-tables --no-drawings";
  const auto told = nlohmann::json::parse(orb("info " + example + " --json").out)[0];
  ASSERT_EQ(orb("assemble " + example + " --out a" + quick).status, 0);
  const auto taken = nlohmann::json::parse(whole::bytes_of(folder / "a/run.json"))["parameters"];
  EXPECT_EQ(taken["tolerance"], whole::proposed(told, "tolerance"));
  EXPECT_EQ(taken["gel_length"], whole::proposed(told, "gel-length"));
  EXPECT_EQ(taken["n_bands"], whole::proposed(told, "n-bands"));
  EXPECT_EQ(taken["cutoff"], whole::proposed(told, "cutoff"));
  EXPECT_EQ(taken["step"], whole::proposed(told, "step"));
  EXPECT_TRUE(taken["cutoff"] > 4 && taken["cutoff"] < 12) << taken;
  const outcome again = orb("assemble " + example + " --out a" + quick);
  EXPECT_EQ(again.status, 3) << again.err;
  const outcome given = orb("assemble " + example + " --out b --tolerance 9 --cutoff 12" + quick);
  ASSERT_EQ(given.status, 0) << given.err;
  const auto some = nlohmann::json::parse(whole::bytes_of(folder / "b/run.json"))["parameters"];
  EXPECT_TRUE(some["tolerance"] == 9 && some["cutoff"] == 12 && some["n_bands"] > taken["n_bands"]) << some;
  EXPECT_TRUE(some["step"] > 1 && some["step"] < 3) << some; // of a score by fewer positions than usual
  EXPECT_NE(given.err.find("as asked for"), std::string::npos) << given.err;

  ASSERT_EQ(orb("load " + example + " --auto --out l.ORBdb").status, 0);
  EXPECT_EQ(whole::bytes_of(folder / "l.ORBdb"), whole::bytes_of(folder / "a/CloneBandSizes.ORBdb"));
  ASSERT_EQ(orb("net l.ORBdb --auto --out n.ORBns").status, 0);
  const auto of_net = nlohmann::json::parse(whole::bytes_of(folder / "n.ORBns.run.json"))["parameters"];
  EXPECT_EQ(of_net["cutoff"], taken["cutoff"]) << of_net;
  ASSERT_EQ(orb("assemble l.ORBdb --auto --method layout --no-drawings --out c").status, 0);
  const auto laid = nlohmann::json::parse(whole::bytes_of(folder / "c/run.json"))["parameters"];
  EXPECT_TRUE(laid["tolerance"] == taken["tolerance"] && laid["n_bands"] == taken["n_bands"]) << laid;
}

TEST_F(whole_road, info_tells_what_lies_there_and_finds_a_clone) {
  ASSERT_EQ(orb("assemble " + example + " --out d", pinned).status, 0);
  const auto prints = nlohmann::json::parse(orb("info " + example + " --json").out)[0];
  EXPECT_EQ(prints["records"], 426);
  EXPECT_EQ(prints["exact copies"], 3);
  EXPECT_EQ(whole::proposed(prints, "preset"), 4);
  EXPECT_EQ(whole::proposed(prints, "gel-length"), 60000);
  const auto results = nlohmann::json::parse(orb("info d --json").out)[0];
  std::multiset<std::string> kinds;
  for (const auto &entry : results["holds"])
    kinds.insert(entry["kind"].get<std::string>());
  EXPECT_EQ(kinds, (std::multiset<std::string>{"library", "net of significant overlaps", "net of significant overlaps",
                                               "run folder"}));

  const std::vector<record> library = naive_library(example);
  const naive_net net = net_of_library(library);
  const auto clone = nlohmann::json::parse(orb("info d --clone EC001A03 --json").out);
  const auto &overlaps = clone["libraries"][0]["overlaps"];
  const int number = clone["libraries"][0]["fingerprint"][0]["number"];
  EXPECT_TRUE(library[std::size_t(number) - 1].header.starts_with("EC001A03\t"));
  bool whole_net_shown = false;
  for (const auto &shown : overlaps)
    if (shown["neighbours"].size() == net[std::size_t(number)].size())
      whole_net_shown = true;
  EXPECT_TRUE(whole_net_shown);
  EXPECT_TRUE(clone["runs"][0].contains("contig")) << clone;
  const auto chimera = nlohmann::json::parse(orb("info d --clone EC001D05 --json").out);
  std::set<std::string> verdicts;
  for (const auto &shown : chimera["libraries"][0]["overlaps"])
    verdicts.insert(shown["Q verdict"].get<std::string>());
  EXPECT_EQ(verdicts,
            (std::set<std::string>{"no Q-clones are marked in this net", "Q-clone: its overlaps were removed"}));
  EXPECT_EQ(chimera["runs"][0]["contig"], "none: the clone is alone in this run");
  const outcome unknown = orb("info d --clone NOBODY");
  EXPECT_EQ(unknown.status, 1);
  EXPECT_NE(unknown.err.find("No clone NOBODY there."), std::string::npos);
  EXPECT_EQ(orb("info nowhere").status, 3);
}
