#include "viewer/elongation_form.h"
#include "viewer/net_history.h"
#include "viewer_fixture.h"

namespace orb_test {

namespace {

std::string text_of(const class_net_elng &net) {
  std::string text = net.net_name_get();
  for (const node_elng &node : net.nodes().subspan(1))
    text += "," + node.caption;
  return text;
}

// The same with a plain list of texts: `at` is shown, what stands behind it can be redone.
struct plain_history {
  std::vector<std::string> list{""};
  std::size_t at = 0;
  bool can_undo = false;
  void store() {
    list.resize(at + 1);
    list.push_back(list[at]);
    if (++at == 5) {
      list.erase(list.begin());
      --at;
    }
    can_undo = true;
  }
  void undo() {
    if (!can_undo || at == 0)
      return;
    if (--at > 0)
      return;
    list.insert(list.begin(), list[0]); // the oldest one stays while its copy is worked on
    list.resize(std::min<std::size_t>(list.size(), 5));
    at = 1;
    can_undo = false;
  }
  void redo() {
    if (at + 1 < list.size()) {
      ++at;
      can_undo = true;
    }
  }
};

TEST(net_history, against_a_list_of_whole_copies) {
  random_source chance(5);
  for (int round = 0; round < 40; ++round) {
    net_history history;
    plain_history plain;
    bool redo_is_left = false;
    for (int step = 0; step < 60; ++step) {
      const std::int32_t action = chance.number_up_to(7);
      if (action <= 2) { // a change, stored or pending
        std::vector<node_elng> nodes(static_cast<std::size_t>(chance.number_up_to(4)));
        history.open().contents_set(std::to_string(step), nodes, std::vector<edge_elng>(1), true);
        plain.list[plain.at] = text_of(history.open());
        history.change_is_pending_set();
        plain.can_undo = true;
        EXPECT_TRUE(history.do_is_enabled());
      }
      if (action == 1 || action == 3) {
        const bool pending = history.is_change_pending();
        EXPECT_EQ(history.store_pending(), pending);
        if (pending)
          plain.store();
      } else if (action == 4 || action == 5) {
        history.undo();
        plain.undo();
      } else if (action >= 6) {
        history.redo();
        plain.redo();
      }
      redo_is_left = plain.at + 1 < plain.list.size();
      ASSERT_EQ(text_of(history.open()), plain.list[plain.at]) << round << " " << step;
      ASSERT_EQ(history.undo_is_enabled() && history.n_Undo_get() > 0, plain.can_undo && plain.at > 0);
      ASSERT_EQ(history.redo_is_enabled(), redo_is_left) << round << " " << step;
    }
  }
}

TEST(net_history, four_steps_back_and_three_forward) {
  net_history history;
  history.begin_here();
  EXPECT_FALSE(history.undo_is_enabled() || history.do_is_enabled());
  for (const char *name : {"A", "B", "C", "D"}) {
    history.open().net_name_set(name);
    history.store_net_snapshot();
  }
  EXPECT_EQ(history.n_Undo_get(), 4);
  int n_back = 0, n_forward = 0;
  while (history.undo())
    ++n_back;
  EXPECT_EQ(history.open().net_name_get(), "A");
  EXPECT_EQ(history.n_Undo_get(), 1);
  while (history.redo())
    ++n_forward;
  EXPECT_EQ(history.open().net_name_get(), "D");
  EXPECT_EQ(n_back * 10 + n_forward, 43);
  history.undo();
  history.store_net_snapshot();
  EXPECT_FALSE(history.redo()) << "gone after a store";
}

TEST(form_netElng, first_values_and_rules_of_ok) {
  viewer_session session;
  form_netElng form;
  form.start(session.sources, elongation_mode::elongate_first);
  const double least = session.signif.net().minimal_edge_value_get();
  EXPECT_EQ(form.title + form.t_Cutoff + form.l_CutoffNet, "Add clones6.006.00");
  EXPECT_TRUE(form.ch_useNet && form.ch_useNet_is_enabled && !form.rank_is_shown && least == 6);
  const struct {
    std::string rank, cutoff, message;
  } refused[] = {{"x", "1", "Rank should be numerical!"},
                 {"-1", "1", "Rank should be positive!"},
                 {"0", "", "Cutoff should be numerical!"}};
  for (const auto &one : refused) {
    form.t_rank = one.rank;
    form.t_Cutoff = one.cutoff;
    EXPECT_FALSE(form.ok(session.frame));
    EXPECT_EQ(session.last_message(), one.message);
  }
  const std::string liberal = "Cutoff value 5.50 < 6.00 = Minimal value on net!\r\nAre you sure want to consider "
                              "overlaps only from the loaded net?";
  session.answer(liberal, "no");
  session.answer(liberal, "yes");
  form.t_rank = "0";
  form.t_Cutoff = "5,5";
  EXPECT_FALSE(form.ok(session.frame));
  EXPECT_TRUE(form.ok(session.frame) && form.ok(session.frame)) << "asked once";
  EXPECT_EQ(session.record.questions.size(), 2U);
  EXPECT_TRUE(form.cutoff == 5.5 && form.rank == 0 && form.use_net);
  form.ch_useNet = form.use_net = false;
  form.start(session.sources, elongation_mode::elongate_second, "n(0)=1", 3);
  EXPECT_TRUE(form.rank_is_shown && !form.cutoff_is_shown && form.t_rank == "3" && form.l_ranks == "n(0)=1");
  EXPECT_TRUE(form.ok(session.frame) && form.rank == 1 && form.cutoff == 5.5);
  EXPECT_EQ(session.last_message(), "No net, hence only rank=1 will be used!");
  session.sources.rule.cutoff = 0.0061;
  session.signif.net() = class_net();
  form.start(session.sources, elongation_mode::net_of_all);
  EXPECT_EQ(form.title + form.t_Cutoff + form.l_CutoffNet, "Create net0.006No");
  EXPECT_EQ(session.last_message(), "NB! No calculated net of significant overlaps will be used!");
}

} // namespace

} // namespace orb_test
