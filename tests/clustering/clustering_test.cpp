#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "metrics/class_clone_dist_my.h"
#include "net/class_clone_net_signif.h"
#include "support/clustering_helpers.h"

namespace {

using namespace orb_test;
using texts = std::vector<std::string>;

number_list numbers_of(const class_clustering &clustering) {
  number_list numbers;
  for (std::int32_t i = 1; i <= clustering.n_elements_get(); ++i)
    numbers.add(clustering.cluster_number_get(i));
  return numbers;
}

// A clustering of elements with names of their own and these numbers.
class_clustering made(library &lib, const number_list &numbers) {
  class_clustering clustering(lib.frame, lib.settings);
  clustering.elements_are_clones_set(false);
  clustering.clustering_start_n_elements_set(numbers.count());
  for (std::int32_t i = 1; i <= numbers.count(); ++i)
    clustering.name_of_element_set(i, "e" + std::to_string(i));
  clustering.cluster_number_for_all_elements_set(numbers);
  return clustering;
}

TEST(clustering, net_pairs_and_plain_relabelling_agree) {
  random_source chance(23);
  library lib(1);
  for (int round = 0; round < 60; ++round) {
    const std::int32_t n = chance.number_up_to(60);
    std::set<std::pair<std::int32_t, std::int32_t>> pairs;
    for (std::int32_t k = chance.number_up_to(2 * n) - 1; k > 0; --k) {
      const std::int32_t a = chance.number_up_to(n), b = chance.number_up_to(n);
      if (a != b)
        pairs.insert({std::min(a, b), std::max(a, b)});
    }
    // every pair gives its two elements one label, until nothing changes
    number_list plain = number_list::range(1, n);
    for (bool changed = true; changed;) {
      changed = false;
      for (const auto &[a, b] : pairs)
        if (plain(a) != plain(b)) {
          plain(a) = plain(b) = std::min(plain(a), plain(b));
          changed = true;
        }
    }
    std::int32_t n_clusters = 0;
    for (std::int32_t i = 1; i <= n; ++i)
      plain(i) = plain(i) == i ? ++n_clusters : plain(plain(i));

    class_net net;
    net.inicializate_net(n, 0);
    for (std::int32_t i = 1; i <= n; ++i) {
      net.add_vertex_fast(0);
      for (const auto &[a, b] : pairs)
        if (a == i || b == i)
          net.add_edge_fast(i, a + b - i, 20, 0, 0);
    }
    net.finish_of_adding();
    class_clustering fast(lib.frame, lib.settings), slow(lib.frame, lib.settings);
    fast.clustering_based_on_net(net);
    slow.clustering_start_n_elements_set(n);
    slow.clusterization_slow(false, [&](std::int32_t i, std::int32_t j, double &) { return pairs.contains({i, j}); });
    for (const class_clustering *clustering : {&fast, &slow}) {
      ASSERT_EQ(numbers_of(*clustering), plain);
      ASSERT_EQ(clustering->number_of_clusters_get(), n_clusters);
    }
    fast.create_arrays_for_clusters(true, true);
    for (std::int32_t c = 1; c <= n_clusters; ++c) {
      number_list wanted, got;
      for (std::int32_t i = 1; i <= n; ++i)
        if (plain(i) == c)
          wanted.add(i);
      fast.read_from_arrays_for_clusters(c, got);
      ASSERT_EQ(got, wanted);
      ASSERT_EQ(fast.n_elements_in_cluster_get(c), wanted.count());
    }
  }
}

// Clones with the bands of a window that moves along one axis, in random order.
TEST(clustering, single_linkage_through_the_net_equals_the_pair_tests) {
  library lib(40);
  random_source chance(9);
  lib.database.inicalise_database(lib.frame, 40, 0);
  for (clone_number clone = 1; clone <= 40; ++clone) {
    const std::int32_t start = chance.number_up_to(900);
    std::vector<band_value> bands;
    for (std::int32_t i = 0; i < 40; ++i)
      bands.push_back(500 + 40 * (start + i) % 50000);
    std::sort(bands.begin(), bands.end());
    lib.database.ListOfBands_from_real_database_fast_all_bands_set(clone, bands);
    lib.database.name_of_clone_set(clone, "C" + std::to_string(clone));
  }
  lib.database.total_number_of_clones_set(40);
  lib.database.sort_clones_by_name(lib.frame);
  class_usable_values usable_values;
  class_clone_dist_table table;
  metric_context context{lib.frame, lib.settings, lib.database, usable_values, table};
  class_clone_net_signif nets(context,
                              [&] { lib.settings.use_file_with_connections = lib.settings.same_metric_as_net = true; });
  class_clone_dist_my metric(context, &nets.net());
  net_creation_summary summary;
  for (const bool with_net : {false, true}) {
    if (with_net) {
      ASSERT_TRUE(nets.create_net_in_memory({}, summary));
      nets.net_is_loaded_set();
    }
    number_list list;
    for (clone_number clone = 40; clone >= 1; clone -= 1 + (clone % 3 == 0))
      list.add(clone);
    std::swap(list(2), list(9));
    class_clustering fast(lib.frame, lib.settings, &lib.database), slow(lib.frame, lib.settings, &lib.database);
    for (class_clustering *clustering : {&fast, &slow})
      clustering->clustering_start(list.count(), list, "a", 4, 15.5, 0.9);
    EXPECT_EQ(fast.folder_name_dobaffka_my_get(), "a_T12_15_Sulston_1988");
    fast.run_clusterization_fast(nets);
    slow.clusterization_slow(false, metric);
    EXPECT_EQ(numbers_of(fast), numbers_of(slow));
    EXPECT_GT(fast.number_of_clusters_get(), 1);
    EXPECT_LT(fast.number_of_clusters_get(), list.count());
    EXPECT_EQ(fast.get_actual_clone_number(1), 40);
    EXPECT_EQ(fast.name_of_element_get(1), "C40");
  }
}

TEST(clustering, joinings_are_recorded_when_asked) {
  library lib(1);
  lib.answer("Input caption", "p");
  class_clustering clustering = made(lib, {1, 1, 1});
  clustering.clusterization_slow(true, [](std::int32_t i, std::int32_t j, double &score) {
    score = 15.126;
    return i == 1 && j == 3;
  });
  EXPECT_EQ(lib.file("test_clustering.txt"),
            "i\tj\tcutoff\t1\t2\t3\r\n1\t3\t15.13\t1\t2\t1\r\n\r\n\r\nn\\i\t1\t2\t3\r\n"
            "2\t1\t2\t1\r\n");
  EXPECT_EQ(lib.file("clusters_2011-02-03_04-05-00/heap_p_3.txt"), "e1\r\ne3\r\ne2\r\n");
}

TEST(clustering, gaps_in_numbers_are_asked_about) {
  library lib(1);
  class_clustering clustering = made(lib, {4, 4, 2, 1});
  EXPECT_EQ(lib.record.questions, (texts{"max_cluster > private_n_of_clusters: 4>3. End now?",
                                         "Cluster 3 is not presented in 3 clusters. End now?"}));
  EXPECT_TRUE(lib.frame.data_failed());
  EXPECT_EQ(clustering.number_of_clusters_get(), 4);
  clustering.create_arrays_for_clusters(true, true);
  EXPECT_EQ(numbers_of(clustering), (number_list{3, 3, 2, 1}));
  lib.answer("max_cluster", "yes");
  EXPECT_THROW(clustering.cluster_number_for_all_elements_set({1, 1, 3, 3}), program_end);
  EXPECT_THROW(clustering.cluster_number_for_all_elements_set({1, 1, 1, 0}), program_end);
  EXPECT_THROW(clustering.cluster_number_for_all_elements_set({1, 1, 1, 2000000000}), program_end);
}

TEST(clustering, broken_partitions_are_told) {
  library lib(1);
  class_clustering clustering = made(lib, {1, 1, 2});
  clustering.create_arrays_for_clusters(false, false);
  EXPECT_THROW(clustering.element_of_cluster_get(2, 2), program_end);
  EXPECT_EQ(lib.record.messages.back(),
            "problem with selecting of element from cluster: cluster=2, element=2, but a0=3, a1=3, a1-a0+1=1");
  clustering.order_of_elements_in_cluster_set(1, {2, 1});
  EXPECT_EQ(clustering.element_of_cluster_get(1, 1), 2);
  clustering.cluster_number_set(1, 2);
  EXPECT_THROW(clustering.create_arrays_for_clusters(false, false), program_end);
  EXPECT_EQ(lib.record.messages.back(),
            "Problem! i_in_cluster(c_new) > array_ends : c_old=2, c_new=2, i_in_cluster=4, array_ends=3");
  clustering.cluster_number_set(1, 9);
  EXPECT_THROW(clustering.create_arrays_for_clusters(false, false), program_end);
  EXPECT_EQ(lib.record.messages.back(), "Problem! Element 1 is not in claster with size>0, c=9");
  clustering.number_of_clusters_set(1);
  lib.answer("Problem! nnn", "cancel");
  EXPECT_THROW(clustering.create_arrays_for_clusters(false, false), program_end);
  EXPECT_EQ(lib.record.questions.back(),
            "Problem! nnn =/= n_elements :  nnn=2,  n_elements=3. Ok = continue, Cancel = Stop");
}

TEST(clustering, deleted_clusters_go_to_the_set_of_the_rest) {
  library lib(1);
  class_clustering clustering = made(lib, {1, 2, 3, 2, 1});
  for (std::int32_t c = 1; c <= 3; ++c)
    clustering.name_of_cluster_set(c, "c" + std::to_string(c));
  clustering.delete_cluster(4, true);
  clustering.delete_cluster(2, false);
  // Deliberate: the moved elements stand one above their set until the next renumbering.
  EXPECT_EQ(numbers_of(clustering), (number_list{1, 4, 2, 4, 1}));
  EXPECT_EQ(clustering.number_of_clusters_get(), 3);
  EXPECT_EQ(clustering.name_of_cluster_get(2), "c3");
  clustering.create_arrays_for_clusters(true, true);
  EXPECT_EQ(numbers_of(clustering), (number_list{1, 3, 2, 3, 1}));
  clustering.delete_cluster(3, true);
  EXPECT_EQ(lib.record.messages,
            (texts{"Can't delete non-existing cluster!", "Can't delete set of elements that not in clusters!"}));
  clustering.delete_cluster(1, true);
  EXPECT_EQ(numbers_of(clustering), (number_list{2, 2, 1, 2, 2}));
  EXPECT_EQ(clustering.n_elements_in_cluster_get(2), 4);
  EXPECT_EQ(clustering.name_of_cluster_get(2), "Not_in_clusters");
  std::int32_t found = 0;
  clustering.search_for_cluster_in_current_clustering("c3", found);
  EXPECT_EQ(found, 1);
  clustering.search_for_cluster_in_current_clustering("c1", found);
  EXPECT_EQ(found, 0);
}

TEST(clustering, printed_folder) {
  library lib(9);
  class_clustering clustering(lib.frame, lib.settings, &lib.database);
  clustering.clustering_start_no_metric("sfx", 4, {9, 2, 3, 4});
  clustering.cluster_number_for_all_elements_set({2, 1, 2, 3});
  std::int32_t min_size = -1;
  std::filesystem::path folder;
  std::string caption;
  lib.answer("Input minimal", "2");
  clustering.print_clusters(min_size, true, "_x", true, true, folder, caption);
  EXPECT_EQ(lib.record.questions, (texts{"Input caption for clusters: <caption>_<cluster number>_<size>",
                                         "Input minimal cluster size (smaller united to Heap):"}));
  EXPECT_EQ(min_size, 2);
  EXPECT_EQ(caption, "cluster");
  const std::string name = "clusters_sfx_x2011-02-03_04-05-00/";
  EXPECT_EQ(folder, lib.folder / name.substr(0, name.size() - 1));
  EXPECT_EQ(lib.file(name + "clusterization.txt"), "2\r\n1\r\n2\r\n3\r\n");
  EXPECT_EQ(lib.file(name + "cluster_2_2.txt"), "C9\r\nC3\r\n");
  EXPECT_EQ(lib.file(name + "heap_cluster_2.txt"), "C2\r\nC4\r\n");
  EXPECT_EQ(lib.file(name + "Data_cluster_2_2.txt").substr(0, 12), "C9\t19\tGel\r\n1");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 5);

  EXPECT_TRUE(clustering.read_clusterization(folder / "clusterization.txt"));
  EXPECT_EQ(numbers_of(clustering), (number_list{2, 1, 2, 3}));
  min_size = -5;
  folder = lib.folder / "again";
  caption = "k";
  clustering.print_clusters(min_size, false, "", true, true, folder, caption);
  EXPECT_EQ(min_size, 6);
  EXPECT_EQ(lib.file("again/heap_k_4.txt"), "C2\r\nC9\r\nC3\r\nC4\r\n");
}

TEST(clustering, damaged_lists_of_numbers_are_refused) {
  for (const auto &[bytes, told] : std::vector<std::pair<std::string, std::string>>{
           {"1\n2\n", "Wrong number of elements with clusterization results: n_exp=3, n_obs=2"},
           {"1\n2\n1\n1\n", "Wrong number of elements with clusterization results: n_exp=3, n_obs=4"},
           {"1\n0\n1\n", "line 2"},
           {"1\n2\n4\n", "line 3"},
           {"x\n2\n1\n", "line 1"},
           {"1\n\n1\n", "line 2"}}) {
    library lib(1);
    class_clustering clustering = made(lib, {1, 2, 2});
    lib.write("c.txt", bytes);
    lib.answer("Open file with clusterization", (lib.folder / "c.txt").string());
    EXPECT_FALSE(clustering.read_clusterization());
    EXPECT_NE(lib.record.messages.back().find(told), std::string::npos) << lib.record.messages.back();
    EXPECT_TRUE(lib.frame.data_failed());
    EXPECT_EQ(numbers_of(clustering), (number_list{1, 2, 2}));
  }
}

} // namespace
