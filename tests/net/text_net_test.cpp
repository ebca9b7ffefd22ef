// Loading text nets: reduction of crowded clones, and files that are wrong.
#include <gtest/gtest.h>

#include <map>

#include "frame/numbers.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

struct bad_case {
  const char *what;
  std::string bytes;
  bool ends_program;
  std::vector<std::string> messages; // "@": the file's name
};

TEST(text_net, wrong_files_are_told_with_their_line_and_change_nothing) {
  const std::string good = "clone\t1\tC100001\t1\r\n2\tC100002\t15.00\r\nclone\t2\tC100002\t1\r\n1\tC100001\t15.00\r\n";
  const std::string broken = "error in file with significant connections!";
  const bad_case cases[] = {
      {"no net at all", "abc\r\n", true, {broken, "file @, line 1"}},
      {"clone out of order", good + "clone\t4\tx\t0\n", true, {"i <> j: 3 <> 4", "file @, line 5"}},
      {"clone without number", "clone\r\n", true, {"i <> j: 1 <> ", "file @, line 1"}},
      {"no count", "clone\t1\tx\r\n", true, {broken, "file @, line 1"}},
      {"negative count", "clone\t1\tx\t-2\r\n", true, {broken, "file @, line 1"}},
      {"more lines than counted", "clone\t1\tx\t0\n2\ty\t15.00\n", true, {broken, "file @, line 2"}},
      {"fewer lines than counted",
       "clone\t1\tx\t2\n2\ty\t15.00\nclone\t2\ty\t0\n",
       false,
       {broken, "file @, line 3: \"clone\" is not a clone number"}},
      {"count beyond the file",
       "clone\t1\tx\t2000000000\n2\ty\t15.00\n",
       false,
       {broken, "file @, line 2: the file ends before the overlaps of clone 1"}},
      {"neighbour beyond the library",
       "clone\t1\tx\t1\n4\ty\t15.00\n",
       false,
       {broken, "file @, line 2: clone 1 can't overlap with clone 4"}},
      {"overlap with itself",
       "clone\t1\tx\t1\n1\ty\t15.00\n",
       false,
       {broken, "file @, line 2: clone 1 can't overlap with clone 1"}},
      {"value is a word",
       "clone\t1\tx\t1\n2\ty\tnan\n",
       false,
       {broken, "file @, line 2: value \"nan\" is not a number"}},
      {"burial code",
       "clone\t1\tx\t1\n2\ty\t15\tabs7\n",
       false,
       {broken, "file @, line 2: \"abs7\" is not a burial code"}},
      {"too many clones",
       good + "clone\t3\tx\t0\nclone\t4\tx\t0\n",
       false,
       {"i <> nnn: 4 <> 3", "file @, line 6: the net has more clones than the library"}},
  };
  for (const bad_case &c : cases) {
    SCOPED_TRACE(c.what);
    net_fixture f({.n_clones = 3, .bands_in_clone = 4});
    f.write("bad.txt", c.bytes);
    bool ok = true;
    const auto load = [&] {
      f.signif.read_file_with_significant_connections(f.folder / "bad.txt", "", false, false, ok);
    };
    if (c.ends_program) {
      EXPECT_THROW(load(), program_end);
    } else {
      load();
      EXPECT_TRUE(f.frame.data_failed());
    }
    EXPECT_FALSE(ok);
    EXPECT_EQ(f.signif.net().number_of_vertices_get(), 0);
    EXPECT_FALSE(f.settings.use_file_with_connections);
    std::vector<std::string> expected = c.messages;
    for (std::string &text : expected)
      if (const auto at = text.find('@'); at != std::string::npos)
        text.replace(at, 1, (f.folder / "bad.txt").string());
    EXPECT_EQ(f.record.messages, expected);
  }
}

TEST(text_net, tolerant_forms_and_a_missing_tail) {
  net_fixture f({.n_clones = 4, .bands_in_clone = 4});
  f.write("net.txt", "clone\t1\tx\t2\n2\ty\t15,25\tabs\n3\tz\t9\tabs3\rclone\t2\ty\t1\r\n1\tx\t15,25\tabs2");
  class_net net;
  bool ok = false;
  f.signif.read_text_net(f.folder / "net.txt", net, ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ(f.record.messages, std::vector<std::string>{"i <> nnn: 2 <> 4"});
  EXPECT_TRUE(f.frame.data_failed()) << "half a net doesn't look like a whole one";
  EXPECT_EQ(net.number_of_vertices_get(), 4);
  ASSERT_EQ(net.number_of_edges_get(), 3);
  EXPECT_EQ(net.edges_of_vertex(1)[0].value, 15.25);
  EXPECT_EQ(net.edges_of_vertex(1)[0].index2, 1);
  EXPECT_EQ(net.edges_of_vertex(1)[1].index2, 3);
  EXPECT_EQ(net.edges_of_vertex(2)[0].index2, 2);
}

TEST(text_net, limits_that_are_no_limits_end_the_load) {
  struct {
    const char *overlaps, *cutoff, *message;
  } const cases[] = {{"many", "15", "Should be numerical!"},
                     {"0", "15", "Should be >0"},
                     {"3", "-1", "Should be >0"},
                     {"3", "", "Should be numerical!"}};
  for (const auto &c : cases) {
    net_fixture f({.n_clones = 2, .bands_in_clone = 4});
    f.write("net.txt", "clone\t1\tx\t0\nclone\t2\tx\t0\n");
    f.answer_always("All overlaps?", "no");
    f.answer_always("Input maximal number of overlap per clone:", c.overlaps);
    f.answer_always("Input cutoff to reduce number of clone overlaps:", c.cutoff);
    class_net net;
    bool ok = true;
    f.signif.read_text_net(f.folder / "net.txt", net, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(f.record.messages, std::vector<std::string>{c.message});
  }
}

// Loads with limits and compares with the definition of status and cutoffs.
TEST(text_net, reduction_keeps_what_the_status_of_both_clones_allows) {
  net_fixture f({.n_clones = 120, .bands_in_clone = 24, .coverage = 25});
  f.rule.cutoff = 4;
  net_creation_summary summary;
  ASSERT_TRUE(f.signif.create_file_with_significant_connections(f.rule, {f.folder / "net.txt", 1}, summary));
  class_net whole, reduced;
  bool ok = false;
  f.signif.read_text_net(f.folder / "net.txt", whole, ok);
  ASSERT_TRUE(ok);
  EXPECT_FALSE(std::filesystem::exists(f.folder / "overlaps.tsv"));
  constexpr std::int32_t most = 24;
  constexpr double cutoff = 13;
  f.answer_always("All overlaps?", "no");
  f.answer_always("Input maximal number", std::to_string(most));
  f.answer_always("Input cutoff to reduce", "13");
  f.signif.read_text_net(f.folder / "net.txt", reduced, ok);
  ASSERT_TRUE(ok);
  const auto count = [&](vertex_number v, double at_least) {
    std::int32_t n = 0;
    for (const net_edge &edge : whole.edges_of_vertex(v))
      n += edge.value >= at_least;
    return n;
  };
  const auto limit = [&](vertex_number v) {
    return count(v, 0) <= most ? 0.0 : count(v, cutoff) <= most ? cutoff : 10000.0;
  };
  std::map<double, int> seen;
  for (vertex_number v = 1; v <= 120; ++v) {
    ++seen[limit(v)];
    std::vector<vertex_number> expected, found;
    for (const net_edge &edge : whole.edges_of_vertex(v))
      if (edge.value >= std::max(limit(v), limit(edge.neighbour)))
        expected.push_back(edge.neighbour);
    for (const net_edge &edge : reduced.edges_of_vertex(v)) {
      found.push_back(edge.neighbour);
      double value;
      std::int16_t index1, index2;
      EXPECT_TRUE(reduced.overlap_of_pair(edge.neighbour, v, value, index1, index2));
    }
    EXPECT_EQ(found, expected) << v;
  }
  EXPECT_EQ(seen.size(), 3u) << "the library should show all three kinds of clones";
  const std::string report = file_bytes(f.folder / "overlaps.tsv");
  EXPECT_TRUE(
      report.starts_with("c\tclone\tnOverlaps\tcutoff13.00\t10.00\t15.00\t20.00\t25.00\t30.00\t35.00\t40.00\t45.00\t"
                         "50.00\r\n1\tC100001\t" +
                         std::to_string(count(1, 0)) + "\t" + std::to_string(count(1, 13)) + "\t" +
                         std::to_string(count(1, 10)) + "\t" + std::to_string(count(1, 15)) + "\t"));
  double sum = 0;
  for (vertex_number v = 1; v <= 120; ++v)
    sum += count(v, 0);
  EXPECT_NE(report.find("\r\nAverage\t120\t" + number_text(sum / 120, 1) + "\t"), std::string::npos);
  EXPECT_NE(report.find("\r\nn<=24\t" + std::to_string(seen[0]) + "\t"), std::string::npos);
  EXPECT_NE(report.find("\r\nn1<=24\t" + std::to_string(seen[cutoff]) + "\t"), std::string::npos);
  EXPECT_TRUE(report.ends_with("\r\nothers\t" + std::to_string(seen[10000]) + "\t" +
                               number_text(seen[10000] / 120.0, 1) + "\r\n"));
}

} // namespace
} // namespace orb
