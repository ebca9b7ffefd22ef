// The ladder of cutoffs against the definition of its nets, the form of the revision's settings, a clone's
// surroundings.
#include <gtest/gtest.h>

#include <set>

#include "net/class_clone_net_clust.h"
#include "net/clone_net_questions.h"
#include "net/form_setting_QQ.h"
#include "support/net_fixture.h"
#include "support/plain_revision.h"

namespace orb {
namespace {

using edge_set = std::set<std::pair<vertex_number, vertex_number>>; // directed

edge_set edges_of(const class_net &net) {
  edge_set edges;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    for (const net_edge &edge : net.edges_of_vertex(v))
      edges.insert({v, edge.neighbour});
  return edges;
}

class_net kept_edges(const class_net &net, const edge_set &kept) {
  std::vector<plain_edge> edges;
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    for (const net_edge &edge : net.edges_of_vertex(v))
      if (v < edge.neighbour && kept.count({v, edge.neighbour}))
        edges.push_back({v, edge.neighbour, edge.value});
  return net_of_edges(net.number_of_vertices_get(), edges);
}

class_net random_net(random_source &chance, std::int32_t n) {
  std::vector<plain_edge> edges;
  for (vertex_number a = 1; a <= n; ++a)
    for (vertex_number b = a + 1; b <= n; ++b)
      if (chance.uniform() < (b - a <= 4 ? 0.7 : 0.02))
        edges.push_back({a, b, 15.0 + chance.number_up_to(20)});
  return net_of_edges(n, edges);
}

struct plain_step {
  edge_set type, no_Q_overlaps, noQQ;
  std::set<vertex_number> Q_clones;
};

plain_step step_of(const class_net &net, double cutoff, int r, double walk_cutoff) {
  plain_step step;
  for (const auto &[a, b] : edges_of(net)) {
    double value = 0;
    std::int16_t index1 = 0, code = 0;
    if (net.overlap_of_pair(a, b, value, index1, code) && value >= cutoff)
      step.type.insert({a, b});
  }
  const class_net type = kept_edges(net, step.type);
  for (const auto &[a, b] : step.type)
    if (!plain_revision::is_Q_overlap(type, a, b, r))
      step.no_Q_overlaps.insert({a, b});
  const class_net supported = kept_edges(net, step.no_Q_overlaps);
  for (vertex_number v = 1; v <= net.number_of_vertices_get(); ++v)
    if (plain_revision::is_Q_clone(supported, v, r, walk_cutoff))
      step.Q_clones.insert(v);
  for (const auto &[a, b] : step.no_Q_overlaps)
    if (!step.Q_clones.count(a) && !step.Q_clones.count(b))
      step.noQQ.insert({a, b});
  return step;
}

edge_set edges_of_file(net_fixture &f, const std::string &name) {
  class_net net;
  bool ok = false;
  net.read_net_type(f.frame, f.folder / name, ok, -1);
  EXPECT_TRUE(ok) << name;
  return edges_of(net);
}

TEST(cutoff_ladder, nets_are_those_of_the_definition_at_every_step) {
  const char *cutoffs[] = {"16.00", "20.50", "25.00", "29.50"};
  random_source chance(11);
  bool comulation_matters = false;
  for (int run = 0; run < 6; ++run) {
    net_fixture f({.n_clones = 40, .bands_in_clone = 4});
    const int r = 1 + run % 2;
    const std::optional<double> additional = run % 3 == 0 ? std::optional<double>(22) : std::nullopt;
    f.signif.net() = random_net(chance, 40);
    const class_net net = f.signif.net();
    class_clone_net_clust ladder;
    ASSERT_TRUE(create_all_nets_run(f.signif, {3, 16, 4.5, r, additional}, ladder));
    ASSERT_EQ(ladder.number_of_cutoff_steps_get(), 3);
    edge_set comulated;
    std::set<vertex_number> Q_at_any;
    for (int i = 0; i <= 3; ++i) {
      const plain_step step = step_of(net, ladder.current_minimal_value_get(i), r, additional.value_or(0));
      Q_at_any.insert(step.Q_clones.begin(), step.Q_clones.end());
      edge_set both;
      for (const auto &edge : step.noQQ)
        if (i == 0 || comulated.count(edge))
          both.insert(edge);
      comulated = both;
      comulation_matters = comulation_matters || both != step.noQQ;
      const edge_set *expected[] = {&step.type, &step.noQQ, &comulated};
      for (int kind = 1; kind <= 3; ++kind) {
        class_net made;
        ASSERT_TRUE(ladder.one_of_net_get(i, kind, made));
        EXPECT_EQ(edges_of(made), *expected[kind - 1]) << "step " << i << ", kind " << kind;
        for (vertex_number v = 1; v <= 40; ++v) {
          const bool is_Q = kind == 2 ? step.Q_clones.count(v) > 0 : kind == 3 && Q_at_any.count(v) > 0;
          EXPECT_EQ(made.index_of_vertex_get(v), is_Q ? -1 : 0) << "step " << i << ", kind " << kind << ": " << v;
        }
      }
      const std::string end = std::string(cutoffs[i]) + ".txt";
      EXPECT_EQ(edges_of_file(f, "net_type_" + end), step.type);
      EXPECT_EQ(edges_of_file(f, "net_type_noQconnections_" + end), step.no_Q_overlaps);
      EXPECT_EQ(edges_of_file(f, "net_type_noQQ_" + end), step.noQQ);
      if (i > 0) {
        EXPECT_EQ(edges_of_file(f, "net_type_noQQ_comul_" + end), comulated);
      }
    }
    EXPECT_FALSE(std::filesystem::exists(f.folder / "net_type_noQQ_comul_16.00.txt"));
    EXPECT_EQ(ladder.files_written().size(), 15U);
    EXPECT_EQ(edges_of(f.signif.net()), edges_of(net)); // the current net stays
  }
  EXPECT_TRUE(comulation_matters);
}

TEST(cutoff_ladder, asks_and_keeps_defaults) {
  net_fixture f({.n_clones = 6, .bands_in_clone = 6});
  class_clone_net_clust ladder;
  f.answer_always("N_cutoff_steps", "0");
  f.answer_always("minimal_cutoff", "-1");
  f.answer_always("cutoff_step", "much");
  ladder.start(f.frame, {});
  EXPECT_EQ(f.record.questions, (std::vector<std::string>{"N_cutoff_steps", "minimal_cutoff", "cutoff_step"}));
  EXPECT_EQ(ladder.number_of_cutoff_steps_get(), 4);
  EXPECT_EQ(ladder.current_minimal_value_get(2), 28);
  ladder.start(f.frame, {1e9, 0, 0.5, 1, {}});
  EXPECT_EQ(ladder.number_of_cutoff_steps_get(), 4);
  EXPECT_EQ(ladder.current_minimal_value_get(4), 2);
  class_net net;
  EXPECT_FALSE(ladder.one_of_net_get(5, 1, net));
  EXPECT_FALSE(ladder.one_of_net_get(0, 4, net));
  f.signif.net() = net_of_edges(6, {{1, 2}, {2, 3}, {1, 3}});
  ASSERT_TRUE(ladder.create_nets(f.signif.net(), f.signif, 0));
  EXPECT_EQ(f.record.questions.back(), "max rank (min=1, max=50)");
  EXPECT_EQ(std::count(f.record.panels.begin(), f.record.panels.end(), "4: Removing QQ :2.00"), 1);
  EXPECT_EQ(std::count(f.record.panels.begin(), f.record.panels.end(), "4: Removing QQ :ok"), 1);
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(create_all_nets_run(f.signif, {1, 0, 1, 1, {}}, ladder));
  EXPECT_TRUE(f.frame.was_stopped());
}

TEST(revision_form, stays_open_until_it_has_a_cutoff_and_a_file) {
  net_fixture f({.n_clones = 6, .bands_in_clone = 6});
  FrmSettingQQ form;
  form.show(15.5);
  EXPECT_EQ(form.t_cur_cutoff, "15.5");
  EXPECT_EQ(form.t_min_cutoff, "25.5");
  form.t_min_cutoff = "x";
  EXPECT_FALSE(form.c_ok(f.frame));
  form.t_min_cutoff = "15.5";
  EXPECT_FALSE(form.c_ok(f.frame));
  EXPECT_EQ(f.record.messages,
            (std::vector<std::string>{"Additional cutoff has to be numeric and more than current cutoff",
                                      "Additional cutoff has to be more than current cutoff"}));
  form.t_min_cutoff = "16";
  EXPECT_FALSE(form.c_ok(f.frame)); // no file
  EXPECT_EQ(f.record.questions.back(),
            "Resulted net of significant clone overlaps (without Qs) save to... (in the ORB-specific format)");
  EXPECT_TRUE(form.is_open && !form.QQ_use_additional_cutoff);
  EXPECT_TRUE(form.c_ok(f.frame, f.folder / "a.ORBns"));
  EXPECT_TRUE(!form.is_open && form.QQ_use_additional_cutoff && form.QQ_additional_cutoff == 16);
  form.show(15.5);
  EXPECT_FALSE(form.QQ_use_additional_cutoff);
}

TEST(clone_questions, pieces_around_a_clone) {
  net_fixture f({.n_clones = 6, .bands_in_clone = 6});
  f.signif.net() = net_of_edges(6, {{1, 2}, {1, 3}, {2, 3}, {3, 4}, {4, 5}});
  clone_net_characteristics found;
  ASSERT_TRUE(clone_net_characteristics_run(f.signif, 3, 1, found));
  EXPECT_EQ(found.n_in_rank[1], 3);
  ASSERT_TRUE(clone_net_characteristics_run(f.signif, 6, 1, found)); // without neighbours
  EXPECT_FALSE(clone_net_characteristics_run(f.signif, 7, 1, found));
  EXPECT_EQ(f.record.messages, (std::vector<std::string>{"N_clusters = 2", "N_clusters = 0"}));
}

} // namespace
} // namespace orb
