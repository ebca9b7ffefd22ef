#include "lists/class_list_of_clones.h"

#include "database/class_clone_serv.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/text_lines.h"

namespace orb {

namespace {

constexpr std::size_t names_between_reports = 1000;

void report_position(process_frame &frame, std::size_t i, std::size_t n) {
  if (i % names_between_reports != 0)
    return;
  frame.progress(static_cast<std::int64_t>(i), static_cast<std::int64_t>(n));
  frame.local_process_text_set(std::to_string(i) + " of " + std::to_string(n));
}

} // namespace

// A file that a dialog gave is known by its pure name only.
static std::string place_of(const std::filesystem::path &file, const std::string &pure_name, std::int64_t line) {
  return "file " + (file.empty() ? pure_name : file.string()) + ", line " + std::to_string(line);
}

bool class_list_of_clones::reading_file_with_list_of_clones(std::filesystem::path file, std::vector<std::string> &names,
                                                            std::int32_t &count, std::string &pure_name,
                                                            std::vector<std::int64_t> *lines_of_names) {
  if (file.empty())
    file = frame_.open_file_dialog("Open file with clones to select");
  if (file.empty())
    return false;
  std::vector<std::string> read(1); // names stand from 1
  std::vector<std::int64_t> at_line(1);
  line_reader lines(file);
  std::string_view line;
  while (lines.next(line)) {
    if (!is_line_of_text(frame_, lines, line))
      return false;
    while (!line.empty()) {
      const std::size_t end = line.find_first_of(", \t");
      const std::string_view name = line.substr(0, end);
      line = end == std::string_view::npos ? std::string_view() : line.substr(end + 1);
      if (name.empty())
        continue;
      read.push_back(class_clone_serv::extract_clone_name(name, settings_.clone_name_format_input,
                                                          settings_.clone_name_format_output, settings_));
      at_line.push_back(lines.line_number());
    }
  }
  names = std::move(read);
  if (lines_of_names != nullptr)
    *lines_of_names = std::move(at_line);
  count = static_cast<std::int32_t>(names.size()) - 1;
  pure_name = class_serv_raznoe::extract_pure_file_name(file.string());
  return true;
}

static void prepare_search(process_frame &frame, class_DB_of_clones &database) {
  frame.step_text_set("Reading...");
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame);
}

bool class_list_of_clones::run_reading_file_with_list_of_clones(std::filesystem::path file, number_list &list,
                                                                std::string &pure_name, class_DB_of_clones &database) {
  std::vector<std::string> names;
  std::vector<std::int64_t> at_line;
  std::int32_t count = 0, n_unknown = 0;
  if (!reading_file_with_list_of_clones(file, names, count, pure_name, &at_line))
    return false;
  prepare_search(frame_, database);
  number_list found;
  for (std::size_t i = 1; i < names.size(); ++i) {
    report_position(frame_, i, names.size() - 1);
    const clone_number clone = database.clone_number_get(names[i]);
    if (clone >= 1) {
      found.add(clone);
      continue;
    }
    frame_.doubt("Clone " + names[i] + " isn't in the library", place_of(file, pure_name, at_line[i]));
    question stop;
    stop.text = "Clone (" + std::to_string(i) + ") " + names[i] + " not found!\rDo You want to stop the program?";
    stop.by_default = stop.to_go_on = answer::no;
    stop.marks_failure = true;
    stop.explanation = "The list names a clone that the library doesn't have. No leaves the name out and goes on; the "
                       "command ends with status 1 all the same.";
    if (frame_.yes(stop))
      throw program_end(stop.text, exit_status::run_failed);
    ++n_unknown;
  }
  list = std::move(found);
  frame_.message(n_unknown == 0 ? "All " + std::to_string(count) + " clones are loaded"
                                : "In total, " + std::to_string(n_unknown) + " clones not found!");
  return true;
}

bool class_list_of_clones::run_reading_file_with_list_of_clones_rep(std::filesystem::path file, number_list &list,
                                                                    std::int32_t &count, class_DB_of_clones &database) {
  std::vector<std::string> names;
  std::vector<std::int64_t> at_line;
  std::string pure_name;
  std::int32_t n_names = 0, n_unknown = 0;
  if (!reading_file_with_list_of_clones(file, names, n_names, pure_name, &at_line))
    return false;
  prepare_search(frame_, database);
  number_list found;
  for (std::size_t i = 1; i < names.size(); ++i) {
    report_position(frame_, i, names.size() - 1);
    const number_list clones = database.clone_number_get_with_repeats(names[i]);
    if (clones.empty()) {
      ++n_unknown;
      frame_.doubt("Clone " + names[i] + " isn't in the library", place_of(file, pure_name, at_line[i]));
    }
    for (const clone_number clone : clones.members())
      found.add(clone);
  }
  list = std::move(found);
  count = list.count();
  if (n_unknown > 0)
    frame_.refuse("In total " + std::to_string(n_unknown) + " clones not found! ");
  return true;
}

} // namespace orb
