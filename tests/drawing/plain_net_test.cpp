// Nets drawn as they are: exact files, and the net with clones placed into one vertex.
#include <gtest/gtest.h>

#include "drawing/plain_net_drawing.h"
#include "support/net_fixture.h"

namespace orb {
namespace {

std::string vertex(int k, const std::string &caption) {
  return std::to_string(k) + " \"" + caption + "\" sh ellipse x_fact 1 y_fact 1 ic Blue bc Black\r\n";
}
std::string edge(const std::string &ends, const std::string &label) {
  return ends + " 1 w 1 c Black p Solid l \"" + label + "\"\r\n";
}

TEST(plain_drawing, each_pair_once_whichever_end_tells_it) {
  net_fixture f({.n_clones = 3, .bands_in_clone = 6});
  class_net net;
  net.inicializate_net(3, 3);
  net.add_vertex_fast(0);
  net.add_edge_fast(1, 2, 17.26, 0, 1);
  net.add_vertex_fast(0);
  net.add_edge_fast(2, 1, 17.26, 0, 2);
  net.add_vertex_fast(0);
  net.add_edge_fast(3, 2, 20, 0, 0); // without its mirror
  net.finish_of_adding();
  plain_net_to_pajek(f.frame, net, {"", "a", "b", "c"}, 1, "T", f.folder / "n.net");
  EXPECT_EQ(file_bytes(f.folder / "n.net"), "*Network T\r\n*Vertices 3\r\n" + vertex(1, "a") + vertex(2, "b") +
                                                vertex(3, "c") + "*Arcs 0\r\n*Edges 2\r\n" + edge("1 2", "17.3") +
                                                edge("2 3", "20.0"));
}

struct super_clone_fixture : net_fixture {
  super_clone_options options{folder / "all.txt", folder / "united.txt"};
  std::filesystem::path file;
  super_clone_fixture() : net_fixture({.n_clones = 7, .bands_in_clone = 6}) {
    for (clone_number clone = 1; clone <= 7; ++clone)
      database.name_of_clone_set(clone, "B" + std::to_string(clone));
    database.sort_clones_by_name(frame);
    signif.net() = net_of_edges(7, {{1, 2, 30}, {2, 3, 18}, {2, 4, 21.5}, {3, 4, 25}, {4, 5, 40}, {5, 6, 16}, {1, 7}});
    signif.net_is_loaded_set();
    write("all.txt", "B5\nB4\nB3\nB2\nB1\nB4\nB6\n");
    record = {};
  }
  bool run() { return create_sub_net_list_into_one_vertex_run(signif, {4, 17}, options, file); }
};

// 2, the first of the united, stays as the vertex. 3 joined it directly and by 4, 5 only by 4, 1 only directly: 1 loses
// its overlap. 5-6 is below the cutoff and 7 isn't in the list.
TEST(plain_drawing, clones_placed_into_one_vertex) {
  super_clone_fixture f;
  f.write("united.txt", "B4\nB2\nB7\n");
  ASSERT_TRUE(f.run());
  EXPECT_EQ(f.file, f.folder / "net_SuperClone.net");
  EXPECT_EQ(file_bytes(f.file), "*Network SuperClone\r\n*Vertices 5\r\n" + vertex(1, "B1") + vertex(2, "SuperClone_6") +
                                    vertex(3, "B3") + vertex(4, "B5") + vertex(5, "B6") + "*Arcs 0\r\n*Edges 2\r\n" +
                                    edge("2 3", "25.00") + edge("2 4", "40.00"));
  EXPECT_EQ(f.record.messages.back(), "Clone B7 is not presented in list of all clones in net!");
}

TEST(plain_drawing, lists_are_asked_for_and_refused) {
  super_clone_fixture f;
  f.write("united.txt", "B7\n");
  EXPECT_FALSE(f.run()); // nothing to unite
  EXPECT_FALSE(std::filesystem::exists(f.folder / "net_SuperClone.net"));
  f.options = {};
  EXPECT_FALSE(f.run());
  EXPECT_EQ(f.record.questions.back(), "Open list of all clones in net");
  f.options.file_all = f.folder / "all.txt";
  EXPECT_FALSE(f.run());
  EXPECT_EQ(f.record.questions.back(), "Open list of clones for placing into one vertex");
  f.write("united.txt", "B1\n");
  f.options.file_united = f.folder / "united.txt";
  f.frame.stop_requested_set(true);
  EXPECT_FALSE(f.run());
  EXPECT_FALSE(std::filesystem::exists(f.folder / "net_SuperClone.net"));
}

} // namespace
} // namespace orb
