// Q-overlaps and Q-clones against their definition, and the reports of a revision.
#include <gtest/gtest.h>

#include <chrono>
#include <set>

#include "support/net_fixture.h"
#include "support/plain_revision.h"

namespace orb {
namespace {

using edge_set = std::set<std::pair<vertex_number, vertex_number>>;

class_net random_net(random_source &chance, std::int32_t n, double density) {
  std::vector<plain_edge> edges;
  for (vertex_number a = 1; a <= n; ++a)
    for (vertex_number b = a + 1; b <= n; ++b)
      if (b - a <= 3 ? chance.uniform() < 0.6 : chance.uniform() < density)
        edges.push_back({a, b, 15.0 + chance.number_up_to(20)});
  return net_of_edges(n, edges);
}

TEST(revision, marks_are_those_of_the_definition) {
  net_fixture f({.n_clones = 40, .bands_in_clone = 4});
  random_source chance(7);
  for (int run = 0; run < 12; ++run) {
    const std::int32_t r = 1 + run % 3;
    f.settings.threads = 1 + run % 2 * 3;
    const std::optional<double> additional = run % 4 < 2 ? std::optional<double>(22) : std::nullopt;
    const class_net net = random_net(chance, 40, 0.01 * (run % 5));
    class_net marked;
    std::int32_t n_Q = 0, expected = 0;
    f.signif.identify_all_Q_connections(net, r, marked, -1, false, {}, n_Q);
    for (vertex_number v = 1; v <= 40; ++v)
      for (std::size_t k = 0; k < net.edges_of_vertex(v).size(); ++k) {
        const vertex_number w = net.edges_of_vertex(v)[k].neighbour;
        const bool supported = !plain_revision::is_Q_overlap(net, v, w, r);
        EXPECT_EQ(marked.edges_of_vertex(v)[k].index1, supported ? 0 : -1) << v << "-" << w << " r=" << r;
        expected += !supported;
      }
    EXPECT_EQ(n_Q, expected);
    f.signif.identify_all_Q_clones(net, r, additional, marked, -1, false, {}, {}, n_Q);
    expected = 0;
    for (vertex_number v = 1; v <= 40; ++v) {
      const bool is_Q = plain_revision::is_Q_clone(net, v, r, additional.value_or(0));
      EXPECT_EQ(marked.index_of_vertex_get(v), is_Q ? -1 : 0) << v << " r=" << r;
      expected += is_Q;
    }
    EXPECT_EQ(n_Q, expected);
  }
}

// 1-2-3 a triangle, 3-4-5 a path hanging on it.
class_net triangle_with_tail() {
  return net_of_edges(6, {{1, 2}, {1, 3}, {2, 3}, {3, 4, 17.25}, {4, 5, 31}});
}

struct revised {
  net_fixture f{{.n_clones = 6, .bands_in_clone = 6}};
  class_clone_net_signif::revision_summary summary;
  bool done = false;
  explicit revised(bool overlaps, bool clones, std::int32_t rank = 1) {
    f.rule.cutoff = 15.5;
    f.signif.net() = triangle_with_tail();
    done = f.signif.revise_connections(f.rule, {overlaps, clones, rank, "16", f.folder / "revised.ORBns"}, summary);
  }
  std::string clone(vertex_number v) {
    return std::to_string(v) + "\t" + f.database.name_of_clone_get(v) + "\t" +
           std::to_string(f.database.number_of_bands_in_clone_get(v));
  }
};

TEST(revision, reports_word_for_word) {
  revised run(true, true);
  ASSERT_TRUE(run.done);
  EXPECT_EQ(run.summary.n_q_overlaps, 2);
  EXPECT_EQ(run.summary.n_q_clones, 0); // without the tail nothing is joined any more
  const auto c = [&](vertex_number v) { return run.clone(v); };
  EXPECT_EQ(
      file_bytes(run.f.folder / "cutoff155_Q_overlaps.txt"),
      "k\ti1\tclone1\tn_bands\tn_overlaps\ti2\tclone2\tn_bands\tn_overlaps\t-log(Pr(overlap))\tburied\tn_clusters\r\n"
      "1\t" +
          c(3) + "\t3\t" + c(4) + "\t2\t17.25\t\t2\r\n2\t" + c(4) + "\t2\t" + c(3) + "\t3\t17.25\t\t2\r\n3\t" + c(4) +
          "\t2\t" + c(5) + "\t1\t31.00\t\t2\r\n4\t" + c(5) + "\t1\t" + c(4) + "\t2\t31.00\t\t2\r\n");
  std::string tests = "clone\tname\tn_bands\tn_overlaps\tn_clusters\r\n";
  for (vertex_number v = 1; v <= 6; ++v)
    tests += c(v) + (v <= 3 ? "\t2\t1\r\n" : "\t0\t0\r\n");
  EXPECT_EQ(file_bytes(run.f.folder / "cutoff155_test_of_clones_for_Q.txt"), tests);
  EXPECT_EQ(file_bytes(run.f.folder / "cutoff155_Q_clones.txt"), "k\tclone\tname\tn_bands\tn_overlaps\tn_clusters\r\n");
  EXPECT_EQ(run.f.signif.net().number_of_edges_get(), 6);
  EXPECT_TRUE(run.f.settings.use_file_with_connections);
  EXPECT_EQ(run.f.record.messages, std::vector<std::string>{"Net of significant clone overlaps is revized"});
}

TEST(revision, a_Q_clone_stays_as_a_marked_vertex_without_edges) {
  revised run(false, true, 2);
  ASSERT_TRUE(run.done);
  EXPECT_EQ(run.summary.n_q_clones, 2);
  const class_net &net = run.f.signif.net();
  ASSERT_EQ(net.number_of_vertices_get(), 6);
  for (vertex_number v = 1; v <= 6; ++v)
    EXPECT_EQ(net.index_of_vertex_get(v), v == 3 || v == 4 ? -1 : 0);
  EXPECT_EQ(net.number_of_edges_get(), 2); // 1-2
  const std::string Q = file_bytes(run.f.folder / "cutoff155_Q_clones.txt");
  EXPECT_TRUE(Q.starts_with("k\tclone\tname\tn_bands\tn_overlaps\tn_rank(2)\tn_clusters\r\n")) << Q;
}

TEST(revision, the_form_refuses_and_proposes) {
  const std::string numeric = "Additional cutoff has to be numeric and more than current cutoff";
  const std::string more = "Additional cutoff has to be more than current cutoff";
  const std::pair<const char *, std::string> cases[] = {{"abc", numeric}, {"15", more}, {"14,9", more}, {"15.01", ""}};
  for (const auto &[text, message] : cases)
    EXPECT_EQ(QQ_additional_cutoff_refused(text, 15), message) << text;
  net_fixture f({.n_clones = 6, .bands_in_clone = 6});
  f.signif.net() = triangle_with_tail();
  class_clone_net_signif::revision_summary summary;
  EXPECT_FALSE(f.signif.revise_connections(f.rule, {true, true, 1, "15", f.folder / "net.ORBns"}, summary));
  EXPECT_EQ(f.record.messages, std::vector<std::string>{more});
  EXPECT_TRUE(std::filesystem::is_empty(f.folder));
  f.answer_always("max rank connections (min=1, max=50)", "77"); // out of range: 1 stays
  ASSERT_TRUE(f.signif.revise_connections(f.rule, {true, false, 0, "", f.folder / "net.ORBns"}, summary));
  EXPECT_EQ(summary.n_q_overlaps, 2);
  // The proposal is 25: Q-clones are the same as with that cutoff, and others than with a lower one.
  const auto n_Q_clones = [&](const std::string &additional) {
    f.signif.net() = triangle_with_tail();
    EXPECT_TRUE(f.signif.revise_connections(f.rule, {false, true, 2, additional, f.folder / "net.ORBns"}, summary));
    return summary.n_q_clones;
  };
  EXPECT_EQ(n_Q_clones(""), n_Q_clones("25"));
  EXPECT_NE(n_Q_clones(""), n_Q_clones("16"));
  EXPECT_EQ(net_noQQ_file_name(f.rule, 25), "net_signif_noQQ_15_25.ORBns");
  EXPECT_EQ(net_signif_file_name(f.rule), "net_signif_Sulston_1988_15.00.ORBns");
}

TEST(revision, tells_how_far_it_is_every_hundred_records_and_clones) {
  net_fixture f({.n_clones = 230});
  class_net path; // all 458 records are Q
  path.inicializate_net(230, 458);
  for (vertex_number v = 1; v <= 230; ++v) {
    path.add_vertex_fast(0);
    for (const vertex_number w : {v - 1, v + 1})
      if (w >= 1 && w <= 230)
        path.add_edge_fast(v, w, 20, 0, 0);
  }
  path.finish_of_adding();
  path.test_neighbours_sorted();
  class_net marked;
  std::int32_t n_Q = 0;
  f.signif.identify_all_Q_connections(path, 1, marked, -1, false, {}, n_Q);
  f.signif.identify_all_Q_clones(path, 1, {}, marked, -1, false, {}, {}, n_Q);
  std::vector<std::string> shown;
  for (const std::string &text : f.record.panels)
    if (text.starts_with("3: ") && text.find(" of ") != std::string::npos)
      shown.push_back(text.substr(3));
  EXPECT_EQ(shown, (std::vector<std::string>{"100 of 458, nQ=100", "200 of 458, nQ=200", "300 of 458, nQ=300",
                                             "400 of 458, nQ=400", "100 of 230", "200 of 230"}));
  EXPECT_EQ(f.progress, (std::vector<std::pair<std::int64_t, std::int64_t>>{
                            {100, 458}, {200, 458}, {300, 458}, {400, 458}, {100, 230}, {200, 230}}));
}

// Each vertex of a line is joined with the 120 before and behind it, so that a ball of rank 50 holds all of them.
class_net wide_line(std::int32_t n) {
  class_net net;
  net.inicializate_net(n, std::int64_t{n} * 240);
  for (vertex_number v = 1; v <= n; ++v) {
    net.add_vertex_fast(0);
    for (vertex_number w = std::max(1, v - 120); w <= std::min(n, v + 120); ++w)
      if (w != v)
        net.add_edge_fast(v, w, 40, 0, 0);
  }
  net.finish_of_adding();
  net.test_neighbours_sorted();
  return net;
}

// The events behind a yield are seen while a block is judged, not only between blocks.
TEST(revision, a_stop_within_a_block_leaves_nothing) {
  net_fixture f({.n_clones = 900, .bands_in_clone = 4});
  f.settings.threads = 1;        // half a second of work
  int n_yields = 0, stop_at = 0; // 0: never
  front_end stopping = null_front_end();
  stopping.yield = [&] { return ++n_yields == stop_at; };
  process_frame stopped(stopping);
  metric_context context{stopped, f.settings, f.database, f.usable_values, f.table};
  class_clone_net_signif signif(context);
  const auto revised = [&](const class_net &net) {
    std::filesystem::remove_all(f.folder);
    create_folder(f.folder);
    signif.net() = net;
    n_yields = 0;
    class_clone_net_signif::revision_summary summary;
    return signif.revise_connections(f.rule, {false, true, 50, "16", f.folder / "net.ORBns"}, summary);
  };
  class_net empty; // no work between the yields: as many as come anyhow
  empty.inicializate_net(900, 0);
  for (int v = 1; v <= 900; ++v)
    empty.add_vertex_fast(0);
  empty.finish_of_adding();
  empty.test_neighbours_sorted();
  EXPECT_TRUE(revised(empty));
  stop_at = n_yields + 2; // so that two of them come from the work on the block alone
  EXPECT_FALSE(revised(wide_line(900)));
  EXPECT_TRUE(std::filesystem::is_empty(f.folder));
  EXPECT_EQ(signif.net().number_of_edges_get(), wide_line(900).number_of_edges_get());
}

TEST(revision, that_cannot_be_saved_leaves_the_net_as_it_was) {
  net_fixture f({.n_clones = 6, .bands_in_clone = 6});
  const std::string before = f.native_bytes(triangle_with_tail());
  create_folder(f.folder / "net.ORBns"); // where the file is to go
  for (const bool q_overlaps : {true, false}) {
    f.signif.net() = triangle_with_tail();
    class_clone_net_signif::revision_summary summary;
    EXPECT_THROW(f.signif.revise_connections(f.rule, {q_overlaps, true, 2, "16", f.folder / "net.ORBns"}, summary),
                 file_error);
    EXPECT_EQ(summary.n_q_overlaps + summary.n_q_clones, 2);
    EXPECT_TRUE(f.native_bytes(f.signif.net()) == before);
  }
}

} // namespace
} // namespace orb
