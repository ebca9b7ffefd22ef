#include <gtest/gtest.h>

#include <functional>

#include "contigs/kept_registry.h"
#include "fpc/fpc_writing.h"
#include "support/contig_test_library.h"

using namespace orb_test;

namespace {

void write_file(const std::filesystem::path &file, const lines &text) {
  std::ofstream out(file, std::ios::binary);
  for (const std::string &line : text)
    out << line << "\r\n";
}

// A run over a library with chimeras: contigs, heaps and clones alone on several levels.
struct finished_run {
  library_data data = random_library(3, 100, 700, 0.2);
  contig_session session{data, 7};
  adapt_clust_result result;
  std::shared_ptr<class_FPCto_import> registry;
  std::filesystem::path folder;
  finished_run() {
    class_contig_adapt_clust run(session.signif, session.rule);
    run.main_parameters_set(40, 5, 1, 1.5, 4, false, 2, 3);
    run.adaptive_clustering_all_run(session.database);
    result = run.result();
    registry = session.database.contigs();
    folder = session.run();
  }
};

} // namespace

TEST(run_folder, reads_back_as_the_run_left_it) {
  const pinned_clock still(0);
  finished_run run;
  ASSERT_TRUE(is_run_folder(run.folder));
  EXPECT_FALSE(is_run_folder(run.session.folder));
  ASSERT_TRUE(read_run_folder_into_registry(run.session.frame, run.session.settings, run.folder, run.session.database));
  class_FPCto_import &read = *run.session.database.contigs();
  ASSERT_NE(&read, run.registry.get());
  EXPECT_EQ(read.current_list_of_clusters_in_use_get(), run.registry->current_list_of_clusters_in_use_get());
  for (const cluster_id id : read.current_list_of_clusters_in_use_get().members())
    EXPECT_EQ(read.tiling_path_get(id), run.registry->tiling_path_get(id));
  EXPECT_GT(run.result.n_clones_alone, 0);
  // Everything that is printed of it is the same.
  const auto print = [&](class_FPCto_import &registry, const char *name) {
    const std::filesystem::path folder = run.session.folder / name;
    create_folder(folder);
    run.session.frame.working_folder_set(folder);
    const number_list all = number_list::range(1, run.data.count());
    print_FPC_like_file_run(run.session.frame, run.session.settings, run.session.database, registry,
                            folder / "FPC_like.fpc", folder / "FPC_like_pp.fpc", folder, true);
    registry.print_coordinates_of_clones(all, folder / "coordinates_of_clones.txt");
    registry.print_cluster_name_for_clones(all);
    registry.print_N50_statistics();
    return folder;
  };
  const std::filesystem::path of_read = print(read, "read"), of_run = print(*run.registry, "run");
  int n_files = 0;
  for (const auto &entry : std::filesystem::directory_iterator(of_read)) {
    const std::filesystem::path name = entry.path().filename();
    EXPECT_EQ(bytes_of(entry.path()), bytes_of(of_run / name)) << name;
    if (name != "clones_in_contogs.txt") {
      EXPECT_EQ(bytes_of(entry.path()), bytes_of(run.folder / name)) << name;
    }
    ++n_files;
  }
  EXPECT_EQ(n_files, 6);
}

// A run that kept no registry: what its reports tell.
TEST(run_folder, older_runs_read_back_without_clones_alone) {
  finished_run run;
  for (const char *table : {registry_clusters_name, registry_clones_name})
    EXPECT_TRUE(std::filesystem::remove(run.folder / table));
  ASSERT_TRUE(read_run_folder_into_registry(run.session.frame, run.session.settings, run.folder, run.session.database));
  const class_FPCto_import &read = *run.session.database.contigs();
  ASSERT_NE(&read, run.registry.get());
  std::int32_t n_read = 0;
  for (const cluster_id id : run.registry->current_list_of_clusters_in_use_get().members()) {
    number_list clones, clones_read;
    run.registry->list_of_clones_get(id, clones);
    if (clones.count() < 2)
      continue; // alone: no row, no file
    ++n_read;
    const cluster_id id_read = read.current_list_of_clusters_in_use_get()(n_read);
    EXPECT_EQ(read.name_of_cluster_get(id_read), run.registry->name_of_cluster_get(id));
    EXPECT_EQ(read.cluster_information_get(id_read).FPC_name, run.registry->cluster_information_get(id).FPC_name);
    read.list_of_clones_get(id_read, clones_read);
    EXPECT_EQ(clones_read, clones);
    EXPECT_EQ(read.tiling_path_get(id_read), run.registry->tiling_path_get(id));
    EXPECT_EQ(read.length_of_cluster_bands_get(id_read), run.registry->length_of_cluster_bands_get(id));
    for (const clone_number clone : clones.members()) {
      EXPECT_EQ(read.clone_coor_left(clone), run.registry->clone_coor_left(clone));
      EXPECT_EQ(read.clone_coor_right(clone), run.registry->clone_coor_right(clone));
    }
  }
  EXPECT_EQ(read.current_list_of_clusters_in_use_get().count(), n_read);
  EXPECT_EQ(static_cast<std::size_t>(n_read), run.result.clusters.size());
  EXPECT_GT(run.result.n_clones_alone, 0);
  run_folder texts;
  ASSERT_TRUE(read_run_folder(run.session.frame, run.folder, texts));
  bool heap = false, contig = false;
  for (std::size_t c = 0; c < texts.clusters.size(); ++c) {
    (texts.clusters[c].n_clones < 5 ? heap : contig) = true;
    EXPECT_EQ(texts.clusters[c].name, run.result.clusters[c].name);
    if (texts.clusters[c].n_clones > 2) {
      EXPECT_EQ(static_cast<int>(texts.tiling_path[c].size()), run.result.clusters[c].n_clones_MTP);
    }
  }
  EXPECT_TRUE(heap && contig);
}

TEST(run_folder, damaged_folders_are_refused_with_their_place) {
  finished_run run;
  run_folder good;
  ASSERT_TRUE(read_run_folder(run.session.frame, run.folder, good));
  // The first contig with all its files.
  std::string name;
  for (const cluster_row &row : good.clusters) {
    if (name.empty() && row.contig)
      name = row.name;
  }
  ASSERT_FALSE(name.empty());
  const std::filesystem::path report = run.folder / "report_clusters.txt", list = run.folder / name / (name + ".txt"),
                              path = run.folder / name / ("MTP_" + name + ".txt"),
                              coor = run.folder / name / ("coor_" + name + ".txt");
  std::filesystem::path pair; // the table of a cluster of two clones
  for (const cluster_row &row : good.clusters)
    if (row.n_clones == 2)
      pair = run.folder / "Heaps" / ("clones_MTP_coor_and_markers_" + row.name + ".txt");
  ASSERT_TRUE(std::filesystem::exists(pair));
  struct damage {
    const char *message; // begins so
    const char *place;   // ends so
    std::filesystem::path file;
    std::function<void(lines &)> change;
  };
  const std::filesystem::path clusters = run.folder / registry_clusters_name,
                              clones = run.folder / registry_clones_name;
  const damage damages[] = {
      {"This is no table of a run's registry", "line 1", clusters, [](lines &l) { l[0] += "x"; }},
      {"This is no table of a run's registry", "line 1", clones, [](lines &l) { l[0] = "i"; }},
      {"A row is the cluster's number", "line 3", clusters, [](lines &l) { l[2] = l[1]; }},
      {"A row has 6 fields", "line 2", clusters, [](lines &l) { l[1] = "1\tTrue\tTrue\t3\tcl_1"; }},
      {"A row is the number of a cluster", "line 2", clones, [](lines &l) { l[1].insert(0, "9"); }},
      {"Clone C1", "line 3", clones, [](lines &l) { l[2] = l[1]; }},
      {"Of cluster cl_", "", clones, [](lines &l) { l.pop_back(); }},
      {"Clone nobody of the run is not in the library.", "line 2", clones,
       [](lines &l) { l[1] = "2\t1\t1\t9\t\tnobody"; }},
      {"This is no report of clusters", "line 1", report, [](lines &l) { l[0] = "i\tcluster"; }},
      {"This is no report of clusters", "line 1", report, [](lines &l) { l.clear(); }},
      {"Damaged row of the cluster report: a row has 11", "line 2", report, [](lines &l) { l[1] = "1\tcl_1\t80"; }},
      {"Damaged row of the cluster report: a row has 11", "line 2", report, [](lines &l) { l[1] += "\t"; }},
      {"Damaged row of the cluster report: \"n_clones\"", "line 2", report,
       [](lines &l) { l[1] = "1\tcl_1\t99999999999\tFalse\t6.00\t\t\t\t\tNot connected\tall"; }},
      {"Damaged row of the cluster report: \"contig\"", "line 2", report,
       [](lines &l) { l[1] = "1\tcl_1\t80\tfalse\t6.00\t\t\t\t\tNot connected\tall"; }},
      {"Damaged row of the cluster report: of diam", "line 2", report,
       [](lines &l) { l[1] = "1\tcl_1\t80\tFalse\t6.00\t3\t\t\t\tNot connected\tall"; }},
      {"Cluster cl_1 stands twice", "line 3", report, [](lines &l) { l[2] = l[1]; }},
      {"The list of clones of cluster ../x is missing: .._x.txt", "line 2", report,
       [](lines &l) { l[1] = "1\t../x\t80\tTrue\t6.00\t\t\t\t\tToo large\tall"; }},
      {"Cluster ", "", list, [](lines &l) { l.pop_back(); }},
      {"Cluster ", "", list, [](lines &l) { l.push_back("C1001"); }},
      {"An empty line", "line 2", list, [](lines &l) { l[1].clear(); }},
      {"Clone nobody of the tiling path", "line 1", path, [](lines &l) { l[0] = "nobody"; }},
      {"This is no table of coordinates", "line 1", coor, [](lines &l) { l[0] = "clone"; }},
      {"A row of coordinates", "line 2", coor, [](lines &l) { l[1] = "C1001\t1"; }},
      {"A row of coordinates", "line 2", coor, [](lines &l) { l[1] += "x"; }},
      {"Coordinates don't follow", "line 3", coor, [](lines &l) { l[2] = l[1]; }},
      {"Coordinates end early", "", coor, [](lines &l) { l.pop_back(); }},
      {"The table of a cluster of two", "line 3", pair, [](lines &l) { l[2].insert(2, "x"); }},
      {"The table of a cluster of two", "line 3", pair, [](lines &l) { l.pop_back(); }},
      {"Behind a clone stand its two ends", "line 4", pair, [](lines &l) { l[3] += "3"; }},
      {"Clone nobody lies in cluster", "line 1", list, [](lines &l) { l[0] = "nobody"; }},
  };
  for (const damage &given : damages) {
    SCOPED_TRACE(given.message);
    const lines before = lines_of_file(given.file);
    lines after = before;
    given.change(after);
    write_file(given.file, after);
    const bool unknown_clone = !after.empty() && after[0] == "nobody" && given.file == list;
    if (unknown_clone) { // only the library can tell
      std::filesystem::rename(coor, run.folder / "kept_coor");
      std::filesystem::rename(path, run.folder / "kept_path");
    }
    run.session.record.messages.clear();
    EXPECT_FALSE(
        read_run_folder_into_registry(run.session.frame, run.session.settings, run.folder, run.session.database));
    EXPECT_EQ(run.session.database.contigs(), run.registry); // untouched
    EXPECT_TRUE(run.session.frame.data_failed());
    ASSERT_EQ(run.session.record.messages.size(), 1u);
    const std::string &text = run.session.record.messages[0], start = given.message, end = given.place;
    EXPECT_EQ(text.substr(0, start.size()), start);
    EXPECT_NE(text.find("file "), std::string::npos);
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
    if (unknown_clone) {
      std::filesystem::rename(run.folder / "kept_coor", coor);
      std::filesystem::rename(run.folder / "kept_path", path);
    }
    write_file(given.file, before);
  }
  EXPECT_TRUE(read_run_folder_into_registry(run.session.frame, run.session.settings, run.folder, run.session.database));
  std::filesystem::remove(report);
  EXPECT_THROW(read_run_folder(run.session.frame, run.folder, good), file_error);
  EXPECT_FALSE(good.clusters.empty()); // as it was
}
