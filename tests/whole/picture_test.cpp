// `orb picture`, `orb layout` and `orb view` as a user runs them.
#include <algorithm>

#include "support/program_run.h"

namespace {

using whole::bytes_of;
using whole::outcome;
using whole::write_bytes;
namespace fs = std::filesystem;

const std::string chain = "*Network chain\n*Vertices 4\n1 \"a\"\n2 \"b\"\n3 \"c\"\n4 \"d\"\n"
                          "*Edges 3\n1 2 10 l \"10.00\"\n2 3 10 l \"10.00\"\n3 4 10 l \"10.00\"\n";

class pictures : public whole::program_test {};

} // namespace

TEST_F(pictures, of_a_run_and_of_a_drawing) {
  ASSERT_EQ(orb("assemble " + example + " --out d --no-ordering --no-pair-tables").status, 0);
  EXPECT_EQ(orb("picture d --all --out nets.svg").status, 0);
  EXPECT_EQ(std::count_if(fs::directory_iterator(folder), fs::directory_iterator(),
                          [](const auto &entry) { return entry.path().filename().string().starts_with("nets_cl_"); }),
            5);
  const std::string svg = bytes_of(folder / "nets_cl_4.svg");
  EXPECT_EQ(orb("picture d --contig cl_4 --out again.svg --threads 1").status, 0);
  EXPECT_EQ(bytes_of(folder / "again.svg"), svg) << "the same seed gives the same picture";
  EXPECT_EQ(orb("picture d --contig cl_4 --out other.svg --seed 2").status, 0);
  EXPECT_NE(bytes_of(folder / "other.svg"), svg);
  const fs::path drawing = *std::find_if(fs::recursive_directory_iterator(folder / "d"), {},
                                         [](const auto &entry) { return entry.path().extension() == ".net"; });
  for (const std::string ending : {"png", "pdf"}) {
    EXPECT_EQ(orb("picture '" + drawing.string() + "' --out x." + ending).status, 0);
    EXPECT_EQ(bytes_of(folder / ("x." + ending)).substr(1, 3), ending == "png" ? "PNG" : "PDF");
  }
}

TEST_F(pictures, wrong_wishes_and_damaged_drawings) {
  write_bytes(folder / "c.net", chain);
  write_bytes(folder / "cut.net", chain.substr(0, chain.size() - 14));
  for (const auto &[arguments, status, words] : std::vector<std::tuple<std::string, int, std::string>>{
           {"picture c.net --out c.gif", 2, ".png, .svg or .pdf"},
           {"picture c.net --out c.png --contig cl_3", 2, "--contig belongs to pictures of a run"},
           {"picture absent.net --out c.png", 3, "absent.net"},
           {"picture cut.net --out c.png", 1, "file cut.net, line 10"},
           {"picture c.net --out c.png --size 10x10", 2, "--size 10x10"},
           {"layout c.net --out c.txt", 2, ".net or .tsv"},
           {"view c.net --do mnuSelectAl", 2, "is mnuSelectAll meant?"},
           {"view c.net --do press=1", 2, "wanted are 2 numbers"},
           {"view c.net --do mnuUndo", 1, "mnuUndo is grey"}}) {
    const outcome seen = orb(arguments);
    EXPECT_EQ(seen.status, status) << arguments << seen.err;
    EXPECT_NE(seen.err.find(words), std::string::npos) << arguments << seen.err;
  }
  EXPECT_FALSE(fs::exists(folder / "c.png"));
}

TEST_F(pictures, the_viewer_is_driven_by_its_controls) {
  write_bytes(folder / "c.net", chain);
  write_bytes(folder / "answers", "Use ordering of clusters?\tno\n");
  const outcome seen =
      orb("view c.net --do mnuProcess --do mnuSelectGroup --do drag=0,0,1600,1000 --do TextSelVertices=b "
          "--do mnuSelec_fromListOnly --do mnuSelect_Delete --out less.net --answers answers");
  ASSERT_EQ(seen.status, 0) << seen.err;
  EXPECT_NE(seen.err.find("drag: Added 4 selected clones."), std::string::npos) << seen.err;
  EXPECT_NE(seen.err.find("mnuSelect_Delete: 1 nodes deleted."), std::string::npos) << seen.err;
  const std::string saved = bytes_of(folder / "less.net");
  EXPECT_NE(saved.find("*Vertices 3\r\n1 \"a\""), std::string::npos) << saved;
  EXPECT_NE(saved.find("*Edges 1\r\n2 3 10"), std::string::npos) << saved;
  ASSERT_EQ(orb("layout less.net --layout circle --out places.tsv").status, 0);
  EXPECT_EQ(bytes_of(folder / "places.tsv").substr(0, 9), "name\tx\ty\n");
}
