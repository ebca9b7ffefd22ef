// A small library of clones, and a frame whose answers are prepared.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "clustering/class_FPCto_import.h"
#include "database/class_DB_of_clones.h"
#include "frame/files.h"
#include "frame/front_end.h"
#include "frame/process_frame.h"
#include "frame/random_source.h"
#include "frame/settings.h"

namespace orb_test {

using namespace orb;

class library {
public:
  answer_book book;
  front_end_record record;
  std::filesystem::path folder;
  process_frame frame;
  project_settings settings;
  class_DB_of_clones database;

  // Clones C1..Cn with `n_bands(i)` bands each; dates stand still at 2011-02-03 04:05.
  explicit library(std::int32_t n_clones, std::int32_t n_bands = 10) : folder(new_folder()), frame(made_frame()) {
    frame.working_folder_set(folder);
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
  ~library() { std::filesystem::remove_all(folder); }
  library(const library &) = delete;
  library &operator=(const library &) = delete;

  void answer(const std::string &prompt, const std::string &reply) { book.add({prompt, reply, false}); }
  std::string file(const std::string &name) const { return file_bytes(folder / name); }
  void write(const std::string &name, const std::string &bytes) const {
    std::filesystem::create_directories((folder / name).parent_path());
    std::ofstream(folder / name, std::ios::binary) << bytes;
  }

private:
  static std::filesystem::path new_folder() {
    static int number = 0;
    const auto made = std::filesystem::temp_directory_path() /
                      ("orb_clustering_" + std::to_string(::getpid()) + "_" + std::to_string(++number));
    std::filesystem::create_directories(made);
    return made;
  }
  process_frame made_frame() {
    ::setenv("SOURCE_DATE_EPOCH", "1296705900", 1); // 2011-02-03 04:05:00 UTC
    return process_frame(scripted_front_end(book, record));
  }
};

} // namespace orb_test
