#include "net/class_list_of_clones.h"

#include <algorithm>

#include "database/class_clone_serv.h"
#include "frame/class_math1.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"

namespace orb {

namespace {

constexpr std::size_t names_between_reports = 1000;

void report_position(process_frame &frame, std::size_t i, std::size_t n) {
  if (i % names_between_reports == 0)
    frame.local_process_text_set(std::to_string(i) + " of " + std::to_string(n));
}

} // namespace

bool class_list_of_clones::reading_file_with_list_of_clones(std::filesystem::path file, std::vector<std::string> &names,
                                                            std::int32_t &count, std::string &pure_name) {
  names.assign(1, {}); // names stand from 1
  count = 0;
  if (file.empty())
    file = frame_.open_file_dialog("Open file with clones to select");
  if (file.empty())
    return false;
  pure_name = class_serv_raznoe::extract_pure_file_name(file.string());
  line_reader lines(file);
  std::string_view line;
  while (lines.next(line)) {
    while (!line.empty()) {
      const std::size_t end = line.find_first_of(", \t");
      const std::string_view name = line.substr(0, end);
      line = end == std::string_view::npos ? std::string_view() : line.substr(end + 1);
      if (!name.empty())
        names.push_back(class_clone_serv::extract_clone_name(name, settings_.clone_name_format_input,
                                                             settings_.clone_name_format_output, settings_));
    }
  }
  count = static_cast<std::int32_t>(names.size()) - 1;
  return true;
}

bool class_list_of_clones::run_reading_file_with_list_of_clones(std::filesystem::path file, number_list &list,
                                                                std::string &pure_name, class_DB_of_clones &database) {
  std::vector<std::string> names;
  std::int32_t count = 0, n_unknown = 0;
  list.clear();
  if (!reading_file_with_list_of_clones(std::move(file), names, count, pure_name))
    return false;
  frame_.step_text_set("Reading...");
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame_);
  for (std::size_t i = 1; i < names.size(); ++i) {
    report_position(frame_, i, names.size() - 1);
    const clone_number clone = database.clone_number_get(names[i]);
    if (clone >= 1) {
      list.add(clone);
      continue;
    }
    question stop;
    stop.text = "Clone (" + std::to_string(i) + ") " + names[i] + " not found!\rDo You want to stop the program?";
    stop.by_default = stop.to_go_on = answer::no;
    stop.marks_failure = true;
    if (frame_.yes(stop))
      throw program_end(stop.text, exit_status::run_failed);
    ++n_unknown;
  }
  frame_.message(n_unknown == 0 ? "All " + std::to_string(count) + " clones are loaded"
                                : "In total, " + std::to_string(n_unknown) + " clones not found!");
  return true;
}

bool class_list_of_clones::run_reading_file_with_list_of_clones_rep(std::filesystem::path file, number_list &list,
                                                                    std::int32_t &count, class_DB_of_clones &database) {
  std::vector<std::string> names;
  std::string pure_name;
  std::int32_t n_names = 0, n_unknown = 0;
  list.clear();
  count = 0;
  if (!reading_file_with_list_of_clones(std::move(file), names, n_names, pure_name))
    return false;
  frame_.step_text_set("Reading...");
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame_);
  for (std::size_t i = 1; i < names.size(); ++i) {
    report_position(frame_, i, names.size() - 1);
    const number_list clones = database.clone_number_get_with_repeats(names[i]);
    n_unknown += clones.empty();
    for (const clone_number clone : clones.members())
      list.add(clone);
  }
  count = list.count();
  if (n_unknown > 0) {
    frame_.message("In total " + std::to_string(n_unknown) + " clones not found! ");
    frame_.data_failed_set();
  }
  return true;
}

void class_list_of_clones::print_list_of_clones(const number_list &list, const std::filesystem::path &file,
                                                const class_DB_of_clones &database) const {
  result_file output(file);
  for (const clone_number clone : list.members())
    output.line(database.name_of_clone_get(clone));
  output.commit();
}

void class_list_of_clones::sort_list_of_clones_and_delete_repeats(number_list &list) const {
  if (list.empty()) {
    frame_.message("list of clones for orderind is empty!!!");
    return;
  }
  class_math1::sort_list_of_long_and_delete_repeats(list);
}

void class_list_of_clones::intersection_list1_list2_long(const number_list &list_1, const number_list &list_2,
                                                         number_list &common) {
  number_list found; // may be one of the two
  for (std::int32_t i = 1, j = 1; i <= list_1.count() && j <= list_2.count();) {
    if (list_1(i) < list_2(j)) {
      ++i;
    } else if (list_2(j) < list_1(i)) {
      ++j;
    } else {
      if (found.empty() || found(found.count()) != list_1(i))
        found.add(list_1(i));
      ++i, ++j;
    }
  }
  common = std::move(found);
}

} // namespace orb
