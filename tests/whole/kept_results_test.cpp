// What a user has is never lost and never half: inputs stay, two commands don't write to one place, and a command that
// failed or was killed can be given again.
#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

#include "frame/output_lock.h"
#include "support/program_run.h"

namespace {

using whole::bytes_of;
using whole::outcome;
using whole::write_bytes;
namespace fs = std::filesystem;

class kept_results : public whole::program_test {
protected:
  const std::string pinned = "SOURCE_DATE_EPOCH=1700000000";
  const std::string quick = " --no-ordering --no-drawings --no-pair-tables";

  void library_and_net() {
    ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
    ASSERT_EQ(orb("net l.ORBdb --out n.ORBns").status, 0);
    write_bytes(folder / "list.txt", "EC001A01\nEC001A02\nEC001A03\n");
  }
  nlohmann::json record(const std::string &name) const { return nlohmann::json::parse(bytes_of(folder / name)); }
  // The files of a folder, without those that hold times; not those of its folders.
  std::map<std::string, std::string> files_in(const fs::path &place) const {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(place))
      if (const std::string name = entry.path().filename().string();
          entry.is_regular_file() && name != "run.json" && name != "ORB.log")
        files[name] = bytes_of(entry.path());
    return files;
  }
};

TEST_F(kept_results, an_input_is_never_an_output) {
  library_and_net();
  fs::copy(example, folder / "in");
  ASSERT_EQ(orb("assemble l.ORBdb --out d" + quick).status, 0);
  fs::create_symlink("l.ORBdb", folder / "link.ORBdb");
  fs::create_hard_link(folder / "n.ORBns", folder / "hard.ORBns");
  fs::create_directory_symlink("in", folder / "also_in");
  std::map<fs::path, std::string> before;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file() && !entry.path().string().ends_with(".log"))
      before[entry.path()] = bytes_of(entry.path());
  const std::string run = fs::relative(*std::find_if(fs::directory_iterator(folder / "d"), {},
                                                     [](const auto &entry) { return entry.is_directory(); }),
                                       folder)
                              .string();
  for (const std::string command :
       {"load l.ORBdb --out l.ORBdb", "load l.ORBdb --out link.ORBdb", "load link.ORBdb --out ./d/../l.ORBdb",
        "load in --out in/EC001.sizes", "load in --out also_in/new.sizes", "load in/EC001.sizes --out in/EC001.sizes",
        "net l.ORBdb --out l.ORBdb", "revise l.ORBdb n.ORBns --out hard.ORBns", "revise l.ORBdb n.ORBns --out l.ORBdb",
        "list sort l.ORBdb list.txt --out list.txt", "markers read l.ORBdb list.txt --out list.txt",
        "draw l.ORBdb n.ORBns list.txt --format net --out n.ORBns", "assemble d/CloneBandSizes.ORBdb --out d",
        "report d --out d", "export d --to tsv --out d/CloneBandSizes.ORBdb"}) {
    const outcome seen = orb(command + " --force");
    EXPECT_EQ(seen.status, 3) << command << seen.err;
    EXPECT_NE(seen.err.find("input"), std::string::npos) << command << seen.err;
  }
  EXPECT_EQ(orb("export d --to tsv --out " + run + "/report_clusters.txt --force").status, 3);
  for (const auto &[file, bytes] : before)
    EXPECT_TRUE(bytes_of(file) == bytes) << file;
}

TEST_F(kept_results, two_commands_dont_write_to_one_place) {
  library_and_net();
  {
    const auto held = orb::output_lock::of_folder(folder, "orb assemble elsewhere");
    for (const std::string command :
         {"assemble l.ORBdb --out .", "contigs l.ORBdb n.ORBns --out .", "list sort l.ORBdb list.txt --out s.txt",
          "revise l.ORBdb n.ORBns --out r.ORBns"}) {
      const outcome seen = orb(command);
      EXPECT_EQ(seen.status, 3) << command << seen.err;
      EXPECT_NE(seen.err.find(": orb assemble elsewhere"), std::string::npos) << seen.err;
    }
  }
  const auto held = orb::output_lock::of_file(folder / "one.txt", "orb list unite");
  EXPECT_EQ(orb("list sort l.ORBdb list.txt --out two.txt").status, 0);
  EXPECT_EQ(orb("list sort l.ORBdb list.txt --out one.txt").status, 3);
  write_bytes(folder / "s.orbscript", "library.load file=l.ORBdb\nlist.sort list=list.txt out=one.txt\n");
  EXPECT_EQ(orb("script s.orbscript").status, 3);
  EXPECT_FALSE(fs::exists(folder / "one.txt"));
  for (const auto &[name, bytes] : files_in(folder))
    EXPECT_TRUE(name == "one.txt.orb.lock" || !name.ends_with(".lock")) << name << bytes;
}

TEST_F(kept_results, a_command_that_failed_says_why_and_may_be_given_again) {
  library_and_net();
  // The reports of the revision fit the disk, its net doesn't.
  const outcome full = orb("revise l.ORBdb n.ORBns --out r/r.ORBns", "trap '' XFSZ; ulimit -f 100;");
  EXPECT_EQ(full.status, 3) << full.err;
  EXPECT_TRUE(fs::exists(folder / "r" / "cutoff15_Q_clones.txt"));
  const auto failed = record("r/r.ORBns.run.json");
  EXPECT_EQ(failed["state"], "failed");
  EXPECT_NE(failed["why"].get<std::string>().find("r.ORBns"), std::string::npos) << failed["why"];
  EXPECT_EQ(failed["inputs"].size(), 2u);
  EXPECT_EQ(orb("revise l.ORBdb n.ORBns --out r/other.ORBns").status, 3) << "the reports belong to another net";
  const outcome again = orb("revise l.ORBdb n.ORBns --out r/r.ORBns");
  EXPECT_EQ(again.status, 0) << again.err;
  EXPECT_EQ(record("r/r.ORBns.run.json")["state"], "complete");
  EXPECT_EQ(orb("revise l.ORBdb n.ORBns --out r/r.ORBns").status, 3) << "a finished result stays";

  // A wrong command changes no record.
  const std::string complete = bytes_of(folder / "l.ORBdb.run.json");
  fs::copy_file(folder / "l.ORBdb", folder / "other.ORBdb");
  EXPECT_EQ(orb("load other.ORBdb --out l.ORBdb --tolerance-index 0 --force").status, 2);
  EXPECT_EQ(bytes_of(folder / "l.ORBdb.run.json"), complete);
  EXPECT_EQ(orb("load other.ORBdb --out new.ORBdb --tolerance-index 0").status, 2);
  EXPECT_FALSE(fs::exists(folder / "new.ORBdb.run.json"));

  for (const std::string blocks : {"40", "300"}) { // the library doesn't fit, then the net
    fs::remove_all(folder / "d");
    EXPECT_EQ(orb("assemble " + example + " --out d" + quick, "trap '' XFSZ; ulimit -f " + blocks + ";").status, 3);
    EXPECT_EQ(record("d/run.json")["state"], "failed") << blocks;
    EXPECT_EQ(orb("assemble " + example + " --out d" + quick + (blocks == "40" ? "" : " --resume")).status, 0);
  }
}

TEST_F(kept_results, a_killed_assembly_goes_on_to_the_same_bytes) {
  ASSERT_EQ(orb("assemble " + example + " --out whole" + quick, pinned).status, 0);
  const auto wanted = files_in(folder / "whole");
  ASSERT_GE(wanted.size(), 6u);
  int n_killed = 0;
  for (const std::string when : {"orb.lock", "run.json", "CloneBandSizes.ORBdb", "net_signif_Sulston_1988_15.00.ORBns",
                                 "cutoff15_Q_overlaps.txt", "cutoff15_Q_clones.txt", "net_signif_noQQ_15_25.ORBns"}) {
    const fs::path out = folder / "d";
    fs::remove_all(out);
    const outcome killed = orb("assemble " + example + " --out d" + quick,
                               "true; (for i in $(seq 4000); do [ -e d/" + when +
                                   " ] && break; sleep 0.001; done; kill -9 $$) & " + pinned + " exec");
    n_killed += killed.status == 256 + 9;
    const outcome resumed = orb("assemble " + example + " --out d --resume" + quick, pinned);
    EXPECT_EQ(resumed.status, 0) << when << resumed.err;
    EXPECT_TRUE(files_in(out) == wanted) << when;
    EXPECT_EQ(record("d/run.json")["state"], "complete");
  }
  EXPECT_GE(n_killed, 3);
}

TEST_F(kept_results, an_assembly_killed_among_its_contigs_goes_on_in_their_folder) {
  const auto all_files = [](const fs::path &place) {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(place))
      if (const std::string name = entry.path().filename().string();
          entry.is_regular_file() && name != "run.json" && name != "ORB.log")
        files[fs::relative(entry.path(), place).string()] = bytes_of(entry.path());
    return files;
  };
  ASSERT_EQ(orb("assemble " + example + " --out whole", pinned).status, 0);
  const auto wanted = all_files(folder / "whole");
  std::vector<std::string> moments;
  for (const auto &[name, bytes] : wanted)
    if (name.find("ORB_order_") != std::string::npos || name.find("/report_") != std::string::npos)
      moments.push_back(name);
  ASSERT_GE(moments.size(), 4u);
  int n_killed = 0;
  for (const std::string &moment : moments) {
    fs::remove_all(folder / "d");
    const outcome killed = orb("assemble " + example + " --out d",
                               "true; (for i in $(seq 4000); do [ -e 'd/" + moment +
                                   "' ] && break; sleep 0.001; done; kill -9 $$) & " + pinned + " exec");
    n_killed += killed.status == 256 + 9;
    const outcome resumed = orb("assemble " + example + " --out d --resume", pinned);
    EXPECT_EQ(resumed.status, 0) << moment << resumed.err;
    EXPECT_TRUE(all_files(folder / "d") == wanted) << moment;
  }
  EXPECT_GE(n_killed, 2);
}

TEST_F(kept_results, what_was_changed_beside_its_record_is_refused) {
  library_and_net();
  ASSERT_EQ(orb("assemble l.ORBdb --out d" + quick).status, 0);
  const auto changed = [&](const std::string &name, std::size_t at) {
    std::string bytes = bytes_of(folder / name);
    bytes[at] = bytes[at] == '1' ? '2' : '1';
    write_bytes(folder / name, bytes);
  };
  const auto is_refused = [&](const std::string &command, const std::string &name) {
    const outcome seen = orb(command);
    EXPECT_EQ(seen.status, 1) << command << seen.err;
    EXPECT_TRUE(seen.err.find(name) != std::string::npos && seen.err.find("checksum") != std::string::npos) << seen.err;
  };
  changed("l.ORBdb", bytes_of(folder / "l.ORBdb").size() - 3);
  changed("n.ORBns", 8 + 6 * 424 + 12); // the free mark of a record: no reader could see it
  changed("d/CloneBandSizes.ORBdb", bytes_of(folder / "d/CloneBandSizes.ORBdb").size() - 3);
  for (const std::string command : {"net l.ORBdb --out x.ORBns", "info l.ORBdb", "list sort l.ORBdb list.txt --out x"})
    is_refused(command, "l.ORBdb");
  is_refused("info n.ORBns", "n.ORBns");
  for (const std::string command : {"report d --out x", "export d --to tsv --out x.tsv", "info d"})
    is_refused(command, "CloneBandSizes.ORBdb");
  fs::remove(folder / "l.ORBdb.run.json");
  is_refused("revise l.ORBdb n.ORBns --out x.ORBns", "n.ORBns");
  // a script that saves in its place takes the old record away
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb --force").status, 0);
  write_bytes(folder / "s.orbscript", "library.load file=l.ORBdb tolerance=9\nlibrary.save out=l.ORBdb force\n");
  EXPECT_EQ(orb("script s.orbscript").status, 0);
  EXPECT_EQ(orb("net l.ORBdb --out x.ORBns --force").status, 0);
}

TEST_F(kept_results, a_report_leaves_the_files_that_are_there) {
  ASSERT_EQ(orb("assemble " + example + " --out d" + quick, pinned).status, 0);
  const std::string run = "d/ORB_contigs_2023-11-14_22-13-20";
  const auto before = files_in(folder / run);
  EXPECT_EQ(orb("report d --out " + run).status, 3);
  EXPECT_TRUE(files_in(folder / run) == before);
  for (const std::string name : {"coordinates_of_clones.txt", "clones_in_contogs.txt", "FPC_like.fpc",
                                 "rename_for_FPC.tsv", "contig_statistics_900.txt"}) {
    write_bytes(folder / "r" / name, "mine");
    const outcome seen = orb("report d --out r");
    EXPECT_EQ(seen.status, 3) << name << seen.err;
    EXPECT_NE(seen.err.find(name), std::string::npos) << seen.err;
    EXPECT_EQ(files_in(folder / "r").size(), 1u);
    fs::remove(folder / "r" / name);
  }
  write_bytes(folder / "r" / "FPC_like.fpc", "mine");
  EXPECT_EQ(orb("report d --out r --force").status, 0);
  EXPECT_GT(fs::file_size(folder / "r" / "FPC_like.fpc"), 1000u);
}

} // namespace
