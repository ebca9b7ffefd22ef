// What the tests of the database share: a frame that records, a folder of their own, files with exact bytes.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "database/class_DB_of_clones.h"
#include "database/class_DB_of_clones_read.h"
#include "database/class_usable_values.h"
#include "frame/files.h"
#include "frame/random_source.h"
#include "frame/settings.h"
#include "support/scripted_frame.h"

namespace orb_test {

namespace fs = std::filesystem;
using namespace orb;

class database_fixture : public ::testing::Test, public scripted_frame {
protected:
  database_fixture() { apply_parameters(12, 1, 60000); }

  void apply_parameters(std::int16_t t, std::int16_t index, double length) {
    database.tollerance_parameters_set(t, index);
    database.total_number_of_different_bands_set_by_eff_len(length);
  }
  bool load_sizes(const fs::path &path, bool store = true) {
    bool success = false;
    reader.read_database_from_folder_of_sizes_files(path, false, store, success, database, usable_values);
    return success;
  }
  bool load_file(const fs::path &path, bool library) {
    return reader.open_file_with_clones(0, path, library, true, database, usable_values);
  }
  // Names and bands, one clone a line: "A:1,2,3".
  static std::string text_of(const class_DB_of_clones &db) {
    std::string text;
    for (clone_number i = 1; i <= db.total_number_of_clones_get(); ++i) {
      text += db.name_of_clone_get(i) + ":";
      for (const band_value band : db.bands_of_clone(i))
        text += std::to_string(band) + ",";
      text += "\n";
    }
    return text;
  }

  project_settings settings;
  class_DB_of_clones database;
  class_usable_values usable_values;
  int loads = 0;
  class_DB_of_clones_read reader{frame, settings, [this] { ++loads; }};
};

// Everything that a database promises to those who read it.
inline std::string broken_promise(const class_DB_of_clones &db) {
  const std::int32_t n = db.total_number_of_clones_get();
  if (db.first_band_adress_get(1) != 1)
    return "first address";
  if (db.next_free_band_adress_get() != db.first_band_adress_get(n + 1))
    return "next free address";
  if (!db.bands_are_there())
    return "no spare element behind the last band";
  const std::int64_t largest = std::min<std::int64_t>(static_cast<std::int64_t>(db.max_band_length_get() + 0.5),
                                                      db.total_number_of_different_bands_get());
  for (clone_number i = 1; i <= n; ++i) {
    const auto bands = db.bands_of_clone(i);
    if (bands.size() > 500)
      return "more than 500 bands";
    for (std::size_t k = 0; k < bands.size(); ++k)
      if (bands[k] < 0 || bands[k] > largest || (k > 0 && bands[k] < bands[k - 1]))
        return "a band of clone " + std::to_string(i);
  }
  return {};
}

} // namespace orb_test
