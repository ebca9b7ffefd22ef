// Libraries with a known truth from the command line: simulate, assemble, evaluate.
#include "support/program_run.h"

namespace {

using namespace whole;

class simulate : public program_test {
protected:
  // Letters by a linear congruence, with a site of a labelled cutter now and then; a gap in the middle.
  static std::string genome(std::size_t length) {
    const char *sites[] = {"GAATTC", "GGATCC", "TCTAGA", "CTCGAG", "GGCC"};
    std::string text;
    std::uint64_t state = 7;
    const auto draw = [&state](std::uint64_t n) {
      state = state * 6364136223846793005u + 1442695040888963407u;
      return (state >> 33) % n;
    };
    while (text.size() < length)
      draw(400) == 0 ? text += sites[draw(5)] : text += "acgt"[draw(4)];
    return ">chr1 of two\n" + text.substr(0, length / 2) + std::string(200, 'N') + "\n>chr2\n" +
           text.substr(length / 2) + "\n";
  }
};

TEST_F(simulate, three_commands_lead_from_a_sequence_to_figures) {
  write_bytes(folder / "genome.fa", genome(1200000));
  const outcome made = orb("simulate library genome.fa --out lib --coverage 8 --chimeras 0.02");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.out, "lib\n");
  EXPECT_NE(made.err.find("Next: orb assemble lib --out RESULTS\n"), std::string::npos) << made.err;
  for (const char *file : {"DataBase_Simul.txt", "truth.tsv", "clones.txt", "run.json", "clone_bin_coverage.txt"})
    EXPECT_TRUE(fs::exists(folder / "lib" / file)) << file;
  const std::string truth = bytes_of(folder / "lib/truth.tsv");
  EXPECT_TRUE(truth.starts_with("clone\tpart\tchromosome\tstart\tend\nSimulBAC00000"));
  EXPECT_NE(truth.find("\tchr2\t"), std::string::npos);
  ASSERT_EQ(orb("assemble lib --out asm --no-ordering --no-drawings --no-pair-tables --yes -q").status, 0);
  const outcome judged = orb("evaluate asm --truth lib/truth.tsv");
  ASSERT_EQ(judged.status, 0) << judged.err;
  EXPECT_NE(judged.out.find("clones of the run that the truth lacks                                     0"),
            std::string::npos)
      << judged.out;
  ASSERT_EQ(orb("simulate library genome.fa --out again --coverage 8 --chimeras 0.02 -q -t 3").status, 0);
  EXPECT_EQ(bytes_of(folder / "again/DataBase_Simul.txt"), bytes_of(folder / "lib/DataBase_Simul.txt"));
  EXPECT_EQ(bytes_of(folder / "again/truth.tsv"), truth);

  ASSERT_EQ(orb("simulate digest genome.fa --out cut -q").status, 0);
  for (const char *file : {"digest.txt", "bands.txt", "enz_HaeIII_statistics.txt", "enz_XhoI_statistics.txt"})
    EXPECT_TRUE(fs::exists(folder / "cut" / file)) << file;
}

TEST_F(simulate, refuses_bad_input_and_impossible_parameters) {
  write_bytes(folder / "genome.fa", genome(1000));
  write_bytes(folder / "empty.fa", "");
  write_bytes(folder / "protein.fa", ">p\nMKVLE\n");
  const struct {
    std::string arguments, said;
    int status;
  } cases[] = {{"missing.fa", "missing.fa: No such file or directory", 3},
               {"empty.fa", "Sequence is empty!", 1},
               {"protein.fa", "file protein.fa, line 2", 1},
               {"genome.fa --chimeras 1.5", "--chimeras", 2},
               {"genome.fa --error nan", "--error: \"nan\" isn't a number", 2},
               {"genome.fa --coverage 3 --clones 9", "use one of them", 2},
               {"genome.fa --min-bands 90 --max-bands 80", "--min-bands must not be above --max-bands", 2},
               {"genome.fa --min-band-length 500", "--min-band-length must be below --max-band-length", 2},
               {"genome.fa --scale 100000", "a gel longer than", 2},
               {"genome.fa --gel agarose --shift 9000", "belong to --gel capillary", 2},
               {"genome.fa --clone-site AANTT", "--clone-site takes a site", 2}};
  for (const auto &one : cases) {
    const outcome seen = orb("simulate library " + one.arguments + " --out lib -q");
    EXPECT_EQ(seen.status, one.status) << one.arguments;
    EXPECT_NE(seen.err.find(one.said), std::string::npos) << one.arguments << ": " << seen.err;
    EXPECT_FALSE(fs::exists(folder / "lib/truth.tsv")) << one.arguments;
  }
}

} // namespace
