// A small library of clones, and a frame whose answers are prepared.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "database/class_DB_of_clones.h"
#include "frame/files.h"
#include "frame/random_source.h"
#include "frame/settings.h"
#include "support/scripted_frame.h"

namespace orb_test {

using namespace orb;

struct library : pinned_clock, scripted_frame {
  project_settings settings;
  class_DB_of_clones database;

  // Clones C1..Cn; clone i has `n_bands` + i bands.
  explicit library(std::int32_t n_clones, std::int32_t n_bands = 10)
      : pinned_clock(1296705900) { // 2011-02-03 04:05:00 UTC
    database.inicalise_database(frame, n_clones, 0);
    for (clone_number clone = 1; clone <= n_clones; ++clone) {
      std::vector<band_value> bands;
      for (std::int32_t i = 1; i <= n_bands + clone; ++i)
        bands.push_back(100 * i + clone);
      database.ListOfBands_from_real_database_fast_all_bands_set(clone, bands);
      database.name_of_clone_set(clone, "C" + std::to_string(clone));
    }
    database.total_number_of_clones_set(n_clones);
    database.sort_clones_by_name(frame);
    record.messages.clear();
  }

  std::string file(const std::string &name) const { return file_bytes(folder / name); }
};

// Five clones of 11 to 15 bands: C1 and C3 in "cl_2", C2 alone in "cl_3", C4 and C5 in "Singletones".
class five_clones_in_contigs : public testing::Test {
protected:
  library lib_{5};
  class_FPCto_import contigs_{lib_.frame, lib_.settings, lib_.database};
  void SetUp() override {
    contigs_.clear_all_and_create_cluster_AllDB(5, "cl_1", "all");
    contigs_.cluster_off_clusterName("cl_1");
    contigs_.add_new_cluster({1, 3}, "cl_2", "all_pr18.00", false);
    contigs_.add_new_cluster({2}, "cl_3", "all_b", false);
    contigs_.add_new_cluster({4, 5}, "Singletones", "", false);
    contigs_.clone_coordinates_set(1, 3, 13);
    contigs_.clone_coordinates_set(3, 1, 13);
    contigs_.clone_coordinates_set(2, 1, 12);
    for (cluster_id id = 1; id <= 3; ++id)
      contigs_.make_min_and_max_coor_for_cluster(id);
  }
};

} // namespace orb_test
