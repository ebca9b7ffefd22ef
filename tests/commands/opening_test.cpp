// What opening a path means, and the script lines of commands.
#include "commands/opening.h"

#include "project/input_kind.h"
#include "support/native_markers.h"
#include "support/project_session.h"

using namespace orb_test;

namespace {

class opening_of_paths : public session_test {
protected:
  std::string ids(const fs::path &path) {
    std::string text;
    for (const bound_command &command : opening_of(run.project, path).commands)
      text += (text.empty() ? "" : " ") + command.row().id;
    return text;
  }
  std::string here(const char *name) const { return (folder.path() / name).string(); }

  session run;
};

} // namespace

TEST_F(opening_of_paths, go_by_what_they_hold) {
  const std::string library = here("l.ORBdb");
  ASSERT_EQ(run.run("library.load file=" + example().string()).status, exit_status::done);
  ASSERT_EQ(run.run("library.save out=" + library).status, exit_status::done);
  ASSERT_EQ(run.run("net.create").status, exit_status::done);
  ASSERT_EQ(run.run("net.save out=" + here("n.ORBns")).status, exit_status::done);
  ASSERT_EQ(run.run("net.save_text out=" + here("n.txt")).status, exit_status::done);
  folder.write("native.ORB", native_markers(423));
  folder.write("project.orb", "DB,l.ORBdb,M,,N,n.ORBns");
  folder.write("project.txt", "DB,l.ORBdb");
  folder.write("drawing.net", "*Vertices 1\n1 \"a\" 0.5 0.5\n*Arcs\n*Edges\n");
  folder.write("names.txt", "EC001A01\nEC001A02\n");
  EXPECT_EQ(ids(example()), "library.load");
  EXPECT_EQ(ids(example() / "EC001.sizes"), "library.load");
  EXPECT_EQ(ids(library), "library.load");
  EXPECT_EQ(ids(here("n.ORBns")), "net.load");
  EXPECT_EQ(ids(here("n.txt")), "net.load_text");
  EXPECT_EQ(ids(here("native.ORB")), "markers.load");
  EXPECT_EQ(ids(here("project.orb")), "project.open");
  EXPECT_EQ(ids(here("project.txt")), "project.open");
  EXPECT_EQ(opening_of(run.project, here("drawing.net")).net_to_view, here("drawing.net"));
  EXPECT_EQ(opening_of(run.project, here("names.txt")).refused,
            here("names.txt") + " can't be opened: it looks like a list of clones.");
  EXPECT_EQ(opening_of(run.project, here("nowhere")).refused, here("nowhere") + " isn't there.");
  EXPECT_NE(opening_of(run.project, folder.path()).refused, "") << "a folder of all sorts";
}

TEST_F(opening_of_paths, a_run_brings_its_parts) {
  const std::string results = here("results");
  ASSERT_EQ(
      run.run_verb("assemble", {{"input", example().string()}, {"out", results}, {"ordering-steps", "500"}}).status,
      exit_status::done);
  for (const fs::path &path : {fs::path(results), run_folder_of_results(results)}) {
    run.project.clear();
    const opening found = opening_of(run.project, path);
    ASSERT_EQ(found.refused, "");
    EXPECT_EQ(found.contigs_to_browse, path);
    ASSERT_EQ(found.commands.size(), 4u);
    for (const bound_command &command : found.commands)
      EXPECT_EQ(run_command(run.project, command).status, exit_status::done) << command.row().id;
    EXPECT_TRUE(run.project.has(project_part::contigs) && run.project.has(project_part::net));
  }
}

TEST(script_line, asks_for_the_same_again) {
  bound_command command = bound_by_name("list.unite");
  const std::vector<std::pair<std::string, std::string>> given{
      {"list", "a b.txt"}, {"out", "#f.txt"}, {"force", "yes"}, {"list2", "c\\d \"e\".txt"}};
  for (const auto &[key, value] : given)
    command.set(key, value);
  const script_line line = parse_script_line(script_line_of(command), 1);
  EXPECT_EQ(line.command, "list.unite");
  EXPECT_EQ(line.values, given) << script_line_of(command);
  bound_command with_preset = bound_by_name("mnu_Analysis_RevizeNetSignif_QClones");
  with_preset.set("out", "q.ORBns");
  EXPECT_EQ(script_line_of(with_preset), "net.revise out=q.ORBns ask-rank=yes no-overlaps=yes");
}
