// A small library of clones, and a frame whose answers are prepared.
#pragma once

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

} // namespace orb_test
