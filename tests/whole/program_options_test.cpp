// What holds for the program whatever it does: how much it says, where the log lies, who answers its questions.
#include "frame/version.h"
#include "support/program_run.h"

using whole::outcome;
namespace fs = std::filesystem;

class program_options : public whole::program_test {};

TEST_F(program_options, quiet_and_verbose_say_less_and_more) {
  const outcome plain = orb("load " + example + " --out a.ORBdb");
  const outcome quiet = orb("load " + example + " --out b.ORBdb -q");
  const outcome verbose = orb("load " + example + " --out c.ORBdb -v");
  EXPECT_EQ(quiet.err, "");
  const std::string closing = " CPU ";
  EXPECT_TRUE(plain.err.starts_with("[1/2] load: 423 clones, 24,358 bands (57.6 a clone); tolerance 12, index 1, gel "
                                    "length 60000, n-bands 2250; exact copies dropped: 3 of 426 records ("))
      << plain.err;
  EXPECT_NE(verbose.err.find("[1/2] load: 423 clones, "), std::string::npos) << verbose.err;
  EXPECT_EQ(std::count(plain.err.begin(), plain.err.end(), '\n'), 4) << "two stages, saved, closing: " << plain.err;
  EXPECT_NE(plain.err.find(closing), std::string::npos) << plain.err;
  const std::string in_detail[]{"Load DB from sizes folder\n", "library.load done\n",
                                "Fingerprint data for all of 423 clones are loaded.\n"};
  const std::string log = whole::bytes_of(folder / ".home/ORB.log");
  for (const std::string &line : in_detail) {
    EXPECT_NE(verbose.err.find(line), std::string::npos) << verbose.err;
    EXPECT_EQ(plain.err.find(line), std::string::npos) << plain.err;
    EXPECT_NE(log.find(line.substr(0, line.size() - 1) + "\r\n"), std::string::npos) << log;
  }
}

TEST_F(program_options, the_version_names_the_commit) {
  const outcome seen = orb("--version");
  EXPECT_EQ(seen.status, 0);
  const std::string commit(orb::program_commit()); // empty for sources without their history
  EXPECT_TRUE(
      seen.out.starts_with("ORB " + std::string(orb::program_version()) + (commit.empty() ? "" : " (" + commit)))
      << seen.out;
  EXPECT_EQ(orb("version").out, seen.out);
  ASSERT_EQ(orb("load " + example + " --out a.ORBdb").status, 0);
  EXPECT_NE(whole::bytes_of(folder / "a.ORBdb.run.json").find("\"commit\": \"" + commit + "\""), std::string::npos);
}

TEST_F(program_options, no_log_is_no_reason_to_stop) {
  const outcome seen = orb("load " + example + " --out a.ORBdb", "ORB_HOME=/dev/null/home");
  EXPECT_EQ(seen.status, 0) << seen.err;
  EXPECT_NE(seen.err.find("This command has no log: /dev/null/home can't be written."), std::string::npos) << seen.err;
  const outcome elsewhere = orb("load " + example + " --out b.ORBdb --log logs", "ORB_HOME=/dev/null/home");
  EXPECT_EQ(elsewhere.status, 0);
  EXPECT_EQ(elsewhere.err.find("no log"), std::string::npos) << elsewhere.err;
  EXPECT_FALSE(whole::bytes_of(folder / "logs/ORB.log").empty());
}

TEST_F(program_options, the_log_lies_where_it_is_asked_for) {
  ASSERT_EQ(orb("load " + example + " --out a.ORBdb").status, 0);
  const std::string usual = whole::bytes_of(folder / ".home/ORB.log");
  EXPECT_NE(usual.find("library.load done"), std::string::npos) << usual;
  ASSERT_EQ(orb("load " + example + " --out b.ORBdb --log logs").status, 0);
  EXPECT_EQ(whole::bytes_of(folder / ".home/ORB.log"), usual);
  EXPECT_NE(whole::bytes_of(folder / "logs/ORB.log").find("library.load done"), std::string::npos);
}

// A question whose default is no, until a file is named, and whose yes goes on.
TEST_F(program_options, questions_are_answered_by_a_file_or_by_yes) {
  ASSERT_EQ(orb("load " + example + " --out l.ORBdb").status, 0);
  whole::write_bytes(folder / "list.txt", "EC001A01\nnobody\nsomebody\n");
  whole::write_bytes(folder / "stop.txt", "Clone (\tyes\n");
  whole::write_bytes(folder / "late.txt", "Clone (3)\tyes\n");
  const auto made = [&](const std::string &options) {
    fs::remove(folder / "a.txt");
    EXPECT_EQ(orb("list sort l.ORBdb list.txt --out a.txt --force " + options).status, 1);
    return fs::exists(folder / "a.txt");
  };
  EXPECT_TRUE(made("")) << "nobody can be asked whether to stop: no";
  EXPECT_TRUE(made("--yes")) << "the answer that goes on";
  EXPECT_FALSE(made("--answers stop.txt"));
  EXPECT_FALSE(made("--answers late.txt")) << "by the begin of the question";
  EXPECT_FALSE(made("--yes --answers stop.txt")) << "an answer that was prepared comes before --yes";
  whole::write_bytes(folder / "wrong.txt", "no tab here\n");
  EXPECT_EQ(orb("info l.ORBdb --answers wrong.txt").status, 2);
  // with a name for its file no one need say that it is wanted
  EXPECT_EQ(orb("repeats l.ORBdb --file " + example).err.find("?"), std::string::npos);
  EXPECT_FALSE(fs::exists(folder / ".home/selected_clones_ecoli536.txt"));
  EXPECT_EQ(orb("repeats l.ORBdb --file " + example + " --out named.sizes").status, 0);
  EXPECT_TRUE(fs::exists(folder / "named.sizes"));
}
