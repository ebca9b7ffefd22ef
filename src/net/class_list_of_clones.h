// Lists of clones in text files: reading, looking up, printing, sorting.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "database/class_DB_of_clones.h"
#include "frame/lists.h"
#include "frame/process_frame.h"
#include "frame/settings.h"

namespace orb {

class class_list_of_clones {
public:
  class_list_of_clones(process_frame &frame, const project_settings &settings) : frame_(frame), settings_(settings) {}

  // Names only, separated by line ends, commas or blanks, through the name formats. An empty path asks. False when
  // cancelled.
  bool reading_file_with_list_of_clones(std::filesystem::path file, std::vector<std::string> &names,
                                        std::int32_t &count, std::string &pure_name);
  // Names and their clone numbers; an unknown name asks whether to stop the program.
  bool run_reading_file_with_list_of_clones(std::filesystem::path file, number_list &list, std::string &pure_name,
                                            class_DB_of_clones &database);
  // All clones of each name.
  bool run_reading_file_with_list_of_clones_rep(std::filesystem::path file, number_list &list, std::int32_t &count,
                                                class_DB_of_clones &database);
  void print_list_of_clones(const number_list &list, const std::filesystem::path &file,
                            const class_DB_of_clones &database) const;
  void sort_list_of_clones_and_delete_repeats(number_list &list) const;
  static void intersection_list1_list2_long(const number_list &list_1, const number_list &list_2, number_list &common);

private:
  process_frame &frame_;
  const project_settings &settings_;
};

} // namespace orb
