#include <algorithm>

#include "viewer/supercontigs.h"
#include "viewer_fixture.h"

namespace orb_test {

namespace {

struct supercontigs : testing::Test, viewer_session {
  supercontig_result result;
  std::shared_ptr<class_FPCto_import> contigs = std::make_shared<class_FPCto_import>(frame, settings, database);

  supercontigs() {
    sources.cluster_table = nullptr;
    contigs->clear_all(60);
    contigs->add_new_cluster({1, 2}, "ctg1", "", false);
    contigs->add_new_cluster({3}, "ctg2", "", false);
    contigs->add_new_cluster({7, 8}, "ctg3", "", false);
    database.contigs_set(contigs);
    database.contigs_are_specified_set(true);
  }
  std::string net_of(const std::vector<std::string> &captions, const std::string &edges) const {
    std::string text = "*Network n\n*Vertices " + std::to_string(captions.size()) + "\n";
    for (std::size_t i = 0; i < captions.size(); ++i)
      text += std::to_string(i + 1) + " \"" + captions[i] + "\"\n";
    return text + edges;
  }
  bool run() {
    record.messages.clear();
    return read_nets_for_supercontigs_and_create_new_net(sources, {folder / "nets", folder / "made.ORBns"}, result);
  }
  // Overlaps as "a-b=value", those with a lower number first only.
  std::vector<std::string> overlaps() const {
    std::vector<std::string> all;
    for (vertex_number a = 1; a <= 60; ++a)
      for (const net_edge &edge : signif.net().edges_of_vertex(a)) {
        double value = 0;
        std::int16_t mark = 0, code = 0;
        EXPECT_TRUE(signif.net().overlap_of_pair(edge.neighbour, a, value, mark, code) && value == edge.value);
        if (edge.neighbour > a)
          all.push_back(std::to_string(a) + "-" + std::to_string(edge.neighbour) + "=" +
                        std::to_string(static_cast<int>(edge.value)));
      }
    return all;
  }
};

TEST_F(supercontigs, take_the_place_of_what_their_clones_had) {
  std::vector<std::string> wanted;
  for (const std::string &overlap : overlaps()) {
    const int a = std::stoi(overlap), b = std::stoi(overlap.substr(overlap.find('-') + 1));
    if (!((a >= 1 && a <= 4) || (b >= 1 && b <= 4)))
      wanted.push_back(overlap);
  }
  for (const char *overlap : {"1-2=44", "2-4=9", "3-4=7"})
    wanted.push_back(overlap);
  std::sort(wanted.begin(), wanted.end());
  write("nets/big.net", net_of({name(4), name(1), name(2)}, "*Edges 3\n2 3 1 l \"44.00\"\n1 3 9\n3 1 8\n"));
  write("nets/a.net", net_of({name(3)}, ""));
  write("nets/more.net", "");
  EXPECT_FALSE(run());
  EXPECT_EQ(last_message(), "Problem with file!: " + (folder / "nets" / "more.net").string());
  std::filesystem::remove(folder / "nets" / "more.net");
  write("nets/big.net",
        net_of({name(4), name(1), name(2), name(3)}, "*Edges 5\n2 3 1 l \"44.00\"\n1 3 9\n3 1 8\n4 1 7\n1 1 5\n"));
  std::filesystem::remove(folder / "nets" / "a.net");
  write("nets/big.net.run.json", "the record of a drawing");
  answer("Need to change current clusering?", "yes");
  ASSERT_TRUE(run());
  auto made = overlaps();
  std::sort(made.begin(), made.end());
  EXPECT_EQ(made, wanted);
  EXPECT_EQ(bytes_of(result.folder_of_lists / "big_4.txt"),
            name(1) + "\r\n" + name(2) + "\r\n" + name(3) + "\r\n" + name(4) + "\r\n");
  EXPECT_TRUE(result.contigs_changed && std::filesystem::exists(folder / "made.ORBns"));
  EXPECT_EQ(contigs->name_of_cluster_get(contigs->clone_in_cluster_get(2)), "big");
  EXPECT_FALSE(contigs->cluster_is_in_use_get(1));
  EXPECT_TRUE(contigs->cluster_is_in_use_get(3));
}

TEST_F(supercontigs, what_does_not_fit_changes_nothing) {
  const auto before = overlaps();
  const std::string stop = "\rOperation will stop.";
  const struct {
    std::vector<std::pair<std::string, std::vector<std::string>>> files;
    std::string message;
  } cases[] = {
      {{{"a.txt", {name(1)}}}, "File without extention .net found!: a.txt"},
      {{{"a.net", {name(1), name(2), name(1) + "[x]"}}},
       "Clone " + name(1) + " is presented at least twice in SuperCtg a.net ?!" + stop},
      {{{"a.net", {name(1), name(2)}}, {"b.net", {name(2)}}},
       "Clone " + name(2) + " is presented at least in two different in SuperCtgs:\ra and b ?!\r(Contig: ctg1)." +
           stop},
      {{{"a.net", {name(1), name(5)}}},
       "Clone " + name(2) +
           " is not found in supercontigs,\rbut it is presented in contig ctg1\r"
           "overlapping with supercontig a." +
           stop},
      {{{"a.net", {"nobody"}}}, "Vertex nobody of SuperCtg a.net is no clone of the library." + stop},
  };
  for (const auto &one : cases) {
    std::filesystem::remove_all(folder / "nets");
    for (const auto &[file, captions] : one.files)
      write("nets/" + file, net_of(captions, ""));
    EXPECT_FALSE(run());
    EXPECT_EQ(last_message(), one.message);
  }
  std::filesystem::remove(folder / "nets" / "a.net");
  EXPECT_FALSE(run());
  EXPECT_EQ(last_message(), "Folder is empty!");
  EXPECT_EQ(overlaps(), before);
  EXPECT_FALSE(std::filesystem::exists(folder / "made.ORBns"));
}

} // namespace

} // namespace orb_test
