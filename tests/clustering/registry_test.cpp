#include <gtest/gtest.h>

#include <map>

#include "database/class_markers.h"
#include "support/clustering_helpers.h"

namespace {

using namespace orb_test;
using texts = std::vector<std::string>;

class registry : public testing::Test {
protected:
  library lib_{12};
  class_FPCto_import contigs_{lib_.frame, lib_.settings, lib_.database};
  void SetUp() override { contigs_.clear_all_run(0, false); }

  number_list in_use() const { return contigs_.current_list_of_clusters_in_use_get(); }
  cluster_id id_of(const std::string &name) const {
    cluster_id id = 0;
    bool not_found = false;
    contigs_.search_for_cluster(name, id, not_found);
    EXPECT_EQ(not_found, id == 0);
    return id;
  }
};

TEST_F(registry, starts_empty_with_a_capacity) {
  for (const auto &[factor, capacity] : std::map<int, int>{{0, 65}, {4, 65}, {5, 65}, {13, 161}}) {
    contigs_.clear_all_run(factor, false);
    EXPECT_EQ(contigs_.n_list_of_all_cluster_names_max_get(), capacity);
  }
  EXPECT_EQ(contigs_.n_list_of_all_cluster_names_get(), 0);
  EXPECT_EQ(contigs_.clone_information_get(3).number_of_bands, 13);
  EXPECT_EQ(contigs_.clone_information_get(2).first_band_adress, lib_.database.first_band_adress_get(2));
  contigs_.clear_all_and_create_cluster_AllDB(13, "", "");
  EXPECT_TRUE(in_use().empty());
  contigs_.clear_all_and_create_cluster_AllDB(13, "cl_1", "all");
  EXPECT_EQ(in_use(), number_list{1});
  EXPECT_EQ(contigs_.n_clones_in_cluster_get(1), 12);
  EXPECT_EQ(contigs_.cluster_information_get(1).FPC_name, "all");
}

TEST_F(registry, names_and_clones_are_guarded) {
  EXPECT_TRUE(contigs_.add_new_cluster({1, 2}, "a", "long a", true));
  EXPECT_FALSE(contigs_.add_new_cluster({3}, "a", "", false));
  EXPECT_FALSE(contigs_.add_new_cluster({4, 2}, "b", "", true));
  EXPECT_TRUE(contigs_.add_new_cluster({4, 2}, "b", "", false)); // the later cluster has the clone
  EXPECT_EQ(contigs_.clone_in_cluster_get(2), 2);
  EXPECT_EQ(contigs_.clone_in_cluster_get(1), 1);
  contigs_.cluster_off_clusterName("b");
  EXPECT_TRUE(contigs_.add_new_cluster({4}, "c", "", true)); // free again
  EXPECT_EQ(id_of("c"), 3);
  EXPECT_EQ(id_of("d"), 0);
  EXPECT_THROW(contigs_.add_new_cluster({13}, "e", "", false), program_end);
  EXPECT_EQ(lib_.record.messages,
            (texts{"Cluster with name a already exist!", "Clone 2 C2 is already situated in cluster a",
                   "Clone number must be from 1 to 12, but it is 13"}));
  EXPECT_EQ(contigs_.n_list_of_all_cluster_names_get(), 3);
}

TEST_F(registry, off_messages) {
  contigs_.cluster_off_clusterName("a");
  contigs_.add_new_cluster({1}, "a", "", false);
  contigs_.cluster_off_clusterName("a");
  contigs_.cluster_off_clusterName("a");
  contigs_.add_new_cluster({2}, "b", "", false);
  contigs_.cluster_off_clusterName("a");
  EXPECT_EQ(in_use(), number_list{2});
  EXPECT_EQ(lib_.record.messages, (texts{"Contig a not found!", "No contigs! Can't OFF contig a",
                                         "NB! Can't OFF contig a that was not ON."}));
  EXPECT_EQ(contigs_.n_clones_in_cluster_get(1), 1);
  EXPECT_EQ(contigs_.clone_in_cluster_get(1), 1);
}

// Batches of additions and switching off, beside plain lists.
TEST_F(registry, agrees_with_plain_lists) {
  random_source chance(31);
  std::vector<cluster_id> on;
  std::vector<std::vector<clone_number>> sets(1);
  for (int step = 0; step < 300; ++step) {
    if (!on.empty() && chance.number_up_to(3) == 1) {
      const auto at = on.begin() + chance.number_up_to(static_cast<std::int32_t>(on.size())) - 1;
      contigs_.cluster_off_idCluster(*at);
      on.erase(at);
    } else {
      number_list list;
      for (clone_number clone = 1; clone <= 12; ++clone)
        if (chance.number_up_to(3) == 1)
          list.add(clone);
      contigs_.add_new_cluster(list, "c" + std::to_string(sets.size()), "", false);
      on.push_back(static_cast<cluster_id>(sets.size()));
      sets.emplace_back(list.members().begin(), list.members().end());
    }
    contigs_.add_new_cluster_finish();
    cluster_id id = 0;
    contigs_.current_list_of_clusters_in_use_get(0, id);
    ASSERT_EQ(id, static_cast<cluster_id>(on.size()));
    if (step % 7 != 0)
      continue;
    ASSERT_EQ(in_use(), number_list(on));
    for (clone_number clone = 1; clone <= 12; ++clone) {
      number_list wanted, got;
      for (std::size_t s = 1; s < sets.size(); ++s)
        if (std::count(sets[s].begin(), sets[s].end(), clone) > 0)
          wanted.add(static_cast<cluster_id>(s));
      contigs_.list_of_clusters_of_clone_get(clone, got);
      ASSERT_EQ(got, wanted);
      ASSERT_EQ(contigs_.clone_in_cluster_get(clone), wanted.empty() ? 0 : wanted(wanted.count()));
    }
  }
  for (std::size_t s = 1; s < sets.size(); ++s) {
    number_list got;
    contigs_.list_of_clones_get(static_cast<cluster_id>(s), got);
    ASSERT_EQ(got, number_list(sets[s]));
  }
}

TEST_F(registry, coordinates) {
  contigs_.add_new_cluster({5, 2}, "a", "", false);
  EXPECT_EQ(contigs_.length_of_cluster_bands_get(1), 0);
  const std::vector<std::int32_t> left{7, 3}, right{20, 15};
  contigs_.clone_information_from_ORB_set({5, 2}, left, right);
  contigs_.make_min_and_max_coor_for_cluster(1);
  EXPECT_EQ(contigs_.clone_coor_left(2), 3);
  EXPECT_EQ(contigs_.length_of_cluster_bands_get(1), 18);
  contigs_.clone_coordinates_set(2, -4, 15);
  contigs_.make_min_and_max_coor_for_cluster(1);
  EXPECT_EQ(contigs_.length_of_cluster_bands_get(1), 25);
  contigs_.list_of_clones_add_to_black_list({4, 9});
  number_list black;
  contigs_.list_of_clones_black_list_get(black);
  EXPECT_EQ(black, (number_list{4, 9}));
}

fpc_clone_record fpc_clone(const std::string &name, const std::string &map_name, double left, double right,
                           std::vector<std::string> markers = {}) {
  fpc_clone_record record;
  record.name = name;
  record.map_name = map_name;
  record.coor_left = left;
  record.coor_right = right;
  record.markers = std::move(markers);
  record.creation_date = 40179.25;
  return record;
}

TEST_F(registry, clusters_from_an_assembly) {
  lib_.database.markers().redim_private_arrays(12, 5, 5);
  contigs_.clone_information_from_fpc_file(fpc_clone("C3", "ctg7", 10, 20, {"m1", "m2"}), false,
                                           lib_.database.markers());
  contigs_.clone_information_from_fpc_file(fpc_clone("C1", "ctg7", 5, 15, {"m2"}), false, lib_.database.markers());
  contigs_.clone_information_from_fpc_file(fpc_clone("C2", "ctg2", 1, 9, {"m2"}), false, lib_.database.markers());
  contigs_.clone_information_from_fpc_file(fpc_clone("unknown", "ctg2", 0, 30), false, lib_.database.markers());
  contigs_.clone_information_from_fpc_file(fpc_clone("C4", "", 0, 0), false, lib_.database.markers());
  EXPECT_EQ(contigs_.length_of_cluster_bands_get(1), 16);
  EXPECT_EQ(contigs_.length_of_cluster_bands_get(2), 31);
  EXPECT_EQ(contigs_.clone_information_get(3).creation_date, 40179.25);
  EXPECT_THROW(contigs_.clone_information_from_fpc_file(fpc_clone("C1", "ctg2", 0, 0), false, lib_.database.markers()),
               program_end);
  EXPECT_EQ(lib_.record.messages.back(), "Contradiction in contig name for clone C1: ctg7=/=ctg2");
  lib_.record.messages.clear();

  class_FPCto_import together = contigs_;
  contigs_.read_clusterization_from_FPC_finish_to_add_clusters(lib_.database.markers());
  EXPECT_EQ(lib_.record.messages,
            (texts{"In total, 9 clones not in FPC contigs!", "Number of problematic markers is 1"}));
  EXPECT_EQ(in_use(), number_list::range(1, 11));
  EXPECT_EQ(contigs_.name_of_cluster_get(3), "ctg_C4");
  number_list clones;
  contigs_.list_of_clones_get(1, clones);
  EXPECT_EQ(clones, (number_list{1, 3}));
  EXPECT_EQ(contigs_.clustering().number_of_clusters_get(), 3); // the two and the rest
  EXPECT_EQ(contigs_.marker_in_cluster_get(1), 1);

  lib_.settings.singletones = true;
  lib_.answer("In total, 9", "yes");
  together.read_clusterization_from_FPC_finish_to_add_clusters(lib_.database.markers());
  EXPECT_EQ(lib_.record.questions.back(), "In total, 9 clones not in FPC contigs!\r\nDo you want to put these clones "
                                          "into set of singletones (cluster #3)?");
  EXPECT_EQ(together.name_of_cluster_get(3), "Singletones");
  EXPECT_EQ(together.n_clones_in_cluster_get(3), 9);
}

TEST_F(registry, folder_of_lists) {
  lib_.write("lists/b.txt", "C3\nC1\n");
  lib_.write("lists/a.txt", "C2, C3");
  lib_.answer("Click any file from directory", (lib_.folder / "lists/b.txt").string());
  lib_.answer("Need to test?", "yes");
  contigs_.read_clustering_from_folder_of_files_run();
  EXPECT_EQ(in_use(), number_list{1});
  EXPECT_EQ(contigs_.name_of_cluster_get(1), "a");
  EXPECT_EQ(lib_.record.messages.back(), "Clustering is loaded");
  contigs_.clear_all_run(0, false);
  contigs_.read_clustering_from_folder_of_files(lib_.folder / "lists");
  EXPECT_EQ(in_use(), (number_list{1, 2}));
  EXPECT_EQ(contigs_.clone_in_cluster_get(3), 2);
}

} // namespace
