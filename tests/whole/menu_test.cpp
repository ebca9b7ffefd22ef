// Whatever the menu does a script does: menu.orbscript names each entry once at least, and runs to its end.
#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "support/native_markers.h"
#include "support/program_run.h"

using whole::bytes_of;
using whole::outcome;
using whole::write_bytes;
namespace fs = std::filesystem;

namespace {

struct shown_entry {
  std::string control, place, caption, command, state;
};

class menu : public whole::program_test {
protected:
  menu() : script(bytes_of(ORB_SOURCE_DIR "/tests/whole/menu.orbscript")) {}

  // The entries as `orb menu` prints them.
  std::vector<shown_entry> entries(const std::string &options = "") const {
    const outcome seen = orb("menu " + options);
    EXPECT_EQ(seen.status, 0) << seen.err;
    std::vector<shown_entry> shown;
    std::istringstream lines(seen.out);
    for (std::string line; std::getline(lines, line);) {
      std::istringstream fields(line);
      shown_entry &entry = shown.emplace_back();
      for (std::string *field : {&entry.control, &entry.place, &entry.caption, &entry.command, &entry.state})
        std::getline(fields, *field, '\t');
      EXPECT_NE(entry.state, "") << line;
    }
    EXPECT_GT(shown.size(), 80u);
    return shown;
  }

  // What the lines of the script read.
  void write_inputs() const {
    fs::create_directory_symlink(example, folder / "example");
    write_lists();
    write_bytes(folder / "markers.txt", "M1\tEC001A01,EC001A02\nM2\tEC001A03\n");
    write_bytes(folder / "clone_markers.txt", "EC001A01\tM1\nEC001A02\tM1,M2\n");
    write_bytes(folder / "native.ORB", orb_test::native_markers(423));
    write_bytes(folder / "positions.txt", "M1\t12\n");
    write_bytes(folder / "columns.txt", "EC001A01,EC001A02\n");
    write_bytes(folder / "contig_names.txt", "cl_2\tfirst\n");
    write_bytes(folder / "clusters_of_a.txt", "1\n1\n1\n1\n1\n1\n1\n2\n2\n2\n2\n2\n2\n2\n");
    write_bytes(folder / "paths.txt", "ctg1    EC001A01 EC001A02\n");
    write_bytes(folder / "zone.txt", "# z - remark: r\nEC001A01 EC001A02\n");
    write_bytes(folder / "new_names.txt", "other\tEC001A01\n");
    write_bytes(folder / "maize.orb", "DB,l.ORBdb,M,markers.txt,N,from_text.ORBns,F,,C,lists");
    write_bytes(folder / "genome.fa", genome());
    write_bytes(folder / "Input.dis", "4,1,2\r\n1 2 30\r\n2 3 10\r\n1 4 20\r\n");
    write_bytes(folder / "recoding.txt", "h\nh\n1\tA1\t\t1\tA1\n1\tA2\t\t1\tA2\n1\tA3\t\t2\tB1\n");
    write_bytes(folder / "positive.txt", "Plates: 1\nP1\ncolumns: 2\n1\n2\nrows: 1\nA\n");
    write_bytes(folder / "probes.txt", "heads\np1\t+\t" + std::string(16, '\t') + "+" + std::string(16, '\t') + "+\n");
    write_bytes(folder / "answers.txt", "Do you want to load\tyes\nStart from\t1\n"
                                        "Print significant overlaps to text file\tfirst.txt\n"
                                        "Save net of significant clone overlaps\tfirst.ORBns\n"
                                        "Save lists of bands for clones\tkept.ORBdb\n"
                                        "Save lists of bands for clones\tkept2.ORBdb\n"
                                        "Are you sure you want to quit\tyes\n");
  }

  const std::string script;

private:
  // Clones at the start of the genome, from left to right: a.txt, its parts, and some of it as marks.
  void write_lists() const {
    std::istringstream truth(bytes_of(example + "/truth.tsv"));
    std::string line, name, part, chromosome;
    std::getline(truth, line);
    std::map<int, std::string> by_start;
    while (std::getline(truth, line)) {
      std::istringstream fields(line);
      int start = 0;
      fields >> name >> part >> chromosome >> start;
      if (part == "1")
        by_start.emplace(start, name);
    }
    std::string all, left, right, some;
    int n = 0;
    for (const auto &[start, clone] : by_start)
      if (++n <= 14) {
        all += clone + "\n";
        (n <= 7 ? left : right) += clone + "\n";
        some += n >= 3 && n <= 6 ? clone + "\n" : "";
      }
    for (const auto &[file, names] : {std::pair{"a.txt", all},
                                      {"b.txt", some},
                                      {"old_path.txt", some},
                                      {"lists/c1.txt", left},
                                      {"lists/c2.txt", right}})
      write_bytes(folder / file, names);
    write_bytes(folder / "addresses.txt", "lists/c1.txt\nlists/c2.txt\n");
  }
  static std::string genome() {
    std::string text = ">g\n";
    std::uint32_t state = 3;
    for (int i = 0; i < 600000; ++i) {
      state = state * 1664525u + 1013904223u;
      text += "ACGT"[state >> 30];
      text += i % 70 == 69 ? "\n" : "";
    }
    return text;
  }
};

bool is_named(const std::string &script, const std::string &control) {
  return script.find("\n" + control + " ") != std::string::npos ||
         script.find("\n" + control + "\n") != std::string::npos;
}

} // namespace

TEST_F(menu, every_entry_runs_in_a_script) {
  std::set<std::string> controls;
  for (const shown_entry &entry : entries()) {
    EXPECT_TRUE(controls.insert(entry.control).second) << entry.control << " twice";
    EXPECT_EQ(entry.command.empty(), entry.state == "without action" || entry.state == "only in the window")
        << entry.control;
    EXPECT_EQ(is_named(script, entry.control), !entry.command.empty()) << entry.control << " in menu.orbscript";
  }
  write_inputs();
  write_bytes(folder / "menu.orbscript", script);
  const outcome seen = orb("script menu.orbscript --answers answers.txt");
  ASSERT_EQ(seen.status, 0) << seen.err;
  const auto n_lines = std::count(script.begin(), script.end(), '\n');
  const std::string log = bytes_of(folder / ".home/ORB.log");
  std::size_t n_done = 0;
  for (std::size_t at = 0; (at = log.find(" done\r\n", at)) != std::string::npos; ++at)
    ++n_done;
  EXPECT_GE(n_done, static_cast<std::size_t>(n_lines) - 2);
  for (const char *made : {"kept.ORBdb", "kept2.ORBdb", "first.txt", "first.ORBns", "text_net/t.txt",
                           "revised/q3.ORBns", "renamed.ORBdb", "tables/testRes.txt", "a.sizes", "registry/mmm.txt"})
    EXPECT_GT(fs::file_size(folder / made), 0u) << made;
  EXPECT_NE(seen.out.find("  Number of clones in contigs = 14\n"), std::string::npos) << seen.out;
}

TEST_F(menu, a_project_says_what_can_run) {
  write_inputs();
  ASSERT_EQ(orb("load example --out l.ORBdb").status, 0);
  write_bytes(folder / "only_library.orb", "DB,l.ORBdb");
  write_bytes(folder / "damaged.orb", "DB,nowhere.ORBdb");
  std::map<std::string, std::string> empty, library, whole;
  for (const shown_entry &entry : entries())
    empty[entry.control] = entry.state;
  for (const shown_entry &entry : entries("--project only_library.orb"))
    library[entry.control] = entry.state;
  ASSERT_EQ(orb("net l.ORBdb --out from_text.ORBns").status, 0);
  for (const shown_entry &entry : entries("--project maize.orb"))
    whole[entry.control] = entry.state;
  EXPECT_EQ(empty["mnu_File_open_my"], "runnable");
  EXPECT_EQ(empty["mnuNewProject"], "without action");
  EXPECT_EQ(empty["mnu_View_net"], "only in the window");
  EXPECT_EQ(empty["mnu_Edit_Clusters_MarkerClones"], "needs a library, contigs, markers");
  EXPECT_EQ(library["mnu_Edit_Clusters_MarkerClones"], "needs contigs, markers");
  EXPECT_EQ(empty["mnu_Analysis_RevizeNetSignif_QQ"], "needs a library, a net of overlaps");
  EXPECT_EQ(library["mnu_Analysis_RevizeNetSignif_QQ"], "needs a net of overlaps");
  for (const auto &[control, state] : whole) {
    EXPECT_TRUE(!state.starts_with("needs") || state == "needs a scheme of pools") << control << ": " << state;
    EXPECT_EQ(state == "without action", empty[control] == "without action") << control;
  }
  const outcome missing = orb("menu --project damaged.orb");
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("File nowhere.ORBdb with DB is NOT FOUND!"), std::string::npos) << missing.err;
  EXPECT_EQ(missing.out, "");
  EXPECT_EQ(orb("menu --project nowhere.orb").status, 3);
}
