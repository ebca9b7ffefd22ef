// `orb export`: what other programs read of a run, against the run's own tables, and with those programs.
#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sstream>

#include "support/program_run.h"
#include "support/strict_fpc_reader.h"

using whole::bytes_of;
using whole::outcome;
namespace fs = std::filesystem;

namespace {

using row = std::vector<std::string>;

std::vector<row> rows_of(const fs::path &file) {
  std::vector<row> rows;
  std::istringstream in(bytes_of(file));
  for (std::string line; std::getline(in, line);) {
    std::erase(line, '\r');
    row &fields = rows.emplace_back(1);
    for (const char c : line)
      if (c == '\t')
        fields.emplace_back();
      else
        fields.back() += c;
  }
  return rows;
}

bool is_there(const std::string &program) {
  return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
}

class export_of_a_run : public whole::program_test {
protected:
  fs::path assemble(const std::string &options = "") {
    const outcome made = orb("assemble " + example + " --out made --yes -q --no-pair-tables --no-drawings " + options);
    EXPECT_EQ(made.status, 0) << made.err;
    return folder / made.out.substr(0, made.out.find('\n'));
  }
  std::string exported(const std::string &to, const std::string &options = "") {
    const outcome made = orb("export made --to " + to + " --out x." + to + " " + options);
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.out, "");
    return made.err;
  }
  // Clone, contig, left and right as the run's own table has them; contig empty for a clone alone.
  static std::map<std::string, row> places_of(const fs::path &run) {
    std::map<std::string, row> places;
    for (const row &fields : rows_of(run / "coordinates_of_clones.txt"))
      places[fields[0]] = fields[2] == "1" ? row(3) : row{fields[1], fields[3], fields[4]};
    places.erase("BAC");
    return places;
  }
  std::string shell(const std::string &line) const {
    const std::string out = (folder / ".shell").string();
    const int status = std::system(("cd '" + folder.string() + "' && " + line + " >" + out + " 2>&1").c_str());
    EXPECT_EQ(status, 0) << line << "\n" << bytes_of(out);
    return bytes_of(out);
  }
};

TEST_F(export_of_a_run, fpc_and_tsv_hold_what_the_run_found) {
  const fs::path run = assemble();
  const auto places = places_of(run);
  orb::write_bytes(folder / "m.txt", "EC001A02\tmA\tmB\n" + places.rbegin()->first + "\tmA\n");
  EXPECT_EQ(exported("fpc", "--markers m.txt").find("ithout coordinates"), std::string::npos);
  exported("tsv", "--markers m.txt");
  const orb_test::fpc_file fpc = orb_test::strict_fpc_reader(folder / "x.fpc").read();
  EXPECT_EQ(fpc.counts, "Contigs 5  Clones 423  Markers 2  Bands 24358");
  EXPECT_EQ(fpc.cutoff, "1e-15");
  EXPECT_EQ(fpc.clones.size(), places.size());
  for (const auto &[name, clone] : fpc.clones)
    EXPECT_EQ((row{clone.contig.empty() ? "" : fpc.remarks.at(std::stoul(clone.contig) - 1), clone.left, clone.right}),
              places.at(name))
        << name;
  std::vector<row> table = rows_of(folder / "x.tsv");
  EXPECT_EQ(table.front(),
            (row{"contig", "clone", "left", "right", "path", "buried_in", "q_verdict", "bands", "markers"}));
  EXPECT_EQ(bytes_of(folder / "x.tsv").find('\r'), std::string::npos);
  table.erase(table.begin());
  EXPECT_EQ(table.size(), places.size());
  std::map<std::string, std::map<int, std::string>> paths;
  std::set<std::string> Q_clones, Q_clones_of_report;
  for (const row &fields : table) {
    ASSERT_EQ(fields.size(), 9u);
    const orb_test::fpc_clone &clone = fpc.clones.at(fields[1]);
    EXPECT_EQ((row{fields[0], fields[2], fields[3]}), places.at(fields[1]));
    EXPECT_EQ(fields[5], clone.held_by);
    EXPECT_EQ(fields[7], std::to_string(clone.bands.size()));
    EXPECT_EQ(fields[8], fields[1] == "EC001A02" ? "mA;mB" : fields[1] == places.rbegin()->first ? "mA" : "");
    if (!fields[4].empty())
      paths[fields[0]][std::stoi(fields[4])] = fields[1];
    EXPECT_TRUE(fields[6] == "kept" || Q_clones.insert(fields[1]).second);
  }
  for (const auto &[contig, path] : paths) {
    std::string names;
    for (const auto &[place, name] : path)
      names += name + "\r\n";
    EXPECT_EQ(names, bytes_of(run / contig / ("MTP_" + contig + ".txt")));
  }
  EXPECT_EQ(paths.size(), 5u);
  for (const row &fields : rows_of(folder / "made/cutoff15_Q_clones.txt"))
    Q_clones_of_report.insert(fields.at(2));
  for (const std::string &name : Q_clones)
    EXPECT_TRUE(Q_clones_of_report.contains(name)) << name;
  EXPECT_EQ(Q_clones.size() + 1, Q_clones_of_report.size()); // and the head
}

TEST_F(export_of_a_run, gff3_and_bed_are_the_table_in_base_pairs) {
  assemble();
  exported("tsv");
  EXPECT_NE(exported("gff3", "--bp-per-band 800.5").find("Base pairs a band: 800.5 (as given)"), std::string::npos);
  EXPECT_NE(exported("bed", "--bp-per-band 800.5").find("10 clones alone have no place"), std::string::npos);
  std::map<std::string, row> table;
  std::map<std::string, int> length;
  for (const row &fields : rows_of(folder / "x.tsv"))
    if (!fields[2].empty() && fields[0] != "contig") {
      table[fields[1]] = fields;
      length[fields[0]] = std::max(length[fields[0]], std::stoi(fields[3]));
    }
  const auto bp = [](int bands) { return std::to_string(std::llround(bands * 800.5)); };
  std::size_t n = 0;
  for (const row &fields : rows_of(folder / "x.bed")) {
    const row &clone = table.at(fields.at(3));
    EXPECT_EQ((row{fields[0], fields[1], fields[2]}),
              (row{clone[0], bp(std::stoi(clone[2]) - 1), bp(std::stoi(clone[3]))}));
    EXPECT_EQ(fields[4], !clone[4].empty() ? "1000" : !clone[5].empty() ? "200" : "500");
    ++n;
  }
  EXPECT_EQ(n, table.size());
  n = 0;
  for (const row &fields : rows_of(folder / "x.gff3")) {
    if (fields.size() < 9)
      continue;
    const std::size_t from = fields[8].find(";Name=") + 6;
    const std::string name = fields[8].substr(from, fields[8].find(';', from) - from);
    const bool contig = fields[2] == "contig";
    EXPECT_EQ(fields[3], contig ? "1" : std::to_string(std::stoll(bp(std::stoi(table.at(name)[2]) - 1)) + 1));
    EXPECT_EQ(fields[4], bp(contig ? length.at(name) : std::stoi(table.at(name)[3])));
    n += contig ? 0 : 1;
  }
  EXPECT_EQ(n, table.size());
}

// Names of contigs and clones are anybody's.
TEST_F(export_of_a_run, their_checkers_take_gff3_and_bed) {
  const fs::path run = assemble();
  orb::write_bytes(folder / "new.txt", "cl_2\ta contig; with=all, 100% & >\ncl_3\tb\n");
  orb::write_bytes(folder / "m.txt", "EC001A02\tm;A,\n");
  orb::write_bytes(folder / "s.txt", "library.load file=made/CloneBandSizes.ORBdb\nmarkers.load file=m.txt\n"
                                     "contigs.load folder=made\ncontigs.rename file=new.txt\n"
                                     "contigs.export to=gff3 out=x.gff3\ncontigs.export to=bed out=x.bed\n");
  const outcome made = orb("script s.txt");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_NE(made.err.find("No net is known"), std::string::npos);
  if (!is_there("gt") || !is_there("bedtools"))
    GTEST_SKIP() << "gt or bedtools is missing; the packages are genometools and bedtools";
  EXPECT_NE(shell("gt gff3validator -typecheck so x.gff3").find("input is valid GFF3"), std::string::npos);
  shell("LC_ALL=C sort -c -s -k1,1 -k2,2n x.bed");
  EXPECT_EQ(shell("bedtools merge -i x.bed | cut -f2 | sort -u"), "0\n");
  EXPECT_EQ(shell("bedtools merge -i x.bed | wc -l"), "5\n");
  shell("bedtools intersect -a x.gff3 -b x.bed -u | grep -c .");
}

TEST_F(export_of_a_run, contigs_without_coordinates_are_named) {
  assemble("--max-clones 50 --steps 0");
  EXPECT_NE(
      exported("fpc").find("Contigs without coordinates: 4. Each of their clones stands at 0 to its bands less 1: "
                           "cl_2, cl_3, cl_5, cl_6."),
      std::string::npos);
  const orb_test::fpc_file fpc = orb_test::strict_fpc_reader(folder / "x.fpc").read();
  EXPECT_EQ(fpc.remarks.at(0), "cl_2 (without coordinates)");
  EXPECT_EQ(fpc.clones.at("EC001A01").left + " " + fpc.clones.at("EC001A01").right, "0 69");
  exported("tsv");
  exported("bed");
  const std::vector<row> table = rows_of(folder / "x.tsv"), bed = rows_of(folder / "x.bed");
  EXPECT_EQ(bed.size(), 23u); // of cl_4
  EXPECT_EQ(std::count_if(table.begin(), table.end(), [](const row &r) { return r[2].empty(); }), 400);
  // A run that was stopped, and whose nets went away.
  std::string record = bytes_of(folder / "made/run.json");
  record.replace(record.find("\"complete\""), 10, "\"stopped\"");
  orb::write_bytes(folder / "made/run.json", record);
  for (const fs::directory_entry &entry : fs::directory_iterator(folder / "made"))
    if (entry.path().extension() == ".ORBns")
      fs::remove(entry.path());
  const std::string told = exported("tsv", "--force");
  EXPECT_NE(told.find("The run is stopped, not complete"), std::string::npos) << told;
  EXPECT_NE(told.find("No net is known"), std::string::npos) << told;
}

TEST_F(export_of_a_run, wrong_wishes_are_refused) {
  assemble("--no-ordering");
  const struct {
    const char *options;
    int status;
    const char *said;
  } cases[] = {{"--to fpc --out x.fpc", 0, ""},
               {"--to fpc --out x.fpc", 3, "exists already"},
               {"--to tsv --out x.cor", 3, "exists already"},
               {"--to xls --out y", 2, "\"xls\" isn't one of fpc, gff3, bed, tsv"},
               {"--to tsv --out y --bp-per-band 3", 2, "--bp-per-band, --clone-length and --genome-length belong to"},
               {"--to bed --out y --bp-per-band 0", 2, "--bp-per-band"},
               {"--to fpc --out y.cor", 2, "another ending"},
               {"--to tsv --out y --net none.ORBns", 3, "none.ORBns"},
               {"--to fpc --out x.fpc --force", 0, ""}};
  for (const auto &c : cases) {
    const outcome seen = orb(std::string("export made ") + c.options);
    EXPECT_EQ(seen.status, c.status) << c.options << seen.err;
    EXPECT_NE(seen.err.find(c.said), std::string::npos) << c.options << seen.err;
  }
  EXPECT_FALSE(fs::exists(folder / "y"));
}

} // namespace
