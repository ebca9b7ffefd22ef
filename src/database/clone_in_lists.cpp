// The record of which list each clone lies in.
#include "database/class_DB_of_clones.h"
#include "database/class_clone_serv.h"
#include "database/class_usable_values.h"
#include "frame/class_serv_raznoe.h"
#include "frame/files.h"
#include "frame/numbers.h"

namespace orb {

namespace fs = std::filesystem;

void class_usable_values::clone_in_lists_clear(process_frame &frame, class_DB_of_clones &database) {
  if (!database.clone_name_sorted_is_created_get())
    database.sort_clones_by_name(frame);
  clone_in_lists_.assign(static_cast<std::size_t>(database.total_number_of_clones_get()) + 1, {});
}

// What several files bring is taken when all of them can be read.
template <class Work> static void whole_or_as_before(std::vector<std::string> &lists, const Work &work) {
  std::vector<std::string> before = lists;
  try {
    work();
  } catch (...) {
    lists = std::move(before);
    throw;
  }
}

// Names stand between line ends, commas, blanks and tabs. Returns the number of names.
std::int32_t class_usable_values::clone_in_lists_add_file(process_frame &frame, const project_settings &settings,
                                                          const fs::path &file, class_DB_of_clones &database) {
  if (clone_in_lists_.size() != static_cast<std::size_t>(database.total_number_of_clones_get()) + 1)
    clone_in_lists_clear(frame, database);
  const std::string list_name = class_serv_raznoe::extract_pure_file_name(file.string());
  line_reader lines(file);
  std::string_view line;
  std::int32_t n_names = 0;
  while (lines.next(line)) {
    while (!line.empty()) {
      const std::size_t length = std::min(line.find_first_of(", \t"), line.size());
      const std::string_view text = line.substr(0, length);
      line.remove_prefix(std::min(length + 1, line.size()));
      if (text.empty())
        continue;
      ++n_names;
      const std::string name = class_clone_serv::extract_clone_name(text, settings.clone_name_format_input,
                                                                    settings.clone_name_format_output, settings);
      const clone_number clone = database.clone_number_get(name);
      if (clone >= 1)
        clone_in_lists_[static_cast<std::size_t>(clone)] = list_name;
      else
        frame.alarm("Unknown clone '" + name + "' (line " + std::to_string(lines.line_number()) + ")");
    }
  }
  return n_names;
}

void class_usable_values::clone_in_lists_add_list_run(process_frame &frame, const project_settings &settings,
                                                      class_DB_of_clones &database, fs::path file) {
  if (file.empty())
    file = frame.open_file_dialog("Open file with list of clones");
  if (!file.empty())
    clone_in_lists_add_file(frame, settings, file, database);
}

void class_usable_values::clone_in_lists_add_folder_of_lists(process_frame &frame, const project_settings &settings,
                                                             class_DB_of_clones &database, fs::path file) {
  if (file.empty())
    file = frame.open_file_dialog("Open any file from the folder");
  if (file.empty())
    return;
  const fs::path folder = fs::is_directory(file) ? file : file.parent_path();
  whole_or_as_before(clone_in_lists_, [&] {
    for (const std::string &name : class_serv_raznoe::create_ordered_list_of_files_in_folder(folder, "txt"))
      clone_in_lists_add_file(frame, settings, folder / name, database);
  });
}

void class_usable_values::clone_in_lists_read(process_frame &frame, const project_settings &settings,
                                              class_DB_of_clones &database, fs::path adresses) {
  if (adresses.empty())
    adresses = frame.open_file_dialog("Open file adresses of clones in lists");
  if (adresses.empty())
    return;
  line_reader lines(adresses);
  whole_or_as_before(clone_in_lists_, [&] {
    clone_in_lists_clear(frame, database);
    std::vector<std::string> fields;
    for (std::string_view line; lines.next(line);) {
      class_serv_raznoe::cut_string(line, fields);
      if (fields[0].empty())
        continue;
      const fs::path list =
          fs::path(fields[0]).is_absolute() ? fs::path(fields[0]) : adresses.parent_path() / fields[0];
      const std::int32_t n_names = clone_in_lists_add_file(frame, settings, list, database);
      std::int32_t told = 0;
      if (fields.size() > 1 && whole_number_parse(fields[1], told) && told != n_names)
        frame.alarm("Incorrect number of clones in list! " + std::to_string(told) + "=/=" + std::to_string(n_names));
    }
  });
}

void class_usable_values::clone_in_lists_print(process_frame &frame, const class_DB_of_clones &database) const {
  const std::int32_t n = database.total_number_of_clones_get();
  if (clone_in_lists_.size() != static_cast<std::size_t>(n) + 1 || !database.clone_name_sorted_is_created_get())
    return;
  result_file table(frame.path_in_working_folder("\\clone_in_lists.txt"));
  for (std::int32_t i = 1; i <= n; ++i)
    table.line(database.clone_name_sorted_get(i) + "\t" +
               clone_in_lists_get(database.clone_name_sorted_initial_adress_get(i)));
  table.commit();
}

} // namespace orb
