// `orb map`: pictures of a run, the same each time, and what is wrong told before anything is written.
#include "support/program_run.h"

using whole::bytes_of;
using whole::outcome;
namespace fs = std::filesystem;

namespace {

class map_of_a_run : public whole::program_test {
protected:
  void SetUp() override {
    ASSERT_EQ(orb("assemble " + example + " --out made --yes -q --no-pair-tables --no-drawings --no-ordering").status,
              0);
  }
};

TEST_F(map_of_a_run, pictures_are_the_same_each_time) {
  for (const std::string what : {"--contig cl_3", "--overview"})
    for (const auto &[name, start] : {std::pair{"x.png", "\x89PNG"}, {"x.svg", "<?xml"}, {"x.pdf", "%PDF"}}) {
      std::string first;
      for (const std::string epoch : {"", "SOURCE_DATE_EPOCH=5 "}) {
        const outcome made = orb("map made " + what + " --force --out " + name, epoch);
        EXPECT_EQ(made.status, 0) << made.err;
        EXPECT_NE(made.err.find(std::string("Saved: ") + name), std::string::npos);
        const std::string bytes = bytes_of(folder / name);
        EXPECT_TRUE(bytes.starts_with(start)) << name;
        EXPECT_TRUE(first.empty() || bytes == first) << name;
        first = bytes;
      }
    }
}

// Far clones by the run's list, Q-clones by the net; drawn is what the contig is told to hold.
TEST_F(map_of_a_run, marks_come_from_the_run) {
  fs::path contigs;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder / "made"))
    contigs = entry.is_directory() ? entry.path() : contigs;
  EXPECT_EQ(orb("map made --contig cl_3 --out plain.svg").status, 0);
  fs::copy_file(contigs / "cl_3" / "MTP_cl_3.txt", contigs / "cl_3" / "far_from_MTP_cl_3.txt");
  EXPECT_EQ(orb("map made --contig cl_3 --out far.svg").status, 0);
  EXPECT_NE(bytes_of(folder / "plain.svg"), bytes_of(folder / "far.svg"));
  orb::write_bytes(contigs / "cl_3" / "far_from_MTP_cl_3.txt", "nobody\r\n");
  const outcome refused = orb("map made --contig cl_3 --out y.svg");
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("Clone nobody"), std::string::npos) << refused.err;
  EXPECT_FALSE(fs::exists(folder / "y.svg"));
  EXPECT_NE(orb("map made --contig cl_2 --out z.svg --net none.ORBns").err.find("none.ORBns"), std::string::npos);
}

TEST_F(map_of_a_run, wrong_wishes_are_refused) {
  fs::create_symlink("/dev/full", folder / "full.png");
  const struct {
    const char *options;
    int status;
    const char *said;
  } cases[] = {{"--out y.png", 2, "one of --contig NAME and --overview is needed. Contigs are cl_2, cl_3, "},
               {"--contig cl_33 --out y.png", 2, "there is no contig cl_33; is cl_3 meant?"},
               {"--contig cl_3 --overview --out y.png", 2, "two pictures"},
               {"--overview --out y.jpg", 2, ".png, .svg or .pdf"},
               {"--overview --out y.png --size 10x10", 2, "--size 10x10"},
               {"--overview --out none/y/", 2, ".png, .svg or .pdf"},
               {"--overview --out full.png --force", 3, "can't write full.png"},
               {"--overview --out /proc/y.png", 3, "/proc"}};
  for (const auto &c : cases) {
    const outcome seen = orb(std::string("map made ") + c.options);
    EXPECT_EQ(seen.status, c.status) << c.options << seen.err;
    EXPECT_NE(seen.err.find(c.said), std::string::npos) << c.options << seen.err;
  }
  EXPECT_FALSE(fs::exists(folder / "y.png"));
}

} // namespace
