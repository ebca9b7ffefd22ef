// The commands over lists, markers and finished runs, as a user runs them on the example.
#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "support/program_run.h"

using whole::bytes_of;
using whole::outcome;
using whole::write_bytes;
namespace fs = std::filesystem;

namespace {

std::vector<std::string> lines_of(const fs::path &file) {
  std::istringstream in(bytes_of(file));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> fields_of(const std::string &line) {
  std::istringstream in(line);
  std::vector<std::string> fields;
  for (std::string field; std::getline(in, field, '\t');)
    fields.push_back(field);
  return fields;
}

// The names in a line: clone, tab, markers with commas.
std::multiset<std::string> markers_of(std::string line) {
  std::replace(line.begin(), line.end(), ',', '\t');
  const std::vector<std::string> names = fields_of(line);
  return {names.begin(), names.end()};
}

class lists : public whole::program_test {
protected:
  const std::string pinned = "SOURCE_DATE_EPOCH=1700000000";
  const std::string run_name = "ORB_contigs_2023-11-14_22-13-20";
  const std::string library = "d/CloneBandSizes.ORBdb ";

  void assemble(const std::string &options = "--no-pair-tables --no-drawings --no-ordering") {
    ASSERT_EQ(orb("assemble " + example + " --out d " + options, pinned).status, 0);
  }
  // A marker every 120 kb of the genome, on the clones that cover its place.
  std::string clones_of_markers() const {
    std::map<int, std::string> clones;
    const std::vector<std::string> truth = lines_of(example + "/truth.tsv");
    for (std::size_t i = 1; i < truth.size(); ++i) {
      const std::vector<std::string> part = fields_of(truth[i]);
      for (int m = 0; m < 40; ++m)
        if (const int place = 50000 + m * 120000; std::stoi(part[3]) <= place && place < std::stoi(part[4]))
          clones[m] += (clones[m].empty() ? "" : ",") + part[0];
    }
    std::string text;
    for (const auto &[m, names] : clones)
      text += "M" + std::to_string(m) + "\t" + names + "\tzone" + std::to_string(m / 4) + "\n";
    return text;
  }
};

} // namespace

TEST_F(lists, sets_and_tables_and_selected_records) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  write_bytes(folder / "a.txt", "EC001A04, EC001A01 EC001A03\nEC001A01\n");
  write_bytes(folder / "b.txt", "EC001A03\nEC001A05\n");
  const struct {
    std::string words, result;
  } cases[]{{"sort l.ORBdb a.txt", "EC001A01\r\nEC001A03\r\nEC001A04\r\n"},
            {"intersect l.ORBdb a.txt b.txt", "EC001A03\r\n"},
            {"minus l.ORBdb a.txt b.txt", "EC001A01\r\nEC001A04\r\n"},
            {"unite l.ORBdb a.txt b.txt", "EC001A01\r\nEC001A03\r\nEC001A04\r\nEC001A05\r\n"},
            {"format b.txt", "EC001A03\r\nEC001A05\r\n"}};
  for (const auto &c : cases) {
    const outcome made = orb("list " + c.words + " --out made.txt --force");
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.out, "made.txt\n");
    EXPECT_EQ(bytes_of(folder / "made.txt"), c.result) << c.words;
  }
  write_bytes(folder / "empty.txt", "\n , \n");
  const outcome empty = orb("list sort l.ORBdb empty.txt --out none.txt");
  EXPECT_NE(empty.err.find("list of clones for orderind is empty!!!"), std::string::npos) << empty.err;
  EXPECT_EQ(empty.status, 1) << "an empty result isn't taken for a finished one";

  // The records selected from the folder make a library of these clones.
  ASSERT_EQ(orb("list select l.ORBdb a.txt " + example + " --out chosen.sizes").status, 0);
  const outcome chosen = orb("load chosen.sizes --out chosen.ORBdb");
  EXPECT_NE(chosen.err.find("load: 3 clones, "), std::string::npos) << chosen.err;

  const outcome tables = orb("table l.ORBdb a.txt --out t --table-format 3");
  ASSERT_EQ(tables.status, 0) << tables.err;
  EXPECT_EQ(tables.out, "t/Consec_dist_a.txt\nt/All_dist_a.txt\n");
  EXPECT_EQ(lines_of(folder / "t/Consec_dist_a.txt").size(), 5u);
  EXPECT_EQ(lines_of(folder / "t/All_dist_a.txt").size(), 7u);
  EXPECT_NE(bytes_of(folder / "t/All_dist_a.txt").find("Sulston_1988"), std::string::npos);
  EXPECT_EQ(orb("table l.ORBdb a.txt --out t2 --consecutive").out, "t2/Consec_dist_a.txt\n");
}

TEST_F(lists, markers_go_through_every_form) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  write_bytes(folder / "by_marker.txt", clones_of_markers());
  ASSERT_EQ(orb("markers write l.ORBdb by_marker.txt --out by_clone.txt").status, 0);
  ASSERT_EQ(orb("markers write l.ORBdb by_clone.txt --out again.txt").status, 0);
  // Markers are numbered as they are met, so that their order within a line may differ.
  const std::vector<std::string> first = lines_of(folder / "by_clone.txt"), second = lines_of(folder / "again.txt");
  ASSERT_GT(first.size(), 300u);
  EXPECT_TRUE(std::equal(first.begin(), first.end(), second.begin(), second.end(),
                         [](const std::string &a, const std::string &b) { return markers_of(a) == markers_of(b); }));
  ASSERT_EQ(orb("markers read l.ORBdb by_clone.txt --out m.ORB").status, 0);
  EXPECT_TRUE(bytes_of(folder / "m.ORB").starts_with("Clones in database with bands:\r\n423\r\n"));
  const outcome native = orb("markers write l.ORBdb m.ORB --out x.txt"); // its reader takes more than was written
  EXPECT_EQ(native.status, 1);
  EXPECT_NE(native.err.find("Native marker file is refused"), std::string::npos) << native.err;
  write_bytes(folder / "a.txt", "EC001A01\nEC001A05\n");
  ASSERT_EQ(orb("markers print l.ORBdb by_clone.txt a.txt --out p.txt").status, 0);
  EXPECT_EQ(lines_of(folder / "p.txt").size(), 2u);
  // Unknown clones and short lines are told with their place, and what is good is taken.
  write_bytes(folder / "bad.txt", "EC001A01\tM1,M2\nnobody\tM1\nEC001A02\tM2\n");
  const outcome bad = orb("markers write l.ORBdb bad.txt --out good.txt");
  EXPECT_EQ(bad.status, 0) << "the results are whole";
  EXPECT_EQ(orb("markers write l.ORBdb bad.txt --out strict.txt --strict").status, 1);
  EXPECT_FALSE(fs::exists(folder / "strict.txt"));
  EXPECT_NE(bad.err.find("New clone nobody"), std::string::npos) << bad.err;
  EXPECT_NE(bad.err.find("bad.txt, line 2"), std::string::npos) << bad.err;
  EXPECT_EQ(bytes_of(folder / "good.txt"), "EC001A01\tM1,M2\r\nEC001A02\tM2\r\n");
  for (const char *junk : {"", "\x01\x02\x03\x04", "what\tis\tthis\n"}) {
    write_bytes(folder / "junk.txt", junk);
    EXPECT_EQ(orb("markers write l.ORBdb junk.txt --out junk.out").status, 1) << junk;
  }
  EXPECT_EQ(orb("markers write l.ORBdb none.txt --out junk.out").status, 3);
}

TEST_F(lists, markers_join_overlaps_and_stand_in_the_run) {
  write_bytes(folder / "m.txt", clones_of_markers());
  assemble("--no-pair-tables --no-drawings --no-ordering --markers m.txt");
  const std::string cluster = "d/" + run_name + "/cl_3/";
  const std::vector<std::string> table = lines_of(folder / (cluster + "clones_MTP_coor_and_markers_cl_3.txt"));
  EXPECT_TRUE(table.at(0).starts_with("Zones of markers:\tzone"));
  EXPECT_NE(table.at(1).find("(zone"), std::string::npos);
  // Without tables of p-values the metric that counts markers knows nothing else: 100 for each that two clones share.
  const outcome with = orb("net d/CloneBandSizes.ORBdb --cutoff 60 --metric LnnMarkers --markers m.txt --out w.ORBns "
                           "--text w.txt");
  EXPECT_EQ(with.status, 0) << with.err;
  std::map<std::pair<std::string, std::string>, int> shared, overlaps;
  for (const std::string &line : lines_of(folder / "m.txt")) {
    const std::multiset<std::string> listed = markers_of(fields_of(line).at(1));
    const std::set<std::string> clones(listed.begin(), listed.end());
    for (const std::string &a : clones)
      for (const std::string &b : clones)
        if (a != b)
          shared[{a, b}] += 100;
  }
  std::string clone;
  for (const std::string &line : lines_of(folder / "w.txt"))
    if (const auto fields = fields_of(line); fields.at(0) == "clone")
      clone = fields.at(2);
    else
      overlaps[{clone, fields.at(1)}] = std::stoi(fields.at(2));
  EXPECT_GT(shared.size(), 1000u);
  EXPECT_TRUE(overlaps == shared) << overlaps.size() << " overlaps, " << shared.size() << " pairs share markers";
}

TEST_F(lists, a_finished_run_gives_its_tables) {
  assemble();
  write_bytes(folder / "m.txt", clones_of_markers());
  const outcome report = orb("report d --out r --markers m.txt", pinned);
  ASSERT_EQ(report.status, 0) << report.err;
  EXPECT_EQ(report.out, "r\n");
  const std::string run = "d/" + run_name + "/";
  for (const std::string same : {"coordinates_of_clones.txt", "contig_statistics_1200.txt", "FPC_like.fpc"})
    EXPECT_GT(bytes_of(folder / "r" / same).size(), 1000u) << same;
  EXPECT_EQ(bytes_of(folder / "r/contig_statistics_1200.txt"), bytes_of(folder / run / "contig_statistics_1200.txt"));
  // Each clone of a contig stands in the table under it, from left to right in its list.
  std::map<std::string, std::string> contig_of;
  for (const std::string &line : lines_of(folder / "r/clones_in_contogs.txt"))
    if (const auto fields = fields_of(line); fields.size() == 2)
      contig_of[fields[0]] = fields[1];
  const std::string clusters = "r/clusters_FPC_ordered_2023-11-14_22-13-20/";
  int before = -1000;
  for (const std::string &line : lines_of(folder / (clusters + "contigs_ordered_coor/coor_contig_cl_3.txt")))
    if (const auto fields = fields_of(line); fields[0] != "clone") {
      EXPECT_EQ(contig_of[fields[0]], "cl_3");
      EXPECT_LE(before, std::stod(fields[1]));
      before = std::stoi(fields[1]);
    }
  EXPECT_EQ(lines_of(folder / "r/clones_for_each_marker.txt").size(), lines_of(folder / "m.txt").size());
  EXPECT_NE(bytes_of(folder / "r/FPC_like_pp.fpc").find("User_remark \"Zones: zone"), std::string::npos);

  EXPECT_EQ(orb("report none --out r2").status, 3);
  fs::remove(folder / "d/CloneBandSizes.ORBdb");
  EXPECT_EQ(orb("report d --out r2").status, 3);
  EXPECT_EQ(orb("report d --out r2 --library " + example).status, 0);
  fs::remove(folder / "d/run.json");
  const outcome lost = orb("report d --out r3");
  EXPECT_EQ(lost.status, 2);
  EXPECT_NE(lost.err.find("give one with --library"), std::string::npos) << lost.err;
}

TEST_F(lists, an_old_tiling_path_is_kept_in_use) {
  assemble();
  // The paths of a stricter run are the old ones; every third clone of them is sequenced.
  ASSERT_EQ(
      orb("assemble " + example + " --out e --cutoff 22 --no-pair-tables --no-drawings --no-ordering", pinned).status,
      0);
  const std::vector<std::string> old_path = lines_of(folder / ("e/" + run_name) / "clones_in_MTP.txt");
  std::string old_text, sequenced;
  for (std::size_t i = 0; i < old_path.size(); ++i) {
    old_text += old_path[i] + "\n";
    sequenced += i % 3 ? "" : old_path[i] + "\n";
  }
  write_bytes(folder / "old.txt", old_text + "nobody\n");
  write_bytes(folder / "done.txt", sequenced);
  const outcome kept =
      orb("retain d --old-mtp old.txt --sequenced done.txt --contigs 0 --out k --no-pair-tables --no-ordering "
          "--drawing-format both",
          pinned);
  EXPECT_EQ(kept.out, "k/" + run_name + "\n");
  EXPECT_NE(kept.err.find("In total 1 clones not found! "), std::string::npos) << kept.err;
  const std::set<std::string> known(old_path.begin(), old_path.end());
  int n = 0;
  for (const char *file : {"list_of_clones_MTP_new.tsv", "list_of_clones_from_allow_to_use_not_used.tsv"})
    for (const std::string &line : lines_of(folder / "k" / run_name / file))
      if (const auto fields = fields_of(line); fields.size() > 4) {
        EXPECT_EQ(known.count(fields[4]), 1u) << line;
        ++n;
      }
  EXPECT_GT(n, 40);
  EXPECT_EQ(lines_of(folder / "k/selected_contigs.txt").size(), 15u) << "5, and clones alone";
  EXPECT_TRUE(fs::exists(folder / "k" / run_name / "cl_3/Net_control_MTP_new_cl_3_Sulston_1988_15.graphml"));
  EXPECT_EQ(orb("retain d --old-mtp old.txt --out k").status, 3) << "there is a run already";
}

TEST_F(lists, drawings_follow_the_control_panel) {
  assemble();
  const std::string draw = "draw " + library + "d/net_signif_noQQ_15_25.ORBns d/" + run_name + "/cl_4/cl_4.txt --out ";
  const std::string tiling_path = "d/" + run_name + "/cl_4/MTP_cl_4.txt";
  ASSERT_EQ(orb(draw + "a.net --mark " + tiling_path).status, 0);
  const std::vector<std::string> plain = lines_of(folder / "a.net");
  EXPECT_EQ(plain[2], "1 \"EC001A06[66]<1>\" sh ellipse x_fact 1 y_fact 1 ic Red bc Black");
  EXPECT_EQ(plain[25], "*Arcs 0");
  ASSERT_EQ(orb(draw + "b.net --mark3 " + tiling_path + " --mark2 " + tiling_path +
                " --no-names --numbers --no-burial --relations --black --no-scores")
                .status,
            0);
  const std::vector<std::string> other = lines_of(folder / "b.net");
  EXPECT_EQ(other[2], "1 \"[66]<1>(4)(4)\" sh box x_fact 1 y_fact 1 ic Green bc Black");
  EXPECT_EQ(other.size() - plain.size(), std::size_t(std::stoi(other[25].substr(6)))) << "relations are arcs";
  EXPECT_NE(other.size(), plain.size());
  for (const std::string &line : other)
    EXPECT_FALSE(line.find(" c Blue ") != std::string::npos && line.find(" l \"\"") == std::string::npos) << line;
  const outcome series = orb(draw + "s.net --cutoffs");
  EXPECT_EQ(std::count(series.out.begin(), series.out.end(), '\n'), 11) << series.out;
  std::size_t before = 1u << 30; // at rising cutoffs ever fewer overlaps
  std::istringstream files(series.out);
  for (std::string file; std::getline(files, file);) {
    const std::size_t n = lines_of(folder / file).size();
    EXPECT_LE(n, before) << file;
    before = n;
  }
  EXPECT_EQ(orb(draw + "s.net --cutoffs").status, 3) << "drawings of the series exist";
  EXPECT_EQ(orb(draw + "t.net --table").status, 0);
}
